// Nearest-vector search on vector layers.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/values.h"
#include "layer/vector_layer.h"

// Nearest vector among the blocks of Type exactly 1: stores pointers into its
// Block and its nearEnd flag, and returns 1; 0 with the outputs untouched when
// there is none. No tolerance.
KELVOR2D_API unsigned short ZOEK_DICHTSTE_LIJNSTUK_IN_VECTOR_LAYER(VECTOR_LAYER& layer, MMPoint2d<long> point,
                                                                   int32_t*& x1, int32_t*& y1, int32_t*& x2,
                                                                   int32_t*& y2, bool& nearEnd);
