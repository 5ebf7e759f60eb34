#include "bitmap/part.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <vector>

#include "support/bitmap_builders.h"

namespace {

using testing_support::PartProbe;

TEST(HelperPoint, OrdersAndEquality) {
  const MContourHelperPoint a(1, 2), b(1, 3), c(2, 1);
  EXPECT_TRUE(a < b);
  EXPECT_TRUE(b < c);          // x first
  EXPECT_TRUE(c.YCompare(a));  // y first
  EXPECT_TRUE(a.YCompare(b));
  EXPECT_FALSE(a.YCompare(a));
  EXPECT_TRUE(a == MContourHelperPoint(1, 2));
  const MContourHelperPoint nan(std::nan(""), 2);
  EXPECT_FALSE(nan == nan);
  EXPECT_TRUE(nan != nan);
  EXPECT_EQ(b[0], 1.0);
  EXPECT_EQ(b[1], 3.0);
  EXPECT_EQ(c.Point().x, 2.0);
  EXPECT_EQ(MContourHelperPoint().y, 0.0);
}

TEST(Part, SafeRoundCountsOneStepUnderAsWhole) {
  EXPECT_EQ(PartProbe::_SafeRound(3.0), 3);
  EXPECT_EQ(PartProbe::_SafeRound(2.9999999999999996), 3);
  EXPECT_EQ(PartProbe::_SafeRound(0.0), 0);
  EXPECT_EQ(PartProbe::_SafeRound(2.5), 2);
  EXPECT_EQ(PartProbe::_SafeRound(-2.0), -3);  // the factor acts on negatives too
  EXPECT_EQ(PartProbe::_SafeRound(-0.5), -1);
  EXPECT_EQ(PartProbe::_SafeRound(1e300), INT32_MAX);
  EXPECT_EQ(PartProbe::_SafeRound(-1e300), INT32_MIN);
  EXPECT_EQ(PartProbe::_SafeRound(std::nan("")), 0);
}

TEST(Part, PushPointKeepsAscendingOrderFromEitherEnd) {
  const std::vector<std::vector<MContourHelperPoint>> feeds = {{{1, 5}, {1, 3}, {1, 1}},
                                                               {{1, 1}, {1, 3}, {1, 5}}};
  for (const auto& feed : feeds) {
    PartProbe part(true);
    for (const auto& p : feed)
      part.PushPoint(p);
    const auto list = part.List();
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0], MContourHelperPoint(1, 1)) << "first fed y " << feed[0].y;
    EXPECT_EQ(list[2], MContourHelperPoint(1, 5)) << "first fed y " << feed[0].y;
  }
  PartProbe part(true, {{2, 3}});
  part.PushPoint({2, 3});  // equal: in front
  part.PushPoint({4, 3});  // right on the same row: at the end
  part.PushPoint({1, 3});  // left on the same row: in front
  const auto list = part.List();
  ASSERT_EQ(part.size(), 4u);
  EXPECT_EQ(list.front(), MContourHelperPoint(1, 3));
  EXPECT_EQ(list.back(), MContourHelperPoint(4, 3));
  part.clear();
  EXPECT_EQ(part.size(), 0u);
  EXPECT_EQ(part.GetWorkingY(), INT32_MIN);
  EXPECT_TRUE(part.IsAddingMaterial());
}

TEST(Part, RightAreaOfSegments) {
  PartProbe flat(true, {{0.5, 1.25}, {3.5, 1.25}});
  flat.StepTo(1);
  for (int x = -1; x < 5; ++x)
    EXPECT_EQ(flat.SegmentArea(0, x), 0.0) << "column " << x;

  PartProbe vertical(true, {{1.5, 1.5}, {1.5, 3.5}});
  vertical.StepTo(1);
  EXPECT_DOUBLE_EQ(vertical.SegmentArea(0, 1), 0.25);
  EXPECT_DOUBLE_EQ(vertical.SegmentArea(0, 2), 0.5);
  EXPECT_DOUBLE_EQ(vertical.SegmentArea(0, 0), 0.0);

  // Crosses the left edge of pixel 1 at y 0.5: strip 0.5 plus trapezoid 0.375.
  PartProbe slanted(true, {{0.5, 0.0}, {1.5, 1.0}});
  slanted.StepTo(0);
  EXPECT_DOUBLE_EQ(slanted.SegmentArea(0, 1), 0.875);
  EXPECT_DOUBLE_EQ(slanted.SegmentArea(0, 0), 0.125);
  EXPECT_DOUBLE_EQ(slanted.SegmentArea(0, 2), 1.0);  // left across the full row
  EXPECT_DOUBLE_EQ(slanted.SegmentArea(0, -1), 0.0);
}

TEST(Part, LimitedYRangeAndRowsOfARun) {
  PartProbe part(false, {{1.5, 1.5}, {1.5, 3.5}});
  part.Activate();
  EXPECT_EQ(part.GetWorkingY(), 1);
  EXPECT_DOUBLE_EQ(part._LimitedYRange(), 0.5);
  ASSERT_TRUE(part.IncrementWorkingY());
  EXPECT_DOUBLE_EQ(part._LimitedYRange(), 1.0);
  EXPECT_DOUBLE_EQ(part.GetRightArea(5), -255.0);  // removing, wholly left of the pixel
  ASSERT_TRUE(part.IncrementWorkingY());
  EXPECT_DOUBLE_EQ(part._LimitedYRange(), 0.5);
  EXPECT_DOUBLE_EQ(part.GetRightArea(1), -0.25 * 255.0);
  EXPECT_FALSE(part.IncrementWorkingY());  // past the highest row
  EXPECT_EQ(part.GetHighestYPixel(), 3);
}

TEST(Part, LeftRightCacheFollowsTheRow) {
  // x = 0.2 + 0.9 y.
  PartProbe part(true, {{0.2, 0.0}, {3.8, 4.0}});
  part.StepTo(1);
  EXPECT_DOUBLE_EQ(part.DoubleLeft(), 1.1);
  EXPECT_DOUBLE_EQ(part.DoubleRight(), 2.0);
  EXPECT_EQ(part.Left(), 1);
  EXPECT_EQ(part.Right(), 2);
  ASSERT_TRUE(part.IncrementWorkingY());
  EXPECT_EQ(part.Left(), 2);
  EXPECT_EQ(part.Right(), 2);  // 2.9 at the top of row 2
  // Several segments in one row: the extremes of all of them.
  PartProbe zig(true, {{1.0, 0.0}, {3.5, 0.3}, {0.5, 0.6}, {2.0, 1.0}});
  zig.Activate();
  EXPECT_DOUBLE_EQ(zig.DoubleLeft(), 0.5);
  EXPECT_DOUBLE_EQ(zig.DoubleRight(), 3.5);
  // Full row, area capped at 1 within Left..Right, and the sign applied.
  EXPECT_LE(zig.GetRightArea(0), 255.0);
  EXPECT_GE(zig.GetRightArea(0), 0.0);
  EXPECT_DOUBLE_EQ(zig.GetRightArea(4), 255.0);
  EXPECT_EQ(zig.GetRightArea(-1), 0.0);
}

TEST(Part, IntersectYOfTheWholeRun) {
  PartProbe part(true, {{0.0, 0.0}, {2.0, 2.0}, {4.0, 2.0}, {4.0, 5.0}});
  EXPECT_DOUBLE_EQ(part._IntersectY(1.0), 1.0);
  EXPECT_DOUBLE_EQ(part._IntersectY(2.0), 2.0);  // the upper point of the segment
  EXPECT_DOUBLE_EQ(part._IntersectY(3.0), 4.0);
  EXPECT_EQ(part._IntersectY(6.0), 0.0);  // above the run
  EXPECT_EQ(PartProbe::_IntersectY(0, 1, 5, 1, 1), std::numeric_limits<double>::max());
  PartProbe single(true, {{1.0, 1.0}});
  EXPECT_EQ(single._IntersectY(1.0), 0.0);
}

TEST(Part, OrderFromACommonPoint) {
  const PartProbe up(true, {{1.5, 1.5}, {1.5, 3.5}, {3.5, 3.5}});
  const PartProbe rightwards(false, {{1.5, 1.5}, {3.5, 1.5}, {3.5, 3.5}});
  EXPECT_TRUE(up < rightwards);
  EXPECT_FALSE(rightwards < up);
  const PartProbe higher(true, {{0.0, 2.0}, {0.0, 3.0}});
  EXPECT_TRUE(up < higher);
  // Collinear to the end: not ordered either way.
  const PartProbe same(false, {{1.5, 1.5}, {1.5, 2.5}});
  EXPECT_FALSE(up < same);
  EXPECT_FALSE(same < up);
}

TEST(Part, ActiveOrderAtSharedVertices) {
  PartProbe up(true, {{1.5, 1.5}, {1.5, 3.5}, {3.5, 3.5}});
  PartProbe rightwards(false, {{1.5, 1.5}, {3.5, 1.5}, {3.5, 3.5}});
  up.Activate();
  rightwards.Activate();
  EXPECT_TRUE(ActivePartXCompare(&up, &rightwards));
  EXPECT_FALSE(ActivePartXCompare(&rightwards, &up));
  // Two runs into one high vertex, ordered by where they come from.
  PartProbe fromLeft(true, {{0.0, 0.0}, {2.0, 2.5}});
  PartProbe fromRight(false, {{4.0, 0.2}, {2.0, 2.5}});
  fromLeft.StepTo(2);
  fromRight.StepTo(2);
  EXPECT_TRUE(ActivePartXCompare(&fromLeft, &fromRight));
  EXPECT_FALSE(ActivePartXCompare(&fromRight, &fromLeft));
  // Apart in the row: decided by the cached extremes.
  PartProbe far(false, {{9.0, 0.0}, {9.5, 3.0}});
  far.StepTo(2);
  EXPECT_TRUE(ActivePartXCompare(&fromLeft, &far));
  EXPECT_FALSE(ActivePartXCompare(&far, &fromLeft));
}

TEST(Part, XCompareAtCommonAndDisjointHeights) {
  PartProbe a(true, {{0.0, 0.0}, {3.0, 3.0}});
  PartProbe b(false, {{2.0, 0.0}, {1.0, 3.0}});  // they cross at y 1.5
  a.Activate();
  b.Activate();
  EXPECT_TRUE(a.XCompareAtGivenY(b, 0));  // apart in row 0
  EXPECT_TRUE(a.XCompareAtCommonY(b, 0.5));
  EXPECT_FALSE(a.XCompareAtCommonY(b, 2.5));
  PartProbe low(true, {{5.0, 0.0}, {5.5, 0.9}});
  PartProbe high(false, {{5.2, 0.95}, {5.3, 2.0}});
  low.Activate();
  high.Activate();
  // No common height: by the right ends in the row.
  EXPECT_EQ(low.XCompareAtGivenY(high, 0), high.DoubleRight() > low.DoubleRight());
}

}  // namespace
