// An owning, singly linked chain of heap nodes with value semantics: the one
// container under the border's contours and the slice's vector blocks.
#pragma once

#include <cstdint>
#include <type_traits>
#include <utility>

#include "layer/chain.h"

// Owns nodes made by new and released by delete, linked through the node's
// private m_chainNext (node classes befriend MOwnedChain). Copying copies every
// node with its own copy constructor, which must leave m_chainNext null.
template <class Node>
class MOwnedChain {
 public:
  MOwnedChain() = default;
  // Deep copy; on std::bad_alloc the partial copy is released.
  MOwnedChain(const MOwnedChain& other) : MOwnedChain() { AppendCopiesOf(other); }
  MOwnedChain(MOwnedChain&& other) noexcept { Swap(other); }
  MOwnedChain& operator=(const MOwnedChain& other) {
    if (this != &other) {
      MOwnedChain copy(other);
      Swap(copy);
    }
    return *this;
  }
  MOwnedChain& operator=(MOwnedChain&& other) noexcept {
    if (this != &other) {
      MakeEmpty();
      Swap(other);
    }
    return *this;
  }
  ~MOwnedChain() { MakeEmpty(); }

  Node* First() { return m_first; }
  const Node* First() const { return m_first; }
  Node* Last() { return m_last; }
  const Node* Last() const { return m_last; }
  uint32_t Count() const { return m_count; }

  static Node* Next(Node* node) { return node->m_chainNext; }
  static const Node* Next(const Node* node) { return node->m_chainNext; }

  // Adopts node (not in any chain) behind the last one; returns it.
  Node* AddAtEnd(Node* node) {
    node->m_chainNext = nullptr;
    if (m_last == nullptr) {
      m_first = node;
    } else {
      m_last->m_chainNext = node;
    }
    m_last = node;
    ++m_count;
    return node;
  }

  // Adopts node (not in any chain) before the first one; returns it.
  Node* AddAtFront(Node* node) {
    node->m_chainNext = m_first;
    m_first = node;
    if (m_last == nullptr)
      m_last = node;
    ++m_count;
    return node;
  }

  // Deletes node and returns its successor; null (and nothing deleted) when
  // node is null or not in this chain.
  Node* Remove(Node* node) {
    const auto unlinked =
        kelvor2d_detail::UnlinkFromChain(m_first, node, [](Node* n) -> Node*& { return n->m_chainNext; });
    if (!unlinked.found)
      return nullptr;
    if (m_last == node)
      m_last = unlinked.previous;
    --m_count;
    delete node;
    return unlinked.successor;
  }

  // Deletes every node.
  void MakeEmpty() {
    Node* node = m_first;
    while (node != nullptr) {
      Node* next = node->m_chainNext;
      delete node;
      node = next;
    }
    m_first = nullptr;
    m_last = nullptr;
    m_count = 0;
  }

  void Swap(MOwnedChain& other) noexcept {
    std::swap(m_first, other.m_first);
    std::swap(m_last, other.m_last);
    std::swap(m_count, other.m_count);
  }

  // Appends a copy of every node of other, in order.
  void AppendCopiesOf(const MOwnedChain& other) {
    for (const Node* node = other.m_first; node != nullptr; node = node->m_chainNext)
      AddAtEnd(new Node(*node));
  }

 private:
  Node* m_first = nullptr;  // head, null when empty
  Node* m_last = nullptr;   // node whose m_chainNext is null, null when empty
  uint32_t m_count = 0;     // number of nodes
};

// Forward iterator over a chain by the nodes' own "next" accessor; end is null.
template <class Node>
class MChainIterator {
 public:
  explicit MChainIterator(Node* node) : m_node(node) {}
  Node& operator*() const { return *m_node; }
  Node* operator->() const { return m_node; }
  MChainIterator& operator++() {
    m_node = MOwnedChain<std::remove_const_t<Node>>::Next(m_node);
    return *this;
  }
  bool operator==(const MChainIterator& other) const { return m_node == other.m_node; }
  bool operator!=(const MChainIterator& other) const { return m_node != other.m_node; }

 private:
  Node* m_node;  // current node, null at the end
};
