#include "layer/contour.h"

#include <gtest/gtest.h>

#include "support/layer_builders.h"

using testing_support::PointsOf;

namespace {
// A stack contour released at the end of a test.
struct OwnedContour {
  CONTOUR c;
  explicit OwnedContour(std::initializer_list<MMPoint2d<long>> pts, unsigned char closed = 1) {
    std::vector<MMPoint2d<long>> v(pts);
    c.SetPoints(v.data(), static_cast<int32_t>(v.size()));
    c.Closed = closed;
  }
  ~OwnedContour() { c.Clear(); }
};
}  // namespace

TEST(Contour, ClearedStateUsesSevenForUndeterminedAndKeepsOrder) {
  CONTOUR c;
  c.Clear();  // on a fresh contour: stays fresh
  EXPECT_EQ(c.Points, nullptr);
  MMPoint2d<long> p[2] = {{1, 1}, {2, 2}};
  c.SetPoints(p, 2);
  c.Outer = 1;
  c.Type = 5;
  c.Order = 9;
  c.Clear();
  EXPECT_EQ(c.Outer, 7);
  EXPECT_EQ(c.Type, 0);
  EXPECT_EQ(c.NumPoints, 0);
  EXPECT_EQ(c.Points, nullptr);
  EXPECT_EQ(c.Order, 9);
}

TEST(Contour, AllocAndSetPointsKeepOrReuseStorage) {
  OwnedContour s({{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}});
  s.c.AllocPoints(2);
  EXPECT_EQ(s.c.NumPoints, 2);
  s.c.AllocPoints(4);  // grows, keeping the first two
  EXPECT_EQ(s.c.Points[0].x, 0);
  EXPECT_EQ(s.c.Points[1].x, 1);
  MMPoint2d<long> q[4] = {{9, 9}, {8, 8}, {7, 7}, {6, 6}};
  MMPoint2d<long>* before = s.c.Points;
  s.c.SetPoints(q, 4);
  EXPECT_EQ(s.c.Points, before);
  EXPECT_EQ(s.c.Points[3].x, 6);
}

TEST(Contour, PointSearchesTieToTheFirstAndSkipEqualPoints) {
  OwnedContour open({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
  EXPECT_EQ(open.c.LowestLeftmostPoint(), 0);
  OwnedContour closed({{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}});
  EXPECT_EQ(closed.c.LowestLeftmostPoint(), 4);  // the start of the closing run
  OwnedContour later({{5, 5}, {3, 1}, {1, 1}, {1, 1}});
  EXPECT_EQ(later.c.LowestLeftmostPoint(), 2);  // first of equal points stays
  CONTOUR empty;
  EXPECT_EQ(empty.LowestLeftmostPoint(), 0);
  OwnedContour s({{1, 1}, {1, 1}, {2, 2}});
  int32_t i = 0;
  EXPECT_EQ(s.c.NextPoint(i), 2);
  i = 2;
  EXPECT_EQ(s.c.NextPoint(i), 0);
  OwnedContour equal({{3, 3}, {3, 3}, {3, 3}});
  EXPECT_EQ(equal.c.LowestLeftmostPoint(), 0);
  i = 1;
  EXPECT_EQ(equal.c.NextPoint(i), 1);
}

TEST(Contour, TurningDirectionBySignedArea) {
  OwnedContour two({{0, 0}, {5, 5}});
  EXPECT_TRUE(two.c.RECHTS_DRAAIEND());
  OwnedContour cw({{0, 0}, {0, 1}, {1, 1}, {1, 0}});
  EXPECT_TRUE(cw.c.RECHTS_DRAAIEND());
  OwnedContour ccw({{0, 0}, {1, 0}, {1, 1}, {0, 1}});
  EXPECT_FALSE(ccw.c.RECHTS_DRAAIEND());
  OwnedContour flat({{0, 0}, {1, 0}, {2, 0}});
  EXPECT_TRUE(flat.c.RECHTS_DRAAIEND());  // no area counts as clockwise
  EXPECT_EQ(ccw.c.RightHanded, 7);        // attributes are not touched
  // At the top of the grid the y sums wrap in 32 bits; the sense survives.
  OwnedContour highCw({{0, 2147483500}, {0, 2147483600}, {9, 2147483600}, {9, 2147483500}});
  EXPECT_TRUE(highCw.c.RECHTS_DRAAIEND());
  OwnedContour highCcw({{0, 2147483500}, {9, 2147483500}, {9, 2147483600}, {0, 2147483600}});
  EXPECT_FALSE(highCcw.c.RECHTS_DRAAIEND());
}

TEST(Contour, LengthCountsClosingEdgeUnlessOpen) {
  CONTOUR fresh;
  EXPECT_EQ(fresh.BEREKEN_LENGTE(), 0u);  // no points and not open: guarded, no closing edge
  OwnedContour sq({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, 0);
  EXPECT_EQ(sq.c.BEREKEN_LENGTE(), 30u);
  sq.c.Closed = 1;
  EXPECT_EQ(sq.c.BEREKEN_LENGTE(), 40u);
  sq.c.Closed = 7;
  EXPECT_EQ(sq.c.BEREKEN_LENGTE(), 40u);
  OwnedContour diag({{0, 0}, {3, 4}, {3, 5}}, 0);  // 5 + 1: exact in float
  EXPECT_EQ(diag.c.BEREKEN_LENGTE(), 6u);
}

TEST(Contour, ReverseTwiceRestoresPointsAndFlipsDirectionWord) {
  OwnedContour s({{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}});
  auto original = PointsOf(s.c);
  s.c.KEER_DRAAIZIN_OM();
  EXPECT_EQ(s.c.RightHanded, 0);
  // A repeated first point stays at both ends.
  EXPECT_TRUE(PointsOf(s.c) == (std::vector<MMPoint2d<long>>{{0, 0}, {0, 1}, {1, 1}, {1, 0}, {0, 0}}));
  s.c.KEER_DRAAIZIN_OM();
  EXPECT_EQ(s.c.RightHanded, 1);
  EXPECT_TRUE(PointsOf(s.c) == original);
}
