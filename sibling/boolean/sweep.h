// Internal step of the boolean engine: one sweep over the fed lines that
// splits them at every crossing, touch and overlap and gives every piece the
// winding numbers on its two sides.
#pragma once

#include <cstdint>

#include "sibling/boolean/graph.h"

namespace kelvor2d_detail {

// Receives what the sweep makes: a piece is a part of one or more fed lines
// between two graph points that meets no other fed line in between
// (coincident pieces of overlapping lines are one piece).
class PieceSink {
 public:
  // Called once the fed lines have been read, before the first piece: the
  // lines may be cleared now.
  virtual void LinesTaken() = 0;
  // True when a piece with these winding numbers right and left of its sense
  // is kept. Only kept pieces make lines, and only points where a kept piece
  // begins or ends are made in the graph.
  virtual bool Keeps(int32_t windingRight, int32_t windingLeft) = 0;
  // A kept piece begins at `start` (its end that comes first in (x, y) order)
  // and runs in the grid direction (dx, dy), with these winding numbers right
  // and left of that sense. Returns the line made for it, with `start` as one
  // end and the other end still null.
  virtual M2dGraphLineNode* Begin(M2dGraphPoint* start, int64_t dx, int64_t dy, int32_t windingRight,
                                  int32_t windingLeft) = 0;
  // The piece of a line from Begin ends at `end`.
  virtual void End(M2dGraphLineNode* line, M2dGraphPoint* end) = 0;

 protected:
  ~PieceSink() = default;
};

// Sweeps the lines of the graph (lines of zero length are skipped) in (x, y)
// order: a Bentley-Ottmann sweep whose status is a treap, so the cost is
// O((n + k) log n) for n lines and k crossings. A crossing is held by the
// sweep until it is swept, and made a point of `graph` only when a kept piece
// begins or ends there, so the memory follows the lines, the crossings ahead
// of the sweep and the kept pieces, not all crossings. The region far away has winding 0, and crossing a line
// fed a -> b from its left to its right adds 1. At every point, each kept line arriving there gets as
// successor the first kept line leaving it counter-clockwise from the way back: the line that bounds the same
// wedge of material.
void SweepArrangement(M2dGraph& graph, PieceSink& sink);

}  // namespace kelvor2d_detail
