// The plain values everything stands on: grid points, boxes, layer extents and
// the two words for getting from floating point back to the grid.
#pragma once

#include <cmath>
#include <cstdint>
#include <utility>

#include "kelvor2d_export.h"

// A point of two coordinates. The integer instance MMPoint2d<long> holds two
// 32-bit coordinates whatever the width of the build's long, so that an array
// of n points is exactly 2n consecutive int32_t values, x first.
template <class T>
struct MMPoint2d {
  T x;
  T y;
};

template <>
struct MMPoint2d<long> {
  int32_t x;  // internal units
  int32_t y;  // internal units
};

template <class T>
inline bool operator==(const MMPoint2d<T>& a, const MMPoint2d<T>& b) {
  return a.x == b.x && a.y == b.y;
}
template <class T>
inline bool operator!=(const MMPoint2d<T>& a, const MMPoint2d<T>& b) {
  return !(a == b);
}

// A point in space with integer coordinates; its first two fields lie as in
// MMPoint2d<long>.
template <class T>
struct MMPoint3dIntegerTypes {
  T x;
  T y;
  T z;
};

template <>
struct MMPoint3dIntegerTypes<long> {
  int32_t x;
  int32_t y;
  int32_t z;
};

// A point in space; the float instance is read as a plain array of three floats.
template <class T>
struct MMPoint3d {
  T x;
  T y;
  T z;
};

static_assert(sizeof(MMPoint2d<long>) == 8, "a grid point is two 32-bit coordinates");
static_assert(sizeof(MMPoint3dIntegerTypes<long>) == 12, "a grid point in space is three 32-bit coordinates");
static_assert(sizeof(MMPoint3d<float>) == 12, "a float point in space is three floats");

// A rectangle. Callers may give the corners in any order; operations that take
// a BOX by reference normalise it in the caller's object (see NormaliseBox).
struct KELVOR2D_API BOX {
  int32_t MinX;
  int32_t MinY;
  int32_t MaxX;
  int32_t MaxY;
};

// Exchanges MinX/MaxX and MinY/MaxY where they are the wrong way round.
inline void NormaliseBox(BOX& box) {
  if (box.MinX > box.MaxX) {
    const int32_t t = box.MinX;
    box.MinX = box.MaxX;
    box.MaxX = t;
  }
  if (box.MinY > box.MaxY) {
    const int32_t t = box.MinY;
    box.MinY = box.MaxY;
    box.MaxY = t;
  }
}

// Sentinels of empty extents: the maxima below the minima, so growing by a
// point needs no test for emptiness.
constexpr int32_t kEmptyExtentMax = INT32_MIN;
constexpr int32_t kEmptyExtentMin = INT32_MAX;

// The extents record (MaxX, MaxY, MinX, MinY) heads CONTOUR_LAYER, VECTOR_LAYER
// and LAYER; these helpers work on any of them.
template <class Extents>
inline void ResetExtents(Extents& e) {
  e.MaxX = kEmptyExtentMax;
  e.MaxY = kEmptyExtentMax;
  e.MinX = kEmptyExtentMin;
  e.MinY = kEmptyExtentMin;
}

template <class Extents>
inline void GrowExtents(Extents& e, int32_t x, int32_t y) {
  if (x > e.MaxX)
    e.MaxX = x;
  if (y > e.MaxY)
    e.MaxY = y;
  if (x < e.MinX)
    e.MinX = x;
  if (y < e.MinY)
    e.MinY = y;
}

// Joins the extents of `from` into `into`: lesser minima, greater maxima.
template <class Into, class From>
inline void MergeExtents(Into& into, const From& from) {
  if (from.MinX < into.MinX)
    into.MinX = from.MinX;
  if (from.MinY < into.MinY)
    into.MinY = from.MinY;
  if (from.MaxX > into.MaxX)
    into.MaxX = from.MaxX;
  if (from.MaxY > into.MaxY)
    into.MaxY = from.MaxY;
}

// Exchanges the extents of two records.
template <class Extents>
inline void SwapExtents(Extents& a, Extents& b) {
  std::swap(a.MaxX, b.MaxX);
  std::swap(a.MaxY, b.MaxY);
  std::swap(a.MinX, b.MinX);
  std::swap(a.MinY, b.MinY);
}

template <class Extents>
inline bool HasExtents(const Extents& e) {
  return e.MaxX >= e.MinX && e.MaxY >= e.MinY;
}

// Rounded: to the nearest integer, halves away from zero.
inline int32_t Round(float v) {
  return static_cast<int32_t>(lroundf(v));
}
inline int32_t Round(double v) {
  return static_cast<int32_t>(lround(v));
}

// Truncated: toward zero.
inline int32_t Truncate(float v) {
  return static_cast<int32_t>(v);
}
inline int32_t Truncate(double v) {
  return static_cast<int32_t>(v);
}

// Half of an integer sum: signed division by 2, truncating toward zero.
inline int32_t Half(int32_t sum) {
  return sum / 2;
}

constexpr double kPi = 3.141592653589793;
constexpr float kDegreesToRadians = 0.017453292f;
