#include "sibling/math/math_core.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

using Kelvor::Math::Core::GetFirstMultipleGreaterThan;

struct MultipleCase {
  int32_t value;
  int32_t distance;
  int32_t offset;
  int32_t expected;
};

TEST(GetFirstMultipleGreaterThan, IsTheLeastGridPositionStrictlyBeyondValue) {
  const MultipleCase cases[] = {
      {0, 10, 0, 10},      {5, 10, 0, 10},        {9, 10, 0, 10}, {10, 10, 0, 20}, {-5, 10, 0, 0},
      {-10, 10, 0, 0},     {-11, 10, 0, -10},     {2, 10, 3, 3},  {3, 10, 3, 13},  {7, 10, 3, 13},
      {0, 10, 1000003, 3}, {-1, 10, -1000007, 3}, {5, 1, 0, 6},   {5, -10, 0, 10}, {-15, -10, 5, -5},
  };
  for (const MultipleCase& c : cases) {
    EXPECT_EQ(GetFirstMultipleGreaterThan(c.value, c.distance, c.offset), c.expected)
        << "value " << c.value << " distance " << c.distance << " offset " << c.offset;
  }
}

TEST(GetFirstMultipleGreaterThan, EdgesOfTheRangeAndZeroDistance) {
  EXPECT_EQ(GetFirstMultipleGreaterThan(INT32_MIN, 1, 0), INT32_MIN + 1);
  EXPECT_EQ(GetFirstMultipleGreaterThan(INT32_MIN, 1000, 0), -2147483000);
  EXPECT_EQ(GetFirstMultipleGreaterThan(INT32_MAX - 1, 10, 0), INT32_MAX);  // 2147483650 does not fit
  EXPECT_EQ(GetFirstMultipleGreaterThan(INT32_MAX - 1, 1, 0), INT32_MAX);   // exact
  EXPECT_EQ(GetFirstMultipleGreaterThan(0, INT32_MIN, 0), INT32_MAX);       // |distance| is 2^31
  EXPECT_EQ(GetFirstMultipleGreaterThan(-1, INT32_MIN, 0), 0);
  EXPECT_EQ(GetFirstMultipleGreaterThan(5, 0, 7), 7);
  EXPECT_EQ(GetFirstMultipleGreaterThan(7, 0, 7), INT32_MAX);
}

}  // namespace
