#include "persistence/sax_contour_layer.h"

#include <algorithm>

#include "persistence/sax_contour.h"

namespace {

// Type code of the contours that the layer extents leave out.
constexpr char kTypeOutsideExtents = 103;

BOX SaveExtents(CONTOUR_LAYER const& layer) {
  BOX box;
  box.MinX = layer.MinX;
  box.MinY = layer.MinY;
  box.MaxX = layer.MaxX;
  box.MaxY = layer.MaxY;
  return box;
}

// What BEPAAL_EXTREMA gives after a contour was put in front of a layer whose
// extents `before` were exact: those extents grown by the new contour's
// points, unless its type is left out. The same result as recomputing the
// whole layer, at the cost of one contour, so that reading n contours does not
// take n^2 steps.
void RecomputeExtentsWithFrontContour(CONTOUR_LAYER& layer, BOX const& before) {
  layer.MinX = before.MinX;
  layer.MinY = before.MinY;
  layer.MaxX = before.MaxX;
  layer.MaxY = before.MaxY;
  const CONTOUR& c = *layer.FirstContour;
  if (c.Type == kTypeOutsideExtents) {
    return;
  }
  for (int32_t i = 0; i < c.NumPoints; ++i) {
    layer.MinX = std::min(layer.MinX, c.Points[i].x);
    layer.MinY = std::min(layer.MinY, c.Points[i].y);
    layer.MaxX = std::max(layer.MaxX, c.Points[i].x);
    layer.MaxY = std::max(layer.MaxY, c.Points[i].y);
  }
}

}  // namespace

void MSaxContourLayer::SetDefaults() {
  layer->LEEG_LAAG();
}

bool MSaxContourLayer::HandleTag(std::wstring const& tag, MSAXReader& reader) {
  if (tag == L"Contours" || reader.GetEnclosingTag(1) == L"Contours") {
    return _HandleTagContours(tag, reader);
  }
  return false;
}

bool MSaxContourLayer::_HandleTagContours(std::wstring const& tag, MSAXReader& reader) {
  if (tag == L"Contours") {
    return true;
  }
  if (tag != L"Contour") {
    return false;
  }
  AbortLoading();  // a contour left over from a driver that never closed it
  currentContour = new CONTOUR;
  reader.PushHandler(new MSaxContour(currentContour, streamName));
  return true;
}

void MSaxContourLayer::HandleEndTag(std::wstring const& tag) {
  if (tag != L"Contour" || currentContour == nullptr) {
    return;
  }
  const BOX before = SaveExtents(*layer);
  layer->VOEG_CONTOUR_TOE_AAN_LAAG(currentContour);
  if (layer->NumContours == 1) {
    layer->BEPAAL_EXTREMA();
  } else {
    RecomputeExtentsWithFrontContour(*layer, before);
  }
  currentContour = nullptr;
}

void MSaxContourLayer::AbortLoading() {
  if (currentContour != nullptr) {
    currentContour->Clear();
    delete currentContour;
    currentContour = nullptr;
  }
}

bool MSaxContourLayer::Write(MSAXWriter& writer) const {
  return _WriteContours(writer);
}

bool MSaxContourLayer::_WriteContours(MSAXWriter& writer) const {
  MSAXTagWriter element(writer, L"Contours");
  for (CONTOUR* c = layer->FirstContour; c != nullptr; c = c->NextContour) {
    MSaxContour contour(c, streamName);
    if (!contour.Write(writer)) {
      return false;
    }
  }
  return true;
}
