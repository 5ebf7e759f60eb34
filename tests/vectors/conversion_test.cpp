#include "vectors/conversion.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "support/layer_builders.h"
#include "support/vector_blocks.h"

namespace {

using testing_support::AddBlock;
using testing_support::BlockAt;
using testing_support::BlockSizes;
using testing_support::CountBlocks;
using testing_support::ExtentsOf;
using testing_support::NewContour;
using C = std::vector<int32_t>;

C PointsOf(const CONTOUR* c) {
  return testing_support::FlattenPoints(c->Points, c->NumPoints);
}

class Conversion : public ::testing::Test {
 protected:
  void TearDown() override { layer.Clear(); }
  LAYER layer;
};

}  // namespace

TEST_F(Conversion, LayerToVectorsClosingByClosed) {
  for (unsigned char closed : {0, 7})
    layer.Contours.AddContourAtEnd(NewContour({{0, 0}, {10, 0}, {10, 10}}, closed));
  layer.Contours.AddContourAtEnd(NewContour({{0, 0}, {10, 0}, {10, 10}, {0, 0}}, 1));
  layer.Contours.AddContourAtEnd(NewContour({{5, 5}}, 0));
  layer.Contours.AddContourAtEnd(NewContour({{6, 6}}, 1));
  layer.Contours.BEPAAL_EXTREMA();
  layer.ZET_LAAG_OM_NAAR_VECTOREN();
  EXPECT_EQ(BlockSizes(layer.Vectors), (C{8, 12, 12, 0}));
  EXPECT_EQ(layer.Vectors.FirstBlock->Type, 1);
  EXPECT_EQ(layer.Contours.NumContours, 0);
  EXPECT_EQ(layer.Contours.LastContour, nullptr);
  EXPECT_EQ(ExtentsOf(layer.Vectors), "0 0 10 10");
  EXPECT_EQ(ExtentsOf(layer.Contours), "0 0 10 10");  // untouched
}

TEST_F(Conversion, ContoursThroughBoxBecomeVectors) {
  layer.Contours.AddContourAtEnd(NewContour(testing_support::Rectangle(0, 0, 10, 10, true)));
  layer.Contours.AddContourAtEnd(NewContour({{20, 0}, {30, 0}, {30, 10}}, 0));  // open, through the box
  layer.Contours.AddContourAtEnd(NewContour(testing_support::Rectangle(40, 0, 50, 10, true)));
  layer.Contours.AddContourAtEnd(new CONTOUR);  // no points: stays
  BOX box = {35, 12, 25, -5};
  layer.ZET_CONTOUR_DOOR_BOX_OM_NAAR_VECTOREN(box);
  EXPECT_EQ(box.MinX, 25);
  EXPECT_EQ(BlockAt(layer.Vectors, 0), (C{20, 0, 30, 0, 30, 0, 30, 10, 30, 10, 20, 0}));
  EXPECT_EQ(layer.Vectors.NumBlocks, 1);
  const CONTOUR* c = layer.Contours.FirstContour;  // the rest in reverse order
  ASSERT_EQ(layer.Contours.NumContours, 3);
  EXPECT_EQ(c->NumPoints, 0);
  EXPECT_EQ(c->NextContour->Points[0].x, 40);
  EXPECT_EQ(layer.Contours.LastContour->Points[0].x, 0);
  EXPECT_EQ(ExtentsOf(layer.Contours), "0 0 50 10");
}

TEST_F(Conversion, VectorRunsBecomeContoursInFront) {
  AddBlock(layer.Vectors, 1, {0, 0, 3, 0});
  VERPLAATS_VECTOR_LAAG_ALS_OPEN_CONTOUREN_NAAR_CONTOUR_LAAG(&layer);  // into an empty contour layer
  EXPECT_EQ(layer.Contours.FirstContour, layer.Contours.LastContour);
  layer.Clear();
  layer.Contours.AddContourAtEnd(NewContour({{100, 100}, {101, 100}, {101, 101}}));
  AddBlock(layer.Vectors, 33, {0, 0, 10, 0, 10, 0, 10, 10, 5, 5, 6, 6});
  AddBlock(layer.Vectors, 2, {0, 0, 1, 0, 1, 0, 0, 0});
  AddBlock(layer.Vectors, 2, {});
  VERPLAATS_VECTOR_LAAG_ALS_OPEN_CONTOUREN_NAAR_CONTOUR_LAAG(&layer);
  EXPECT_EQ(layer.Vectors.NumBlocks, 0);
  EXPECT_EQ(layer.Vectors.FirstBlock, nullptr);
  EXPECT_EQ(layer.Contours.NumContours, 4);
  const CONTOUR* ring = layer.Contours.FirstContour;  // last run first
  EXPECT_EQ(PointsOf(ring), (C{0, 0, 1, 0, 1, 0, 0, 0}));
  EXPECT_EQ(ring->Closed, 1);
  EXPECT_EQ(ring->Outer, kNotDetermined);
  EXPECT_EQ(PointsOf(ring->NextContour), (C{5, 5, 6, 6}));
  EXPECT_EQ(ring->NextContour->NextContour->NumPoints, 4);  // 2 vectors give 4 points
  EXPECT_EQ(ring->NextContour->NextContour->Closed, 0);
  EXPECT_EQ(layer.Contours.LastContour->Points[0].x, 100);
  EXPECT_EQ(ExtentsOf(layer), "0 0 101 101");
  VERPLAATS_VECTOR_LAAG_ALS_OPEN_CONTOUREN_NAAR_CONTOUR_LAAG(nullptr);
}

TEST_F(Conversion, OpenPolylineThroughVectorsAndBack) {
  MMPoint2d<long> points[] = {{-3, 7}, {4, 7}, {4, -2}, {9, 5}};
  COPIEER_OPEN_CONTOUR_NAAR_VECTOR_LAAG(layer.Vectors, points, 1, 4);  // one point: no vector
  EXPECT_EQ(layer.Vectors.NumBlocks, 0);
  COPIEER_OPEN_CONTOUR_NAAR_VECTOR_LAAG(layer.Vectors, points, 4, 4);
  EXPECT_EQ(BlockAt(layer.Vectors, 0), (C{-3, 7, 4, 7, 4, 7, 4, -2, 4, -2, 9, 5}));
  EXPECT_EQ(layer.Vectors.FirstBlock->Type, 4);
  EXPECT_EQ(ExtentsOf(layer.Vectors), "-3 -2 9 7");
  VERPLAATS_VECTOR_LAAG_ALS_OPEN_CONTOUREN_NAAR_CONTOUR_LAAG(&layer);
  ASSERT_EQ(layer.Contours.NumContours, 1);
  EXPECT_EQ(PointsOf(layer.Contours.FirstContour), (C{-3, 7, 4, 7, 4, 7, 4, -2, 4, -2, 9, 5}));
  EXPECT_EQ(layer.Contours.FirstContour->Closed, 0);
}

TEST_F(Conversion, StreamSortedIntoBlocksAndContours) {
  struct Case {
    const char* name;
    C stream;
    int32_t size;  // coordinates read from the stream
    C blocks;
    int32_t closedContours;
  };
  const C twoLooseThenRing = {0, 0, 1, 1, 5, 5, 6, 6, 10, 0, 20, 0, 20, 0, 20, 10, 20, 10, 10, 0};
  C twoLooseThenOpen = twoLooseThenRing;
  twoLooseThenOpen[18] = 11;  // the chain no longer returns to its start
  // clang-format off
  const Case cases[] = {
      {"two loose vectors, then a ring", twoLooseThenRing, 20, {8}, 1},
      {"two loose vectors, then an open chain", twoLooseThenOpen, 20, {8, 12}, 0},
      {"ring, open chain, two loose vectors, a lone last one",
       {0, 0, 1, 0, 1, 0, 0, 0, 5, 5, 6, 5, 6, 5, 7, 7, 50, 0, 51, 0, 60, 0, 61, 0, 70, 0, 71, 0}, 28, {8, 12}, 1},
      {"one vector and a spare coordinate", {0, 0, 4, 4, 9}, 5, {4}, 0},
      {"less than a vector", {0, 0, 4, 4, 9}, 3, {}, 0},
  };
  // clang-format on
  for (Case c : cases) {
    SCOPED_TRACE(c.name);
    layer.ADD_VECTORS_IN_CONTOURS_AND_VECTOR_BLOKS(c.stream.data(), c.size, 9);
    EXPECT_EQ(BlockSizes(layer.Vectors), c.blocks);
    ASSERT_EQ(layer.Contours.NumContours, c.closedContours);
    if (c.closedContours > 0) {
      EXPECT_EQ(layer.Vectors.FirstBlock->Type, 9);
      EXPECT_EQ(layer.Contours.FirstContour->Closed, 1);
    }
    layer.Clear();
  }
}

TEST(MergeByType, LimitAndOrderForEveryType) {
  VECTOR_LAYER v;
  const C big(40000, 1), half(30000, 2);
  for (const C* block : {&big, &big, &half, &big, &half})
    AddBlock(v, block == &big ? 5 : 6, *block);
  AddBlock(v, 6, {7, 7, 7, 7});
  v.VOEG_VECTOR_BLOKKEN_UIT_VECTOR_LAAG_SAMEN_VOLGENS_TYPE(static_cast<char>(255));
  EXPECT_EQ(BlockSizes(v), (C{40000, 40000, 60000, 40000, 4}));
  EXPECT_EQ(v.NumBlocks, 5);
  v.Clear();
  AddBlock(v, 3, {1, 1, 1, 1});
  AddBlock(v, 4, {2, 2, 2, 2});
  AddBlock(v, 3, {3, 3, 3, 3});
  AddBlock(v, 0x203, {4, 4, 4, 4});  // low byte 3, but not the same whole type
  v.VOEG_VECTOR_BLOKKEN_UIT_VECTOR_LAAG_SAMEN_VOLGENS_TYPE(static_cast<char>(255));
  EXPECT_EQ(BlockSizes(v), (C{8, 4, 4}));
  EXPECT_EQ(BlockAt(v, 0), (C{1, 1, 1, 1, 3, 3, 3, 3}));
  EXPECT_EQ(v.FirstBlock->NextBlock->NextBlock->Type, 3);  // the low byte
  v.Clear();
}

TEST(MergeByType, OtherTypesStayInPlace) {
  VECTOR_LAYER v;
  const uint16_t types[] = {4, 3, 4, 3, 0xC8, 0xC8};  // low byte above 127: merges with nothing
  for (int32_t i = 0; i < 6; ++i)
    AddBlock(v, types[i], {i, i, i + 1, i + 1});
  v.VOEG_VECTOR_BLOKKEN_UIT_VECTOR_LAAG_SAMEN_VOLGENS_TYPE(3);
  ASSERT_EQ(v.NumBlocks, 5);
  EXPECT_EQ(CountBlocks(v), 5);
  EXPECT_EQ(BlockAt(v, 0), (C{0, 0, 1, 1}));
  EXPECT_EQ(BlockAt(v, 1), (C{1, 1, 2, 2, 3, 3, 4, 4}));
  EXPECT_EQ(BlockAt(v, 2), (C{2, 2, 3, 3}));
  v.VOEG_VECTOR_BLOKKEN_UIT_VECTOR_LAAG_SAMEN_VOLGENS_TYPE(static_cast<char>(0xC8));
  EXPECT_EQ(v.NumBlocks, 5);
  EXPECT_EQ(v.FirstBlock->NextBlock->NextBlock->NextBlock->Type, 0xFFC8);  // widened with its sign
  v.Clear();
}

TEST(HatchDirection, AlongXOrY) {
  const struct {
    C block;
    int32_t direction;
  } cases[] = {{{3, 0, 3, 9, 5, 1, 5, -4}, 1},
               {{0, 2, 9, 2, 1, 5, -4, 5}, 2},
               {{0, 0, 1, 1}, 0},
               {{2, 2, 2, 2}, 1},
               {{1, 2, 3}, 0}};
  for (const auto& c : cases) {
    VECTOR_LAYER v;
    EXPECT_EQ(X_OF_Y_HATCH(AddBlock(v, 1, c.block)), c.direction) << testing::PrintToString(c.block);
    v.Clear();
  }
  EXPECT_EQ(X_OF_Y_HATCH(nullptr), 0);
}

TEST(ListToContour, ElementsBecomePointsAndAreReleased) {
  L_LIST_2 head = {0, 0, nullptr};
  for (int32_t i = 1; i <= 5; i += 2)
    VOEG_ACHTER_L_LIJST_2(&head, i, i + 1);
  CONTOUR c;
  ZET_L_LIJST_IN_LAAG(&head, &c);
  EXPECT_EQ(PointsOf(&c), (C{1, 2, 3, 4, 5, 6}));
  c.Clear();
  L_LIST_2 shortHead = {0, 0, nullptr};  // count below the elements: the extras are released too
  VOEG_ACHTER_L_LIJST_2(&shortHead, 7, 8);
  VOEG_ACHTER_L_LIJST_2(&shortHead, 9, 9);
  shortHead.Value = 0;
  ZET_L_LIJST_IN_LAAG(&shortHead, &c);
  EXPECT_EQ(c.NumPoints, 0);
  c.Clear();
  ZET_L_LIJST_IN_LAAG(nullptr, &c);
  EXPECT_EQ(c.NumPoints, 0);
}

class SpikeFilter : public ::testing::Test {
 protected:
  void SetUp() override {
    reference.AddContourAtEnd(NewContour(testing_support::Rectangle(0, 0, 100, 100, false)));
    reference.BEPAAL_EXTREMA();
  }
  void TearDown() override {
    layer.Clear();
    reference.Clear();
  }
  bool Filter(int32_t distance) {
    layer.BEPAAL_EXTREMA();
    return TEST_EN_FILTER_LAAG_OP_PIEKEN(&layer, reference, distance);
  }
  CONTOUR_LAYER layer;
  CONTOUR_LAYER reference;
};

TEST_F(SpikeFilter, SpikeGoesExcursionStays) {
  layer.AddContourAtEnd(NewContour({{0, 0}, {100, 0}, {100, 100}, {50, 5000}, {0, 100}}));
  layer.AddContourAtEnd(NewContour({{0, 0}, {100, 0}, {100, 1000}, {100, 2000}, {0, 100}}));
  layer.AddContourAtEnd(NewContour({{0, 0}, {100, 0}}, 0));  // fewer than 3 points
  EXPECT_TRUE(Filter(10));
  ASSERT_EQ(layer.NumContours, 2);
  EXPECT_EQ(PointsOf(layer.FirstContour), (C{0, 0, 100, 0, 100, 100, 0, 100}));
  EXPECT_EQ(layer.LastContour->NumPoints, 5);
  EXPECT_EQ(ExtentsOf(layer), "0 0 100 2000");
}

TEST_F(SpikeFilter, FrameMarginAndDistanceZero) {
  layer.AddContourAtEnd(NewContour({{-80, 0}, {100, 180}}, 0));  // margin 7 * 10 + 10
  EXPECT_FALSE(Filter(10));
  EXPECT_EQ(layer.NumContours, 1);
  EXPECT_TRUE(Filter(-10));  // margin 6 * 10: -80 lies outside
  EXPECT_EQ(layer.NumContours, 0);
  layer.AddContourAtEnd(NewContour({{0, 0}, {100, 0}, {100, 100}, {50, 101}, {0, 100}}));
  layer.AddContourAtEnd(NewContour({{0, 0}, {5, 5}}));
  EXPECT_TRUE(Filter(0));  // only drops the short contour
  ASSERT_EQ(layer.NumContours, 1);
  EXPECT_EQ(layer.FirstContour->NumPoints, 5);
}

TEST_F(SpikeFilter, ContourOutsideFrameEndsTheFilter) {
  layer.AddContourAtEnd(NewContour({{500, 500}, {600, 500}, {600, 600}}));
  layer.AddContourAtEnd(NewContour({{0, 0}, {100, 0}, {100, 100}, {100, 100}, {50, 5000}, {0, 100}}));
  EXPECT_TRUE(Filter(10));
  EXPECT_EQ(layer.FirstContour->NextContour->NumPoints, 6);  // unvisited, doubled point kept
  EXPECT_FALSE(TEST_EN_FILTER_LAAG_OP_PIEKEN(nullptr, reference, 10));
}
