// The meanders: the consuming walk with and without cross checks, and the
// no-switch walk and sweep.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "layer/vector_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "support/tables.h"

using namespace testing_support;

namespace {

const char* const kNeighbours = "0: 0 10; 5: 0 10";
const char* const kJoined = "0 0 0 10 0 10 5 10 5 10 5 0";
const char* const kNotJoined = "0 0 0 10 5 10 5 0";
const char* const kThreeColumns = "0: 0 10; 10: 0 10; 20: 0 10";
const char* const kThreeJoined = "20 0 20 10 20 10 10 10 10 10 10 0 10 0 0 0 0 0 0 10";

struct MeanderCase {
  const char* table;
  bool crossChecked;  // false: BEWAAR_X_TABEL_MEANDER
  const char* check;  // the second table; no columns is allowed
  int32_t connectDistance;
  unsigned short backwards;
  const char* expected;
  Coordinates left;  // crossings that stay in the table
  int nullColumn = -1;
};

// Runs the meander of a case and returns its blocks; `left` receives what
// stays in the table.
Blocks Meander(const MeanderCase& c, Coordinates* left = nullptr) {
  ScopedTable table(Table(c.table));
  table.DropList(c.nullColumn);
  ScopedTable check(Table(c.check));
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  parameters.MeanderConnectDistance = c.connectDistance;
  if (c.crossChecked) {
    layer.ADD_X_TABEL_MEANDER_CROSS_CHECKED(&table.root, &check.root, parameters, c.backwards, 9);
  } else {
    layer.BEWAAR_X_TABEL_MEANDER(&table.root, parameters, c.backwards, 9);
  }
  if (left != nullptr)
    *left = CrossingsOf(table.root);
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock)
    EXPECT_EQ(b->Type, 9);
  return BlocksOf(layer);
}

struct NoSwitchCase {
  const char* table;
  const char* check;      // no columns: a second table without columns
  int32_t gridDistance;   // XHatchDistance
  int32_t maxConnection;  // MeanderConnectDistance
  const char* expected;
  int nullColumn = -1;
};

MSliceFileParameters Parameters(int32_t gridDistance, int32_t maxConnection) {
  MSliceFileParameters parameters;
  parameters.XHatchDistance = gridDistance;
  parameters.MeanderConnectDistance = maxConnection;
  return parameters;
}

// Runs the no-switch walk (consuming) or sweep (keeping both tables whole) of
// a case and checks the paths it draws.
void ExpectNoSwitchPaths(const NoSwitchCase& c, bool sweep) {
  SCOPED_TRACE(::testing::Message() << c.table << " | check " << c.check << " | grid " << c.gridDistance
                                    << " connect " << c.maxConnection << " null " << c.nullColumn);
  ScopedTable table(Table(c.table));
  table.DropList(c.nullColumn);
  ScopedTable check(Table(c.check));
  ScopedVectorLayer layer;
  MSliceFileParameters parameters = Parameters(c.gridDistance, c.maxConnection);
  if (sweep) {
    layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(&table.root, &check.root, parameters, 3);
  } else {
    layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED(&table.root, &check.root, parameters, 0, 3);
  }
  EXPECT_EQ(BlocksOf(layer), Lists(c.expected));
  EXPECT_EQ(ColumnsOf(check.root), Table(c.check));
  if (!sweep && *c.expected != '\0') {
    EXPECT_TRUE(CrossingsOf(table.root).empty());
  } else if (c.nullColumn < 0) {
    EXPECT_EQ(ColumnsOf(table.root), Table(c.table));
  }
}

}  // namespace

TEST(MeanderHatching, PathsOfEachCase) {
  const char* odd = "0: 0 10; 5: 0 10 20";
  const MeanderCase cases[] = {
      {"0:; 5:", false, "", 20, 0, "", {}},
      {"0:; 5:", false, "", 20, 1, "", {}},
      {"0: 3 9", false, "", 20, 0, "0 3 0 9", {}},
      // The neighbour is entered at its near end and joined when strictly closer.
      {kNeighbours, false, "", 20, 0, kJoined, {}},
      {kNeighbours, false, "", 5, 0, kNotJoined, {}},
      {kNeighbours, false, "", 6, 0, kJoined, {}},
      // Backwards begins at the highest column with runs.
      {kNeighbours, false, "", 20, 1, "5 0 5 10 5 10 0 10 0 10 0 0", {}},
      {"0: 0 10; 5: 0 10; 10:", false, "", 20, 7, "5 0 5 10 5 10 0 10 0 10 0 0", {}},
      // Runs behind the last one in its column stay behind.
      {"0: 0 10 20 30", false, "", 20, 0, "0 0 0 10", {20, 30}},
      // A list ending inside a pair leaves the table alone.
      {odd, false, "", 20, 0, "", {0, 10, 0, 10, 20}},
      {odd, true, "3: 8 12", 20, 1, "", {0, 10, 0, 10, 20}},
      // A null List is an empty column.
      {"0: 0 10; 5:; 10: 0 10", false, "", 20, 0, "0 0 0 10 0 10 10 10 10 10 10 0", {}, 1},
      // A run of the second table, touched at either end, refuses the connection.
      {kNeighbours, true, "3: 8 12", 20, 0, kNotJoined, {}},
      {kNeighbours, true, "3: 11 12", 20, 0, kJoined, {}},
      {kNeighbours, true, "3: 10 12", 20, 0, kNotJoined, {}},
      {kNeighbours, true, "3: 8 12", 20, 1, "5 0 5 10 0 10 0 0", {}},
      {kNeighbours, true, "", 20, 0, kJoined, {}},  // a second table without columns blocks nothing
      // The first run is never joined, not even where the 32-bit differences to
      // the far-off previous point wrap and come out short.
      {"-2147483638: 2147483600 2147483640",
       false,
       "",
       100,
       0,
       "-2147483638 2147483600 -2147483638 2147483640",
       {}},
      {"2147483600: 2147483600 2147483640",
       false,
       "",
       100,
       0,
       "2147483600 2147483600 2147483600 2147483640",
       {}},
  };
  for (const MeanderCase& c : cases) {
    SCOPED_TRACE(::testing::Message()
                 << c.table << " | check " << c.check << " | connect " << c.connectDistance << " backwards "
                 << c.backwards << " null " << c.nullColumn);
    Coordinates left;
    EXPECT_EQ(Meander(c, &left), Lists(c.expected));
    EXPECT_EQ(left, c.left);
  }
}

TEST(MeanderHatching, CrossCheckIsSinglePrecisionAndOneSidedAtTheEnds) {
  // From (0, 10) to (10, 0): at x = 3 the line stands at trunc(3 * -10 / 10) + 10 = 7.
  // The cursor starts on the column at 0, so a run at x = 0 is tested; a run
  // at x = 5, the high end, is not when the cursor comes from below.
  const struct {
    const char *table, *check;
    int32_t connectDistance;
    size_t pathSize;
  } cases[] = {
      {"0: 0 10; 10: 0 30", "3: 7 7", 100, 8},
      {"0: 0 10; 10: 0 30", "3: 8 9", 100, 12},
      {kNeighbours, "0: 10 10; 5: 50 60", 20, 8},
      {kNeighbours, "0: 50 60; 5: 10 10", 20, 12},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.table << " | check " << c.check);
    EXPECT_EQ(Meander({c.table, true, c.check, c.connectDistance, 0, "", {}}).at(0).size(), c.pathSize);
  }
}

TEST(MeanderHatching, CheckColumnWithoutListBlocksNothing) {
  // The run 7..7 at x = 3 blocks the connection; without its list the column blocks nothing.
  for (bool dropped : {false, true}) {
    ScopedTable table(Table("0: 0 10; 10: 0 30")), check(Table("3: 7 7"));
    check.DropList(dropped ? 0 : -1);
    ScopedVectorLayer layer;
    MSliceFileParameters parameters;
    parameters.MeanderConnectDistance = 100;
    layer.ADD_X_TABEL_MEANDER_CROSS_CHECKED(&table.root, &check.root, parameters, 0, 9);
    EXPECT_EQ(BlocksOf(layer).at(0).size(), dropped ? 12u : 8u);
  }
}

TEST(MeanderHatching, LongPathGrowsTheArrayAndDrawsEveryRunOnce) {
  Columns columns;
  std::vector<Coordinates> expected;
  for (int32_t i = 0; i < 9000; ++i) {
    columns.push_back({10 * i, {0, 100, 200, 300}});
    expected.push_back({10 * i, 0, 100});
    expected.push_back({10 * i, 200, 300});
  }
  ScopedTable table(columns);
  ScopedVectorLayer layer;
  MSliceFileParameters parameters = Parameters(0, 1000);
  layer.BEWAAR_X_TABEL_MEANDER(&table.root, parameters, 0, 9);
  const Blocks blocks = BlocksOf(layer);
  ASSERT_EQ(blocks.size(), 1u);
  const Coordinates& path = blocks[0];
  EXPECT_GT(path.size(), 60000u);
  EXPECT_EQ(path.size() % 4, 0u);
  std::vector<Coordinates> runs;  // the vectors along a column
  for (size_t i = 0; i + 3 < path.size(); i += 4) {
    if (path[i] == path[i + 2])
      runs.push_back({path[i], std::min(path[i + 1], path[i + 3]), std::max(path[i + 1], path[i + 3])});
  }
  std::sort(runs.begin(), runs.end());
  EXPECT_EQ(runs, expected);
  EXPECT_TRUE(CrossingsOf(table.root).empty());
}

// More paths open at once than the sweep first makes room for: every run drawn once.
TEST(MeanderHatching, NoSwitchSweepWithManyPathsOpenAtOnce) {
  Columns columns = {{0, {}}, {5, {}}};
  std::vector<Coordinates> expected;
  for (auto& column : columns) {
    for (int32_t i = 0; i < 1001; ++i) {
      column.crossings.insert(column.crossings.end(), {20 * i, 20 * i + 10});
      expected.push_back({column.position, 20 * i, 20 * i + 10});
    }
  }
  ScopedTable table(columns), check(Columns{});
  ScopedVectorLayer layer;
  MSliceFileParameters parameters = Parameters(5, 6);
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(&table.root, &check.root, parameters, 3);
  const Blocks blocks = BlocksOf(layer);
  EXPECT_EQ(blocks.size(), 1001u);  // each run joined to its neighbour
  std::vector<Coordinates> runs;
  for (const Coordinates& path : blocks) {
    for (size_t i = 0; i + 3 < path.size(); i += 4) {
      if (path[i] == path[i + 2])
        runs.push_back({path[i], std::min(path[i + 1], path[i + 3]), std::max(path[i + 1], path[i + 3])});
    }
  }
  std::sort(runs.begin(), runs.end());
  EXPECT_EQ(runs, expected);
}

TEST(MeanderHatching, NullTablesAddNoBlock) {
  ScopedVectorLayer layer;
  MSliceFileParameters parameters = Parameters(3, 5);
  TABEL empty;
  layer.BEWAAR_X_TABEL_MEANDER(nullptr, parameters, 0, 1);
  layer.BEWAAR_X_TABEL_MEANDER(&empty, parameters, 1, 1);
  layer.ADD_X_TABEL_MEANDER_CROSS_CHECKED(nullptr, &empty, parameters, 0, 1);
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED(nullptr, nullptr, parameters, 0, 3);
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(nullptr, nullptr, parameters, 3);
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(&empty, nullptr, parameters, 3);
  EXPECT_EQ(layer.NumBlocks, 0);
  // A real table without a second one.
  ScopedTable pair(Table("0: 0 10; 3: 0 10"));
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(&pair.root, nullptr, parameters, 3);
  ScopedTable three(Table(kThreeColumns));
  parameters = Parameters(10, 20);
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED(&three.root, nullptr, parameters, 1, 3);
  EXPECT_EQ(BlocksOf(layer), Lists(std::string("0 0 0 10 0 10 3 10 3 10 3 0; ") + kThreeJoined));
}

TEST(NoSwitchMeander, ConsumingWalkOfEachCase) {
  const NoSwitchCase cases[] = {
      // Directions follow the columns from the highest down; column 10 has an
      // odd quotient and is entered at its second element.
      {kThreeColumns, "", 10, 20, kThreeJoined},
      {"0: 0 10; 10: 0 10", "", 10, 5, "10 10 10 0 0 0 0 10"},
      {kThreeColumns, "5: 0 20", 10, 20, "20 0 20 10 20 10 10 10 10 10 10 0 0 0 0 10"},
      // Grid distance 0, an odd list or empty columns leave the table alone.
      {kThreeColumns, "", 0, 20, ""},
      {"0: 0 10 20; 10: 0 10", "", 10, 20, ""},
      {"0:; 10:", "", 10, 20, ""},
  };
  for (const NoSwitchCase& c : cases)
    ExpectNoSwitchPaths(c, false);
}

TEST(NoSwitchMeander, SweepPathsOfEachCaseAndTheTablesStayWhole) {
  const NoSwitchCase cases[] = {
      // A connection distance not above the grid adds nothing.
      {"0: 0 10; 3: 0 10", "", 3, 3, ""},
      // Grid 3 and connection 5: maxStep 4, strictly.
      {"0: 0 10; 3: 0 10", "", 3, 5, "0 0 0 10 0 10 3 10 3 10 3 0"},
      {"0: 0 10; 3: 0 13", "", 3, 5, "0 0 0 10 0 10 3 13 3 13 3 0"},
      {"0: 0 10; 3: 0 14", "", 3, 5, "0 0 0 10; 3 14 3 0"},
      // The third column is entered at its lower end.
      {"0: 0 10; 3: 0 10; 6: 0 10", "", 3, 5, "0 0 0 10 0 10 3 10 3 10 3 0 3 0 6 0 6 0 6 10"},
      // maxStep 19: the path ending at 30 is nearer to the entry 27 than the one at 10.
      {"0: 0 10 20 30; 3: 0 27", "", 3, 20, "0 0 0 10; 0 20 0 30 0 30 3 27 3 27 3 0"},
      // Equal distances: the first slot wins.
      {"0: 0 10 20 30 40 50; 3: 0 40", "", 3, 20, "0 0 0 10; 0 20 0 30 0 30 3 40 3 40 3 0; 0 40 0 50"},
      // The walk stops at the first slot that is not nearer: the path ending
      // at 36 behind the one ending at 50 is not looked at.
      {"0: 20 30 40 50 34 36; 3: 0 35", "", 3, 20, "0 20 0 30 0 30 3 35 3 35 3 0; 0 40 0 50; 0 34 0 36"},
      // An empty column ends all paths and still turns; one at position
      // exactly 1 is passed over altogether.
      {"0: 0 10; 3:; 6: 0 10", "", 3, 5, "0 0 0 10; 6 0 6 10"},
      {"0: 0 10; 1:; 3: 0 10", "", 3, 5, "0 0 0 10 0 10 3 10 3 10 3 0"},
      // Null Lists and unpaired crossings count as empty.
      {"0: 0 10; 3:; 6: 0 10 15", "", 3, 5, "0 0 0 10; 6 0 6 10", 1},
      {"0:; 3: 0 10", "", 3, 5, "3 10 3 0", 0},
      // A check run over the middle of a connection splits the path.
      {"0: 0 10; 3: 0 2", "0: 5 6", 3, 20, "0 0 0 10; 3 2 3 0"},
      {"0: 0 10; 3: 0 2", "0: 7 9", 3, 20, "0 0 0 10 0 10 3 2 3 2 3 0"},
      // The check pointer only moves forwards: the first run moves it past
      // (18, 19), where the second connection's middle 19 would lie.
      {"0: 0 10 20 30; 3: 0 24 26 28", "0: 18 19", 3, 20,
       "0 0 0 10 0 10 3 28 3 28 3 26; 0 20 0 30 0 30 3 24 3 24 3 0"},
  };
  for (const NoSwitchCase& c : cases)
    ExpectNoSwitchPaths(c, true);
}
