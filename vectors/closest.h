// Nearest-vector search on vector layers, and the squared distance from a
// point to a segment that the contour searches share.
#pragma once

#include <cfloat>
#include <cstdint>

#include "layer/values.h"
#include "layer/vector_layer.h"

// The largest float: the start value of every search, and the "distance" of a
// segment of zero length.
constexpr float kNoDistance = FLT_MAX;

// Squared distance, in float, from p to the segment a-b; nearEnd becomes true
// when b is strictly nearer to p than a. A segment of zero length gives
// kNoDistance (with nearEnd false), so it is never the nearest.
float KWADRAAT_AFSTAND_TOT_LIJNSTUK(int32_t px, int32_t py, int32_t ax, int32_t ay, int32_t bx, int32_t by,
                                    bool& nearEnd);

// The square root of a squared distance, with sqrtf, truncated to 32 bits; a
// root of 2^31 or more (kNoDistance among them) gives INT32_MIN.
int32_t TruncatedDistance(float squared);

// Nearest vector among the blocks of Type exactly 1: stores pointers into its
// Block and its nearEnd flag, and returns 1; 0 with the outputs untouched when
// there is none. No tolerance.
unsigned short ZOEK_DICHTSTE_LIJNSTUK_IN_VECTOR_LAYER(VECTOR_LAYER& layer, MMPoint2d<long> point,
                                                      int32_t*& x1, int32_t*& y1, int32_t*& x2, int32_t*& y2,
                                                      bool& nearEnd);
