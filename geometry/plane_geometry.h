// Plane geometry on grid points: crossings of lines and segments, the side of
// a line on which a point lies, distances and the angle of a point on a
// circle. Most of it works in 32-bit floats on integer input; that precision
// and the rounding back to the grid are part of each result. No state.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/values.h"

// Slope used as the marker of a vertical line: the greatest float.
constexpr float kVerticalSlope = 3.4028235e38f;

// Crossing of the endless lines ab and cd, rounded to the grid. (0,0) when the
// lines are parallel, equal, or both vertical; (0,0) also stands for none.
KELVOR2D_API MMPoint2d<long> SNIJPUNT_TWEE_RECHTEN(MMPoint2d<long> a, MMPoint2d<long> b, MMPoint2d<long> c,
                                                   MMPoint2d<long> d);

// Crossing of the segments ab (ends excluded) and cd (ends included) into
// `result`; (0,0) for none. A test is skipped on an axis where a segment has
// no extent.
KELVOR2D_API void SNIJDING(MMPoint2d<long>& result, MMPoint2d<long> a, MMPoint2d<long> b, MMPoint2d<long> c,
                           MMPoint2d<long> d);

// True when the directed segments ab and cd do not point the same way; slopes
// count as equal when they differ by no more than |slope of ab|.
KELVOR2D_API bool RICHTINGS_COEFF_ONGELIJK(MMPoint2d<long> a, MMPoint2d<long> b, MMPoint2d<long> c,
                                           MMPoint2d<long> d);

// Side of p against the line ab (y up): 1 above (right of a vertical line),
// 0 within half a unit, -1 below (left), 10 when a equals b.
KELVOR2D_API int16_t LIGGING_PUNT_TOV_XY_RECHTE(MMPoint2d<long> a, MMPoint2d<long> b, MMPoint2d<long> p);

// Line through (x1,y1),(x2,y2) as y = a x + b (swapped false) or x = a y + b
// (swapped true), so that |a| <= 1; angle = atan2f(dy, dx) in radians.
// Two equal points give the line x = x1 (a 0, b x1, swapped true, angle 0).
KELVOR2D_API void BEREKEN_RECHTE(int32_t x1, int32_t y1, int32_t x2, int32_t y2, float& a, float& b,
                                 float& angle, bool& swapped);

// Position of (x,y) against a line of BEREKEN_RECHTE, unrounded: 1 when the
// line's value exceeds the point's coordinate, 0 equal, -1 less. `angle` is
// not read.
KELVOR2D_API int16_t LIGGING_PUNT(float a, float b, float angle, bool swapped, int32_t x, int32_t y);

// Euclidean distance, differences taken in double.
KELVOR2D_API double AFSTAND(MMPoint2d<long> a, MMPoint2d<long> b);

// Distance in x and y, differences taken in 32 bits; z is not read.
KELVOR2D_API double XY_AFSTAND(MMPoint2d<long>& a, MMPoint2d<long>& b);
KELVOR2D_API double XY_AFSTAND(MMPoint3dIntegerTypes<long>& a, MMPoint3dIntegerTypes<long>& b);
KELVOR2D_API double XY_AFSTAND(MMPoint3dIntegerTypes<long>* a, MMPoint3dIntegerTypes<long>* b);

// Angle in radians, -pi..pi, of `point` on the circle of `radius` around
// `centre`; negative below the centre. Radius 0 gives 0.
KELVOR2D_API double BEREKEN_HOEK_XY(MMPoint3dIntegerTypes<long>& centre, MMPoint3dIntegerTypes<long>& point,
                                    double radius);

// 1 when p lies on the line ab in space to a tolerance of 1e-5 relative to
// the x extent, else 0; always 0 for a line without extent along x, y or z.
KELVOR2D_API char PUNT_OP_LIJN(MMPoint3dIntegerTypes<long>& a, MMPoint3dIntegerTypes<long>& b,
                               MMPoint3dIntegerTypes<long>& p);

// Distance from p to the segment ab; each argument a pair x, y.
KELVOR2D_API float DISTANCE_POINT_TO_LINE_SEGMENT_2D(const float* p, const float* a, const float* b);

// Foot of the perpendicular from p on the line ab into result; pairs x, y.
KELVOR2D_API void PROJECTION_2D(float* result, const float* p, const float* a, const float* b);

// Middle of two or three points: 32-bit coordinate sums divided by 2 or 3,
// truncated toward zero.
KELVOR2D_API void MIDDLE(MMPoint3dIntegerTypes<long>& result, MMPoint3dIntegerTypes<long>* p,
                         MMPoint3dIntegerTypes<long>* q);
KELVOR2D_API void MIDDLE(MMPoint3dIntegerTypes<long>& result, MMPoint3dIntegerTypes<long>* p,
                         MMPoint3dIntegerTypes<long>* q, MMPoint3dIntegerTypes<long>* r);
