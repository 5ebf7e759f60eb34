// A plate with two holes and an island in one of them, each contour given in
// either direction and in any chain order, through classification,
// orientation and cleaning.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "layer/contour_layer.h"
#include "support/layer_builders.h"

namespace {

using P = MMPoint2d<long>;
using testing_support::InsideEvenOdd;
using testing_support::NewContour;

// A clockwise rectangle with extra points on its edges: a doubled corner, a
// point in the middle of each side and a closing point that repeats the first.
std::vector<P> NoisyRectangle(int32_t x0, int32_t y0, int32_t x1, int32_t y1) {
  const int32_t mx = (x0 + x1) / 2, my = (y0 + y1) / 2;
  return {{x0, y0}, {x0, my}, {x0, y1}, {x0, y1}, {mx, y1}, {x1, y1}, {x1, my}, {x1, y0}, {mx, y0}, {x0, y0}};
}

struct Piece {
  std::vector<P> points;
  int outer;  // expected Outer
};

// Plate 0..1000, holes at 100..400 and 600..900 (x), island in the first.
std::vector<Piece> Pieces() {
  return {{NoisyRectangle(0, 0, 1000, 1000), 1},
          {NoisyRectangle(100, 100, 400, 900), 0},
          {NoisyRectangle(600, 100, 900, 900), 0},
          {NoisyRectangle(200, 300, 300, 700), 1}};
}

std::vector<bool> SampleInside(const CONTOUR_LAYER& layer) {
  std::vector<bool> inside;
  for (int x = -5; x <= 1005; x += 10) {
    for (int y = -5; y <= 1005; y += 10)
      inside.push_back(InsideEvenOdd(layer, x + 0.5, y + 0.5));
  }
  return inside;
}

// Chain position i holds pieces[i], reversed (counter-clockwise) when bit i of `mask` is set.
void RunRoad(const std::vector<Piece>& pieces, unsigned mask) {
  CONTOUR_LAYER layer;
  std::string trace;
  for (size_t i = 0; i < pieces.size(); ++i) {
    std::vector<P> points = pieces[i].points;
    const bool reversed = (mask >> i) & 1;
    if (reversed)
      std::reverse(points.begin(), points.end());
    trace += "(" + std::to_string(points[0].x) + "," + std::to_string(points[0].y) +
             (reversed ? " ccw) " : " cw) ");
    layer.AddContourAtEnd(NewContour(points));
  }
  SCOPED_TRACE(trace);
  const std::vector<bool> before = SampleInside(layer);

  layer.SORTEER_CONTOUREN_NIEUW();
  size_t i = 0;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour, ++i) {
    EXPECT_EQ(c->Outer, pieces[i].outer) << "contour " << i;
    // On a layer of several contours the y pass sets 1 for a clockwise one.
    EXPECT_EQ(c->RightHanded, c->RECHTS_DRAAIEND() ? 1 : 0) << "contour " << i;
  }
  layer.CONTROLEER_RECHTS_DRAAIEND();
  i = 0;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour, ++i)
    EXPECT_EQ(c->RightHanded, ((mask >> i) & 1) ? 0 : 1) << "contour " << i;
  layer.MAAK_ALLE_CONTOUREN_RECHTSDRAAIEND();
  layer.VERWIJDER_DUBBELE_PUNTEN(3);
  layer.COMPRES_LAAG(0, 180);
  layer.COMPRES_LAAG_OP_LENGTE(5);
  layer.BEPAAL_EXTREMA();

  ASSERT_EQ(layer.NumContours, 4);
  i = 0;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour, ++i) {
    EXPECT_EQ(c->Outer, pieces[i].outer) << "contour " << i;
    EXPECT_EQ(c->RightHanded, 1) << "contour " << i;
    EXPECT_TRUE(c->RECHTS_DRAAIEND()) << "contour " << i;
    // The four corners are left, and the side midpoint that became point 0
    // when the repeated closing point took the old point 0's place: first
    // and last points are never judged by angle.
    EXPECT_EQ(c->NumPoints, 5) << "contour " << i;
  }
  EXPECT_EQ(layer.MinX, 0);
  EXPECT_EQ(layer.MaxY, 1000);
  EXPECT_EQ(SampleInside(layer), before);
  layer.LEEG_LAAG();
}

TEST(ContourProcessingRoad, PlateWithHolesAndAnIslandInEveryDirection) {
  for (unsigned mask = 0; mask < 16; ++mask)
    RunRoad(Pieces(), mask);
}

TEST(ContourProcessingRoad, RandomDirectionsAndChainOrder) {
  std::mt19937 random(20261122);
  for (int round = 0; round < 20; ++round) {
    std::vector<Piece> pieces = Pieces();
    std::shuffle(pieces.begin(), pieces.end(), random);
    RunRoad(pieces, random() % 16);
  }
}

TEST(ContourProcessingRoad, PlateWithAGridOfHoles) {
  CONTOUR_LAYER layer;
  testing_support::AddPlateWithHoles(layer, 30000, 12);
  layer.SORTEER_CONTOUREN_NIEUW();
  int index = 0;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour, ++index) {
    const int expected = index == 0 ? 1 : 0;  // the plate clockwise, then its holes
    EXPECT_EQ(c->Outer, expected) << "contour " << index;
    EXPECT_EQ(c->RightHanded, expected) << "contour " << index;
  }
  layer.LEEG_LAAG();
}

}  // namespace
