#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "layer/vector_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "support/hatch_tables.h"

using namespace testing_support;

namespace {

const std::vector<ColumnSpec> kNeighbours = {{0, {0, 10}}, {5, {0, 10}}};

struct MeanderCase {
  std::vector<ColumnSpec> table;
  std::vector<ColumnSpec> check;  // empty: BEWAAR_X_TABEL_MEANDER
  int32_t connectDistance;
  unsigned short backwards;
};

// Runs the meander of a case and returns its blocks; `left` receives what
// stays in the table.
std::vector<Coordinates> Meander(const MeanderCase& c, std::vector<ColumnSpec>* left = nullptr) {
  SCOPED_TRACE(Describe(c.table) + "| check " + Describe(c.check));
  ScopedTable table(c.table);
  ScopedTable check(c.check);
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  parameters.MeanderConnectDistance = c.connectDistance;
  if (c.check.empty()) {
    layer.BEWAAR_X_TABEL_MEANDER(&table.root, parameters, c.backwards, 9);
  } else {
    layer.ADD_X_TABEL_MEANDER_CROSS_CHECKED(&table.root, &check.root, parameters, c.backwards, 9);
  }
  if (left != nullptr)
    *left = ColumnsOf(table.root);
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock)
    EXPECT_EQ(b->Type, 9);
  return BlocksOf(layer);
}

// The run vectors of a path (every vector along a column), as (x, low, high).
std::vector<std::vector<int32_t>> RunsOf(const Coordinates& path) {
  std::vector<std::vector<int32_t>> runs;
  for (size_t i = 0; i + 3 < path.size(); i += 4) {
    if (path[i] != path[i + 2])
      continue;
    runs.push_back({path[i], std::min(path[i + 1], path[i + 3]), std::max(path[i + 1], path[i + 3])});
  }
  std::sort(runs.begin(), runs.end());
  return runs;
}

}  // namespace

TEST(MeanderHatching, NothingToDrawAddsNoBlock) {
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  layer.BEWAAR_X_TABEL_MEANDER(nullptr, parameters, 0, 1);
  TABEL empty;
  layer.BEWAAR_X_TABEL_MEANDER(&empty, parameters, 1, 1);
  EXPECT_EQ(layer.NumBlocks, 0);
  EXPECT_TRUE(Meander({{{0, {}}, {5, {}}}, {}, 20, 0}).empty());
  EXPECT_TRUE(Meander({{{0, {}}, {5, {}}}, {}, 20, 1}).empty());
}

TEST(MeanderHatching, OneRunGivesOneVector) {
  std::vector<ColumnSpec> left;
  EXPECT_EQ(Meander({{{0, {3, 9}}}, {}, 20, 0}, &left), (std::vector<Coordinates>{{0, 3, 0, 9}}));
  EXPECT_EQ(CrossingsIn(left), 0u);
}

TEST(MeanderHatching, NeighbourIsEnteredAtItsNearEndAndJoinedWhenClose) {
  EXPECT_EQ(Meander({kNeighbours, {}, 20, 0}),
            (std::vector<Coordinates>{{0, 0, 0, 10, 0, 10, 5, 10, 5, 10, 5, 0}}));
  // A distance of exactly 5 is not strictly below the limit.
  EXPECT_EQ(Meander({kNeighbours, {}, 5, 0}), (std::vector<Coordinates>{{0, 0, 0, 10, 5, 10, 5, 0}}));
  EXPECT_EQ(Meander({kNeighbours, {}, 6, 0}),
            (std::vector<Coordinates>{{0, 0, 0, 10, 0, 10, 5, 10, 5, 10, 5, 0}}));
}

TEST(MeanderHatching, BackwardsBeginsAtTheHighestColumn) {
  EXPECT_EQ(Meander({kNeighbours, {}, 20, 1}),
            (std::vector<Coordinates>{{5, 0, 5, 10, 5, 10, 0, 10, 0, 10, 0, 0}}));
  EXPECT_EQ(Meander({{{0, {0, 10}}, {5, {0, 10}}, {10, {}}}, {}, 20, 7}),
            (std::vector<Coordinates>{{5, 0, 5, 10, 5, 10, 0, 10, 0, 10, 0, 0}}));
}

TEST(MeanderHatching, RunsBehindTheLastOneInItsColumnStayBehind) {
  std::vector<ColumnSpec> left;
  EXPECT_EQ(Meander({{{0, {0, 10, 20, 30}}}, {}, 20, 0}, &left), (std::vector<Coordinates>{{0, 0, 0, 10}}));
  EXPECT_EQ(left, (std::vector<ColumnSpec>{{0, {20, 30}}}));
}

TEST(MeanderHatching, ListEndingInsideAPairLeavesTheTableAlone) {
  const std::vector<ColumnSpec> odd = {{0, {0, 10}}, {5, {0, 10, 20}}};
  std::vector<ColumnSpec> left;
  EXPECT_TRUE(Meander({odd, {}, 20, 0}, &left).empty());
  EXPECT_EQ(left, odd);
  EXPECT_TRUE(Meander({odd, {{3, {8, 12}}}, 20, 1}, &left).empty());
  EXPECT_EQ(left, odd);
}

TEST(MeanderHatching, NullListIsAnEmptyColumn) {
  ScopedTable table({{0, {0, 10}}, {5, {}}, {10, {0, 10}}});
  TABEL* middle = table.Column(1);
  free(middle->List);
  middle->List = nullptr;
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  parameters.MeanderConnectDistance = 20;
  layer.BEWAAR_X_TABEL_MEANDER(&table.root, parameters, 0, 1);
  EXPECT_EQ(BlocksOf(layer), (std::vector<Coordinates>{{0, 0, 0, 10, 0, 10, 10, 10, 10, 10, 10, 0}}));
}

TEST(MeanderHatching, LongPathGrowsTheArrayAndDrawsEveryRunOnce) {
  std::vector<ColumnSpec> columns;
  for (int32_t i = 0; i < 9000; ++i)
    columns.push_back({10 * i, {0, 100, 200, 300}});
  std::vector<ColumnSpec> left;
  const std::vector<Coordinates> blocks = Meander({columns, {}, 1000, 0}, &left);
  ASSERT_EQ(blocks.size(), 1u);
  EXPECT_GT(blocks[0].size(), 60000u);
  EXPECT_EQ(blocks[0].size() % 4, 0u);
  std::vector<std::vector<int32_t>> expected;
  for (const ColumnSpec& c : columns) {
    expected.push_back({c.position, 0, 100});
    expected.push_back({c.position, 200, 300});
  }
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(RunsOf(blocks[0]), expected);
  EXPECT_EQ(CrossingsIn(left), 0u);
}

TEST(MeanderCrossChecked, RunOfTheSecondTableRefusesTheConnection) {
  EXPECT_EQ(Meander({kNeighbours, {{3, {8, 12}}}, 20, 0}),
            (std::vector<Coordinates>{{0, 0, 0, 10, 5, 10, 5, 0}}));
  EXPECT_EQ(Meander({kNeighbours, {{3, {11, 12}}}, 20, 0}),
            (std::vector<Coordinates>{{0, 0, 0, 10, 0, 10, 5, 10, 5, 10, 5, 0}}));
  // Both ends of a run count.
  EXPECT_EQ(Meander({kNeighbours, {{3, {10, 12}}}, 20, 0}),
            (std::vector<Coordinates>{{0, 0, 0, 10, 5, 10, 5, 0}}));
  EXPECT_EQ(Meander({kNeighbours, {{3, {8, 12}}}, 20, 1}),
            (std::vector<Coordinates>{{5, 0, 5, 10, 0, 10, 0, 0}}));
}

TEST(MeanderCrossChecked, ConnectingLineIsInterpolatedInSinglePrecision) {
  // From (0, 10) to (10, 0): at x = 3 the line stands at trunc(3 * -10 / 10) + 10 = 7.
  const std::vector<ColumnSpec> table = {{0, {0, 10}}, {10, {0, 30}}};
  EXPECT_EQ(Meander({table, {{3, {7, 7}}}, 100, 0}).at(0).size(), 8u);
  EXPECT_EQ(Meander({table, {{3, {8, 9}}}, 100, 0}).at(0).size(), 12u);
}

TEST(MeanderCrossChecked, ColumnsAtTheEndsAreTestedFromTheSideTheCursorCameFrom) {
  // The cursor starts on the column at 0 (below the connection's low end after
  // the first step), so a run at x = 0 itself is tested.
  EXPECT_EQ(Meander({kNeighbours, {{0, {10, 10}}, {5, {50, 60}}}, 20, 0}).at(0).size(), 8u);
  // A run at x = 5, the high end, is not tested when the cursor comes from below.
  EXPECT_EQ(Meander({kNeighbours, {{0, {50, 60}}, {5, {10, 10}}}, 20, 0}).at(0).size(), 12u);
}

TEST(MeanderCrossChecked, SecondTableWithoutColumnsBlocksNothing) {
  ScopedTable table(kNeighbours);
  TABEL empty;
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  parameters.MeanderConnectDistance = 20;
  layer.ADD_X_TABEL_MEANDER_CROSS_CHECKED(&table.root, &empty, parameters, 0, 1);
  layer.ADD_X_TABEL_MEANDER_CROSS_CHECKED(nullptr, &empty, parameters, 0, 1);
  EXPECT_EQ(BlocksOf(layer), (std::vector<Coordinates>{{0, 0, 0, 10, 0, 10, 5, 10, 5, 10, 5, 0}}));
}
