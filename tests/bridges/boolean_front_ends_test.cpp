// Tests of the boolean front-ends on contour layers: the shortcuts, the
// feeding rules, hand-checked results, offsets, and a cell oracle.
#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "bridges/boolean_front_ends.h"
#include "support/layer_builders.h"

using namespace testing_support;

using testing_support::LayerArea;

namespace {

// Every contour is closed and carries flags that match its turning.
void ExpectConsistentFlags(const CONTOUR_LAYER& layer) {
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    EXPECT_EQ(c->Closed, 1);
    EXPECT_EQ(c->Outer, c->RightHanded);
    double sum = 0.0;
    for (int32_t i = 0; i < c->NumPoints; ++i) {
      const MMPoint2d<long>& p = c->Points[i];
      const MMPoint2d<long>& q = c->Points[(i + 1) % c->NumPoints];
      sum += (double(q.x) - p.x) * (double(q.y) + p.y);
    }
    EXPECT_EQ(c->Outer, sum > 0 ? 1 : 0);
  }
}

const CONTOUR* ContourWithOuter(const CONTOUR_LAYER& layer, unsigned char outer) {
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    if (c->Outer == outer)
      return c;
  }
  return layer.FirstContour;
}

struct Layers {
  CONTOUR_LAYER a, b, result;
  ~Layers() {
    a.LEEG_LAAG();
    b.LEEG_LAAG();
    result.LEEG_LAAG();
  }
};

CONTOUR* Flagged(std::vector<MMPoint2d<long>> points, unsigned char outer, unsigned char rightHanded) {
  CONTOUR* c = NewContour(points);
  c->Outer = outer;
  c->RightHanded = rightHanded;
  return c;
}

TEST(BooleanFrontEnds, ShortcutsOfIntersectAndSubtract) {
  Layers l;
  l.b.AddContourAtEnd(NewContour(Rectangle(0, 0, 10, 10, true)));
  l.result.AddContourAtEnd(NewContour(Rectangle(0, 0, 1, 1, true)));
  EXPECT_TRUE(AU::BooleanIntersect(l.a, l.b, l.result, nullptr));
  EXPECT_EQ(l.result.NumContours, 0);
  EXPECT_EQ(l.result.MaxX, kEmptyExtentMax);
  // An already empty result keeps its extents, whichever operand is empty.
  l.result.MaxX = 5;
  EXPECT_TRUE(AU::BooleanIntersect(l.b, l.a, l.result, nullptr));
  EXPECT_TRUE(AU::BooleanSubtract(l.a, l.b, l.result, nullptr));
  EXPECT_EQ(l.result.MaxX, 5);
  // Subtracting nothing redraws a.
  EXPECT_TRUE(AU::BooleanSubtract(l.b, l.a, l.result, nullptr));
  ASSERT_EQ(l.result.NumContours, 1);
  EXPECT_DOUBLE_EQ(LayerArea(l.result), 100.0);
  // Two empty operands: the engine runs on nothing.
  EXPECT_TRUE(AU::BooleanUnite(l.a, l.a, l.result, nullptr));
  EXPECT_EQ(l.result.NumContours, 0);
}

TEST(BooleanFrontEnds, ContoursWithoutPointsTakeNoShortcut) {
  Layers l;
  l.a.AddContourAtEnd(NewContour(std::vector<MMPoint2d<long>>{}));
  l.b.AddContourAtEnd(NewContour(Rectangle(0, 0, 10, 10, true)));
  l.result.MaxX = 9;
  EXPECT_TRUE(AU::BooleanIntersect(l.a, l.b, l.result, nullptr));
  EXPECT_EQ(l.result.NumContours, 0);
  EXPECT_EQ(l.result.MaxX, 9);
}

TEST(BooleanFrontEnds, FeedingFollowsTheFlagsAndTheClosedField) {
  CONTOUR_LAYER layer;
  layer.AddContourAtEnd(Flagged({{0, 0}, {10, 0}, {10, 10}}, 1, 0));  // swapped
  layer.AddContourAtEnd(Flagged({{0, 0}, {10, 0}, {10, 10}}, 7, 0));  // as stored
  layer.AddContourAtEnd(NewContour({{3, 4}, {8, 9}}, 0));             // one line, zero length
  layer.AddContourAtEnd(NewContour({{5, 6}}, 0));                     // no line
  layer.AddContourAtEnd(NewContour({{5, 6}}, 1));                     // a line to itself
  M2dBoolean engine;
  M2dBoolean_Utilities::AddContourLayerToBoolean(&engine, layer, false, false, true);
  EXPECT_EQ(engine.GetNumShells(), 5u);
  std::vector<std::pair<MMPoint2d<long>, MMPoint2d<long>>> lines;
  for (const M2dGraphLineNode* n = engine.lines->first; n != nullptr; n = n->next) {
    lines.push_back({{n->line.from->x, n->line.from->y}, {n->line.to->x, n->line.to->y}});
  }
  ASSERT_EQ(lines.size(), 8u);
  EXPECT_EQ(lines[0].first, (MMPoint2d<long>{10, 0}));
  EXPECT_EQ(lines[0].second, (MMPoint2d<long>{0, 0}));
  EXPECT_EQ(lines[3].first, (MMPoint2d<long>{0, 0}));
  EXPECT_EQ(lines[3].second, (MMPoint2d<long>{10, 0}));
  EXPECT_EQ(lines[6].first, (MMPoint2d<long>{3, 4}));
  EXPECT_EQ(lines[6].second, (MMPoint2d<long>{3, 4}));
  EXPECT_EQ(lines[7].first, (MMPoint2d<long>{5, 6}));
  EXPECT_EQ(lines[7].second, (MMPoint2d<long>{5, 6}));
  // With reverse the senses turn; the (1, 0) contour is then fed as stored.
  M2dBoolean reversed;
  M2dBoolean_Utilities::AddContourLayerToBoolean(&reversed, layer, true, false, false);
  EXPECT_EQ(reversed.GetNumShells(), 0u);
  EXPECT_EQ(reversed.lines->first->line.from->x, 0);
  EXPECT_EQ(reversed.lines->first->line.to->x, 10);
  layer.LEEG_LAAG();
}

TEST(BooleanFrontEnds, HandCheckedResults) {
  Layers l;
  l.a.AddContourAtEnd(NewContour(Rectangle(0, 0, 10, 10, true)));
  l.a.AddContourAtEnd(NewContour(Rectangle(20, 0, 30, 10, false)));    // flags 7: fed as stored, adds -1
  l.b.AddContourAtEnd(Flagged(Rectangle(5, 5, 15, 15, false), 1, 0));  // wrong sense, right flags
  AU::M2DBooleanOptions options{3};
  EXPECT_TRUE(AU::BooleanUnite(l.a, l.b, l.result, &options));
  EXPECT_DOUBLE_EQ(LayerArea(l.result), 175.0);
  ExpectConsistentFlags(l.result);
  EXPECT_TRUE(AU::BooleanIntersect(l.a, l.b, l.result, &options));
  EXPECT_DOUBLE_EQ(LayerArea(l.result), 25.0);
  EXPECT_TRUE(AU::BooleanSubtract(l.a, l.b, l.result, nullptr));
  EXPECT_DOUBLE_EQ(LayerArea(l.result), 75.0);
  // The result may be an operand.
  EXPECT_TRUE(AU::BooleanSubtract(l.a, l.b, l.a, nullptr));
  EXPECT_DOUBLE_EQ(LayerArea(l.a), 75.0);
}

TEST(BooleanFrontEnds, HolesUnifyAndSelfIntersections) {
  CONTOUR_LAYER plate;
  AddPlateWithHoles(plate, 100, 2);
  plate.AddContourAtEnd(NewContour(Rectangle(0, 0, 50, 50, true)));  // covers one hole, overlaps the plate
  CONTOUR_LAYER level1;
  level1.COPY_FROM(plate);
  EXPECT_TRUE(AU::BooleanUnify(plate, 0));
  EXPECT_DOUBLE_EQ(LayerArea(plate), 10000.0 - 3 * 625.0);
  ExpectConsistentFlags(plate);
  int holes = 0;
  for (const CONTOUR* c = plate.FirstContour; c != nullptr; c = c->NextContour)
    holes += c->Outer == 0;
  EXPECT_EQ(holes, 3);
  EXPECT_TRUE(AU::BooleanUnify(level1, 1 + 65536));  // only the low 16 bits count
  EXPECT_DOUBLE_EQ(LayerArea(level1), 2500.0 - 625.0);
  CONTOUR_LAYER bowTie;
  bowTie.AddContourAtEnd(NewContour({{0, 0}, {10, 10}, {10, 0}, {0, 10}}));
  EXPECT_TRUE(AU::BooleanRemoveSelfIntersections(bowTie));
  EXPECT_EQ(bowTie.NumContours, 2);
  ExpectConsistentFlags(bowTie);
  plate.LEEG_LAAG();
  level1.LEEG_LAAG();
  bowTie.LEEG_LAAG();
}

TEST(BooleanFrontEnds, OffsetGrowsOuterContoursAndLeavesTheSource) {
  CONTOUR_LAYER source, grown, shrunk;
  source.AddContourAtEnd(NewContour(Rectangle(0, 0, 1000, 1000, false)));  // sense comes from Outer
  source.FirstContour->Outer = 1;
  source.AddContourAtEnd(NewContour(Rectangle(400, 400, 600, 600, true)));
  source.LastContour->Outer = 0;
  grown.OFFSET_LAAG(source, 50);
  ASSERT_EQ(grown.NumContours, 2);
  EXPECT_EQ(ContourWithOuter(grown, 0)->NumPoints, 4);  // the hole shrinks with sharp corners
  EXPECT_GT(ContourWithOuter(grown, 1)->NumPoints, 4);
  const double roundCorners = 3.141592653589793 * 50 * 50;
  EXPECT_NEAR(LayerArea(grown), 1000.0 * 1000.0 + 4 * 1000.0 * 50 + roundCorners - 100.0 * 100.0, 200.0);
  shrunk.OFFSET_LAAG(source, -50);
  ASSERT_EQ(shrunk.NumContours, 2);
  EXPECT_EQ(ContourWithOuter(shrunk, 1)->NumPoints, 4);
  EXPECT_NEAR(LayerArea(shrunk), 900.0 * 900.0 - (200.0 * 200.0 + 4 * 200.0 * 50 + roundCorners), 200.0);
  EXPECT_EQ(source.NumContours, 2);
  EXPECT_EQ(PointsOf(*source.FirstContour), Rectangle(0, 0, 1000, 1000, false));
  CONTOUR_LAYER gone;  // INT32_MIN has no negative: taken as a shrink by INT32_MAX
  gone.OFFSET_LAAG(source, INT32_MIN);
  EXPECT_EQ(gone.NumContours, 0);
  source.LEEG_LAAG();
  grown.LEEG_LAAG();
  shrunk.LEEG_LAAG();
}

// A set of unit cells of a small grid as a layer: each cell united into its outline.
constexpr int kSide = 6;
void FillOutline(CONTOUR_LAYER& layer, const std::vector<bool>& cells) {
  for (int k = 0; k < kSide * kSide; ++k) {
    if (cells[k])
      layer.AddContourAtEnd(NewContour(Rectangle(k % kSide, k / kSide, k % kSide + 1, k / kSide + 1, true)));
  }
  AU::BooleanUnify(layer, 0);
}

TEST(BooleanFrontEndsProperties, CellOracle) {
  std::mt19937 random(3);
  std::bernoulli_distribution bit(0.45);
  for (int round = 0; round < 40; ++round) {
    std::vector<bool> a(kSide * kSide), b(kSide * kSide);
    std::ostringstream input;
    for (int k = 0; k < kSide * kSide; ++k) {
      a[k] = bit(random);
      b[k] = bit(random);
      input << a[k] << b[k] << (k % kSide == kSide - 1 ? " " : "");
    }
    Layers l;
    FillOutline(l.a, a);
    FillOutline(l.b, b);
    for (int op = 0; op < 3; ++op) {
      if (op == 0)
        AU::BooleanUnite(l.a, l.b, l.result, nullptr);
      if (op == 1)
        AU::BooleanIntersect(l.a, l.b, l.result, nullptr);
      if (op == 2)
        AU::BooleanSubtract(l.a, l.b, l.result, nullptr);
      ExpectConsistentFlags(l.result);
      int count = 0;
      for (int k = 0; k < kSide * kSide; ++k) {
        const bool want = op == 0 ? (a[k] || b[k]) : op == 1 ? (a[k] && b[k]) : (a[k] && !b[k]);
        count += want;
        EXPECT_EQ(InsideEvenOdd(l.result, k % kSide + 0.5, k / kSide + 0.5), want)
            << "op " << op << " cell " << k << " cells (a b) " << input.str();
      }
      EXPECT_DOUBLE_EQ(LayerArea(l.result), count) << "op " << op << " cells (a b) " << input.str();
    }
  }
}

}  // namespace
