#include <gtest/gtest.h>

#include <string>
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
using testing_support::NewRectangle;
using C = std::vector<int32_t>;

// The edges of the counter-clockwise square 0..10 as vectors from point 0.
const C kSquareEdges = {0, 0, 10, 0, 10, 0, 10, 10, 10, 10, 0, 10, 0, 10, 0, 0};

class LineCut : public ::testing::Test {
 protected:
  void TearDown() override { layer.Clear(); }
  // Cuts with the segment l: minimumCuts below 0 through CUT_VECTORS_WITH_LINE,
  // else through CUT_CONTOURS_WITH_LINE.
  bool Cut(C l, int32_t minimumCuts, bool gap) {
    return minimumCuts < 0 ? layer.CUT_VECTORS_WITH_LINE(l[0], l[1], l[2], l[3], gap)
                           : layer.CUT_CONTOURS_WITH_LINE(l[0], l[1], l[2], l[3], minimumCuts, gap);
  }
  bool Convert(C l, int32_t minimumCuts) {
    return layer.CONVERT_CONTOURS_CUT_BY_LINE_TO_VECTORS(l[0], l[1], l[2], l[3], false, minimumCuts);
  }
  LAYER layer;
};

}  // namespace

TEST_F(LineCut, SquareCutIntoOneBlockFromTheFirstCut) {
  struct Case {
    const char* name;
    C line;
    int32_t minimumCuts;  // as for Cut
    bool gap;
    C expected;  // empty: nothing converted
    int32_t openRuns;
  };
  // clang-format off
  const Case cases[] = {
      {"across", {5, -5, 5, 15}, -1, false,
       {5, 0, 10, 0, 10, 0, 10, 10, 10, 10, 5, 10, 5, 10, 0, 10, 0, 10, 0, 0, 0, 0, 5, 0}, 1},
      {"across with gap: one unit open at each cut", {5, -5, 5, 15}, -1, true,
       {5, 0, 10, 0, 10, 0, 10, 10, 10, 10, 6, 10, 5, 10, 0, 10, 0, 10, 0, 0, 0, 0, 4, 0}, 2},
      {"ending inside", {5, -5, 5, 5}, -1, true, {}, 0},
      {"ending inside, one cut asked", {5, -5, 5, 5}, 1, true,
       {5, 0, 10, 0, 10, 0, 10, 10, 10, 10, 0, 10, 0, 10, 0, 0, 0, 0, 4, 0}, 1},
      {"through a vertex counts twice", {-5, 5, 5, -5}, -1, false, kSquareEdges, 0},
      {"minimum 0 converts an uncut contour", {2, 2, 3, 3}, 0, false, kSquareEdges, 0},
      {"minimum 0 but no box overlap", {50, 50, 60, 60}, 0, false, {}, 0},
      {"minimum 0, boxes touching at x 0", {-5, 5, 0, 20}, 0, false, kSquareEdges, 0},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    layer.Contours.AddContourAtEnd(NewRectangle(0, 0, 10, 10, false));
    EXPECT_EQ(Cut(c.line, c.minimumCuts, c.gap), !c.expected.empty());
    EXPECT_EQ(BlockAt(layer.Vectors, 0), c.expected);
    EXPECT_EQ(layer.Contours.NumContours, c.expected.empty() ? 1 : 0);
    if (!c.expected.empty()) {
      EXPECT_EQ(layer.Contours.LastContour, nullptr);
      EXPECT_EQ(layer.Vectors.FirstBlock->Type, 1);
      EXPECT_EQ(ExtentsOf(layer), "0 0 10 10");
    }
    if (c.openRuns > 0) {
      EXPECT_EQ(layer.Vectors.NUMBER_OF_OPEN_CONTOURS(), c.openRuns);
    }
    layer.Clear();
  }
}

TEST_F(LineCut, ConvertByCountKeepsContourOrderAndSkipsEmpty) {
  layer.Contours.AddContourAtEnd(new CONTOUR);
  layer.Contours.AddContourAtEnd(NewRectangle(0, 0, 10, 10, false));
  layer.Contours.AddContourAtEnd(NewContour({{100, 100}, {110, 100}, {110, 110}}));
  EXPECT_FALSE(Convert({5, -5, 5, 5}, 2));  // one cut only
  EXPECT_TRUE(Convert({5, -5, 5, 15}, 2));
  ASSERT_EQ(layer.Contours.NumContours, 1);  // the empty contour went with the converted one
  EXPECT_EQ(layer.Contours.FirstContour->Points[0].x, 100);
  EXPECT_EQ(layer.Contours.FirstContour, layer.Contours.LastContour);
  EXPECT_EQ(BlockAt(layer.Vectors, 0), kSquareEdges);
  EXPECT_EQ(ExtentsOf(layer), "0 0 110 110");
  layer.Clear();
  layer.Contours.AddContourAtEnd(new CONTOUR);
  EXPECT_FALSE(Convert({5, -5, 5, 15}, 0));  // never converted
  EXPECT_EQ(layer.Contours.NumContours, 1);
  EXPECT_EQ(layer.Vectors.NumBlocks, 0);
}

TEST_F(LineCut, VectorCutWithGapOnAxisOfLargerDistance) {
  struct Case {
    C vector, line;
    bool gap;
    C expected;
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
  EXPECT_FALSE(Cut({50, -5, 50, 5}, -1, true));
  EXPECT_EQ(BlockSizes(layer.Vectors), (C{4, 4}));
  EXPECT_EQ(ExtentsOf(layer.Vectors), "0 0 110 100");
  EXPECT_TRUE(Cut({105, 90, 105, 110}, -1, false));
  EXPECT_EQ(BlockSizes(layer.Vectors), (C{4, 8}));
  EXPECT_EQ(layer.Vectors.FirstBlock->NextBlock->Type, 7);
}
