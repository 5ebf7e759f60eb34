#include "vectors/closest.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "layer/layer.h"
#include "support/vector_blocks.h"

namespace {

using testing_support::AddBlock;
using testing_support::BlockAt;
using testing_support::Coordinates;
using testing_support::ExtentsOf;
using testing_support::FlattenPoints;

class ClosestSearch : public ::testing::Test {
 protected:
  void TearDown() override { layer.Clear(); }
  VECTOR_LAYER layer;
};

}  // namespace

TEST(SquaredDistance, FootOnAxisAndSlantedSegments) {
  struct Case {
    int32_t px, py, ax, ay, bx, by;
    float squared;
    bool nearEnd;
  };
  const Case cases[] = {
      {5, 3, 0, 0, 10, 0, 9.0f, false},        // equal distance to both ends: not nearEnd
      {8, 3, 0, 0, 10, 0, 9.0f, true},         // foot inside, b nearer
      {20, 4, 0, 0, 10, 0, 116.0f, true},      // foot clamped to b
      {-3, -4, 0, 10, 0, 0, 25.0f, true},      // vertical, clamped to (0,0) = b
      {0, 10, 0, 0, 10, 10, 50.0f, false},     // slanted, foot (5,5)
      {-10, -5, 0, 0, 10, 10, 125.0f, false},  // slanted, beyond a
      {-10, -5, 10, 10, 0, 0, 125.0f, true},   // reversed: beyond b
      {30, 10, 0, 0, 10, 10, 400.0f, true},    // beyond b
  };
  for (const Case& c : cases) {
    bool nearEnd = !c.nearEnd;
    EXPECT_FLOAT_EQ(KWADRAAT_AFSTAND_TOT_LIJNSTUK(c.px, c.py, c.ax, c.ay, c.bx, c.by, nearEnd), c.squared)
        << "p(" << c.px << "," << c.py << ") a(" << c.ax << "," << c.ay << ") b(" << c.bx << "," << c.by
        << ")";
    EXPECT_EQ(nearEnd, c.nearEnd) << "p(" << c.px << "," << c.py << ")";
  }
  bool nearEnd = true;
  EXPECT_EQ(KWADRAAT_AFSTAND_TOT_LIJNSTUK(0, 0, 4, 4, 4, 4, nearEnd), kNoDistance);
  EXPECT_FALSE(nearEnd);
  EXPECT_EQ(TruncatedDistance(kNoDistance), INT32_MIN);
  EXPECT_EQ(TruncatedDistance(34.81f), 5);  // 5.9 truncated
}

TEST_F(ClosestSearch, OnlySelectableTypesAreSearched) {
  struct Case {
    uint16_t type;
    bool selectable;
  };
  const Case cases[] = {{0, false}, {1, true},   {2, false},   {32, false},  {33, true},
                        {34, true}, {37, true},  {38, true},   {39, false},  {40, true},
                        {41, true}, {42, false}, {105, false}, {257, false}, {0xFFFF, false}};
  for (const Case& c : cases) {
    VECTOR_LAYER l;
    AddBlock(l, c.type, {0, 0, 10, 0});
    int32_t x = 3, y = 3;
    EXPECT_EQ(l.GET_CLOSEST_POINT(x, y, false), c.selectable) << "type " << c.type;
    EXPECT_EQ(l.NUMBER_OF_OPEN_CONTOURS(), c.selectable ? 1 : 0) << "type " << c.type;
    int32_t count = 0;
    MMPoint2d<long>* run = l.GET_CLOSEST_VECTOR_POLYLINE(count, x, y, 100);
    EXPECT_EQ(run != nullptr, c.selectable) << "type " << c.type;
    free(run);
    l.Clear();
  }
}

TEST_F(ClosestSearch, SearchReportsNearestAndTolerance) {
  AddBlock(layer, 2, {0, 5, 10, 5});  // nearer, but not selectable
  AddBlock(layer, 33, {0, 0, 0, 0, 20, 20, 20, 30});
  VECTOR_BLOK* second = AddBlock(layer, 1, {0, 10, 10, 10});
  int32_t dummy = 0;
  int32_t *x1 = &dummy, *y1 = &dummy, *x2 = &dummy, *y2 = &dummy;
  bool nearEnd = false;
  VECTOR_BLOK* block = nullptr;
  int32_t distance = 0;
  EXPECT_FALSE(layer.SEARCH_CLOSEST_VECTOR({8, 4}, x1, y1, x2, y2, nearEnd, &block, distance, 6));
  EXPECT_EQ(distance, 6);  // beyond tolerance, but described
  EXPECT_EQ(block, second);
  EXPECT_TRUE(nearEnd);
  EXPECT_TRUE(layer.SEARCH_CLOSEST_VECTOR({2, 4}, x1, y1, x2, y2, nearEnd, &block, distance, 7));
  EXPECT_FALSE(nearEnd);
  *y1 = 50;  // the pointers lie in the block
  EXPECT_EQ(Coordinates(second), (std::vector<int32_t>{0, 50, 10, 10}));
  EXPECT_TRUE(layer.SEARCH_CLOSEST_VECTOR({20, 25}, x1, y1, x2, y2, nearEnd, &block, distance, 1));
  EXPECT_EQ(distance, 0);
  EXPECT_FALSE(layer.SEARCH_CLOSEST_VECTOR({20, 25}, x1, y1, x2, y2, nearEnd, &block, distance, 0));
}

TEST_F(ClosestSearch, SearchOnEmptyLayerLeavesOutputs) {
  AddBlock(layer, 1, {3, 3, 3, 3});  // a point vector is never nearest
  int32_t dummy = 0;
  int32_t *x1 = &dummy, *y1 = &dummy, *x2 = &dummy, *y2 = &dummy;
  bool nearEnd = true;
  VECTOR_BLOK* block = nullptr;
  int32_t distance = 0;
  EXPECT_FALSE(layer.SEARCH_CLOSEST_VECTOR({0, 0}, x1, y1, x2, y2, nearEnd, &block, distance, 100));
  EXPECT_EQ(distance, INT32_MIN);
  EXPECT_EQ(x1, &dummy);
  EXPECT_EQ(block, nullptr);
  EXPECT_TRUE(nearEnd);
  EXPECT_EQ(ZOEK_DICHTSTE_LIJNSTUK_IN_VECTOR_LAYER(layer, {0, 0}, x1, y1, x2, y2, nearEnd), 0);
  EXPECT_EQ(x1, &dummy);
}

TEST_F(ClosestSearch, TieGoesToFirstInChainOrder) {
  VECTOR_BLOK* first = AddBlock(layer, 1, {0, 0, 10, 0});
  AddBlock(layer, 1, {0, 10, 10, 10});
  int32_t *x1 = nullptr, *y1 = nullptr, *x2 = nullptr, *y2 = nullptr;
  bool nearEnd = false;
  VECTOR_BLOK* block = nullptr;
  int32_t distance = 0;
  EXPECT_TRUE(layer.SEARCH_CLOSEST_VECTOR({5, 5}, x1, y1, x2, y2, nearEnd, &block, distance, 10));
  EXPECT_EQ(block, first);
}

TEST_F(ClosestSearch, NearestSegmentOfContourTypeOnly) {
  AddBlock(layer, 33, {0, 1, 10, 1});
  VECTOR_BLOK* contourBlock = AddBlock(layer, 1, {0, 0, 0, 0, 0, 9, 10, 9});
  int32_t *x1 = nullptr, *y1 = nullptr, *x2 = nullptr, *y2 = nullptr;
  bool nearEnd = false;
  EXPECT_EQ(ZOEK_DICHTSTE_LIJNSTUK_IN_VECTOR_LAYER(layer, {9, 0}, x1, y1, x2, y2, nearEnd), 1);
  EXPECT_EQ(x1, contourBlock->Block + 4);
  EXPECT_TRUE(nearEnd);
}

TEST_F(ClosestSearch, RemoveClosestVectorIsStrictOnTolerance) {
  AddBlock(layer, 1, {0, 0, 10, 0, 50, 50, 60, 60});
  AddBlock(layer, 38, {100, 100, 110, 100});
  int32_t x = 5, y = 3;
  EXPECT_FALSE(layer.REMOVE_CLOSEST_VECTOR(x, y, 3));
  EXPECT_EQ(layer.FirstBlock->Size, 8);
  EXPECT_TRUE(layer.REMOVE_CLOSEST_VECTOR(x, y, 4));
  EXPECT_EQ(Coordinates(layer.FirstBlock), (std::vector<int32_t>{50, 50, 60, 60}));
  EXPECT_EQ(ExtentsOf(layer), "50 50 110 100");
  x = 105;
  y = 101;
  EXPECT_TRUE(layer.REMOVE_CLOSEST_VECTOR(x, y, 2));
  EXPECT_EQ(layer.NumBlocks, 1);
  EXPECT_EQ(ExtentsOf(layer), "50 50 60 60");
  EXPECT_EQ(x, 105);
}

TEST_F(ClosestSearch, PolylineThroughNearestVector) {
  // Run A, B, C, then a separate run D.
  AddBlock(layer, 1, {0, 0, 10, 0, 10, 0, 10, 10, 10, 10, 0, 10, 50, 50, 60, 50});
  int32_t count = -1, x = 11, y = 5;
  MMPoint2d<long>* run = layer.GET_CLOSEST_VECTOR_POLYLINE(count, x, y, 3);
  ASSERT_NE(run, nullptr);
  EXPECT_EQ(count, 6);
  EXPECT_EQ(FlattenPoints(run, count), (std::vector<int32_t>{10, 0, 10, 10, 10, 10, 0, 10, 0, 0, 10, 0}));
  free(run);
  x = 55;
  y = 52;
  run = layer.GET_CLOSEST_VECTOR_POLYLINE(count, x, y, 3);
  EXPECT_EQ(FlattenPoints(run, count), (std::vector<int32_t>{50, 50, 60, 50}));
  free(run);
  EXPECT_EQ(layer.GET_CLOSEST_VECTOR_POLYLINE(count, x, y, 2), nullptr);
  EXPECT_EQ(count, 0);
}

TEST_F(ClosestSearch, RemovePolylineKeepsExtents) {
  AddBlock(layer, 1, {0, 0, 10, 0, 10, 0, 10, 10, 50, 50, 60, 50});
  AddBlock(layer, 1, {-5, -5, -9, -9});
  layer.BEPAAL_EXTREMA();
  int32_t x = 9, y = 1;
  EXPECT_TRUE(layer.REMOVE_CLOSEST_VECTOR_POLYLINE(x, y, 5));
  EXPECT_EQ(Coordinates(layer.FirstBlock), (std::vector<int32_t>{50, 50, 60, 50}));
  x = -7;
  y = -7;
  EXPECT_TRUE(layer.REMOVE_CLOSEST_VECTOR_POLYLINE(x, y, 5));
  EXPECT_EQ(layer.NumBlocks, 1);
  EXPECT_EQ(ExtentsOf(layer), "-9 -9 60 50");
  x = 500;
  EXPECT_FALSE(layer.REMOVE_CLOSEST_VECTOR_POLYLINE(x, y, 5));
}

TEST_F(ClosestSearch, ClosestPointWithAndWithoutEndsOnly) {
  AddBlock(layer, 2, {4, 1, 0, 0});  // not selectable
  AddBlock(layer, 1, {0, 0, 10, 0, 10, 0, 10, 10, 10, 10, 20, 10});
  int32_t x = 9, y = 1;
  EXPECT_TRUE(layer.GET_CLOSEST_POINT(x, y, false));
  EXPECT_EQ(x, 10);
  EXPECT_EQ(y, 0);
  x = 9;
  y = 1;
  EXPECT_TRUE(layer.GET_CLOSEST_POINT(x, y, true));  // only (0,0) and (20,10) count
  EXPECT_EQ(x, 0);
  EXPECT_EQ(y, 0);
  VECTOR_LAYER none;
  AddBlock(none, 42, {1, 1, 2, 2});
  x = 7;
  y = 8;
  EXPECT_FALSE(none.GET_CLOSEST_POINT(x, y, false));
  EXPECT_EQ(x, 7);
  EXPECT_EQ(y, 8);
  none.Clear();
  LAYER whole;
  AddBlock(whole.Vectors, 1, {3, 4, 5, 6});
  x = 0;
  y = 0;
  EXPECT_TRUE(whole.GET_CLOSEST_POINT(x, y, true));
  EXPECT_EQ(x, 3);
  whole.Clear();
}

TEST_F(ClosestSearch, CountsOpenRuns) {
  AddBlock(layer, 1, {0, 0, 1, 0, 1, 0, 2, 0, 5, 5, 6, 6});  // two open runs
  AddBlock(layer, 1, {0, 0, 1, 0, 1, 0, 1, 1, 1, 1, 0, 0});  // closed ring
  AddBlock(layer, 1, {});                                    // empty block
  AddBlock(layer, 105, {0, 0, 1, 0});                        // not selectable
  EXPECT_EQ(layer.NUMBER_OF_OPEN_CONTOURS(), 3);
}

TEST_F(ClosestSearch, OpenPolylinesInBox) {
  AddBlock(layer, 105, {0, 0, 10, 5, 10, 5, 5, 5, 20, 20, 30, 30});  // any type counts
  AddBlock(layer, 1, {1, 1, 11, 1});
  BOX box = {10, 10, 0, 0};
  int32_t count = -1;
  MMPoint2d<long>* found = layer.GET_OPEN_POLYLINES_IN_BOX(count, box);
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(FlattenPoints(found, count), (std::vector<int32_t>{0, 0, 10, 5, 10, 5, 5, 5}));
  EXPECT_EQ(box.MinX, 0);  // normalised in place
  EXPECT_EQ(box.MaxX, 10);
  free(found);
  BOX far = {100, 100, 200, 200};
  found = layer.GET_OPEN_POLYLINES_IN_BOX(count, far);
  EXPECT_NE(found, nullptr);  // an empty allocation
  EXPECT_EQ(count, 0);
  free(found);
  VECTOR_LAYER empty;
  AddBlock(empty, 1, {});
  EXPECT_EQ(empty.GET_OPEN_POLYLINES_IN_BOX(count, box), nullptr);
  empty.Clear();
}

TEST_F(ClosestSearch, RemoveOpenPolylinesInBox) {
  AddBlock(layer, 105, {0, 0, 10, 5, 10, 5, 5, 5, 20, 20, 30, 30});
  AddBlock(layer, 1, {1, 1, 2, 2});
  BOX box = {0, 0, 10, 10};
  EXPECT_TRUE(layer.REMOVE_OPEN_POLYLINES_IN_BOX(box));
  EXPECT_EQ(layer.NumBlocks, 1);
  EXPECT_EQ(BlockAt(layer, 0), (std::vector<int32_t>{20, 20, 30, 30}));
  EXPECT_EQ(ExtentsOf(layer), "20 20 30 30");
  EXPECT_FALSE(layer.REMOVE_OPEN_POLYLINES_IN_BOX(box));
}
