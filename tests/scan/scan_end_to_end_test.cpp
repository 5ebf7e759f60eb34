// A layer with holes and an island, scan-converted along both axes: every
// column's crossings must pair into runs of material that end on contour edges.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/tables.h"

using testing_support::Circle;
using testing_support::Columns;
using testing_support::InsideEvenOdd;
using testing_support::NewContour;
using testing_support::Rectangle;

namespace {

using Ring = std::vector<MMPoint2d<long>>;

// Plate 0..1000 (clockwise) with a round hole, a square hole, a diamond hole
// whose corners meet a 50-unit grid, and a round hole holding an island.
void BuildPlate(CONTOUR_LAYER& layer) {
  layer.AddContourAtEnd(NewContour(Rectangle(0, 0, 1000, 1000, true)));
  layer.AddContourAtEnd(NewContour(Circle(300, 300, 150, 40, false)));
  layer.AddContourAtEnd(NewContour(Rectangle(550, 100, 900, 450, false)));
  layer.AddContourAtEnd(NewContour(Ring{{50, 800}, {150, 700}, {250, 800}, {150, 900}}));
  layer.AddContourAtEnd(NewContour(Circle(600, 720, 220, 57, false)));
  layer.AddContourAtEnd(NewContour(Circle(620, 700, 90, 31, true)));
  layer.BEPAAL_EXTREMA();
}

struct Axis {
  bool alongX;
  int32_t Primary(const MMPoint2d<long>& p) const { return alongX ? p.x : p.y; }
  int32_t Secondary(const MMPoint2d<long>& p) const { return alongX ? p.y : p.x; }
  bool Inside(const CONTOUR_LAYER& layer, double position, double value) const {
    return alongX ? InsideEvenOdd(layer, position, value) : InsideEvenOdd(layer, value, position);
  }
};

// Calls f(from, to) for every edge of every closed contour.
template <class F>
void ForEachEdge(const CONTOUR_LAYER& layer, F f) {
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    for (int32_t i = 0; i < c->NumPoints; ++i)
      f(c->Points[i], c->Points[(i + 1) % c->NumPoints]);
  }
}

// True when some edge crosses the column at `position` within rounding of `value`.
bool LiesOnAnEdge(const CONTOUR_LAYER& layer, const Axis& axis, int32_t position, int32_t value) {
  bool found = false;
  ForEachEdge(layer, [&](const MMPoint2d<long>& a, const MMPoint2d<long>& b) {
    const double p0 = axis.Primary(a), p1 = axis.Primary(b), s0 = axis.Secondary(a), s1 = axis.Secondary(b);
    if (p0 == p1 || position < std::fmin(p0, p1) || position > std::fmax(p0, p1))
      return;
    const double s = s0 + (position - p0) * (s1 - s0) / (p1 - p0);
    if (std::fabs(s - value) <= 0.5 + 1e-3)
      found = true;
  });
  return found;
}

// True when an edge runs along the column: points on it are on the boundary.
bool ColumnHoldsAnEdge(const CONTOUR_LAYER& layer, const Axis& axis, int32_t position) {
  bool holds = false;
  ForEachEdge(layer, [&](const MMPoint2d<long>& a, const MMPoint2d<long>& b) {
    if (axis.Primary(a) == position && axis.Primary(b) == position)
      holds = true;
  });
  return holds;
}

bool InSomeRun(const std::vector<int32_t>& values, double v) {
  for (size_t i = 0; i + 1 < values.size(); i += 2) {
    if (values[i] <= v && v <= values[i + 1])
      return true;
  }
  return false;
}

bool NearACrossing(const std::vector<int32_t>& values, double v) {
  for (int32_t c : values) {
    if (std::fabs(c - v) < 1.0)
      return true;
  }
  return false;
}

void CheckColumn(const CONTOUR_LAYER& layer, const Axis& axis, const testing_support::TableColumn& column) {
  const int32_t position = column.position;
  const std::vector<int32_t>& values = column.crossings;
  const std::string where = std::string(axis.alongX ? "x" : "y") + " column " + std::to_string(position);
  ASSERT_EQ(values.size() % 2, 0u) << where;
  for (int32_t v : values)
    EXPECT_TRUE(LiesOnAnEdge(layer, axis, position, v)) << where << " crossing " << v;
  if (ColumnHoldsAnEdge(layer, axis, position))
    return;
  for (size_t i = 0; i + 1 < values.size(); i += 2) {
    if (values[i + 1] - values[i] < 2)
      continue;  // too thin to tell after rounding
    const double middle = (values[i] + values[i + 1]) / 2.0;
    EXPECT_TRUE(axis.Inside(layer, position, middle))
        << where << " run " << values[i] << ".." << values[i + 1];
  }
  // Every sample of material away from the crossings lies in a run, and the
  // other way round.
  for (double v = -5.5; v < 1010; v += 3.0) {
    if (NearACrossing(values, v))
      continue;
    EXPECT_EQ(axis.Inside(layer, position, v), InSomeRun(values, v)) << where << " at " << v;
  }
}

void CheckScan(CONTOUR_LAYER& layer, const Axis& axis, int32_t distance, int32_t shift, size_t columns) {
  const Columns result = testing_support::Scan(layer, testing_support::Grid(distance, shift), axis.alongX);
  ASSERT_EQ(result.size(), columns);
  for (const auto& column : result)
    CheckColumn(layer, axis, column);
}

}  // namespace

TEST(ScanEndToEnd, PlateWithHolesAndAnIslandPairsIntoMaterialRuns) {
  CONTOUR_LAYER layer;
  BuildPlate(layer);
  for (bool alongX : {true, false}) {
    CheckScan(layer, Axis{alongX}, 7, 3, 143);   // columns between the vertices
    CheckScan(layer, Axis{alongX}, 50, 0, 21);   // columns through vertices and along edges
    CheckScan(layer, Axis{alongX}, 1, 0, 1001);  // every grid line
  }
  layer.LEEG_LAAG();
}
