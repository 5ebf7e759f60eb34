#include "bitmap/part.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "support/bitmap_builders.h"

namespace {

using testing_support::PartProbe;
using Points = std::vector<MContourHelperPoint>;

TEST(Part, SafeRoundCountsOneStepUnderAsWhole) {
  // -2.0 gives -3: the factor acts on negatives too.
  const std::pair<double, int32_t> cases[] = {
      {3.0, 3},           {2.9999999999999996, 3}, {0.0, 0},         {2.5, 2}, {-2.0, -3}, {-0.5, -1},
      {1e300, INT32_MAX}, {-1e300, INT32_MIN},     {std::nan(""), 0}};
  for (const auto& [value, expected] : cases)
    EXPECT_EQ(PartProbe::_SafeRound(value), expected) << "value " << value;
}

TEST(Part, PushPointKeepsAscendingOrderFromEitherEnd) {
  for (const Points& feed : {Points{{1, 5}, {1, 3}, {1, 1}}, Points{{1, 1}, {1, 3}, {1, 5}}}) {
    const auto list = PartProbe(true, feed).List();
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list[0], MContourHelperPoint(1, 1)) << "first fed y " << feed[0].y;
    EXPECT_EQ(list[2], MContourHelperPoint(1, 5)) << "first fed y " << feed[0].y;
  }
  PartProbe part(true, {{2, 3}});
  part.PushPoint({2, 3});  // equal: in front
  part.PushPoint({4, 3});  // right on the same row: at the end
  part.PushPoint({1, 3});  // left on the same row: in front
  const auto list = part.List();
  ASSERT_EQ(list.size(), 4u);
  EXPECT_EQ(list.front(), MContourHelperPoint(1, 3));
  EXPECT_EQ(list.back(), MContourHelperPoint(4, 3));
}

TEST(Part, IntersectYOfTheWholeRun) {
  PartProbe part(true, {{0.0, 0.0}, {2.0, 2.0}, {4.0, 2.0}, {4.0, 5.0}});
  EXPECT_DOUBLE_EQ(part._IntersectY(1.0), 1.0);
  EXPECT_DOUBLE_EQ(part._IntersectY(2.0), 2.0);  // the upper point of the segment
  EXPECT_DOUBLE_EQ(part._IntersectY(3.0), 4.0);
  EXPECT_EQ(part._IntersectY(6.0), 0.0);  // above the run
  EXPECT_EQ(PartProbe::_IntersectY(0, 1, 5, 1, 1), std::numeric_limits<double>::max());
  EXPECT_EQ(PartProbe(true, {{1.0, 1.0}})._IntersectY(1.0), 0.0);
}

TEST(Part, OrderAtSharedVertices) {
  PartProbe up(true, {{1.5, 1.5}, {1.5, 3.5}, {3.5, 3.5}});
  PartProbe rightwards(false, {{1.5, 1.5}, {3.5, 1.5}, {3.5, 3.5}});
  EXPECT_TRUE(up < rightwards);
  EXPECT_FALSE(rightwards < up);
  EXPECT_TRUE(up < PartProbe(true, {{0.0, 2.0}, {0.0, 3.0}}));  // lower start first
  const PartProbe same(false, {{1.5, 1.5}, {1.5, 2.5}});        // collinear to the end: unordered
  EXPECT_FALSE(up < same);
  EXPECT_FALSE(same < up);
  // Collinear at first: ordered where they part.
  const PartProbe leftLater(true, {{1.5, 1.5}, {1.5, 2.5}, {1.0, 4.0}});
  const PartProbe rightLater(false, {{1.5, 1.5}, {1.5, 3.0}, {3.0, 4.0}});
  EXPECT_TRUE(leftLater < rightLater);
  EXPECT_FALSE(rightLater < leftLater);
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
  // No common height: by the right ends in the row, 5.5 for low and about 5.2 for high.
  EXPECT_FALSE(low.XCompareAtGivenY(high, 0));
  EXPECT_TRUE(high.XCompareAtGivenY(low, 0));
}

}  // namespace
