// Hatching and support from scan tables: straight, support and smart
// generators, and the step counters that order them.
#include <gtest/gtest.h>

#include <vector>

#include "layer/vector_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "support/tables.h"

using namespace testing_support;

namespace {

using Generator = bool (VECTOR_LAYER::*)(TABEL&, MSliceFileParameters&, char);
constexpr Generator kLinks = &VECTOR_LAYER::ADD_X_ARCERING_LINKS;
constexpr Generator kRechts = &VECTOR_LAYER::ADD_X_ARCERING_RECHTS;
constexpr Generator kOnder = &VECTOR_LAYER::ADD_Y_ARCERING_ONDER;
constexpr Generator kBoven = &VECTOR_LAYER::ADD_Y_ARCERING_BOVEN;

constexpr Generator kSupport = &VECTOR_LAYER::ADD_SUPPORT_SINGLE_DIRECTION;

// Runs one generator on a literal table (with a null List at `nullColumn`)
// and returns the blocks it added; the table must stay whole, and every block
// have the type, sign-extended.
Blocks Hatch(Generator generator, const Columns& columns, MSliceFileParameters parameters = {},
             int nullColumn = -1, char type = -2) {
  SCOPED_TRACE(::testing::PrintToString(columns));
  ScopedTable table(columns);
  table.DropList(nullColumn);
  ScopedVectorLayer layer;
  EXPECT_TRUE((layer.*generator)(table.root, parameters, type));
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock)
    EXPECT_EQ(b->Type, static_cast<uint16_t>(type));
  if (nullColumn < 0) {
    EXPECT_EQ(ColumnsOf(table.root), columns);
  }
  return BlocksOf(layer);
}

using SmartGenerator = bool (VECTOR_LAYER::*)(TABEL&, MSliceFileParameters&, unsigned short, char);
constexpr SmartGenerator kX = &VECTOR_LAYER::ADD_X_SMART_HATCHING;
constexpr SmartGenerator kY = &VECTOR_LAYER::ADD_Y_SMART_HATCHING;

// One ADD_HATCHINGS call on fresh tables.
void Hatchings(VECTOR_LAYER& layer, MSliceFileParameters& parameters) {
  ScopedTable x(kSignatureXTable);
  ScopedTable y(kSignatureYTable);
  EXPECT_TRUE(layer.ADD_HATCHINGS(parameters, x.root, y.root, 1));
}

}  // namespace

TEST(StraightHatching, DrawsEachCase) {
  const Columns serpentine = {{0, {0, 10}}, {5, {1, 11}}, {10, {2, 12}}};
  const Columns gap = {{0, {0, 10}}, {5, {}}, {10, {0, 10}}};
  const Columns longRuns = {{0, {0, 10, 20, 31}}};
  struct Case {
    Generator generator;
    Columns table;
    int32_t shortening;
    int nullColumn;
    Blocks expected;
  } cases[] = {
      {kRechts, {{7, {2, 9}}}, 0, -1, {{7, 2, 7, 9}}},
      {kLinks, {{7, {2, 9}}}, 0, -1, {{7, 9, 7, 2}}},
      {kBoven, {{7, {2, 9}}}, 0, -1, {{2, 7, 9, 7}}},
      {kOnder, {{7, {2, 9}}}, 0, -1, {{9, 7, 2, 7}}},
      // Serpentine: the direction alternates from column to column.
      {kRechts, serpentine, 0, -1, {{0, 0, 0, 10, 5, 11, 5, 1, 10, 2, 10, 12}}},
      {kLinks, serpentine, 0, -1, {{10, 12, 10, 2, 5, 1, 5, 11, 0, 10, 0, 0}}},
      // A falling column writes its highest run first.
      {kLinks, {{3, {0, 10, 20, 30}}}, 0, -1, {{3, 30, 3, 20, 3, 10, 3, 0}}},
      {kRechts, {{3, {0, 10}}, {4, {0, 10, 20, 30}}}, 0, -1, {{3, 0, 3, 10, 4, 30, 4, 20, 4, 10, 4, 0}}},
      // An empty list turns the direction, a null List does not.
      {kRechts, gap, 0, -1, {{0, 0, 0, 10, 10, 0, 10, 10}}},
      {kRechts, gap, 0, 1, {{0, 0, 0, 10, 10, 10, 10, 0}}},
      {kRechts, {{0, {0, 10}}, {5, {0, 10}}}, 0, 0, {{5, 0, 5, 10}}},
      // Shortening moves the start of vectors longer than 2 * 5 only.
      {kRechts, longRuns, 5, -1, {{0, 0, 0, 10, 0, 25, 0, 31}}},
      {kLinks, longRuns, 5, -1, {{0, 26, 0, 20, 0, 10, 0, 0}}},
      {kBoven, longRuns, 0, -1, {{0, 0, 10, 0, 20, 0, 31, 0}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << "shortening " << c.shortening << " null column " << c.nullColumn);
    MSliceFileParameters parameters;
    parameters.HatchShortening = c.shortening;
    parameters.HatchShorteningFactor = 2;
    parameters.ShortenSmartHatch = false;  // not looked at by straight hatching
    EXPECT_EQ(Hatch(c.generator, c.table, parameters, c.nullColumn), c.expected);
  }
}

TEST(StraightHatching, NothingToDrawAndOddListsInEveryGenerator) {
  for (Generator g : {kLinks, kRechts, kOnder, kBoven}) {
    ScopedVectorLayer layer;
    TABEL empty;
    MSliceFileParameters parameters;
    EXPECT_TRUE((layer.*g)(empty, parameters, 1));
    EXPECT_EQ(layer.NumBlocks, 0);
    EXPECT_TRUE(Hatch(g, {{0, {}}, {10, {}}}).empty());
    // The unpaired crossings are left out: one vector remains.
    const Blocks odd = Hatch(g, {{0, {0, 10, 20}}, {5, {3}}});
    ASSERT_EQ(odd.size(), 1u);
    EXPECT_EQ(odd[0].size(), 4u);
  }
}

TEST(AddVectorBlok, AppendsOnlyTheGivenBlockAndGrowsTheExtents) {
  ScopedVectorLayer layer;
  auto* empty = new VECTOR_BLOK;
  layer.ADD_VECTOR_BLOK(empty);
  const Coordinates extents = {layer.MinX, layer.MinY, layer.MaxX, layer.MaxY};
  EXPECT_EQ(extents, (Coordinates{kEmptyExtentMin, kEmptyExtentMin, kEmptyExtentMax, kEmptyExtentMax}));
  auto* block = new VECTOR_BLOK;
  int32_t values[] = {3, -4, 8, 12};
  block->SetCoordinates(values, 4);
  block->NextBlock = empty;  // not followed
  layer.ADD_VECTOR_BLOK(block);
  EXPECT_EQ(layer.NumBlocks, 2);
  EXPECT_EQ(BlocksOf(layer), (Blocks{{}, {3, -4, 8, 12}}));
  EXPECT_EQ((Coordinates{layer.MinX, layer.MinY, layer.MaxX, layer.MaxY}), (Coordinates{3, -4, 8, 12}));
}

TEST(AddSupport, StarTypeIsOnePerAxisAndOrderCyclesInEightSteps) {
  ScopedTable x(kSignatureXTable);
  ScopedTable y(kSignatureYTable);
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  EXPECT_TRUE(layer.ADD_SUPPORT(parameters, x.root, y.root, kVectorTypeSupportDefault));
  EXPECT_TRUE(layer.ADD_SUPPORT(parameters, x.root, y.root, 40));
  std::vector<uint16_t> types;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock)
    types.push_back(b->Type);
  EXPECT_EQ(types, (std::vector<uint16_t>{38, 41, 40, 40}));
  EXPECT_EQ(ColumnsOf(x.root), kSignatureXTable);
  EXPECT_EQ(WalkSignature(layer, 0), "X0 Y0 X0 Y0 ");  // fixed order leaves the counter alone
  parameters.CycleHatchOrder = true;
  const char* expected[] = {"X1 Y1 ", "Y1 X1 ", "X0 Y1 ", "Y1 X0 ", "X0 Y0 ",
                            "Y0 X0 ", "X1 Y0 ", "Y0 X1 ", "X1 Y1 "};
  for (int step = 0; step < 9; ++step) {
    layer.ADD_SUPPORT(parameters, x.root, y.root, '*');
    EXPECT_EQ(WalkSignature(layer, 4 + 2 * step), expected[step]) << "call " << step;
  }
}

TEST(SupportSingleDirection, WallsOfEachCase) {
  const char* three = "0: 0 10; 5: 0 10; 10: 0 10";
  const struct Case {
    const char* table;
    int32_t connectDistance;
    int nullColumn;
    const char* expected;
  } cases[] = {
      {"0:; 5:", 0, -1, ""},
      {"3: 0 10 20 30", 0, -1, "3 0 3 10; 3 20 3 30"},  // a wall per run
      {three, 0, -1, "0 0 0 10 5 10 5 0 10 0 10 10"},   // zigzag
      {three, 0, 1, "0 0 0 10; 10 0 10 10"},            // null List: empty column
      {three, 6, -1, "0 0 0 10 0 10 5 10 5 10 5 0 5 0 10 0 10 0 10 10"},
      // A change of count ends every wall; an empty column ends it and still turns.
      {"0: 0 10; 5: 0 10; 10: 0 10 20 30; 15: 0 10 20 30", 0, -1,
       "0 0 0 10 5 10 5 0; 10 0 10 10 15 10 15 0; 10 20 10 30 15 30 15 20"},
      {"0: 0 10; 5:; 10: 0 10", 0, -1, "0 0 0 10; 10 0 10 10"},
      // Odd counts form groups of their own.
      {"0: 0 10 20; 5: 0 10 20; 10: 0 10", 0, -1, "0 0 0 10 5 10 5 0; 10 0 10 10"},
      {"0: 4", 0, -1, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << "connect " << c.connectDistance << " null " << c.nullColumn);
    MSliceFileParameters parameters;
    parameters.SupportConnectDistance = c.connectDistance;
    EXPECT_EQ(Hatch(kSupport, Table(c.table), parameters, c.nullColumn), Lists(c.expected));
  }
  ScopedVectorLayer layer;
  TABEL empty;
  MSliceFileParameters parameters;
  EXPECT_TRUE(layer.ADD_SUPPORT_SINGLE_DIRECTION(empty, parameters, 40));
  EXPECT_EQ(layer.NumBlocks, 0);
}

TEST(ConnectVectors, JoinsOnlyGapsStrictlyBelowTheDistance) {
  const Coordinates gapOf5 = {0, 0, 0, 10, 3, 14, 3, 20};
  const Coordinates touching = {0, 0, 0, 10, 0, 10, 0, 20};
  const struct {
    Coordinates in;
    int32_t distance;
    Coordinates expected;
  } cases[] = {
      {gapOf5, 5, gapOf5},
      {gapOf5, 6, {0, 0, 0, 10, 0, 10, 3, 14, 3, 14, 3, 20}},
      {gapOf5, 0, gapOf5},
      {touching, 0, touching},
      {touching, 1, {0, 0, 0, 10, 0, 10, 0, 10, 0, 10, 0, 20}},
      {{1, 2, 3, 4}, 100, {1, 2, 3, 4}},  // short blocks stay as they are
      {{}, 100, {}},
      {{1, 2}, 100, {1, 2}},
      // Every gap joined fills the work buffer (2 * size - 4) exactly.
      {{0, 0, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0}, 2, {0, 0, 1, 0, 1, 0, 2, 0, 2, 0, 3, 0, 3, 0, 4, 0, 4, 0, 5, 0}},
  };
  for (const auto& c : cases) {
    Coordinates values = c.in;
    VECTOR_BLOK block;
    block.SetCoordinates(values.data(), static_cast<int32_t>(values.size()));
    block.CONNECT_VECTORS(c.distance);
    EXPECT_EQ(Coordinates(block.Block, block.Block + block.Size), c.expected)
        << ::testing::PrintToString(c.in) << " distance " << c.distance;
    block.Clear();
  }
}

TEST(SmartHatching, WalkOfEachCase) {
  const Columns wrap = {{0, {0, 10, 100, 110}}, {5, {0, 10}}};
  const Columns shortened = {{0, {0, 11}}, {5, {0, 11}}, {9, {0, 10}}};
  struct Case {
    Columns table;
    SmartGenerator generator;
    unsigned short direction;
    bool shorten;  // ShortenSmartHatch with HatchShortening 5, factor 2
    bool ok;
    Blocks expected;
    std::vector<int32_t> left;  // crossings that stay in the table
    std::vector<int> nullColumns = {};
  } cases[] = {
      {{{0, {}}, {5, {}}}, kX, 1, false, true, {}, {}},
      {{{4, {0, 10, 20, 30}}}, kX, 0, false, true, {{4, 0, 4, 10, 4, 20, 4, 30}}, {}},  // same column first
      // A neighbour is entered at its near end.
      {{{0, {0, 10}}, {5, {0, 10}}}, kX, 0, false, true, {{0, 0, 0, 10, 5, 10, 5, 0}}, {}},
      {{{0, {0, 10}}, {5, {0, 10}}}, kY, 0, false, true, {{0, 0, 10, 0, 10, 5, 0, 5}}, {}},
      // The walk wraps round so that every run is drawn.
      {wrap, kX, 0, false, true, {{0, 0, 0, 10, 5, 10, 5, 0, 0, 100, 0, 110}}, {}},
      {wrap, kX, 1, false, true, {{5, 0, 5, 10, 0, 10, 0, 0, 0, 100, 0, 110}}, {}},
      {wrap, kY, 2, false, true, {{0, 5, 10, 5, 10, 0, 0, 0, 100, 0, 110, 0}}, {}},
      // Shortening moves the end of vectors longer than 10.
      {shortened, kX, 0, false, true, {{0, 0, 0, 11, 5, 11, 5, 0, 9, 0, 9, 10}}, {}},
      {shortened, kX, 0, true, true, {{0, 0, 0, 6, 5, 11, 5, 5, 9, 0, 9, 10}}, {}},
      // A pair without its second crossing fails and adds nothing.
      {{{0, {5}}}, kX, 0, false, false, {}, {5}},
      {{{0, {0, 10}}, {5, {3}}}, kX, 0, false, false, {}, {3}},
      // A null List is an empty column.
      {{{0, {}}, {5, {0, 10}}, {9, {}}}, kX, 1, false, true, {{5, 0, 5, 10}}, {}, {0, 2}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << ::testing::PrintToString(c.table) << " | direction " << c.direction
                                      << " shorten " << c.shorten << (c.generator == kY ? " Y" : " X"));
    ScopedTable table(c.table);
    for (int i : c.nullColumns)
      table.DropList(i);
    ScopedVectorLayer layer;
    MSliceFileParameters parameters;
    parameters.ShortenSmartHatch = c.shorten;
    parameters.HatchShortening = 5;
    parameters.HatchShorteningFactor = 2;
    EXPECT_EQ((layer.*c.generator)(table.root, parameters, c.direction, 5), c.ok);
    EXPECT_EQ(BlocksOf(layer), c.expected);
    EXPECT_EQ(CrossingsOf(table.root), c.left);
  }
}

TEST(SmartHatching, EmptyTablesAndListsHoldingMoreThanTheirCounts) {
  ScopedVectorLayer layer;
  TABEL empty;
  MSliceFileParameters parameters;
  EXPECT_TRUE(layer.ADD_X_SMART_HATCHING(empty, parameters, 0, 1));
  EXPECT_TRUE(layer.ADD_Y_SMART_HATCHING(empty, parameters, 1, 1));
  ScopedTable table({{0, {0, 10, 20, 30}}});
  table.root.Next->List->Value = 2;
  EXPECT_FALSE(layer.ADD_X_SMART_HATCHING(table.root, parameters, 0, 1));
  EXPECT_EQ(layer.NumBlocks, 0);
}

TEST(AddHatchings, FixedOrderThenEightStepCycleWithACounterApartFromSupport) {
  ScopedVectorLayer layer;
  MSliceFileParameters parameters;
  for (int i = 0; i < 3; ++i)
    Hatchings(layer, parameters);
  EXPECT_EQ(WalkSignature(layer, 0), "X1 Y1 X1 Y1 X1 Y1 ");  // fixed: X then Y from the high end
  parameters.CycleHatchOrder = true;
  const char* expected[] = {"X0 Y0 ", "Y0 X0 ", "X1 Y0 ", "Y0 X1 ", "X1 Y1 ",
                            "Y1 X1 ", "X0 Y1 ", "Y1 X0 ", "X0 Y0 "};
  for (int step = 0; step < 9; ++step) {
    Hatchings(layer, parameters);
    EXPECT_EQ(WalkSignature(layer, 6 + 2 * step), expected[step]) << "call " << step;
  }
  // Support's first cycled call walks both tables from the high end, and
  // leaves the hatching counter where it was.
  ScopedTable x(kSignatureXTable);
  ScopedTable y(kSignatureYTable);
  layer.ADD_SUPPORT(parameters, x.root, y.root, 1);
  EXPECT_EQ(WalkSignature(layer, 24), "X1 Y1 ");
  Hatchings(layer, parameters);
  EXPECT_EQ(WalkSignature(layer, 26), "Y0 X0 ");
}
