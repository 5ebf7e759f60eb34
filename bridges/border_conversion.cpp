#include "bridges/border_conversion.h"

#include <cstdint>
#include <cstdlib>

namespace M3dBorder2LayerConvertor {

namespace {

constexpr int32_t kOrderByteMask = 0xFF;

// An outer contour ends with a positive area, a hole with a negative one.
void FixRunningSense(M3dBorderContourLong& contour) {
  const double area = contour.SurfaceAreaWithSignXY();
  if (area > 0.0) {
    if (!contour.GetIsOuterContour())
      contour.Invert();
  } else if (contour.GetIsOuterContour()) {
    contour.Invert();
  }
}

void FillBorderContour(const CONTOUR& contour, M3dBorderContourLong& borderContour) {
  borderContour.SetIsOuterContour(contour.Outer != 0);
  borderContour.SetIsClosed(contour.Closed != 0);
  borderContour.SetStatus(static_cast<unsigned char>(contour.Type));
  borderContour.SetOrder(static_cast<unsigned char>(contour.Order & kOrderByteMask));
  for (int32_t i = 0; i < contour.NumPoints; ++i) {
    borderContour.InsertAtEnd(contour.Points[i].x, contour.Points[i].y, nullptr);
  }
  if (borderContour.GetIsClosed())
    FixRunningSense(borderContour);
}

}  // namespace

void _Convert(const CONTOUR_LAYER& layer, M3dBorderLong& border) {
  border.MakeEmpty();
  for (const CONTOUR* contour = layer.FirstContour; contour != nullptr; contour = contour->NextContour) {
    FillBorderContour(*contour, *border.AddContourAtEnd());
  }
}

void _Convert(const M3dBorderLong& border, CONTOUR_LAYER& layer) {
  layer.LEEG_LAAG();
  for (const M3dBorderContourLong& borderContour : border) {
    auto* contour = new CONTOUR;
    if (layer.LastContour == nullptr) {
      layer.FirstContour = contour;
    } else {
      layer.LastContour->NextContour = contour;
    }
    layer.LastContour = contour;
    ++layer.NumContours;
    _Convert(borderContour, *contour);
  }
}

void _Convert(const M3dBorderContourLong& borderContour, CONTOUR& contour) {
  const uint32_t count = borderContour.GetNumPoints();
  contour.NumPoints = static_cast<int32_t>(count);
  contour.Points =
      count == 0 ? nullptr : static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * count));
  contour.Outer = borderContour.GetIsOuterContour() ? 1 : 0;
  contour.Closed = borderContour.GetIsClosed() ? 1 : 0;
  contour.RightHanded = contour.Outer;
  contour.Type = static_cast<char>(borderContour.GetStatus());
  contour.Order = borderContour.GetOrder();
  const M3dBorderPointLong* point = borderContour.GetFirstPoint();
  for (uint32_t i = 0; i < count; ++i, point = point->next) {
    contour.Points[i].x = point->x;
    contour.Points[i].y = point->y;
  }
}

}  // namespace M3dBorder2LayerConvertor
