#include "layer/contour_layer.h"

#include <gtest/gtest.h>

#include "support/chain_checks.h"
#include "support/layer_builders.h"

using testing_support::NewRectangle;

using testing_support::ExpectChainConsistent;

namespace {

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
  a.AddContourAtEnd(NewRectangle(0, 0, 3, 3));
  a.BEPAAL_EXTREMA();
  a.LEEG_LAAG();
  ExpectChainConsistent(a);
  EXPECT_EQ(a.FirstContour, nullptr);
  EXPECT_EQ(a.MaxX, kEmptyExtentMax);
  EXPECT_EQ(a.MinY, kEmptyExtentMin);
}

TEST_F(ContourLayerTest, AddingAndRemovingKeepLinks) {
  CONTOUR *first = NewRectangle(0, 0, 1, 1), *front = NewRectangle(0, 0, 2, 2),
          *tail = NewRectangle(0, 0, 3, 3);
  a.AddContourAtEnd(first);
  EXPECT_EQ(first->Owner, &a);
  a.AddContourAfter(front, nullptr);  // null means front
  EXPECT_EQ(a.FirstContour, front);
  a.AddContourAfter(tail, first);
  ExpectChainConsistent(a);
  EXPECT_EQ(a.LastContour, tail);
  EXPECT_EQ(a.MaxX, kEmptyExtentMax);  // adopting leaves the extents
  a.BEPAAL_EXTREMA();
  CONTOUR* removed = tail;
  EXPECT_EQ(a.RemoveContour(removed, false), nullptr);
  EXPECT_EQ(removed, tail);
  EXPECT_EQ(tail->Owner, nullptr);
  ExpectChainConsistent(a);
  b.AddContourAtEnd(tail);  // hand it to b, then ask a to remove it: not found
  EXPECT_EQ(a.RemoveContour(removed, true), nullptr);
  EXPECT_EQ(removed, tail);
  EXPECT_EQ(tail->Owner, nullptr);  // cleared even when not found
  EXPECT_EQ(a.NumContours, 2);
  CONTOUR* head = front;
  EXPECT_EQ(a.RemoveContour(head, true), first);
  EXPECT_EQ(head, nullptr);
  head = first;
  EXPECT_EQ(a.RemoveContour(head, true), nullptr);
  ExpectChainConsistent(a);
  EXPECT_EQ(a.FirstContour, nullptr);
  EXPECT_EQ(a.MaxX, 3);  // extents left as they were
}

TEST_F(ContourLayerTest, SetNextContourKeepsOwnersLastLink) {
  CONTOUR *c1 = NewRectangle(0, 0, 1, 1), *c2 = NewRectangle(0, 0, 2, 2), *c3 = NewRectangle(0, 0, 3, 3);
  a.AddContourAtEnd(c1);
  c2->NextContour = c3;
  c1->_SetNextContour(c2);
  a._SetNumContours(3);
  EXPECT_EQ(a.LastContour, c3);
  ExpectChainConsistent(a);
}

TEST_F(ContourLayerTest, MoveAndSwapTransferContentAndOwnership) {
  a.AddContourAtEnd(NewRectangle(0, 0, 1, 1));
  b.AddContourAtEnd(NewRectangle(0, 0, 2, 2));
  b.AddContourAtEnd(NewRectangle(0, 0, 3, 3));
  a.SwapWith(b);
  EXPECT_EQ(a.NumContours, 2);
  EXPECT_EQ(a.FirstContour->Owner, &a);
  EXPECT_EQ(b.FirstContour->Owner, &b);
  a.MoveTo(b);  // a's two contours are released, b's one moves into a
  EXPECT_EQ(a.NumContours, 1);
  EXPECT_EQ(a.FirstContour->Points[1].y, 1);
  EXPECT_EQ(b.NumContours, 0);
  EXPECT_EQ(b.FirstContour, nullptr);
  a.AddContourAtEnd(NewRectangle(0, 0, 4, 4));
  ExpectChainConsistent(a);
}

TEST_F(ContourLayerTest, DeepCopiesAreIndependent) {
  EXPECT_TRUE(a.COPIEER_LAAG(b));  // empty source
  EXPECT_EQ(a.FirstContour, nullptr);
  CONTOUR* c = NewRectangle(0, 0, 5, 5);
  c->Outer = 1;
  c->Type = 3;
  c->Order = 8;
  b.AddContourAtEnd(c);
  b.AddContourAtEnd(new CONTOUR);
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
  c2.COPY_FROM(b);  // on a filled layer: replaces
  EXPECT_EQ(c2.NumContours, 2);
  EXPECT_EQ(c2.LastContour->Points, nullptr);  // no array for a contour without points
  c2.Clear();
}

TEST_F(ContourLayerTest, CopyAndAdoptAtFrontGrowExtents) {
  CONTOUR* c = NewRectangle(-2, -3, 4, 5);
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
  a.AddContourAtEnd(NewRectangle(0, 0, 1, 1));
  a.BEPAAL_EXTREMA();
  b.AddContourAtEnd(NewRectangle(5, 5, 9, 9));
  b.BEPAAL_EXTREMA();
  EXPECT_TRUE(a.VOEG_TOE(b));
  ExpectChainConsistent(a);
  EXPECT_EQ(a.NumContours, 2);
  EXPECT_EQ(a.MaxX, 9);
  EXPECT_EQ(a.MinX, 0);
  EXPECT_EQ(b.FirstContour, nullptr);
  EXPECT_EQ(b.MaxX, kEmptyExtentMax);
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
  EXPECT_EQ(a.LastContour->Owner, &a);
}

TEST_F(ContourLayerTest, ReverseChainAndExtentsSkipType103) {
  CONTOUR *c1 = NewRectangle(0, 0, 1, 1), *c2 = NewRectangle(0, 0, 100, 100);
  a.AddContourAtEnd(c1);
  a.VERANDER_CONTOUR_VOLGORDE();  // one contour: unchanged
  EXPECT_EQ(a.LastContour, c1);
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
