#include "hatch/mhatcher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>
#include <vector>

#include "scan/slice_file_parameters.h"
#include "support/layer_builders.h"
#include "support/tables.h"

using namespace testing_support;

namespace {

using HatchRun = std::tuple<int32_t, int32_t, int32_t>;

// The vectors of a hatch layer as (position, start, end), in chain order or
// with start <= end and sorted.
std::vector<HatchRun> HatchRuns(MHatchLayer& layer, bool sorted = true) {
  std::vector<HatchRun> runs;
  for (auto* e = layer.FirstVector; e != nullptr; e = e->Next) {
    const int32_t s = e->Data.Start, t = e->Data.End;
    runs.emplace_back(e->Data.Position, sorted ? std::min(s, t) : s, sorted ? std::max(s, t) : t);
  }
  if (sorted)
    std::sort(runs.begin(), runs.end());
  return runs;
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

TEST_F(MHatcherTest, VectorsLieInsideTheMaterialOnTheGridAtAnyAngle) {
  // A plate with a grid of holes, a round hole, and an island inside it.
  AddPlateWithHoles(layer, 40000, 4);
  layer.AddContourAtEnd(NewContour(Circle(20000, 20000, 4000, 48, false)));
  layer.AddContourAtEnd(NewContour(Circle(20000, 20000, 1500, 24, true)));
  layer.BEPAAL_EXTREMA();
  for (double angle : {0.0, 30.0, 45.0, 90.0}) {
    SCOPED_TRACE(::testing::Message() << "angle " << angle);
    MHatchLayer& h = hatcher.GetHatchLayer();
    h.SetAngle(angle);
    hatcher.Hatch(layer, 700, 100);
    ASSERT_GT(h.VectorCount, 50);
    for (auto* e = h.FirstVector; e != nullptr; e = e->Next)
      EXPECT_EQ(((e->Data.Position - 100) % 700 + 700) % 700, 0);  // distance apart, shift honoured
    vectors.Clear();
    AddHatchLayerToVectorLayer(h, vectors, 5);
    ASSERT_EQ(vectors.NumBlocks, 1);
    const VECTOR_BLOK* b = vectors.FirstBlock;
    EXPECT_EQ(b->Size, 4 * h.VectorCount);
    for (int32_t i = 0; i < b->Size; i += 4) {
      const double mx = (b->Block[i] + b->Block[i + 2]) / 2.0;
      const double my = (b->Block[i + 1] + b->Block[i + 3]) / 2.0;
      EXPECT_TRUE(InsideEvenOdd(layer, mx, my)) << "vector " << b->Block[i] << "," << b->Block[i + 1] << " - "
                                                << b->Block[i + 2] << "," << b->Block[i + 3];
    }
    if (angle != 0.0)
      continue;
    // At 0 degrees the runs are those of the X table on the same grid.
    TABEL table;
    MSliceFileParameters parameters;
    parameters.XHatchDistance = 700;
    parameters.XHatchShift = 100;
    layer.X_ARCEER_LAAG(&table, parameters, nullptr);
    std::vector<HatchRun> fromTable;
    for (const TableColumn& c : ColumnsOf(table)) {
      for (size_t i = 0; i + 1 < c.crossings.size(); i += 2)
        fromTable.emplace_back(c.position, c.crossings[i], c.crossings[i + 1]);
    }
    LEEG_TABEL(&table);
    std::sort(fromTable.begin(), fromTable.end());
    EXPECT_EQ(HatchRuns(h), fromTable);
  }
}

// Layers reaching the ends of the 32-bit grid, through every route of the
// hatcher: every vector lies inside the layer's extent.
TEST_F(MHatcherTest, VectorsStayInsideTheMaterialAtTheEndsOfTheGrid) {
  const struct {
    const char* name;
    std::vector<MMPoint2d<long>> ring;
    int32_t distance;
  } cases[] = {
      {"square at x = 1.5e9", Rectangle(1500000000, 0, 1500001000, 1000, true), 300},
      {"triangle over +-1.2e9",
       {{-1200000000, -1200000000}, {0, 1200000000}, {1200000000, -1200000000}},
       400000000},
      {"square up to INT32_MAX - 10", Rectangle(0, 0, 1000, INT32_MAX - 10, true), 300000000},
  };
  for (const auto& c : cases) {
    layer.Clear();
    layer.AddContourAtEnd(NewContour(c.ring));
    layer.BEPAAL_EXTREMA();
    for (double angle : {0.0, 90.0}) {
      hatcher.GetHatchLayer().SetAngle(angle);
      for (int route = 0; route < 3; ++route) {
        if (route == 0)
          hatcher.Hatch(layer, c.distance, 7);
        else if (route == 1)
          hatcher.HatchWithAutoShift(layer, c.distance);
        else
          hatcher.HatchConceptLaser(layer, c.distance);
        vectors.Clear();
        AddHatchLayerToVectorLayer(hatcher.GetHatchLayer(), vectors, 5);
        // The automatic shift (kept by the concept-laser route) may set every line
        // beside a narrow layer.
        ASSERT_EQ(vectors.NumBlocks, route != 0 ? vectors.NumBlocks : 1) << c.name << " angle " << angle;
        const VECTOR_BLOK* b = vectors.FirstBlock;
        for (int32_t i = 0; b != nullptr && i < b->Size; i += 2) {
          EXPECT_TRUE(b->Block[i] >= layer.MinX && b->Block[i] <= layer.MaxX &&
                      b->Block[i + 1] >= layer.MinY && b->Block[i + 1] <= layer.MaxY)
              << c.name << " angle " << angle << " route " << route << ": " << b->Block[i] << ","
              << b->Block[i + 1];
        }
      }
    }
  }
}

TEST_F(MHatcherTest, DistanceZeroNegativeAndEmptyLayers) {
  layer.AddContourAtEnd(NewContour(Rectangle(0, 0, 100, 100, true)));
  MHatchLayer& h = hatcher.GetHatchLayer();
  hatcher.Hatch(layer, 10, 0);
  ASSERT_GT(h.VectorCount, 0);
  hatcher.Hatch(layer, 0, 7);  // clears, writes the fields, does not sweep
  EXPECT_EQ((std::vector<int32_t>{h.VectorCount, h.HatchDistance, h.HatchShift}),
            (std::vector<int32_t>{0, 0, 7}));
  h.HatchDistance = 3;
  hatcher.HatchWithAutoShift(layer, 0);  // leaves the fields alone
  EXPECT_EQ(h.HatchDistance, 3);
  hatcher.Hatch(layer, -10, 0);  // a negative distance sweeps nothing
  EXPECT_EQ(h.VectorCount, 0);
  CONTOUR_LAYER empty;
  hatcher.Hatch(empty, 10);
  int32_t minX, maxX, minY, maxY;
  h.GetExtremes(minX, maxX, minY, maxY);
  EXPECT_EQ(minX, INT32_MAX);
  EXPECT_EQ(maxY, INT32_MIN);
}

TEST_F(MHatcherTest, OptimalShiftCentresTheGrid) {
  MHatchDirection straight;
  CONTOUR_LAYER empty;
  EXPECT_EQ(MHatcher::GetOptimalShift(straight, empty, 10), 0);
  for (int32_t width : {100, 110}) {
    layer.Clear();
    layer.AddContourAtEnd(NewContour({{0, 0}, {0, 5}, {width, 5}, {width, 0}}));
    EXPECT_EQ(MHatcher::GetOptimalShift(straight, layer, 10), 5) << "width " << width;
  }
  hatcher.HatchWithAutoShift(layer, 10);
  EXPECT_EQ(hatcher.GetShift(), 5);
  EXPECT_EQ(hatcher.GetHatchLayer().HatchShift, 5);
}

TEST_F(MHatcherTest, ConceptLaserSweepsEachOuterWithItsHoles) {
  CONTOUR* skipped = NewRectangle(0, 0, 100, 100, true);
  skipped->Type = 'g';
  layer.AddContourAtEnd(skipped);
  layer.AddContourAtEnd(NewRectangle(40, 40, 60, 60, false));  // its own contour once its outer is skipped
  layer.AddContourAtEnd(NewRectangle(200, 0, 300, 100, true));
  layer.AddContourAtEnd(NewRectangle(240, 40, 260, 60, false));
  hatcher.HatchConceptLaser(layer, 10);
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
  EXPECT_EQ(HatchRuns(hatcher.GetHatchLayer()), expected);
  hatcher.HatchConceptLaser(layer, 10);  // adds to what the hatch layer holds
  EXPECT_EQ(hatcher.GetHatchLayer().VectorCount, static_cast<int32_t>(2 * expected.size()));
}

TEST_F(MHatcherTest, VectorsMapBackToTheLayerFrame) {
  layer.AddContourAtEnd(NewContour(Rectangle(0, 0, 100, 40, true)));
  hatcher.GetHatchLayer().SetAngle(90.0);
  hatcher.Hatch(layer, 20, 0);
  AddHatchLayerToVectorLayer(hatcher.GetHatchLayer(), vectors, -2);
  MHatchLayer emptyLayer;
  AddHatchLayerToVectorLayer(emptyLayer, vectors, 1);  // adds no block
  ASSERT_EQ(vectors.NumBlocks, 1);
  EXPECT_EQ(vectors.FirstBlock->Type, 0xFFFE);  // the char type is sign-extended
  Coordinates line = BlocksOf(vectors)[0];      // one horizontal line, at y = 20
  ASSERT_EQ(line.size(), 4u);
  if (line[0] > line[2])
    std::swap(line[0], line[2]);
  EXPECT_EQ(line, (Coordinates{0, 20, 100, 20}));
}

TEST(MHatchLayerUtilities, AddTabelAlternatesColumnByColumn) {
  // An empty column still counts in the alternation.
  ScopedTable table({{10, {1, 9}}, {20, {1, 9}}, {30, {}}, {40, {1, 9}}});
  MHatchLayer layer;
  MHatchLayerUtilities::ADD_TABEL(&layer, table.root);
  TABEL empty;
  MHatchLayerUtilities::ADD_TABEL(&layer, empty);
  EXPECT_EQ(HatchRuns(layer, false), (std::vector<HatchRun>{{10, 1, 9}, {20, 9, 1}, {40, 9, 1}}));
  EXPECT_EQ(layer.VectorCount, 3);
}

TEST(MHatchLayerUtilities, FragmentTemplateTruncatesTheHalfWidth) {
  MHatchLayer layer;
  layer.SetExtremes(0, 100, 0, 50);
  CONTOUR_LAYER result;
  MHatchLayerUtilities::GetFragmentTemplate(&layer, &result, 5, 20, 0);
  MHatchLayerUtilities::GetFragmentTemplate(&layer, &result, 0, 20, 0);  // adds nothing
  MHatchLayerUtilities::GetFragmentTemplate(&layer, &result, 5, 0, 30);  // nor a zero distance
  ASSERT_EQ(result.NumContours, 2);                                      // strips around y = 20 and y = 40
  const CONTOUR* first = result.LastContour;  // put at the head: the first made is last
  EXPECT_EQ(first->Closed, 1);
  // Height 2 * (5 / 2) = 4, widened by 10 on either side.
  EXPECT_EQ((Coordinates{first->Points[0].x, first->Points[0].y, first->Points[1].y, first->Points[2].x}),
            (Coordinates{-10, 18, 22, 110}));
  EXPECT_EQ(result.MaxX, kEmptyExtentMax);  // extents are not touched
  result.Clear();
}
