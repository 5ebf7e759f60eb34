#include "vectors/splitting.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/vector_blocks.h"

namespace {

using testing_support::AddBlock;
using testing_support::BlockAt;
using testing_support::BlockSizes;
using testing_support::ExtentsOf;

class Splitting : public ::testing::Test {
 protected:
  void TearDown() override {
    source.Clear();
    first.Clear();
    second.Clear();
  }
  VECTOR_LAYER source;
  VECTOR_LAYER first;
  VECTOR_LAYER second;
};

}  // namespace

TEST_F(Splitting, DivideAtXCutsAndSortsBySide) {
  struct Case {
    std::vector<int32_t> vector;
    std::vector<int32_t> below;
    std::vector<int32_t> rest;
  };
  const Case cases[] = {
      {{10, 0, 10, 5}, {}, {10, 0, 10, 5}},              // on the line: rest
      {{5, 0, 15, 0}, {5, 0, 10, 0}, {15, 0, 10, 0}},    // second half runs backwards
      {{15, 0, 5, 0}, {5, 0, 10, 0}, {15, 0, 10, 0}},    // from the right
      {{0, 0, 10, 0}, {0, 0, 10, 0}, {10, 0, 10, 0}},    // ends at x: zero-length half stays
      {{1, 1, 2, 2}, {1, 1, 2, 2}, {}},                  // wholly left
      {{0, 0, 20, 10}, {0, 0, 10, 5}, {20, 10, 10, 5}},  // slanted
  };
  for (const Case& c : cases) {
    VECTOR_LAYER s, below, rest;
    AddBlock(s, 7, c.vector);
    DIVIDE_VECTORS_X(s, below, rest, 10);
    EXPECT_EQ(BlockAt(below, 0), c.below)
        << "vector " << c.vector[0] << "," << c.vector[1] << " " << c.vector[2] << "," << c.vector[3];
    EXPECT_EQ(BlockAt(rest, 0), c.rest)
        << "vector " << c.vector[0] << "," << c.vector[1] << " " << c.vector[2] << "," << c.vector[3];
    s.Clear();
    below.Clear();
    rest.Clear();
  }
}

TEST_F(Splitting, ResultsStayParallelWithSourceExtents) {
  AddBlock(source, 3, {0, 0, 5, 0, 7, 7, 7, 7, 20, 0, 25, 0});
  AddBlock(source, 4, {30, 0, 40, 0});
  AddBlock(source, 5, {});
  source.BEPAAL_EXTREMA();
  DIVIDE_VECTORS_X(source, first, second, 10);
  EXPECT_EQ(source.FirstBlock->Size, 8);  // the point vector is gone from the source
  EXPECT_EQ(BlockSizes(first), (std::vector<int32_t>{4, 0, 0}));
  EXPECT_EQ(BlockSizes(second), (std::vector<int32_t>{4, 4, 0}));
  std::vector<uint16_t> types;
  for (const VECTOR_BLOK* b = second.FirstBlock; b != nullptr; b = b->NextBlock)
    types.push_back(b->Type);
  EXPECT_EQ(types, (std::vector<uint16_t>{3, 4, 5}));
  EXPECT_EQ(ExtentsOf(first), "0 0 40 0");  // not recomputed
  EXPECT_EQ(first.NumBlocks, 3);
}

TEST_F(Splitting, EmptySourceGivesEmptyResults) {
  DIVIDE_VECTORS_X(source, first, second, 0);
  EXPECT_EQ(first.NumBlocks, 0);
  EXPECT_EQ(second.FirstBlock, nullptr);
}

TEST_F(Splitting, HorizontalLineSendsLowerSideFirst) {
  AddBlock(source, 1, {0, -5, 10, -5, 0, 5, 10, 5, 0, 0, 10, 0, 3, -4, 3, 6});
  SNIJ_VECTOREN(source, first, second, 0, 0, 10, 0);
  EXPECT_EQ(BlockAt(first, 0), (std::vector<int32_t>{0, -5, 10, -5, 0, 0, 10, 0, 3, -4, 3, 0}));
  EXPECT_EQ(BlockAt(second, 0), (std::vector<int32_t>{0, 5, 10, 5, 3, 6, 3, 0}));
}

TEST_F(Splitting, VerticalLineSideFollowsDirection) {
  AddBlock(source, 1, {-5, 1, -1, 1, 1, 1, 5, 1});
  VECTOR_LAYER source2;
  source2.COPIEER_VECTOR_LAYER(source);
  SNIJ_VECTOREN(source, first, second, 0, 0, 0, 10);  // upward: greater x is high
  EXPECT_EQ(BlockAt(first, 0), (std::vector<int32_t>{1, 1, 5, 1}));
  EXPECT_EQ(BlockAt(second, 0), (std::vector<int32_t>{-5, 1, -1, 1}));
  VECTOR_LAYER up, down;
  SNIJ_VECTOREN(source2, up, down, 0, 10, 0, 0);  // downward: smaller x is high
  EXPECT_EQ(BlockAt(up, 0), (std::vector<int32_t>{-5, 1, -1, 1}));
  EXPECT_EQ(BlockAt(down, 0), (std::vector<int32_t>{1, 1, 5, 1}));
  source2.Clear();
  up.Clear();
  down.Clear();
}

TEST_F(Splitting, SlantedLineCutsAtCrossing) {
  AddBlock(source, 1, {0, 10, 10, 0});
  SNIJ_VECTOREN(source, first, second, 0, 0, 10, 10);
  // The high side of a rising line is below it: the end (10,0).
  EXPECT_EQ(BlockAt(first, 0), (std::vector<int32_t>{10, 0, 5, 5}));
  EXPECT_EQ(BlockAt(second, 0), (std::vector<int32_t>{0, 10, 5, 5}));
}

TEST_F(Splitting, EqualLinePointsAreRefused) {
  AddBlock(source, 1, {0, 0, 5, 5, 3, 3, 3, 3});
  SNIJ_VECTOREN(source, first, second, 4, 4, 4, 4);
  EXPECT_EQ(source.FirstBlock->Size, 8);
  EXPECT_EQ(first.NumBlocks, 0);
  EXPECT_EQ(second.NumBlocks, 0);
}
