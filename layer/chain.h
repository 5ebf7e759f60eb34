// Unlinking a node from a singly linked chain: the one walk under the contour
// chain of a layer, the block chain of a vector layer and the owned chains of
// the sibling containers. Internal to the library's sources.
#pragma once

namespace kelvor2d_detail {

// What unlinking found: whether the node was in the chain, the node before it
// (null at the head) and the node that took its place (null at the end).
template <class Node>
struct Unlinked {
  bool found;
  Node* previous;
  Node* successor;
};

// Takes target out of the chain that starts at `first` and is linked through
// link(node), a reference to the node's next pointer. Nothing changes when
// target is null or not in the chain; the node itself is left as it was.
template <class Node, class Link>
Unlinked<Node> UnlinkFromChain(Node*& first, const Node* target, Link link) {
  Node* previous = nullptr;
  Node* walk = first;
  while (walk != nullptr && walk != target) {
    previous = walk;
    walk = link(walk);
  }
  if (walk == nullptr)
    return {false, nullptr, nullptr};
  Node* successor = link(walk);
  (previous == nullptr ? first : link(previous)) = successor;
  return {true, previous, successor};
}

}  // namespace kelvor2d_detail
