#include "bitmap/sweep.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "support/bitmap_builders.h"
#include "support/border_builders.h"
#include "support/layer_builders.h"

namespace {

using testing_support::BitmapBorder;
using testing_support::MakeBorder;
using testing_support::NewContour;
using testing_support::PartProbe;
using testing_support::Rectangle;
using testing_support::XY;
using Points = std::vector<MMPoint2d<long>>;
using Signs = std::vector<bool>;

// Opens the parts of the sweep to the tests; six pixels square over 60 units,
// ten units to a pixel.
class SweepProbe : public MContour2BitmapLineSweep {
 public:
  explicit SweepProbe(BitmapBorder border = {}) : m_border(std::move(border)) {
    Initialise(6, 6, 60.0, 60.0, m_border);
  }
  // The points of every part, in the order of totalParts.
  std::vector<std::vector<MContourHelperPoint>> PartPoints() const {
    std::vector<std::vector<MContourHelperPoint>> all;
    for (const auto& part : totalParts)
      all.push_back(PartProbe(part).List());
    return all;
  }
  Signs TotalSigns() const {
    Signs signs;
    for (const auto& part : totalParts)
      signs.push_back(part.IsAddingMaterial());
    return signs;
  }
  // The signs of the active parts, left to right.
  Signs ActiveSigns() {
    Signs signs;
    for (auto it = begin(); it != end(); ++it)
      signs.push_back((*it)->IsAddingMaterial());
    return signs;
  }
  void Up(int rows) {
    for (int i = 0; i < rows; ++i)
      IncrementY();
  }
  BitmapBorder m_border;
};

TEST(Sweep, SquareGivesOneAddingAndOneRemovingPartOverRowsOneToThree) {
  // Given from its upper right corner: the ring is restarted at its lowest leftmost point.
  SweepProbe sweep(MakeBorder({{{35, 35}, {35, 15}, {15, 15}, {15, 35}}}));
  EXPECT_EQ(testing_support::RingOf(*sweep.m_border.GetFirstContour()),
            (std::vector<XY>{{15, 15}, {15, 35}, {35, 35}, {35, 15}}));
  const auto parts = sweep.PartPoints();
  ASSERT_EQ(parts.size(), 2u);
  EXPECT_EQ(parts[0], (std::vector<MContourHelperPoint>{{1.5, 1.5}, {1.5, 3.5}, {3.5, 3.5}}));
  EXPECT_EQ(parts[1], (std::vector<MContourHelperPoint>{{1.5, 1.5}, {3.5, 1.5}, {3.5, 3.5}}));
  EXPECT_EQ(sweep.TotalSigns(), (Signs{true, false}));
  for (int restart = 0; restart < 2; ++restart) {  // a restart rebuilds the same state
    sweep.ZeroY();
    EXPECT_EQ(sweep.YPosition(), 1) << "restart " << restart;
    EXPECT_EQ(sweep.ActiveSigns(), (Signs{true, false})) << "restart " << restart;
    sweep.Up(1);  // output row 1: the sweep stays on row 1
    EXPECT_EQ(sweep.YPosition(), 1);
    sweep.Up(3);
    EXPECT_EQ(sweep.YPosition(), 4);
    EXPECT_TRUE(sweep.empty());
  }
}

TEST(Sweep, NotchInTheTopGivesFourParts) {
  // Clockwise: up the left side, down into the notch, up again, down the right.
  SweepProbe sweep(MakeBorder({{{5, 5}, {5, 55}, {30, 25}, {55, 55}, {55, 5}}}));
  // By lowest point, then by the direction of leaving it.
  EXPECT_EQ(sweep.TotalSigns(), (Signs{true, false, false, true}));
  sweep.ZeroY();
  sweep.Up(2);
  ASSERT_EQ(sweep.YPosition(), 2);
  // The two runs out of the notch's lowest point: the falling one (removing)
  // arrives from the upper left, the rising one leaves to the upper right.
  EXPECT_EQ(sweep.ActiveSigns(), (Signs{true, false, true, false}));
}

TEST(Sweep, ContoursStartingOnOneRowAreSortedTogether) {
  // Given right one first: the active list still runs left to right.
  SweepProbe sweep(MakeBorder({Rectangle(32, 12, 52, 28, true), Rectangle(4, 14, 24, 24, true)}));
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

TEST(Sweep, BorderFormPassesOverRepeatedPointsAndShortRings) {
  // Equal points at the start, in the middle and closing the ring; a ring of
  // equal points only and a ring of two points add no part.
  SweepProbe sweep(MakeBorder({{{15, 15}, {15, 15}, {15, 35}, {35, 35}, {35, 35}, {35, 15}, {15, 15}},
                               {{20, 20}, {20, 20}, {20, 20}},
                               {{0, 0}, {30, 30}}}));
  ASSERT_EQ(sweep.TotalSize(), 2u);
  EXPECT_EQ(sweep.PartPoints()[0], (std::vector<MContourHelperPoint>{{1.5, 1.5}, {1.5, 3.5}, {3.5, 3.5}}));
  SweepProbe none(MakeBorder({{{0, 0}, {30, 30}}}));
  none.ZeroY();
  EXPECT_TRUE(none.IsEmpty());
  EXPECT_EQ(none.YPosition(), INT32_MIN);
}

// The number of parts the contour form adds for `count` contours from one of
// the points; `active` gets the signs at output row 0.
uint64_t PartsOfContour(const Points& points, int32_t count, Signs* active = nullptr) {
  CONTOUR* contour = NewContour(points);
  SweepProbe sweep;
  sweep.Initialise(6, 6, 60.0, 60.0, contour, count);
  sweep.ZeroY();
  if (active != nullptr)
    *active = sweep.ActiveSigns();
  contour->Clear();
  delete contour;
  return sweep.TotalSize();
}

TEST(Sweep, ContourFormDrawsEitherDirectionAsSolidAndSkipsDegenerateRings) {
  for (bool clockwise : {true, false}) {
    Signs active;
    EXPECT_EQ(PartsOfContour(Rectangle(15, 15, 35, 35, clockwise), 1, &active), 2u)
        << "clockwise " << clockwise;
    // The left edge of the square is the adding part either way.
    EXPECT_EQ(active, (Signs{true, false})) << "clockwise " << clockwise;
  }
  EXPECT_EQ(PartsOfContour({{0, 0}, {30, 30}}, 1), 0u);
  // A count beyond the chain stops at its end.
  EXPECT_EQ(PartsOfContour({{20, 20}, {20, 20}, {20, 20}, {20, 20}}, 5), 0u);
  // A count below the chain's length leaves the rest of the chain out.
  CONTOUR* first = NewContour(Rectangle(15, 15, 35, 35, true));
  first->NextContour = NewContour(Rectangle(40, 40, 50, 50, true));
  SweepProbe sweep;
  sweep.Initialise(6, 6, 60.0, 60.0, first, 1);
  EXPECT_EQ(sweep.TotalSize(), 2u);
  for (CONTOUR* c : {first->NextContour, first}) {
    c->Clear();
    delete c;
  }
}

}  // namespace
