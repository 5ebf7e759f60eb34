// Internal steps of the boolean engine: splitting the fed lines into edges
// that meet only at their ends, and the sweep that gives each edge the
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
  int32_t minX;         // bounding box of a-b
  int32_t minY;
  int32_t maxX;
  int32_t maxY;
  int32_t fromX;  // coordinates of from and to, so that pair tests read no point
  int32_t fromY;
  int32_t toX;
  int32_t toY;
};

// The carrier from -> to with its box.
Carrier MakeCarrier(M2dGraphPoint* from, M2dGraphPoint* to);

// A piece of one or more carriers between two graph points, with the net
// number of fed lines running lo -> hi (those running hi -> lo count -1).
struct Edge {
  M2dGraphPoint* lo;  // end of lower point index
  M2dGraphPoint* hi;  // end of higher point index
  int32_t anchorX;    // a grid point of the carrier line
  int32_t anchorY;
  int64_t directionX;  // grid direction of the carrier, oriented lo -> hi
  int64_t directionY;
  int32_t multiplicity;  // net fed lines lo -> hi; never 0 after splitting
  int32_t windingRight;  // winding number right of lo -> hi
  int32_t windingLeft;   // winding number left of lo -> hi
};

// Splits the carriers at every proper crossing, every end that touches
// another carrier and every overlap; merges coincident pieces. Crossing
// points are made in `graph`.
std::vector<Edge> SplitIntoEdges(M2dGraph& graph, const std::vector<Carrier>& carriers);

// Fills windingRight and windingLeft of every edge by a sweep in x; the
// region far away has winding 0 and crossing an edge from its left to its
// right adds its multiplicity.
void ComputeWindings(std::vector<Edge>& edges, uint32_t numPoints);

}  // namespace kelvor_boolean
