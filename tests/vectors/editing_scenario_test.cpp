// An interactive-editing session on one layer: cuts with and without a gap,
// picking and removing the polyline under a cursor, and turning the vectors
// back into contours, with the chains and extents checked after every step.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "layer/layer.h"
#include "support/chain_checks.h"
#include "support/layer_builders.h"
#include "support/vector_blocks.h"
#include "vectors/conversion.h"

namespace {

using testing_support::AddBlock;
using testing_support::CountBlocks;
using testing_support::ExtentsOf;
using testing_support::FlattenPoints;

constexpr uint16_t kHatchType = 33;

// Chain lengths agree with the counts and LastContour ends the chain.
void ExpectChainsRight(const LAYER& layer, const std::string& step) {
  SCOPED_TRACE(step);
  testing_support::ExpectChainConsistent(layer.Contours);
  EXPECT_EQ(CountBlocks(layer.Vectors), layer.Vectors.NumBlocks);
}

// The joint extents are what a fresh computation gives.
void ExpectExtentsFresh(const LAYER& layer, const std::string& step) {
  LAYER copy;
  copy.COPIEER_LAAG(const_cast<LAYER&>(layer));
  copy.BEPAAL_EXTREMA();
  EXPECT_EQ(ExtentsOf(layer), ExtentsOf(copy)) << step;
  EXPECT_EQ(ExtentsOf(layer.Vectors), ExtentsOf(copy.Vectors)) << step;
  copy.Clear();
}

}  // namespace

TEST(EditingScenario, CutPickRemoveAndConvertBack) {
  LAYER layer;
  // A plate 0..100 with four square holes (12..37 and 62..87 on each axis),
  // and a hatch block of three lines across it.
  testing_support::AddPlateWithHoles(layer.Contours, 100, 2);
  AddBlock(layer.Vectors, kHatchType, {0, 5, 100, 5, 0, 45, 100, 45, 0, 95, 100, 95});
  layer.BEPAAL_EXTREMA();
  ExpectChainsRight(layer, "start");

  // 1. A line up to the middle, no gap: it enters the plate only once, so the
  // plate stays; the lower-left hole is cut twice and becomes one closed ring.
  int32_t x1 = 25, y1 = -10, x2 = 25, y2 = 50;
  EXPECT_TRUE(layer.CUT_VECTORS_WITH_LINE(x1, y1, x2, y2, false));
  EXPECT_EQ(layer.Contours.NumContours, 4);
  ASSERT_EQ(layer.Vectors.NumBlocks, 2);
  EXPECT_EQ(layer.Vectors.FirstBlock->Size, 20);  // two hatch lines cut
  const VECTOR_BLOK* ring = layer.Vectors.FirstBlock->NextBlock;
  EXPECT_EQ(ring->Type, 1);
  EXPECT_EQ(ring->Size, 24);  // 4 edges + 2 cuts
  EXPECT_EQ(ring->Block[0], 25);
  EXPECT_EQ(ring->Block[1], 12);                              // starts at the first cut
  EXPECT_EQ(layer.Vectors.NUMBER_OF_OPEN_CONTOURS(), 3 + 1);  // hatch lines whole, the ring
  ExpectChainsRight(layer, "cut without gap");
  ExpectExtentsFresh(layer, "cut without gap");

  // 2. A line right across, with a gap: the plate and the two right holes are
  // cut twice each and fall apart into open polylines.
  x1 = 75, y1 = -10, x2 = 75, y2 = 110;
  EXPECT_TRUE(layer.CUT_VECTORS_WITH_LINE(x1, y1, x2, y2, true));
  ASSERT_EQ(layer.Contours.NumContours, 1);
  EXPECT_EQ(layer.Contours.FirstContour->Points[0].x, 12);
  EXPECT_EQ(layer.Contours.FirstContour->Points[0].y, 62);
  EXPECT_EQ(layer.Contours.FirstContour->Owner, &layer.Contours);
  EXPECT_EQ(layer.Vectors.NumBlocks, 5);
  EXPECT_EQ(layer.Vectors.NUMBER_OF_OPEN_CONTOURS(), 6 + 1 + 2 + 2 + 2);
  ExpectChainsRight(layer, "cut with gap");
  ExpectExtentsFresh(layer, "cut with gap");

  // 3. The cursor left of the plate picks the left piece of the plate.
  int32_t cx = -2, cy = 50, count = 0;
  MMPoint2d<long>* picked = layer.Vectors.GET_CLOSEST_VECTOR_POLYLINE(count, cx, cy, 5);
  ASSERT_NE(picked, nullptr);
  EXPECT_EQ(FlattenPoints(picked, count), (std::vector<int32_t>{0, 0, 0, 100, 0, 100, 74, 100, 75, 0, 0, 0}));
  free(picked);
  const std::string extentsBefore = ExtentsOf(layer.Vectors);
  EXPECT_TRUE(layer.Vectors.REMOVE_CLOSEST_VECTOR_POLYLINE(cx, cy, 5));
  EXPECT_EQ(layer.Vectors.NUMBER_OF_OPEN_CONTOURS(), 12);
  EXPECT_EQ(layer.Vectors.NumBlocks, 5);
  EXPECT_EQ(ExtentsOf(layer.Vectors), extentsBefore);  // left for the caller to recompute
  ExpectChainsRight(layer, "polyline removed");

  // 4. Every run of vectors becomes a contour in front of the remaining hole.
  VERPLAATS_VECTOR_LAAG_ALS_OPEN_CONTOUREN_NAAR_CONTOUR_LAAG(&layer);
  EXPECT_EQ(layer.Vectors.NumBlocks, 0);
  EXPECT_EQ(layer.Vectors.FirstBlock, nullptr);
  EXPECT_EQ(layer.Contours.NumContours, 1 + 12);
  EXPECT_EQ(layer.Contours.LastContour->Owner, &layer.Contours);  // the hole that was never cut
  int closedFromVectors = 0;
  for (const CONTOUR* c = layer.Contours.FirstContour; c != layer.Contours.LastContour; c = c->NextContour) {
    EXPECT_EQ(c->Type, 1);
    EXPECT_EQ(c->Owner, nullptr);
    if (c->Closed == 1)
      ++closedFromVectors;
  }
  EXPECT_EQ(closedFromVectors, 1);  // only the ring cut without a gap
  EXPECT_EQ(ExtentsOf(layer), "0 0 100 100");
  ExpectChainsRight(layer, "back to contours");
  ExpectExtentsFresh(layer, "back to contours");
  layer.Clear();
}
