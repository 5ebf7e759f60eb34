#include "layer/vector_layer.h"

#include <gtest/gtest.h>

namespace {

VECTOR_BLOK* NewBlock(uint16_t type, std::initializer_list<int32_t> coordinates) {
  auto* b = new VECTOR_BLOK;
  b->Type = type;
  std::vector<int32_t> v(coordinates);
  b->SetCoordinates(v.data(), static_cast<int32_t>(v.size()));
  return b;
}

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
  for (int i = 0; i < 12; ++i) block.Block[i] = i;
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
  block.Clear();
  EXPECT_EQ(block.Type, 5);
  EXPECT_EQ(block.NextBlock, &next);
  EXPECT_EQ(block.Block, nullptr);
  EXPECT_EQ(block.Size, 0);
}

TEST_F(VectorLayerTest, ChainOperations) {
  EXPECT_EQ(a.GetLastBlock(), nullptr);
  VECTOR_BLOK* b1 = NewBlock(1, {0, 0, 1, 1});
  a.AddBlockAtEnd(b1);
  EXPECT_EQ(a.FirstBlock, b1);
  VECTOR_BLOK* b0 = NewBlock(2, {});
  a.AddBlockAfter(b0, nullptr);
  EXPECT_EQ(a.FirstBlock, b0);
  VECTOR_BLOK* b2 = NewBlock(3, {5, 5, 6, 6});
  a.AddBlockAtEnd(b2);
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
  a.AddBlockAtEnd(NewBlock(1, {}));
  a.BEPAAL_EXTREMA();
  EXPECT_EQ(a.MinX, kEmptyExtentMin);
  a.AddBlockAtEnd(NewBlock(1, {-1, 2, 7, -8}));
  a.BEPAAL_EXTREMA();
  EXPECT_EQ(a.MinX, -1);
  EXPECT_EQ(a.MaxX, 7);
  EXPECT_EQ(a.MinY, -8);
  EXPECT_EQ(a.MaxY, 2);
}

TEST_F(VectorLayerTest, CopyAppendsBehindExistingBlocks) {
  a.AddBlockAtEnd(NewBlock(1, {0, 0, 1, 1}));
  a.AddBlockAtEnd(NewBlock(1, {0, 0, 2, 2}));
  for (int i = 0; i < 3; ++i) b.AddBlockAtEnd(NewBlock(static_cast<uint16_t>(10 + i), {i, i, 9, 9}));
  b.BEPAAL_EXTREMA();
  EXPECT_TRUE(a.COPIEER_VECTOR_LAYER(b));
  EXPECT_EQ(a.NumBlocks, 5);
  VECTOR_BLOK* third = a.FirstBlock->NextBlock->NextBlock;
  EXPECT_EQ(third->Type, 10);
  EXPECT_NE(third->Block, b.FirstBlock->Block);
  EXPECT_EQ(a.MaxX, 9);
}

TEST_F(VectorLayerTest, MoveEmptiesArgumentAndReleasesOwnContent) {
  a.AddBlockAtEnd(NewBlock(1, {0, 0, 1, 1}));
  b.AddBlockAtEnd(NewBlock(2, {0, 0, 2, 2}));
  b.AddBlockAtEnd(NewBlock(2, {0, 0, 3, 3}));
  a.MoveTo(b);
  EXPECT_EQ(a.NumBlocks, 2);
  EXPECT_EQ(a.FirstBlock->Type, 2);
  EXPECT_EQ(b.NumBlocks, 0);
  EXPECT_EQ(b.FirstBlock, nullptr);
}
