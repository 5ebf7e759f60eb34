#include "scan/nearest_point_search.h"

#include <gtest/gtest.h>

#include "support/scan_tables.h"

using testing_support::Columns;
using testing_support::ColumnsOf;
using testing_support::Describe;
using testing_support::ScopedTable;

namespace {

using Finder = L_LIST* (*)(TABEL*, TABEL*, TABEL**, L_LIST*);

TABEL* ColumnAt(TABEL& root, int32_t index) {
  TABEL* c = root.Next;
  while (index-- > 0)
    c = c->Next;
  return c;
}

// A search from the pair at `pairIndex` (in runs) of column `columnIndex`.
struct SearchCase {
  ScopedTable table;
  TABEL* column;
  L_LIST* pair;
  TABEL* found;
  SearchCase(const Columns& columns, int32_t columnIndex, int32_t pairIndex) : table(columns) {
    column = ColumnAt(table.root, columnIndex);
    pair = column->List->Next;
    for (int32_t i = 0; i < 2 * pairIndex; ++i)
      pair = pair->Next;
    found = column;
  }
  L_LIST* Run(Finder finder) { return finder(&table.root, column, &found, pair); }
  int32_t FoundPosition() const { return found->Position; }
  std::string Tables() { return Describe(ColumnsOf(table.root)); }
};

const Finder kUpwards[] = {ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_RECHTS, ZOEK_DICHTSTE_PUNTEN_IN_Y_TABEL_BOVEN,
                           ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS};
const Finder kDownwards[] = {ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_LINKS, ZOEK_DICHTSTE_PUNTEN_IN_Y_TABEL_ONDER,
                             ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS};

}  // namespace

TEST(NearestPointSearch, NearerFirstElementIsTakenAsItStands) {
  for (Finder finder : kUpwards) {
    SearchCase s({{0, {0, 10}}, {5, {9, 30}}}, 0, 0);
    L_LIST* find = s.Run(finder);
    ASSERT_NE(find, nullptr);
    EXPECT_EQ(find->Value, 9);
    EXPECT_EQ(s.FoundPosition(), 5);
    EXPECT_EQ(s.Tables(), "0:{0,10} 5:{9,30} ");
  }
  for (Finder finder : kDownwards) {
    SearchCase s({{0, {9, 30}}, {5, {0, 10}}}, 1, 0);
    EXPECT_EQ(s.Run(finder)->Value, 9);
    EXPECT_EQ(s.FoundPosition(), 0);
  }
}

TEST(NearestPointSearch, NearerSecondElementIsExchangedAndStaysSo) {
  for (Finder finder : kUpwards) {
    SearchCase s({{0, {0, 10}}, {5, {0, 11}}}, 0, 0);
    EXPECT_EQ(s.Run(finder)->Value, 11);
    EXPECT_EQ(s.Tables(), "0:{0,10} 5:{11,0} ");
    // A pair that was best for a moment keeps its exchange.
    SearchCase later({{0, {0, 10}}, {5, {0, 14, 11, 30}}}, 0, 0);
    EXPECT_EQ(later.Run(finder)->Value, 11);
    EXPECT_EQ(later.Tables(), "0:{0,10} 5:{14,0,11,30} ");
  }
}

TEST(NearestPointSearch, FirstOfEqualCandidatesWins) {
  for (Finder finder : kUpwards) {
    SearchCase s({{0, {0, 10}}, {5, {7, 30, 13, 40}}}, 0, 0);
    L_LIST* find = s.Run(finder);
    EXPECT_EQ(find, ColumnAt(s.table.root, 1)->List->Next);
    EXPECT_EQ(s.Tables(), "0:{0,10} 5:{7,30,13,40} ");
  }
}

TEST(NearestPointSearch, OnlyTheFirstFourLookInTheSameColumn) {
  const Columns columns = {{0, {0, 10, 17, 40}}, {8, {10, 50}}};
  for (Finder finder : {ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_RECHTS, ZOEK_DICHTSTE_PUNTEN_IN_Y_TABEL_BOVEN}) {
    SearchCase s(columns, 0, 0);
    EXPECT_EQ(s.Run(finder)->Value, 17);
    EXPECT_EQ(s.FoundPosition(), 0);
  }
  SearchCase enkel(columns, 0, 0);
  EXPECT_EQ(enkel.Run(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS)->Value, 10);
  EXPECT_EQ(enkel.FoundPosition(), 8);
  // Only the nearest column with crossings is looked at, empty ones skipped.
  SearchCase far({{0, {0, 10}}, {5, {}}, {10, {500, 600}}, {11, {10, 20}}}, 0, 0);
  EXPECT_EQ(far.Run(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_RECHTS)->Value, 500);
}

TEST(NearestPointSearch, WithoutANeighbourTheSearchWrapsRound) {
  for (Finder finder : kUpwards) {
    SearchCase s({{0, {100, 200}}, {10, {}}, {20, {0, 10}}}, 2, 0);
    EXPECT_EQ(s.Run(finder)->Value, 100);
    EXPECT_EQ(s.FoundPosition(), 0);
  }
  for (Finder finder : kDownwards) {
    SearchCase s({{0, {0, 10}}, {10, {}}, {20, {100, 200}}}, 0, 0);
    EXPECT_EQ(s.Run(finder)->Value, 100);
    EXPECT_EQ(s.FoundPosition(), 20);
  }
}

TEST(NearestPointSearch, NothingLeftGivesNull) {
  for (Finder finder : kUpwards) {
    SearchCase alone({{0, {}}, {10, {0, 10}}}, 1, 0);
    EXPECT_EQ(alone.Run(finder), nullptr);
    EXPECT_EQ(alone.FoundPosition(), 10);
  }
  for (Finder finder : kDownwards) {
    SearchCase alone({{10, {0, 10}}, {20, {}}}, 0, 0);
    EXPECT_EQ(alone.Run(finder), nullptr);
  }
  // An odd list in the current column: the first four give null.
  SearchCase odd({{0, {0, 10, 12}}, {5, {10, 20}}}, 0, 0);
  EXPECT_EQ(odd.Run(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_RECHTS), nullptr);
}

namespace {

using FixedFinder = L_LIST* (*)(TABEL*, TABEL*, TABEL**, L_LIST*, bool, bool&);

}  // namespace

TEST(NearestPointSearch, ParityFixesTheEntryEnd) {
  // Grid step 10. Column 0 (k = 0) is left at its second element unless
  // inverted; column 10 lies an odd number of steps away, so its entry flag
  // is the opposite one.
  const Columns columns = {{0, {0, 100}}, {10, {5, 90, 95, 200}}, {20, {}}};
  for (bool invert : {false, true}) {
    SearchCase s(columns, 0, 0);
    bool entryAtFirst = !invert;
    L_LIST* find = ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS_ANDERE_RICHTING(
        &s.table.root, s.column, &s.found, s.pair, invert, entryAtFirst);
    ASSERT_NE(find, nullptr) << "invert " << invert;
    EXPECT_EQ(find->Value, 5) << "invert " << invert;
    EXPECT_EQ(entryAtFirst, invert);
    EXPECT_EQ(s.FoundPosition(), 10);
    EXPECT_EQ(s.Tables(), Describe(columns));
  }
  // From column 20 (k = 2) the exit is the second element, 100; column 10 is
  // entered at its second elements, so 90 beats 200 (a look at the first
  // elements would have chosen 95).
  SearchCase down({{0, {0, 100}}, {10, {5, 90, 95, 200}}, {20, {0, 100}}}, 2, 0);
  bool entryAtFirst = false;
  EXPECT_EQ(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS_ANDERE_RICHTING(
                &down.table.root, down.column, &down.found, down.pair, false, entryAtFirst)
                ->Value,
            5);
  EXPECT_FALSE(entryAtFirst);
}

TEST(NearestPointSearch, ParityFormsWrapAndRefuseAZeroStep) {
  SearchCase wrap({{0, {0, 100}}, {10, {}}, {20, {40, 60}}}, 0, 0);
  bool entryAtFirst = false;
  L_LIST* find = ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS_ANDERE_RICHTING(
      &wrap.table.root, wrap.column, &wrap.found, wrap.pair, false, entryAtFirst);
  ASSERT_NE(find, nullptr);
  EXPECT_EQ(find->Value, 40);
  EXPECT_EQ(wrap.FoundPosition(), 20);
  EXPECT_TRUE(entryAtFirst);  // k = 2, even, invert false

  SearchCase zero({{0, {0, 100}}, {10, {5, 90}}, {10, {5, 90}}}, 0, 0);
  entryAtFirst = true;
  EXPECT_EQ(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS_ANDERE_RICHTING(
                &zero.table.root, zero.column, &zero.found, zero.pair, false, entryAtFirst),
            nullptr);
  EXPECT_TRUE(entryAtFirst);
  EXPECT_EQ(zero.FoundPosition(), 0);
}

TEST(NearestPointSearch, UnpairedCrossingsAreNeverFound) {
  for (Finder finder : kUpwards) {
    // The neighbour's last crossing has no partner: it is not a candidate.
    SearchCase s({{0, {0, 10}}, {5, {100, 200, 10}}}, 0, 0);
    EXPECT_EQ(s.Run(finder)->Value, 100);
    // A current pair without a second element gives null.
    SearchCase single({{0, {0, 10, 12}}, {5, {10, 20}}}, 0, 1);
    EXPECT_EQ(single.Run(finder), nullptr);
  }
  SearchCase single({{0, {0, 10, 12}}, {5, {10, 20}}}, 0, 1);
  bool entryAtFirst = true;
  EXPECT_EQ(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS_ANDERE_RICHTING(
                &single.table.root, single.column, &single.found, single.pair, false, entryAtFirst),
            nullptr);
}
