#include "sibling/boolean/sweep_status.h"

namespace kelvor2d_detail {

uint32_t SweepStatus::NextPriority() {
  m_random ^= m_random << 13;
  m_random ^= m_random >> 17;
  m_random ^= m_random << 5;
  return m_random;
}

int32_t SweepStatus::NewNode(uint32_t value) {
  int32_t x = m_free;
  if (x != kNone) {
    m_free = m_nodes[x].next;
  } else {
    x = static_cast<int32_t>(m_nodes.size());
    m_nodes.push_back(Node{});
  }
  m_nodes[x] = Node{kNone, kNone, kNone, kNone, kNone, NextPriority(), value};
  return x;
}

void SweepStatus::ReplaceChild(int32_t parent, int32_t from, int32_t to) {
  if (parent == kNone) {
    m_root = to;
  } else if (m_nodes[parent].left == from) {
    m_nodes[parent].left = to;
  } else {
    m_nodes[parent].right = to;
  }
  if (to != kNone)
    m_nodes[to].parent = parent;
}

// Rotates x above its parent, keeping the order of the nodes.
void SweepStatus::RotateUp(int32_t x) {
  Node& n = m_nodes[x];
  const int32_t p = n.parent;
  Node& pn = m_nodes[p];
  const int32_t grand = pn.parent;
  if (pn.left == x) {
    pn.left = n.right;
    if (n.right != kNone)
      m_nodes[n.right].parent = p;
    n.right = p;
  } else {
    pn.right = n.left;
    if (n.left != kNone)
      m_nodes[n.left].parent = p;
    n.left = p;
  }
  pn.parent = x;
  ReplaceChild(grand, p, x);
}

int32_t SweepStatus::InsertAbove(int32_t below, uint32_t value) {
  const int32_t x = NewNode(value);
  // In order, x goes right after `below`: as its right child when it has
  // none, else as the left child of its successor (which then has none).
  int32_t parent = kNone;
  bool asLeft = false;
  const int32_t above = below == kNone ? m_head : m_nodes[below].next;
  if (below != kNone && m_nodes[below].right == kNone) {
    parent = below;
  } else if (above != kNone) {
    parent = above;
    asLeft = true;
  }
  if (parent == kNone) {
    m_root = x;
  } else {
    (asLeft ? m_nodes[parent].left : m_nodes[parent].right) = x;
    m_nodes[x].parent = parent;
  }
  m_nodes[x].previous = below;
  m_nodes[x].next = above;
  if (above != kNone)
    m_nodes[above].previous = x;
  if (below != kNone) {
    m_nodes[below].next = x;
  } else {
    m_head = x;
  }
  while (m_nodes[x].parent != kNone && m_nodes[m_nodes[x].parent].priority > m_nodes[x].priority)
    RotateUp(x);
  return x;
}

void SweepStatus::Erase(int32_t x) {
  // Rotate x down (its child of smaller priority up) until it is a leaf.
  for (;;) {
    const int32_t l = m_nodes[x].left, r = m_nodes[x].right;
    if (l == kNone && r == kNone)
      break;
    const bool takeLeft = r == kNone || (l != kNone && m_nodes[l].priority < m_nodes[r].priority);
    RotateUp(takeLeft ? l : r);
  }
  ReplaceChild(m_nodes[x].parent, x, kNone);
  const int32_t below = m_nodes[x].previous, above = m_nodes[x].next;
  if (below != kNone) {
    m_nodes[below].next = above;
  } else {
    m_head = above;
  }
  if (above != kNone)
    m_nodes[above].previous = below;
  m_nodes[x].next = m_free;
  m_free = x;
}

}  // namespace kelvor2d_detail
