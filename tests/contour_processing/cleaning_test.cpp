#include <gtest/gtest.h>

#include <vector>

#include "layer/contour_layer.h"
#include "support/chain_checks.h"
#include "support/contour_processing_points.h"
#include "support/layer_builders.h"

namespace {

using P = MMPoint2d<long>;
using testing_support::Describe;
using testing_support::PointsOf;
using TestLayer = testing_support::OwningLayer;

TEST(Cleaning, FilterBySizeSparesNonHolesWhenAsked) {
  TestLayer t({{{0, 0}, {1, 1}}, {{0, 0}, {1, 1}, {2, 0}}, {{5, 5}, {6, 6}}, {{7, 7}, {8, 8}}});
  t.At(1)->Outer = 0;
  t.At(2)->Outer = 1;
  t.At(3)->Outer = 0;
  CONTOUR* kept[] = {t.At(0), t.At(1), t.At(2)};
  t.layer.BEPAAL_EXTREMA();
  t.layer.FILTER_LAAG(3, true);  // only the 2-point hole goes; Outer 7 and 1 are spared
  ASSERT_EQ(t.layer.NumContours, 3);
  EXPECT_EQ(t.layer.LastContour, kept[2]);
  testing_support::ExpectChainConsistent(t.layer);
  t.layer.FILTER_LAAG(3, false);
  ASSERT_EQ(t.layer.NumContours, 1);
  EXPECT_EQ(t.layer.FirstContour, kept[1]);
  testing_support::ExpectChainConsistent(t.layer);
  EXPECT_EQ(t.layer.MaxX, 8);  // extents are not recomputed
}

TEST(Cleaning, FilterByTypeAndLength) {
  TestLayer t({{{0, 0}, {100, 100}, {100, 0}}, {{0, 0}, {10, 10}, {10, 0}}});
  t.At(0)->Type = 5;
  t.layer.FILTER_LAAG_OP_TYPE(5);
  ASSERT_EQ(t.layer.NumContours, 1);
  EXPECT_EQ(t.layer.MaxX, 10);
  t.layer.FILTER_LAAG_OP_TYPE(0);
  EXPECT_EQ(t.layer.NumContours, 0);
  EXPECT_EQ(t.layer.MaxX, kEmptyExtentMax);  // recomputed on the empty layer

  TestLayer s({{{0, 0}, {10, 0}}, {{0, 0}, {10, 0}}});
  s.At(1)->Closed = 0;  // length 10, against 20 closed
  CONTOUR* closed = s.At(0);
  s.layer.VERWIJDER_CONTOUREN_MINDER_LANG_DAN(15, false);
  ASSERT_EQ(s.layer.NumContours, 1);
  EXPECT_EQ(s.layer.FirstContour, closed);
  s.At(0)->Outer = 1;
  s.layer.VERWIJDER_CONTOUREN_MINDER_LANG_DAN(100, true);
  EXPECT_EQ(s.layer.NumContours, 1);
}

TEST(Cleaning, DoubledPointsByClosedState) {
  struct Case {
    std::vector<P> in;
    unsigned char closed;
    int32_t limit;
    std::vector<P> out;  // empty: removed
  };
  const Case cases[] = {
      {{{0, 0}, {1, 0}, {1, 1}, {0, 0}}, 1, 0, {{1, 0}, {1, 1}, {0, 0}}},
      {{{0, 0}, {1, 0}, {1, 1}, {0, 0}}, 0, 0, {{0, 0}, {1, 0}, {1, 1}, {0, 0}}},
      {{{0, 0}, {0, 0}, {1, 0}, {1, 0}, {1, 1}}, 1, 0, {{0, 0}, {1, 0}, {1, 1}}},
      {{{0, 0}, {0, 0}, {1, 0}, {1, 0}, {1, 1}}, 0, 0, {{0, 0}, {1, 0}, {1, 1}}},
      {{{0, 0}, {0, 0}, {1, 0}}, 7, 0, {{0, 0}, {0, 0}, {1, 0}}},  // 7: untouched
      {{{0, 0}, {0, 0}, {1, 0}}, 7, 4, {}},                        // but removed for too few points
      {{{3, 3}, {3, 3}, {3, 3}}, 1, 0, {}},                        // all equal: removed
      {{{3, 3}, {3, 3}, {3, 3}}, 0, 0, {}},                        // one point left: removed
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(Describe(k.in) + " closed " + std::to_string(k.closed) + " limit " +
                 std::to_string(k.limit));
    TestLayer t({k.in}, k.closed);
    t.layer.VERWIJDER_DUBBELE_PUNTEN(k.limit);  // limit 0 becomes 2
    if (k.out.empty()) {
      EXPECT_EQ(t.layer.NumContours, 0);
      continue;
    }
    ASSERT_EQ(t.layer.NumContours, 1);
    EXPECT_EQ(t.Points(), k.out) << Describe(t.Points());
  }
}

TEST(Cleaning, CompressByAngle) {
  TestLayer t({{{0, 0}, {10, 0}, {20, 0}, {20, 20}}, {{0, 0}, {0, 0}}, {{0, 0}, {5, 0}}}, 0);
  t.layer.COMPRES_LAAG(0, 180);       // the straight point goes, the corner of 90 stays
  ASSERT_EQ(t.layer.NumContours, 2);  // only doubled points go from the 2-point contours
  EXPECT_EQ(t.Points(), (std::vector<P>{{0, 0}, {20, 0}, {20, 20}}));
  EXPECT_EQ(PointsOf(*t.At(1)), (std::vector<P>{{0, 0}, {5, 0}}));

  // Directions 0 and 349 differ by 349, which counts as 169 (not 11).
  TestLayer sharp({{{10, 0}, {0, 0}, {-100, 18}}}, 0);
  sharp.layer.COMPRES_LAAG(100, 175);
  EXPECT_EQ(sharp.layer.FirstContour->NumPoints, 3);
  // 169 is neither greater than 169 nor below it: dropped.
  for (const auto& [least, most] : {std::pair{169, 180}, std::pair{100, 169}}) {
    TestLayer limit({{{10, 0}, {0, 0}, {-100, 18}}}, 0);
    limit.layer.COMPRES_LAAG(least, most);
    EXPECT_EQ(limit.layer.FirstContour->NumPoints, 2) << least << " " << most;
  }
}

TEST(Cleaning, CompressByLengthAndResolution) {
  TestLayer none({{{0, 0}, {0, 0}, {1, 0}}});
  none.layer.COMPRES_LAAG_OP_LENGTE(0);
  EXPECT_EQ(none.layer.FirstContour->NumPoints, 3);
  TestLayer t({{{0, 0}, {1, 1}}, {{0, 0}, {2, 0}, {10, 0}, {10, 10}, {0, 10}}});
  t.layer.COMPRES_LAAG_OP_LENGTE(5);
  ASSERT_EQ(t.layer.NumContours, 1);  // fewer than 3 points first
  // Walk from (0,10): (2,0) is within 5 of (0,0) and becomes it, then drops.
  EXPECT_EQ(t.Points(), (std::vector<P>{{0, 0}, {10, 0}, {10, 10}, {0, 10}}));
  TestLayer closing({{{1000, 1000}, {1010, 1000}, {1010, 1010}, {1001, 1002}}});
  closing.layer.COMPRES_LAAG_OP_LENGTE(5);  // the first point is within 5 of the last
  EXPECT_EQ(closing.Points(), (std::vector<P>{{1010, 1000}, {1010, 1010}, {1001, 1002}}));  // and goes

  TestLayer r({{{14, 15}, {-15, -14}, {100, 0}}});
  r.layer.COMPRES_LAAG_OP_RESOLUTIE(10);
  EXPECT_EQ(r.Points(), (std::vector<P>{{10, 20}, {-20, -10}, {100, 0}}));
  r.layer.COMPRES_LAAG_OP_RESOLUTIE(0);  // chosen: nothing changes
  EXPECT_EQ(r.Points(), (std::vector<P>{{10, 20}, {-20, -10}, {100, 0}}));
  TestLayer collapsing({{{1, 1}, {2, 2}, {3, 1}}});
  collapsing.layer.COMPRES_LAAG_OP_RESOLUTIE(100);
  EXPECT_EQ(collapsing.layer.NumContours, 0);
}

TEST(Cleaning, CloseContours) {
  TestLayer t({{{0, 0}, {5, 0}, {5, 5}}}, 0);
  t.layer.AddContourAtEnd(new CONTOUR);  // chosen: a contour without points stays as it is
  t.layer.SLUIT_CONTOUREN();
  EXPECT_EQ(t.Points(), (std::vector<P>{{0, 0}, {5, 0}, {5, 5}, {0, 0}}));
  EXPECT_EQ(t.layer.FirstContour->Closed, 0);
  EXPECT_EQ(t.layer.LastContour->Points, nullptr);
}

}  // namespace
