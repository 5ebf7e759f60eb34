#include "layer/values.h"

#include <gtest/gtest.h>

#include "layer/contour_layer.h"
#include "sibling/units/internal_units.h"
#include "support/vector_blocks.h"

using testing_support::ExtentsOf;

TEST(Values, PointsLieOverCoordinateArrays) {
  MMPoint2d<long> points[2] = {{1, 2}, {3, 4}};
  const int32_t* raw = reinterpret_cast<const int32_t*>(points);
  EXPECT_EQ(raw[0], 1);
  EXPECT_EQ(raw[3], 4);
  MMPoint3dIntegerTypes<long> p3{5, 6, 7};
  EXPECT_EQ(reinterpret_cast<MMPoint2d<long>*>(&p3)->y, 6);
}

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

TEST(Values, InternalUnitsStartAtOneAndAreSettable) {
  EXPECT_EQ(Kelvor::Common::MInternalUnits::Get(), 1.0);
  Kelvor::Common::MInternalUnits::Set(1000.0);
  EXPECT_EQ(Kelvor::Common::MInternalUnits::Get(), 1000.0);
}
