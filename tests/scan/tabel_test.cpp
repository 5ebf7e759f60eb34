#include "scan/tabel.h"

#include <gtest/gtest.h>

#include <vector>

#include "scan/grid_step.h"
#include "support/tables.h"
#include "support/vector_blocks.h"

using namespace kelvor2d_detail;  // the internal grid helpers

using testing_support::CheckTable;
using testing_support::Columns;
using testing_support::ColumnsOf;
using testing_support::Describe;
using testing_support::ScopedTable;

using testing_support::ExtentsOf;

TEST(Tabel, ColumnsGoInOrderBetweenSentinelsAndNewerFirstAtOnePosition) {
  ScopedTable t;
  LEEG_TABEL(&t.root);  // a fresh root empties to itself
  VOEG_KOLOM_IN_TABEL(&t.root, 10);
  EXPECT_EQ(CheckTable(t.root), "");
  EXPECT_EQ(t.root.Next->Prev->List->Value, 0);  // sentinels carry empty lists
  EXPECT_EQ(t.root.Next->Next->List->Next, nullptr);
  VOEG_KOLOM_IN_TABEL(&t.root, 30);
  VOEG_KOLOM_IN_TABEL(&t.root, 20);
  TABEL* older = t.root.Next->Next;  // the column at 20
  VOEG_KOLOM_IN_TABEL(&t.root, 20);
  VOEG_KOLOM_IN_TABEL(&t.root, -5);
  EXPECT_EQ(t.root.Next->Position, -5);
  EXPECT_EQ(Describe(ColumnsOf(t.root)), "-5:; 10:; 20:; 20:; 30:");
  EXPECT_EQ(older->Prev->Position, 20);
  EXPECT_NE(older->Prev, older);
  EXPECT_EQ(CheckTable(t.root), "");
  // Removing a column relinks its neighbours; a null column is ignored.
  TABEL* middle = older->Prev;
  HAAL_LIJST_UIT_TABEL(&middle);
  t.root.Position--;
  EXPECT_EQ(Describe(ColumnsOf(t.root)), "-5:; 10:; 20:; 30:");
  EXPECT_EQ(CheckTable(t.root), "");
  TABEL* none = nullptr;
  HAAL_LIJST_UIT_TABEL(&none);
}

TEST(Tabel, AddingAfterTheLastColumnBuildsTheSameTable) {
  // Rising runs with repeats, and steps back that must look from the head.
  const int32_t positions[] = {10, 20, 20, 20, 35, 5, 35, 40, 40, -7, 60, 20, 60, 61};
  ScopedTable plain, hinted;
  TABEL* last = nullptr;
  std::vector<TABEL*> added;
  for (int32_t p : positions) {
    VOEG_KOLOM_IN_TABEL(&plain.root, p);
    last = AddColumnAfterLast(&hinted.root, p, last);
    added.push_back(last);
    ASSERT_EQ(Describe(ColumnsOf(hinted.root)), Describe(ColumnsOf(plain.root))) << "after " << p;
    ASSERT_EQ(hinted.root.Position, plain.root.Position);
  }
  EXPECT_EQ(CheckTable(hinted.root), "");
  // Among equal positions the newest comes first, as with VOEG_KOLOM_IN_TABEL.
  EXPECT_EQ(added[3]->Next, added[2]);
  EXPECT_EQ(added[2]->Next, added[1]);
}

TEST(Tabel, Tabel2SharesTheBehaviour) {
  TABEL_2 root;
  VOEG_KOLOM_IN_TABEL_2(&root, 4);
  VOEG_KOLOM_IN_TABEL_2(&root, 2);
  VOEG_IN_GESORTEERDE_L_LIJST_2(root.Next->List, 9, 1);
  EXPECT_EQ(root.Position, 2);
  EXPECT_EQ(root.Next->Position, 2);
  EXPECT_EQ(root.Next->Next->Position, 4);
  EXPECT_EQ(root.Next->Prev->Position, INT32_MIN);
  LEEG_TABEL_2(&root);
  EXPECT_EQ(root.Position, 0);
  EXPECT_EQ(root.Next, nullptr);
}

TEST(Tabel, CopyIsDeepAndEmptyCopyAllocatesNothing) {
  ScopedTable source({{0, {1, 5}}, {10, {}}, {20, {-3, 4, 6, 8}}});
  // A column whose list went to another table gets an empty list of its own.
  TABEL* handedOver = source.root.Next->Next;
  free(handedOver->List);
  handedOver->List = nullptr;
  ScopedTable copy;
  COPIEER_TABEL(&copy.root, source.root);
  EXPECT_EQ(Describe(ColumnsOf(copy.root)), "0: 1 5; 10:; 20: -3 4 6 8");
  EXPECT_EQ(CheckTable(copy.root), "");
  ASSERT_NE(handedOver->List, nullptr);
  EXPECT_NE(copy.root.Next->List, source.root.Next->List);
  ScopedTable empty, target;
  target.root.Position = 99;
  COPIEER_TABEL(&target.root, empty.root);
  EXPECT_EQ(target.root.Position, 0);
  EXPECT_EQ(target.root.Next, nullptr);
}

TEST(Tabel, ExtremaGrowAlongTheTablesAxes) {
  BOX untouched = {0, 0, 1, 1};
  BEPAAL_X_EXTREMA(nullptr, untouched);
  ScopedTable empty;
  BEPAAL_X_EXTREMA(&empty.root, untouched);
  ScopedTable noCrossing({{-50, {}}, {50, {}}});
  BEPAAL_Y_EXTREMA(&noCrossing.root, untouched);
  EXPECT_EQ(ExtentsOf(untouched), "0 0 1 1");
  ScopedTable t({{-10, {}}, {5, {3, 9}}, {20, {-4, 2}}, {90, {}}});
  BOX x = {INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
  BEPAAL_X_EXTREMA(&t.root, x);
  EXPECT_EQ(ExtentsOf(x), "5 -4 20 9");
  BOX y = {0, 0, 0, 0};
  BEPAAL_Y_EXTREMA(&t.root, y);
  EXPECT_EQ(ExtentsOf(y), "-4 0 9 20");
}

TEST(Tabel, BreakLaysOnePatternOverAllColumns) {
  // Period 10 from the least first crossing, 0: cuts at 10, 20, 30, 40.
  ScopedTable t({{0, {0, 45}}, {1, {}}, {2, {12, 28}}, {3, {0, 5}}});
  BREEK_TABEL(&t.root, 7, 3);
  EXPECT_EQ(Describe(ColumnsOf(t.root)), "0: 0 10 13 20 23 30 33 40 43 45; 1:; 2: 12 20 23 28; 3: 0 5");
  EXPECT_EQ(CheckTable(t.root), "");
}

TEST(Tabel, BreakLeavesShortTablesAndBadPeriodsAlone) {
  BREEK_TABEL(nullptr, 5, 5);
  ScopedTable empty;
  BREEK_TABEL(&empty.root, 5, 5);
  EXPECT_EQ(empty.root.Next, nullptr);
  const Columns columns = {{0, {0, 10}}, {1, {}}};
  ScopedTable oneperiod(columns);
  BREEK_TABEL(&oneperiod.root, 6, 4);
  EXPECT_EQ(ColumnsOf(oneperiod.root), columns) << Describe(ColumnsOf(oneperiod.root));
  for (auto [piece, gap] : {std::pair<int32_t, int32_t>{0, 0}, {-5, 3}, {INT32_MIN, -1}}) {
    ScopedTable t({{0, {0, 1000}}});
    BREEK_TABEL(&t.root, piece, gap);
    EXPECT_EQ(Describe(ColumnsOf(t.root)), "0: 0 1000") << "piece " << piece << " gap " << gap;
  }
}

TEST(GridStep, FirstStepNotBelowMatchesSteppingUp) {
  for (int64_t start : {-25, -12, 0, 7, 10}) {
    for (int64_t least : {-30, -20, -5, 0, 5, 10, 11, 99}) {
      int64_t stepped = start;
      while (stepped < least)
        stepped += 10;
      EXPECT_EQ(FirstGridStepNotBelow(start, 10, least), stepped) << "start " << start << " least " << least;
    }
  }
}
