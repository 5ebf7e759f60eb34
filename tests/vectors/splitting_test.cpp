#include "vectors/splitting.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/vector_blocks.h"

namespace {

using testing_support::AddBlock;
using testing_support::BlockAt;
using testing_support::BlockSizes;
using testing_support::ExtentsOf;
using C = std::vector<int32_t>;

// Source and the two result layers, released at the end.
struct Layers {
  VECTOR_LAYER source, first, second;
  ~Layers() {
    source.Clear();
    first.Clear();
    second.Clear();
  }
};

std::string Describe(const C& v) {
  std::string s;
  for (int32_t x : v)
    s += std::to_string(x) + " ";
  return s;
}

}  // namespace

TEST(Splitting, DivideAtXCutsAndSortsBySide) {
  struct Case {
    C vector, below, rest;
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
    Layers l;
    AddBlock(l.source, 7, c.vector);
    DIVIDE_VECTORS_X(l.source, l.first, l.second, 10);
    EXPECT_EQ(BlockAt(l.first, 0), c.below) << "vector " << Describe(c.vector);
    EXPECT_EQ(BlockAt(l.second, 0), c.rest) << "vector " << Describe(c.vector);
  }
}

TEST(Splitting, ResultsStayParallelWithSourceExtents) {
  Layers l;
  DIVIDE_VECTORS_X(l.source, l.first, l.second, 0);
  EXPECT_EQ(l.first.NumBlocks + l.second.NumBlocks, 0);
  AddBlock(l.source, 3, {0, 0, 5, 0, 7, 7, 7, 7, 20, 0, 25, 0});
  AddBlock(l.source, 4, {30, 0, 40, 0});
  AddBlock(l.source, 5, {});
  l.source.BEPAAL_EXTREMA();
  DIVIDE_VECTORS_X(l.source, l.first, l.second, 10);
  EXPECT_EQ(l.source.FirstBlock->Size, 8);  // the point vector is gone from the source
  EXPECT_EQ(BlockSizes(l.first), (C{4, 0, 0}));
  EXPECT_EQ(BlockSizes(l.second), (C{4, 4, 0}));
  EXPECT_EQ(l.second.FirstBlock->NextBlock->Type, 4);
  EXPECT_EQ(ExtentsOf(l.first), "0 0 40 0");  // not recomputed
}

TEST(Splitting, CutByLineSendsTheHighSideFirst) {
  struct Case {
    C vectors, line, high, low;
  };
  const Case cases[] = {
      // Horizontal line: the lower side is high; a crossing vector is cut.
      {{0, -5, 10, -5, 0, 5, 10, 5, 0, 0, 10, 0, 3, -4, 3, 6},
       {0, 0, 10, 0},
       {0, -5, 10, -5, 0, 0, 10, 0, 3, -4, 3, 0},
       {0, 5, 10, 5, 3, 6, 3, 0}},
      {{-5, 1, -1, 1, 1, 1, 5, 1}, {0, 0, 0, 10}, {1, 1, 5, 1}, {-5, 1, -1, 1}},  // upward: greater x high
      {{-5, 1, -1, 1, 1, 1, 5, 1}, {0, 10, 0, 0}, {-5, 1, -1, 1}, {1, 1, 5, 1}},  // downward: smaller x
      {{0, 10, 10, 0}, {0, 0, 10, 10}, {10, 0, 5, 5}, {0, 10, 5, 5}},             // rising: below is high
      {{105, 3, 109, 3},
       {100, 3, 101, 3},
       {},
       {105, 3, 109, 3}},  // centre off the grid: the rounded split puts the line low
  };
  for (const Case& c : cases) {
    Layers l;
    AddBlock(l.source, 1, c.vectors);
    SNIJ_VECTOREN(l.source, l.first, l.second, c.line[0], c.line[1], c.line[2], c.line[3]);
    EXPECT_EQ(BlockAt(l.first, 0), c.high)
        << "line " << Describe(c.line) << "vectors " << Describe(c.vectors);
    EXPECT_EQ(BlockAt(l.second, 0), c.low)
        << "line " << Describe(c.line) << "vectors " << Describe(c.vectors);
  }
  Layers l;
  AddBlock(l.source, 1, {0, 0, 5, 5, 3, 3, 3, 3});
  SNIJ_VECTOREN(l.source, l.first, l.second, 4, 4, 4, 4);  // equal line points: refused
  EXPECT_EQ(l.source.FirstBlock->Size, 8);
  EXPECT_EQ(l.first.NumBlocks + l.second.NumBlocks, 0);
}
