// Tests of a segment against a point and against a box, in float: the squared
// distance the nearest-contour and nearest-vector searches compare, and the
// box test of the box selections on contours and vectors. Internal to the
// library's sources.
#pragma once

#include <cfloat>
#include <cstdint>

#include "layer/contour.h"
#include "layer/values.h"

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

// The strict box test of a segment p-q, in float: true when the line through
// the segment separates the corners of `box` (normalised) and the segment's
// range reaches into the box's range on both axes. A segment that only touches
// the box from outside, and one of zero length, never hits.
bool SegmentHitsBox(const BOX& box, int32_t px, int32_t py, int32_t qx, int32_t qy);

// True when an edge of the contour hits the box (SegmentHitsBox), edges tested
// in order; the closing edge only when Closed is not 0. False without points.
bool ContourHitsBox(const CONTOUR& contour, const BOX& box);
