#include <gtest/gtest.h>

#include <vector>

#include "layer/layer.h"
#include "support/layer_builders.h"
#include "support/vector_blocks.h"

namespace {

using testing_support::AddBlock;
using testing_support::BlockAt;
using testing_support::BlockSizes;
using testing_support::ExtentsOf;
using testing_support::NewContour;

// The square (0,0) (10,0) (10,10) (0,10), counter-clockwise, as a contour.
CONTOUR* Square() {
  return NewContour({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
}

class LineCut : public ::testing::Test {
 protected:
  void TearDown() override { layer.Clear(); }
  // Cuts with the segment (x1,y1)-(x2,y2) through the named operation.
  bool CutLayer(int32_t x1, int32_t y1, int32_t x2, int32_t y2, bool gap) {
    return layer.CUT_VECTORS_WITH_LINE(x1, y1, x2, y2, gap);
  }
  bool CutContours(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t minimumCuts, bool gap) {
    return layer.CUT_CONTOURS_WITH_LINE(x1, y1, x2, y2, minimumCuts, gap);
  }
  bool Convert(int32_t x1, int32_t y1, int32_t x2, int32_t y2, int32_t minimumCuts) {
    return layer.CONVERT_CONTOURS_CUT_BY_LINE_TO_VECTORS(x1, y1, x2, y2, false, minimumCuts);
  }
  LAYER layer;
};

}  // namespace

TEST_F(LineCut, SquareCutTwiceBecomesRingFromFirstCut) {
  layer.Contours.AddContourAtEnd(Square());
  EXPECT_TRUE(CutLayer(5, -5, 5, 15, false));
  EXPECT_EQ(layer.Contours.NumContours, 0);
  EXPECT_EQ(layer.Contours.FirstContour, nullptr);
  EXPECT_EQ(layer.Contours.LastContour, nullptr);
  ASSERT_EQ(layer.Vectors.NumBlocks, 1);
  EXPECT_EQ(layer.Vectors.FirstBlock->Type, 1);
  EXPECT_EQ(BlockAt(layer.Vectors, 0), (std::vector<int32_t>{5, 0,  10, 0,  10, 0,  10, 10, 10, 10, 5, 10,
                                                             5, 10, 0,  10, 0,  10, 0,  0,  0,  0,  5, 0}));
  EXPECT_EQ(layer.Vectors.NUMBER_OF_OPEN_CONTOURS(), 1);
  EXPECT_EQ(ExtentsOf(layer), "0 0 10 10");
}

TEST_F(LineCut, GapOpensOneUnitAtEachCut) {
  layer.Contours.AddContourAtEnd(Square());
  EXPECT_TRUE(CutLayer(5, -5, 5, 15, true));
  EXPECT_EQ(BlockAt(layer.Vectors, 0), (std::vector<int32_t>{5, 0,  10, 0,  10, 0,  10, 10, 10, 10, 6, 10,
                                                             5, 10, 0,  10, 0,  10, 0,  0,  0,  0,  4, 0}));
  EXPECT_EQ(layer.Vectors.NUMBER_OF_OPEN_CONTOURS(), 2);
}

TEST_F(LineCut, LineEndingInsideCutsOnce) {
  layer.Contours.AddContourAtEnd(Square());
  EXPECT_FALSE(CutLayer(5, -5, 5, 5, true));
  EXPECT_EQ(layer.Contours.NumContours, 1);
  EXPECT_EQ(layer.Vectors.NumBlocks, 0);
  EXPECT_TRUE(CutContours(5, -5, 5, 5, 1, true));
  EXPECT_EQ(BlockAt(layer.Vectors, 0),
            (std::vector<int32_t>{5, 0, 10, 0, 10, 0, 10, 10, 10, 10, 0, 10, 0, 10, 0, 0, 0, 0, 4, 0}));
}

TEST_F(LineCut, CutThroughVertexCountsTwice) {
  layer.Contours.AddContourAtEnd(Square());
  EXPECT_TRUE(CutLayer(-5, 5, 5, -5, false));
  EXPECT_EQ(BlockAt(layer.Vectors, 0),
            (std::vector<int32_t>{0, 0, 10, 0, 10, 0, 10, 10, 10, 10, 0, 10, 0, 10, 0, 0}));
}

TEST_F(LineCut, MinimumCutsZeroConvertsUncutContourFromPointZero) {
  layer.Contours.AddContourAtEnd(Square());
  layer.Contours.AddContourAtEnd(new CONTOUR);          // no points: removed once another converts
  EXPECT_FALSE(CutContours(50, 50, 60, 60, 0, false));  // no box overlap: nothing changes
  EXPECT_EQ(layer.Contours.NumContours, 2);
  EXPECT_TRUE(CutContours(2, 2, 3, 3, 0, false));
  EXPECT_EQ(layer.Contours.NumContours, 0);
  EXPECT_EQ(BlockAt(layer.Vectors, 0),
            (std::vector<int32_t>{0, 0, 10, 0, 10, 0, 10, 10, 10, 10, 0, 10, 0, 10, 0, 0}));
}

TEST_F(LineCut, ConvertByCountKeepsContourOrderAndSkipsEmpty) {
  layer.Contours.AddContourAtEnd(new CONTOUR);
  layer.Contours.AddContourAtEnd(Square());
  layer.Contours.AddContourAtEnd(NewContour({{100, 100}, {110, 100}, {110, 110}}));
  EXPECT_FALSE(Convert(5, -5, 5, 5, 2));  // one cut only
  EXPECT_TRUE(Convert(5, -5, 5, 15, 2));
  ASSERT_EQ(layer.Contours.NumContours, 1);
  EXPECT_EQ(layer.Contours.FirstContour->Points[0].x, 100);
  EXPECT_EQ(layer.Contours.FirstContour, layer.Contours.LastContour);
  EXPECT_EQ(BlockAt(layer.Vectors, 0),
            (std::vector<int32_t>{0, 0, 10, 0, 10, 0, 10, 10, 10, 10, 0, 10, 0, 10, 0, 0}));
  EXPECT_EQ(ExtentsOf(layer), "0 0 110 110");
  layer.Clear();
  layer.Contours.AddContourAtEnd(new CONTOUR);
  EXPECT_FALSE(Convert(5, -5, 5, 15, 0));  // a contour without points is never converted
  EXPECT_EQ(layer.Contours.NumContours, 1);
  EXPECT_EQ(layer.Vectors.NumBlocks, 0);
}

TEST_F(LineCut, VectorCutWithGapOnAxisOfLargerDistance) {
  struct Case {
    std::vector<int32_t> vector, line;
    bool gap;
    std::vector<int32_t> expected;
  };
  const Case cases[] = {
      {{0, 0, 10, 0}, {5, -5, 5, 5}, false, {0, 0, 5, 0, 5, 0, 10, 0}},
      {{0, 0, 10, 0}, {5, -5, 5, 5}, true, {0, 0, 4, 0, 5, 0, 10, 0}},
      {{10, 0, 0, 0}, {5, -5, 5, 5}, true, {10, 0, 6, 0, 5, 0, 0, 0}},
      {{0, 0, 10, 10}, {0, 10, 10, 0}, true, {0, 0, 5, 4, 5, 5, 10, 10}},  // tie: on y
      {{0, 10, 10, 0}, {0, 0, 10, 10}, true, {0, 10, 5, 6, 5, 5, 10, 0}},  // tie, going down
      {{0, 5, 10, 5}, {2, 5, 8, 5}, false, {0, 5, 10, 5}},                 // along the line: (0,0) outside
      {{-3, 0, 3, 0}, {-5, 0, 5, 0}, false, {-3, 0, 0, 0, 0, 0, 3, 0}},    // along, (0,0) inside both boxes
      {{0, 0, 4, 0}, {5, -5, 5, 5}, false, {0, 0, 4, 0}},                  // short of the line
  };
  for (const Case& c : cases) {
    VECTOR_LAYER v;
    AddBlock(v, 1, c.vector);
    int32_t x1 = c.line[0], y1 = c.line[1], x2 = c.line[2], y2 = c.line[3];
    const bool cut = v.CUT_VECTORS_WITH_LINE(x1, y1, x2, y2, c.gap);
    EXPECT_EQ(BlockAt(v, 0), c.expected) << "vector " << c.vector[0] << "," << c.vector[1] << " "
                                         << c.vector[2] << "," << c.vector[3] << " gap " << c.gap;
    EXPECT_EQ(cut, c.expected.size() == 8) << "vector " << c.vector[0] << "," << c.vector[1];
    v.Clear();
  }
}

TEST_F(LineCut, VectorCutDropsPointVectorsEvenWithoutCut) {
  AddBlock(layer.Vectors, 1, {0, 0, 10, 0, 3, 3, 3, 3});
  AddBlock(layer.Vectors, 7, {100, 100, 110, 100});
  EXPECT_FALSE(CutLayer(50, -5, 50, 5, true));
  EXPECT_EQ(BlockSizes(layer.Vectors), (std::vector<int32_t>{4, 4}));
  EXPECT_EQ(ExtentsOf(layer.Vectors), "0 0 110 100");
  EXPECT_TRUE(CutLayer(105, 90, 105, 110, false));
  EXPECT_EQ(BlockSizes(layer.Vectors), (std::vector<int32_t>{4, 8}));
  EXPECT_EQ(layer.Vectors.FirstBlock->NextBlock->Type, 7);
}
