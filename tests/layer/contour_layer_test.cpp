#include "layer/contour_layer.h"

#include <gtest/gtest.h>

#include "support/layer_builders.h"

using testing_support::NewContour;
using testing_support::Rectangle;

namespace {

// Checks the chain invariants: count, first/last links.
void ExpectChainConsistent(const CONTOUR_LAYER& layer) {
  int32_t n = 0;
  const CONTOUR* last = nullptr;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    ++n;
    last = c;
  }
  EXPECT_EQ(n, layer.NumContours);
  EXPECT_EQ(last, layer.LastContour);
}

class ContourLayerTest : public ::testing::Test {
 protected:
  void TearDown() override {
    a.Clear();
    b.Clear();
  }
  CONTOUR_LAYER a;
  CONTOUR_LAYER b;
};

}  // namespace

TEST_F(ContourLayerTest, EmptyingRespectsTheCount) {
  a.LEEG_LAAG();  // fresh: nothing changes
  EXPECT_EQ(a.MaxX, kEmptyExtentMax);
  a.MaxX = 5;  // extents set by hand on a layer without contours stay
  a.LEEG_LAAG();
  EXPECT_EQ(a.MaxX, 5);
  a.AddContourAtEnd(NewContour(Rectangle(0, 0, 3, 3, true)));
  a.BEPAAL_EXTREMA();
  a.LEEG_LAAG();
  EXPECT_EQ(a.NumContours, 0);
  EXPECT_EQ(a.FirstContour, nullptr);
  EXPECT_EQ(a.LastContour, nullptr);
  EXPECT_EQ(a.MaxX, kEmptyExtentMax);
  EXPECT_EQ(a.MinY, kEmptyExtentMin);
}

TEST_F(ContourLayerTest, AddingAtEndFrontAndAfterKeepsLinks) {
  CONTOUR* first = NewContour(Rectangle(0, 0, 1, 1, true));
  a.AddContourAtEnd(first);
  EXPECT_EQ(a.FirstContour, first);
  EXPECT_EQ(a.LastContour, first);
  EXPECT_EQ(first->Owner, &a);
  CONTOUR* front = NewContour(Rectangle(0, 0, 2, 2, true));
  a.AddContourAfter(front, nullptr);  // null means front
  EXPECT_EQ(a.FirstContour, front);
  CONTOUR* tail = NewContour(Rectangle(0, 0, 3, 3, true));
  a.AddContourAfter(tail, first);
  EXPECT_EQ(a.LastContour, tail);
  EXPECT_EQ(a.MaxX, kEmptyExtentMax);  // adopting leaves the extents
  ExpectChainConsistent(a);
}

TEST_F(ContourLayerTest, RemoveContourUnlinksOrReleases) {
  CONTOUR* c1 = NewContour(Rectangle(0, 0, 1, 1, true));
  CONTOUR* c2 = NewContour(Rectangle(0, 0, 2, 2, true));
  a.AddContourAtEnd(c1);
  a.AddContourAtEnd(c2);
  a.BEPAAL_EXTREMA();
  CONTOUR* removed = c2;
  EXPECT_EQ(a.RemoveContour(removed, false), nullptr);
  EXPECT_EQ(removed, c2);
  EXPECT_EQ(a.LastContour, c1);
  EXPECT_EQ(c2->Owner, nullptr);
  ExpectChainConsistent(a);
  b.AddContourAtEnd(c2);  // hand it to b, then ask a to remove it: not found
  CONTOUR* foreign = c2;
  EXPECT_EQ(a.RemoveContour(foreign, true), nullptr);
  EXPECT_EQ(foreign, c2);
  EXPECT_EQ(c2->Owner, nullptr);
  EXPECT_EQ(a.NumContours, 1);
  CONTOUR* only = c1;
  EXPECT_EQ(a.RemoveContour(only, true), nullptr);
  EXPECT_EQ(only, nullptr);
  EXPECT_EQ(a.NumContours, 0);
  EXPECT_EQ(a.FirstContour, nullptr);
  EXPECT_EQ(a.LastContour, nullptr);
  EXPECT_EQ(a.MaxX, 2);  // extents left as they were
}

TEST_F(ContourLayerTest, SetNextContourKeepsOwnersLastLink) {
  CONTOUR* c1 = NewContour(Rectangle(0, 0, 1, 1, true));
  a.AddContourAtEnd(c1);
  CONTOUR* c2 = NewContour(Rectangle(0, 0, 2, 2, true));
  CONTOUR* c3 = NewContour(Rectangle(0, 0, 3, 3, true));
  c2->NextContour = c3;
  c1->_SetNextContour(c2);
  a._SetNumContours(3);
  EXPECT_EQ(a.LastContour, c3);
  ExpectChainConsistent(a);
}

TEST_F(ContourLayerTest, MoveAndSwapTransferContentAndOwnership) {
  a.AddContourAtEnd(NewContour(Rectangle(0, 0, 1, 1, true)));
  b.AddContourAtEnd(NewContour(Rectangle(0, 0, 2, 2, true)));
  b.AddContourAtEnd(NewContour(Rectangle(0, 0, 3, 3, true)));
  a.SwapWith(b);
  EXPECT_EQ(a.NumContours, 2);
  EXPECT_EQ(a.FirstContour->Owner, &a);
  EXPECT_EQ(b.FirstContour->Owner, &b);
  a.MoveTo(b);  // a's two contours are released, b's one moves into a
  EXPECT_EQ(a.NumContours, 1);
  EXPECT_EQ(a.FirstContour->Points[1].y, 1);
  EXPECT_EQ(b.NumContours, 0);
  EXPECT_EQ(b.FirstContour, nullptr);
  a.AddContourAtEnd(NewContour(Rectangle(0, 0, 4, 4, true)));
  ExpectChainConsistent(a);
}

TEST_F(ContourLayerTest, DeepCopiesAreIndependent) {
  EXPECT_TRUE(a.COPIEER_LAAG(b));  // empty source
  EXPECT_EQ(a.FirstContour, nullptr);
  CONTOUR* c = NewContour(Rectangle(0, 0, 5, 5, true));
  c->Outer = 1;
  c->Type = 3;
  c->Order = 8;
  b.AddContourAtEnd(c);
  CONTOUR* empty = new CONTOUR;
  b.AddContourAtEnd(empty);
  b.BEPAAL_EXTREMA();
  ASSERT_TRUE(a.COPIEER_LAAG(b));
  ExpectChainConsistent(a);
  EXPECT_EQ(a.MaxX, 5);
  EXPECT_NE(a.FirstContour->Points, c->Points);
  EXPECT_EQ(a.FirstContour->Outer, 1);
  EXPECT_EQ(a.FirstContour->Type, 3);
  EXPECT_EQ(a.FirstContour->Order, 0);
  EXPECT_EQ(a.FirstContour->Owner, nullptr);
  CONTOUR_LAYER c2;
  c2.COPY_FROM(b);
  EXPECT_EQ(c2.NumContours, 2);
  EXPECT_EQ(c2.LastContour->Points, nullptr);  // no array for a contour without points
  c2.COPY_FROM(b);                             // on a filled layer: replaces
  EXPECT_EQ(c2.NumContours, 2);
  c2.Clear();
}

TEST_F(ContourLayerTest, CopyAndAdoptAtFrontGrowExtents) {
  CONTOUR* c = NewContour(Rectangle(-2, -3, 4, 5, true));
  a.COPIEER_CONTOUR_NAAR_LAAG(c);
  EXPECT_EQ(a.FirstContour->Owner, nullptr);
  EXPECT_EQ(a.MinX, -2);
  EXPECT_EQ(a.MaxY, 5);
  a.VOEG_CONTOUR_TOE_AAN_LAAG(c);
  EXPECT_EQ(a.FirstContour, c);
  EXPECT_EQ(c->Owner, nullptr);
  EXPECT_EQ(a.NumContours, 2);
  ExpectChainConsistent(a);
}

TEST_F(ContourLayerTest, AppendLayerMovesChainAndMergesExtents) {
  EXPECT_TRUE(a.VOEG_TOE(b));  // empty other: nothing changes
  EXPECT_EQ(a.NumContours, 0);
  a.AddContourAtEnd(NewContour(Rectangle(0, 0, 1, 1, true)));
  a.BEPAAL_EXTREMA();
  b.AddContourAtEnd(NewContour(Rectangle(5, 5, 9, 9, true)));
  b.BEPAAL_EXTREMA();
  EXPECT_TRUE(a.VOEG_TOE(b));
  EXPECT_EQ(a.NumContours, 2);
  EXPECT_EQ(a.MaxX, 9);
  EXPECT_EQ(a.MinX, 0);
  EXPECT_EQ(b.NumContours, 0);
  EXPECT_EQ(b.FirstContour, nullptr);
  EXPECT_EQ(b.MaxX, kEmptyExtentMax);
  ExpectChainConsistent(a);
}

TEST_F(ContourLayerTest, VectorsBecomeOneContour) {
  int32_t six[6] = {0, 0, 1, 0, 1, 1};
  EXPECT_FALSE(a.COPIEER_VECTORS_TO_CONTOUR(six, 6));
  int32_t open[8] = {0, 0, 1, 0, 1, 0, 1, 1};
  ASSERT_TRUE(a.COPIEER_VECTORS_TO_CONTOUR(open, 8));
  EXPECT_EQ(a.LastContour->NumPoints, 3);
  EXPECT_EQ(a.LastContour->Closed, 0);
  EXPECT_EQ(a.MaxY, 1);
  int32_t closed[12] = {0, 0, 1, 0, 1, 0, 1, 1, 1, 1, 0, 0};
  ASSERT_TRUE(a.COPIEER_VECTORS_TO_CONTOUR(closed, 12));
  EXPECT_EQ(a.LastContour->NumPoints, 4);
  EXPECT_EQ(a.LastContour->Closed, 1);
  EXPECT_EQ(a.LastContour->Outer, 7);
  EXPECT_EQ(a.LastContour->Owner, &a);
}

TEST_F(ContourLayerTest, ReverseChainAndExtentsSkipType103) {
  CONTOUR* c1 = NewContour(Rectangle(0, 0, 1, 1, true));
  a.AddContourAtEnd(c1);
  a.VERANDER_CONTOUR_VOLGORDE();  // one contour: unchanged
  EXPECT_EQ(a.FirstContour, c1);
  EXPECT_EQ(a.LastContour, c1);
  CONTOUR* c2 = NewContour(Rectangle(0, 0, 100, 100, true));
  c2->Type = 103;
  a.AddContourAtEnd(c2);
  a.AddContourAtEnd(new CONTOUR);
  a.VERANDER_CONTOUR_VOLGORDE();
  EXPECT_EQ(a.LastContour, c1);
  EXPECT_EQ(a.FirstContour->NextContour, c2);
  ExpectChainConsistent(a);
  a.BEPAAL_EXTREMA();
  EXPECT_EQ(a.MaxX, 1);
  EXPECT_EQ(a.MinX, 0);
}
