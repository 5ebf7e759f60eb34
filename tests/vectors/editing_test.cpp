#include "vectors/editing.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/vector_blocks.h"

namespace {

using testing_support::BlockSizes;
using testing_support::Coordinates;

void ExpectExtents(const VECTOR_LAYER& l, int32_t minX, int32_t minY, int32_t maxX, int32_t maxY) {
  EXPECT_EQ(l.MinX, minX);
  EXPECT_EQ(l.MinY, minY);
  EXPECT_EQ(l.MaxX, maxX);
  EXPECT_EQ(l.MaxY, maxY);
}

class VectorEditing : public ::testing::Test {
 protected:
  void TearDown() override {
    layer.Clear();
    other.Clear();
  }
  void Add(std::vector<int32_t> c, char type = 3) {
    layer.VOEG_COORD_TOE_AAN_VECTOR_LAYER(c.data(), static_cast<int32_t>(c.size()), type);
  }
  VECTOR_LAYER layer;
  VECTOR_LAYER other;
};

}  // namespace

TEST_F(VectorEditing, AddCoordinatesCopiesAndGrowsExtentsOnly) {
  std::vector<int32_t> three = {1, 2, 3};
  layer.VOEG_COORD_TOE_AAN_VECTOR_LAYER(three.data(), 3, 1);
  EXPECT_EQ(layer.NumBlocks, 0);
  layer.MinX = -50;  // stale extents are only grown, never recomputed
  std::vector<int32_t> c = {1, 2, 3, 4};
  layer.VOEG_COORD_TOE_AAN_VECTOR_LAYER(c.data(), 4, static_cast<char>(-3));
  c[0] = 99;
  ASSERT_EQ(layer.NumBlocks, 1);
  EXPECT_EQ(Coordinates(layer.FirstBlock), (std::vector<int32_t>{1, 2, 3, 4}));
  EXPECT_EQ(layer.FirstBlock->Type, 0xFFFD);  // widened with its sign
  ExpectExtents(layer, -50, 2, 3, 4);
  Add({5, 6, 7, 8});
  EXPECT_EQ(layer.NumBlocks, 2);
  EXPECT_EQ(Coordinates(layer.FirstBlock->NextBlock)[0], 5);
}

TEST_F(VectorEditing, AddPointsReadsPairsAsVectors) {
  MMPoint2d<long> pts[3] = {{0, 0}, {10, 0}, {10, 10}};
  layer.VOEG_PTN_TOE_AAN_VECTOR_LAYER(pts, 1, 1);
  EXPECT_EQ(layer.NumBlocks, 0);
  layer.VOEG_PTN_TOE_AAN_VECTOR_LAYER(pts, 2, 1);
  ASSERT_EQ(layer.NumBlocks, 1);
  EXPECT_EQ(layer.FirstBlock->Size, 4);
  layer.VOEG_PTN_TOE_AAN_VECTOR_LAYER(pts, 3, 1);  // 3 points: 1.5 vectors, no polyline
  EXPECT_EQ(layer.FirstBlock->NextBlock->Size, 6);
}

TEST_F(VectorEditing, CircleCountsAndClosesExactly) {
  struct Case {
    float degrees;
    int32_t vectors;
  };
  for (Case c : {Case{45.0f, 8}, Case{1.0f, 360}, Case{7.0f, 51}}) {
    VECTOR_LAYER l;
    l.ZET_CIRKEL_IN_VECTOR_LAYER(1000, 50, -20, c.degrees, 4);
    ASSERT_EQ(l.NumBlocks, 1) << c.degrees;
    const std::vector<int32_t> v = Coordinates(l.FirstBlock);
    ASSERT_EQ(static_cast<int32_t>(v.size()), 4 * c.vectors) << c.degrees;
    EXPECT_EQ(v[0], 1050);
    EXPECT_EQ(v[1], -20);
    for (int32_t i = 0; i + 1 < c.vectors; ++i) {
      EXPECT_EQ(v[4 * i + 2], v[4 * i + 4]) << "degrees " << c.degrees << " vector " << i;
      EXPECT_EQ(v[4 * i + 3], v[4 * i + 5]) << "degrees " << c.degrees << " vector " << i;
    }
    EXPECT_EQ(v[4 * c.vectors - 2], 1050);
    EXPECT_EQ(v[4 * c.vectors - 1], -20);
    EXPECT_EQ(l.MaxX, 1050);
    EXPECT_LE(l.MinX, -940);
    EXPECT_GE(l.MinX, -950);
    l.Clear();
  }
  // Second point at 45 degrees: truncated before the centre is added.
  layer.ZET_CIRKEL_IN_VECTOR_LAYER(100, 0, 0, 45.0f, 1);
  EXPECT_EQ(layer.FirstBlock->Block[2], 70);
  EXPECT_EQ(layer.FirstBlock->Block[3], 70);
}

TEST_F(VectorEditing, CircleRefusesBadSteps) {
  for (float degrees : {45.1f, -1.0f, 0.0f, 1e-6f}) {
    layer.ZET_CIRKEL_IN_VECTOR_LAYER(100, 0, 0, degrees, 1);
    EXPECT_EQ(layer.NumBlocks, 0) << degrees;
  }
  layer.ZET_CIRKEL_IN_VECTOR_LAYER(0, 0, 0, 10.0f, 1);
  EXPECT_EQ(layer.NumBlocks, 0);
  layer.ZET_CIRKEL_IN_VECTOR_LAYER(-100, 5, 5, 45.0f, 1);
  ASSERT_EQ(layer.NumBlocks, 1);
  EXPECT_EQ(layer.FirstBlock->Block[0], -95);
  EXPECT_EQ(layer.FirstBlock->Block[1], 5);
}

TEST_F(VectorEditing, RotateTruncatesInFloat) {
  Add({-7, 3, 100, 0});
  layer.MaxX = 12345;
  layer.ROTEER_LAAG({0, 0}, 0.0f);
  EXPECT_EQ(layer.MaxX, 12345);  // 0 degrees: even stale extents stay
  layer.ROTEER_LAAG({0, 0}, 90.0f);
  EXPECT_EQ(Coordinates(layer.FirstBlock), (std::vector<int32_t>{-2, -7, 0, 100}));
  ExpectExtents(layer, -2, -7, 0, 100);
  other.VOEG_COORD_TOE_AAN_VECTOR_LAYER(std::vector<int32_t>{-7, 3, 10, 10}.data(), 4, 1);
  other.ROTEER_LAAG({10, 10}, 360.0f);
  EXPECT_EQ(Coordinates(other.FirstBlock), (std::vector<int32_t>{-6, 2, 10, 10}));
  VECTOR_LAYER empty;
  empty.MaxX = 5;
  empty.ROTEER_LAAG({0, 0}, 10.0f);
  EXPECT_EQ(empty.MaxX, kEmptyExtentMax);
}

TEST_F(VectorEditing, TranslateMirrorScaleKeepExtentsByArithmetic) {
  Add({0, 0, 10, 20});
  layer.BEPAAL_EXTREMA();
  layer.TRANSLEER_LAAG(5, -5);
  EXPECT_EQ(Coordinates(layer.FirstBlock), (std::vector<int32_t>{5, -5, 15, 15}));
  ExpectExtents(layer, 5, -5, 15, 15);
  layer.SPIEGEL_LAAG({1000, 100});
  EXPECT_EQ(Coordinates(layer.FirstBlock), (std::vector<int32_t>{5, 205, 15, 185}));
  ExpectExtents(layer, 5, 185, 15, 205);
  layer.HERSCHAAL_LAAG({5, 185}, -2.0f, 0.5f);
  EXPECT_EQ(Coordinates(layer.FirstBlock), (std::vector<int32_t>{5, 195, -15, 185}));
  ExpectExtents(layer, 5, 185, -15, 195);  // minimum above maximum until BEPAAL_EXTREMA
}

TEST_F(VectorEditing, TransformsOnLayerWithoutBlocksLeaveExtents) {
  other.MinX = 1;
  other.MaxX = 2;
  other.MinY = 3;
  other.MaxY = 4;
  other.TRANSLEER_LAAG(10, 10);
  other.SPIEGEL_LAAG({0, 50});
  other.HERSCHAAL_LAAG({0, 0}, 3.0f, 3.0f);
  ExpectExtents(other, 1, 3, 2, 4);
}

TEST_F(VectorEditing, ScaleByOneKeepsLargeIntegers) {
  Add({16777216, -16777216, 16777215, 3});
  layer.HERSCHAAL_LAAG({123, -77}, 1.0f, 1.0f);
  EXPECT_EQ(Coordinates(layer.FirstBlock), (std::vector<int32_t>{16777216, -16777216, 16777215, 3}));
}

TEST_F(VectorEditing, RemovePointVectorsKeepsEmptiedBlocks) {
  Add({1, 1, 1, 1, 0, 0, 5, 0, 2, 2, 2, 2, 0, 0, 0, 7});
  Add({3, 3, 3, 3});
  layer.VERWIJDER_PUNT_VECTOREN();
  EXPECT_EQ(layer.NumBlocks, 2);
  EXPECT_EQ(Coordinates(layer.FirstBlock), (std::vector<int32_t>{0, 0, 5, 0, 0, 0, 0, 7}));
  EXPECT_EQ(layer.FirstBlock->NextBlock->Size, 0);
  EXPECT_EQ(layer.FirstBlock->NextBlock->Block, nullptr);
  ExpectExtents(layer, 0, 0, 5, 7);
  VECTOR_LAYER empty;
  empty.MaxY = 9;
  empty.VERWIJDER_PUNT_VECTOREN();
  EXPECT_EQ(empty.MaxY, kEmptyExtentMax);
}

TEST(SegmentBoxTest, StrictHitsAndMisses) {
  const BOX box = {0, 0, 10, 10};
  struct Case {
    int32_t px, py, qx, qy;
    bool hit;
  };
  const Case cases[] = {
      {-5, 5, 15, 5, true},     // crosses
      {2, 2, 8, 3, true},       // wholly inside
      {-5, -5, 15, 15, true},   // diagonal through corners
      {-5, 0, 15, 0, false},    // on the lower edge from outside
      {10, -5, 10, 15, false},  // on the right edge
      {-5, 20, 15, 20, false},  // above
      {-5, 5, -1, 5, false},    // on the line, short of the box
      {5, 5, 5, 5, false},      // zero length inside
      {-5, 12, 12, -5, true},   // cuts a corner
      {-5, 26, 26, -5, false},  // passes by the corner
  };
  for (const Case& c : cases) {
    EXPECT_EQ(SegmentHitsBox(box, c.px, c.py, c.qx, c.qy), c.hit)
        << "(" << c.px << "," << c.py << ")-(" << c.qx << "," << c.qy << ")";
    EXPECT_EQ(SegmentHitsBox(box, c.qx, c.qy, c.px, c.py), c.hit)
        << "reversed (" << c.px << "," << c.py << ")-(" << c.qx << "," << c.qy << ")";
  }
}

TEST_F(VectorEditing, RemoveThroughBoxDropsHitsAndEmptyBlocks) {
  Add({-5, 5, 15, 5, 20, 20, 30, 30});
  Add({1, 1, 1, 1});              // point vector only: block goes, hit or not
  Add({50, 50, 60, 60});          // untouched
  Add({2, 2, 8, 3, 3, 3, 4, 4});  // all inside: block goes
  BOX box = {10, 10, 0, 0};       // corners exchanged
  EXPECT_TRUE(layer.VERWIJDER_VECTOREN_DOOR_BOX(box));
  EXPECT_EQ(layer.NumBlocks, 2);
  EXPECT_EQ(BlockSizes(layer), (std::vector<int32_t>{4, 4}));
  EXPECT_EQ(Coordinates(layer.FirstBlock), (std::vector<int32_t>{20, 20, 30, 30}));
  ExpectExtents(layer, 20, 20, 60, 60);
  EXPECT_EQ(box.MinX, 10);  // the caller's box is not normalised
}

TEST_F(VectorEditing, RemoveThroughBoxWithoutHitStillCleans) {
  Add({50, 50, 60, 60, 7, 7, 7, 7});
  Add({1, 1, 1, 1});
  EXPECT_FALSE(layer.VERWIJDER_VECTOREN_DOOR_BOX({0, 0, 10, 10}));
  EXPECT_EQ(BlockSizes(layer), (std::vector<int32_t>{4}));
  EXPECT_EQ(layer.NumBlocks, 1);
}

TEST_F(VectorEditing, MoveAllBlocksAppendsAndEmptiesOther) {
  Add({0, 0, 1, 1}, 1);
  other.VOEG_COORD_TOE_AAN_VECTOR_LAYER(std::vector<int32_t>{-5, 2, 3, 9}.data(), 4, 2);
  other.VOEG_COORD_TOE_AAN_VECTOR_LAYER(std::vector<int32_t>{0, 0, 3, 3}.data(), 4, 3);
  EXPECT_TRUE(layer.VOEG_TOE(other));
  EXPECT_EQ(layer.NumBlocks, 3);
  EXPECT_EQ(layer.FirstBlock->NextBlock->Type, 2);
  ExpectExtents(layer, -5, 0, 3, 9);
  EXPECT_EQ(other.FirstBlock, nullptr);
  EXPECT_EQ(other.NumBlocks, 0);
  EXPECT_EQ(other.MaxX, kEmptyExtentMax);
  VECTOR_LAYER empty;
  EXPECT_TRUE(empty.VOEG_TOE(layer));
  EXPECT_EQ(empty.NumBlocks, 3);
  empty.Clear();
}

TEST_F(VectorEditing, MoveByTypeReversesAtFrontAndKeepsExtents) {
  Add({0, 0, 1, 1}, 9);
  other.VOEG_COORD_TOE_AAN_VECTOR_LAYER(std::vector<int32_t>{1, 0, 0, 0}.data(), 4, 5);  // A
  other.VOEG_COORD_TOE_AAN_VECTOR_LAYER(std::vector<int32_t>{2, 0, 0, 0}.data(), 4, 6);
  other.VOEG_COORD_TOE_AAN_VECTOR_LAYER(std::vector<int32_t>{3, 0, 0, 0}.data(), 4, 5);  // B
  const int32_t maxX = layer.MaxX;
  EXPECT_FALSE(layer.VOEG_TOE_VOLGENS_VECTOR_TYPE(other, 7));
  EXPECT_TRUE(layer.VOEG_TOE_VOLGENS_VECTOR_TYPE(other, 5));
  EXPECT_EQ(layer.NumBlocks, 3);
  EXPECT_EQ(other.NumBlocks, 1);
  EXPECT_EQ(layer.FirstBlock->Block[0], 3);
  EXPECT_EQ(layer.FirstBlock->NextBlock->Block[0], 1);
  EXPECT_EQ(layer.FirstBlock->NextBlock->NextBlock->Type, 9);
  EXPECT_EQ(other.FirstBlock->Type, 6);
  EXPECT_EQ(layer.MaxX, maxX);
  EXPECT_EQ(other.MaxX, 3);
}

TEST_F(VectorEditing, ReverseBlockOrder) {
  for (int32_t i = 1; i <= 3; ++i)
    Add({i, 0, 0, 0});
  layer.VERANDER_VECTOR_BLOK_VOLGORDE();
  std::vector<int32_t> firsts;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock)
    firsts.push_back(b->Block[0]);
  EXPECT_EQ(firsts, (std::vector<int32_t>{3, 2, 1}));
  other.VERANDER_VECTOR_BLOK_VOLGORDE();
  EXPECT_EQ(other.FirstBlock, nullptr);
}
