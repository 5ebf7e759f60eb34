#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "layer/contour_layer.h"
#include "support/contour_processing_points.h"
#include "support/layer_builders.h"

namespace {

using P = MMPoint2d<long>;
using testing_support::Describe;
using testing_support::NewContour;
using testing_support::PointsOf;

struct OneContourLayer : testing_support::OwningLayer {
  explicit OneContourLayer(const std::vector<P>& points, unsigned char closed = 1) { Add(points, closed); }
};

// ---- SMOOTH_CONTOUR ----

TEST(Smoothing, FactorOneGivesTheSamePointsInANewArray) {
  for (unsigned char closed : {0, 1}) {
    const std::vector<P> square = testing_support::Rectangle(0, 0, 100, 100, true);
    OneContourLayer t(square, closed);
    const MMPoint2d<long>* before = t.layer.FirstContour->Points;
    t.layer.FirstContour->SMOOTH_CONTOUR(1);
    EXPECT_EQ(t.Points(), square) << "closed " << int(closed);
    (void)before;  // the old array is released; its address may be reused
  }
}

TEST(Smoothing, OldPointsStayAtEveryFactorthIndex) {
  const std::vector<P> square = {{100, 0}, {0, 100}, {-100, 0}, {0, -100}};
  for (unsigned char closed : {0, 1}) {
    SCOPED_TRACE(::testing::Message() << "closed " << int(closed));
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
}

TEST(Smoothing, CollinearNeighboursStayOnTheLine) {
  OneContourLayer t({{0, 0}, {30, 0}, {60, 0}, {60, 30}}, 0);
  t.layer.FirstContour->SMOOTH_CONTOUR(3);
  const std::vector<P> out = t.Points();
  ASSERT_EQ(out.size(), 10u);
  EXPECT_EQ(out[1], (P{10, 0})) << Describe(out);
  EXPECT_EQ(out[2], (P{20, 0})) << Describe(out);
}

TEST(Smoothing, DegenerateRequestsLeaveTheContour) {
  OneContourLayer t({{0, 0}, {10, 0}, {10, 10}});
  t.layer.FirstContour->SMOOTH_CONTOUR(0);
  t.layer.FirstContour->SMOOTH_CONTOUR(-3);
  EXPECT_EQ(t.Points(), (std::vector<P>{{0, 0}, {10, 0}, {10, 10}}));
  for (unsigned char closed : {0, 1}) {
    OneContourLayer two({{0, 0}, {10, 0}}, closed);
    two.layer.FirstContour->SMOOTH_CONTOUR(4);
    EXPECT_EQ(two.Points(), (std::vector<P>{{0, 0}, {10, 0}}));
  }
  CONTOUR empty;
  empty.SMOOTH_CONTOUR(3);
  EXPECT_EQ(empty.NumPoints, 0);
}

// ---- SMOOTH_LAAG ----

TEST(Smoothing, CornerCutting) {
  OneContourLayer t({{0, 0}, {10, 0}, {10, 10}});
  t.layer.SMOOTH_LAAG();
  EXPECT_EQ(t.Points(), (std::vector<P>{{0, 0}, {5, 0}, {10, 5}, {10, 10}}));
  OneContourLayer negative({{-3, 0}, {0, 0}}, 0);
  negative.layer.SMOOTH_LAAG();
  EXPECT_EQ(negative.Points(), (std::vector<P>{{-3, 0}, {-1, 0}, {0, 0}}));
  negative.layer.AddContourAtEnd(new CONTOUR);  // chosen: left as it is
  negative.layer.SMOOTH_LAAG();
  EXPECT_EQ(negative.layer.LastContour->NumPoints, 0);
}

// ---- affine transforms ----

TEST(Transforms, Rotation) {
  OneContourLayer t({{10, 0}, {20, 0}, {20, 5}});
  t.layer.MaxX = 1234;  // stale on purpose
  t.layer.ROTEER_LAAG({0, 0}, 0.0f);
  EXPECT_EQ(t.layer.MaxX, 1234);
  t.layer.ROTEER_LAAG({0, 0}, 90.0f);
  EXPECT_EQ(t.Points(), (std::vector<P>{{0, 10}, {0, 20}, {-5, 20}}));
  EXPECT_EQ(t.layer.MaxY, 20);
  EXPECT_EQ(t.layer.MinX, -5);
  t.layer.MaxX = 1234;
  t.layer.ROTEER_LAAG({0, 0}, 360.0f);
  EXPECT_EQ(t.Points(), (std::vector<P>{{0, 10}, {0, 20}, {-5, 20}}));
  EXPECT_EQ(t.layer.MaxX, 0);
  t.layer.ROTEER_LAAG({5, 5}, -90.0f);  // around another centre, clockwise
  EXPECT_EQ(t.Points(), (std::vector<P>{{10, 10}, {20, 10}, {20, 15}}));
}

TEST(Transforms, EmptyLayerKeepsItsSentinels) {
  CONTOUR_LAYER layer;
  layer.TRANSLEER_LAAG(5, 5);
  layer.HERSCHAAL_LAAG({1, 1}, 2.0f, 2.0f);
  layer.SPIEGEL_LAAG({3, 3});
  layer.SPIEGEL_LAAG_ROND_Y({3, 3});
  EXPECT_EQ(layer.MaxX, kEmptyExtentMax);
  EXPECT_EQ(layer.MaxY, kEmptyExtentMax);
  EXPECT_EQ(layer.MinX, kEmptyExtentMin);
  EXPECT_EQ(layer.MinY, kEmptyExtentMin);
}

TEST(Transforms, TranslationMovesPointsAndExtents) {
  OneContourLayer t({{0, 0}, {10, 5}});
  t.layer.BEPAAL_EXTREMA();
  t.layer.TRANSLEER_LAAG(3, -4);
  EXPECT_EQ(t.Points(), (std::vector<P>{{3, -4}, {13, 1}}));
  EXPECT_EQ(t.layer.MinX, 3);
  EXPECT_EQ(t.layer.MaxX, 13);
  EXPECT_EQ(t.layer.MinY, -4);
  EXPECT_EQ(t.layer.MaxY, 1);
}

TEST(Transforms, Scaling) {
  OneContourLayer t({{3, 7}, {-5, 1}, {123456, -98765}});
  t.layer.BEPAAL_EXTREMA();
  t.layer.HERSCHAAL_LAAG({1, 0}, 1.0f, 1.0f);
  EXPECT_EQ(t.Points(), (std::vector<P>{{3, 7}, {-5, 1}, {123456, -98765}}));
  t.layer.HERSCHAAL_LAAG({1, 0}, 2.0f, 0.5f);
  EXPECT_EQ(t.Points(), (std::vector<P>{{5, 3}, {-11, 0}, {246911, -49382}}));
  EXPECT_EQ(t.layer.MinX, -11);
  EXPECT_EQ(t.layer.MaxY, 3);                   // 7 * 0.5 = 3.5, truncated
  t.layer.HERSCHAAL_LAAG({0, 0}, -1.0f, 1.0f);  // minimum and maximum change places in value
  EXPECT_EQ(t.layer.MinX, 11);
  EXPECT_EQ(t.layer.MaxX, -246911);
}

TEST(Transforms, Mirrors) {
  OneContourLayer t({{1, 2}, {3, 4}});
  t.layer.BEPAAL_EXTREMA();
  t.layer.FirstContour->RightHanded = 1;
  t.layer.SPIEGEL_LAAG({0, 5});
  EXPECT_EQ(t.Points(), (std::vector<P>{{1, 8}, {3, 6}}));
  EXPECT_EQ(t.layer.MinY, 6);
  EXPECT_EQ(t.layer.MaxY, 8);
  t.layer.SPIEGEL_LAAG_ROND_Y({10, 0});
  EXPECT_EQ(t.Points(), (std::vector<P>{{19, 8}, {17, 6}}));
  EXPECT_EQ(t.layer.MinX, 17);
  EXPECT_EQ(t.layer.MaxX, 19);
  EXPECT_EQ(t.layer.FirstContour->RightHanded, 1);
}

// ---- circles ----

TEST(Circles, RejectedSteps) {
  CONTOUR_LAYER layer;
  layer.ZET_CIRKEL_IN_CONTOUR_LAYER(100, 0, 0, 46.0f);
  layer.ZET_CIRKEL_IN_CONTOUR_LAYER(100, 0, 0, -1.0f);
  layer.ZET_CIRKEL_IN_CONTOUR_LAYER(100, 0, 0, 90.0f);
  layer.ZET_CIRKEL_IN_CONTOUR_LAYER(0, 0, 0, 10.0f);
  layer.ZET_CIRKEL_IN_CONTOUR_LAYER(100, 0, 0, 0.0f);  // chosen: step 0 adds nothing
  layer.ZET_CIRKEL_IN_CONTOUR_LAYER(100, 0, 0, NAN);
  EXPECT_EQ(layer.NumContours, 0);
  EXPECT_EQ(layer.FirstContour, nullptr);
}

TEST(Circles, PointCountsAndPlacement) {
  const struct {
    float step;
    int32_t count;
  } cases[] = {{45.0f, 8}, {10.0f, 36}, {7.0f, 51}};
  for (const auto& k : cases) {
    SCOPED_TRACE(::testing::Message() << "step " << k.step);
    CONTOUR_LAYER layer;
    layer.AddContourAtEnd(NewContour({{1000, 1000}, {1001, 1001}}));
    layer.ZET_CIRKEL_IN_CONTOUR_LAYER(100, 50, -20, k.step);
    ASSERT_EQ(layer.NumContours, 2);
    const CONTOUR* c = layer.LastContour;
    EXPECT_EQ(layer.FirstContour->NextContour, c);
    EXPECT_EQ(c->NumPoints, k.count);
    EXPECT_EQ(c->Points[0], (P{150, -20}));
    EXPECT_EQ(c->Closed, 1);
    EXPECT_EQ(c->Type, 1);
    EXPECT_EQ(c->Outer, kNotDetermined);
    EXPECT_EQ(c->Owner, nullptr);
    EXPECT_FALSE(c->RECHTS_DRAAIEND());  // counter-clockwise
    for (int32_t i = 0; i < c->NumPoints; ++i) {
      EXPECT_NEAR(std::hypot(c->Points[i].x - 50, c->Points[i].y + 20), 100.0, 1.5) << "point " << i;
    }
    int32_t lowest = c->Points[0].y;
    for (int32_t i = 0; i < c->NumPoints; ++i)
      lowest = std::min(lowest, c->Points[i].y);
    EXPECT_EQ(layer.MaxX, 1001);
    EXPECT_EQ(layer.MinY, lowest);
    EXPECT_GE(lowest, -120);
    layer.LEEG_LAAG();
  }
}

TEST(Circles, FortyFiveDegreesTruncatesTowardTheCentre) {
  CONTOUR_LAYER layer;
  layer.ZET_CIRKEL_IN_CONTOUR_LAYER(100, 0, 0, 45.0f);
  const std::vector<P> expected = {{100, 0},  {70, 70},   {0, 100},  {-70, 70},
                                   {-100, 0}, {-70, -70}, {0, -100}, {70, -70}};
  const std::vector<P> got = PointsOf(*layer.FirstContour);
  ASSERT_EQ(got.size(), expected.size()) << Describe(got);
  for (size_t i = 0; i < got.size(); ++i) {
    EXPECT_LE(std::abs(got[i].x - expected[i].x), 1) << Describe(got);
    EXPECT_LE(std::abs(got[i].y - expected[i].y), 1) << Describe(got);
  }
  layer.LEEG_LAAG();
}

}  // namespace
