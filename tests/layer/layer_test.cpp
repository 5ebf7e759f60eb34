#include "layer/layer.h"

#include <gtest/gtest.h>

#include "support/layer_builders.h"

using testing_support::NewContour;
using testing_support::Rectangle;

namespace {
void AddVector(VECTOR_LAYER& v, int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
  auto* b = new VECTOR_BLOK;
  int32_t c[4] = {x1, y1, x2, y2};
  b->SetCoordinates(c, 4);
  v.AddBlockAtEnd(b);
}
}  // namespace

TEST(Layer, ClearKeepsOwnExtentsUntilRecomputed) {
  LAYER layer;
  layer.Z = 40;
  layer.Contours.AddContourAtEnd(NewContour(Rectangle(0, 0, 10, 10, true)));
  AddVector(layer.Vectors, -5, 0, 20, 3);
  layer.BEPAAL_EXTREMA();
  EXPECT_EQ(layer.MinX, -5);
  EXPECT_EQ(layer.MaxX, 20);
  EXPECT_EQ(layer.MaxY, 10);
  layer.Clear();
  EXPECT_EQ(layer.Z, 0);
  EXPECT_EQ(layer.Contours.NumContours, 0);
  EXPECT_EQ(layer.Vectors.NumBlocks, 0);
  EXPECT_EQ(layer.MaxX, 20);
  layer.BEPAAL_EXTREMA();
  EXPECT_EQ(layer.MaxX, kEmptyExtentMax);
  EXPECT_EQ(layer.MinX, kEmptyExtentMin);
}

TEST(Layer, ExtentsWithoutVectorsAreTheContours) {
  LAYER layer;
  layer.Contours.AddContourAtEnd(NewContour(Rectangle(1, 2, 3, 4, true)));
  layer.BEPAAL_EXTREMA();
  EXPECT_EQ(layer.MinX, 1);
  EXPECT_EQ(layer.MinY, 2);
  EXPECT_EQ(layer.MaxX, 3);
  EXPECT_EQ(layer.MaxY, 4);
  layer.Clear();
}

TEST(Layer, MoveAndCopy) {
  LAYER a, b;
  b.Z = 7;
  b.Contours.AddContourAtEnd(NewContour(Rectangle(0, 0, 5, 5, true)));
  AddVector(b.Vectors, 0, 0, 1, 1);
  b.BEPAAL_EXTREMA();
  a.Contours.AddContourAtEnd(NewContour(Rectangle(0, 0, 1, 1, true)));
  a.MoveTo(b);
  EXPECT_EQ(a.Z, 7);
  EXPECT_EQ(a.Contours.NumContours, 1);
  EXPECT_EQ(a.Vectors.NumBlocks, 1);
  EXPECT_EQ(a.MaxX, 5);
  EXPECT_EQ(b.Z, 0);
  EXPECT_EQ(b.Contours.NumContours, 0);
  EXPECT_EQ(b.Vectors.NumBlocks, 0);
  LAYER c;
  c.COPIEER_LAAG(a);
  EXPECT_EQ(c.Z, 7);
  EXPECT_EQ(c.Contours.NumContours, 1);
  EXPECT_NE(c.Contours.FirstContour, a.Contours.FirstContour);
  EXPECT_EQ(c.Vectors.NumBlocks, 1);
  a.Clear();
  b.Clear();
  c.Clear();
}
