#include "vectors/editing.h"

#include <gtest/gtest.h>

#include <vector>

#include "geometry/segment_tests.h"
#include "support/vector_blocks.h"

namespace {

using testing_support::BlockAt;
using testing_support::BlockSizes;
using testing_support::CoordinatesOf;
using testing_support::ExtentsOf;
using C = std::vector<int32_t>;

class VectorEditing : public ::testing::Test {
 protected:
  void TearDown() override {
    layer.Clear();
    other.Clear();
  }
  static void Add(VECTOR_LAYER& l, C c, char type = 3) {
    l.VOEG_COORD_TOE_AAN_VECTOR_LAYER(c.data(), static_cast<int32_t>(c.size()), type);
  }
  void Add(C c, char type = 3) { Add(layer, c, type); }
  VECTOR_LAYER layer;
  VECTOR_LAYER other;
};

}  // namespace

TEST_F(VectorEditing, AddCopiesWholeVectorsAndGrowsExtentsOnly) {
  C three = {1, 2, 3};
  layer.VOEG_COORD_TOE_AAN_VECTOR_LAYER(three.data(), 3, 1);
  EXPECT_EQ(layer.NumBlocks, 0);
  layer.MinX = -50;  // stale extents are only grown, never recomputed
  C c = {1, 2, 3, 4};
  layer.VOEG_COORD_TOE_AAN_VECTOR_LAYER(c.data(), 4, static_cast<char>(-3));
  c[0] = 99;
  EXPECT_EQ(BlockAt(layer, 0), (C{1, 2, 3, 4}));
  EXPECT_EQ(layer.FirstBlock->Type, 0xFFFD);  // widened with its sign
  EXPECT_EQ(ExtentsOf(layer), "-50 2 3 4");
  MMPoint2d<long> pts[3] = {{0, 0}, {10, 0}, {10, 10}};
  layer.VOEG_PTN_TOE_AAN_VECTOR_LAYER(pts, 1, 1);
  EXPECT_EQ(layer.NumBlocks, 1);
  layer.VOEG_PTN_TOE_AAN_VECTOR_LAYER(pts, 3, 1);  // 3 points: 1.5 vectors, no polyline
  EXPECT_EQ(BlockSizes(layer), (C{4, 6}));
}

TEST_F(VectorEditing, CircleCountsAndClosesExactly) {
  for (float degrees : {45.0f, 1.0f, 7.0f}) {
    VECTOR_LAYER l;
    l.ZET_CIRKEL_IN_VECTOR_LAYER(1000, 50, -20, degrees, 4);
    ASSERT_EQ(l.NumBlocks, 1) << degrees;
    const C v = CoordinatesOf(l.FirstBlock);
    const int32_t vectors = static_cast<int32_t>(v.size()) / 4;
    EXPECT_EQ(vectors, degrees == 7.0f ? 51 : static_cast<int32_t>(360 / degrees)) << degrees;
    EXPECT_EQ((C{v[0], v[1], v[v.size() - 2], v.back()}), (C{1050, -20, 1050, -20})) << degrees;
    for (int32_t i = 0; i + 1 < vectors; ++i) {
      EXPECT_EQ(v[4 * i + 2], v[4 * i + 4]) << "degrees " << degrees << " vector " << i;
      EXPECT_EQ(v[4 * i + 3], v[4 * i + 5]) << "degrees " << degrees << " vector " << i;
    }
    EXPECT_EQ(l.MaxX, 1050);
    EXPECT_TRUE(l.MinX >= -950 && l.MinX <= -940) << l.MinX;
    l.Clear();
  }
  for (float degrees : {45.1f, -1.0f, 0.0f, 1e-6f})
    layer.ZET_CIRKEL_IN_VECTOR_LAYER(100, 0, 0, degrees, 1);
  layer.ZET_CIRKEL_IN_VECTOR_LAYER(0, 0, 0, 10.0f, 1);
  EXPECT_EQ(layer.NumBlocks, 0);
  // Second point at 45 degrees: truncated before the centre is added; a
  // negative radius starts on the other side.
  layer.ZET_CIRKEL_IN_VECTOR_LAYER(100, 0, 0, 45.0f, 1);
  EXPECT_EQ((C{layer.FirstBlock->Block[2], layer.FirstBlock->Block[3]}), (C{70, 70}));
  other.ZET_CIRKEL_IN_VECTOR_LAYER(-100, 5, 5, 45.0f, 1);
  EXPECT_EQ((C{other.FirstBlock->Block[0], other.FirstBlock->Block[1]}), (C{-95, 5}));
}

// Translation, mirroring and 90-degree rotation are covered by the whole-layer
// transform tests; these are the vector layer's own arithmetic edges.
TEST_F(VectorEditing, TransformEdgesOfFloatArithmeticAndExtents) {
  Add({-7, 3, 10, 10});
  layer.MaxX = 12345;
  layer.ROTEER_LAAG({0, 0}, 0.0f);
  EXPECT_EQ(layer.MaxX, 12345);  // 0 degrees: even stale extents stay
  layer.ROTEER_LAAG({10, 10}, 360.0f);
  EXPECT_EQ(BlockAt(layer, 0), (C{-6, 2, 10, 10}));  // truncated in float
  Add(other, {0, 0, 10, 20});
  other.BEPAAL_EXTREMA();
  other.HERSCHAAL_LAAG({5, 4}, -2.0f, 0.5f);
  EXPECT_EQ(BlockAt(other, 0), (C{15, 2, -5, 12}));
  EXPECT_EQ(ExtentsOf(other), "15 2 -5 12");  // minimum above maximum until BEPAAL_EXTREMA
  other.Clear();
  Add(other, {16777216, -16777216, 16777215, 3});  // beyond float's exact integers
  other.HERSCHAAL_LAAG({123, -77}, 1.0f, 1.0f);
  EXPECT_EQ(BlockAt(other, 0), (C{16777216, -16777216, 16777215, 3}));
  for (int op = 0; op < 2; ++op) {  // on a layer without blocks these recompute: the empty extents
    VECTOR_LAYER empty;
    empty.MaxX = 5;
    op == 0 ? empty.ROTEER_LAAG({0, 0}, 10.0f) : empty.VERWIJDER_PUNT_VECTOREN();
    EXPECT_EQ(empty.MaxX, kEmptyExtentMax) << op;
  }
}

TEST_F(VectorEditing, TransformsTouchOnlyTheCoordinatesInUse) {
  Add({1, 2, 3, 4, 5, 6, 7, 8});
  layer.FirstBlock->_SetSize(4);  // the second vector's storage stays behind
  layer.TRANSLEER_LAAG(10, 10);
  layer.SPIEGEL_LAAG({0, 100});
  EXPECT_EQ(BlockAt(layer, 0), (C{11, 188, 13, 186}));
  layer.HERSCHAAL_LAAG({0, 0}, 2.0f, 2.0f);
  layer.ROTEER_LAAG({0, 0}, 90.0f);
  EXPECT_EQ(C(layer.FirstBlock->Block + 4, layer.FirstBlock->Block + 8), (C{5, 6, 7, 8}));
}

TEST_F(VectorEditing, RemovePointVectorsKeepsEmptiedBlocks) {
  Add({1, 1, 1, 1, 0, 0, 5, 0, 2, 2, 2, 2, 0, 0, 0, 7});
  Add({3, 3, 3, 3});
  layer.VERWIJDER_PUNT_VECTOREN();
  EXPECT_EQ(layer.NumBlocks, 2);
  EXPECT_EQ(BlockAt(layer, 0), (C{0, 0, 5, 0, 0, 0, 0, 7}));
  EXPECT_EQ(layer.FirstBlock->NextBlock->Size, 0);
  EXPECT_EQ(layer.FirstBlock->NextBlock->Block, nullptr);
  EXPECT_EQ(ExtentsOf(layer), "0 0 5 7");
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
  EXPECT_EQ(BlockAt(layer, 0), (C{20, 20, 30, 30}));
  EXPECT_EQ(ExtentsOf(layer), "20 20 60 60");
  EXPECT_EQ(box.MinX, 10);  // the caller's box is not normalised
  Add(other, {50, 50, 60, 60, 7, 7, 7, 7});
  Add(other, {1, 1, 1, 1});
  EXPECT_FALSE(other.VERWIJDER_VECTOREN_DOOR_BOX({0, 0, 10, 10}));  // no hit, still cleaned
  EXPECT_EQ(BlockSizes(other), (C{4}));
  EXPECT_EQ(other.NumBlocks, 1);
}

TEST_F(VectorEditing, MoveBlocksAllOrByType) {
  Add({0, 0, 1, 1}, 9);
  Add(other, {1, 0, 0, 0}, 5);
  Add(other, {2, 0, 0, 0}, 6);
  Add(other, {3, 0, 0, 0}, 5);
  EXPECT_FALSE(layer.VOEG_TOE_VOLGENS_VECTOR_TYPE(other, 7));
  EXPECT_TRUE(layer.VOEG_TOE_VOLGENS_VECTOR_TYPE(other, 5));  // reversed, in front
  EXPECT_EQ(BlockSizes(other), (C{4}));
  EXPECT_EQ(other.FirstBlock->Type, 6);
  EXPECT_EQ(ExtentsOf(layer), "0 0 1 1");  // neither layer's extents change
  EXPECT_EQ(other.MaxX, 3);
  layer.VERANDER_VECTOR_BLOK_VOLGORDE();
  Add(other, {-5, 2, 3, 9}, 2);
  EXPECT_TRUE(layer.VOEG_TOE(other));  // all, at the end
  std::vector<int32_t> order;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock)
    order.push_back(b->Type * 10 + b->Block[0]);
  EXPECT_EQ(order, (C{90, 51, 53, 62, 15}));
  EXPECT_EQ(ExtentsOf(layer), "-5 0 3 9");
  EXPECT_EQ(other.FirstBlock, nullptr);
  EXPECT_EQ(other.NumBlocks, 0);
  EXPECT_EQ(other.MaxX, kEmptyExtentMax);
}
