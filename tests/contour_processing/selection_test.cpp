#include "layer/contour_layer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "support/layer_builders.h"
#include "support/vector_blocks.h"

namespace {

using testing_support::ExtentsOf;
using testing_support::FlattenPoints;
using testing_support::NewContour;
using testing_support::Rectangle;

// The x of point 0 of each contour in chain order (-1 for a contour without points).
std::vector<int32_t> FirstXs(const CONTOUR_LAYER& layer) {
  std::vector<int32_t> xs;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour)
    xs.push_back(c->NumPoints > 0 ? c->Points[0].x : -1);
  return xs;
}

class ContourSelection : public ::testing::Test {
 protected:
  void TearDown() override { layer.Clear(); }
  // Squares of side 10 with their lower left corner at x = 0, 20, 40, ...
  void AddSquares(int n) {
    for (int i = 0; i < n; ++i)
      layer.AddContourAtEnd(NewContour(Rectangle(20 * i, 0, 20 * i + 10, 10, true)));
    layer.BEPAAL_EXTREMA();
  }
  CONTOUR_LAYER layer;
  CONTOUR* found = nullptr;
  int32_t distance = 0;
};

}  // namespace

TEST_F(ContourSelection, SearchDistanceIsTruncatedAndStrict) {
  layer.AddContourAtEnd(NewContour({{4, 4}}));  // a single point has only a zero-length edge
  EXPECT_FALSE(layer.SEARCH_CLOSEST_CONTOUR({4, 4}, &found, distance, 100));
  EXPECT_EQ(distance, INT32_MIN);
  EXPECT_EQ(found, nullptr);
  layer.Clear();
  AddSquares(2);
  EXPECT_TRUE(layer.SEARCH_CLOSEST_CONTOUR({25, 0}, &found, distance, 1));  // on the second square
  EXPECT_EQ(distance, 0);
  found = nullptr;
  EXPECT_FALSE(layer.SEARCH_CLOSEST_CONTOUR({25, 0}, &found, distance, 0));
  EXPECT_EQ(found, layer.FirstContour->NextContour);                         // still named
  EXPECT_TRUE(layer.SEARCH_CLOSEST_CONTOUR({-5, -3}, &found, distance, 6));  // sqrt(34) = 5.83
  EXPECT_EQ(distance, 5);
  EXPECT_FALSE(layer.SEARCH_CLOSEST_CONTOUR({-5, -3}, &found, distance, 5));
  EXPECT_TRUE(layer.SEARCH_CLOSEST_CONTOUR({15, 5}, &found, distance, 6));  // tie: first in chain order
  EXPECT_EQ(found, layer.FirstContour);
}

TEST_F(ContourSelection, OpenContourCountsItsClosingEdge) {
  layer.AddContourAtEnd(NewContour({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, 0));
  EXPECT_TRUE(layer.SEARCH_CLOSEST_CONTOUR({-1, 5}, &found, distance, 2));
  EXPECT_EQ(distance, 1);
  int32_t count = 0;
  MMPoint2d<long>* edges = layer.GET_CLOSEST_CONTOUR(count, {-1, 5}, 2);
  ASSERT_NE(edges, nullptr);
  EXPECT_EQ(FlattenPoints(edges, count),
            (std::vector<int32_t>{0, 0, 10, 0, 10, 0, 10, 10, 10, 10, 0, 10, 0, 10, 0, 0}));
  free(edges);
  EXPECT_EQ(layer.GET_CLOSEST_CONTOUR(count, {-1, 5}, 1), nullptr);
  EXPECT_EQ(count, 0);
}

TEST_F(ContourSelection, RemoveClosestKeepsChainAndExtents) {
  AddSquares(3);
  EXPECT_FALSE(layer.REMOVE_CLOSEST_CONTOUR({100, 100}, 5));
  EXPECT_TRUE(layer.REMOVE_CLOSEST_CONTOUR({51, 5}, 5));
  EXPECT_EQ(FirstXs(layer), (std::vector<int32_t>{0, 20}));
  EXPECT_EQ(layer.LastContour, layer.FirstContour->NextContour);
  EXPECT_EQ(ExtentsOf(layer), "0 0 50 10");
}

TEST_F(ContourSelection, ContoursInBoxAreInclusiveAndNormalised) {
  AddSquares(3);
  layer.AddContourAtEnd(new CONTOUR);  // no points: never handed out
  BOX box = {30, 10, 0, 0};            // exactly the first two squares, corners exchanged
  int32_t count = -1;
  MMPoint2d<long>* edges = layer.GET_CONTOURS_IN_BOX(count, box);
  ASSERT_NE(edges, nullptr);
  EXPECT_EQ(count, 16);
  EXPECT_EQ(box.MinX, 0);
  EXPECT_EQ(edges[8].x, 20);                     // second square follows the first
  EXPECT_EQ(edges[7], (MMPoint2d<long>{0, 0}));  // closing pair (last point, point 0)
  free(edges);
  BOX small = {1, 1, 9, 9};
  EXPECT_EQ(layer.GET_CONTOURS_IN_BOX(count, small), nullptr);
  EXPECT_EQ(count, 0);
}

TEST_F(ContourSelection, RemoveContoursInBoxReversesTheRest) {
  AddSquares(3);
  layer.AddContourAtEnd(new CONTOUR);
  BOX none = {100, 100, 200, 200};
  EXPECT_TRUE(layer.REMOVE_CONTOURS_IN_BOX(none));  // the empty contour counts as inside
  EXPECT_EQ(FirstXs(layer), (std::vector<int32_t>{40, 20, 0}));
  EXPECT_FALSE(layer.REMOVE_CONTOURS_IN_BOX(none));
  EXPECT_EQ(FirstXs(layer), (std::vector<int32_t>{0, 20, 40}));
  BOX box = {15, -1, 31, 11};
  EXPECT_TRUE(layer.REMOVE_CONTOURS_IN_BOX(box));
  EXPECT_EQ(FirstXs(layer), (std::vector<int32_t>{40, 0}));
  EXPECT_EQ(layer.LastContour->Points[0].x, 0);
  EXPECT_EQ(ExtentsOf(layer), "0 0 50 10");
}

TEST_F(ContourSelection, RemoveContoursReachedByBox) {
  AddSquares(3);
  layer.AddContourAtEnd(NewContour(Rectangle(-100, -100, 100, 100, true)));      // surrounds the box
  layer.AddContourAtEnd(NewContour({{60, 0}, {70, 0}, {70, 10}, {60, 10}}, 0));  // open: no closing edge
  layer.AddContourAtEnd(new CONTOUR);
  BOX box = {58, 2, 62, 8};  // reached only by the open contour's missing closing edge
  EXPECT_FALSE(layer.VERWIJDER_CONTOUREN_DOOR_BOX(box));
  EXPECT_EQ(FirstXs(layer), (std::vector<int32_t>{-1, 60, -100, 40, 20, 0}));
  EXPECT_EQ(ExtentsOf(layer), "-100 -100 100 100");
  BOX cut = {5, 5, 25, 6};  // cuts the first two squares
  EXPECT_TRUE(layer.VERWIJDER_CONTOUREN_DOOR_BOX(cut));
  EXPECT_EQ(FirstXs(layer), (std::vector<int32_t>{40, -100, 60, -1}));
  BOX inside = {39, -1, 51, 11};  // holds the square at 40 wholly
  EXPECT_TRUE(layer.VERWIJDER_CONTOUREN_DOOR_BOX(inside));
  EXPECT_EQ(layer.NumContours, 3);
  EXPECT_EQ(layer.LastContour->NumPoints, 4);
}
