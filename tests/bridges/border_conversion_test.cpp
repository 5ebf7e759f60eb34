#include "bridges/border_conversion.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "support/border_builders.h"
#include "support/layer_builders.h"

namespace {

using testing_support::AddRing;
using testing_support::BorderIsWhole;
using testing_support::NewContour;
using testing_support::Rectangle;
using testing_support::RingOf;
using testing_support::XY;

using Border = M3dBorder<long, void*, M3dBorderContour<long, void*, M3dBorderPoint<long, void*>>>;

// A closed contour with the given attributes.
CONTOUR* NewAttributed(const std::vector<MMPoint2d<long>>& points, unsigned char outer,
                       unsigned char closed) {
  CONTOUR* c = NewContour(points, closed);
  c->Outer = outer;
  return c;
}

TEST(LayerToBorder, ClosedContoursGetTheSenseTheirOuterPropertyCallsFor) {
  struct Case {
    bool clockwise;
    unsigned char outer;
    bool positive;
  };
  const Case cases[] = {
      {true, 1, true}, {false, 1, true}, {true, 0, false}, {false, 0, false}, {false, 7, true}};
  for (const Case& k : cases) {
    CONTOUR_LAYER layer;
    layer.AddContourAtEnd(NewAttributed(Rectangle(0, 0, 20, 10, k.clockwise), k.outer, 1));
    Border border;
    M3dBorder2LayerConvertor::_Convert(layer, border);
    const auto* contour = border.GetFirstContour();
    EXPECT_DOUBLE_EQ(contour->SurfaceAreaWithSignXY(), k.positive ? 200.0 : -200.0)
        << "clockwise " << k.clockwise << " Outer " << int(k.outer);
    EXPECT_EQ(contour->GetIsOuterContour(), k.outer != 0);
    EXPECT_TRUE(BorderIsWhole(border));
    layer.LEEG_LAAG();
  }
}

TEST(LayerToBorder, ZeroAreaIsInvertedOnlyForOuterAndOpenContoursKeepTheirSense) {
  const std::vector<MMPoint2d<long>> line = {{0, 0}, {5, 0}, {9, 0}};
  const std::vector<XY> asGiven = {{0, 0}, {5, 0}, {9, 0}};
  const std::vector<XY> inverted = {{9, 0}, {5, 0}, {0, 0}};
  CONTOUR_LAYER layer;
  layer.AddContourAtEnd(NewAttributed(line, 1, 1));
  layer.AddContourAtEnd(NewAttributed(line, 0, 1));
  layer.AddContourAtEnd(NewAttributed(Rectangle(0, 0, 4, 4, false), 1, 0));  // open, counter-clockwise
  Border border;
  M3dBorder2LayerConvertor::_Convert(layer, border);
  const auto* c = border.GetFirstContour();
  EXPECT_EQ(RingOf(*c), inverted);
  c = c->GetNextContour();
  EXPECT_EQ(RingOf(*c), asGiven);
  c = c->GetNextContour();
  EXPECT_FALSE(c->GetIsClosed());
  EXPECT_LT(c->SurfaceAreaWithSignXY(), 0.0);
  layer.LEEG_LAAG();
}

TEST(BorderRoundTrip, AttributesComeBackNormalised) {
  struct Case {
    unsigned char outer, rightHanded, closed;
    char type;
    int32_t order;
    unsigned char outerBack, closedBack;
    int32_t orderBack;
  };
  const Case cases[] = {
      {1, 0, 1, 'g', 3, 1, 1, 3},
      {0, 1, 0, static_cast<char>(200), 0x1234, 0, 0, 0x34},
      {7, 7, 7, 0, -1, 1, 1, 255},
      {2, 9, 5, 100, 256, 1, 1, 0},
  };
  for (const Case& k : cases) {
    CONTOUR_LAYER layer;
    CONTOUR* c = NewContour(Rectangle(0, 0, 3, 3, true), k.closed);
    c->Outer = k.outer;
    c->RightHanded = k.rightHanded;
    c->Type = k.type;
    c->Order = k.order;
    layer.AddContourAtEnd(c);
    Border border;
    M3dBorder2LayerConvertor::_Convert(layer, border);
    EXPECT_EQ(border.GetFirstContour()->GetStatus(), static_cast<unsigned char>(k.type));
    M3dBorder2LayerConvertor::_Convert(border, layer);
    ASSERT_EQ(layer.NumContours, 1);
    const CONTOUR* back = layer.FirstContour;
    const char* what = "Outer/RightHanded/Closed/Type/Order in the case of index ";
    const auto index = &k - cases;
    EXPECT_EQ(back->Outer, k.outerBack) << what << index;
    EXPECT_EQ(back->RightHanded, back->Outer) << what << index;
    EXPECT_EQ(back->Closed, k.closedBack) << what << index;
    EXPECT_EQ(back->Type, k.type) << what << index;
    EXPECT_EQ(back->Order, k.orderBack) << what << index;
    EXPECT_EQ(back->NumPoints, 4);
    layer.LEEG_LAAG();
  }
}

TEST(BorderToLayer, ReplacesTheLayerAndLinksFreshContours) {
  Border border;
  AddRing(border, {{0, 0}, {0, 5}, {5, 5}});
  border.AddContourAtEnd();
  AddRing(border, {{7, 7}});
  CONTOUR_LAYER layer;
  layer.AddContourAtEnd(NewContour({{100, 100}, {200, 200}}));
  layer.BEPAAL_EXTREMA();

  M3dBorder2LayerConvertor::_Convert(border, layer);
  ASSERT_EQ(layer.NumContours, 3);
  const CONTOUR* c = layer.FirstContour;
  EXPECT_EQ(c->NumPoints, 3);
  EXPECT_EQ(c->Points[1].x, 0);
  EXPECT_EQ(c->Points[1].y, 5);
  EXPECT_EQ(c->Owner, nullptr);
  c = c->NextContour;
  EXPECT_EQ(c->NumPoints, 0);
  EXPECT_EQ(c->Points, nullptr);
  c = c->NextContour;
  EXPECT_EQ(c, layer.LastContour);
  EXPECT_EQ(c->NextContour, nullptr);
  EXPECT_EQ(c->Points[0].x, 7);
  EXPECT_EQ(layer.MaxX, kEmptyExtentMax);
  EXPECT_EQ(layer.MinX, kEmptyExtentMin);

  M3dBorder2LayerConvertor::_Convert(Border(), layer);
  EXPECT_EQ(layer.NumContours, 0);
  EXPECT_EQ(layer.FirstContour, nullptr);
  EXPECT_EQ(layer.LastContour, nullptr);
}

TEST(BorderRoundTrip, EmptyContourStaysEmptyAndRingsStartWhereTheyDid) {
  CONTOUR_LAYER layer;
  layer.AddContourAtEnd(new CONTOUR);
  layer.AddContourAtEnd(NewAttributed(Rectangle(2, 2, 8, 8, true), 1, 1));
  Border border;
  M3dBorder2LayerConvertor::_Convert(layer, border);
  EXPECT_EQ(border.GetFirstContour()->GetNumPoints(), 0u);
  EXPECT_TRUE(BorderIsWhole(border));
  M3dBorder2LayerConvertor::_Convert(border, layer);
  ASSERT_EQ(layer.NumContours, 2);
  EXPECT_EQ(layer.FirstContour->NumPoints, 0);
  const std::vector<MMPoint2d<long>> square = Rectangle(2, 2, 8, 8, true);
  EXPECT_EQ(testing_support::PointsOf(*layer.LastContour), square);
  layer.LEEG_LAAG();
}

}  // namespace
