// Helpers for tests: build contours and layers from point lists, and release
// them. Header-only so that every test suite can use it.
#pragma once

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "layer/contour.h"
#include "layer/contour_layer.h"
#include "layer/vector_layer.h"
#include "rectangles.h"  // beside this header, for the benchmarks too

namespace testing_support {

// A heap contour (as a layer adopts them) with the given points and Closed.
inline CONTOUR* NewContour(std::initializer_list<MMPoint2d<long>> points, unsigned char closed = 1) {
  auto* c = new CONTOUR;
  std::vector<MMPoint2d<long>> v(points);
  c->SetPoints(v.data(), static_cast<int32_t>(v.size()));
  c->Closed = closed;
  return c;
}

inline CONTOUR* NewContour(const std::vector<MMPoint2d<long>>& v, unsigned char closed = 1) {
  auto* c = new CONTOUR;
  c->SetPoints(v.data(), static_cast<int32_t>(v.size()));
  c->Closed = closed;
  return c;
}

// A heap rectangle contour, Outer 1 when clockwise (y up), else 0 (a hole).
inline CONTOUR* NewRectangle(int32_t x0, int32_t y0, int32_t x1, int32_t y1, bool clockwise = true) {
  CONTOUR* c = NewContour(Rectangle(x0, y0, x1, y1, clockwise));
  c->Outer = clockwise ? 1 : 0;
  return c;
}

// Regular n-gon rounded to the grid; clockwise with y up when `clockwise`.
inline std::vector<MMPoint2d<long>> Circle(double cx, double cy, double r, int n, bool clockwise) {
  std::vector<MMPoint2d<long>> v;
  for (int i = 0; i < n; ++i) {
    const double a = (clockwise ? -1.0 : 1.0) * 2.0 * 3.141592653589793 * i / n;
    v.push_back({static_cast<int32_t>(std::lround(cx + r * std::cos(a))),
                 static_cast<int32_t>(std::lround(cy + r * std::sin(a)))});
  }
  return v;
}

// A plate 0..size with a grid of n x n square holes (counter-clockwise).
inline void AddPlateWithHoles(CONTOUR_LAYER& layer, int32_t size, int n) {
  layer.AddContourAtEnd(NewContour(Rectangle(0, 0, size, size, true)));
  const int32_t pitch = size / n;
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) {
      const int32_t x = i * pitch + pitch / 4;
      const int32_t y = j * pitch + pitch / 4;
      layer.AddContourAtEnd(NewContour(Rectangle(x, y, x + pitch / 2, y + pitch / 2, false)));
    }
  }
}

// The points of a contour as a vector, for comparisons.
inline std::vector<MMPoint2d<long>> PointsOf(const CONTOUR& c) {
  return std::vector<MMPoint2d<long>>(c.Points, c.Points + c.NumPoints);
}

// Signed area of all contours, positive for clockwise (y up), closing edge included.
inline double LayerArea(const CONTOUR_LAYER& layer) {
  double sum = 0.0;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    for (int32_t i = 0; i < c->NumPoints; ++i) {
      const MMPoint2d<long>& p = c->Points[i];
      const MMPoint2d<long>& q = c->Points[(i + 1) % c->NumPoints];
      sum += (double(q.x) - p.x) * (double(q.y) + p.y) * 0.5;
    }
  }
  return sum;
}

// Even-odd test of a point against all closed contours of a layer.
inline bool InsideEvenOdd(const CONTOUR_LAYER& layer, double x, double y) {
  bool inside = false;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    for (int32_t i = 0, j = c->NumPoints - 1; i < c->NumPoints; j = i++) {
      const double xi = c->Points[i].x, yi = c->Points[i].y;
      const double xj = c->Points[j].x, yj = c->Points[j].y;
      if ((yi > y) != (yj > y) && x < (xj - xi) * (y - yi) / (yj - yi) + xi)
        inside = !inside;
    }
  }
  return inside;
}

}  // namespace testing_support

inline bool operator==(const std::vector<MMPoint2d<long>>& a, const std::vector<MMPoint2d<long>>& b) {
  if (a.size() != b.size())
    return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i])
      return false;
  }
  return true;
}
