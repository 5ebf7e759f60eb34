#include "bitmap/convertor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "sibling/units/internal_units.h"
#include "support/bitmap_builders.h"
#include "support/bitmap_oracle.h"
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

Bytes Row(const Bytes& bytes, int row) {
  return Bytes(bytes.begin() + row * 6, bytes.begin() + row * 6 + 6);
}

TEST(Convertor, EmptyBorderGivesAllZero) {
  EXPECT_EQ(RenderSix({}), Bytes(36, 0));
}

// A 6 x 6 bitmap from its rows, row 0 first.
Bytes Rows(std::initializer_list<Bytes> rows) {
  Bytes bytes;
  for (const Bytes& row : rows)
    bytes.insert(bytes.end(), row.begin(), row.end());
  return bytes;
}

TEST(Convertor, SquareAndPlateWithASquareHole) {
  const Bytes empty(6, 0), full(6, 255);
  const Bytes edge = {0, 64, 128, 64, 0, 0}, middle = {0, 128, 255, 128, 0, 0};
  EXPECT_EQ(RenderSix({Rectangle(15, 15, 35, 35, true)}), Rows({empty, edge, middle, edge, empty, empty}));
  const Bytes holeEdge = {255, 191, 128, 191, 255, 255}, holeMiddle = {255, 128, 0, 128, 255, 255};
  EXPECT_EQ(RenderSix({Rectangle(0, 0, 60, 60, true), Rectangle(15, 15, 35, 35, false)}),
            Rows({full, holeEdge, holeMiddle, holeEdge, full, full}));
}

TEST(Convertor, ShapesCutByTheLeftAndRightEdges) {
  const Bytes left = RenderSix({Rectangle(-15, 10, 25, 30, true)});
  const Bytes right = RenderSix({Rectangle(45, 10, 85, 30, true)});
  for (int row : {1, 2}) {
    EXPECT_EQ(Row(left, row), (Bytes{255, 255, 128, 0, 0, 0})) << "row " << row;
    EXPECT_EQ(Row(right, row), (Bytes{0, 0, 0, 0, 128, 255})) << "row " << row;
  }
  for (int row : {0, 3, 4, 5}) {
    EXPECT_EQ(Row(left, row), Bytes(6, 0)) << "row " << row;
    EXPECT_EQ(Row(right, row), Bytes(6, 0)) << "row " << row;
  }
}

TEST(Convertor, TriangleOverTheDiagonal) {
  const Bytes bytes = RenderSix({{{0, 0}, {0, 60}, {60, 0}}});
  for (int row = 0; row < 6; ++row) {
    Bytes expected(6, 0);
    for (int x = 0; x < 5 - row; ++x)
      expected[x] = 255;
    expected[5 - row] = 128;
    EXPECT_EQ(Row(bytes, row), expected) << "row " << row;
  }
}

TEST(Convertor, ContourLowOnTheBitmapStartsLate) {
  // Lowest row 5: rows 0 to 4 are only erased.
  const Bytes bytes = RenderSix({Rectangle(10, 50, 30, 80, true)});
  for (int row = 0; row < 5; ++row)
    EXPECT_EQ(Row(bytes, row), Bytes(6, 0)) << "row " << row;
  EXPECT_EQ(Row(bytes, 5), (Bytes{0, 255, 255, 0, 0, 0}));
}

TEST(Convertor, ContoursAboveOrFarOutsideWriteNoMaterial) {
  // At or above row height, far left, far right, far below: all erased.
  const Rings rings = {Rectangle(10, 60, 30, 90, true), Rectangle(-900, 10, -800, 30, true),
                       Rectangle(800, 10, 900, 30, true), Rectangle(10, -900, 30, -800, true)};
  EXPECT_EQ(RenderSix(rings), Bytes(36, 0)) << Describe(rings);
  EXPECT_EQ(RenderSix({rings[0]}), Bytes(36, 0));
}

TEST(Convertor, GuardedArgumentsWriteNothing) {
  const Rings square = {Rectangle(15, 15, 35, 35, true)};
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  for (double size : {0.0, nan, inf}) {
    EXPECT_EQ(Render(square, 6, 6, size, 60.0), Bytes(36, kDirt)) << "sizeX " << size;
    EXPECT_EQ(Render(square, 6, 6, 60.0, size), Bytes(36, kDirt)) << "sizeY " << size;
  }
  EXPECT_EQ(Render(square, 0, 6, 60.0, 60.0), Bytes(6, kDirt));
  EXPECT_EQ(Render(square, 6, -1, 60.0, 60.0), Bytes(6, kDirt));
  EXPECT_EQ(Render(square, 6, 0, 60.0, 60.0), Bytes(6, kDirt));
  Kelvor::Common::MInternalUnits::Set(0.0);
  const Bytes zeroUnits = Render(square, 6, 6, 60.0, 60.0);
  Kelvor::Common::MInternalUnits::Set(1.0);
  EXPECT_EQ(zeroUnits, Bytes(36, kDirt));
  MContours2BitmapConvertor nothing(nullptr, 6, 6, 60.0, 60.0, static_cast<const CONTOUR_LAYER*>(nullptr));
  nothing.Operate();  // no bitmap: nothing happens
}

TEST(Convertor, EitherDirectionRendersTheSame) {
  const Rings right = {Rectangle(0, 0, 60, 60, true),
                       Rectangle(15, 15, 35, 35, false),
                       {{20, 20}, {25, 30}, {30, 20}}};  // an island in the hole
  const Rings wrong = {
      Rectangle(0, 0, 60, 60, false), Rectangle(15, 15, 35, 35, true), {{30, 20}, {25, 30}, {20, 20}}};
  EXPECT_EQ(RenderSix(wrong), RenderSix(right)) << Describe(wrong);
  EXPECT_EQ(RenderSix({Rectangle(15, 15, 35, 35, false)}), RenderSix({Rectangle(15, 15, 35, 35, true)}));
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
  MContours2BitmapConvertor convertor(bitmap.data(), 6, 6, 60.0, 60.0, border);
  convertor.Operate();
  EXPECT_EQ(testing_support::RingPoints(*border.GetFirstContour()), bowTie[0]);
}

TEST(Convertor, ResolutionFollowsWidthAndSize) {
  const Rings square = {Rectangle(15, 15, 35, 35, true)};
  const Bytes fine = Render(square, 12, 6, 60.0, 60.0);  // two columns per 10 units
  EXPECT_EQ(Bytes(fine.begin() + 2 * 12, fine.begin() + 3 * 12),
            (Bytes{0, 0, 0, 255, 255, 255, 255, 0, 0, 0, 0, 0}));
  const Bytes wide = Render(square, 6, 6, 120.0, 60.0);  // half as many columns
  EXPECT_EQ(Row(wide, 2), (Bytes{64, 191, 0, 0, 0, 0}));
}

TEST(Convertor, PixelOperationsWrapModulo256) {
  std::vector<unsigned char> bitmap(4, 0);
  BitmapBorder border;
  MContours2BitmapConvertor convertor(bitmap.data(), 2, 2, 2.0, 2.0, border);
  convertor.SetPixel(1, 1, 250);
  convertor.AddMaterialToPixel(1, 1, 10);
  EXPECT_EQ(convertor.Pixel(1, 1), 4);
  EXPECT_EQ(bitmap[3], 4);
  convertor.SetPixel(0, 1, 3);
  convertor.RemoveMaterialFromPixel(0, 1, 5);
  EXPECT_EQ(convertor.Pixel(0, 1), 254);
  EXPECT_TRUE(convertor.IsEmptyPixel(1, 0));
  EXPECT_FALSE(convertor.IsEmptyPixel(0, 1));
  convertor.EraseBitmap();
  EXPECT_EQ(std::vector<unsigned char>(4, 0), bitmap);
}

// Opens the row sums of the convertor to the tests.
class ConvertorProbe : public MContours2BitmapConvertor {
 public:
  using MContours2BitmapConvertor::MContours2BitmapConvertor;
  // Fills and starts the sweep at output row 0.
  void StartSweep() {
    _StructureContourPointsForSweep();
    _ZeroWorkingYLevel();
  }
  void Up(int32_t rows) {
    for (int32_t r = 0; r < rows; ++r)
      _IncrementY();
  }
  double Sum(int32_t x) { return _ProcessIntersections(x); }
  double SafeSum(int32_t x, bool add) { return _SafeCalculateArea(x, sweep.begin(), sweep.end(), add); }
};

TEST(Convertor, RowSumsOfOnePixel) {
  std::vector<unsigned char> bitmap(36, 0);
  BitmapBorder border = MakeBorder({Rectangle(15, 15, 35, 35, true)});
  ConvertorProbe probe(bitmap.data(), 6, 6, 60.0, 60.0, border);
  probe.StartSweep();
  probe.Up(2);
  EXPECT_DOUBLE_EQ(probe.Sum(2), 255.0);
  EXPECT_DOUBLE_EQ(probe.Sum(1), 127.5);
  EXPECT_DOUBLE_EQ(probe.Sum(5), 0.0);
  // Column 2: the adding part gives 255, the removing part 0.
  EXPECT_DOUBLE_EQ(probe.SafeSum(2, true), 255.0);
  EXPECT_DOUBLE_EQ(probe.SafeSum(2, false), 0.0);
  // Column 5: 255 and -255, greatest first.
  EXPECT_DOUBLE_EQ(probe.SafeSum(5, true), 510.0);
  EXPECT_DOUBLE_EQ(probe.SafeSum(5, false), 255.0 - 255.0 + -255.0);
  probe.Up(3);
  EXPECT_DOUBLE_EQ(probe.Sum(2), 0.0);  // no active part
}

// A star-shaped ring around (cx, cy) of n vertices, radii in [r0, r1], clockwise (y up) or not.
Ring RandomStar(std::mt19937& random, double cx, double cy, double r0, double r1, int n, bool clockwise) {
  std::uniform_real_distribution<double> radius(r0, r1);
  Ring ring;
  for (int i = 0; i < n; ++i) {
    const double a = (clockwise ? -1.0 : 1.0) * 2.0 * 3.141592653589793 * i / n;
    const double r = radius(random);
    ring.push_back({static_cast<int32_t>(std::lround(cx + r * std::cos(a))),
                    static_cast<int32_t>(std::lround(cy + r * std::sin(a)))});
  }
  return ring;
}

// Every byte against the exact area of the pixel, within one grey level; the
// shapes must put some material into the bitmap.
void ExpectMatchesOracle(const Rings& rings, int32_t width, int32_t height, double sizeX, double sizeY) {
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

// Bitmaps of 40 x 30 pixels, 1000 units to a pixel.
constexpr int32_t kW = 40, kH = 30;
constexpr double kUnit = 1000.0;
constexpr double kSizeX = kW * kUnit, kSizeY = kH * kUnit;

TEST(ConvertorOracle, PolygonsWithHoles) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    const double cx = (8 + 24 * u(random)) * kUnit, cy = (8 + 14 * u(random)) * kUnit, r = 7.5 * kUnit;
    const Rings rings = {RandomStar(random, cx, cy, 0.6 * r, r, 24, true),
                         RandomStar(random, cx - 0.25 * r, cy, 0.08 * r, 0.2 * r, 12, false),
                         RandomStar(random, cx + 0.25 * r, cy, 0.08 * r, 0.2 * r, 9, false)};
    SCOPED_TRACE("seed " + std::to_string(seed));
    ExpectMatchesOracle(rings, kW, kH, kSizeX, kSizeY);
  }
}

TEST(ConvertorOracle, ConcaveShapes) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    std::mt19937 random(seed);
    const Rings rings = {RandomStar(random, 20 * kUnit, 15 * kUnit, 1.0 * kUnit, 14 * kUnit, 40, true)};
    SCOPED_TRACE("seed " + std::to_string(seed));
    ExpectMatchesOracle(rings, kW, kH, kSizeX, kSizeY);
  }
  // A comb: many local minima and maxima in few rows.
  Ring comb = {{2000, 2000}, {2000, 28000}};
  for (int i = 0; i < 12; ++i) {
    const int32_t x = 4000 + i * 3000;
    comb.push_back({x, 28000});
    comb.push_back({x + 1300, 5000 + 1700 * (i % 3)});
    comb.push_back({x + 2600, 28000});
  }
  comb.push_back({39800, 28000});
  comb.push_back({39800, 2000});
  ExpectMatchesOracle({comb}, kW, kH, kSizeX, kSizeY);
}

TEST(ConvertorOracle, ShapesCutByAllFourEdges) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    std::mt19937 random(seed);
    const Rings rings = {RandomStar(random, 20 * kUnit, 15 * kUnit, 14 * kUnit, 30 * kUnit, 30, true),
                         RandomStar(random, 20 * kUnit, 15 * kUnit, 2 * kUnit, 6 * kUnit, 16, false)};
    SCOPED_TRACE("seed " + std::to_string(seed));
    ExpectMatchesOracle(rings, kW, kH, kSizeX, kSizeY);
  }
  // A plate larger than the bitmap, at a scale of 1.37 pixels per 1000 units.
  ExpectMatchesOracle(
      {Rectangle(-3000, -2000, 50000, 41000, true), testing_support::Circle(15000, 11000, 6000, 64, false)},
      kW, kH, kSizeX / 1.37, kSizeY / 1.37);
}

TEST(ConvertorOracle, ShapesFarOutside) {
  for (unsigned seed = 1; seed <= 6; ++seed) {
    std::mt19937 random(seed);
    const Rings rings = {RandomStar(random, -500 * kUnit, 15 * kUnit, 5 * kUnit, 9 * kUnit, 20, true),
                         RandomStar(random, 540 * kUnit, 15 * kUnit, 5 * kUnit, 9 * kUnit, 20, true),
                         RandomStar(random, 20 * kUnit, -400 * kUnit, 5 * kUnit, 9 * kUnit, 20, true),
                         RandomStar(random, 20 * kUnit, 430 * kUnit, 5 * kUnit, 9 * kUnit, 20, true),
                         RandomStar(random, 20 * kUnit, 15 * kUnit, 3 * kUnit, 9 * kUnit, 20, true)};
    SCOPED_TRACE("seed " + std::to_string(seed));
    ExpectMatchesOracle(rings, kW, kH, kSizeX, kSizeY);
  }
}

TEST(ConvertorOracle, BitmapSizeInUnitsOfLength) {
  // 1000 units to the millimetre, a bitmap of 40 x 30 mm at 0.73 mm per pixel.
  Kelvor::Common::MInternalUnits::Set(1000.0);
  std::mt19937 random(7);
  const Rings rings = {RandomStar(random, 15000, 12000, 9000, 14000, 33, true),
                       RandomStar(random, 15000, 12000, 2000, 5000, 11, false)};
  ExpectMatchesOracle(rings, 55, 41, 40.0, 30.0);
  Kelvor::Common::MInternalUnits::Set(1.0);
}

}  // namespace
