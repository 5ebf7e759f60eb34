#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "layer/vector_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "support/hatch_tables.h"

using namespace testing_support;

namespace {

using Generator = bool (VECTOR_LAYER::*)(TABEL&, MSliceFileParameters&, char);

struct GeneratorCase {
  const char* name;
  Generator generator;
};

const GeneratorCase kAllGenerators[] = {
    {"LINKS", &VECTOR_LAYER::ADD_X_ARCERING_LINKS},
    {"RECHTS", &VECTOR_LAYER::ADD_X_ARCERING_RECHTS},
    {"ONDER", &VECTOR_LAYER::ADD_Y_ARCERING_ONDER},
    {"BOVEN", &VECTOR_LAYER::ADD_Y_ARCERING_BOVEN},
};

// Runs one generator on a literal table and returns the blocks it added.
std::vector<Coordinates> Hatch(Generator generator, const std::vector<ColumnSpec>& columns,
                               MSliceFileParameters parameters = {}) {
  ScopedTable table(columns);
  ScopedVectorLayer layer;
  EXPECT_TRUE((layer.*generator)(table.root, parameters, 7)) << Describe(columns);
  return BlocksOf(layer);
}

void FreeList(TABEL* column) {
  LEEG_L_LIJST(column->List);
  free(column->List);
  column->List = nullptr;
}

}  // namespace

TEST(StraightHatching, NothingToDrawGivesTrueAndNoBlock) {
  for (const GeneratorCase& g : kAllGenerators) {
    SCOPED_TRACE(g.name);
    ScopedVectorLayer layer;
    TABEL empty;
    MSliceFileParameters parameters;
    EXPECT_TRUE((layer.*g.generator)(empty, parameters, 1));
    EXPECT_TRUE(Hatch(g.generator, {{0, {}}, {10, {}}}).empty());
    EXPECT_EQ(layer.NumBlocks, 0);
  }
}

TEST(StraightHatching, OneRunInEachAxisAndDirection) {
  const std::vector<ColumnSpec> table = {{7, {2, 9}}};
  EXPECT_EQ(Hatch(&VECTOR_LAYER::ADD_X_ARCERING_RECHTS, table), (std::vector<Coordinates>{{7, 2, 7, 9}}));
  EXPECT_EQ(Hatch(&VECTOR_LAYER::ADD_X_ARCERING_LINKS, table), (std::vector<Coordinates>{{7, 9, 7, 2}}));
  EXPECT_EQ(Hatch(&VECTOR_LAYER::ADD_Y_ARCERING_BOVEN, table), (std::vector<Coordinates>{{2, 7, 9, 7}}));
  EXPECT_EQ(Hatch(&VECTOR_LAYER::ADD_Y_ARCERING_ONDER, table), (std::vector<Coordinates>{{9, 7, 2, 7}}));
}

TEST(StraightHatching, SerpentineAlternatesFromColumnToColumn) {
  const std::vector<ColumnSpec> table = {{0, {0, 10}}, {5, {1, 11}}, {10, {2, 12}}};
  EXPECT_EQ(Hatch(&VECTOR_LAYER::ADD_X_ARCERING_RECHTS, table),
            (std::vector<Coordinates>{{0, 0, 0, 10, 5, 11, 5, 1, 10, 2, 10, 12}}));
  EXPECT_EQ(Hatch(&VECTOR_LAYER::ADD_X_ARCERING_LINKS, table),
            (std::vector<Coordinates>{{10, 12, 10, 2, 5, 1, 5, 11, 0, 10, 0, 0}}));
}

TEST(StraightHatching, FallingColumnWritesItsHighestRunFirst) {
  EXPECT_EQ(Hatch(&VECTOR_LAYER::ADD_X_ARCERING_LINKS, {{3, {0, 10, 20, 30}}}),
            (std::vector<Coordinates>{{3, 30, 3, 20, 3, 10, 3, 0}}));
  EXPECT_EQ(Hatch(&VECTOR_LAYER::ADD_X_ARCERING_RECHTS, {{3, {0, 10}}, {4, {0, 10, 20, 30}}}),
            (std::vector<Coordinates>{{3, 0, 3, 10, 4, 30, 4, 20, 4, 10, 4, 0}}));
}

TEST(StraightHatching, EmptyListTurnsTheDirectionButNullListDoesNot) {
  const std::vector<ColumnSpec> table = {{0, {0, 10}}, {5, {}}, {10, {0, 10}}};
  EXPECT_EQ(Hatch(&VECTOR_LAYER::ADD_X_ARCERING_RECHTS, table),
            (std::vector<Coordinates>{{0, 0, 0, 10, 10, 0, 10, 10}}));

  ScopedTable withNull(table);
  FreeList(withNull.Column(1));
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  EXPECT_TRUE(layer.ADD_X_ARCERING_RECHTS(withNull.root, parameters, 1));
  EXPECT_EQ(BlocksOf(layer), (std::vector<Coordinates>{{0, 0, 0, 10, 10, 10, 10, 0}}));
}

TEST(StraightHatching, NullListInTheFirstColumnIsPassedOver) {
  ScopedTable table({{0, {0, 10}}, {5, {0, 10}}});
  FreeList(table.Column(0));
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  EXPECT_TRUE(layer.ADD_X_ARCERING_RECHTS(table.root, parameters, 1));
  EXPECT_EQ(BlocksOf(layer), (std::vector<Coordinates>{{5, 0, 5, 10}}));
}

TEST(StraightHatching, OddListLeavesOutItsUnpairedCrossing) {
  for (const GeneratorCase& g : kAllGenerators) {
    SCOPED_TRACE(g.name);
    const std::vector<Coordinates> blocks = Hatch(g.generator, {{0, {0, 10, 20}}, {5, {3}}});
    ASSERT_EQ(blocks.size(), 1u);
    EXPECT_EQ(blocks[0].size(), 4u);
  }
}

TEST(StraightHatching, ShorteningMovesTheStartOfLongVectorsOnly) {
  MSliceFileParameters parameters;
  parameters.HatchShortening = 5;
  parameters.HatchShorteningFactor = 2;
  parameters.ShortenSmartHatch = false;  // not looked at here
  const std::vector<ColumnSpec> table = {{0, {0, 10, 20, 31}}};
  EXPECT_EQ(Hatch(&VECTOR_LAYER::ADD_X_ARCERING_RECHTS, table, parameters),
            (std::vector<Coordinates>{{0, 0, 0, 10, 0, 25, 0, 31}}));
  EXPECT_EQ(Hatch(&VECTOR_LAYER::ADD_X_ARCERING_LINKS, table, parameters),
            (std::vector<Coordinates>{{0, 26, 0, 20, 0, 10, 0, 0}}));
  parameters.HatchShortening = 0;
  EXPECT_EQ(Hatch(&VECTOR_LAYER::ADD_Y_ARCERING_BOVEN, table, parameters),
            (std::vector<Coordinates>{{0, 0, 10, 0, 20, 0, 31, 0}}));
}

TEST(AddVectorBlok, AppendsOneBlockAndGrowsTheExtents) {
  ScopedVectorLayer layer;
  auto* empty = new VECTOR_BLOK;
  layer.ADD_VECTOR_BLOK(empty);
  EXPECT_EQ(layer.NumBlocks, 1);
  EXPECT_EQ(layer.FirstBlock, empty);
  EXPECT_EQ(layer.MaxX, kEmptyExtentMax);
  EXPECT_EQ(layer.MinY, kEmptyExtentMin);

  auto* block = new VECTOR_BLOK;
  int32_t values[] = {3, -4, 8, 12};
  block->SetCoordinates(values, 4);
  block->NextBlock = empty;  // not followed: only this block is appended
  layer.ADD_VECTOR_BLOK(block);
  EXPECT_EQ(layer.NumBlocks, 2);
  EXPECT_EQ(empty->NextBlock, block);
  EXPECT_EQ(block->NextBlock, nullptr);
  EXPECT_EQ(layer.MinX, 3);
  EXPECT_EQ(layer.MinY, -4);
  EXPECT_EQ(layer.MaxX, 8);
  EXPECT_EQ(layer.MaxY, 12);
}
