#include "bitmap/sweep.h"

#include <gtest/gtest.h>

#include <vector>

#include "sibling/units/internal_units.h"
#include "support/bitmap_builders.h"
#include "support/layer_builders.h"

namespace {

using testing_support::BitmapBorder;
using testing_support::MakeBorder;
using testing_support::PartProbe;
using testing_support::Rectangle;
using Points = std::vector<MMPoint2d<long>>;

// Opens the protected steps of the sweep to the tests.
class SweepProbe : public MContour2BitmapLineSweep {
 public:
  using MContour2BitmapLineSweep::_CreateBorderFromContours;
  // The points of every part, in the order of totalParts, and their signs.
  std::vector<std::vector<MContourHelperPoint>> PartPoints() const {
    std::vector<std::vector<MContourHelperPoint>> all;
    for (const auto& part : totalParts)
      all.push_back(PartProbe(part).List());
    return all;
  }
  std::vector<bool> Signs() const {
    std::vector<bool> signs;
    for (const auto& part : totalParts)
      signs.push_back(part.IsAddingMaterial());
    return signs;
  }
  // Width and height 6 over 60 units: ten units to a pixel.
  void InitialiseSix(BitmapBorder& border) { Initialise(6, 6, 60.0, 60.0, border); }
};

const Points kSquare = {{15, 15}, {15, 35}, {35, 35}, {35, 15}};  // clockwise, y up

TEST(Sweep, SquareGivesOneAddingAndOneRemovingPart) {
  BitmapBorder border = MakeBorder({kSquare});
  SweepProbe sweep;
  sweep.InitialiseSix(border);
  ASSERT_EQ(sweep.TotalSize(), 2u);
  const auto parts = sweep.PartPoints();
  const std::vector<MContourHelperPoint> adding = {{1.5, 1.5}, {1.5, 3.5}, {3.5, 3.5}};
  const std::vector<MContourHelperPoint> removing = {{1.5, 1.5}, {3.5, 1.5}, {3.5, 3.5}};
  EXPECT_EQ(parts[0], adding);
  EXPECT_EQ(parts[1], removing);
  EXPECT_EQ(sweep.Signs(), (std::vector<bool>{true, false}));
}

TEST(Sweep, RowsOfTheSquare) {
  BitmapBorder border = MakeBorder({kSquare});
  SweepProbe sweep;
  sweep.InitialiseSix(border);
  sweep.ZeroY();
  EXPECT_EQ(sweep.YPosition(), 1);
  EXPECT_EQ(sweep.size(), 2u);
  EXPECT_TRUE((*sweep.begin())->IsAddingMaterial());
  sweep.IncrementY();  // output row 1: the sweep stays on row 1
  EXPECT_EQ(sweep.YPosition(), 1);
  for (int i = 0; i < 3; ++i)
    sweep.IncrementY();
  EXPECT_EQ(sweep.YPosition(), 4);
  EXPECT_TRUE(sweep.empty());
  // A restart rebuilds the same state.
  sweep.ZeroY();
  EXPECT_EQ(sweep.YPosition(), 1);
  EXPECT_EQ(sweep.size(), 2u);
}

TEST(Sweep, TooFewPointsAddNothing) {
  BitmapBorder border = MakeBorder({{{0, 0}, {30, 30}}});
  SweepProbe sweep;
  sweep.InitialiseSix(border);
  EXPECT_TRUE(sweep.IsEmpty());
  sweep.ZeroY();
  EXPECT_EQ(sweep.YPosition(), INT32_MIN);
  CONTOUR* two = testing_support::NewContour({{0, 0}, {30, 30}});
  sweep.Initialise(6, 6, 60.0, 60.0, two, 1);
  EXPECT_TRUE(sweep.IsEmpty());
  two->Clear();
  delete two;
}

TEST(Sweep, ContoursBelowRowZero) {
  // Lowest point at pixel y -2.5: the rows below 0 are passed over.
  BitmapBorder below = MakeBorder({Rectangle(10, -25, 40, 25, true)});
  SweepProbe sweep;
  sweep.InitialiseSix(below);
  sweep.ZeroY();
  EXPECT_EQ(sweep.YPosition(), 0);
  ASSERT_EQ(sweep.size(), 2u);
  for (auto it = sweep.begin(); it != sweep.end(); ++it)
    EXPECT_EQ((*it)->GetWorkingY(), 0);
  // Wholly below row 0: nothing active at row 0.
  BitmapBorder under = MakeBorder({Rectangle(10, -45, 40, -25, true)});
  SweepProbe empty;
  empty.InitialiseSix(under);
  empty.ZeroY();
  EXPECT_EQ(empty.YPosition(), 0);
  EXPECT_TRUE(empty.empty());
}

TEST(Sweep, NotchInTheTopGivesFourParts) {
  // Clockwise: up the left side, down into the notch, up again, down the right.
  BitmapBorder border = MakeBorder({{{5, 5}, {5, 55}, {30, 25}, {55, 55}, {55, 5}}});
  SweepProbe sweep;
  sweep.InitialiseSix(border);
  ASSERT_EQ(sweep.TotalSize(), 4u);
  // By lowest point, then by the direction of leaving it.
  EXPECT_EQ(sweep.Signs(), (std::vector<bool>{true, false, false, true}));
  sweep.ZeroY();
  for (int row = 1; row < 3; ++row)
    sweep.IncrementY();
  ASSERT_EQ(sweep.YPosition(), 2);
  ASSERT_EQ(sweep.size(), 4u);
  // The two runs out of the notch's lowest point: the falling one (removing)
  // arrives from the upper left, the rising one leaves to the upper right.
  std::vector<bool> signs;
  for (auto it = sweep.begin(); it != sweep.end(); ++it)
    signs.push_back((*it)->IsAddingMaterial());
  EXPECT_EQ(signs, (std::vector<bool>{true, false, true, false}));
}

TEST(Sweep, ContoursStartingOnOneRowAreSortedTogether) {
  // Given right one first: the active list still runs left to right.
  BitmapBorder border = MakeBorder({Rectangle(32, 12, 52, 28, true), Rectangle(4, 14, 24, 24, true)});
  SweepProbe sweep;
  sweep.InitialiseSix(border);
  sweep.ZeroY();
  ASSERT_EQ(sweep.size(), 4u);
  double previous = -1e300;
  for (auto it = sweep.begin(); it != sweep.end(); ++it) {
    EXPECT_GE((*it)->DoubleLeft(), previous);
    previous = (*it)->DoubleLeft();
  }
  EXPECT_DOUBLE_EQ((*sweep.begin())->DoubleLeft(), 0.4);
  EXPECT_DOUBLE_EQ((*sweep.rbegin())->DoubleRight(), 5.2);
}

TEST(Sweep, BorderRingStartsAtItsLowestLeftmostPoint) {
  const Points ring = {{35, 35}, {35, 15}, {15, 15}, {15, 35}};
  BitmapBorder border = MakeBorder({ring});
  SweepProbe sweep;
  sweep.InitialiseSix(border);
  EXPECT_EQ(testing_support::RingPoints(*border.GetFirstContour()),
            (Points{{15, 15}, {15, 35}, {35, 35}, {35, 15}}));
}

TEST(Sweep, ContourFormDrawsEitherDirectionAsSolid) {
  for (bool clockwise : {true, false}) {
    CONTOUR* square = testing_support::NewContour(Rectangle(15, 15, 35, 35, clockwise));
    SweepProbe sweep;
    sweep.Initialise(6, 6, 60.0, 60.0, square, 1);
    ASSERT_EQ(sweep.TotalSize(), 2u) << "clockwise " << clockwise;
    sweep.ZeroY();
    // The left edge of the square is the adding part either way.
    EXPECT_TRUE((*sweep.begin())->IsAddingMaterial()) << "clockwise " << clockwise;
    EXPECT_FALSE((*sweep.rbegin())->IsAddingMaterial()) << "clockwise " << clockwise;
    square->Clear();
    delete square;
  }
}

TEST(Sweep, RepeatedPointsNeverHang) {
  // Equal points at the start, in the middle and closing the ring; and a ring
  // of equal points only, which adds no part.
  BitmapBorder border = MakeBorder({{{15, 15}, {15, 15}, {15, 35}, {35, 35}, {35, 35}, {35, 15}, {15, 15}},
                                    {{20, 20}, {20, 20}, {20, 20}}});
  SweepProbe sweep;
  sweep.InitialiseSix(border);
  ASSERT_EQ(sweep.TotalSize(), 2u);
  EXPECT_EQ(sweep.PartPoints()[0], (std::vector<MContourHelperPoint>{{1.5, 1.5}, {1.5, 3.5}, {3.5, 3.5}}));
  CONTOUR* same = testing_support::NewContour({{20, 20}, {20, 20}, {20, 20}, {20, 20}});
  sweep.Initialise(6, 6, 60.0, 60.0, same, 5);  // count beyond the chain stops at its end
  EXPECT_EQ(sweep.TotalSize(), 2u);
  same->Clear();
  delete same;
}

TEST(Sweep, ScaleUsesInternalUnitsAndBothSizes) {
  Kelvor::Common::MInternalUnits::Set(10.0);
  BitmapBorder border = MakeBorder({kSquare});
  SweepProbe sweep;
  sweep.Initialise(12, 6, 6.0, 3.0, border);  // 2 pixels per unit in x, 2 per unit in y
  const auto parts = sweep.PartPoints();
  Kelvor::Common::MInternalUnits::Set(1.0);
  ASSERT_EQ(parts.size(), 2u);
  EXPECT_DOUBLE_EQ(parts[0].front().x, 3.0);
  EXPECT_DOUBLE_EQ(parts[0].front().y, 3.0);
  EXPECT_DOUBLE_EQ(parts[0].back().x, 7.0);
  EXPECT_DOUBLE_EQ(parts[0].back().y, 7.0);
}

TEST(Sweep, BorderFromContoursFixesTheDirection) {
  CONTOUR_LAYER layer;
  layer.AddContourAtEnd(testing_support::NewContour(Rectangle(0, 0, 60, 60, false)));
  layer.AddContourAtEnd(testing_support::NewContour(Rectangle(15, 15, 35, 35, true)));
  layer.FirstContour->Outer = 1;
  layer.LastContour->Outer = 0;
  BitmapBorder border;
  SweepProbe sweep;
  sweep._CreateBorderFromContours(border, layer.FirstContour, 2);
  ASSERT_EQ(border.GetNumContours(), 2u);
  EXPECT_GT(border.GetFirstContour()->SurfaceAreaWithSignXY(), 0.0);
  EXPECT_TRUE(border.GetFirstContour()->GetIsOuterContour());
  EXPECT_LT(border.GetLastContour()->SurfaceAreaWithSignXY(), 0.0);
  EXPECT_FALSE(border.GetLastContour()->GetIsOuterContour());
  layer.LEEG_LAAG();
}

TEST(Sweep, EveryClosedRingGivesHalfAddingHalfRemoving) {
  const Points star = testing_support::Circle(30, 30, 25, 17, true);
  Points zigzag;
  for (int i = 0; i < 9; ++i)
    zigzag.push_back({5 + 5 * i, (i % 2) ? 40 : 10});
  zigzag.push_back({45, 55});
  zigzag.push_back({5, 55});
  for (const Points& ring : {star, zigzag}) {
    BitmapBorder border = MakeBorder({ring});
    SweepProbe sweep;
    sweep.InitialiseSix(border);
    const auto signs = sweep.Signs();
    int adding = 0;
    for (bool s : signs)
      adding += s ? 1 : 0;
    EXPECT_EQ(signs.size() % 2, 0u) << "ring of " << ring.size() << " points";
    EXPECT_EQ(adding * 2, static_cast<int>(signs.size())) << "ring of " << ring.size() << " points";
  }
}

}  // namespace
