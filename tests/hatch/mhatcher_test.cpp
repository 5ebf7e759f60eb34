#include "hatch/mhatcher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <tuple>
#include <vector>

#include "scan/slice_file_parameters.h"
#include "support/layer_builders.h"

using testing_support::AddPlateWithHoles;
using testing_support::Circle;
using testing_support::InsideEvenOdd;
using testing_support::NewContour;
using testing_support::Rectangle;

namespace {

using HatchRun = std::tuple<int32_t, int32_t, int32_t>;

std::vector<HatchRun> HatchRuns(MHatchLayer& layer) {
  std::vector<HatchRun> runs;
  for (auto* e = layer.FirstVector; e != nullptr; e = e->Next) {
    runs.emplace_back(e->Data.Position, std::min(e->Data.Start, e->Data.End),
                      std::max(e->Data.Start, e->Data.End));
  }
  std::sort(runs.begin(), runs.end());
  return runs;
}

// A plate with a grid of holes, a round hole, and an island inside it.
void AddTestPart(CONTOUR_LAYER& layer) {
  AddPlateWithHoles(layer, 40000, 4);
  layer.AddContourAtEnd(NewContour(Circle(20000, 20000, 4000, 48, false)));
  layer.AddContourAtEnd(NewContour(Circle(20000, 20000, 1500, 24, true)));
  layer.BEPAAL_EXTREMA();
}

class MHatcherTest : public ::testing::Test {
 protected:
  void TearDown() override {
    layer.Clear();
    vectors.Clear();
  }
  CONTOUR_LAYER layer;
  VECTOR_LAYER vectors;
  MHatcher hatcher;
};

}  // namespace

TEST_F(MHatcherTest, VectorsLieInsideTheMaterialAtAnyAngle) {
  AddTestPart(layer);
  for (double angle : {0.0, 30.0, 45.0, 90.0}) {
    hatcher.GetHatchLayer().SetAngle(angle);
    hatcher.Hatch(layer, 700, 100);
    MHatchLayer& h = hatcher.GetHatchLayer();
    ASSERT_GT(h.VectorCount, 50) << "angle " << angle;
    for (auto* e = h.FirstVector; e != nullptr; e = e->Next) {
      EXPECT_EQ(((e->Data.Position - 100) % 700 + 700) % 700, 0) << "angle " << angle;
    }
    vectors.Clear();
    AddHatchLayerToVectorLayer(h, vectors, 5);
    ASSERT_EQ(vectors.NumBlocks, 1);
    const VECTOR_BLOK* b = vectors.FirstBlock;
    EXPECT_EQ(b->Size, 4 * h.VectorCount);
    for (int32_t i = 0; i < b->Size; i += 4) {
      const double mx = (b->Block[i] + b->Block[i + 2]) / 2.0;
      const double my = (b->Block[i + 1] + b->Block[i + 3]) / 2.0;
      EXPECT_TRUE(InsideEvenOdd(layer, mx, my))
          << "angle " << angle << " vector " << b->Block[i] << "," << b->Block[i + 1] << " - "
          << b->Block[i + 2] << "," << b->Block[i + 3];
    }
  }
}

TEST_F(MHatcherTest, AtZeroDegreesTheRunsAreThoseOfTheXTable) {
  AddTestPart(layer);
  hatcher.Hatch(layer, 500, 0);
  TABEL table;
  MSliceFileParameters parameters;
  parameters.XHatchDistance = 500;
  layer.X_ARCEER_LAAG(&table, parameters, nullptr);
  std::vector<HatchRun> fromTable;
  for (TABEL* c = table.Next; c != nullptr && c->Next != nullptr; c = c->Next) {
    for (L_LIST* e = c->List->Next; e != nullptr && e->Next != nullptr; e = e->Next->Next) {
      fromTable.emplace_back(c->Position, e->Value, e->Next->Value);
    }
  }
  LEEG_TABEL(&table);
  std::sort(fromTable.begin(), fromTable.end());
  EXPECT_EQ(HatchRuns(hatcher.GetHatchLayer()), fromTable);
}

TEST_F(MHatcherTest, DistanceZeroAndEmptyLayers) {
  layer.AddContourAtEnd(NewContour(Rectangle(0, 0, 100, 100, true)));
  hatcher.Hatch(layer, 10, 0);
  ASSERT_GT(hatcher.GetHatchLayer().VectorCount, 0);
  hatcher.Hatch(layer, 0, 7);  // clears, writes the fields, does not sweep
  EXPECT_EQ(hatcher.GetHatchLayer().VectorCount, 0);
  EXPECT_EQ(hatcher.GetHatchLayer().HatchDistance, 0);
  EXPECT_EQ(hatcher.GetHatchLayer().HatchShift, 7);
  hatcher.GetHatchLayer().HatchDistance = 3;
  hatcher.HatchWithAutoShift(layer, 0);  // leaves the fields alone
  EXPECT_EQ(hatcher.GetHatchLayer().HatchDistance, 3);
  CONTOUR_LAYER empty;
  hatcher.Hatch(empty, 10);
  int32_t minX, maxX, minY, maxY;
  hatcher.GetHatchLayer().GetExtremes(minX, maxX, minY, maxY);
  EXPECT_EQ(minX, INT32_MAX);
  EXPECT_EQ(maxY, INT32_MIN);
  hatcher.Hatch(layer, -10, 0);  // a negative distance sweeps nothing
  EXPECT_EQ(hatcher.GetHatchLayer().VectorCount, 0);
}

TEST_F(MHatcherTest, OptimalShiftCentresTheGrid) {
  MHatchDirection straight;
  layer.AddContourAtEnd(NewContour({{0, 0}, {0, 5}, {100, 5}, {100, 0}}));
  EXPECT_EQ(MHatcher::GetOptimalShift(straight, layer, 10), 5);
  layer.Clear();
  layer.AddContourAtEnd(NewContour({{0, 0}, {0, 5}, {110, 5}, {110, 0}}));
  EXPECT_EQ(MHatcher::GetOptimalShift(straight, layer, 10), 5);
  hatcher.HatchWithAutoShift(layer, 10);
  EXPECT_EQ(hatcher.GetShift(), 5);
  EXPECT_EQ(hatcher.GetHatchLayer().HatchShift, 5);
  CONTOUR_LAYER empty;
  EXPECT_EQ(MHatcher::GetOptimalShift(straight, empty, 10), 0);
}

TEST_F(MHatcherTest, ConceptLaserSweepsEachOuterWithItsHoles) {
  CONTOUR* skipped = NewContour(Rectangle(0, 0, 100, 100, true));
  skipped->Type = 'g';
  skipped->Outer = 1;
  CONTOUR* inner = NewContour(Rectangle(40, 40, 60, 60, false));
  inner->Outer = 0;  // seen as a contour of its own once its outer is skipped
  layer.AddContourAtEnd(skipped);
  layer.AddContourAtEnd(inner);
  CONTOUR* outer = NewContour(Rectangle(200, 0, 300, 100, true));
  outer->Outer = 1;
  CONTOUR* hole = NewContour(Rectangle(240, 40, 260, 60, false));
  hole->Outer = 0;
  layer.AddContourAtEnd(outer);
  layer.AddContourAtEnd(hole);
  hatcher.HatchConceptLaser(layer, 10);
  std::vector<HatchRun> runs = HatchRuns(hatcher.GetHatchLayer());
  std::vector<HatchRun> expected = {{50, 40, 60}};
  for (int32_t x = 210; x <= 290; x += 10) {
    if (x > 240 && x < 260) {
      expected.emplace_back(x, 0, 40);
      expected.emplace_back(x, 60, 100);
    } else {
      expected.emplace_back(x, 0, 100);
    }
  }
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(runs, expected);
  hatcher.HatchConceptLaser(layer, 10);  // adds to what the hatch layer holds
  EXPECT_EQ(hatcher.GetHatchLayer().VectorCount, static_cast<int32_t>(2 * expected.size()));
}

TEST_F(MHatcherTest, VectorsMapBackToTheLayerFrame) {
  layer.AddContourAtEnd(NewContour(Rectangle(0, 0, 100, 40, true)));
  hatcher.GetHatchLayer().SetAngle(90.0);
  hatcher.Hatch(layer, 20, 0);
  AddHatchLayerToVectorLayer(hatcher.GetHatchLayer(), vectors, -2);
  ASSERT_EQ(vectors.NumBlocks, 1);
  EXPECT_EQ(vectors.FirstBlock->Type, 0xFFFE);  // the char type is sign-extended
  const VECTOR_BLOK* b = vectors.FirstBlock;
  ASSERT_EQ(b->Size, 4);  // one horizontal line, at y = 20
  EXPECT_EQ(b->Block[1], 20);
  EXPECT_EQ(b->Block[3], 20);
  EXPECT_EQ(std::min(b->Block[0], b->Block[2]), 0);
  EXPECT_EQ(std::max(b->Block[0], b->Block[2]), 100);
  MHatchLayer emptyLayer;
  AddHatchLayerToVectorLayer(emptyLayer, vectors, 1);
  EXPECT_EQ(vectors.NumBlocks, 1);
}

TEST(MHatchLayerUtilities, AddTabelAlternatesColumnByColumn) {
  TABEL table;
  for (int32_t x : {10, 20, 30, 40})
    VOEG_KOLOM_IN_TABEL(&table, x);
  int index = 0;
  for (TABEL* c = table.Next; c->Next != nullptr; c = c->Next, ++index) {
    if (index == 2)
      continue;  // an empty column still counts
    VOEG_ACHTER_L_LIJST(c->List, 1);
    VOEG_ACHTER_L_LIJST(c->List, 9);
  }
  MHatchLayer layer;
  MHatchLayerUtilities::ADD_TABEL(&layer, table);
  std::vector<std::tuple<int32_t, int32_t, int32_t>> got;
  for (auto* e = layer.FirstVector; e != nullptr; e = e->Next) {
    got.emplace_back(e->Data.Position, e->Data.Start, e->Data.End);
  }
  std::vector<std::tuple<int32_t, int32_t, int32_t>> expected = {{10, 1, 9}, {20, 9, 1}, {40, 9, 1}};
  EXPECT_EQ(got, expected);
  LEEG_TABEL(&table);
  TABEL empty;
  MHatchLayerUtilities::ADD_TABEL(&layer, empty);
  EXPECT_EQ(layer.VectorCount, 3);
}

TEST(MHatchLayerUtilities, FragmentTemplateTruncatesTheHalfWidth) {
  MHatchLayer layer;
  layer.SetExtremes(0, 100, 0, 50);
  CONTOUR_LAYER result;
  MHatchLayerUtilities::GetFragmentTemplate(&layer, &result, 5, 20, 0);
  ASSERT_EQ(result.NumContours, 2);           // strips around y = 20 and y = 40
  const CONTOUR* first = result.LastContour;  // put at the head: the first made is last
  EXPECT_EQ(first->Closed, 1);
  EXPECT_EQ(first->Points[0].x, -10);
  EXPECT_EQ(first->Points[0].y, 18);
  EXPECT_EQ(first->Points[1].y, 22);  // height 2 * (5 / 2) = 4
  EXPECT_EQ(first->Points[2].x, 110);
  EXPECT_EQ(result.MaxX, kEmptyExtentMax);  // extents are not touched
  MHatchLayerUtilities::GetFragmentTemplate(&layer, &result, 0, 20, 0);
  MHatchLayerUtilities::GetFragmentTemplate(&layer, &result, 5, 0, 0);
  EXPECT_EQ(result.NumContours, 2);
  result.Clear();
}
