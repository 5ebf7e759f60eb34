#include "vectors/closest.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include "geometry/segment_tests.h"
#include "layer/layer.h"
#include "support/vector_blocks.h"

namespace {

using testing_support::AddBlock;
using testing_support::BlockAt;
using testing_support::CoordinatesOf;
using testing_support::ExtentsOf;
using testing_support::FlattenPoints;
using C = std::vector<int32_t>;

// The points of a malloc'ed result, released (empty for null).
C TakePoints(MMPoint2d<long>* points, int32_t count) {
  C v = points == nullptr ? C{} : FlattenPoints(points, count);
  free(points);
  return v;
}

class ClosestSearch : public ::testing::Test {
 protected:
  void TearDown() override { layer.Clear(); }
  bool Search(MMPoint2d<long> p, int32_t tolerance) {
    return layer.SEARCH_CLOSEST_VECTOR(p, x1, y1, x2, y2, nearEnd, &block, distance, tolerance);
  }
  C Polyline(int32_t x, int32_t y, int32_t tolerance) {
    int32_t count = -1;
    MMPoint2d<long>* run = layer.GET_CLOSEST_VECTOR_POLYLINE(count, x, y, tolerance);
    EXPECT_EQ(count == 0, run == nullptr);
    return TakePoints(run, count);
  }
  // {found, x, y} after GET_CLOSEST_POINT from (x, y).
  static C ClosestPoint(VECTOR_LAYER& l, int32_t x, int32_t y, bool endsOnly) {
    const bool found = l.GET_CLOSEST_POINT(x, y, endsOnly);
    return {found, x, y};
  }
  VECTOR_LAYER layer;
  int32_t dummy = 0;
  int32_t *x1 = &dummy, *y1 = &dummy, *x2 = &dummy, *y2 = &dummy;
  bool nearEnd = false;
  VECTOR_BLOK* block = nullptr;
  int32_t distance = 0;
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

TEST(ClosestSearchTypes, OnlySelectableTypesAreSearched) {
  const uint16_t selectable[] = {1, 33, 34, 37, 38, 40, 41};
  const uint16_t other[] = {0, 2, 32, 39, 42, 105, 257, 0xFFFF};
  for (bool expected : {true, false}) {
    for (uint16_t type : expected ? C(selectable, selectable + 7) : C(other, other + 8)) {
      VECTOR_LAYER l;
      AddBlock(l, type, {0, 0, 10, 0});
      int32_t x = 3, y = 3, count = 0;
      EXPECT_EQ(l.GET_CLOSEST_POINT(x, y, false), expected) << "type " << type;
      EXPECT_EQ(l.NUMBER_OF_OPEN_CONTOURS(), expected ? 1 : 0) << "type " << type;
      MMPoint2d<long>* run = l.GET_CLOSEST_VECTOR_POLYLINE(count, x, y, 100);
      EXPECT_EQ(!TakePoints(run, count).empty(), expected) << "type " << type;
      l.Clear();
    }
  }
}

TEST_F(ClosestSearch, SearchReportsNearestAndTolerance) {
  AddBlock(layer, 2, {0, 5, 10, 5});  // nearer, but not selectable
  AddBlock(layer, 33, {0, 0, 0, 0, 20, 20, 20, 30});
  VECTOR_BLOK* second = AddBlock(layer, 1, {0, 10, 10, 10});
  EXPECT_FALSE(Search({8, 4}, 6));
  EXPECT_EQ(distance, 6);  // beyond tolerance, but described
  EXPECT_EQ(block, second);
  EXPECT_TRUE(nearEnd);
  EXPECT_TRUE(Search({2, 4}, 7));
  EXPECT_FALSE(nearEnd);
  *y1 = 50;  // the pointers lie in the block
  EXPECT_EQ(CoordinatesOf(second), (C{0, 50, 10, 10}));
  EXPECT_TRUE(Search({20, 25}, 1));
  EXPECT_EQ(distance, 0);
  EXPECT_FALSE(Search({20, 25}, 0));
}

TEST_F(ClosestSearch, NothingFoundLeavesOutputsAndTiesGoFirst) {
  AddBlock(layer, 1, {3, 3, 3, 3});  // a point vector is never nearest
  nearEnd = true;
  EXPECT_FALSE(Search({0, 0}, 100));
  EXPECT_EQ(distance, INT32_MIN);
  EXPECT_EQ(x1, &dummy);
  EXPECT_EQ(block, nullptr);
  EXPECT_TRUE(nearEnd);
  EXPECT_EQ(ZOEK_DICHTSTE_LIJNSTUK_IN_VECTOR_LAYER(layer, {0, 0}, x1, y1, x2, y2, nearEnd), 0);
  EXPECT_EQ(x1, &dummy);
  VECTOR_BLOK* first = AddBlock(layer, 1, {0, 0, 10, 0});
  AddBlock(layer, 1, {0, 10, 10, 10});
  EXPECT_TRUE(Search({5, 5}, 10));
  EXPECT_EQ(block, first);
}

TEST_F(ClosestSearch, NearestSegmentOfContourTypeOnly) {
  AddBlock(layer, 33, {0, 1, 10, 1});
  VECTOR_BLOK* contourBlock = AddBlock(layer, 1, {0, 0, 0, 0, 0, 9, 10, 9});
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
  EXPECT_EQ(BlockAt(layer, 0), (C{50, 50, 60, 60}));
  EXPECT_EQ(ExtentsOf(layer), "50 50 110 100");
  x = 105;
  y = 101;
  EXPECT_TRUE(layer.REMOVE_CLOSEST_VECTOR(x, y, 2));
  EXPECT_EQ(layer.NumBlocks, 1);
  EXPECT_EQ(ExtentsOf(layer), "50 50 60 60");
}

TEST_F(ClosestSearch, RemovePolylineTakesTheWholeRunAndLeavesTheExtents) {
  AddBlock(layer, 1, {0, 0, 10, 0, 10, 0, 10, 10, 50, 50, 60, 50});
  AddBlock(layer, 1, {100, 100, 110, 100});
  const std::string extents = ExtentsOf(layer);
  int32_t x = 11, y = 5;
  EXPECT_FALSE(layer.REMOVE_CLOSEST_VECTOR_POLYLINE(x, y, 1));
  EXPECT_TRUE(layer.REMOVE_CLOSEST_VECTOR_POLYLINE(x, y, 2));
  EXPECT_EQ(BlockAt(layer, 0), (C{50, 50, 60, 50}));
  EXPECT_EQ(ExtentsOf(layer), extents);  // left for the caller to recompute
  x = 105, y = 100;
  EXPECT_TRUE(layer.REMOVE_CLOSEST_VECTOR_POLYLINE(x, y, 2));
  EXPECT_EQ(layer.NumBlocks, 1);
}

TEST_F(ClosestSearch, PolylineThroughNearestVector) {
  // Run A, B, C, then a separate run D.
  AddBlock(layer, 1, {0, 0, 10, 0, 10, 0, 10, 10, 10, 10, 0, 10, 50, 50, 60, 50});
  EXPECT_EQ(Polyline(11, 5, 3), (C{10, 0, 10, 10, 10, 10, 0, 10, 0, 0, 10, 0}));
  EXPECT_EQ(Polyline(55, 52, 3), (C{50, 50, 60, 50}));
  EXPECT_EQ(Polyline(55, 52, 2), C{});
}

TEST_F(ClosestSearch, ClosestPointWithAndWithoutEndsOnly) {
  AddBlock(layer, 2, {4, 1, 0, 0});  // not selectable
  AddBlock(layer, 1, {0, 0, 10, 0, 10, 0, 10, 10, 10, 10, 20, 10});
  EXPECT_EQ(ClosestPoint(layer, 9, 1, false), (C{1, 10, 0}));
  EXPECT_EQ(ClosestPoint(layer, 9, 1, true), (C{1, 0, 0}));  // only (0,0) and (20,10) count
  VECTOR_LAYER none;
  AddBlock(none, 42, {1, 1, 2, 2});
  EXPECT_EQ(ClosestPoint(none, 7, 8, false), (C{0, 7, 8}));
  none.Clear();
  LAYER whole;
  AddBlock(whole.Vectors, 1, {3, 4, 5, 6});
  int32_t x = 0, y = 0;
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
  EXPECT_EQ(TakePoints(found, count), (C{0, 0, 10, 5, 10, 5, 5, 5}));
  EXPECT_EQ(ExtentsOf(box), "0 0 10 10");  // normalised in place
  BOX far = {100, 100, 200, 200};
  found = layer.GET_OPEN_POLYLINES_IN_BOX(count, far);
  EXPECT_NE(found, nullptr);  // an empty allocation
  EXPECT_EQ(count, 0);
  free(found);
  EXPECT_TRUE(layer.REMOVE_OPEN_POLYLINES_IN_BOX(box));
  EXPECT_EQ(BlockAt(layer, 0), (C{20, 20, 30, 30}));  // the polyline leaving the box stays
  EXPECT_EQ(BlockAt(layer, 1), (C{1, 1, 11, 1}));
  EXPECT_EQ(ExtentsOf(layer), "1 1 30 30");
  EXPECT_FALSE(layer.REMOVE_OPEN_POLYLINES_IN_BOX(box));
  VECTOR_LAYER empty;
  AddBlock(empty, 1, {});
  EXPECT_EQ(empty.GET_OPEN_POLYLINES_IN_BOX(count, box), nullptr);
  empty.Clear();
}

// The search against a brute force over random layers: the pointers designate
// the first vector of least distance, and the distance is its truncated root.
TEST_F(ClosestSearch, AgreesWithBruteForceOnRandomLayers) {
  uint32_t state = 7;
  auto next = [&state](int32_t range) {
    state = state * 1664525u + 1013904223u;
    return static_cast<int32_t>((state >> 8) % static_cast<uint32_t>(range)) - range / 2;
  };
  for (int round = 0; round < 50; ++round) {
    std::vector<std::vector<int32_t>> blocks(1 + round % 3);
    for (auto& b : blocks) {
      for (int i = 0; i < 4 * (1 + round % 4); ++i)
        b.push_back(next(200));
      AddBlock(layer, 1, b);
    }
    const MMPoint2d<long> p = {next(300), next(300)};
    float best = kNoDistance;
    C expected;
    for (const auto& b : blocks) {
      for (size_t i = 0; i < b.size(); i += 4) {
        bool end = false;
        const float d = KWADRAAT_AFSTAND_TOT_LIJNSTUK(p.x, p.y, b[i], b[i + 1], b[i + 2], b[i + 3], end);
        if (d < best) {
          best = d;
          expected.assign(b.begin() + i, b.begin() + i + 4);
        }
      }
    }
    SCOPED_TRACE(round);
    EXPECT_EQ(Search(p, INT32_MAX), true);
    EXPECT_EQ((C{*x1, *y1, *x2, *y2}), expected);
    EXPECT_EQ(distance, static_cast<int32_t>(std::sqrt(best)));
    layer.Clear();
  }
}
