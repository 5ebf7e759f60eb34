#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "layer/vector_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "support/hatch_tables.h"

using namespace testing_support;

namespace {

struct NoSwitchCase {
  std::vector<ColumnSpec> table;
  std::vector<ColumnSpec> check;  // empty: a second table without columns
  int32_t gridDistance;           // XHatchDistance
  int32_t connectDistance;        // MeanderConnectDistance
};

MSliceFileParameters ParametersOf(const NoSwitchCase& c) {
  MSliceFileParameters parameters;
  parameters.XHatchDistance = c.gridDistance;
  parameters.MeanderConnectDistance = c.connectDistance;
  return parameters;
}

// The consuming walk; `left` receives what stays in the table.
Blocks Walk(const NoSwitchCase& c, std::vector<ColumnSpec>* left = nullptr) {
  SCOPED_TRACE(Describe(c.table) + "| check " + Describe(c.check));
  ScopedTable table(c.table);
  ScopedTable check(c.check);
  ScopedVectorLayer layer;
  MSliceFileParameters parameters = ParametersOf(c);
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED(&table.root, &check.root, parameters, 0, 3);
  if (left != nullptr)
    *left = ColumnsOf(table.root);
  return BlocksOf(layer);
}

// The sweep of many paths; checks that the tables stay whole.
Blocks Sweep(const NoSwitchCase& c) {
  SCOPED_TRACE(Describe(c.table) + "| check " + Describe(c.check));
  ScopedTable table(c.table);
  ScopedTable check(c.check);
  ScopedVectorLayer layer;
  MSliceFileParameters parameters = ParametersOf(c);
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(&table.root, &check.root, parameters, 3);
  EXPECT_EQ(ColumnsOf(table.root), c.table);
  EXPECT_EQ(ColumnsOf(check.root), c.check);
  return BlocksOf(layer);
}

const std::vector<ColumnSpec> kThreeColumns = {{0, {0, 10}}, {10, {0, 10}}, {20, {0, 10}}};

}  // namespace

TEST(NoSwitchMeander, DirectionsFollowTheColumnsFromTheHighestDown) {
  std::vector<ColumnSpec> left;
  EXPECT_EQ(Walk({kThreeColumns, {}, 10, 20}, &left),
            (Blocks{{20, 0, 20, 10, 20, 10, 10, 10, 10, 10, 10, 0, 10, 0, 0, 0, 0, 0, 0, 10}}));
  EXPECT_EQ(CrossingsIn(left), 0u);
  // Column 10 has an odd quotient: it is entered at its second element.
  EXPECT_EQ(Walk({{{0, {0, 10}}, {10, {0, 10}}}, {}, 10, 5}), (Blocks{{10, 10, 10, 0, 0, 0, 0, 10}}));
}

TEST(NoSwitchMeander, SecondTableRefusesConnections) {
  EXPECT_EQ(Walk({kThreeColumns, {{5, {0, 20}}}, 10, 20}),
            (Blocks{{20, 0, 20, 10, 20, 10, 10, 10, 10, 10, 10, 0, 0, 0, 0, 10}}));
  ScopedTable table(kThreeColumns);
  ScopedVectorLayer layer;
  MSliceFileParameters parameters = ParametersOf({{}, {}, 10, 20});
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED(&table.root, nullptr, parameters, 1, 3);
  EXPECT_EQ(BlocksOf(layer),
            (Blocks{{20, 0, 20, 10, 20, 10, 10, 10, 10, 10, 10, 0, 10, 0, 0, 0, 0, 0, 0, 10}}));
}

TEST(NoSwitchMeander, ZeroGridDistanceOrOddListLeavesTheTableAlone) {
  std::vector<ColumnSpec> left;
  EXPECT_TRUE(Walk({kThreeColumns, {}, 0, 20}, &left).empty());
  EXPECT_EQ(left, kThreeColumns);
  const std::vector<ColumnSpec> odd = {{0, {0, 10, 20}}, {10, {0, 10}}};
  EXPECT_TRUE(Walk({odd, {}, 10, 20}, &left).empty());
  EXPECT_EQ(left, odd);
  EXPECT_TRUE(Walk({{{0, {}}, {10, {}}}, {}, 10, 20}).empty());
  ScopedVectorLayer layer;
  MSliceFileParameters parameters = ParametersOf({{}, {}, 10, 20});
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED(nullptr, nullptr, parameters, 0, 3);
  EXPECT_EQ(layer.NumBlocks, 0);
}

TEST(NoSwitchSweep, ConnectionDistanceNotAboveTheGridAddsNothing) {
  EXPECT_TRUE(Sweep({{{0, {0, 10}}, {3, {0, 10}}}, {}, 3, 3}).empty());
  ScopedVectorLayer layer;
  MSliceFileParameters parameters = ParametersOf({{}, {}, 3, 5});
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(nullptr, nullptr, parameters, 3);
  TABEL empty;
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(&empty, nullptr, parameters, 3);
  EXPECT_EQ(layer.NumBlocks, 0);
}

TEST(NoSwitchSweep, StepBelowMaxStepConnects) {
  // XHatchDistance 3 and MeanderConnectDistance 5: maxStep 4.
  EXPECT_EQ(Sweep({{{0, {0, 10}}, {3, {0, 10}}}, {}, 3, 5}),
            (Blocks{{0, 0, 0, 10, 0, 10, 3, 10, 3, 10, 3, 0}}));
  EXPECT_EQ(Sweep({{{0, {0, 10}}, {3, {0, 13}}}, {}, 3, 5}),
            (Blocks{{0, 0, 0, 10, 0, 10, 3, 13, 3, 13, 3, 0}}));
  EXPECT_EQ(Sweep({{{0, {0, 10}}, {3, {0, 14}}}, {}, 3, 5}), (Blocks{{0, 0, 0, 10}, {3, 14, 3, 0}}));
}

TEST(NoSwitchSweep, ThirdColumnIsEnteredAtItsLowerEnd) {
  EXPECT_EQ(Sweep({{{0, {0, 10}}, {3, {0, 10}}, {6, {0, 10}}}, {}, 3, 5}),
            (Blocks{{0, 0, 0, 10, 0, 10, 3, 10, 3, 10, 3, 0, 3, 0, 6, 0, 6, 0, 6, 10}}));
}

TEST(NoSwitchSweep, NearestLivePathIsExtended) {
  // maxStep 19: the path ending at 30 is nearer to the entry 27 than the one at 10.
  EXPECT_EQ(Sweep({{{0, {0, 10, 20, 30}}, {3, {0, 27}}}, {}, 3, 20}),
            (Blocks{{0, 0, 0, 10}, {0, 20, 0, 30, 0, 30, 3, 27, 3, 27, 3, 0}}));
  // Equal distances: the first slot wins.
  EXPECT_EQ(Sweep({{{0, {0, 10, 20, 30, 40, 50}}, {3, {0, 40}}}, {}, 3, 20}),
            (Blocks{{0, 0, 0, 10}, {0, 20, 0, 30, 0, 30, 3, 40, 3, 40, 3, 0}, {0, 40, 0, 50}}));
  // The walk stops at the first slot that is not nearer: the path ending at
  // 36 behind the one ending at 50 is not looked at.
  EXPECT_EQ(Sweep({{{0, {20, 30, 40, 50, 34, 36}}, {3, {0, 35}}}, {}, 3, 20}),
            (Blocks{{0, 20, 0, 30, 0, 30, 3, 35, 3, 35, 3, 0}, {0, 40, 0, 50}, {0, 34, 0, 36}}));
}

TEST(NoSwitchSweep, EmptyColumnEndsAllPathsAndStillTurns) {
  EXPECT_EQ(Sweep({{{0, {0, 10}}, {3, {}}, {6, {0, 10}}}, {}, 3, 5}), (Blocks{{0, 0, 0, 10}, {6, 0, 6, 10}}));
  // An empty column at position exactly 1 is passed over altogether.
  EXPECT_EQ(Sweep({{{0, {0, 10}}, {1, {}}, {3, {0, 10}}}, {}, 3, 5}),
            (Blocks{{0, 0, 0, 10, 0, 10, 3, 10, 3, 10, 3, 0}}));
}

TEST(NoSwitchSweep, NullListsAndUnpairedCrossingsAreEmpty) {
  ScopedTable table({{0, {0, 10}}, {3, {}}, {6, {0, 10, 15}}});
  TABEL* middle = table.Column(1);
  free(middle->List);
  middle->List = nullptr;
  ScopedVectorLayer layer;
  MSliceFileParameters parameters = ParametersOf({{}, {}, 3, 5});
  layer.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(&table.root, nullptr, parameters, 3);
  EXPECT_EQ(BlocksOf(layer), (Blocks{{0, 0, 0, 10}, {6, 0, 6, 10}}));

  ScopedTable firstNull({{0, {}}, {3, {0, 10}}});
  free(firstNull.Column(0)->List);
  firstNull.Column(0)->List = nullptr;
  ScopedVectorLayer other;
  other.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(&firstNull.root, nullptr, parameters, 3);
  EXPECT_EQ(BlocksOf(other), (Blocks{{3, 10, 3, 0}}));
}

TEST(NoSwitchSweep, CheckRunOverTheMiddleSplitsThePath) {
  const std::vector<ColumnSpec> table = {{0, {0, 10}}, {3, {0, 2}}};
  EXPECT_EQ(Sweep({table, {{0, {4, 6}}}, 3, 20}), (Blocks{{0, 0, 0, 10}, {3, 2, 3, 0}}));
  EXPECT_EQ(Sweep({table, {{0, {7, 9}}}, 3, 20}), (Blocks{{0, 0, 0, 10, 0, 10, 3, 2, 3, 2, 3, 0}}));
}

TEST(NoSwitchSweep, CheckPointerOnlyMovesForwards) {
  // The first run moves the pointer past (18, 19); the second connection's
  // middle 19 would lie in it, but the pointer is not reset.
  EXPECT_EQ(Sweep({{{0, {0, 10, 20, 30}}, {3, {0, 24, 26, 28}}}, {{0, {18, 19}}}, 3, 20}),
            (Blocks{{0, 0, 0, 10, 0, 10, 3, 28, 3, 28, 3, 26}, {0, 20, 0, 30, 0, 30, 3, 24, 3, 24, 3, 0}}));
}
