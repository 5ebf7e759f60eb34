// The whole road on a plate with square and round holes: scan tables along x
// and y, then every table generator, with invariants checked on the result.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "layer/contour_layer.h"
#include "layer/vector_layer.h"
#include "scan/perforation.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "support/hatch_tables.h"
#include "support/layer_builders.h"

using namespace testing_support;

namespace {

// A vector along a column, as (column, lower end, upper end): the form in
// which runs of a table and drawn run vectors are compared.
struct ScanRun {
  int32_t column;
  int32_t low;
  int32_t high;
  bool operator<(const ScanRun& o) const {
    return column != o.column ? column < o.column : low != o.low ? low < o.low : high < o.high;
  }
  bool operator==(const ScanRun& o) const { return column == o.column && low == o.low && high == o.high; }
};

std::ostream& operator<<(std::ostream& out, const ScanRun& r) {
  return out << r.column << ":" << r.low << "-" << r.high;
}

struct Vector {
  int32_t x1, y1, x2, y2;
};

std::vector<Vector> VectorsOf(const VECTOR_BLOK* block) {
  std::vector<Vector> out;
  for (int32_t i = 0; i + 3 < block->Size; i += 4) {
    out.push_back({block->Block[i], block->Block[i + 1], block->Block[i + 2], block->Block[i + 3]});
  }
  return out;
}

ScanRun RunOf(const Vector& v, bool xTable) {
  if (xTable)
    return {v.x1, std::min(v.y1, v.y2), std::max(v.y1, v.y2)};
  return {v.y1, std::min(v.x1, v.x2), std::max(v.x1, v.x2)};
}

// Every vector of a block as a run of an X or a Y table.
std::vector<ScanRun> BlockRuns(const VECTOR_BLOK* block, bool xTable) {
  std::vector<ScanRun> runs;
  for (const Vector& v : VectorsOf(block))
    runs.push_back(RunOf(v, xTable));
  return runs;
}

// The runs of a table, sorted.
std::vector<ScanRun> RunsOf(const std::vector<ColumnSpec>& columns) {
  std::vector<ScanRun> runs;
  for (const ColumnSpec& c : columns) {
    for (size_t i = 0; i + 1 < c.crossings.size(); i += 2) {
      runs.push_back({c.position, std::min(c.crossings[i], c.crossings[i + 1]),
                      std::max(c.crossings[i], c.crossings[i + 1])});
    }
  }
  std::sort(runs.begin(), runs.end());
  return runs;
}

// The run vectors of a meander path: the first vector is a run, and a vector
// that starts where the last run ended is a connection followed by a run.
std::vector<ScanRun> MeanderRuns(const VECTOR_BLOK* block) {
  const std::vector<Vector> v = VectorsOf(block);
  std::vector<ScanRun> runs;
  size_t i = 0;
  while (i < v.size()) {
    const bool connected =
        !runs.empty() && i + 1 < v.size() && v[i].x1 == v[i - 1].x2 && v[i].y1 == v[i - 1].y2;
    if (connected)
      ++i;
    runs.push_back(RunOf(v[i], true));
    ++i;
  }
  return runs;
}

int64_t TotalLength(const std::vector<ScanRun>& runs) {
  int64_t total = 0;
  for (const ScanRun& r : runs)
    total += r.high - r.low;
  return total;
}

std::vector<ScanRun> Sorted(std::vector<ScanRun> runs) {
  std::sort(runs.begin(), runs.end());
  return runs;
}

class PlateRoad : public ::testing::Test {
 protected:
  void SetUp() override {
    testing_support::AddPlateWithHoles(plate, kSize, 5);
    for (int i = 1; i < 5; ++i) {
      for (int j = 1; j < 5; ++j) {
        plate.AddContourAtEnd(
            testing_support::NewContour(testing_support::Circle(2000 * i, 2000 * j, 300, 48, false)));
      }
    }
    plate.BEPAAL_EXTREMA();
    parameters.XHatchDistance = 97;
    parameters.XHatchShift = 13;
    parameters.YHatchDistance = 89;
    parameters.YHatchShift = 7;
    parameters.MeanderConnectDistance = 300;
    plate.X_ARCEER_LAAG(&x, parameters, nullptr);
    plate.Y_ARCEER_LAAG(&y, parameters, nullptr);
    xRuns = RunsOf(ColumnsOf(x));
    yRuns = RunsOf(ColumnsOf(y));
  }
  void TearDown() override {
    LEEG_TABEL(&x);
    LEEG_TABEL(&y);
    LEEG_TABEL(&check);
    plate.Clear();
    vectors.Clear();
  }

  // Every vector's midpoint lies inside the material, and no vector leaves
  // its column.
  void ExpectRunsInsideMaterial(const std::vector<ScanRun>& runs, bool xTable) {
    for (const ScanRun& r : runs) {
      const double mid = (static_cast<double>(r.low) + r.high) / 2.0;
      const bool inside = xTable ? testing_support::InsideEvenOdd(plate, r.column, mid)
                                 : testing_support::InsideEvenOdd(plate, mid, r.column);
      EXPECT_TRUE(inside) << (xTable ? "x " : "y ") << r;
    }
  }

  // The runs of the meander's block and those left in the consumed table
  // together are the table's runs, each once.
  void ExpectEveryRunDrawnOnce(const TABEL& consumed) {
    std::vector<ScanRun> drawn = MeanderRuns(vectors.FirstBlock);
    const std::vector<ScanRun> left = RunsOf(ColumnsOf(consumed));
    drawn.insert(drawn.end(), left.begin(), left.end());
    EXPECT_EQ(Sorted(drawn), xRuns);
  }

  // The X table of a band across the plate, on the same grid: the runs that
  // the cross checks test connections against.
  void BuildCheckTable() {
    CONTOUR_LAYER band;
    band.AddContourAtEnd(testing_support::NewContour(testing_support::Rectangle(4000, 0, 4500, kSize, true)));
    band.BEPAAL_EXTREMA();
    band.X_ARCEER_LAAG(&check, parameters, nullptr);
    band.Clear();
  }

  std::vector<ScanRun> AllRuns(bool xTable) {
    std::vector<ScanRun> runs;
    for (const VECTOR_BLOK* b = vectors.FirstBlock; b != nullptr; b = b->NextBlock) {
      const std::vector<ScanRun> block = BlockRuns(b, xTable);
      runs.insert(runs.end(), block.begin(), block.end());
    }
    return runs;
  }

  static constexpr int32_t kSize = 10000;
  CONTOUR_LAYER plate;
  MSliceFileParameters parameters;
  TABEL x;
  TABEL y;
  TABEL check;
  VECTOR_LAYER vectors;
  std::vector<ScanRun> xRuns;
  std::vector<ScanRun> yRuns;
};

}  // namespace

TEST_F(PlateRoad, StraightHatchingDrawsTheTablesRunsAtTheirFullLength) {
  ASSERT_TRUE(vectors.ADD_X_ARCERING_RECHTS(x, parameters, 1));
  const std::vector<ScanRun> drawn = AllRuns(true);
  EXPECT_EQ(TotalLength(drawn), TotalLength(xRuns));
  EXPECT_EQ(Sorted(drawn), xRuns);
  ExpectRunsInsideMaterial(drawn, true);
  vectors.Clear();
  ASSERT_TRUE(vectors.ADD_Y_ARCERING_ONDER(y, parameters, 1));
  EXPECT_EQ(TotalLength(AllRuns(false)), TotalLength(yRuns));
  EXPECT_EQ(RunsOf(ColumnsOf(y)), yRuns);
}

TEST_F(PlateRoad, SmartHatchingDrawsEveryRunOnceAndConsumesTheTables) {
  parameters.CycleHatchOrder = true;
  ASSERT_TRUE(vectors.ADD_HATCHINGS(parameters, x, y, 3));
  ASSERT_EQ(vectors.NumBlocks, 2);
  // The first cycled call of the process hatches x first.
  const std::vector<ScanRun> xDrawn = BlockRuns(vectors.FirstBlock, true);
  const std::vector<ScanRun> yDrawn = BlockRuns(vectors.FirstBlock->NextBlock, false);
  EXPECT_EQ(Sorted(xDrawn), xRuns);
  EXPECT_EQ(Sorted(yDrawn), yRuns);
  EXPECT_EQ(testing_support::CrossingsIn(ColumnsOf(x)), 0u);
  EXPECT_EQ(testing_support::CrossingsIn(ColumnsOf(y)), 0u);
}

TEST_F(PlateRoad, PerforatedSupportStaysInsideTheMaterial) {
  PERFOREER_TABEL(&x, 200, 50, 0, 700);
  PERFOREER_TABEL(&y, 200, 50, 0, 700);
  const std::vector<ScanRun> xTeeth = RunsOf(ColumnsOf(x));
  ASSERT_GT(xTeeth.size(), xRuns.size());
  ASSERT_TRUE(vectors.ADD_SUPPORT(parameters, x, y, '*'));
  ASSERT_EQ(vectors.NumBlocks, 2);
  EXPECT_EQ(vectors.FirstBlock->Type, 38);
  EXPECT_EQ(vectors.FirstBlock->NextBlock->Type, 41);
  const std::vector<ScanRun> xDrawn = BlockRuns(vectors.FirstBlock, true);
  const std::vector<ScanRun> yDrawn = BlockRuns(vectors.FirstBlock->NextBlock, false);
  EXPECT_EQ(Sorted(xDrawn), xTeeth);
  ExpectRunsInsideMaterial(xDrawn, true);
  ExpectRunsInsideMaterial(yDrawn, false);
}

TEST_F(PlateRoad, SupportWallsFollowEveryRun) {
  parameters.SupportConnectDistance = 200;
  ASSERT_TRUE(vectors.ADD_SUPPORT_SINGLE_DIRECTION(x, parameters, 40));
  std::vector<ScanRun> drawn;
  for (const VECTOR_BLOK* b = vectors.FirstBlock; b != nullptr; b = b->NextBlock) {
    for (const Vector& v : VectorsOf(b)) {
      if (v.x1 == v.x2)
        drawn.push_back(RunOf(v, true));  // connections join neighbouring columns
    }
  }
  EXPECT_EQ(Sorted(drawn), xRuns);
  EXPECT_EQ(RunsOf(ColumnsOf(x)), xRuns);
}

TEST_F(PlateRoad, MeandersDrawEveryRunExactlyOnce) {
  for (unsigned short backwards : {0, 1}) {
    SCOPED_TRACE(backwards);
    TABEL copy;
    COPIEER_TABEL(&copy, x);
    vectors.BEWAAR_X_TABEL_MEANDER(&copy, parameters, backwards, 2);
    ASSERT_EQ(vectors.NumBlocks, 1);
    ExpectRunsInsideMaterial(MeanderRuns(vectors.FirstBlock), true);
    ExpectEveryRunDrawnOnce(copy);
    LEEG_TABEL(&copy);
    vectors.Clear();
  }
}

TEST_F(PlateRoad, CrossCheckedMeandersDrawEveryRunExactlyOnce) {
  BuildCheckTable();
  vectors.ADD_X_TABEL_MEANDER_CROSS_CHECKED(&x, &check, parameters, 0, 2);
  ASSERT_EQ(vectors.NumBlocks, 1);
  ExpectEveryRunDrawnOnce(x);
}

TEST_F(PlateRoad, NoSwitchMeanderDrawsEveryRunOnceInItsColumnsDirection) {
  BuildCheckTable();
  vectors.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED(&x, &check, parameters, 0, 2);
  ASSERT_EQ(vectors.NumBlocks, 1);
  ExpectEveryRunDrawnOnce(x);
  // Run vectors rise in the columns of even grid index (the grid starts at the
  // shift) and fall in the others; connections join different columns.
  const std::vector<Vector> path = VectorsOf(vectors.FirstBlock);
  for (const Vector& v : path) {
    if (v.x1 != v.x2)
      continue;
    const bool even = ((v.x1 - parameters.XHatchShift) / parameters.XHatchDistance) % 2 == 0;
    EXPECT_EQ(even, v.y1 <= v.y2) << v.x1 << "," << v.y1 << "-" << v.x2 << "," << v.y2;
  }
}

TEST_F(PlateRoad, NoSwitchSweepDrawsEveryRunOnceAndKeepsTheTable) {
  parameters.MeanderConnectDistance = 150;
  BuildCheckTable();
  vectors.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(&x, &check, parameters, 2);
  ASSERT_GT(vectors.NumBlocks, 1);
  std::vector<ScanRun> drawn;
  for (const VECTOR_BLOK* b = vectors.FirstBlock; b != nullptr; b = b->NextBlock) {
    const std::vector<Vector> path = VectorsOf(b);
    for (size_t i = 0; i < path.size(); i += 2)
      drawn.push_back(RunOf(path[i], true));  // run, (connection, run)*
    for (size_t i = 1; i < path.size(); i += 2)
      EXPECT_NE(path[i].x1, path[i].x2);
  }
  EXPECT_EQ(Sorted(drawn), xRuns);
  EXPECT_EQ(RunsOf(ColumnsOf(x)), xRuns);
}
