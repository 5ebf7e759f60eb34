#include <gtest/gtest.h>

#include <vector>

#include "layer/layer.h"
#include "support/layer_builders.h"
#include "support/vector_blocks.h"

namespace {

using testing_support::AddBlock;
using testing_support::BlockAt;
using testing_support::ExtentsOf;
using testing_support::NewContour;

class LayerTransforms : public ::testing::Test {
 protected:
  void TearDown() override { layer.Clear(); }
  // A contour point and a vector point at the same place.
  void AddPointBoth(int32_t x, int32_t y) {
    layer.Contours.AddContourAtEnd(NewContour({{x, y}, {100, 0}}));
    AddBlock(layer.Vectors, 1, {x, y, 100, 0});
    layer.BEPAAL_EXTREMA();
  }
  LAYER layer;
};

}  // namespace

TEST_F(LayerTransforms, RotationRoundsContoursAndTruncatesVectors) {
  AddPointBoth(-7, 3);
  layer.ROTEER_LAAG({0, 0}, 90.0f);
  EXPECT_EQ(layer.Contours.FirstContour->Points[0].x, -3);
  EXPECT_EQ(layer.Contours.FirstContour->Points[0].y, -7);
  EXPECT_EQ(BlockAt(layer.Vectors, 0), (std::vector<int32_t>{-2, -7, 0, 100}));
  EXPECT_EQ(ExtentsOf(layer), "-3 -7 0 100");
}

TEST_F(LayerTransforms, TranslateWithContoursOnlyKeepsVectorSentinels) {
  layer.Contours.AddContourAtEnd(NewContour({{0, 0}, {10, 20}}));
  layer.BEPAAL_EXTREMA();
  layer.TRANSLEER_LAAG(5, -5);
  EXPECT_EQ(layer.Vectors.MaxX, kEmptyExtentMax);
  EXPECT_EQ(layer.Vectors.MinY, kEmptyExtentMin);
  EXPECT_EQ(ExtentsOf(layer), "5 -5 15 15");
}

TEST_F(LayerTransforms, TranslateMirrorScaleJoinBothMembers) {
  layer.Contours.AddContourAtEnd(NewContour({{0, 0}, {10, 10}}));
  AddBlock(layer.Vectors, 1, {20, 0, 30, 4});
  layer.BEPAAL_EXTREMA();
  layer.TRANSLEER_LAAG(1, 2);
  EXPECT_EQ(ExtentsOf(layer), "1 2 31 12");
  layer.SPIEGEL_LAAG({0, 10});
  EXPECT_EQ(ExtentsOf(layer), "1 8 31 18");
  EXPECT_EQ(BlockAt(layer.Vectors, 0), (std::vector<int32_t>{21, 18, 31, 14}));
  layer.HERSCHAAL_LAAG({1, 8}, 2.0f, 1.0f);
  EXPECT_EQ(ExtentsOf(layer), "1 8 61 18");
  EXPECT_EQ(layer.Contours.FirstContour->Points[1].x, 21);
}
