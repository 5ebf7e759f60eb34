#include "io/cli/cli_contours.h"

int32_t AddClosedPolylines(const CliLayer& layer, CONTOUR_LAYER& contours) {
  int32_t open = 0;
  for (const CliPolyline& p : layer.polylines) {
    if (p.direction == kCliOpen) {
      ++open;
      continue;
    }
    if (p.points.empty())
      continue;
    auto* c = new CONTOUR;
    c->SetPoints(p.points.data(), static_cast<int32_t>(p.points.size()));
    c->Closed = 1;
    c->Outer = p.direction == kCliOuter ? 1 : 0;
    c->RightHanded = c->RECHTS_DRAAIEND() ? 1 : 0;
    contours.AddContourAtEnd(c);
  }
  return open;
}

void AddContourPolylines(const CONTOUR_LAYER& contours, int32_t id, CliLayer& layer) {
  for (const CONTOUR* c = contours.FirstContour; c != nullptr; c = c->NextContour) {
    CliPolyline p;
    p.id = id;
    if (c->Closed == 0)
      p.direction = kCliOpen;
    else if (c->Outer == 0 || c->Outer == 1)
      p.direction = c->Outer == 1 ? kCliOuter : kCliInner;
    else
      p.direction = c->RECHTS_DRAAIEND() ? kCliOuter : kCliInner;
    p.points.assign(c->Points, c->Points + c->NumPoints);
    layer.polylines.push_back(std::move(p));
  }
}

void AddHatchVectors(const VECTOR_LAYER& vectors, int32_t id, CliLayer& layer) {
  CliHatches hatches;
  hatches.id = id;
  for (const VECTOR_BLOK* b = vectors.FirstBlock; b != nullptr; b = b->NextBlock)
    hatches.coordinates.insert(hatches.coordinates.end(), b->Block, b->Block + (b->Size / 4) * 4);
  if (!hatches.coordinates.empty())
    layer.hatches.push_back(std::move(hatches));
}
