// The status of the engine's sweep: the segments cut by the sweep line, bottom
// to top, as a treap (searchable by a point in O(log n)) threaded by a doubly
// linked list (neighbours in O(1)). Nodes are positions; each holds the
// number of the segment now at that position, so a segment can take over the
// position of another without moving nodes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kelvor2d_detail {

class SweepStatus {
 public:
  static constexpr int32_t kNone = -1;

  void Reserve(size_t count) { m_nodes.reserve(count); }
  int32_t Head() const { return m_head; }
  int32_t Next(int32_t node) const { return m_nodes[node].next; }
  int32_t Previous(int32_t node) const { return m_nodes[node].previous; }
  uint32_t ValueOf(int32_t node) const { return m_nodes[node].value; }
  void SetValue(int32_t node, uint32_t value) { m_nodes[node].value = value; }

  // Makes a node holding `value` right above `below` (at the bottom when
  // below is kNone) and returns it.
  int32_t InsertAbove(int32_t below, uint32_t value);
  // Removes the node; its number may be reused by a later insertion.
  void Erase(int32_t node);

  // Finds where a point lies: side(value) is +1 when the point lies above the
  // segment, -1 below it, 0 on it. Returns a node whose segment holds the
  // point (with *on true), or else the highest node below the point (kNone
  // when none is, *on false).
  template <class Side>
  int32_t Locate(Side side, bool* on) const {
    int32_t below = kNone;
    for (int32_t x = m_root; x != kNone;) {
      const int s = side(m_nodes[x].value);
      if (s == 0) {
        *on = true;
        return x;
      }
      if (s > 0) {
        below = x;
        x = m_nodes[x].right;
      } else {
        x = m_nodes[x].left;
      }
    }
    *on = false;
    return below;
  }

 private:
  struct Node {
    int32_t left;
    int32_t right;
    int32_t parent;
    int32_t previous;   // the node just below, kNone at the bottom
    int32_t next;       // the node just above, kNone at the top
    uint32_t priority;  // heap order of the treap: parents have smaller priorities
    uint32_t value;
  };
  std::vector<Node> m_nodes;
  int32_t m_root = kNone;
  int32_t m_head = kNone;
  int32_t m_free = kNone;           // erased nodes, linked through `next`
  uint32_t m_random = 0x9e3779b9u;  // xorshift state: fixed seed, so runs repeat

  int32_t NewNode(uint32_t value);
  uint32_t NextPriority();
  void RotateUp(int32_t x);
  void ReplaceChild(int32_t parent, int32_t from, int32_t to);
};

}  // namespace kelvor2d_detail
