// Cutting rings into simple rings: each line comes continued by the line
// bounding the same wedge of material; where a ring passes a point twice, the
// continuations of its two visits are swapped, which cuts it there in two.
#include <vector>

#include "sibling/boolean/pairing.h"

namespace kelvor2d_detail {

namespace {

void Link(M2dGraphLineNode* line, M2dGraphLineNode* next) {
  line->line.successor = next;
  next->line.predecessor = line;
}

struct RingWalk {
  std::vector<uint32_t> ringAt;              // ring that last entered each point
  std::vector<M2dGraphLineNode*> enteredBy;  // the line by which it entered
  uint32_t rings = 0;

  // Gives the closed loop from `first` to `last` a ring number of its own.
  void Relabel(M2dGraphLineNode* first, M2dGraphLineNode* last) {
    const uint32_t ring = ++rings;
    for (M2dGraphLineNode* n = first;; n = n->line.successor) {
      n->line.ringNumber = ring;
      ringAt[n->line.to->index] = ring;
      enteredBy[n->line.to->index] = n;
      if (n == last)
        break;
    }
  }

  void Walk(M2dGraphLineNode* start) {
    const uint32_t ring = ++rings;
    for (M2dGraphLineNode* n = start; n != nullptr && n->line.ringNumber == 0;) {
      n->line.ringNumber = ring;
      const uint32_t at = n->line.to->index;
      if (ringAt[at] != ring) {
        ringAt[at] = ring;
        enteredBy[at] = n;
        n = n->line.successor;
        continue;
      }
      // Second visit of the point: split off the loop since the first visit.
      M2dGraphLineNode* earlier = enteredBy[at];
      M2dGraphLineNode* loopStart = earlier->line.successor;
      Link(earlier, n->line.successor);
      Link(n, loopStart);
      Relabel(loopStart, n);
      ringAt[at] = ring;
      enteredBy[at] = earlier;
      n = earlier->line.successor;
    }
  }
};

}  // namespace

void SplitIntoSimpleRings(DLIST<M2dGraphLine>& lines, uint32_t numPoints) {
  RingWalk walk;
  walk.ringAt.assign(numPoints, 0);
  walk.enteredBy.assign(numPoints, nullptr);
  for (M2dGraphLineNode* n = lines.first; n != nullptr; n = n->next) {
    if (n->line.ringNumber == 0)
      walk.Walk(n);
  }
}

}  // namespace kelvor2d_detail
