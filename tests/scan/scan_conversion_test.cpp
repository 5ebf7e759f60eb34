#include "scan/scan_conversion.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "support/tables.h"

using testing_support::CheckTable;
using testing_support::Columns;
using testing_support::Describe;
using testing_support::Grid;
using testing_support::NewContour;
using testing_support::Scan;
using testing_support::ScopedLayer;
using testing_support::ScopedTable;

namespace {

using Ring = std::vector<MMPoint2d<long>>;

int32_t FirstColumn(CONTOUR_LAYER& layer, const MSliceFileParameters& p, bool alongX = true) {
  return Scan(layer, p, alongX).front().position;
}

}  // namespace

TEST(ScanConversion, EdgesAndVerticesOnColumnsAndRounding) {
  const struct {
    const char* name;
    Ring ring;
    int32_t distance;
    const char* table;
  } cases[] = {
      {"clockwise square", {{0, 0}, {0, 100}, {100, 100}, {100, 0}}, 50, "0:; 50: 0 100; 100:"},
      {"counter-clockwise square", {{0, 0}, {100, 0}, {100, 100}, {0, 100}}, 50, "0:; 50: 0 100; 100:"},
      // Tips at x 0 and 100 touch their columns; the vertices at x 50 are
      // passed through and give one crossing each.
      {"diamond", {{50, 0}, {100, 50}, {50, 100}, {0, 50}}, 50, "0:; 50: 0 100; 100:"},
      // A stretch along a column on the way up gives one crossing, at its
      // end; at the top of a bump, none.
      {"stair", {{0, 0}, {50, 20}, {50, 40}, {100, 60}, {100, 100}, {0, 100}}, 50, "0:; 50: 40 100; 100:"},
      {"bump", {{0, 0}, {50, 50}, {50, 60}, {0, 100}}, 25, "0:; 25: 25 80; 50:"},
      {"halves round away from zero", {{0, 0}, {10, 5}, {10, -5}}, 5, "0:; 5: -3 3; 10:"},
  };
  for (const auto& c : cases) {
    ScopedLayer l({c.ring});
    EXPECT_EQ(Describe(Scan(l.layer, Grid(c.distance, 0))), c.table) << c.name;
  }
}

TEST(ScanConversion, OpenAndDegenerateContoursAddNothing) {
  for (unsigned char closed : {static_cast<unsigned char>(0), kNotDetermined}) {
    ScopedLayer open({{{0, 0}, {100, 0}, {100, 100}, {0, 100}}}, closed);
    EXPECT_EQ(Describe(Scan(open.layer, Grid(50, 0))), "0:; 50:; 100:") << "closed " << int(closed);
  }
  // All points on one column, or a single point: skipped, no endless search.
  ScopedLayer flat({{{50, 0}, {50, 100}, {50, 30}}, {{70, 70}}, {{0, 0}, {100, 10}, {100, 20}, {0, 30}}});
  EXPECT_EQ(Describe(Scan(flat.layer, Grid(50, 0))), "0:; 50: 5 25; 100:");
}

TEST(ScanConversion, GridStartsAtTheShiftAndEndsAtTheGreatestCoordinate) {
  ScopedLayer l({{{0, 0}, {25, 0}, {25, 25}, {0, 25}}});
  EXPECT_EQ(Describe(Scan(l.layer, Grid(10, 5))), "5: 0 25; 15: 0 25; 25:");
  EXPECT_EQ(Describe(Scan(l.layer, Grid(10, -12))), "-12:; -2:; 8: 0 25; 18: 0 25");
  EXPECT_TRUE(Scan(l.layer, Grid(10, 26)).empty());
}

TEST(ScanConversion, ExtraColumnsJoinTheGrid) {
  ScopedLayer l({{{0, 0}, {20, 0}, {20, 20}, {0, 20}}});
  L_LIST extra = {0, nullptr};
  VOEG_ACHTER_L_LIJST(&extra, 3);
  VOEG_ACHTER_L_LIJST(&extra, 10);
  EXPECT_EQ(Describe(Scan(l.layer, Grid(10, 0), true, &extra)), "0:; 3: 0 20; 10: 0 20; 10: 0 20; 20:");
  // Above the layer: the extra columns alone.
  EXPECT_EQ(Describe(Scan(l.layer, Grid(10, 100), true, &extra)), "3: 0 20; 10: 0 20");
  LEEG_L_LIJST(&extra);
}

TEST(ScanConversion, NothingIsTouchedWithoutContoursOrADistance) {
  ScopedLayer l({{{0, 0}, {20, 0}, {20, 20}, {0, 20}}});
  MSliceFileParameters p = Grid(10, 5);
  p.AlternateHatchShift = true;
  const int32_t before = FirstColumn(l.layer, p);
  CONTOUR_LAYER empty;
  for (int32_t distance : {0, -10}) {
    TABEL marker;
    marker.Position = 42;
    MSliceFileParameters q = p;
    q.XHatchDistance = distance;
    l.layer.X_ARCEER_LAAG(&marker, q, nullptr);
    EXPECT_EQ(marker.Position, 42) << "distance " << distance;
    empty.X_ARCEER_LAAG(&marker, p, nullptr);
    EXPECT_EQ(marker.Position, 42);
  }
  // None of the calls above reached the grid step, so the flip did not move.
  EXPECT_EQ(FirstColumn(l.layer, p), before == 5 ? 10 : 5);
}

namespace {

// Alternating scans from a fresh process; exits 0 when every start is right.
void CheckAlternationFromProcessStart() {
  ScopedLayer l({{{0, 0}, {30, 0}, {30, 30}, {0, 30}}});
  MSliceFileParameters p = Grid(10, 5);
  p.AlternateHatchShift = true;
  std::vector<int32_t> starts;
  starts.push_back(FirstColumn(l.layer, p));
  starts.push_back(FirstColumn(l.layer, p, false));
  starts.push_back(FirstColumn(l.layer, p));
  p.AlternateHatchShift = false;
  starts.push_back(FirstColumn(l.layer, p));
  p.AlternateHatchShift = true;
  starts.push_back(FirstColumn(l.layer, p));
  starts.push_back(FirstColumn(l.layer, p, false));
  std::exit(starts == std::vector<int32_t>{10, 10, 5, 5, 10, 5} ? 0 : 1);
}

}  // namespace

// The flips live for the whole process: the check runs in a fresh one.
TEST(ScanConversion, AlternatingGridsFlipPerAxisForTheWholeProcess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(CheckAlternationFromProcessStart(), ::testing::ExitedWithCode(0), "")
      << "expected X starts 10, 5, 5 (not alternating), 10 and Y starts 10, 5";
}

TEST(ScanConversion, YTableIsTheXTableOfTheTransposedLayer) {
  const Ring outer = testing_support::Circle(500, 400, 380, 37, true);
  const Ring hole = testing_support::Circle(450, 420, 150, 23, false);
  auto transpose = [](Ring r) {
    for (auto& p : r)
      std::swap(p.x, p.y);
    return r;
  };
  ScopedLayer l({outer, hole});
  ScopedLayer t({transpose(outer), transpose(hole)});
  const Columns y = Scan(l.layer, Grid(17, 3), false);
  EXPECT_EQ(y, Scan(t.layer, Grid(17, 3))) << Describe(y);
  for (const auto& c : y)
    EXPECT_EQ(c.crossings.size() % 2, 0u) << "column " << c.position;
}

TEST(ExtraGridLines, NarrowRunsMissedByTheGridGetAMiddleLine) {
  L_LIST extra = {0, nullptr};
  ScopedTable empty, wide("0: 0 10; 1: 38 42"), toGridLine("0: 12 20"), narrow("0: 12 18; 1: -9 -3");
  EXPECT_FALSE(EXTRA_GRID_LIJNEN(&extra, empty.root, 10, 10));
  EXPECT_FALSE(EXTRA_GRID_LIJNEN(&extra, wide.root, 10, 10));
  EXPECT_EQ(extra.Value, 0);
  // A grid line on the run's end does not cross it.
  EXPECT_TRUE(EXTRA_GRID_LIJNEN(&extra, toGridLine.root, 10, 10));
  EXPECT_EQ(testing_support::ValuesOf(&extra), (std::vector<int32_t>{16}));
  LEEG_L_LIJST(&extra);
  // Grid lines below the start do not count; halves truncate on their own.
  EXPECT_TRUE(EXTRA_GRID_LIJNEN(&extra, narrow.root, 10, 10));
  EXPECT_EQ(testing_support::ValuesOf(&extra), (std::vector<int32_t>{-5, 15}));
  // The lines are in now: a second pass finds them and adds nothing.
  EXPECT_FALSE(EXTRA_GRID_LIJNEN(&extra, narrow.root, 10, 10));
  // A run whose middle is already listed (on its end) still reports the need.
  ScopedTable again("0: 15 16");
  EXPECT_TRUE(EXTRA_GRID_LIJNEN(&extra, again.root, 10, 10));
  EXPECT_EQ(extra.Value, 2);
  EXPECT_FALSE(EXTRA_GRID_LIJNEN(&extra, narrow.root, 10, 0));
  EXPECT_FALSE(EXTRA_GRID_LIJNEN(&extra, narrow.root, 10, -10));
  LEEG_L_LIJST(&extra);
}

TEST(ExtraGridLines, FilterDropsValuesWhoseColumnIsEmpty) {
  ScopedTable t("5:; 15: 1 2; 25:");
  L_LIST extra = {0, nullptr};
  for (int32_t v : {5, 15, 20, 25})
    VOEG_ACHTER_L_LIJST(&extra, v);
  FILTER_EXTRA_LIJST(&extra, t.root);
  EXPECT_EQ(extra.Value, 3);
  EXPECT_EQ(testing_support::ValuesOf(&extra), (std::vector<int32_t>{15, 20, 25}));
  LEEG_L_LIJST(&extra);
}

// Contours are scanned one after the other, each on its own: the table of a
// layer is the column-wise merge of the tables of its contours alone, in any
// order of the chain and wherever the contour before left the cursor.
TEST(ScanConversion, LayerTableIsTheMergeOfItsContoursTables) {
  std::srand(7);
  std::vector<Ring> rings;
  for (int i = 0; i < 40; ++i) {
    const double cx = std::rand() % 2000, cy = std::rand() % 2000;
    rings.push_back(
        testing_support::Circle(cx, cy, 20 + std::rand() % 400, 5 + std::rand() % 30, i % 2 == 0));
  }
  ScopedLayer all({});
  for (const Ring& r : rings)
    all.layer.AddContourAtEnd(NewContour(r));
  all.layer.BEPAAL_EXTREMA();
  const MSliceFileParameters p = Grid(23, 5);
  Columns merged = Scan(all.layer, p);
  for (auto& c : merged)
    c.crossings.clear();
  for (const Ring& r : rings) {
    ScopedLayer one({r});
    one.layer.MaxX = all.layer.MaxX;  // the same grid
    const Columns alone = Scan(one.layer, p);
    for (size_t k = 0; k < alone.size(); ++k) {
      merged[k].crossings.insert(merged[k].crossings.end(), alone[k].crossings.begin(),
                                 alone[k].crossings.end());
    }
  }
  for (auto& c : merged)
    std::sort(c.crossings.begin(), c.crossings.end());
  EXPECT_EQ(Scan(all.layer, p), merged);
}

// Contours reaching the ends of the 32-bit grid, where the float steps would
// wrap: each column stays even and every crossing inside the layer's extent,
// along x and, with the rings mirrored, along y.
TEST(ScanConversion, CrossingsStayInsideTheMaterialAtTheEndsOfTheGrid) {
  const struct {
    const char* name;
    Ring ring;
    int32_t distance, shift;
  } cases[] = {
      {"square up to INT32_MAX - 10",
       {{0, 0}, {0, INT32_MAX - 10}, {1000, INT32_MAX - 10}, {1000, 0}},
       500,
       0},
      {"square down to INT32_MIN + 1",
       {{0, INT32_MIN + 1}, {0, 0}, {1000, 0}, {1000, INT32_MIN + 1}},
       500,
       0},
      {"triangle over +-1.2e9",
       {{-1200000000, -1200000000}, {0, 1200000000}, {1200000000, -1200000000}},
       600000000,
       0},
      {"sliver over the whole range",
       {{INT32_MIN + 1, INT32_MIN + 1}, {INT32_MAX - 1, INT32_MAX - 1}, {INT32_MAX - 1, INT32_MAX - 3}},
       700000000,
       -2100000000},
  };
  for (const auto& c : cases) {
    for (bool alongX : {true, false}) {
      Ring ring = c.ring;
      if (!alongX)
        for (auto& p : ring)
          std::swap(p.x, p.y);
      ScopedLayer l({ring});
      const int32_t least = alongX ? l.layer.MinY : l.layer.MinX;
      const int32_t greatest = alongX ? l.layer.MaxY : l.layer.MaxX;
      for (const auto& column : Scan(l.layer, Grid(c.distance, c.shift), alongX)) {
        EXPECT_EQ(column.crossings.size() % 2, 0u) << c.name << " at " << column.position;
        for (int32_t v : column.crossings)
          EXPECT_TRUE(v >= least && v <= greatest) << c.name << " at " << column.position << ": " << v;
      }
    }
  }
  ScopedLayer triangle({cases[2].ring});
  EXPECT_EQ(Describe(Scan(triangle.layer, Grid(600000000, 0))),
            "0: -1200000000 1200000000; 600000000: -1200000000 0; 1200000000:");
}

// Contours ending at the least coordinate: the column cursor of the next
// contour walks back no further than the first column.
TEST(ScanConversion, ContoursEndingAtTheLeastCoordinate) {
  ScopedLayer l({{{0, 0}, {0, 10}, {INT32_MIN, 10}, {INT32_MIN, 0}},
                 {{0, 20}, {0, 30}, {INT32_MIN, 30}, {INT32_MIN, 20}}});
  EXPECT_EQ(Describe(Scan(l.layer, Grid(1 << 30, INT32_MIN))), "-2147483648:; -1073741824: 0 10 20 30; 0:");
}

// A table that memory cannot hold ends empty, without a crash.
TEST(ScanConversion, RunningOutOfMemoryLeavesAnEmptyTable) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the address sanitizer maps more than the limit below";
#else
  rlimit saved{};
  getrlimit(RLIMIT_AS, &saved);
  const rlimit limit{rlim_t{768} << 20, saved.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
  ScopedLayer wide({{{0, 0}, {0, 10}, {2000000000, 10}, {2000000000, 0}}});
  ScopedTable t;
  MSliceFileParameters everyUnit = Grid(1, 0);
  wide.layer.X_ARCEER_LAAG(&t.root, everyUnit, nullptr);
  setrlimit(RLIMIT_AS, &saved);
  EXPECT_EQ(CheckTable(t.root), "");
  EXPECT_EQ(t.root.Next, nullptr);
#endif
}
