#include "geometry/plane_geometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "layer/contour.h"
#include "support/layer_builders.h"

namespace {

using P = MMPoint2d<long>;
using P3 = MMPoint3dIntegerTypes<long>;
using testing_support::NewContour;

std::string Describe(std::initializer_list<P> points) {
  std::string s;
  for (const P& p : points)
    s += "(" + std::to_string(p.x) + "," + std::to_string(p.y) + ") ";
  return s;
}

std::array<int32_t, 3> Xyz(const P3& p) {
  return {p.x, p.y, p.z};
}

void Release(CONTOUR* c) {
  c->Clear();
  delete c;
}

TEST(PlaneGeometry, CrossingsOfLinesAndSegments) {
  struct {
    P a, b, c, d;
    P lines;     // SNIJPUNT_TWEE_RECHTEN
    P segments;  // SNIJDING
  } const cases[] = {
      {{0, 0}, {10, 10}, {0, 10}, {10, 0}, {5, 5}, {5, 5}},
      {{0, 0}, {10, 0}, {0, 5}, {10, 5}, {0, 0}, {0, 0}},      // parallel
      {{0, 0}, {10, 10}, {20, 20}, {30, 30}, {0, 0}, {0, 0}},  // one line
      {{5, 0}, {5, 10}, {0, 2}, {10, 2}, {5, 2}, {5, 2}},      // vertical x = 5 against y = 2
      {{5, 0}, {5, 10}, {7, 0}, {7, 10}, {0, 0}, {0, 0}},      // both vertical
      {{0, 1}, {4, 1}, {0, 0}, {0, 5}, {0, 1}, {0, 0}},        // on the open end of ab
      {{-4, 1}, {0, 1}, {0, 0}, {0, 5}, {0, 1}, {0, 0}},       // on its other open end
      {{-1, 1}, {4, 1}, {2, 5}, {2, 1}, {2, 1}, {2, 1}},       // on the closed end of cd
      {{-1, 5}, {4, 5}, {2, 5}, {2, 1}, {2, 5}, {2, 5}},       // on the closed start of a falling cd
      {{0, 0}, {10, 10}, {20, 0}, {30, -10}, {10, 10}, {0, 0}},
  };
  for (const auto& k : cases) {
    SCOPED_TRACE(Describe({k.a, k.b, k.c, k.d}));
    EXPECT_EQ(SNIJPUNT_TWEE_RECHTEN(k.a, k.b, k.c, k.d), k.lines);
    P s = {99, 99};
    SNIJDING(s, k.a, k.b, k.c, k.d);
    EXPECT_EQ(s, k.segments);
  }
  // y = x / 3 against x = 2: y 0.667 rounds to 1.
  EXPECT_EQ(SNIJPUNT_TWEE_RECHTEN({0, 0}, {3, 1}, {2, -5}, {2, 5}), (P{2, 1}));
}

TEST(PlaneGeometry, DirectionsAndSides) {
  EXPECT_FALSE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {10, 5}, {0, 0}, {10, 5}));
  EXPECT_TRUE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {10, 5}, {10, 5}, {0, 0}));
  EXPECT_FALSE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {0, 5}, {3, 1}, {3, 9}));
  EXPECT_FALSE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {0, 0}, {3, 9}, {3, 1}));  // y difference 0 counts positive
  EXPECT_TRUE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {0, 5}, {0, 0}, {5, 5}));   // one vertical
  EXPECT_FALSE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {10, 10}, {0, 0}, {10, 19}));  // slopes 1, 1.9
  EXPECT_TRUE(RICHTINGS_COEFF_ONGELIJK({0, 0}, {10, 0}, {0, 0}, {100, 1}));    // against slope 0
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({3, 3}, {3, 3}, {100, -4}), 10);
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({0, 0}, {10, 10}, {5, 7}), 1);
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({0, 0}, {10, 10}, {5, 3}), -1);
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({0, 0}, {10, 3}, {5, 2}), 0);  // 1.5 rounds to 2: on the line
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({0, 0}, {0, 10}, {1, 5}), 1);
  EXPECT_EQ(LIGGING_PUNT_TOV_XY_RECHTE({0, 0}, {0, 10}, {-1, 5}), -1);
}

TEST(PlaneGeometry, LineFormAndPosition) {
  const int32_t lines[][4] = {{0, 0, 10, 3}, {2, 1, 3, 20}, {-5, 7, 5, -7}, {0, 0, 7, 7}};
  float a = 0, b = 0, angle = 0;
  bool swapped = false;
  for (const auto& l : lines) {
    SCOPED_TRACE(::testing::Message() << l[0] << "," << l[1] << " " << l[2] << "," << l[3]);
    BEREKEN_RECHTE(l[0], l[1], l[2], l[3], a, b, angle, swapped);
    EXPECT_LE(std::fabs(a), 1.0f);
    EXPECT_EQ(swapped, std::abs(l[2] - l[0]) <= std::abs(l[3] - l[1]));
    EXPECT_FLOAT_EQ(angle, atan2f(static_cast<float>(l[3] - l[1]), static_cast<float>(l[2] - l[0])));
    EXPECT_EQ(LIGGING_PUNT(a, b, angle, swapped, l[0], l[1]), 0);
    EXPECT_EQ(LIGGING_PUNT(a, b, angle, swapped, l[2], l[3]), 0);
  }
  BEREKEN_RECHTE(0, 0, 10, 3, a, b, angle, swapped);
  EXPECT_EQ(LIGGING_PUNT(a, b, 123.0f, swapped, 5, 2), -1);  // point above: the opposite sense
  EXPECT_EQ(LIGGING_PUNT(a, b, 0.0f, swapped, 5, 1), 1);
  // A line through one point is vertical.
  BEREKEN_RECHTE(4, 6, 4, 6, a, b, angle, swapped);
  EXPECT_EQ(a, 0.0f);
  EXPECT_EQ(b, 4.0f);
  EXPECT_TRUE(swapped);
  EXPECT_EQ(LIGGING_PUNT(a, b, angle, swapped, 4, 100), 0);
}

TEST(PlaneGeometry, DistancesAnglesAndMiddles) {
  EXPECT_DOUBLE_EQ(AFSTAND({0, 0}, {3, 4}), 5.0);
  EXPECT_DOUBLE_EQ(AFSTAND({INT32_MIN, 0}, {INT32_MAX, 0}), 4294967295.0);  // no 32-bit wrap
  P3 c = {1, 1, 100}, d = {4, 5, -7};
  EXPECT_DOUBLE_EQ(XY_AFSTAND(&c, &d), 5.0);
  P3 centre = {10, 10, 0}, below = {10, 0, 0}, right = {20, 10, 0}, left = {0, 10, 0};
  EXPECT_DOUBLE_EQ(BEREKEN_HOEK_XY(centre, below, 10.0), -kPi / 2);
  EXPECT_DOUBLE_EQ(BEREKEN_HOEK_XY(centre, right, 9.0), 0.0);  // c beyond 1 clamps
  EXPECT_DOUBLE_EQ(BEREKEN_HOEK_XY(centre, left, 9.0), kPi);
  EXPECT_DOUBLE_EQ(BEREKEN_HOEK_XY(centre, below, 0.0), 0.0);  // chosen: radius 0 gives 0
  P3 o = {0, 0, 0}, e = {10, 20, 30}, on = {5, 10, 15}, off = {5, 11, 15}, flat = {10, 20, 0},
     onFlat = {5, 10, 0};
  EXPECT_EQ(PUNT_OP_LIJN(o, e, on), 1);
  EXPECT_EQ(PUNT_OP_LIJN(o, e, off), 0);
  EXPECT_EQ(PUNT_OP_LIJN(o, flat, onFlat), 0);  // no extent in z
  P3 p = {0, -1, 5}, q = {3, 0, -8}, r = {1, 1, 1}, m = {9, 9, 9};
  MIDDLE(m, &p, &q);  // halves truncate toward zero
  EXPECT_EQ(Xyz(m), (std::array<int32_t, 3>{1, 0, -1}));
  MIDDLE(m, &p, &q, &r);
  EXPECT_EQ(Xyz(m), (std::array<int32_t, 3>{1, 0, 0}));
}

// Small random whole numbers, the same sequence in every run.
struct Draw {
  uint32_t state = 99;
  int32_t operator()(int32_t range) {
    state = state * 1664525u + 1013904223u;
    return static_cast<int32_t>((state >> 8) % static_cast<uint32_t>(2 * range + 1)) - range;
  }
};

// Distance to a segment and the foot on its line against double arithmetic of
// the test's own, on random points (axis-parallel segments among them).
TEST(PlaneGeometry, DistanceToAndProjectionOnASegment) {
  Draw draw;
  for (int round = 0; round < 400; ++round) {
    const float p[2] = {float(draw(20)), float(draw(20))}, a[2] = {float(draw(20)), float(draw(20))};
    const float b[2] = {round % 4 == 0 ? a[0] : float(draw(20)), round % 4 == 1 ? a[1] : float(draw(20))};
    SCOPED_TRACE(::testing::Message() << "p " << p[0] << "," << p[1] << " a " << a[0] << "," << a[1] << " b "
                                      << b[0] << "," << b[1]);
    const double ux = double(b[0]) - a[0], uy = double(b[1]) - a[1], wx = double(p[0]) - a[0],
                 wy = double(p[1]) - a[1];
    const double length2 = ux * ux + uy * uy;
    const double t = length2 == 0.0 ? 0.0 : std::min(1.0, std::max(0.0, (wx * ux + wy * uy) / length2));
    const double distance = std::hypot(wx - t * ux, wy - t * uy);
    EXPECT_NEAR(DISTANCE_POINT_TO_LINE_SEGMENT_2D(p, a, b), distance, 1e-4 * (1.0 + distance));
    if (length2 == 0.0)
      continue;
    float foot[2];
    PROJECTION_2D(foot, p, a, b);
    const double fx = double(foot[0]) - a[0], fy = double(foot[1]) - a[1];
    EXPECT_NEAR((fx * uy - fy * ux) / std::sqrt(length2), 0.0, 1e-3);                // on the line
    EXPECT_NEAR(((wx - fx) * ux + (wy - fy) * uy) / std::sqrt(length2), 0.0, 1e-3);  // square to it
  }
}

// ---- members of CONTOUR ----

TEST(ContourGeometry, TurningDirectionByExtremePoints) {
  using testing_support::Circle;
  const std::vector<std::vector<P>> shapes = {
      Circle(0, 0, 100, 17, true),
      {{0, 0}, {5, 9}, {10, 10}, {3, 1}},
      {{0, 0}, {10, 10}, {6, 2}},  // folded extremes: decided by the diagonal
      {{0, 0}, {2, 8}, {10, 10}},
      // One point holds two extremes, the other two stay apart: no fold (the
      // first point off the diagonal would mislead).
      {{10, 15}, {0, 4}, {4, 18}, {20, 20}, {18, 0}},
      {{10, 5}, {0, 16}, {4, 2}, {20, 0}, {18, 20}},
  };
  for (const auto& shape : shapes) {
    CONTOUR* c = NewContour(shape);
    SCOPED_TRACE(::testing::Message() << "points " << c->NumPoints << " first " << Describe({shape[0]}));
    EXPECT_EQ(c->RECHTS_DRAAIEND_OUD(), c->RECHTS_DRAAIEND());
    c->KEER_DRAAIZIN_OM();
    EXPECT_EQ(c->RECHTS_DRAAIEND_OUD(), c->RECHTS_DRAAIEND());
    Release(c);
  }
  CONTOUR empty;
  EXPECT_TRUE(empty.RECHTS_DRAAIEND_OUD());
  CONTOUR* line = NewContour({{0, 0}, {5, 5}, {10, 10}});
  EXPECT_TRUE(line->RECHTS_DRAAIEND_OUD());  // every point on the diagonal
  Release(line);
}

TEST(ContourGeometry, CrossingsWithASegment) {
  CONTOUR* square = NewContour(testing_support::Rectangle(0, 0, 10, 10, true));
  auto crossings = [](CONTOUR& c, int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
    return c.INTERSECT_WITH_LINE(x1, y1, x2, y2);
  };
  for (unsigned char closed : {0, 1}) {
    square->Closed = closed;
    EXPECT_EQ(crossings(*square, -5, 5, 15, 5), 2) << "closed " << int(closed);
  }
  EXPECT_EQ(crossings(*square, 20, 0, 30, 10), 0);  // beside the box
  EXPECT_EQ(crossings(*square, 5, 5, 15, 5), 1);    // from inside: one side
  EXPECT_EQ(crossings(*square, -5, -5, 5, 5), 2);   // through the corner (0,0): counted by both edges
  EXPECT_EQ(crossings(*square, 5, 10, 5, 20), 1);   // from the top edge outwards
  EXPECT_EQ(crossings(*square, 5, -10, 5, 0), 1);   // up to the bottom edge
  Release(square);
  CONTOUR empty;
  EXPECT_EQ(crossings(empty, 0, 0, 10, 10), 0);
}

}  // namespace
