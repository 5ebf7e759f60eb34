#include "bridges/border_conversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
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

TEST(LayerToBorder, ClosedContoursGetTheSenseTheirOuterPropertyCallsForAndOpenOnesKeepTheirs) {
  using Points = std::vector<MMPoint2d<long>>;
  struct Case {
    Points points;
    unsigned char closed, outer;
    bool inverted;
  };
  const Points cw = Rectangle(0, 0, 20, 10, true), ccw = Rectangle(0, 0, 20, 10, false);
  const Points line = {{0, 0}, {5, 0}, {9, 0}};  // zero area: inverted only when outer
  const Case cases[] = {{cw, 1, 1, false}, {ccw, 1, 1, true},  {cw, 1, 0, true},    {ccw, 1, 0, false},
                        {ccw, 1, 7, true}, {line, 1, 1, true}, {line, 1, 0, false}, {ccw, 0, 1, false}};
  for (const Case& k : cases) {
    SCOPED_TRACE("case " + std::to_string(&k - cases));
    CONTOUR_LAYER layer;
    layer.AddContourAtEnd(NewContour(k.points, k.closed));
    layer.FirstContour->Outer = k.outer;
    Border border;
    M3dBorder2LayerConvertor::_Convert(layer, border);
    std::vector<XY> expected;
    for (const auto& p : k.points)
      expected.emplace_back(p.x, p.y);
    if (k.inverted)
      std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(RingOf(*border.GetFirstContour()), expected);
    EXPECT_EQ(border.GetFirstContour()->GetIsOuterContour(), k.outer != 0);
    EXPECT_EQ(border.GetFirstContour()->GetIsClosed(), k.closed != 0);
    EXPECT_TRUE(BorderIsWhole(border));
    layer.LEEG_LAAG();
  }
}

TEST(BorderRoundTrip, AttributesComeBackNormalisedEmptyContoursStayAndRingsStartWhereTheyDid) {
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
  const std::vector<MMPoint2d<long>> square = Rectangle(0, 0, 3, 3, true);
  for (const Case& k : cases) {
    SCOPED_TRACE("case " + std::to_string(&k - cases));
    CONTOUR_LAYER layer;
    layer.AddContourAtEnd(new CONTOUR);
    CONTOUR* c = NewContour(square, k.closed);
    c->Outer = k.outer;
    c->RightHanded = k.rightHanded;
    c->Type = k.type;
    c->Order = k.order;
    layer.AddContourAtEnd(c);
    Border border;
    M3dBorder2LayerConvertor::_Convert(layer, border);
    EXPECT_EQ(border.GetFirstContour()->GetNumPoints(), 0u);
    EXPECT_TRUE(BorderIsWhole(border));
    EXPECT_EQ(border.GetLastContour()->GetStatus(), static_cast<unsigned char>(k.type));
    M3dBorder2LayerConvertor::_Convert(border, layer);
    ASSERT_EQ(layer.NumContours, 2);
    EXPECT_EQ(layer.FirstContour->NumPoints, 0);
    const CONTOUR* back = layer.LastContour;
    EXPECT_EQ(testing_support::PointsOf(*back), square);
    EXPECT_EQ(back->Outer, k.outerBack) << "Outer";
    EXPECT_EQ(back->RightHanded, back->Outer) << "RightHanded";
    EXPECT_EQ(back->Closed, k.closedBack) << "Closed";
    EXPECT_EQ(back->Type, k.type) << "Type";
    EXPECT_EQ(back->Order, k.orderBack) << "Order";
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
  EXPECT_EQ(testing_support::PointsOf(*c), (std::vector<MMPoint2d<long>>{{0, 0}, {0, 5}, {5, 5}}));
  EXPECT_EQ(c->Owner, nullptr);
  EXPECT_EQ(c->NextContour->Points, nullptr);
  EXPECT_EQ(c->NextContour->NextContour, layer.LastContour);
  EXPECT_EQ(layer.LastContour->NextContour, nullptr);
  EXPECT_EQ(layer.LastContour->Points[0].x, 7);
  EXPECT_EQ(layer.MaxX, kEmptyExtentMax);
  EXPECT_EQ(layer.MinX, kEmptyExtentMin);

  M3dBorder2LayerConvertor::_Convert(Border(), layer);
  EXPECT_EQ(layer.NumContours, 0);
  EXPECT_EQ(layer.FirstContour, nullptr);
  EXPECT_EQ(layer.LastContour, nullptr);
}

}  // namespace
