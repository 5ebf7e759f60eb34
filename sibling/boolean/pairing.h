// Internal step of the boolean engine: choosing the continuation of every
// surviving line so that the rings that the lines form are simple.
#pragma once

#include <cstdint>

#include "sibling/boolean/graph.h"

namespace kelvor2d_detail {

// Where a ring of successor links passes a point twice, swaps the
// continuations of the two visits, which cuts it there into two rings; sets
// ringNumber. Requires every line linked (successor and predecessor) to the
// line that bounds the same wedge of material at its end.
void SplitIntoSimpleRings(DLIST<M2dGraphLine>& lines, uint32_t numPoints);

}  // namespace kelvor2d_detail
