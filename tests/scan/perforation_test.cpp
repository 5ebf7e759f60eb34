#include "scan/perforation.h"

#include <gtest/gtest.h>

#include "support/tables.h"

using testing_support::CheckTable;
using testing_support::ColumnsOf;
using testing_support::Describe;
using testing_support::ScopedTable;

namespace {

// Tooth 5, gap 3, phase 10, period 30: two teeth per period.
constexpr int32_t kTooth = 5, kGap = 3, kPhase = 10, kPeriod = 30;

using Perforation = void (*)(TABEL*, int32_t, int32_t, int32_t, int32_t);

// The table written as Describe writes it, perforated.
std::string Perforate(Perforation perforate, const char* table, int32_t a = kTooth, int32_t b = kGap,
                      int32_t c = kPhase, int32_t d = kPeriod) {
  ScopedTable t(table);
  perforate(&t.root, a, b, c, d);
  EXPECT_EQ(CheckTable(t.root), "") << table;
  return Describe(ColumnsOf(t.root));
}

std::string FilterSupport(const char* table, int32_t run, int32_t gap) {
  ScopedTable t(table);
  FILTER_SUPPORT_TABEL(&t.root, run, gap);
  EXPECT_EQ(CheckTable(t.root), "") << table;
  return Describe(ColumnsOf(t.root));
}

}  // namespace

TEST(Perforation, ClosedEndsKeepTheRunsEnds) {
  EXPECT_EQ(Perforate(PERFOREER_TABEL, "0: 0 100"), "0: 0 10 13 18 32 37 43 48 62 67 73 78 92 97");
  // Too short for a whole period: uncut, but the filters still run.
  EXPECT_EQ(Perforate(PERFOREER_TABEL, "0: 0 35 40 41"), "0: 0 35");
  // One tooth per period when a + b is not below d - a - b.
  EXPECT_EQ(Perforate(PERFOREER_TABEL, "0: 10 70", 12, 3, 10, 30), "0: 13 37 43 67");
}

TEST(Perforation, OpenEndsLeaveOnlyTeeth) {
  EXPECT_EQ(Perforate(PERFOREER_TABEL_OPEN_RAND, "0: 0 100"), "0: 2 7 13 18 32 37 43 48 62 67 73 78 92 97");
  EXPECT_EQ(Perforate(PERFOREER_TABEL_OPEN_RAND, "0: 11 15"), "0: 11 13");
  EXPECT_EQ(Perforate(PERFOREER_TABEL_OPEN_RAND, "0: 11 12"), "0:");
  // Both teeth of the first period.
  EXPECT_EQ(Perforate(PERFOREER_TABEL_OPEN_RAND, "0: 11 40"), "0: 13 18 32 37");
  // Starts just before a boundary, ends inside the second tooth of its last period.
  EXPECT_EQ(Perforate(PERFOREER_TABEL_OPEN_RAND, "0: 5 94"), "0: 5 7 13 18 32 37 43 48 62 67 73 78 92 94");
  // Several runs in one column are cut independently.
  EXPECT_EQ(Perforate(PERFOREER_TABEL_OPEN_RAND, "0: 0 20 40 70; 5:"), "0: 2 7 13 18 43 48 62 67; 5:");
}

TEST(Perforation, DegenerateParametersChangeNothing) {
  const char* shortRun = "0: 0 1 5 100";
  const std::string unchanged = "0: 0 1 5 100";
  for (int32_t period : {0, -30}) {
    EXPECT_EQ(Perforate(PERFOREER_TABEL, shortRun, kTooth, kGap, kPhase, period), unchanged);
    EXPECT_EQ(Perforate(PERFOREER_TABEL_OPEN_RAND, shortRun, kTooth, kGap, kPhase, period), unchanged);
  }
  // toothLength 0: not even the filters run.
  EXPECT_EQ(Perforate(PERFOREER_TABEL, shortRun, 0, kGap, kPhase, kPeriod), unchanged);
  // Open ends need a period of at least a tooth and two gaps.
  EXPECT_EQ(Perforate(PERFOREER_TABEL_OPEN_RAND, shortRun, 10, 8, kPhase, 25), unchanged);
  PERFOREER_TABEL(nullptr, kTooth, kGap, kPhase, kPeriod);
  EXPECT_EQ(Perforate(PERFOREER_TABEL_OPEN_RAND, ""), "");
}

TEST(Perforation, OddListsDoNotRunOffTheirEnd) {
  EXPECT_EQ(Perforate(PERFOREER_TABEL_OPEN_RAND, "0: 11 15 30"), "0: 11 13 30");
  ScopedTable t("0: 4 6 9");
  FILTER_SUPPORT_TABEL(&t.root, 10, 0);
  FILTER_TABEL_OP_MIN_LENGTE(&t.root, 20);
  EXPECT_EQ(Describe(ColumnsOf(t.root)), "0: 9");
}

TEST(TableFilters, SupportFilterWidensAndJoins) {
  EXPECT_EQ(FilterSupport("0: 4 6", 10, 0), "0: 0 10");
  EXPECT_EQ(FilterSupport("0: 4 6", 11, 0), "0: 0 10");
  EXPECT_EQ(FilterSupport("0: -7 -5", 10, 0), "0: -10 0");
  EXPECT_EQ(FilterSupport("0: 0 5 6 9", 0, 2), "0: 0 9");
  EXPECT_EQ(FilterSupport("0: 0 5 7 9", 0, 2), "0: 0 5 7 9");
  EXPECT_EQ(FilterSupport("0: 0 5 6 9 10 20", 0, 2), "0: 0 20");
  EXPECT_EQ(FilterSupport("0: 0 8 6 9", 0, 0), "0: 0 9");
}

TEST(TableFilters, MinimumLengthIsStrict) {
  ScopedTable t("0: 0 2 5 6 8 9 20 30; 1:");
  FILTER_TABEL_OP_MIN_LENGTE(&t.root, 2);
  EXPECT_EQ(Describe(ColumnsOf(t.root)), "0: 0 2 20 30; 1:");
  EXPECT_EQ(CheckTable(t.root), "");
}
