#include "bridges/graph_extraction.h"

#include <cstdlib>

void M2dGraphExtractContourLayer::Empty() {
  layer->LEEG_LAAG();
  current = nullptr;
}

void M2dGraphExtractContourLayer::BeginContour(int32_t numPoints, bool closed) {
  auto* contour = new CONTOUR();
  contour->Closed = closed ? 1 : 0;
  contour->Points =
      static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * static_cast<size_t>(numPoints)));
  contour->NumPoints = 0;
  if (current == nullptr) {
    contour->NextContour = layer->FirstContour;
    layer->FirstContour = contour;
    if (layer->LastContour == nullptr)
      layer->LastContour = contour;
  } else {
    contour->NextContour = current->NextContour;
    current->NextContour = contour;
    if (layer->LastContour == current)
      layer->LastContour = contour;
  }
  ++layer->NumContours;
  current = contour;
}

void M2dGraphExtractContourLayer::AddPoint(int32_t x, int32_t y) {
  current->Points[current->NumPoints].x = x;
  current->Points[current->NumPoints].y = y;
  ++current->NumPoints;
}

void M2dGraphExtractContourLayer::SetTurning(bool clockwise) {
  current->Outer = clockwise ? 1 : 0;
  current->RightHanded = clockwise ? 1 : 0;
}

void ExtractContourLayer(M2dBoolean* engine, CONTOUR_LAYER& layer) {
  M2dGraphBorderExtractSource2dGraph source{engine};
  M2dGraphExtractContourLayer sink{&layer, nullptr};
  using Walker = M2dGraphBorderConvert<M2dGraphBorderExtractSource2dGraph, M2dGraphExtractContourLayer>;
  Walker walker(&source, &sink);
  constexpr bool kKeepOpenChains = true;
  constexpr bool kSegmentFlag = false;
  constexpr bool kEmptyLayerFirst = true;
  walker.Extract(Walker::kLevelOfFirstLine, kKeepOpenChains, kSegmentFlag, kEmptyLayerFirst);
}
