#include "layer/vector_layer.h"

#include <gtest/gtest.h>

#include "support/vector_blocks.h"

using testing_support::AddBlock;
using testing_support::ExtentsOf;

namespace {

class VectorLayerTest : public ::testing::Test {
 protected:
  void TearDown() override {
    a.Clear();
    b.Clear();
  }
  VECTOR_LAYER a;
  VECTOR_LAYER b;
};

}  // namespace

TEST(VectorBlok, CoordinateStorageGrowsShrinksAndIsReused) {
  VECTOR_BLOK block;
  block.AllocateVectors(3);
  EXPECT_EQ(block.Size, 12);
  for (int i = 0; i < 12; ++i)
    block.Block[i] = i;
  block.AllocateCoordinates(4);
  EXPECT_EQ(block.Block[3], 3);
  int32_t* before = block.Block;
  int32_t src[4] = {9, 8, 7, 6};
  block.SetCoordinates(src, 4);
  EXPECT_EQ(block.Block, before);
  EXPECT_EQ(block.Block[0], 9);
  VECTOR_BLOK next;
  block.Type = 5;
  block.NextBlock = &next;
  block.Clear();  // releases the coordinates only
  EXPECT_EQ(block.Type, 5);
  EXPECT_EQ(block.NextBlock, &next);
  EXPECT_EQ(block.Block, nullptr);
  EXPECT_EQ(block.Size, 0);
}

TEST_F(VectorLayerTest, ChainOperations) {
  EXPECT_EQ(a.GetLastBlock(), nullptr);
  VECTOR_BLOK* b1 = AddBlock(a, 1, {0, 0, 1, 1});
  VECTOR_BLOK* b2 = AddBlock(a, 3, {5, 5, 6, 6});
  VECTOR_BLOK* b0 = new VECTOR_BLOK;
  a.AddBlockAfter(b0, nullptr);  // null means front
  EXPECT_EQ(a.FirstBlock, b0);
  EXPECT_EQ(a.NumBlocks, 3);
  VECTOR_BLOK* middle = b1;
  EXPECT_EQ(a.RemoveBlock(middle, true), b2);
  EXPECT_EQ(middle, nullptr);
  EXPECT_EQ(b0->NextBlock, b2);
  EXPECT_EQ(a.NumBlocks, 2);
  VECTOR_BLOK stranger;
  VECTOR_BLOK* s = &stranger;
  EXPECT_EQ(a.RemoveBlock(s, true), nullptr);
  EXPECT_EQ(a.NumBlocks, 2);
}

TEST_F(VectorLayerTest, ExtentsCountBothEndsAndSkipEmptyBlocks) {
  a.BEPAAL_EXTREMA();
  EXPECT_EQ(a.MaxX, kEmptyExtentMax);
  AddBlock(a, 1, {});
  a.BEPAAL_EXTREMA();
  EXPECT_EQ(a.MinX, kEmptyExtentMin);
  AddBlock(a, 1, {-1, 2, 7, -8});
  a.BEPAAL_EXTREMA();
  EXPECT_EQ(ExtentsOf(a), "-1 -8 7 2");
}

TEST_F(VectorLayerTest, CopyAppendsAndMoveReplaces) {
  AddBlock(a, 1, {0, 0, 1, 1});
  AddBlock(a, 1, {0, 0, 2, 2});
  for (int i = 0; i < 3; ++i)
    AddBlock(b, static_cast<uint16_t>(10 + i), {i, i, 9, 9});
  b.BEPAAL_EXTREMA();
  EXPECT_TRUE(a.COPIEER_VECTOR_LAYER(b));
  EXPECT_EQ(a.NumBlocks, 5);
  VECTOR_BLOK* third = a.FirstBlock->NextBlock->NextBlock;
  EXPECT_EQ(third->Type, 10);
  EXPECT_NE(third->Block, b.FirstBlock->Block);
  EXPECT_EQ(a.MaxX, 9);
  // Moving releases the own blocks and empties the argument.
  a.MoveTo(b);
  EXPECT_EQ(a.NumBlocks, 3);
  EXPECT_EQ(a.FirstBlock->Type, 10);
  EXPECT_EQ(b.NumBlocks, 0);
  EXPECT_EQ(b.FirstBlock, nullptr);
}
