#include "geometry/plane_geometry.h"

#include <gtest/gtest.h>

#include <cmath>

#include "layer/contour.h"
#include "support/layer_builders.h"

namespace {

using P = MMPoint2d<long>;
using P3 = MMPoint3dIntegerTypes<long>;

std::string Describe(P a, P b, P c, P d) {
  return "ab (" + std::to_string(a.x) + "," + std::to_string(a.y) + ")-(" + std::to_string(b.x) + "," +
         std::to_string(b.y) + ") cd (" + std::to_string(c.x) + "," + std::to_string(c.y) + ")-(" +
         std::to_string(d.x) + "," + std::to_string(d.y) + ")";
}

struct CrossingCase {
  P a, b, c, d;
  P lines;     // SNIJPUNT_TWEE_RECHTEN
  P segments;  // SNIJDING
};

TEST(PlaneGeometry, CrossingsOfLinesAndSegments) {
  const CrossingCase cases[] = {
      {{0, 0}, {10, 10}, {0, 10}, {10, 0}, {5, 5}, {5, 5}},
      {{0, 0}, {10, 0}, {0, 5}, {10, 5}, {0, 0}, {0, 0}},      // parallel
      {{0, 0}, {10, 10}, {20, 20}, {30, 30}, {0, 0}, {0, 0}},  // one line
      {{5, 0}, {5, 10}, {0, 2}, {10, 2}, {5, 2}, {5, 2}},      // vertical x = 5 against y = 2
      {{0, 2}, {10, 2}, {5, 0}, {5, 10}, {5, 2}, {5, 2}},
      {{5, 0}, {5, 10}, {7, 0}, {7, 10}, {0, 0}, {0, 0}},  // both vertical
      {{0, 1}, {4, 1}, {2, 0}, {2, 5}, {2, 1}, {2, 1}},
      {{0, 1}, {4, 1}, {0, 0}, {0, 5}, {0, 1}, {0, 0}},   // on the open end of ab
      {{-1, 1}, {4, 1}, {2, 5}, {2, 1}, {2, 1}, {2, 1}},  // on the closed end of cd
      {{0, 0}, {10, 10}, {20, 0}, {30, -10}, {10, 10}, {0, 0}},
  };
  for (const CrossingCase& k : cases) {
    SCOPED_TRACE(Describe(k.a, k.b, k.c, k.d));
    EXPECT_EQ(SNIJPUNT_TWEE_RECHTEN(k.a, k.b, k.c, k.d), k.lines);
    P s = {99, 99};
    SNIJDING(s, k.a, k.b, k.c, k.d);
    EXPECT_EQ(s, k.segments);
  }
}

TEST(PlaneGeometry, CrossingIsRoundedToTheGrid) {
  // y = x / 3 against x = 2: y 0.667 rounds to 1.
  EXPECT_EQ(SNIJPUNT_TWEE_RECHTEN({0, 0}, {3, 1}, {2, -5}, {2, 5}), (P{2, 1}));
}

TEST(PlaneGeometry, DirectionsOfSegments) {
  EXPECT_FALSE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {10, 5}, {0, 0}, {10, 5}));
  EXPECT_TRUE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {10, 5}, {10, 5}, {0, 0}));
  EXPECT_TRUE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {0, 5}, {0, 5}, {0, 0}));
  EXPECT_FALSE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {0, 5}, {3, 1}, {3, 9}));
  EXPECT_FALSE(
      RICHTINGS_COEFF_ONGELIJK({0, 0}, {0, 0}, {3, 9}, {3, 1}));  // a y difference 0 counts as positive
  EXPECT_TRUE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {0, 5}, {0, 0}, {5, 5}));       // one vertical
  EXPECT_FALSE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {10, 10}, {0, 0}, {10, 19}));  // slopes 1, 1.9
  EXPECT_TRUE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {10, 0}, {0, 0}, {100, 1}));    // against slope 0
}

TEST(PlaneGeometry, SideOfALine) {
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({3, 3}, {3, 3}, {100, -4}), 10);
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({0, 0}, {10, 10}, {5, 7}), 1);
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({0, 0}, {10, 10}, {5, 5}), 0);
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({0, 0}, {10, 10}, {5, 3}), -1);
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({0, 0}, {10, 3}, {5, 2}), 0);  // 1.5 rounds to 2: on the line
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({0, 0}, {0, 10}, {1, 5}), 1);
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({0, 0}, {0, 10}, {0, 50}), 0);
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({0, 0}, {0, 10}, {-1, 5}), -1);
}

TEST(PlaneGeometry, LineFormAndPosition) {
  const int32_t lines[][4] = {{0, 0, 10, 3}, {2, 1, 3, 20}, {-5, 7, 5, -7}, {0, 0, 7, 7}};
  for (const auto& l : lines) {
    SCOPED_TRACE(::testing::Message() << l[0] << "," << l[1] << " " << l[2] << "," << l[3]);
    float a = 0, b = 0, angle = 0;
    bool swapped = false;
    BEREKEN_RECHTE(l[0], l[1], l[2], l[3], a, b, angle, swapped);
    EXPECT_LE(std::fabs(a), 1.0f);
    EXPECT_EQ(swapped, std::abs(l[2] - l[0]) <= std::abs(l[3] - l[1]));
    EXPECT_FLOAT_EQ(angle, atan2f(static_cast<float>(l[3] - l[1]), static_cast<float>(l[2] - l[0])));
    EXPECT_EQ(LIGGING_PUNT(a, b, angle, swapped, l[0], l[1]), 0);
    EXPECT_EQ(LIGGING_PUNT(a, b, angle, swapped, l[2], l[3]), 0);
  }
  float a = 0, b = 0, angle = 0;
  bool swapped = false;
  BEREKEN_RECHTE(0, 0, 10, 3, a, b, angle, swapped);
  EXPECT_EQ(LIGGING_PUNT(a, b, 123.0f, swapped, 5, 2), -1);  // point above: the opposite sense
  EXPECT_EQ(LIGGING_PUNT(a, b, 0.0f, swapped, 5, 1), 1);
}

TEST(PlaneGeometry, LineThroughOnePointIsVertical) {
  float a = 9, b = 9, angle = 9;
  bool swapped = false;
  BEREKEN_RECHTE(4, 6, 4, 6, a, b, angle, swapped);
  EXPECT_EQ(a, 0.0f);
  EXPECT_EQ(b, 4.0f);
  EXPECT_TRUE(swapped);
  EXPECT_EQ(angle, 0.0f);
  EXPECT_EQ(LIGGING_PUNT(a, b, angle, swapped, 4, 100), 0);
}

TEST(PlaneGeometry, Distances) {
  EXPECT_DOUBLE_EQ(AFSTAND({0, 0}, {3, 4}), 5.0);
  EXPECT_DOUBLE_EQ(AFSTAND({INT32_MIN, 0}, {INT32_MAX, 0}), 4294967295.0);  // no 32-bit wrap
  P a = {1, 1}, b = {4, 5};
  EXPECT_DOUBLE_EQ(XY_AFSTAND(a, b), 5.0);
  P3 c = {1, 1, 100}, d = {4, 5, -7};
  EXPECT_DOUBLE_EQ(XY_AFSTAND(c, d), 5.0);
  EXPECT_DOUBLE_EQ(XY_AFSTAND(&c, &d), 5.0);
}

TEST(PlaneGeometry, AngleOnACircle) {
  P3 centre = {10, 10, 0};
  P3 below = {10, 0, 0}, right = {20, 10, 0}, left = {0, 10, 0}, above = {10, 20, 0};
  EXPECT_DOUBLE_EQ(BEREKEN_HOEK_XY(centre, below, 10.0), -kPi / 2);
  EXPECT_DOUBLE_EQ(BEREKEN_HOEK_XY(centre, above, 10.0), kPi / 2);
  EXPECT_DOUBLE_EQ(BEREKEN_HOEK_XY(centre, right, 9.0), 0.0);  // c beyond 1 clamps
  EXPECT_DOUBLE_EQ(BEREKEN_HOEK_XY(centre, left, 9.0), kPi);
  EXPECT_DOUBLE_EQ(BEREKEN_HOEK_XY(centre, below, 0.0), 0.0);  // chosen: radius 0 gives 0
}

TEST(PlaneGeometry, PointOnLineInSpace) {
  P3 a = {0, 0, 0}, b = {10, 20, 30}, on = {5, 10, 15}, off = {5, 11, 15};
  EXPECT_EQ(PUNT_OP_LIJN(a, b, on), 1);
  EXPECT_EQ(PUNT_OP_LIJN(a, b, off), 0);
  P3 flat = {10, 20, 0}, onFlat = {5, 10, 0};
  EXPECT_EQ(PUNT_OP_LIJN(a, flat, onFlat), 0);  // no extent in z
}

TEST(PlaneGeometry, DistanceToSegment) {
  const float a[2] = {0, 0}, b[2] = {10, 0}, v[2] = {0, 10};
  const float inLine[2] = {5, 0}, p1[2] = {5, 3}, p2[2] = {-3, 4}, p3[2] = {13, 4};
  EXPECT_FLOAT_EQ(DISTANCE_POINT_TO_LINE_SEGMENT_2D(p1, a, b), 3.0f);
  EXPECT_FLOAT_EQ(DISTANCE_POINT_TO_LINE_SEGMENT_2D(p2, a, b), 5.0f);
  EXPECT_FLOAT_EQ(DISTANCE_POINT_TO_LINE_SEGMENT_2D(p3, a, b), 5.0f);
  EXPECT_FLOAT_EQ(DISTANCE_POINT_TO_LINE_SEGMENT_2D(inLine, a, v), 5.0f);
  // a equal to b: the first branch.
  const float pa[2] = {5, 0}, pb[2] = {3, 4};
  EXPECT_FLOAT_EQ(DISTANCE_POINT_TO_LINE_SEGMENT_2D(pa, a, a), 5.0f);
  EXPECT_FLOAT_EQ(DISTANCE_POINT_TO_LINE_SEGMENT_2D(pb, a, a), 5.0f);
  // Sloped segment: foot inside, and beyond the ends.
  const float d0[2] = {0, 0}, d1[2] = {10, 10}, mid[2] = {0, 10}, far[2] = {12, 12};
  EXPECT_NEAR(DISTANCE_POINT_TO_LINE_SEGMENT_2D(mid, d0, d1), std::sqrt(50.0f), 1e-5f);
  EXPECT_NEAR(DISTANCE_POINT_TO_LINE_SEGMENT_2D(far, d0, d1), std::sqrt(8.0f), 1e-5f);
}

TEST(PlaneGeometry, Projection) {
  const float p[2] = {3, 7}, a[2] = {1, 0}, b[2] = {1, 10}, h[2] = {10, 2};
  float r[2];
  PROJECTION_2D(r, p, a, b);
  EXPECT_EQ(r[0], 1.0f);
  EXPECT_EQ(r[1], 7.0f);
  const float h2[2] = {20, 2};
  PROJECTION_2D(r, p, h, h2);
  EXPECT_EQ(r[0], 3.0f);
  EXPECT_EQ(r[1], 2.0f);
  const float d0[2] = {0, 0}, d1[2] = {10, 10}, q[2] = {0, 10};
  PROJECTION_2D(r, q, d0, d1);
  EXPECT_FLOAT_EQ(r[0], 5.0f);
  EXPECT_FLOAT_EQ(r[1], 5.0f);
}

TEST(PlaneGeometry, MiddleTruncatesTowardZero) {
  P3 p = {0, -1, 5}, q = {3, 0, -8}, r = {1, 1, 1}, m = {9, 9, 9};
  MIDDLE(m, &p, &q);
  EXPECT_EQ(m.x, 1);
  EXPECT_EQ(m.y, 0);
  EXPECT_EQ(m.z, -1);
  MIDDLE(m, &p, &q, &r);
  EXPECT_EQ(m.x, 1);
  EXPECT_EQ(m.y, 0);
  EXPECT_EQ(m.z, 0);
}

// ---- members of CONTOUR ----

TEST(ContourGeometry, TurningDirectionByExtremePoints) {
  using testing_support::Circle;
  using testing_support::NewContour;
  using testing_support::Rectangle;
  const std::vector<std::vector<P>> shapes = {
      Rectangle(0, 0, 10, 10, true), Circle(0, 0, 100, 17, true), {{0, 0}, {5, 9}, {10, 10}, {3, 1}},
      {{0, 0}, {10, 10}, {6, 2}},  // folded extremes: decided by the diagonal
      {{0, 0}, {2, 8}, {10, 10}},
  };
  for (const auto& shape : shapes) {
    CONTOUR* c = NewContour(shape);
    SCOPED_TRACE(::testing::Message()
                 << "points " << c->NumPoints << " first (" << shape[0].x << "," << shape[0].y << ")");
    EXPECT_EQ(c->RECHTS_DRAAIEND_OUD(), c->RECHTS_DRAAIEND());
    c->KEER_DRAAIZIN_OM();
    EXPECT_EQ(c->RECHTS_DRAAIEND_OUD(), c->RECHTS_DRAAIEND());
    c->Clear();
    delete c;
  }
  CONTOUR empty;
  EXPECT_TRUE(empty.RECHTS_DRAAIEND_OUD());
  CONTOUR* line = NewContour({{0, 0}, {5, 5}, {10, 10}});
  EXPECT_TRUE(line->RECHTS_DRAAIEND_OUD());  // every point on the diagonal
  line->Clear();
  delete line;
}

TEST(ContourGeometry, CrossingsWithASegment) {
  CONTOUR* square = testing_support::NewContour(testing_support::Rectangle(0, 0, 10, 10, true));
  for (unsigned char closed : {0, 1}) {
    square->Closed = closed;
    int32_t x1 = -5, y1 = 5, x2 = 15, y2 = 5;
    EXPECT_EQ(square->INTERSECT_WITH_LINE(x1, y1, x2, y2), 2) << "closed " << int(closed);
    EXPECT_EQ(x1, -5);
  }
  int32_t x1 = 20, y1 = 0, x2 = 30, y2 = 10;  // beside the box
  EXPECT_EQ(square->INTERSECT_WITH_LINE(x1, y1, x2, y2), 0);
  x1 = 5, y1 = 5, x2 = 15, y2 = 5;  // from inside: one side
  EXPECT_EQ(square->INTERSECT_WITH_LINE(x1, y1, x2, y2), 1);
  x1 = -5, y1 = -5, x2 = 5, y2 = 5;  // through the corner (0,0): counted by both edges
  EXPECT_EQ(square->INTERSECT_WITH_LINE(x1, y1, x2, y2), 2);
  square->Clear();
  delete square;
  CONTOUR empty;
  x1 = 0, y1 = 0, x2 = 10, y2 = 10;
  EXPECT_EQ(empty.INTERSECT_WITH_LINE(x1, y1, x2, y2), 0);
}

}  // namespace
