#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "layer/contour_layer.h"
#include "support/contour_processing_points.h"
#include "support/layer_builders.h"
#include "support/vector_blocks.h"

namespace {

using P = MMPoint2d<long>;
using testing_support::Describe;
using testing_support::NewContour;
using testing_support::PointsOf;

struct OneContourLayer : testing_support::OwningLayer {
  explicit OneContourLayer(const std::vector<P>& points, unsigned char closed = 1) { Add(points, closed); }
};

TEST(Smoothing, OldPointsStayAtEveryFactorthIndexOnTheCircle) {
  const std::vector<P> square = {{100, 0}, {0, 100}, {-100, 0}, {0, -100}};
  for (unsigned char closed : {0, 1}) {
    SCOPED_TRACE(::testing::Message() << "closed " << int(closed));
    OneContourLayer same(square, closed);
    same.layer.FirstContour->SMOOTH_CONTOUR(1);
    EXPECT_EQ(same.Points(), square);
    OneContourLayer t(square, closed);
    t.layer.FirstContour->SMOOTH_CONTOUR(3);
    const std::vector<P> out = t.Points();
    ASSERT_EQ(out.size(), closed ? 12u : 10u) << Describe(out);
    for (size_t k = 0; k < square.size(); ++k)
      EXPECT_EQ(out[3 * k], square[k]) << "k " << k;
    // The square is inscribed in a circle of radius 100: every new point lies
    // on it, to within the truncation.
    for (const P& p : out)
      EXPECT_NEAR(std::hypot(p.x, p.y), 100.0, 2.0) << Describe(out);
  }
  OneContourLayer line({{0, 0}, {30, 0}, {60, 0}, {60, 30}}, 0);  // collinear: stays on the line
  line.layer.FirstContour->SMOOTH_CONTOUR(3);
  const std::vector<P> out = line.Points();
  ASSERT_EQ(out.size(), 10u);
  EXPECT_EQ(out[1], (P{10, 0})) << Describe(out);
  EXPECT_EQ(out[2], (P{20, 0})) << Describe(out);
}

TEST(Smoothing, DegenerateRequestsLeaveTheContour) {
  OneContourLayer t({{0, 0}, {10, 0}, {10, 10}});
  t.layer.FirstContour->SMOOTH_CONTOUR(0);
  t.layer.FirstContour->SMOOTH_CONTOUR(-3);
  EXPECT_EQ(t.Points(), (std::vector<P>{{0, 0}, {10, 0}, {10, 10}}));
  OneContourLayer two({{0, 0}, {10, 0}});
  two.layer.FirstContour->SMOOTH_CONTOUR(4);
  EXPECT_EQ(two.Points(), (std::vector<P>{{0, 0}, {10, 0}}));
  CONTOUR empty;
  empty.SMOOTH_CONTOUR(3);
  EXPECT_EQ(empty.NumPoints, 0);
}

TEST(Smoothing, CornerCuttingHalvesTowardZero) {
  OneContourLayer t({{0, 0}, {10, 0}, {10, 10}});
  t.layer.SMOOTH_LAAG();
  EXPECT_EQ(t.Points(), (std::vector<P>{{0, 0}, {5, 0}, {10, 5}, {10, 10}}));
  OneContourLayer negative({{-3, 0}, {0, 0}}, 0);
  negative.layer.AddContourAtEnd(new CONTOUR);  // chosen: left as it is
  negative.layer.SMOOTH_LAAG();
  EXPECT_EQ(negative.Points(), (std::vector<P>{{-3, 0}, {-1, 0}, {0, 0}}));
  EXPECT_EQ(negative.layer.LastContour->NumPoints, 0);
}

// Translation, mirroring in x and 90-degree rotation are covered by the
// whole-layer transform tests; these are the contour layer's own edges.
TEST(Transforms, RotationAndScalingEdges) {
  OneContourLayer t({{0, 10}, {0, 20}, {-5, 20}});
  t.layer.MaxX = 1234;  // stale on purpose
  t.layer.ROTEER_LAAG({0, 0}, 0.0f);
  EXPECT_EQ(t.layer.MaxX, 1234);
  t.layer.ROTEER_LAAG({0, 0}, 360.0f);  // rounded: no drift
  EXPECT_EQ(t.Points(), (std::vector<P>{{0, 10}, {0, 20}, {-5, 20}}));
  EXPECT_EQ(t.layer.MaxX, 0);
  t.layer.ROTEER_LAAG({5, 5}, -90.0f);  // around another centre, clockwise
  EXPECT_EQ(t.Points(), (std::vector<P>{{10, 10}, {20, 10}, {20, 15}}));

  OneContourLayer s({{3, 7}, {-5, 1}, {123456, -98765}});
  s.layer.BEPAAL_EXTREMA();
  s.layer.HERSCHAAL_LAAG({1, 0}, 1.0f, 1.0f);
  EXPECT_EQ(s.Points(), (std::vector<P>{{3, 7}, {-5, 1}, {123456, -98765}}));
  s.layer.HERSCHAAL_LAAG({1, 0}, 2.0f, 0.5f);
  EXPECT_EQ(s.Points(), (std::vector<P>{{5, 3}, {-11, 0}, {246911, -49382}}));
  EXPECT_EQ(s.layer.MaxY, 3);                   // 7 * 0.5 = 3.5, truncated
  s.layer.HERSCHAAL_LAAG({0, 0}, -1.0f, 1.0f);  // minimum and maximum change places in value
  EXPECT_EQ(s.layer.MinX, 11);
  EXPECT_EQ(s.layer.MaxX, -246911);
}

TEST(Transforms, MirrorInYKeepsTheTurningFlag) {
  CONTOUR_LAYER empty;
  empty.SPIEGEL_LAAG_ROND_Y({3, 3});
  EXPECT_EQ(testing_support::ExtentsOf(empty), testing_support::ExtentsOf(CONTOUR_LAYER()));
  OneContourLayer t({{1, 8}, {3, 6}});
  t.layer.BEPAAL_EXTREMA();
  t.layer.FirstContour->RightHanded = 1;
  t.layer.SPIEGEL_LAAG_ROND_Y({10, 0});
  EXPECT_EQ(t.Points(), (std::vector<P>{{19, 8}, {17, 6}}));
  EXPECT_EQ(testing_support::ExtentsOf(t.layer), "17 6 19 8");
  EXPECT_EQ(t.layer.FirstContour->RightHanded, 1);
}

TEST(Circles, RejectedSteps) {
  CONTOUR_LAYER layer;
  for (float step : {46.0f, -1.0f, 90.0f, 0.0f, NAN})  // chosen: step 0 adds nothing
    layer.ZET_CIRKEL_IN_CONTOUR_LAYER(100, 0, 0, step);
  layer.ZET_CIRKEL_IN_CONTOUR_LAYER(0, 0, 0, 10.0f);
  EXPECT_EQ(layer.FirstContour, nullptr);
}

TEST(Circles, PointCountsAndPlacement) {
  const struct {
    float step;
    int32_t count;
  } cases[] = {{45.0f, 8}, {10.0f, 36}, {7.0f, 51}};
  for (const auto& k : cases) {
    SCOPED_TRACE(::testing::Message() << "step " << k.step);
    testing_support::OwningLayer t({{{1000, 1000}, {1001, 1001}}});
    t.layer.ZET_CIRKEL_IN_CONTOUR_LAYER(100, 50, -20, k.step);
    ASSERT_EQ(t.layer.NumContours, 2);
    const CONTOUR* c = t.layer.LastContour;
    EXPECT_EQ(t.layer.FirstContour->NextContour, c);
    EXPECT_EQ(c->NumPoints, k.count);
    EXPECT_EQ(c->Points[0], (P{150, -20}));
    EXPECT_EQ(c->Closed, 1);
    EXPECT_EQ(c->Type, 1);
    EXPECT_EQ(c->Outer, kNotDetermined);
    EXPECT_FALSE(c->RECHTS_DRAAIEND());  // counter-clockwise
    int32_t lowest = c->Points[0].y;
    for (int32_t i = 0; i < c->NumPoints; ++i) {
      EXPECT_NEAR(std::hypot(c->Points[i].x - 50, c->Points[i].y + 20), 100.0, 1.5) << "point " << i;
      lowest = std::min(lowest, c->Points[i].y);
    }
    EXPECT_EQ(t.layer.MaxX, 1001);
    EXPECT_EQ(t.layer.MinY, lowest);
  }
  // At 45 degrees the diagonal points are truncated toward the centre.
  testing_support::OwningLayer t;
  t.layer.ZET_CIRKEL_IN_CONTOUR_LAYER(100, 0, 0, 45.0f);
  EXPECT_EQ(t.Points()[1], (P{70, 70})) << Describe(t.Points());
  EXPECT_EQ(t.Points()[5], (P{-70, -70})) << Describe(t.Points());
}

}  // namespace
