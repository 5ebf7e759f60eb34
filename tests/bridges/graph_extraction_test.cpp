// Tests of the walk from the engine's graph into a contour layer, on graphs
// built line by line (no filtering), so each rule of the walk is seen alone.
#include <gtest/gtest.h>

#include "bridges/graph_extraction.h"
#include "support/layer_builders.h"

using namespace testing_support;

namespace {

// A walker that counts the chains it emits.
class CountingWalker
    : public M2dGraphBorderConvert<M2dGraphBorderExtractSource2dGraph, M2dGraphExtractContourLayer> {
 public:
  using M2dGraphBorderConvert::M2dGraphBorderConvert;
  int chains = 0;
  void OnChainComplete() override { ++chains; }
};

struct Walk {
  M2dBoolean engine;
  CONTOUR_LAYER layer;
  ~Walk() { layer.LEEG_LAAG(); }
  M2dGraphPoint* P(int32_t x, int32_t y) { return engine.AddPoint(x, y); }
  int Extract(int16_t level = 32767, bool keepOpen = true) {
    M2dGraphBorderExtractSource2dGraph source{&engine};
    M2dGraphExtractContourLayer sink{&layer, nullptr};
    CountingWalker walker(&source, &sink);
    walker.Extract(level, keepOpen, false, true);
    return walker.chains;
  }
};

TEST(GraphExtraction, EmptyGraphEmptiesTheLayerAndKeepsNoExtents) {
  Walk w;
  w.layer.AddContourAtEnd(NewContour({{1, 1}, {2, 2}, {3, 1}}));
  w.layer.BEPAAL_EXTREMA();
  EXPECT_EQ(w.Extract(), 0);
  EXPECT_EQ(w.layer.NumContours, 0);
  EXPECT_EQ(w.layer.FirstContour, nullptr);
  EXPECT_EQ(w.layer.MaxX, kEmptyExtentMax);
}

TEST(GraphExtraction, ClosedClockwiseAndCounterClockwiseChains) {
  Walk w;
  M2dGraphPoint *a = w.P(0, 0), *b = w.P(0, 10), *c = w.P(10, 10), *d = w.P(10, 0);
  w.engine.AddLine(a, b, false);
  w.engine.AddLine(b, c, false);
  w.engine.AddLine(c, d, false);
  w.engine.AddLine(d, a, false);
  M2dGraphPoint *e = w.P(20, 0), *f = w.P(30, 0), *g = w.P(20, 10);
  w.engine.AddLine(e, f, false);
  w.engine.AddLine(f, g, false);
  w.engine.AddLine(g, e, false);
  w.layer.MaxX = 77;  // extents are not computed by the walk
  EXPECT_EQ(w.Extract(), 2);
  ASSERT_EQ(w.layer.NumContours, 2);
  const CONTOUR* first = w.layer.FirstContour;
  EXPECT_EQ(PointsOf(*first), (std::vector<MMPoint2d<long>>{{0, 0}, {0, 10}, {10, 10}, {10, 0}}));
  EXPECT_EQ(first->Closed, 1);
  EXPECT_EQ(first->Outer, 1);
  EXPECT_EQ(first->RightHanded, 1);
  const CONTOUR* second = first->NextContour;
  EXPECT_EQ(w.layer.LastContour, second);
  EXPECT_EQ(second->NumPoints, 3);
  EXPECT_EQ(second->Outer, 0);
  EXPECT_EQ(second->RightHanded, 0);
  EXPECT_EQ(second->Owner, nullptr);
  EXPECT_EQ(w.layer.MaxX, 77);
}

TEST(GraphExtraction, OpenChainsSingleLinesAndLoops) {
  Walk w;
  // An open chain found from its middle: the backward walk gives its start.
  M2dGraphPoint *a = w.P(0, 0), *b = w.P(5, 0), *c = w.P(5, 5), *d = w.P(9, 9);
  w.engine.AddLine(b, c, false);
  w.engine.AddLine(a, b, false);
  w.engine.AddLine(c, d, false);
  // A line from a point to itself: a closed contour of one point.
  M2dGraphPoint* e = w.P(50, 50);
  w.engine.AddLine(e, e, false);
  EXPECT_EQ(w.Extract(), 2);
  ASSERT_EQ(w.layer.NumContours, 2);
  const CONTOUR* open = w.layer.FirstContour;
  EXPECT_EQ(open->Closed, 0);
  EXPECT_EQ(PointsOf(*open), (std::vector<MMPoint2d<long>>{{0, 0}, {5, 0}, {5, 5}, {9, 9}}));
  const CONTOUR* loop = open->NextContour;
  EXPECT_EQ(loop->Closed, 1);
  EXPECT_EQ(PointsOf(*loop), (std::vector<MMPoint2d<long>>{{50, 50}}));
  EXPECT_EQ(loop->Outer, 0);
  // Open chains are dropped without keepOpen.
  EXPECT_EQ(w.Extract(32767, false), 1);
  EXPECT_EQ(w.layer.NumContours, 1);
}

TEST(GraphExtraction, OnlyTheFirstLinesLevelAndZeroAreaChains) {
  Walk w;
  M2dGraphPoint *a = w.P(0, 0), *b = w.P(10, 0);
  w.engine.AddLine(a, b, false)->line.level = 3;
  w.engine.AddLine(b, a, false)->line.level = 3;
  M2dGraphPoint *c = w.P(0, 20), *d = w.P(10, 20);
  w.engine.AddLine(c, d, false)->line.level = 0;
  EXPECT_EQ(w.Extract(), 1);
  ASSERT_EQ(w.layer.NumContours, 1);
  EXPECT_EQ(w.layer.FirstContour->Closed, 1);
  EXPECT_EQ(w.layer.FirstContour->NumPoints, 2);
  EXPECT_EQ(w.layer.FirstContour->Outer, 0);  // a sum of exactly 0.0 is not clockwise
  EXPECT_EQ(w.Extract(0), 1);
  EXPECT_EQ(w.layer.FirstContour->NumPoints, 2);
  EXPECT_EQ(w.layer.FirstContour->Points[0].y, 20);
}

TEST(GraphExtraction, ChainRunningIntoAnotherChainStaysOpen) {
  Walk w;
  // A triangle, and a tail whose next line belongs to the triangle.
  M2dGraphPoint *a = w.P(0, 0), *b = w.P(0, 10), *c = w.P(10, 0), *t = w.P(-10, -10);
  w.engine.AddLine(a, b, false);
  w.engine.AddLine(b, c, false);
  w.engine.AddLine(c, a, false);
  w.engine.AddLine(t, a, false);
  EXPECT_EQ(w.Extract(), 2);
  ASSERT_EQ(w.layer.NumContours, 2);
  const CONTOUR* tail = w.layer.LastContour;
  EXPECT_EQ(tail->Closed, 0);
  EXPECT_EQ(PointsOf(*tail), (std::vector<MMPoint2d<long>>{{-10, -10}, {0, 0}}));
}

TEST(GraphExtraction, CrossingPointsGiveWholePartsAndExactTurning) {
  // A filtered engine: the crossing (0.5, 0.5) is written as (0, 0).
  M2dBoolean engine;
  M2dGraphPoint *a = engine.AddPoint(0, 0), *b = engine.AddPoint(1, 1), *c = engine.AddPoint(1, 0),
                *d = engine.AddPoint(0, 1);
  engine.AddLine(a, b, false);
  engine.AddLine(b, c, false);
  engine.AddLine(c, d, false);
  engine.AddLine(d, a, false);
  engine.SplitClassifyAndFilter(0, 32767);
  CONTOUR_LAYER layer;
  ExtractContourLayer(&engine, layer);
  ASSERT_EQ(layer.NumContours, 1);
  EXPECT_EQ(layer.FirstContour->NumPoints, 3);
  EXPECT_EQ(layer.FirstContour->Outer, 1);
  int atCrossing = 0;
  for (const MMPoint2d<long>& p : PointsOf(*layer.FirstContour))
    atCrossing += p.x == 0 && p.y == 0;
  EXPECT_EQ(atCrossing, 1);
  layer.LEEG_LAAG();
}

}  // namespace
