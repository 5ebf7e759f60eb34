#include "sample_part.h"

#include <cmath>
#include <vector>

namespace {

using Ring = std::vector<MMPoint2d<long>>;

struct Mm {
  double x, y;
};

Ring ToGrid(const std::vector<Mm>& points, double unitsPerMm) {
  Ring ring;
  for (const Mm& p : points)
    ring.push_back({Round(p.x * unitsPerMm), Round(p.y * unitsPerMm)});
  return ring;
}

std::vector<Mm> CircleMm(double cx, double cy, double r, int n, bool clockwise) {
  std::vector<Mm> points;
  for (int i = 0; i < n; ++i) {
    const double a = (clockwise ? -1.0 : 1.0) * 2.0 * kPi * i / n;
    points.push_back({cx + r * std::cos(a), cy + r * std::sin(a)});
  }
  return points;
}

void AddRing(CONTOUR_LAYER& layer, const Ring& ring) {
  auto* c = new CONTOUR;
  c->SetPoints(ring.data(), static_cast<int32_t>(ring.size()));
  c->Closed = 1;
  layer.AddContourAtEnd(c);
}

}  // namespace

void BuildSamplePart(CONTOUR_LAYER& layer, double unitsPerMm) {
  // Concave outline, clockwise, with its first point doubled.
  AddRing(layer,
          ToGrid({{0, 0}, {0, 0}, {0, 40}, {25, 40}, {30, 30}, {35, 40}, {60, 40}, {60, 0}}, unitsPerMm));
  // Round hole given clockwise (the wrong way for a hole) and its island.
  AddRing(layer, ToGrid(CircleMm(13, 14, 8, 72, true), unitsPerMm));
  AddRing(layer, ToGrid(CircleMm(13, 14, 3.5, 48, false), unitsPerMm));
  // Rectangular hole with a thin rib (0.1 mm, between two lines of the 0.4 mm grid) standing in it.
  AddRing(layer, ToGrid({{38, 6}, {56, 6}, {56, 30}, {38, 30}}, unitsPerMm));
  AddRing(layer, ToGrid({{47.25, 9}, {47.25, 27}, {47.35, 27}, {47.35, 9}}, unitsPerMm));
  // A row of small holes under the notch.
  for (int i = 0; i < 4; ++i)
    AddRing(layer, ToGrid(CircleMm(25.5 + 3.0 * i, 6, 1.0, 24, false), unitsPerMm));
  layer.BEPAAL_EXTREMA();
}

void BuildSecondShape(CONTOUR_LAYER& layer, double unitsPerMm) {
  AddRing(layer, ToGrid({{-5, 17}, {-5, 22}, {65, 22}, {65, 17}}, unitsPerMm));
  layer.BEPAAL_EXTREMA();
}
