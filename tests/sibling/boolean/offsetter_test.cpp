// Tests of the offsetter and of the engine's border functions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "sibling/boolean/border_functions.h"
#include "sibling/boolean/offsetter.h"
#include "support/rectangles.h"

namespace {

constexpr double kPi = 3.141592653589793;
using Points = std::vector<MMPoint2d<long>>;

void AddRing(M3dBorderLong& border, const Points& points, bool outer = true, bool closed = true) {
  M3dBorderContourLong* c = border.AddContourAtEnd();
  for (const auto& p : points)
    c->InsertAtEnd(p.x, p.y, nullptr);
  c->SetIsOuterContour(outer);
  c->SetIsClosed(closed);
}

double TotalArea(const M3dBorderLong& border) {
  double sum = 0.0;
  for (const M3dBorderContourLong& c : border)
    sum += c.SurfaceAreaWithSignXY();
  return sum;
}

// Largest and smallest distance of the result points from the segment a-b.
void DistancesFromSegment(const M3dBorderLong& border, double ax, double ay, double bx, double by,
                          double* least, double* most) {
  *least = 1e300;
  *most = 0.0;
  for (const M3dBorderContourLong& c : border) {
    for (const M3dBorderPointLong& p : c) {
      const double dx = bx - ax, dy = by - ay, len2 = dx * dx + dy * dy;
      const double t = len2 == 0.0 ? 0.0 : std::clamp(((p.x - ax) * dx + (p.y - ay) * dy) / len2, 0.0, 1.0);
      const double d = std::hypot(p.x - (ax + t * dx), p.y - (ay + t * dy));
      *least = std::min(*least, d);
      *most = std::max(*most, d);
    }
  }
}

TEST(Offsetter, GrowingAndShrinkingASquare) {
  const double r = 1000.0;
  M2dOffsetter grow;
  AddRing(grow.input, testing_support::Rectangle(0, 0, 10000, 10000));
  grow.CreateOffset(-1000);
  ASSERT_EQ(grow.result->GetNumContours(), 1u);
  const double expected = 10000.0 * 10000.0 + 4 * 10000.0 * r + kPi * r * r;
  // The arcs are chords inside the circle: at most half a unit of sag along them.
  EXPECT_LE(TotalArea(*grow.result), expected + 4 * r);
  EXPECT_GE(TotalArea(*grow.result), expected - 2.0 * kPi * r * 0.5 - 4 * r);
  EXPECT_TRUE(grow.result->GetFirstContour()->GetIsOuterContour());

  M2dOffsetter shrink;
  AddRing(shrink.input, testing_support::Rectangle(0, 0, 10000, 10000));
  shrink.CreateOffset(1000);
  EXPECT_DOUBLE_EQ(TotalArea(*shrink.result), 8000.0 * 8000.0);
  shrink.CreateOffset(6000);
  EXPECT_EQ(shrink.result->GetNumContours(), 0u);
  shrink.CreateOffset(0);
  EXPECT_DOUBLE_EQ(TotalArea(*shrink.result), 1e8);
  shrink.Clear();
  EXPECT_EQ(shrink.result->GetNumContours(), 0u);
}

TEST(Offsetter, RoundJoinsKeepTheChordErrorAndHolesShrink) {
  // A point grows into a disc whose points all lie at the radius (rounded),
  // no more of them than the half-unit chord rule needs.
  for (int32_t radius : {1, 3, 40, 100000, 1000000}) {
    M2dOffsetter disc;
    AddRing(disc.input, {{500, 700}});
    disc.CreateOffset(-radius);
    ASSERT_EQ(disc.result->GetNumContours(), 1u) << radius;
    double least, most;
    DistancesFromSegment(*disc.result, 500, 700, 500, 700, &least, &most);
    EXPECT_LE(most, radius + 0.75) << radius;
    EXPECT_GE(least, radius - 0.75) << radius;
    // The sag between neighbouring points stays within half a unit (plus rounding).
    const double area = TotalArea(*disc.result);
    EXPECT_GT(area, kPi * radius * radius - 2.0 * kPi * radius * 1.25) << radius;
    const double chordStep = 2.0 * std::acos(1.0 - 0.5 / radius);
    EXPECT_LE(disc.result->GetFirstContour()->GetNumPoints(), std::ceil(2.0 * kPi / chordStep)) << radius;
  }
  // Two points grow into a bar with round ends.
  M2dOffsetter bar;
  AddRing(bar.input, {{0, 0}, {1000, 0}});
  bar.CreateOffset(-100);
  double least, most;
  DistancesFromSegment(*bar.result, 0, 0, 1000, 0, &least, &most);
  EXPECT_NEAR(least, 100.0, 0.75);
  EXPECT_NEAR(most, 100.0, 0.75);
  // A plate with a hole: growing shrinks the hole, and a thin hole closes.
  M2dOffsetter plate;
  AddRing(plate.input, testing_support::Rectangle(0, 0, 1000, 1000));
  AddRing(plate.input, testing_support::Rectangle(400, 400, 600, 600, false), false);
  AddRing(plate.input, testing_support::Rectangle(100, 100, 110, 900, false), false);
  plate.CreateOffset(-20);
  ASSERT_EQ(plate.result->GetNumContours(), 2u);
  EXPECT_FALSE(plate.result->GetLastContour()->GetIsOuterContour());
  EXPECT_DOUBLE_EQ(plate.result->GetLastContour()->SurfaceAreaWithSignXY(), -160.0 * 160.0);
}

TEST(Offsetter, DegenerateContoursAddNothingUnlessGrowing) {
  M2dOffsetter offsetter;
  AddRing(offsetter.input, {});
  AddRing(offsetter.input, {{5, 5}}, false);
  AddRing(offsetter.input, {{0, 0}, {10, 0}, {20, 0}}, false);
  AddRing(offsetter.input, testing_support::Rectangle(0, 0, 10, 10), true, false);
  offsetter.CreateOffset(-5);
  EXPECT_EQ(offsetter.result->GetNumContours(), 0u);
  AddRing(offsetter.input, {{7, 7}, {7, 7}, {7, 7}});
  offsetter.CreateOffset(5);
  EXPECT_EQ(offsetter.result->GetNumContours(), 0u);
  offsetter.CreateOffset(-5);
  EXPECT_EQ(offsetter.result->GetNumContours(), 1u);
}

TEST(Offsetter, GrowingPastTheEndsOfTheRangeClamps) {
  M2dOffsetter offsetter;
  AddRing(offsetter.input,
          testing_support::Rectangle(INT32_MAX - 100, INT32_MIN, INT32_MAX, INT32_MIN + 100));
  offsetter.CreateOffset(-1000);
  ASSERT_EQ(offsetter.result->GetNumContours(), 1u);
  const M3dBorderContourLong* c = offsetter.result->GetFirstContour();
  EXPECT_GT(c->SurfaceAreaWithSignXY(), 100.0 * 100.0);
  bool touchesMax = false, touchesMin = false;
  for (const M3dBorderPointLong& p : *c) {
    touchesMax = touchesMax || p.x == INT32_MAX;
    touchesMin = touchesMin || p.y == INT32_MIN;
  }
  EXPECT_TRUE(touchesMax);
  EXPECT_TRUE(touchesMin);
}

// Squares of side 100 on a grid of pitch 1,000, clockwise, as outer contours.
void AddSmallSquares(M3dBorderLong& border, int columns, int rows) {
  for (int i = 0; i < columns; ++i) {
    for (int j = 0; j < rows; ++j)
      AddRing(border, testing_support::Rectangle(i * 1000, j * 1000, i * 1000 + 100, j * 1000 + 100));
  }
}

// Growing many contours far gives more raw offset points than are united at
// once: the contours are united group by group, and the result is still the
// one rounded disc around them all.
TEST(Offsetter, ContoursGrownFarAreUnitedInGroups) {
  const double r = 1e6;
  M2dOffsetter offsetter;
  AddSmallSquares(offsetter.input, 18, 10);  // about 570,000 raw offset points
  offsetter.CreateOffset(-1000000);
  ASSERT_EQ(offsetter.result->GetNumContours(), 1u);
  // Every point lies at the radius from the squares' box, within the chord
  // sag and two roundings.
  for (const M3dBorderPointLong& p : *offsetter.result->GetFirstContour()) {
    const double dx = std::max({0.0, 0.0 - p.x, p.x - 17100.0}),
                 dy = std::max({0.0, 0.0 - p.y, p.y - 9100.0});
    const double d = std::hypot(dx, dy);
    ASSERT_GT(d, r - 1.5) << p.x << "," << p.y;
    ASSERT_LT(d, r + 1.5) << p.x << "," << p.y;
  }
  const double width = 17100.0, height = 9100.0;
  const double expected = width * height + 2.0 * (width + height) * r + kPi * r * r;
  EXPECT_NEAR(TotalArea(*offsetter.result), expected, 2.0 * kPi * r * 1.5);
}

// A hole whose raw offset falls in a later group than its outer contour: that
// group winds negatively inside the hole, so uniting the groups would fill the
// hole; the offsetter unites all raw offsets at once instead and keeps it.
TEST(Offsetter, AHoleInALaterGroupStaysAHole) {
  M2dOffsetter offsetter;
  AddRing(offsetter.input, testing_support::Rectangle(-150000000, -150000000, 150000000, 150000000));
  AddSmallSquares(offsetter.input, 18, 10);
  AddRing(offsetter.input, testing_support::Rectangle(-100000000, -100000000, 100000000, 100000000, false),
          false);
  offsetter.CreateOffset(-1000000);
  ASSERT_EQ(offsetter.result->GetNumContours(), 3u);
  double holes = 0.0;
  for (const M3dBorderContourLong& c : *offsetter.result) {
    if (!c.GetIsOuterContour())
      holes += c.SurfaceAreaWithSignXY();
  }
  EXPECT_DOUBLE_EQ(holes, -198000000.0 * 198000000.0);
}

TEST(BorderFunctions, RemoveSelfIntersectionsKeepsEveryEnclosedArea) {
  M3dBorderLong border;
  AddRing(border, {{0, 0}, {10, 10}, {10, 0}, {0, 10}});
  AddRing(border, testing_support::Rectangle(20, 0, 30, 10));
  AddRing(border, testing_support::Rectangle(25, 5, 35, 15));
  AddRing(border, testing_support::Rectangle(50, 0, 60, 10), true, false);
  EXPECT_TRUE(AU::BooleanRemoveSelfIntersections(border));
  EXPECT_EQ(border.GetNumContours(), 3u);
  EXPECT_DOUBLE_EQ(TotalArea(border), 50.0 + 175.0);
  for (const M3dBorderContourLong& c : border) {
    EXPECT_TRUE(c.GetIsClosed());
    EXPECT_GT(c.SurfaceAreaWithSignXY(), 0.0);
    EXPECT_TRUE(c.GetIsOuterContour());
  }
}

TEST(BorderFunctions, OrientByNesting) {
  // Outer, hole, island in the hole, all given the wrong way and flagged wrongly.
  M3dBorderLong border;
  AddRing(border, testing_support::Rectangle(0, 0, 100, 100, false), false);
  AddRing(border, testing_support::Rectangle(10, 10, 90, 90, true), true);
  AddRing(border, testing_support::Rectangle(40, 40, 60, 60, false), false);
  AddRing(border, testing_support::Rectangle(200, 0, 300, 100, true), false);
  AddRing(border, {{250, 100}, {260, 50}, {240, 50}});  // a hole from a point on the top edge
  bool inverted = false;
  EXPECT_TRUE(AU::OrientBorder2D(border, &inverted));
  EXPECT_TRUE(inverted);
  const bool outer[] = {true, false, true, true, false};
  int i = 0;
  for (const M3dBorderContourLong& c : border) {
    EXPECT_EQ(c.GetIsOuterContour(), outer[i]) << i;
    EXPECT_EQ(c.SurfaceAreaWithSignXY() > 0.0, outer[i]) << i;
    ++i;
  }
  EXPECT_TRUE(AU::OrientBorder2D(border, &inverted));
  EXPECT_FALSE(inverted);
  EXPECT_TRUE(AU::OrientBorder2D(border, nullptr));
}

}  // namespace
