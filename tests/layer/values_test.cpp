#include "layer/values.h"

#include <gtest/gtest.h>

#include "layer/contour_layer.h"
#include "support/vector_blocks.h"

using testing_support::ExtentsOf;

TEST(Values, RoundingWords) {
  EXPECT_EQ(Round(2.5f), 3);
  EXPECT_EQ(Round(-2.5f), -3);
  EXPECT_EQ(Round(2.5), 3);
  EXPECT_EQ(Round(-2.5), -3);
  EXPECT_EQ(Truncate(2.9f), 2);
  EXPECT_EQ(Truncate(-2.9), -2);
  EXPECT_EQ(Half(-3), -1);
  EXPECT_EQ(Half(3), 1);
}

TEST(Values, BoxesNormaliseAndEmptyExtentsGrowToOnePoint) {
  BOX box{10, 20, 0, 5};
  NormaliseBox(box);
  EXPECT_EQ(ExtentsOf(box), "0 5 10 20");
  CONTOUR_LAYER layer, empty;
  EXPECT_FALSE(HasExtents(layer));
  GrowExtents(layer, 3, 4);
  EXPECT_EQ(ExtentsOf(layer), "3 4 3 4");
  MergeExtents(layer, empty);  // empty extents merge to no change
  EXPECT_EQ(ExtentsOf(layer), "3 4 3 4");
}
