#include "scan/tabel.h"

#include <gtest/gtest.h>

#include "scan/grid_step.h"
#include "scan/slice_file_parameters.h"
#include "support/scan_tables.h"

using testing_support::CheckTable;
using testing_support::Columns;
using testing_support::ColumnsOf;
using testing_support::Describe;
using testing_support::ScopedTable;

TEST(Tabel, FreshRecordsAreEmpty) {
  TABEL root;
  EXPECT_EQ(root.Position, 0);
  EXPECT_EQ(root.Next, nullptr);
  LEEG_TABEL(&root);
  EXPECT_EQ(root.Position, 0);
  EXPECT_EQ(root.Next, nullptr);
  MSliceFileParameters p;
  EXPECT_EQ(p.XHatchDistance, 0);
  EXPECT_FALSE(p.AlternateHatchShift);
  EXPECT_EQ(p.MeanderConnectDistance, 0);
}

TEST(Tabel, FirstColumnBuildsThreeRecords) {
  ScopedTable t;
  VOEG_KOLOM_IN_TABEL(&t.root, 7);
  EXPECT_EQ(t.root.Position, 1);
  TABEL* column = t.root.Next;
  ASSERT_NE(column, nullptr);
  EXPECT_EQ(column->Position, 7);
  EXPECT_EQ(column->Prev->Position, INT32_MIN);
  EXPECT_EQ(column->Prev->Prev, nullptr);
  EXPECT_EQ(column->Next->Position, INT32_MAX);
  EXPECT_EQ(column->Next->Next, nullptr);
  EXPECT_EQ(column->Prev->List->Value, 0);
  EXPECT_EQ(column->Next->List->Next, nullptr);
  EXPECT_EQ(CheckTable(t.root), "");
}

TEST(Tabel, ColumnsGoInOrderAndNewerFirstAtOnePosition) {
  ScopedTable t;
  VOEG_KOLOM_IN_TABEL(&t.root, 10);
  VOEG_KOLOM_IN_TABEL(&t.root, 30);
  VOEG_KOLOM_IN_TABEL(&t.root, 20);
  TABEL* older = t.root.Next->Next;  // the column at 20
  VOEG_KOLOM_IN_TABEL(&t.root, 20);
  VOEG_KOLOM_IN_TABEL(&t.root, -5);
  EXPECT_EQ(t.root.Next->Position, -5);
  EXPECT_EQ(t.root.Position, 5);
  EXPECT_EQ(Describe(ColumnsOf(t.root)), "-5:{} 10:{} 20:{} 20:{} 30:{} ");
  EXPECT_EQ(older->Prev->Position, 20);
  EXPECT_NE(older->Prev, older);
  EXPECT_EQ(CheckTable(t.root), "");
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
  EXPECT_EQ(Describe(ColumnsOf(copy.root)), "0:{1,5} 10:{} 20:{-3,4,6,8} ");
  EXPECT_EQ(CheckTable(copy.root), "");
  ASSERT_NE(handedOver->List, nullptr);
  EXPECT_NE(copy.root.Next->List, source.root.Next->List);

  ScopedTable empty;
  ScopedTable target;
  target.root.Position = 99;
  COPIEER_TABEL(&target.root, empty.root);
  EXPECT_EQ(target.root.Position, 0);
  EXPECT_EQ(target.root.Next, nullptr);
}

TEST(Tabel, RemovingAColumnRelinksItsNeighbours) {
  ScopedTable t({{1, {}}, {2, {}}, {3, {}}});
  TABEL* middle = t.root.Next->Next;
  HAAL_LIJST_UIT_TABEL(&middle);
  t.root.Position--;
  EXPECT_EQ(Describe(ColumnsOf(t.root)), "1:{} 3:{} ");
  EXPECT_EQ(CheckTable(t.root), "");
  TABEL* none = nullptr;
  HAAL_LIJST_UIT_TABEL(&none);
}

TEST(Tabel, ExtremaGrowAlongTheTablesAxes) {
  BOX untouched = {0, 0, 1, 1};
  BEPAAL_X_EXTREMA(nullptr, untouched);
  ScopedTable empty;
  BEPAAL_Y_EXTREMA(&empty.root, untouched);
  ScopedTable noCrossing({{-50, {}}, {50, {}}});
  BEPAAL_X_EXTREMA(&noCrossing.root, untouched);
  EXPECT_EQ(untouched.MinX, 0);
  EXPECT_EQ(untouched.MaxX, 1);

  ScopedTable t({{-10, {}}, {5, {3, 9}}, {20, {-4, 2}}, {90, {}}});
  BOX x = {INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
  BEPAAL_X_EXTREMA(&t.root, x);
  EXPECT_EQ(x.MinX, 5);
  EXPECT_EQ(x.MaxX, 20);
  EXPECT_EQ(x.MinY, -4);
  EXPECT_EQ(x.MaxY, 9);
  BOX y = {0, 0, 0, 0};
  BEPAAL_Y_EXTREMA(&t.root, y);
  EXPECT_EQ(y.MinX, -4);
  EXPECT_EQ(y.MaxX, 9);
  EXPECT_EQ(y.MinY, 0);
  EXPECT_EQ(y.MaxY, 20);
}

TEST(Tabel, BreakLaysOnePatternOverAllColumns) {
  // Period 10 from the least first crossing, 0: cuts at 10, 20, 30, 40.
  ScopedTable t({{0, {0, 45}}, {1, {}}, {2, {12, 28}}, {3, {0, 5}}});
  BREEK_TABEL(&t.root, 7, 3);
  EXPECT_EQ(Describe(ColumnsOf(t.root)), "0:{0,10,13,20,23,30,33,40,43,45} 1:{} 2:{12,20,23,28} 3:{0,5} ");
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
    EXPECT_EQ(Describe(ColumnsOf(t.root)), "0:{0,1000} ") << "piece " << piece << " gap " << gap;
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
