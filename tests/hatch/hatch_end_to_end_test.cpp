// The whole road on a plate with square and round holes: scan tables along x
// and y, then support and the meanders, with invariants checked on the result.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <vector>

#include "layer/contour_layer.h"
#include "layer/vector_layer.h"
#include "scan/perforation.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "support/layer_builders.h"
#include "support/tables.h"

using namespace testing_support;

namespace {

// A vector along a column as (column, lower end, upper end): the form in
// which runs of a table and drawn run vectors are compared.
using ScanRun = std::tuple<int32_t, int32_t, int32_t>;
using ScanRuns = std::vector<ScanRun>;

ScanRun RunOf(int32_t column, int32_t a, int32_t b) {
  return ScanRun{column, std::min(a, b), std::max(a, b)};
}

ScanRuns Sorted(ScanRuns runs) {
  std::sort(runs.begin(), runs.end());
  return runs;
}

// The runs of a table, sorted.
ScanRuns RunsOf(const TABEL& table) {
  ScanRuns runs;
  for (const TableColumn& c : ColumnsOf(table)) {
    for (size_t i = 0; i + 1 < c.crossings.size(); i += 2)
      runs.push_back(RunOf(c.position, c.crossings[i], c.crossings[i + 1]));
  }
  return Sorted(runs);
}

// The vectors (x1, y1, x2, y2 at v) of the blocks from `first` up to `last`
// that `keep` selects, as runs of an X or a Y table. `keep` sees the index of
// a vector in its block and may skip vectors by moving the index on.
template <typename Keep>
ScanRuns BlockRuns(const VECTOR_BLOK* first, bool xTable, Keep keep, const VECTOR_BLOK* last = nullptr) {
  ScanRuns runs;
  for (const VECTOR_BLOK* b = first; b != last; b = b->NextBlock) {
    const int32_t n = b->Size / 4;
    for (int32_t i = 0; i < n; ++i) {
      if (!keep(b->Block, n, i))
        continue;
      const int32_t* v = b->Block + 4 * i;
      runs.push_back(xTable ? RunOf(v[0], v[1], v[3]) : RunOf(v[1], v[0], v[2]));
    }
  }
  return runs;
}

bool Every(const int32_t*, int32_t, int32_t&) {
  return true;
}

// Meander paths: the first vector is a run, and a vector that starts where
// the last run ended is a connection followed by a run.
bool MeanderRun(const int32_t* b, int32_t n, int32_t& i) {
  if (i > 0 && i + 1 < n && b[4 * i] == b[4 * i - 2] && b[4 * i + 1] == b[4 * i - 1])
    ++i;
  return true;
}

class PlateRoad : public ::testing::Test {
 protected:
  void SetUp() override {
    AddPlateWithHoles(plate, kSize, 5);
    for (int i = 1; i < 5; ++i) {
      for (int j = 1; j < 5; ++j)
        plate.AddContourAtEnd(NewContour(Circle(2000 * i, 2000 * j, 300, 48, false)));
    }
    plate.BEPAAL_EXTREMA();
    parameters.XHatchDistance = 97;
    parameters.XHatchShift = 13;
    parameters.YHatchDistance = 89;
    parameters.YHatchShift = 7;
    parameters.MeanderConnectDistance = 300;
    plate.X_ARCEER_LAAG(&x, parameters, nullptr);
    plate.Y_ARCEER_LAAG(&y, parameters, nullptr);
    xRuns = RunsOf(x);
    yRuns = RunsOf(y);
    // The X table of a band across the plate, on the same grid: the runs
    // that the cross checks test connections against.
    CONTOUR_LAYER band;
    band.AddContourAtEnd(NewContour(Rectangle(4000, 0, 4500, kSize, true)));
    band.BEPAAL_EXTREMA();
    band.X_ARCEER_LAAG(&check, parameters, nullptr);
    band.Clear();
  }
  void TearDown() override {
    LEEG_TABEL(&x);
    LEEG_TABEL(&y);
    LEEG_TABEL(&check);
    plate.Clear();
    vectors.Clear();
  }

  // Every run's midpoint lies inside the material (by an even-odd test).
  void ExpectInsideMaterial(const ScanRuns& runs, bool xTable) {
    for (const ScanRun& r : runs) {
      const double mid = (static_cast<double>(std::get<1>(r)) + std::get<2>(r)) / 2.0;
      const bool inside =
          xTable ? InsideEvenOdd(plate, std::get<0>(r), mid) : InsideEvenOdd(plate, mid, std::get<0>(r));
      EXPECT_TRUE(inside) << (xTable ? "x " : "y ") << ::testing::PrintToString(r);
    }
  }

  static constexpr int32_t kSize = 10000;
  CONTOUR_LAYER plate;
  MSliceFileParameters parameters;
  TABEL x, y, check;
  VECTOR_LAYER vectors;
  ScanRuns xRuns, yRuns;
};

}  // namespace

TEST_F(PlateRoad, PerforatedSupportStaysInsideTheMaterial) {
  PERFOREER_TABEL(&x, 200, 50, 0, 700);
  PERFOREER_TABEL(&y, 200, 50, 0, 700);
  const ScanRuns xTeeth = RunsOf(x);
  ASSERT_GT(xTeeth.size(), xRuns.size());
  ASSERT_TRUE(vectors.ADD_SUPPORT(parameters, x, y, '*'));
  ASSERT_EQ(vectors.NumBlocks, 2);
  const VECTOR_BLOK* second = vectors.FirstBlock->NextBlock;
  EXPECT_EQ(vectors.FirstBlock->Type, 38);
  EXPECT_EQ(second->Type, 41);
  const ScanRuns xDrawn = BlockRuns(vectors.FirstBlock, true, Every, second);
  EXPECT_EQ(Sorted(xDrawn), xTeeth);
  ExpectInsideMaterial(xDrawn, true);
  ExpectInsideMaterial(BlockRuns(second, false, Every), false);
}

TEST_F(PlateRoad, ConsumingMeandersDrawEveryRunExactlyOnce) {
  for (int walk = 0; walk < 4; ++walk) {
    SCOPED_TRACE(::testing::Message() << "walk " << walk);
    TABEL copy;
    COPIEER_TABEL(&copy, x);
    if (walk < 2)
      vectors.BEWAAR_X_TABEL_MEANDER(&copy, parameters, walk, 2);
    else if (walk == 2)
      vectors.ADD_X_TABEL_MEANDER_CROSS_CHECKED(&copy, &check, parameters, 0, 2);
    else
      vectors.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED(&copy, &check, parameters, 0, 2);
    ASSERT_EQ(vectors.NumBlocks, 1);
    // The runs drawn and those left in the table are the table's runs, each once.
    ScanRuns drawn = BlockRuns(vectors.FirstBlock, true, MeanderRun);
    ExpectInsideMaterial(drawn, true);
    const ScanRuns left = RunsOf(copy);
    drawn.insert(drawn.end(), left.begin(), left.end());
    EXPECT_EQ(Sorted(drawn), xRuns);
    // The no-switch run vectors rise in the columns of even grid index (the
    // grid starts at the shift) and fall in the others.
    const int32_t* b = vectors.FirstBlock->Block;
    for (int32_t i = 0; walk == 3 && i < vectors.FirstBlock->Size; i += 4) {
      const bool even = ((b[i] - parameters.XHatchShift) / parameters.XHatchDistance) % 2 == 0;
      EXPECT_TRUE(b[i] != b[i + 2] || even == (b[i + 1] <= b[i + 3]))
          << b[i] << "," << b[i + 1] << "-" << b[i + 3];
    }
    LEEG_TABEL(&copy);
    vectors.Clear();
  }
}

TEST_F(PlateRoad, NoSwitchSweepDrawsEveryRunOnceAndKeepsTheTable) {
  parameters.MeanderConnectDistance = 150;
  vectors.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(&x, &check, parameters, 2);
  ASSERT_GT(vectors.NumBlocks, 1);
  // Each path is run, (connection, run)*; connections join different columns.
  const auto even = [](const int32_t*, int32_t, int32_t& i) { return i % 2 == 0; };
  const auto oddAlongX = [](const int32_t* b, int32_t, int32_t& i) {
    return i % 2 == 1 && b[4 * i] == b[4 * i + 2];
  };
  EXPECT_EQ(Sorted(BlockRuns(vectors.FirstBlock, true, even)), xRuns);
  EXPECT_TRUE(BlockRuns(vectors.FirstBlock, true, oddAlongX).empty());
  EXPECT_EQ(RunsOf(x), xRuns);
}
