// Cleaning and compression of a contour layer: removal of contours by size,
// length or type, removal of doubled points, and thinning of points by angle,
// by distance and by snapping to a grid. All work in place; only
// FILTER_LAAG_OP_TYPE recomputes the extents.
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "geometry/grid_arithmetic.h"
#include "layer/contour_chain.h"
#include "layer/contour_layer.h"

using namespace kelvor2d_detail;  // the internal grid and chain helpers

namespace {

constexpr unsigned short kLeastPointsKept = 2;
constexpr unsigned short kLeastPointsAfterCompression = 3;

// Whether a contour is exempt from a size filter that spares non-holes.
bool IsSpared(const CONTOUR& c, bool onlyInner) {
  return onlyInner && c.Outer != 0;
}

// The points of `c` that differ from their predecessor in the old array; for
// a closed contour point 0's predecessor is the last point, for an open one
// point 0 is always kept. The array is shrunk to what was kept.
void DropRepeatedPoints(CONTOUR& c) {
  const int32_t n = c.NumPoints;
  if (n < 1)
    return;
  auto* kept = static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * n));
  int32_t count = 0;
  for (int32_t i = 0; i < n; ++i) {
    const bool first = i == 0;
    if (first && c.Closed == 0) {
      kept[count++] = c.Points[0];
      continue;
    }
    if (c.Points[i] != c.Points[first ? n - 1 : i - 1])
      kept[count++] = c.Points[i];
  }
  free(c.Points);
  if (count == 0) {
    free(kept);
    kept = nullptr;
  } else {
    kept = static_cast<MMPoint2d<long>*>(realloc(kept, sizeof(MMPoint2d<long>) * count));
  }
  c.Points = kept;
  c.NumPoints = count;
}

// Direction of the edge ab in whole degrees, 0..359.
int32_t MeasureDirection(const MMPoint2d<long>& a, const MMPoint2d<long>& b) {
  const float dx = static_cast<float>(b.x) - static_cast<float>(a.x);
  const float dy = static_cast<float>(b.y) - static_cast<float>(a.y);
  if (dx == 0.0f) {
    if (dy < 0.0f)
      return 90;
    return dy > 0.0f ? 270 : 180;
  }
  const double degrees = static_cast<double>(atan2f(dy, dx) * 180.0f) / kPi + 180.0;
  return Truncate(degrees) % 360;
}

// Overwrites with point i - 2 each point i - 1 whose turn is not strictly
// between the limits, walking the array as it changes.
void FlattenShallowTurns(CONTOUR& c, int32_t minAngle, int32_t maxAngle) {
  MMPoint2d<long>* p = c.Points;
  for (int32_t i = 2; i < c.NumPoints; ++i) {
    int32_t turn = std::abs(MeasureDirection(p[i - 2], p[i - 1]) - MeasureDirection(p[i - 1], p[i]));
    if (turn > 180)
      turn -= 180;
    const float t = static_cast<float>(turn);
    if (!(static_cast<float>(minAngle) < t && t < static_cast<float>(maxAngle)))
      p[i - 1] = p[i - 2];
  }
}

// Truncated distance of two grid points, from 32-bit differences.
int64_t TruncatedDistance(const MMPoint2d<long>& a, const MMPoint2d<long>& b) {
  const double dx = static_cast<double>(Sub32(a.x, b.x));
  const double dy = static_cast<double>(Sub32(a.y, b.y));
  return static_cast<int64_t>(sqrt(dx * dx + dy * dy));
}

// Overwrites with the last point kept each point nearer to it than minLength;
// the walk starts from the last point of the array.
void CollapseNearPoints(CONTOUR& c, int32_t minLength) {
  if (c.NumPoints < 1)
    return;
  MMPoint2d<long> reference = c.Points[c.NumPoints - 1];
  for (int32_t i = 0; i < c.NumPoints; ++i) {
    if (TruncatedDistance(c.Points[i], reference) < minLength) {
      c.Points[i] = reference;
    } else {
      reference = c.Points[i];
    }
  }
}

int32_t SnapToGrid(int32_t coordinate, int32_t resolution) {
  return Mul32(Round(static_cast<float>(coordinate) / static_cast<float>(resolution)), resolution);
}

}  // namespace

void CONTOUR_LAYER::FILTER_LAAG(unsigned short minPoints, bool onlyInner) {
  RemoveContoursWhere(*this,
                      [&](const CONTOUR& c) { return !IsSpared(c, onlyInner) && c.NumPoints < minPoints; });
}

void CONTOUR_LAYER::FILTER_LAAG_OP_TYPE(char type) {
  RemoveContoursWhere(*this, [&](const CONTOUR& c) { return c.Type == type; });
  BEPAAL_EXTREMA();
}

void CONTOUR_LAYER::VERWIJDER_CONTOUREN_MINDER_LANG_DAN(uint32_t minLength, bool onlyInner) {
  RemoveContoursWhere(*this,
                      [&](CONTOUR& c) { return !IsSpared(c, onlyInner) && c.BEREKEN_LENGTE() < minLength; });
}

void CONTOUR_LAYER::VERWIJDER_DUBBELE_PUNTEN(unsigned short minPoints) {
  const unsigned short limit = minPoints < kLeastPointsKept ? kLeastPointsKept : minPoints;
  FILTER_LAAG(limit, false);
  for (CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour) {
    if (c->Closed == 0 || c->Closed == 1)
      DropRepeatedPoints(*c);
  }
  RemoveContoursWhere(*this, [&](const CONTOUR& c) { return c.NumPoints < limit; });
}

void CONTOUR_LAYER::COMPRES_LAAG(int32_t minAngle, int32_t maxAngle) {
  for (CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour) {
    if (c->NumPoints > 2)
      FlattenShallowTurns(*c, minAngle, maxAngle);
  }
  VERWIJDER_DUBBELE_PUNTEN(kLeastPointsKept);
}

void CONTOUR_LAYER::COMPRES_LAAG_OP_LENGTE(int32_t minLength) {
  if (minLength < 1)
    return;
  FILTER_LAAG(kLeastPointsAfterCompression, false);
  for (CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour)
    CollapseNearPoints(*c, minLength);
  VERWIJDER_DUBBELE_PUNTEN(kLeastPointsAfterCompression);
}

void CONTOUR_LAYER::COMPRES_LAAG_OP_RESOLUTIE(int32_t resolution) {
  if (resolution == 0)
    return;
  for (CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour) {
    for (int32_t i = 0; i < c->NumPoints; ++i) {
      c->Points[i].x = SnapToGrid(c->Points[i].x, resolution);
      c->Points[i].y = SnapToGrid(c->Points[i].y, resolution);
    }
  }
  VERWIJDER_DUBBELE_PUNTEN(kLeastPointsAfterCompression);
}

void CONTOUR_LAYER::SLUIT_CONTOUREN() {
  for (CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour) {
    if (c->NumPoints < 1)
      continue;
    c->Points =
        static_cast<MMPoint2d<long>*>(realloc(c->Points, sizeof(MMPoint2d<long>) * (c->NumPoints + 1)));
    c->Points[c->NumPoints] = c->Points[0];
    ++c->NumPoints;
  }
}
