#include "scan/nearest_point_search.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "support/tables.h"

using testing_support::ColumnsOf;
using testing_support::Describe;
using testing_support::ScopedTable;

namespace {

using Finder = L_LIST* (*)(TABEL*, TABEL*, TABEL**, L_LIST*);
using FixedFinder = L_LIST* (*)(TABEL*, TABEL*, TABEL**, L_LIST*, bool, bool&);

// A search from the pair at `pairIndex` (in runs) of column `columnIndex` of
// a table written as Describe writes it.
struct Search {
  ScopedTable table;
  TABEL* column;
  L_LIST* pair;
  TABEL* found;
  Search(const char* columns, int32_t columnIndex, int32_t pairIndex = 0) : table(columns) {
    column = table.root.Next;
    while (columnIndex-- > 0)
      column = column->Next;
    pair = column->List->Next;
    for (int32_t i = 0; i < 2 * pairIndex; ++i)
      pair = pair->Next;
    found = column;
  }
  L_LIST* Run(Finder finder) { return finder(&table.root, column, &found, pair); }
  L_LIST* Run(FixedFinder finder, bool invert, bool& entryAtFirst) {
    return finder(&table.root, column, &found, pair, invert, entryAtFirst);
  }
  // "value@position" of a find, or "null".
  std::string Found(const L_LIST* find) const {
    return find == nullptr ? "null" : std::to_string(find->Value) + "@" + std::to_string(found->Position);
  }
  std::string Tables() { return Describe(ColumnsOf(table.root)); }
};

const Finder kUpwards[] = {ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_RECHTS, ZOEK_DICHTSTE_PUNTEN_IN_Y_TABEL_BOVEN,
                           ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS};
const Finder kDownwards[] = {ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_LINKS, ZOEK_DICHTSTE_PUNTEN_IN_Y_TABEL_ONDER,
                             ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS};

}  // namespace

TEST(NearestPointSearch, NearerElementIsTakenAndASecondOneExchanged) {
  for (Finder finder : kUpwards) {
    Search first("0: 0 10; 5: 9 30", 0);
    EXPECT_EQ(first.Found(first.Run(finder)), "9@5");
    EXPECT_EQ(first.Tables(), "0: 0 10; 5: 9 30");
    Search second("0: 0 10; 5: 0 11", 0);
    EXPECT_EQ(second.Found(second.Run(finder)), "11@5");
    EXPECT_EQ(second.Tables(), "0: 0 10; 5: 11 0");
    // A pair that was best for a moment keeps its exchange.
    Search later("0: 0 10; 5: 0 14 11 30", 0);
    EXPECT_EQ(later.Run(finder)->Value, 11);
    EXPECT_EQ(later.Tables(), "0: 0 10; 5: 14 0 11 30");
    // The first of equal candidates wins.
    Search equal("0: 0 10; 5: 7 30 13 40", 0);
    EXPECT_EQ(equal.Run(finder), equal.table.root.Next->Next->List->Next);
    EXPECT_EQ(equal.Tables(), "0: 0 10; 5: 7 30 13 40");
  }
  for (Finder finder : kDownwards) {
    Search s("0: 9 30; 5: 0 10", 1);
    EXPECT_EQ(s.Found(s.Run(finder)), "9@0");
  }
}

TEST(NearestPointSearch, OnlyTheFirstFourLookInTheSameColumn) {
  for (Finder finder : {ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_RECHTS, ZOEK_DICHTSTE_PUNTEN_IN_Y_TABEL_BOVEN}) {
    Search s("0: 0 10 17 40; 8: 10 50", 0);
    EXPECT_EQ(s.Found(s.Run(finder)), "17@0");
    Search tie("0: 0 10 4 16; 8: 10 50", 0);  // 4 and 16 both 6 from 10: the first wins, no exchange
    EXPECT_EQ(tie.Found(tie.Run(finder)), "4@0");
    EXPECT_EQ(tie.Tables(), "0: 0 10 4 16; 8: 10 50");
  }
  Search enkel("0: 0 10 17 40; 8: 10 50", 0);
  EXPECT_EQ(enkel.Found(enkel.Run(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS)), "10@8");
  // Only the nearest column with crossings is looked at, empty ones skipped.
  Search far("0: 0 10; 5:; 10: 500 600; 11: 10 20", 0);
  EXPECT_EQ(far.Run(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_RECHTS)->Value, 500);
}

TEST(NearestPointSearch, WithoutANeighbourTheSearchWrapsRoundOrGivesNull) {
  for (Finder finder : kUpwards) {
    Search s("0: 100 200; 10:; 20: 0 10", 2);
    EXPECT_EQ(s.Found(s.Run(finder)), "100@0");
    Search alone("0:; 10: 0 10", 1);
    EXPECT_EQ(alone.Found(alone.Run(finder)), "null");
    EXPECT_EQ(alone.found->Position, 10);
  }
  for (Finder finder : kDownwards) {
    Search s("0: 0 10; 10:; 20: 100 200", 0);
    EXPECT_EQ(s.Found(s.Run(finder)), "100@20");
    Search alone("10: 0 10; 20:", 0);
    EXPECT_EQ(alone.Found(alone.Run(finder)), "null");
  }
}

TEST(NearestPointSearch, UnpairedCrossingsAreNeverFound) {
  for (Finder finder : kUpwards) {
    // The neighbour's last crossing has no partner: it is not a candidate.
    Search s("0: 0 10; 5: 100 200 10", 0);
    EXPECT_EQ(s.Run(finder)->Value, 100);
    // A current pair without a second element gives null.
    Search single("0: 0 10 12; 5: 10 20", 0, 1);
    EXPECT_EQ(single.Run(finder), nullptr);
  }
  // An odd list in the current column: the first four give null.
  Search odd("0: 0 10 12; 5: 10 20", 0);
  EXPECT_EQ(odd.Run(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_RECHTS), nullptr);
  Search single("0: 0 10 12; 5: 10 20", 0, 1);
  bool entryAtFirst = true;
  EXPECT_EQ(single.Run(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS_ANDERE_RICHTING, false, entryAtFirst),
            nullptr);
}

TEST(NearestPointSearch, ParityFixesTheEntryEnd) {
  // Grid step 10. Column 0 (k = 0) is left at its second element unless
  // inverted; column 10 lies an odd number of steps away, so its entry flag
  // is the opposite one.
  const char* columns = "0: 0 100; 10: 5 90 95 200; 20:";
  for (bool invert : {false, true}) {
    Search s(columns, 0);
    bool entryAtFirst = !invert;
    EXPECT_EQ(
        s.Found(s.Run(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS_ANDERE_RICHTING, invert, entryAtFirst)),
        "5@10")
        << "invert " << invert;
    EXPECT_EQ(entryAtFirst, invert);
    EXPECT_EQ(s.Tables(), Describe(testing_support::Table(columns)));
  }
  // From column 20 (k = 2) the exit is the second element, 100; column 10 is
  // entered at its second elements, so 90 beats 200 (a look at the first
  // elements would have chosen 95).
  Search down("0: 0 100; 10: 5 90 95 200; 20: 0 100", 2);
  bool entryAtFirst = false;
  EXPECT_EQ(down.Run(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS_ANDERE_RICHTING, false, entryAtFirst)->Value,
            5);
  EXPECT_FALSE(entryAtFirst);
}

TEST(NearestPointSearch, ParityFormsWrapAndRefuseAZeroStep) {
  Search wrap("0: 0 100; 10:; 20: 40 60", 0);
  bool entryAtFirst = false;
  EXPECT_EQ(
      wrap.Found(wrap.Run(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS_ANDERE_RICHTING, false, entryAtFirst)),
      "40@20");
  EXPECT_TRUE(entryAtFirst);  // k = 2, even, invert false
  Search zero("0: 0 100; 10: 5 90; 10: 5 90", 0);
  entryAtFirst = true;
  EXPECT_EQ(
      zero.Found(zero.Run(ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS_ANDERE_RICHTING, false, entryAtFirst)),
      "null");
  EXPECT_TRUE(entryAtFirst);
  EXPECT_EQ(zero.found->Position, 0);
}

namespace {

// A random table: columns on a grid of step 10 with gaps, each with a sorted
// list of an even number of crossings.
testing_support::Columns RandomColumns(std::mt19937& random) {
  testing_support::Columns columns;
  const int count = 2 + static_cast<int>(random() % 12);
  for (int k = 0; k < count; ++k) {
    std::vector<int32_t> values;
    const int runs = static_cast<int>(random() % 4);
    int32_t v = static_cast<int32_t>(random() % 20);
    for (int r = 0; r < 2 * runs; ++r) {
      values.push_back(v);
      v += 1 + static_cast<int32_t>(random() % 15);
    }
    columns.push_back({10 * k, values});
  }
  return columns;
}

// Removes the run starting at `pair` from the column's list.
void RemoveRun(TABEL* column, L_LIST* pair) {
  L_LIST* before = column->List;
  while (before->Next != pair)
    before = before->Next->Next;
  before->Next = pair->Next->Next;
  free(pair->Next);
  free(pair);
}

}  // namespace

TEST(NearestPointSearch, FixedEntryDownWalkAnswersAsTheFreeFunctionWhileATableIsConsumed) {
  std::mt19937 random(17);
  for (int round = 0; round < 300; ++round) {
    const testing_support::Columns columns = RandomColumns(random);
    ScopedTable plain(columns), walked(columns);
    FixedEntryDownWalk walk(&walked.root, round % 2 == 1);
    TABEL* c1 = plain.root.Next;
    TABEL* c2 = walked.root.Next;
    while (c1->Next != nullptr && c1->Next->Next != nullptr) {  // start at the last real column
      c1 = c1->Next;
      c2 = c2->Next;
    }
    L_LIST* p1 = c1->List != nullptr ? c1->List->Next : nullptr;
    L_LIST* p2 = c2->List != nullptr ? c2->List->Next : nullptr;
    while (p1 != nullptr && p2 != nullptr) {
      TABEL* f1 = c1;
      TABEL* f2 = c2;
      bool e1 = false, e2 = false;
      L_LIST* n1 = ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS_ANDERE_RICHTING(&plain.root, c1, &f1, p1,
                                                                               round % 2 == 1, e1);
      L_LIST* n2 = walk.Next(c2, &f2, p2, e2);
      ASSERT_EQ(n1 == nullptr, n2 == nullptr) << Describe(columns);
      if (n1 != nullptr) {
        ASSERT_EQ(n1->Value, n2->Value) << Describe(columns);
        ASSERT_EQ(f1->Position, f2->Position) << Describe(columns);
        ASSERT_EQ(e1, e2) << Describe(columns);
      }
      RemoveRun(c1, p1);
      RemoveRun(c2, p2);
      c1 = f1;
      c2 = f2;
      p1 = n1;
      p2 = n2;
    }
  }
}
