// Selecting contours by a point or a box: the nearest contour, the contours
// in a box and the contours that a box reaches.
#include <cstdlib>

#include "geometry/segment_tests.h"
#include "layer/contour_chain.h"
#include "layer/contour_layer.h"

using namespace kelvor2d_detail;  // the contour chain helpers

namespace {

// Edge i of the contour: from point i to point i + 1, the last one closing.
void EdgeEnds(const CONTOUR& c, int32_t i, MMPoint2d<long>& a, MMPoint2d<long>& b) {
  a = c.Points[i];
  b = c.Points[i + 1 < c.NumPoints ? i + 1 : 0];
}

// Appends every edge of the contour, closing edge last, as point pairs.
void AppendEdges(const CONTOUR& c, MMPoint2d<long>* out, int32_t& count) {
  for (int32_t i = 0; i < c.NumPoints; ++i) {
    EdgeEnds(c, i, out[count], out[count + 1]);
    count += 2;
  }
}

// Whether the contour's bounding box lies in the box, bounds included; a
// contour without points has empty extents, and so lies in every box.
bool ContourInBox(const CONTOUR& c, const BOX& box) {
  BOX extents;
  ResetExtents(extents);
  for (int32_t i = 0; i < c.NumPoints; ++i)
    GrowExtents(extents, c.Points[i].x, c.Points[i].y);
  return extents.MinX >= box.MinX && extents.MinY >= box.MinY && extents.MaxX <= box.MaxX &&
         extents.MaxY <= box.MaxY;
}

// Normalises the box, releases the contours that meet(contour, box) picks
// (the rest end in reverse order) and recomputes the extents.
template <class Meets>
bool RemoveContoursByBox(CONTOUR_LAYER& layer, BOX& box, Meets meets) {
  NormaliseBox(box);
  const bool removed = TakeContoursReversingRest(layer, [&box, meets](CONTOUR* c) {
    if (!meets(*c, box))
      return false;
    ReleaseContour(c);
    return true;
  });
  layer.BEPAAL_EXTREMA();
  return removed;
}

}  // namespace

bool CONTOUR_LAYER::SEARCH_CLOSEST_CONTOUR(MMPoint2d<long> point, CONTOUR** contour, int32_t& distance,
                                           int32_t tolerance) {
  float best = kNoDistance;
  bool found = false;
  for (CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour) {
    for (int32_t i = 0; i < c->NumPoints; ++i) {
      MMPoint2d<long> a, b;
      EdgeEnds(*c, i, a, b);
      bool nearEnd = false;
      const float d = KWADRAAT_AFSTAND_TOT_LIJNSTUK(point.x, point.y, a.x, a.y, b.x, b.y, nearEnd);
      if (!(d < best))
        continue;
      best = d;
      if (contour != nullptr)
        *contour = c;
      found = true;
    }
  }
  distance = TruncatedDistance(best);
  return found && distance < tolerance;
}

MMPoint2d<long>* CONTOUR_LAYER::GET_CLOSEST_CONTOUR(int32_t& count, MMPoint2d<long> point,
                                                    int32_t tolerance) {
  count = 0;
  CONTOUR* c = nullptr;
  int32_t distance = 0;
  if (!SEARCH_CLOSEST_CONTOUR(point, &c, distance, tolerance))
    return nullptr;
  auto* result =
      static_cast<MMPoint2d<long>*>(calloc(2 * static_cast<size_t>(c->NumPoints), sizeof(MMPoint2d<long>)));
  AppendEdges(*c, result, count);
  return result;
}

bool CONTOUR_LAYER::REMOVE_CLOSEST_CONTOUR(MMPoint2d<long> point, int32_t tolerance) {
  CONTOUR* c = nullptr;
  int32_t distance = 0;
  if (!SEARCH_CLOSEST_CONTOUR(point, &c, distance, tolerance))
    return false;
  RemoveContour(c, true);
  return true;
}

MMPoint2d<long>* CONTOUR_LAYER::GET_CONTOURS_IN_BOX(int32_t& count, BOX& box) {
  count = 0;
  NormaliseBox(box);
  for (const CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour) {
    if (c->NumPoints > 0 && ContourInBox(*c, box))
      count += 2 * c->NumPoints;
  }
  if (count == 0)
    return nullptr;
  auto* result = static_cast<MMPoint2d<long>*>(calloc(static_cast<size_t>(count), sizeof(MMPoint2d<long>)));
  int32_t filled = 0;
  for (const CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour) {
    if (c->NumPoints > 0 && ContourInBox(*c, box))
      AppendEdges(*c, result, filled);
  }
  return result;
}

bool CONTOUR_LAYER::REMOVE_CONTOURS_IN_BOX(BOX& box) {
  return RemoveContoursByBox(*this, box, ContourInBox);
}

bool CONTOUR_LAYER::VERWIJDER_CONTOUREN_DOOR_BOX(BOX& box) {
  return RemoveContoursByBox(*this, box, ContourHitsBox);
}
