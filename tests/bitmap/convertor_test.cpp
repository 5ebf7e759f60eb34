#include "bitmap/convertor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "sibling/units/internal_units.h"
#include "support/bitmap_builders.h"
#include "support/bitmap_oracle.h"
#include "support/border_builders.h"
#include "support/layer_builders.h"

namespace {

using testing_support::BitmapBorder;
using testing_support::MakeBorder;
using testing_support::Rectangle;
using Ring = std::vector<MMPoint2d<long>>;
using Rings = std::vector<Ring>;
using Bytes = std::vector<int>;

constexpr unsigned char kDirt = 0xAB;  // what the bitmap holds before rendering

std::string Describe(const Rings& rings) {
  std::ostringstream out;
  for (const Ring& ring : rings) {
    out << "ring:";
    for (const auto& p : ring)
      out << " (" << p.x << "," << p.y << ")";
    out << "\n";
  }
  return out.str();
}

// Renders the rings through a border into a dirty bitmap; the bytes as ints.
Bytes Render(const Rings& rings, int32_t width, int32_t height, double sizeX, double sizeY) {
  std::vector<unsigned char> bitmap(static_cast<size_t>(std::max(width, 1)) * std::max(height, 1), kDirt);
  BitmapBorder border = MakeBorder(rings);
  MContours2BitmapConvertor convertor(bitmap.data(), width, height, sizeX, sizeY, border);
  convertor.Operate();
  return Bytes(bitmap.begin(), bitmap.end());
}

// The 6 x 6 bitmap over 60 units of the worked examples.
Bytes RenderSix(const Rings& rings) {
  return Render(rings, 6, 6, 60.0, 60.0);
}

// A 6 x 6 bitmap from its rows, row 0 first.
Bytes Rows(std::initializer_list<Bytes> rows) {
  Bytes bytes;
  for (const Bytes& row : rows)
    bytes.insert(bytes.end(), row.begin(), row.end());
  return bytes;
}

TEST(Convertor, WorkedExamplesOnSixBySix) {
  const Bytes o(6, 0), full(6, 255), edge = {0, 64, 128, 64, 0, 0}, middle = {0, 128, 255, 128, 0, 0};
  const Bytes holeEdge = {255, 191, 128, 191, 255, 255}, holeMiddle = {255, 128, 0, 128, 255, 255};
  const std::pair<Rings, Bytes> cases[] = {
      {{}, Bytes(36, 0)},
      {{Rectangle(15, 15, 35, 35, true)}, Rows({o, edge, middle, edge, o, o})},
      {{Rectangle(15, 15, 35, 35, false)}, Rows({o, edge, middle, edge, o, o})},  // either direction
      {{Rectangle(0, 0, 60, 60, true), Rectangle(15, 15, 35, 35, false)},
       Rows({full, holeEdge, holeMiddle, holeEdge, full, full})},
      // Lowest row 5: rows 0 to 4 are only erased.
      {{Rectangle(10, 50, 30, 80, true)}, Rows({o, o, o, o, o, {0, 255, 255, 0, 0, 0}})},
      // At or above row height, or far outside on any side: no material.
      {{Rectangle(10, 60, 30, 90, true)}, Bytes(36, 0)},
      {{Rectangle(10, 60, 30, 90, true), Rectangle(-900, 10, -800, 30, true),
        Rectangle(800, 10, 900, 30, true), Rectangle(10, -900, 30, -800, true)},
       Bytes(36, 0)},
  };
  for (const auto& [rings, expected] : cases)
    EXPECT_EQ(RenderSix(rings), expected) << Describe(rings);
}

TEST(Convertor, GuardedArgumentsWriteNothing) {
  const Rings square = {Rectangle(-35, -35, -15, -15, true)};  // off the bitmap: only mirrored onto it
  for (double size :
       {0.0, -60.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(Render(square, 6, 6, size, 60.0), Bytes(36, kDirt)) << "sizeX " << size;
    EXPECT_EQ(Render(square, 6, 6, 60.0, size), Bytes(36, kDirt)) << "sizeY " << size;
  }
  for (const auto& [width, height] : {std::pair{0, 6}, {6, -1}, {6, 0}})
    EXPECT_EQ(Render(square, width, height, 60.0, 60.0), Bytes(6, kDirt)) << width << " x " << height;
  Kelvor::Common::MInternalUnits::Set(0.0);
  const Bytes zeroUnits = Render(square, 6, 6, 60.0, 60.0);
  Kelvor::Common::MInternalUnits::Set(1.0);
  EXPECT_EQ(zeroUnits, Bytes(36, kDirt));
  MContours2BitmapConvertor nothing(nullptr, 6, 6, 60.0, 60.0, static_cast<const CONTOUR_LAYER*>(nullptr));
  nothing.Operate();  // no bitmap: nothing happens
}

// A shape reaching far below the bitmap is swept up to it at once and renders
// like its part on the bitmap.
TEST(Convertor, ShapesFromFarBelowTheBitmap) {
  const Bytes expected = Render({Rectangle(15, 0, 35, 35, true)}, 6, 6, 60.0, 60.0);
  EXPECT_EQ(Render({Rectangle(15, -2000000000, 35, 35, true)}, 6, 6, 60.0, 60.0), expected);
  EXPECT_EQ(Render({Rectangle(15, 0, 35, 35, true), Rectangle(-99, -2147483000, -9, -2000000000, true)}, 6, 6,
                   60.0, 60.0),
            expected);
}

TEST(Convertor, HolesAndIslandsRenderTheSameEitherWayRound) {
  const Rings right = {Rectangle(0, 0, 60, 60, true),
                       Rectangle(15, 15, 35, 35, false),
                       {{20, 20}, {25, 30}, {30, 20}}};  // an island in the hole
  const Rings wrong = {
      Rectangle(0, 0, 60, 60, false), Rectangle(15, 15, 35, 35, true), {{30, 20}, {25, 30}, {20, 20}}};
  EXPECT_EQ(RenderSix(wrong), RenderSix(right)) << Describe(wrong);
}

TEST(Convertor, LayerRendersLikeItsBorder) {
  CONTOUR_LAYER layer;
  layer.AddContourAtEnd(testing_support::NewContour(Rectangle(0, 0, 60, 60, false)));  // wrong way round
  layer.AddContourAtEnd(testing_support::NewContour(Rectangle(15, 15, 35, 35, false)));
  layer.FirstContour->Outer = 1;
  layer.LastContour->Outer = 0;
  std::vector<unsigned char> bitmap(36, kDirt);
  MContours2BitmapConvertor convertor(bitmap.data(), 6, 6, 60.0, 60.0, &layer);
  layer.LEEG_LAAG();  // the layer is not read again
  convertor.Operate();
  EXPECT_EQ(Bytes(bitmap.begin(), bitmap.end()),
            RenderSix({Rectangle(0, 0, 60, 60, true), Rectangle(15, 15, 35, 35, false)}));
  std::vector<unsigned char> none(36, kDirt);
  MContours2BitmapConvertor empty(none.data(), 6, 6, 60.0, 60.0, static_cast<const CONTOUR_LAYER*>(nullptr));
  empty.Operate();
  EXPECT_EQ(none, std::vector<unsigned char>(36, 0));
}

TEST(Convertor, OverlapsAndSelfCrossingsAreCleanedFirst) {
  // Two overlapping squares render as their union.
  const Rings overlapping = {Rectangle(15, 15, 35, 35, true), Rectangle(25, 25, 45, 45, true)};
  const Rings unionRing = {{{15, 15}, {15, 35}, {25, 35}, {25, 45}, {45, 45}, {45, 25}, {35, 25}, {35, 15}}};
  EXPECT_EQ(RenderSix(overlapping), RenderSix(unionRing)) << Describe(overlapping);
  // A bow tie: two triangles meeting at (30, 30), each drawn as material.
  const Rings bowTie = {{{10, 10}, {10, 50}, {50, 10}, {50, 50}}};
  const Rings triangles = {{{10, 10}, {10, 50}, {30, 30}}, {{30, 30}, {50, 50}, {50, 10}}};
  EXPECT_EQ(RenderSix(bowTie), RenderSix(triangles)) << Describe(bowTie);
  // The caller's border does not change.
  BitmapBorder border = MakeBorder(bowTie);
  std::vector<unsigned char> bitmap(36, 0);
  MContours2BitmapConvertor(bitmap.data(), 6, 6, 60.0, 60.0, border).Operate();
  EXPECT_EQ(testing_support::RingOf(*border.GetFirstContour()),
            (std::vector<testing_support::XY>{{10, 10}, {10, 50}, {50, 10}, {50, 50}}));
}

TEST(Convertor, PixelOperationsWrapModulo256) {
  std::vector<unsigned char> bitmap(4, 0);
  BitmapBorder border;
  MContours2BitmapConvertor convertor(bitmap.data(), 2, 2, 2.0, 2.0, border);
  convertor.SetPixel(1, 1, 250);
  convertor.AddMaterialToPixel(1, 1, 10);
  convertor.SetPixel(0, 1, 3);
  convertor.RemoveMaterialFromPixel(0, 1, 5);
  EXPECT_EQ(bitmap, (std::vector<unsigned char>{0, 0, 254, 4}));
}

// Bitmaps of 40 x 30 pixels, 1000 units to a pixel.
constexpr int32_t kW = 40, kH = 30;
constexpr double kUnit = 1000.0;
constexpr double kSizeX = kW * kUnit, kSizeY = kH * kUnit;

// A star-shaped ring of n vertices around pixel (cx, cy), radii in [r0, r1]
// pixels, clockwise (y up) or not.
Ring RandomStar(std::mt19937& random, double cx, double cy, double r0, double r1, int n, bool clockwise) {
  std::uniform_real_distribution<double> radius(r0 * kUnit, r1 * kUnit);
  Ring ring;
  for (int i = 0; i < n; ++i) {
    const double a = (clockwise ? -1.0 : 1.0) * 2.0 * 3.141592653589793 * i / n;
    const double r = radius(random);
    ring.push_back({static_cast<int32_t>(std::lround(cx * kUnit + r * std::cos(a))),
                    static_cast<int32_t>(std::lround(cy * kUnit + r * std::sin(a)))});
  }
  return ring;
}

// Every byte against the exact area of the pixel, within one grey level; the
// shapes must put some material into the bitmap.
void ExpectMatchesOracle(const Rings& rings, int32_t width = kW, int32_t height = kH, double sizeX = kSizeX,
                         double sizeY = kSizeY) {
  const Bytes bytes = Render(rings, width, height, sizeX, sizeY);
  testing_support::BitmapAreaOracle oracle(width, height, sizeX, sizeY,
                                           Kelvor::Common::MInternalUnits::Get());
  oracle.AddRings(rings);
  int failures = 0;
  double material = 0.0;
  for (int32_t y = 0; y < height; ++y) {
    for (int32_t x = 0; x < width; ++x) {
      material += oracle.Area(x, y);
      const int expected = oracle.Expected(x, y);
      const int got = bytes[static_cast<size_t>(y) * width + x];
      if (std::abs(got - expected) > 1 && ++failures <= 5) {
        ADD_FAILURE() << "pixel (" << x << ", " << y << ") is " << got << ", exact area gives " << expected
                      << " (area " << oracle.Area(x, y) << ")\n"
                      << Describe(rings);
      }
    }
  }
  EXPECT_GT(material, 1.0) << "no material in the bitmap\n" << Describe(rings);
}

// Checks the rings that `make` draws from each seed 1..n against the oracle.
template <class Make>
void ExpectSeedsMatchOracle(unsigned n, Make make) {
  for (unsigned seed = 1; seed <= n; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    ExpectMatchesOracle(make(random));
  }
}

TEST(ConvertorOracle, PolygonsWithHoles) {
  ExpectSeedsMatchOracle(12, [](std::mt19937& random) {
    std::uniform_real_distribution<double> u(0.0, 1.0);
    const double cx = 8 + 24 * u(random), cy = 8 + 14 * u(random), r = 7.5;
    return Rings{RandomStar(random, cx, cy, 0.6 * r, r, 24, true),
                 RandomStar(random, cx - 0.25 * r, cy, 0.08 * r, 0.2 * r, 12, false),
                 RandomStar(random, cx + 0.25 * r, cy, 0.08 * r, 0.2 * r, 9, false)};
  });
}

TEST(ConvertorOracle, ConcaveShapes) {
  ExpectSeedsMatchOracle(
      12, [](std::mt19937& random) { return Rings{RandomStar(random, 20, 15, 1, 14, 40, true)}; });
  // A comb: many local minima and maxima in few rows.
  Ring comb = {{2000, 2000}, {2000, 28000}};
  for (int i = 0; i < 12; ++i) {
    const int32_t x = 4000 + i * 3000;
    comb.insert(comb.end(), {{x, 28000}, {x + 1300, 5000 + 1700 * (i % 3)}, {x + 2600, 28000}});
  }
  comb.insert(comb.end(), {{39800, 28000}, {39800, 2000}});
  ExpectMatchesOracle({comb});
}

TEST(ConvertorOracle, ShapesCutByAllFourEdges) {
  ExpectSeedsMatchOracle(12, [](std::mt19937& random) {
    return Rings{RandomStar(random, 20, 15, 14, 30, 30, true), RandomStar(random, 20, 15, 2, 6, 16, false)};
  });
  // A plate larger than the bitmap, at a scale of 1.37 pixels per 1000 units.
  ExpectMatchesOracle(
      {Rectangle(-3000, -2000, 50000, 41000, true), testing_support::Circle(15000, 11000, 6000, 64, false)},
      kW, kH, kSizeX / 1.37, kSizeY / 1.37);
}

TEST(ConvertorOracle, ShapesFarOutside) {
  ExpectSeedsMatchOracle(6, [](std::mt19937& random) {
    Rings rings;
    // Far out on each side, and one inside so that there is material.
    for (const auto& [cx, cy] : {std::pair{-500, 15}, {540, 15}, {20, -400}, {20, 430}})
      rings.push_back(RandomStar(random, cx, cy, 5, 9, 20, true));
    rings.push_back(RandomStar(random, 20, 15, 3, 9, 20, true));
    return rings;
  });
}

TEST(ConvertorOracle, BitmapSizeInUnitsOfLength) {
  // 1000 units to the millimetre, a bitmap of 40 x 30 mm at 0.73 mm per pixel.
  Kelvor::Common::MInternalUnits::Set(1000.0);
  std::mt19937 random(7);
  const Rings rings = {RandomStar(random, 15, 12, 9, 14, 33, true),
                       RandomStar(random, 15, 12, 2, 5, 11, false)};
  ExpectMatchesOracle(rings, 55, 41, 40.0, 30.0);
  Kelvor::Common::MInternalUnits::Set(1.0);
}

}  // namespace
