#include "layer/values.h"

#include <gtest/gtest.h>

#include "layer/contour_layer.h"
#include "sibling/units/internal_units.h"

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

TEST(Values, BoxNormalisesExchangedCorners) {
  BOX box{10, 20, 0, 5};
  NormaliseBox(box);
  EXPECT_EQ(box.MinX, 0);
  EXPECT_EQ(box.MaxX, 10);
  EXPECT_EQ(box.MinY, 5);
  EXPECT_EQ(box.MaxY, 20);
}

TEST(Values, EmptyExtentsGrowToOnePoint) {
  CONTOUR_LAYER layer;
  EXPECT_FALSE(HasExtents(layer));
  GrowExtents(layer, 3, 4);
  EXPECT_EQ(layer.MaxX, 3);
  EXPECT_EQ(layer.MinX, 3);
  EXPECT_EQ(layer.MaxY, 4);
  EXPECT_EQ(layer.MinY, 4);
  CONTOUR_LAYER empty;
  MergeExtents(layer, empty);  // empty extents merge to no change
  EXPECT_EQ(layer.MaxX, 3);
  EXPECT_EQ(layer.MinY, 4);
}

TEST(Values, InternalUnitsStartAtOneAndAreSettable) {
  EXPECT_EQ(Kelvor::Common::MInternalUnits::Get(), 1.0);
  Kelvor::Common::MInternalUnits::Set(1000.0);
  EXPECT_EQ(Kelvor::Common::MInternalUnits::Get(), 1000.0);
}
