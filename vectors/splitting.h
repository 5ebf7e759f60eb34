// Division of a vector layer into two layers along a straight line; vectors
// that cross the line are cut at the crossing.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/vector_layer.h"

// Divides source (whose point vectors are removed) at the vertical line x:
// `below` gets what lies left of x, `rest` what lies at x or right of it.
// Both results must be empty; each gets one block per source block, same Type,
// possibly of Size 0, and the extents of the whole source.
KELVOR2D_API void DIVIDE_VECTORS_X(VECTOR_LAYER& source, VECTOR_LAYER& below, VECTOR_LAYER& rest, int32_t x);

// Divides source along the line through (x1, y1) and (x2, y2), sides decided
// in a rotated frame: `first` gets the high side (lower y for a line that is
// not vertical, points on the line included), `second` the low side. Results
// as for DIVIDE_VECTORS_X. Two equal line points give no line: then nothing is
// done at all (source and results untouched).
KELVOR2D_API void SNIJ_VECTOREN(VECTOR_LAYER& source, VECTOR_LAYER& first, VECTOR_LAYER& second, int32_t x1,
                                int32_t y1, int32_t x2, int32_t y2);
