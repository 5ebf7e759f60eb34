// Internal step of the boolean engine: one sweep over the fed lines that
// splits them at every crossing, touch and overlap and gives every piece the
// winding numbers on its two sides.
#pragma once

#include <cstdint>
#include <vector>

#include "sibling/boolean/graph.h"

namespace kelvor_boolean {

// A fed line on the grid: the segment a -> b whose pieces become edges.
struct Carrier {
  M2dGraphPoint* from;  // grid point a
  M2dGraphPoint* to;    // grid point b, not the same object as from
};

// A piece of one or more carriers between two graph points that meet no
// other carrier in between, with the winding numbers on its two sides.
// Coincident pieces of overlapping carriers give one edge.
struct Edge {
  M2dGraphPoint* start;  // the end that comes first in (x, y) order
  M2dGraphPoint* end;    // the other end
  int64_t directionX;    // grid direction of the carrier, oriented start -> end
  int64_t directionY;
  int32_t windingRight;  // winding number right of start -> end
  int32_t windingLeft;   // winding number left of start -> end
};

// Sweeps the carriers in (x, y) order: a Bentley-Ottmann sweep whose status is
// a treap, so the cost is O((n + k) log n) for n carriers and k crossings.
// Crossing points are made in `graph`. Only edges whose two sides differ in
// winding are returned; the region far away has winding 0 and crossing a
// carrier fed a -> b from its left to its right adds 1.
std::vector<Edge> SweepArrangement(M2dGraph& graph, const std::vector<Carrier>& carriers);

}  // namespace kelvor_boolean
