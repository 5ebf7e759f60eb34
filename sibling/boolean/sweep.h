// Internal step of the boolean engine: one sweep over the fed lines that
// splits them at every crossing, touch and overlap and gives every piece the
// winding numbers on its two sides.
#pragma once

#include <cstdint>
#include <vector>

#include "sibling/boolean/graph.h"

namespace kelvor_boolean {

// A piece of one or more fed lines between two graph points that meets no
// other fed line in between, with the winding numbers on its two sides.
// Coincident pieces of overlapping lines give one edge.
struct Edge {
  M2dGraphPoint* start;  // the end that comes first in (x, y) order
  M2dGraphPoint* end;    // the other end
  int64_t directionX;    // grid direction of the fed line, oriented start -> end
  int64_t directionY;
  int32_t windingRight;  // winding number right of start -> end
  int32_t windingLeft;   // winding number left of start -> end
};

// Receives what the sweep makes.
class EdgeSink {
 public:
  // Called once the fed lines have been read, before the first edge: the
  // lines may be cleared now.
  virtual void LinesTaken() = 0;
  // Called for every edge whose two sides differ in winding, in sweep order.
  virtual void Take(const Edge& edge) = 0;

 protected:
  ~EdgeSink() = default;
};

// Sweeps the lines of the graph (lines of zero length are skipped) in (x, y)
// order: a Bentley-Ottmann sweep whose status is a treap, so the cost is
// O((n + k) log n) for n lines and k crossings. Crossing points are made in
// `graph`. The region far away has winding 0, and crossing a line fed a -> b
// from its left to its right adds 1.
void SweepArrangement(M2dGraph& graph, EdgeSink& sink);

}  // namespace kelvor_boolean
