#include "layer/layer.h"

#include <gtest/gtest.h>

#include "support/layer_builders.h"
#include "support/vector_blocks.h"

using testing_support::AddBlock;
using testing_support::ExtentsOf;
using testing_support::NewContour;
using testing_support::Rectangle;

TEST(Layer, ExtentsJoinBothMembersAndClearKeepsThemUntilRecomputed) {
  LAYER layer;
  layer.Z = 40;
  layer.Contours.AddContourAtEnd(NewContour(Rectangle(1, 2, 10, 10, true)));
  layer.BEPAAL_EXTREMA();
  EXPECT_EQ(ExtentsOf(layer), "1 2 10 10");  // without vectors: the contours'
  AddBlock(layer.Vectors, 0, {-5, 0, 20, 3});
  layer.BEPAAL_EXTREMA();
  EXPECT_EQ(ExtentsOf(layer), "-5 0 20 10");
  layer.Clear();
  EXPECT_EQ(layer.Z, 0);
  EXPECT_EQ(layer.Contours.NumContours, 0);
  EXPECT_EQ(layer.Vectors.NumBlocks, 0);
  EXPECT_EQ(layer.MaxX, 20);
  layer.BEPAAL_EXTREMA();
  EXPECT_EQ(layer.MaxX, kEmptyExtentMax);
  EXPECT_EQ(layer.MinX, kEmptyExtentMin);
}

TEST(Layer, MoveAndCopy) {
  LAYER a, b, c;
  b.Z = 7;
  b.Contours.AddContourAtEnd(NewContour(Rectangle(0, 0, 5, 5, true)));
  AddBlock(b.Vectors, 0, {0, 0, 1, 1});
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
  c.COPIEER_LAAG(a);
  EXPECT_EQ(c.Z, 7);
  EXPECT_EQ(c.Contours.NumContours, 1);
  EXPECT_NE(c.Contours.FirstContour, a.Contours.FirstContour);
  EXPECT_EQ(c.Vectors.NumBlocks, 1);
  a.Clear();
  b.Clear();
  c.Clear();
}
