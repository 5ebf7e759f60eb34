// The standard benchmark workloads, generated in code from fixed seeds so that
// figures compare across benchmarks and against other libraries run in the
// same process. Coordinates are internal units (1000 per mm).
#pragma once

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "layer/contour_layer.h"

namespace workloads {

using Ring = std::vector<MMPoint2d<long>>;
using Rings = std::vector<Ring>;

// A regular n-gon rounded to the grid, clockwise (y up) or counter-clockwise.
inline Ring RoundHole(double cx, double cy, double diameter, int n, bool clockwise) {
  Ring ring;
  ring.reserve(n);
  const double r = diameter / 2.0;
  for (int i = 0; i < n; ++i) {
    const double a = (clockwise ? -1.0 : 1.0) * 2.0 * 3.141592653589793 * i / n;
    ring.push_back({static_cast<int32_t>(std::lround(cx + r * std::cos(a))),
                    static_cast<int32_t>(std::lround(cy + r * std::sin(a)))});
  }
  return ring;
}

// A square plate [0, side]^2, clockwise, with holes x holes round 64-gon holes
// (counter-clockwise) of `diameter` centred on a grid of pitch side / holes.
inline Rings PlateWithHoles(int32_t side, int holes, double diameter, int32_t dx = 0, int32_t dy = 0) {
  Rings rings;
  rings.push_back({{dx, dy}, {dx, dy + side}, {dx + side, dy + side}, {dx + side, dy}});
  const double pitch = static_cast<double>(side) / holes;
  for (int i = 0; i < holes; ++i) {
    for (int j = 0; j < holes; ++j) {
      rings.push_back(RoundHole(dx + (i + 0.5) * pitch, dy + (j + 0.5) * pitch, diameter, 64, false));
    }
  }
  return rings;
}

// `plate`: 200 mm plate, 50 x 50 holes of 2 mm: 2,501 contours, 160,004 points.
inline Rings Plate() {
  return PlateWithHoles(200000, 50, 2000.0);
}
// `plate/4`: a quarter of the side, 25 x 25 holes of 1 mm (pitch 2 mm).
inline Rings PlateQuarter() {
  return PlateWithHoles(50000, 25, 1000.0);
}
// `plate-shifted`: `plate` moved by (1000, 1000), the second operand of plate booleans.
inline Rings PlateShifted() {
  return PlateWithHoles(200000, 50, 2000.0, 1000, 1000);
}
// `plate-raster`: 20 x 20 holes of 5 mm: 401 contours, 25,604 points.
inline Rings PlateRaster() {
  return PlateWithHoles(200000, 20, 5000.0);
}
// `square-holes-infill`: 100 mm square with 10 x 10 holes of 4 mm.
inline Rings SquareHolesInfill() {
  return PlateWithHoles(100000, 10, 4000.0);
}

// `star-N`: the two noisy stars of N vertices (clockwise), drawn one after the
// other from one generator seeded 42.
inline void Stars(int n, Ring& first, Ring& second) {
  std::mt19937 generator(42);
  std::uniform_real_distribution<double> u(0.9, 1.0);
  const double radius = 1e8;
  auto draw = [&](double cx, double cy, Ring& ring) {
    ring.clear();
    for (int i = 0; i < n; ++i) {
      const double a = -2.0 * 3.141592653589793 * i / n;
      const double r = radius * u(generator);
      ring.push_back({static_cast<int32_t>(std::lround(cx + r * std::cos(a))),
                      static_cast<int32_t>(std::lround(cy + r * std::sin(a)))});
    }
  };
  draw(0.0, 0.0, first);
  draw(2e7, 1e7, second);
}

// `random-N`: two heavily self-crossing polygons of N points uniform in
// [0, 800000] x [0, 600000], from one generator seeded 42.
inline void RandomPolygons(int n, Ring& first, Ring& second) {
  std::mt19937 generator(42);
  std::uniform_int_distribution<int32_t> ux(0, 800000);
  std::uniform_int_distribution<int32_t> uy(0, 600000);
  auto draw = [&](Ring& ring) {
    ring.clear();
    for (int i = 0; i < n; ++i) {
      const int32_t x = ux(generator);
      ring.push_back({x, uy(generator)});
    }
  };
  draw(first);
  draw(second);
}

inline size_t PointCount(const Rings& rings) {
  size_t n = 0;
  for (const Ring& r : rings)
    n += r.size();
  return n;
}

// Fills `layer` with closed contours of the rings (in order) and sets exact
// extents. The caller clears the layer.
inline void FillLayer(CONTOUR_LAYER& layer, const Rings& rings) {
  for (const Ring& ring : rings) {
    auto* c = new CONTOUR;
    c->SetPoints(ring.data(), static_cast<int32_t>(ring.size()));
    c->Closed = 1;
    layer.AddContourAtEnd(c);
  }
  layer.BEPAAL_EXTREMA();
}

}  // namespace workloads
