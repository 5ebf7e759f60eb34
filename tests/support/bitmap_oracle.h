// The exact area of material in each pixel of a bitmap, by clipping every ring
// to each pixel square it may touch. Rings are in internal units and must run
// with material on their right (outer rings clockwise with y up, holes
// counter-clockwise) and not cross. Used by the bitmap tests and benchmark.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "layer/values.h"

namespace testing_support {

class BitmapAreaOracle {
 public:
  // The same frame as the renderer: pixel x = (x / sizeX * width) / units.
  BitmapAreaOracle(int32_t width, int32_t height, double sizeX, double sizeY, double units)
      : m_width(width),
        m_height(height),
        m_sizeX(sizeX),
        m_sizeY(sizeY),
        m_units(units),
        m_area(static_cast<size_t>(width) * height, 0.0) {}

  void AddRing(const std::vector<MMPoint2d<long>>& ring) {
    std::vector<Pt> pixels;
    pixels.reserve(ring.size());
    double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
    for (const auto& p : ring) {
      const Pt q{(static_cast<double>(p.x) / m_sizeX * m_width) / m_units,
                 (static_cast<double>(p.y) / m_sizeY * m_height) / m_units};
      pixels.push_back(q);
      minX = std::min(minX, q.x), maxX = std::max(maxX, q.x);
      minY = std::min(minY, q.y), maxY = std::max(maxY, q.y);
    }
    const int32_t x0 = ClampColumn(std::floor(minX), m_width), x1 = ClampColumn(std::floor(maxX), m_width);
    const int32_t y0 = ClampColumn(std::floor(minY), m_height), y1 = ClampColumn(std::floor(maxY), m_height);
    if (maxX < 0.0 || maxY < 0.0 || minX > m_width || minY > m_height)
      return;
    for (int32_t y = y0; y <= y1; ++y) {
      for (int32_t x = x0; x <= x1; ++x)
        m_area[Index(x, y)] += ClippedArea(pixels, x, y);
    }
  }

  template <class Rings>
  void AddRings(const Rings& rings) {
    for (const auto& ring : rings)
      AddRing(ring);
  }

  // Material area inside pixel (x, y), 0 to 1.
  double Area(int32_t x, int32_t y) const { return m_area[Index(x, y)]; }
  // round(255 x area): the byte an exact renderer writes.
  int Expected(int32_t x, int32_t y) const {
    return static_cast<int>(std::lround(std::min(std::max(Area(x, y), 0.0), 1.0) * 255.0));
  }

 private:
  struct Pt {
    double x, y;
  };

  size_t Index(int32_t x, int32_t y) const { return static_cast<size_t>(y) * m_width + x; }
  static int32_t ClampColumn(double v, int32_t size) {
    return static_cast<int32_t>(std::min(std::max(v, 0.0), static_cast<double>(size - 1)));
  }

  // One Sutherland-Hodgman step: keeps the side where inside(p) holds.
  template <class Inside, class Cross>
  static void ClipBy(const std::vector<Pt>& in, std::vector<Pt>& out, Inside inside, Cross cross) {
    out.clear();
    for (size_t i = 0; i < in.size(); ++i) {
      const Pt& a = in[i];
      const Pt& b = in[(i + 1) % in.size()];
      const bool ia = inside(a), ib = inside(b);
      if (ia)
        out.push_back(a);
      if (ia != ib)
        out.push_back(cross(a, b));
    }
  }

  // Signed area (clockwise positive, y up) of the ring clipped to pixel (x, y).
  double ClippedArea(const std::vector<Pt>& ring, int32_t px, int32_t py) {
    const double l = px, r = px + 1.0, b = py, t = py + 1.0;
    auto atX = [](double x) {
      return [x](const Pt& p, const Pt& q) { return Pt{x, p.y + (x - p.x) / (q.x - p.x) * (q.y - p.y)}; };
    };
    auto atY = [](double y) {
      return [y](const Pt& p, const Pt& q) { return Pt{p.x + (y - p.y) / (q.y - p.y) * (q.x - p.x), y}; };
    };
    ClipBy(
        ring, m_a, [l](const Pt& p) { return p.x >= l; }, atX(l));
    ClipBy(
        m_a, m_b, [r](const Pt& p) { return p.x <= r; }, atX(r));
    ClipBy(
        m_b, m_a, [b](const Pt& p) { return p.y >= b; }, atY(b));
    ClipBy(
        m_a, m_b, [t](const Pt& p) { return p.y <= t; }, atY(t));
    double twice = 0.0;
    for (size_t i = 0; i < m_b.size(); ++i) {
      const Pt& p = m_b[i];
      const Pt& q = m_b[(i + 1) % m_b.size()];
      twice += q.x * p.y - p.x * q.y;
    }
    return twice * 0.5;
  }

  int32_t m_width, m_height;
  double m_sizeX, m_sizeY, m_units;
  std::vector<double> m_area;  // material area per pixel, row 0 first
  std::vector<Pt> m_a, m_b;    // clipping scratch
};

}  // namespace testing_support
