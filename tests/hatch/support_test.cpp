#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "layer/vector_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "support/hatch_tables.h"

using namespace testing_support;

namespace {

std::vector<Coordinates> Walls(const std::vector<ColumnSpec>& columns, int32_t connectDistance = 0) {
  ScopedTable table(columns);
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  parameters.SupportConnectDistance = connectDistance;
  EXPECT_TRUE(layer.ADD_SUPPORT_SINGLE_DIRECTION(table.root, parameters, 40)) << Describe(columns);
  EXPECT_EQ(ColumnsOf(table.root), columns);
  return BlocksOf(layer);
}

Coordinates Connect(Coordinates values, int32_t distance) {
  VECTOR_BLOK block;
  block.SetCoordinates(values.data(), static_cast<int32_t>(values.size()));
  block.CONNECT_VECTORS(distance);
  Coordinates out(block.Block, block.Block + block.Size);
  block.Clear();
  return out;
}

}  // namespace

TEST(AddSupport, StarTypeBecomesOneTypePerAxis) {
  ScopedTable x(kSignatureXTable);
  ScopedTable y(kSignatureYTable);
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  EXPECT_TRUE(layer.ADD_SUPPORT(parameters, x.root, y.root, kVectorTypeSupportDefault));
  EXPECT_TRUE(layer.ADD_SUPPORT(parameters, x.root, y.root, 40));
  EXPECT_EQ(TypesOf(layer), (std::vector<uint16_t>{38, 41, 40, 40}));
  EXPECT_EQ(ColumnsOf(x.root), kSignatureXTable);
  EXPECT_EQ(ColumnsOf(y.root), kSignatureYTable);
}

TEST(AddSupport, FixedOrderLeavesTheCounterThenEightStepsCycle) {
  ScopedTable x(kSignatureXTable);
  ScopedTable y(kSignatureYTable);
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  for (int i = 0; i < 3; ++i) {
    layer.ADD_SUPPORT(parameters, x.root, y.root, '*');
    EXPECT_EQ(WalkSignature(layer, 2 * i), "X0 Y0 ");
  }
  parameters.CycleHatchOrder = true;
  const char* expected[] = {"X1 Y1 ", "Y1 X1 ", "X0 Y1 ", "Y1 X0 ", "X0 Y0 ",
                            "Y0 X0 ", "X1 Y0 ", "Y0 X1 ", "X1 Y1 "};
  for (int step = 0; step < 9; ++step) {
    layer.ADD_SUPPORT(parameters, x.root, y.root, '*');
    EXPECT_EQ(WalkSignature(layer, 6 + 2 * step), expected[step]) << "call " << step;
  }
}

TEST(SupportSingleDirection, EmptyTableGivesNoBlock) {
  ScopedVectorLayer layer;
  TABEL empty;
  MSliceFileParameters parameters;
  EXPECT_TRUE(layer.ADD_SUPPORT_SINGLE_DIRECTION(empty, parameters, 40));
  EXPECT_EQ(layer.NumBlocks, 0);
  EXPECT_TRUE(Walls({{0, {}}, {5, {}}}).empty());
}

TEST(SupportSingleDirection, EachRunOfAColumnIsAWallOfItsOwn) {
  EXPECT_EQ(Walls({{3, {0, 10, 20, 30}}}), (std::vector<Coordinates>{{3, 0, 3, 10}, {3, 20, 3, 30}}));
}

TEST(SupportSingleDirection, WallZigzagsThroughColumnsOfOneCount) {
  EXPECT_EQ(Walls({{0, {0, 10}}, {5, {0, 10}}, {10, {0, 10}}}),
            (std::vector<Coordinates>{{0, 0, 0, 10, 5, 10, 5, 0, 10, 0, 10, 10}}));
}

TEST(SupportSingleDirection, ChangeOfCountEndsEveryWall) {
  EXPECT_EQ(
      Walls({{0, {0, 10}}, {5, {0, 10}}, {10, {0, 10, 20, 30}}, {15, {0, 10, 20, 30}}}),
      (std::vector<Coordinates>{
          {0, 0, 0, 10, 5, 10, 5, 0}, {10, 0, 10, 10, 15, 10, 15, 0}, {10, 20, 10, 30, 15, 30, 15, 20}}));
}

TEST(SupportSingleDirection, EmptyColumnEndsTheWallAndStillTurns) {
  EXPECT_EQ(Walls({{0, {0, 10}}, {5, {}}, {10, {0, 10}}}),
            (std::vector<Coordinates>{{0, 0, 0, 10}, {10, 0, 10, 10}}));
}

TEST(SupportSingleDirection, NullListCountsAsAnEmptyColumn) {
  ScopedTable table({{0, {0, 10}}, {5, {0, 10}}, {10, {0, 10}}});
  TABEL* middle = table.Column(1);
  LEEG_L_LIJST(middle->List);
  free(middle->List);
  middle->List = nullptr;
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  EXPECT_TRUE(layer.ADD_SUPPORT_SINGLE_DIRECTION(table.root, parameters, 40));
  EXPECT_EQ(BlocksOf(layer), (std::vector<Coordinates>{{0, 0, 0, 10}, {10, 0, 10, 10}}));
}

TEST(SupportSingleDirection, OddCountsFormGroupsOfTheirOwn) {
  EXPECT_EQ(Walls({{0, {0, 10, 20}}, {5, {0, 10, 20}}, {10, {0, 10}}}),
            (std::vector<Coordinates>{{0, 0, 0, 10, 5, 10, 5, 0}, {10, 0, 10, 10}}));
  EXPECT_TRUE(Walls({{0, {4}}}).empty());
}

TEST(SupportSingleDirection, CloseVectorsAreJoinedAndTypeIsKept) {
  EXPECT_EQ(Walls({{0, {0, 10}}, {5, {0, 10}}, {10, {0, 10}}}, 6),
            (std::vector<Coordinates>{{0, 0, 0, 10, 0, 10, 5, 10, 5, 10, 5, 0, 5, 0, 10, 0, 10, 0, 10, 10}}));
  ScopedTable table({{0, {0, 10}}});
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  layer.ADD_SUPPORT_SINGLE_DIRECTION(table.root, parameters, static_cast<char>(-2));
  EXPECT_EQ(TypesOf(layer), (std::vector<uint16_t>{65534}));
}

TEST(ConnectVectors, JoinsOnlyGapsStrictlyBelowTheDistance) {
  const Coordinates two = {0, 0, 0, 10, 3, 14, 3, 20};  // gap of exactly 5
  EXPECT_EQ(Connect(two, 5), two);
  EXPECT_EQ(Connect(two, 6), (Coordinates{0, 0, 0, 10, 0, 10, 3, 14, 3, 14, 3, 20}));
  EXPECT_EQ(Connect(two, 0), two);
  const Coordinates touching = {0, 0, 0, 10, 0, 10, 0, 20};
  EXPECT_EQ(Connect(touching, 0), touching);
  EXPECT_EQ(Connect(touching, 1), (Coordinates{0, 0, 0, 10, 0, 10, 0, 10, 0, 10, 0, 20}));
}

TEST(ConnectVectors, ShortBlocksStayAsTheyAre) {
  EXPECT_EQ(Connect({1, 2, 3, 4}, 100), (Coordinates{1, 2, 3, 4}));
  EXPECT_EQ(Connect({}, 100), Coordinates{});
  EXPECT_EQ(Connect({1, 2}, 100), (Coordinates{1, 2}));
}

TEST(ConnectVectors, EveryGapJoinedFillsTheWorkBufferExactly) {
  const Coordinates three = {0, 0, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0};
  const Coordinates joined = Connect(three, 2);
  EXPECT_EQ(joined, (Coordinates{0, 0, 1, 0, 1, 0, 2, 0, 2, 0, 3, 0, 3, 0, 4, 0, 4, 0, 5, 0}));
  EXPECT_EQ(joined.size(), 2 * three.size() - 4);
}
