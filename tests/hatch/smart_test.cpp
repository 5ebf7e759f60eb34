#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "layer/vector_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "support/hatch_tables.h"

using namespace testing_support;

namespace {

using SmartGenerator = bool (VECTOR_LAYER::*)(TABEL&, MSliceFileParameters&, unsigned short, char);

struct SmartResult {
  bool ok;
  Blocks blocks;
  std::vector<ColumnSpec> left;  // what stays in the table's chains
};

SmartResult Smart(const std::vector<ColumnSpec>& columns, unsigned short direction,
                  MSliceFileParameters parameters = {},
                  SmartGenerator generator = &VECTOR_LAYER::ADD_X_SMART_HATCHING) {
  SCOPED_TRACE(Describe(columns));
  ScopedTable table(columns);
  ScopedVectorLayer layer;
  SmartResult result;
  result.ok = (layer.*generator)(table.root, parameters, direction, 5);
  result.blocks = BlocksOf(layer);
  result.left = ColumnsOf(table.root);
  return result;
}

MSliceFileParameters Shortening(bool on) {
  MSliceFileParameters parameters;
  parameters.ShortenSmartHatch = on;
  parameters.HatchShortening = 5;
  parameters.HatchShorteningFactor = 2;
  return parameters;
}

// One ADD_HATCHINGS call on fresh tables.
void Hatchings(VECTOR_LAYER& layer, MSliceFileParameters& parameters) {
  ScopedTable x(kSignatureXTable);
  ScopedTable y(kSignatureYTable);
  EXPECT_TRUE(layer.ADD_HATCHINGS(parameters, x.root, y.root, 1));
}

}  // namespace

TEST(SmartHatching, NothingToDrawGivesTrueAndNoBlock) {
  ScopedVectorLayer layer;
  TABEL empty;
  MSliceFileParameters parameters;
  EXPECT_TRUE(layer.ADD_X_SMART_HATCHING(empty, parameters, 0, 1));
  EXPECT_TRUE(layer.ADD_Y_SMART_HATCHING(empty, parameters, 1, 1));
  EXPECT_EQ(layer.NumBlocks, 0);
  const SmartResult r = Smart({{0, {}}, {5, {}}}, 1);
  EXPECT_TRUE(r.ok);
  EXPECT_TRUE(r.blocks.empty());
}

TEST(SmartHatching, NextRunOfTheSameColumnComesFirst) {
  const SmartResult r = Smart({{4, {0, 10, 20, 30}}}, 0);
  EXPECT_TRUE(r.ok);
  EXPECT_EQ(r.blocks, (Blocks{{4, 0, 4, 10, 4, 20, 4, 30}}));
  EXPECT_EQ(CrossingsIn(r.left), 0u);
}

TEST(SmartHatching, NeighbourIsEnteredAtItsNearEnd) {
  EXPECT_EQ(Smart({{0, {0, 10}}, {5, {0, 10}}}, 0).blocks, (Blocks{{0, 0, 0, 10, 5, 10, 5, 0}}));
  EXPECT_EQ(Smart({{0, {0, 10}}, {5, {0, 10}}}, 0, {}, &VECTOR_LAYER::ADD_Y_SMART_HATCHING).blocks,
            (Blocks{{0, 0, 10, 0, 10, 5, 0, 5}}));
}

TEST(SmartHatching, WalkWrapsRoundSoThatEveryRunIsDrawn) {
  const std::vector<ColumnSpec> table = {{0, {0, 10, 100, 110}}, {5, {0, 10}}};
  SmartResult up = Smart(table, 0);
  EXPECT_TRUE(up.ok);
  EXPECT_EQ(up.blocks, (Blocks{{0, 0, 0, 10, 5, 10, 5, 0, 0, 100, 0, 110}}));
  EXPECT_EQ(CrossingsIn(up.left), 0u);
  SmartResult down = Smart(table, 1);
  EXPECT_EQ(down.blocks, (Blocks{{5, 0, 5, 10, 0, 10, 0, 0, 0, 100, 0, 110}}));
  EXPECT_EQ(CrossingsIn(down.left), 0u);
  EXPECT_EQ(Smart(table, 2, {}, &VECTOR_LAYER::ADD_Y_SMART_HATCHING).blocks,
            (Blocks{{0, 5, 10, 5, 10, 0, 0, 0, 100, 0, 110, 0}}));
}

TEST(SmartHatching, ShorteningMovesTheEndOfLongVectors) {
  const std::vector<ColumnSpec> table = {{0, {0, 11}}, {5, {0, 11}}, {9, {0, 10}}};
  EXPECT_EQ(Smart(table, 0, Shortening(false)).blocks, (Blocks{{0, 0, 0, 11, 5, 11, 5, 0, 9, 0, 9, 10}}));
  EXPECT_EQ(Smart(table, 0, Shortening(true)).blocks, (Blocks{{0, 0, 0, 6, 5, 11, 5, 5, 9, 0, 9, 10}}));
}

TEST(SmartHatching, PairWithoutItsSecondCrossingFailsAndAddsNothing) {
  SmartResult alone = Smart({{0, {5}}}, 0);
  EXPECT_FALSE(alone.ok);
  EXPECT_TRUE(alone.blocks.empty());
  SmartResult later = Smart({{0, {0, 10}}, {5, {3}}}, 0);
  EXPECT_FALSE(later.ok);
  EXPECT_TRUE(later.blocks.empty());
  EXPECT_EQ(later.left, (std::vector<ColumnSpec>{{0, {}}, {5, {3}}}));
}

TEST(SmartHatching, ListsHoldingMoreThanTheirCountsFail) {
  ScopedTable table({{0, {0, 10, 20, 30}}});
  table.Column(0)->List->Value = 2;
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  EXPECT_FALSE(layer.ADD_X_SMART_HATCHING(table.root, parameters, 0, 1));
  EXPECT_EQ(layer.NumBlocks, 0);
}

TEST(SmartHatching, NullListIsAnEmptyColumn) {
  ScopedTable table({{0, {}}, {5, {0, 10}}, {9, {}}});
  for (int i : {0, 2}) {
    free(table.Column(i)->List);
    table.Column(i)->List = nullptr;
  }
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  EXPECT_TRUE(layer.ADD_X_SMART_HATCHING(table.root, parameters, 1, 1));
  EXPECT_EQ(BlocksOf(layer), (Blocks{{5, 0, 5, 10}}));
}

TEST(AddHatchings, FixedOrderIsXThenYFromTheHighEnd) {
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  for (int i = 0; i < 3; ++i) {
    Hatchings(layer, parameters);
    EXPECT_EQ(WalkSignature(layer, 2 * i), "X1 Y1 ");
  }
  parameters.CycleHatchOrder = true;
  Hatchings(layer, parameters);
  EXPECT_EQ(WalkSignature(layer, 6), "X0 Y0 ");  // the fixed calls left the counter at 0
}

TEST(AddHatchings, EightStepsCycleThroughTheProcess) {
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  parameters.CycleHatchOrder = true;
  const char* expected[] = {"X0 Y0 ", "Y0 X0 ", "X1 Y0 ", "Y0 X1 ", "X1 Y1 ",
                            "Y1 X1 ", "X0 Y1 ", "Y1 X0 ", "X0 Y0 "};
  for (int step = 0; step < 9; ++step) {
    Hatchings(layer, parameters);
    EXPECT_EQ(WalkSignature(layer, 2 * step), expected[step]) << "call " << step;
  }
}

TEST(AddHatchings, SupportKeepsACounterOfItsOwn) {
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  parameters.CycleHatchOrder = true;
  Hatchings(layer, parameters);
  Hatchings(layer, parameters);
  EXPECT_EQ(WalkSignature(layer, 2), "Y0 X0 ");
  ScopedTable x(kSignatureXTable);
  ScopedTable y(kSignatureYTable);
  layer.ADD_SUPPORT(parameters, x.root, y.root, 1);
  // Support's first cycled call walks both tables from the high end.
  EXPECT_EQ(WalkSignature(layer, 4), "X1 Y1 ");
  Hatchings(layer, parameters);
  EXPECT_EQ(WalkSignature(layer, 6), "X1 Y0 ");
}
