// Affine moves of grid coordinates shared by the layer transforms: rotation
// and the scale of one axis about a centre, and the matching updates of a
// layer's extents
// (MaxX, MaxY, MinX, MinY of CONTOUR_LAYER, VECTOR_LAYER, LAYER). Internal to
// the library's sources.
#pragma once

#include <cmath>
#include <cstdint>

#include "geometry/grid_arithmetic.h"
#include "layer/values.h"

namespace kelvor2d_detail {

// Rotation by an angle in degrees (counter-clockwise, y up) about a centre,
// in float, rounded back to the grid.
struct GridRotation {
  float cosine;            // cosf of the angle
  float sine;              // sinf of the angle
  MMPoint2d<long> centre;  // grid centre
  // The turned point; differences from the centre taken in 32 bits.
  MMPoint2d<long> operator()(int32_t x, int32_t y) const {
    const float dx = static_cast<float>(Sub32(x, centre.x));
    const float dy = static_cast<float>(Sub32(y, centre.y));
    return {Round(dx * cosine - dy * sine + static_cast<float>(centre.x)),
            Round(dy * cosine + dx * sine + static_cast<float>(centre.y))};
  }
};

// The angle is converted with the float factor kDegreesToRadians.
inline GridRotation MakeGridRotation(MMPoint2d<long> centre, float degrees) {
  const float radians = degrees * kDegreesToRadians;
  return {cosf(radians), sinf(radians), centre};
}

// Scale of one axis about a centre: v * scale + (1 - scale) * centre, in
// float, truncated (clamped to the 32-bit range, NaN to 0).
struct AxisScale {
  float scale;   // factor
  float offset;  // (1 - scale) * centre
  int32_t operator()(int32_t v) const { return TruncateClamped(static_cast<float>(v) * scale + offset); }
};

inline AxisScale MakeAxisScale(int32_t centre, float scale) {
  return {scale, (1.0f - scale) * static_cast<float>(centre)};
}

// Reflection of one axis in the line through `centre`: v := 2 centre - v,
// 32-bit arithmetic.
inline int32_t Reflect(int32_t v, int32_t centre) {
  return Sub32(Mul32(2, centre), v);
}

// Moves the extents by (dx, dy), 32-bit sums.
template <class Extents>
void TranslateExtents(Extents& e, int32_t dx, int32_t dy) {
  e.MinX = Add32(e.MinX, dx);
  e.MaxX = Add32(e.MaxX, dx);
  e.MinY = Add32(e.MinY, dy);
  e.MaxY = Add32(e.MaxY, dy);
}

// Each extent through its axis's scale; a negative scale leaves them crossed.
template <class Extents>
void ScaleExtents(Extents& e, const AxisScale& x, const AxisScale& y) {
  e.MinX = x(e.MinX);
  e.MaxX = x(e.MaxX);
  e.MinY = y(e.MinY);
  e.MaxY = y(e.MaxY);
}

// Reflects the extents of one axis (pointers to the Min and Max members);
// minimum and maximum change places through the formula.
template <class Extents>
void ReflectExtents(Extents& e, int32_t Extents::*min, int32_t Extents::*max, int32_t centre) {
  const int32_t oldMin = e.*min;
  e.*min = Reflect(e.*max, centre);
  e.*max = Reflect(oldMin, centre);
}

}  // namespace kelvor2d_detail
