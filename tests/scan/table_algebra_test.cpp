#include "scan/table_algebra.h"

#include <gtest/gtest.h>

#include "support/scan_tables.h"

using testing_support::CheckTable;
using testing_support::Columns;
using testing_support::ColumnsOf;
using testing_support::Describe;
using testing_support::ScopedTable;

namespace {

using Operation = void (*)(TABEL&, TABEL&);

struct AlgebraCase {
  const char* name;
  Operation operation;
  Columns first;
  Columns second;
  const char* firstAfter;
  const char* secondAfter;
};

void RunCase(const AlgebraCase& c) {
  ScopedTable first(c.first);
  ScopedTable second(c.second);
  c.operation(first.root, second.root);
  const std::string inputs = std::string(c.name) + " of " + Describe(c.first) + "and " + Describe(c.second);
  EXPECT_EQ(Describe(ColumnsOf(first.root)), c.firstAfter) << inputs;
  EXPECT_EQ(Describe(ColumnsOf(second.root)), c.secondAfter) << inputs;
  EXPECT_EQ(CheckTable(first.root), "") << inputs;
  EXPECT_EQ(CheckTable(second.root), "") << inputs;
}

}  // namespace

TEST(TableAlgebra, Union) {
  const AlgebraCase cases[] = {
      {"overlap", TABEL1_PLUS_TABEL2, {{0, {0, 10}}}, {{0, {5, 20}}}, "0:{0,20} ", "0:{5,20} "},
      {"touching runs stay two",
       TABEL1_PLUS_TABEL2,
       {{0, {0, 5}}},
       {{0, {5, 10}}},
       "0:{0,5,5,10} ",
       "0:{5,10} "},
      {"empty second column", TABEL1_PLUS_TABEL2, {{0, {0, 5}}}, {{0, {}}}, "0:{0,5} ", "0:{} "},
      {"missing column copied",
       TABEL1_PLUS_TABEL2,
       {{0, {1, 2}}, {20, {}}},
       {{10, {3, 4}}, {20, {5, 6}}},
       "0:{1,2} 10:{3,4} 20:{5,6} ",
       "10:{3,4} 20:{5,6} "},
      {"two empty roots", TABEL1_PLUS_TABEL2, {}, {}, "1:{} ", "1:{} "},
  };
  for (const AlgebraCase& c : cases)
    RunCase(c);
}

TEST(TableAlgebra, UnionMovesTheHighColumnsOfTheSecondTable) {
  ScopedTable first;
  ScopedTable second({{5, {1, 2}}, {10, {3, 4}}});
  L_LIST* moved = second.root.Next->Next->List;
  TABEL1_PLUS_TABEL2(first.root, second.root);
  EXPECT_EQ(Describe(ColumnsOf(first.root)), "1:{} 5:{1,2} 10:{3,4} ");
  EXPECT_EQ(CheckTable(first.root), "");
  EXPECT_EQ(second.root.Next->List, nullptr);
  EXPECT_EQ(second.root.Next->Next->List, nullptr);
  EXPECT_EQ(first.root.Next->Next->Next->List, moved);
}

TEST(TableAlgebra, Difference) {
  const AlgebraCase cases[] = {
      {"hole", TABEL1_MIN_TABEL2, {{0, {0, 10}}}, {{0, {3, 5}}}, "0:{0,3,5,10} ", "0:{3,5} "},
      {"all", TABEL1_MIN_TABEL2, {{0, {0, 10}}}, {{0, {0, 10}}}, "0:{} ", "0:{0,10} "},
      {"empty second column", TABEL1_MIN_TABEL2, {{0, {0, 10}}}, {{0, {}}}, "0:{0,10} ", "0:{} "},
      {"second used up first",
       TABEL1_MIN_TABEL2,
       {{0, {0, 4, 6, 9, 12, 15}}},
       {{0, {2, 7}}},
       "0:{0,2,7,9,12,15} ",
       "0:{2,7} "},
      {"columns on one side only",
       TABEL1_MIN_TABEL2,
       {{0, {0, 4}}, {20, {1, 8}}},
       {{10, {0, 4}}, {20, {2, 3}}},
       "0:{0,4} 20:{1,2,3,8} ",
       "10:{0,4} 20:{2,3} "},
      {"empty first root", TABEL1_MIN_TABEL2, {}, {{0, {1, 2}}}, "1:{} ", "0:{1,2} "},
  };
  for (const AlgebraCase& c : cases)
    RunCase(c);
}

TEST(TableAlgebra, SelectionKeepsRunsWhereASecondRunBegins) {
  const AlgebraCase cases[] = {
      {"begins on the end", TABEL1_ALS_TABEL2, {{0, {0, 10}}}, {{0, {10, 20}}}, "0:{0,10} ", "0:{10,20} "},
      {"begins after", TABEL1_ALS_TABEL2, {{0, {0, 10}}}, {{0, {11, 20}}}, "0:{} ", "0:{11,20} "},
      {"reaches in from before", TABEL1_ALS_TABEL2, {{0, {0, 10}}}, {{0, {-5, 3}}}, "0:{} ", "0:{-5,3} "},
      {"several runs",
       TABEL1_ALS_TABEL2,
       {{0, {0, 10, 20, 30, 40, 50}}},
       {{0, {5, 6, 7, 8, 45, 60}}},
       "0:{0,10,40,50} ",
       "0:{5,6,7,8,45,60} "},
      {"columns the second lacks",
       TABEL1_ALS_TABEL2,
       {{0, {0, 4}}, {10, {0, 4}}, {20, {0, 4}}},
       {{10, {1, 2}}},
       "0:{} 10:{0,4} 20:{} ",
       "10:{1,2} "},
      {"empty second column", TABEL1_ALS_TABEL2, {{0, {0, 4}}}, {{0, {}}}, "0:{} ", "0:{} "},
  };
  for (const AlgebraCase& c : cases)
    RunCase(c);
}

TEST(TableAlgebra, CommonPartLeavesBoth) {
  const AlgebraCase cases[] = {
      {"inside", TABELLEN_MIN_DOORSNEDE, {{0, {0, 10}}}, {{0, {3, 5}}}, "0:{0,3,5,10} ", "0:{} "},
      {"around", TABELLEN_MIN_DOORSNEDE, {{0, {3, 5}}}, {{0, {0, 10}}}, "0:{} ", "0:{0,3,5,10} "},
      {"apart", TABELLEN_MIN_DOORSNEDE, {{0, {0, 2}}}, {{0, {2, 4}}}, "0:{0,2} ", "0:{2,4} "},
      {"first leads", TABELLEN_MIN_DOORSNEDE, {{0, {0, 6}}}, {{0, {4, 9}}}, "0:{0,4} ", "0:{6,9} "},
      {"first leads, same end", TABELLEN_MIN_DOORSNEDE, {{0, {0, 9}}}, {{0, {4, 9}}}, "0:{0,4} ", "0:{} "},
      {"same start, first shorter",
       TABELLEN_MIN_DOORSNEDE,
       {{0, {0, 4}}},
       {{0, {0, 9}}},
       "0:{} ",
       "0:{4,9} "},
      {"equal", TABELLEN_MIN_DOORSNEDE, {{0, {0, 4, 6, 8}}}, {{0, {0, 4}}}, "0:{6,8} ", "0:{} "},
      {"same start, first longer", TABELLEN_MIN_DOORSNEDE, {{0, {0, 9}}}, {{0, {0, 4}}}, "0:{4,9} ", "0:{} "},
      {"second leads", TABELLEN_MIN_DOORSNEDE, {{0, {4, 9}}}, {{0, {0, 6}}}, "0:{6,9} ", "0:{0,4} "},
      {"second leads, same end", TABELLEN_MIN_DOORSNEDE, {{0, {4, 9}}}, {{0, {0, 9}}}, "0:{} ", "0:{0,4} "},
      {"several runs",
       TABELLEN_MIN_DOORSNEDE,
       {{0, {0, 10, 20, 30}}},
       {{0, {5, 25}}},
       "0:{0,5,25,30} ",
       "0:{10,20} "},
      // Cursors are lined up once per step, not re-compared: 20 meets 10.
      {"different grids",
       TABELLEN_MIN_DOORSNEDE,
       {{0, {0, 4}}, {20, {0, 4}}},
       {{10, {0, 4}}, {20, {1, 2}}},
       "0:{0,4} 20:{} ",
       "10:{} 20:{1,2} "},
      {"empty root", TABELLEN_MIN_DOORSNEDE, {}, {{0, {1, 2}}}, "", "0:{1,2} "},
  };
  for (const AlgebraCase& c : cases)
    RunCase(c);
}

TEST(TableAlgebra, OddListsAndHandedOverListsAreSafe) {
  const AlgebraCase cases[] = {
      {"odd first", TABEL1_ALS_TABEL2, {{0, {0, 10, 20}}}, {{0, {5, 6}}}, "0:{0,10,20} ", "0:{5,6} "},
      {"odd second", TABEL1_ALS_TABEL2, {{0, {0, 10, 20, 30}}}, {{0, {5}}}, "0:{0,10} ", "0:{5} "},
      {"odd both", TABELLEN_MIN_DOORSNEDE, {{0, {0, 10, 20}}}, {{0, {0, 10, 15}}}, "0:{20} ", "0:{15} "},
      {"odd difference",
       TABEL1_MIN_TABEL2,
       {{0, {0, 10, 20}}},
       {{0, {5, 6}}},
       "0:{0,5,6,10,20} ",
       "0:{5,6} "},
  };
  for (const AlgebraCase& c : cases)
    RunCase(c);
  // A union leaves the second table's high columns without lists; the other
  // operations pass over such columns.
  ScopedTable first;
  ScopedTable second({{5, {1, 2}}});
  TABEL1_PLUS_TABEL2(first.root, second.root);
  ScopedTable third({{5, {0, 9}}});
  TABELLEN_MIN_DOORSNEDE(third.root, second.root);
  TABEL1_MIN_TABEL2(third.root, second.root);
  TABEL1_ALS_TABEL2(third.root, second.root);
  EXPECT_EQ(Describe(ColumnsOf(third.root)), "5:{} ");
  TABEL1_PLUS_TABEL2(third.root, second.root);
  EXPECT_EQ(Describe(ColumnsOf(third.root)), "5:{} ");
}
