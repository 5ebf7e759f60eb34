#include "scan/table_algebra.h"

#include <gtest/gtest.h>

#include <random>

#include "support/tables.h"

using testing_support::CheckTable;
using testing_support::Columns;
using testing_support::ColumnsOf;
using testing_support::Describe;
using testing_support::ScopedTable;
using testing_support::TableColumn;

namespace {

using Operation = void (*)(TABEL&, TABEL&);

// Tables written as Describe writes them; both tables are checked afterwards.
struct AlgebraCase {
  const char* name;
  const char* first;
  const char* second;
  const char* firstAfter;
  const char* secondAfter;
};

void RunCases(Operation operation, std::initializer_list<AlgebraCase> cases) {
  for (const AlgebraCase& c : cases) {
    SCOPED_TRACE(std::string(c.name) + ": " + c.first + " and " + c.second);
    ScopedTable first(c.first), second(c.second);
    operation(first.root, second.root);
    EXPECT_EQ(Describe(ColumnsOf(first.root)), c.firstAfter);
    EXPECT_EQ(Describe(ColumnsOf(second.root)), c.secondAfter);
    EXPECT_EQ(CheckTable(first.root), "");
    EXPECT_EQ(CheckTable(second.root), "");
  }
}

}  // namespace

TEST(TableAlgebra, Union) {
  RunCases(TABEL1_PLUS_TABEL2, {
                                   {"touching runs stay two", "0: 0 5", "0: 5 10", "0: 0 5 5 10", "0: 5 10"},
                                   {"empty second column", "0: 0 5", "0:", "0: 0 5", "0:"},
                                   {"missing column copied", "0: 1 2; 20:", "10: 3 4; 20: 5 6",
                                    "0: 1 2; 10: 3 4; 20: 5 6", "10: 3 4; 20: 5 6"},
                                   {"two empty roots", "", "", "1:", "1:"},
                               });
}

TEST(TableAlgebra, UnionMovesTheHighColumnsOfTheSecondTable) {
  ScopedTable first;
  ScopedTable second("5: 1 2; 10: 3 4");
  L_LIST* moved = second.root.Next->Next->List;
  TABEL1_PLUS_TABEL2(first.root, second.root);
  EXPECT_EQ(Describe(ColumnsOf(first.root)), "1:; 5: 1 2; 10: 3 4");
  EXPECT_EQ(CheckTable(first.root), "");
  EXPECT_EQ(second.root.Next->List, nullptr);
  EXPECT_EQ(second.root.Next->Next->List, nullptr);
  EXPECT_EQ(first.root.Next->Next->Next->List, moved);
}

TEST(TableAlgebra, Difference) {
  RunCases(TABEL1_MIN_TABEL2, {
                                  {"empty second column", "0: 0 10", "0:", "0: 0 10", "0:"},
                                  {"columns on one side only", "0: 0 4; 20: 1 8", "10: 0 4; 20: 2 3",
                                   "0: 0 4; 20: 1 2 3 8", "10: 0 4; 20: 2 3"},
                                  {"empty first root", "", "0: 1 2", "1:", "0: 1 2"},
                                  {"odd first", "0: 0 10 20", "0: 5 6", "0: 0 5 6 10 20", "0: 5 6"},
                              });
}

TEST(TableAlgebra, SelectionKeepsRunsWhereASecondRunBegins) {
  RunCases(
      TABEL1_ALS_TABEL2,
      {
          {"begins on the end", "0: 0 10", "0: 10 20", "0: 0 10", "0: 10 20"},
          {"begins after", "0: 0 10", "0: 11 20", "0:", "0: 11 20"},
          {"reaches in from before", "0: 0 10", "0: -5 3", "0:", "0: -5 3"},
          {"several runs", "0: 0 10 20 30 40 50", "0: 5 6 7 8 45 60", "0: 0 10 40 50", "0: 5 6 7 8 45 60"},
          {"columns the second lacks", "0: 0 4; 10: 0 4; 20: 0 4", "10: 1 2", "0:; 10: 0 4; 20:", "10: 1 2"},
          {"empty second column", "0: 0 4", "0:", "0:", "0:"},
          {"odd first", "0: 0 10 20", "0: 5 6", "0: 0 10 20", "0: 5 6"},
          {"odd second", "0: 0 10 20 30", "0: 5", "0: 0 10", "0: 5"},
      });
}

TEST(TableAlgebra, CommonPartLeavesBoth) {
  RunCases(TABELLEN_MIN_DOORSNEDE,
           {
               {"apart", "0: 0 2", "0: 2 4", "0: 0 2", "0: 2 4"},
               {"first leads, same end", "0: 0 9", "0: 4 9", "0: 0 4", "0:"},
               {"equal", "0: 0 4 6 8", "0: 0 4", "0: 6 8", "0:"},
               {"second leads, same end", "0: 4 9", "0: 0 9", "0:", "0: 0 4"},
               // Cursors are lined up once per step, not re-compared: 20 meets 10.
               {"different grids", "0: 0 4; 20: 0 4", "10: 0 4; 20: 1 2", "0: 0 4; 20:", "10:; 20: 1 2"},
               {"empty root", "", "0: 1 2", "", "0: 1 2"},
               {"odd both", "0: 0 10 20", "0: 0 10 15", "0: 20", "0: 15"},
           });
}

TEST(TableAlgebra, ColumnsWithoutListsArePassedOver) {
  // A union leaves the second table's high columns without lists.
  ScopedTable first, second("5: 1 2"), third("5: 0 9");
  TABEL1_PLUS_TABEL2(first.root, second.root);
  TABELLEN_MIN_DOORSNEDE(third.root, second.root);
  TABEL1_MIN_TABEL2(third.root, second.root);
  TABEL1_ALS_TABEL2(third.root, second.root);
  EXPECT_EQ(Describe(ColumnsOf(third.root)), "5:");
  TABEL1_PLUS_TABEL2(third.root, second.root);
  EXPECT_EQ(Describe(ColumnsOf(third.root)), "5:");
}

namespace {

// Random runs on columns 0, 10, .. 40, each column kept unless `allColumns` is
// false and the draw drops it; at least one column.
Columns RandomTable(std::mt19937& random, bool allColumns) {
  Columns columns;
  for (int32_t position = 0; position <= 40; position += 10) {
    if (!allColumns && random() % 3 == 0)
      continue;
    std::vector<int32_t> values;
    for (int32_t v = 0; v < 30; ++v) {
      if (random() % 4 == 0)
        values.push_back(v);
    }
    if (values.size() % 2 != 0)
      values.pop_back();
    columns.push_back({position, values});
  }
  if (columns.empty())
    columns.push_back({0, {}});
  return columns;
}

// Whether every run of the table is strictly increasing (no empty runs left).
bool RunsAreProper(const Columns& columns) {
  for (const TableColumn& c : columns) {
    for (size_t i = 0; i + 1 < c.crossings.size(); i += 2) {
      if (!(c.crossings[i] < c.crossings[i + 1]))
        return false;
    }
  }
  return true;
}

// Whether a run of the column at `position` covers t (t between grid values).
bool Covers(const Columns& columns, int32_t position, double t) {
  for (const TableColumn& c : columns) {
    for (size_t i = 0; c.position == position && i + 1 < c.crossings.size(); i += 2) {
      if (c.crossings[i] < t && t < c.crossings[i + 1])
        return true;
    }
  }
  return false;
}

}  // namespace

// Union, difference and common removal against per-column interval arithmetic
// on random tables, sampled between grid values.
TEST(TableAlgebra, AgreesWithIntervalArithmeticOnRandomTables) {
  struct Rule {
    const char* name;
    Operation operation;
    bool allColumns;  // both tables on every column
    bool (*first)(bool a, bool b);
    bool (*second)(bool a, bool b);
  };
  const Rule rules[] = {
      {"union", TABEL1_PLUS_TABEL2, false, [](bool a, bool b) { return a || b; }, nullptr},
      {"difference", TABEL1_MIN_TABEL2, false, [](bool a, bool b) { return a && !b; },
       [](bool, bool b) { return b; }},
      {"common part", TABELLEN_MIN_DOORSNEDE, true, [](bool a, bool b) { return a && !b; },
       [](bool a, bool b) { return b && !a; }},
  };
  std::mt19937 random(3);
  for (const Rule& rule : rules) {
    for (int round = 0; round < 40; ++round) {
      const Columns a = RandomTable(random, rule.allColumns), b = RandomTable(random, rule.allColumns);
      SCOPED_TRACE(std::string(rule.name) + ": " + Describe(a) + " and " + Describe(b));
      ScopedTable first(a), second(b);
      rule.operation(first.root, second.root);
      ASSERT_EQ(CheckTable(first.root), "");
      const Columns firstAfter = ColumnsOf(first.root), secondAfter = ColumnsOf(second.root);
      EXPECT_TRUE(RunsAreProper(firstAfter) && RunsAreProper(secondAfter));
      for (int32_t position = 0; position <= 40; position += 10) {
        for (double t = -0.5; t < 31; t += 1.0) {
          const bool inA = Covers(a, position, t), inB = Covers(b, position, t);
          EXPECT_EQ(Covers(firstAfter, position, t), rule.first(inA, inB)) << position << " " << t;
          if (rule.second != nullptr) {
            EXPECT_EQ(Covers(secondAfter, position, t), rule.second(inA, inB)) << position << " " << t;
          }
        }
      }
    }
  }
}

// Selection keeps a run of the first table exactly when a run of the second
// begins in it, ends included; random tables against that rule.
TEST(TableAlgebra, SelectionAgreesWithItsRuleOnRandomTables) {
  std::mt19937 random(5);
  for (int round = 0; round < 60; ++round) {
    const Columns a = RandomTable(random, false), b = RandomTable(random, false);
    Columns expected;
    for (const TableColumn& c : a) {
      TableColumn kept{c.position, {}};
      for (const TableColumn& d : b) {
        for (size_t i = 0; d.position == c.position && i + 1 < c.crossings.size(); i += 2) {
          for (size_t j = 0; j + 1 < d.crossings.size(); j += 2) {
            if (c.crossings[i] <= d.crossings[j] && d.crossings[j] <= c.crossings[i + 1]) {
              kept.crossings.insert(kept.crossings.end(), {c.crossings[i], c.crossings[i + 1]});
              break;
            }
          }
        }
      }
      expected.push_back(kept);
    }
    SCOPED_TRACE(Describe(a) + " and " + Describe(b));
    ScopedTable first(a), second(b);
    TABEL1_ALS_TABEL2(first.root, second.root);
    EXPECT_EQ(Describe(ColumnsOf(first.root)), Describe(expected));
    EXPECT_EQ(CheckTable(first.root), "");
  }
}
