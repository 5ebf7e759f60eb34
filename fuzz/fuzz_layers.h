// What the scan, hatch and coverage fuzzers share: reading the input bytes as
// numbers and as contour layers over the whole 32-bit grid, and the checks.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "layer/contour_layer.h"
#include "layer/vector_layer.h"

namespace fuzz_layers {

inline void Check(bool condition) {
  if (!condition)
    __builtin_trap();
}

// The input bytes, read front to back; zeros once they run out.
class FuzzInput {
 public:
  FuzzInput(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}
  uint8_t Byte() { return m_at < m_size ? m_data[m_at++] : 0; }
  // `bytes` (1 to 4) bytes, little-endian.
  uint32_t Word(int bytes) {
    uint32_t w = 0;
    for (int i = 0; i < bytes; ++i)
      w |= static_cast<uint32_t>(Byte()) << (8 * i);
    return w;
  }

 private:
  const uint8_t* m_data;
  size_t m_size;
  size_t m_at = 0;
};

// Coordinates lie strictly between the table sentinels.
constexpr int32_t kLeast = INT32_MIN + 1;
constexpr int32_t kGreatest = INT32_MAX - 1;

// One coordinate: a small grid, anywhere in the range, or packed at one of
// its ends; `mode` 4 lets each coordinate choose.
inline int32_t Coordinate(FuzzInput& in, uint8_t mode) {
  if (mode % 5 == 4)
    mode = in.Byte() % 4;
  switch (mode % 5) {
    case 0:
      return in.Byte();
    case 1:
      return std::max(kLeast, std::min(kGreatest, static_cast<int32_t>(in.Word(4))));
    case 2:
      return kGreatest - in.Byte();
    default:
      return kLeast + in.Byte();
  }
}

inline CONTOUR* NewRing(FuzzInput& in, uint8_t mode, int32_t divisor) {
  auto* c = new CONTOUR();
  c->NumPoints = 2 + in.Byte() % 7;
  c->Closed = 1;
  c->Outer = in.Byte() % 2;
  c->Points = static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * c->NumPoints));
  for (int32_t i = 0; i < c->NumPoints; ++i) {
    c->Points[i].x = Coordinate(in, mode) / divisor;
    c->Points[i].y = Coordinate(in, mode) / divisor;
  }
  return c;
}

// One to four closed rings of two to eight points, extents set; coordinates
// divided by `divisor`.
inline void ReadLayer(FuzzInput& in, CONTOUR_LAYER& layer, int32_t divisor = 1) {
  const uint8_t mode = in.Byte();
  const int rings = 1 + in.Byte() % 4;
  for (int r = 0; r < rings; ++r)
    layer.AddContourAtEnd(NewRing(in, mode, divisor));
  layer.BEPAAL_EXTREMA();
}

// A grid distance that gives the extent about `lines` lines (at least 1).
inline int32_t DistanceFor(int64_t extent, int lines) {
  return static_cast<int32_t>(std::max<int64_t>(1, std::min<int64_t>(INT32_MAX, extent / lines)));
}

// The layer's extent widened by `slack` on every side.
inline bool Inside(const CONTOUR_LAYER& layer, int32_t x, int32_t y, int64_t slack = 0) {
  return x >= layer.MinX - slack && x <= layer.MaxX + slack && y >= layer.MinY - slack &&
         y <= layer.MaxY + slack;
}

// Every vector of every block inside the layer's extent.
inline void CheckVectorsInside(const VECTOR_LAYER& vectors, const CONTOUR_LAYER& layer, int64_t slack = 0) {
  for (const VECTOR_BLOK* b = vectors.FirstBlock; b != nullptr; b = b->NextBlock) {
    for (int32_t i = 0; i + 1 < b->Size; i += 2)
      Check(Inside(layer, b->Block[i], b->Block[i + 1], slack));
  }
}

}  // namespace fuzz_layers
