// Internal step of the boolean engine: choosing the continuation of every
// surviving line so that the rings that the lines form are simple.
#pragma once

#include <cstdint>

#include "sibling/boolean/graph.h"

namespace kelvor_boolean {

// Sets successor, predecessor and ringNumber of every line. Requires lines
// fresh from AddLine (not paired before) and as many lines leaving as
// entering every point (true of a filtered graph).
void PairIntoSimpleRings(DLIST<M2dGraphLine>& lines, uint32_t numPoints);

}  // namespace kelvor_boolean
