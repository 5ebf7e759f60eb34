// The members of CONTOUR that rest on the plane geometry: the turning
// direction by extreme points and the count of crossings with a segment.
#include <cstdlib>

#include "geometry/plane_geometry.h"
#include "geometry/segment_crossing.h"
#include "layer/contour.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

// Indices of the first points with the least and greatest x and y.
struct ExtremeIndices {
  int32_t minX = 0;
  int32_t maxX = 0;
  int32_t minY = 0;
  int32_t maxY = 0;
};

ExtremeIndices FindExtremeIndices(const MMPoint2d<long>* points, int32_t count) {
  ExtremeIndices e;
  for (int32_t i = 1; i < count; ++i) {
    if (points[i].x < points[e.minX].x)
      e.minX = i;
    if (points[i].x > points[e.maxX].x)
      e.maxX = i;
    if (points[i].y < points[e.minY].y)
      e.minY = i;
    if (points[i].y > points[e.maxY].y)
      e.maxY = i;
  }
  return e;
}

// True when walking forward from `from`, with wrap, reaches i before `to`.
bool ReachedBefore(int32_t i, int32_t from, int32_t to) {
  if (from < to)
    return from < i && i < to;
  return i > from || i < to;
}

// The extremes fold onto one diagonal: decide by the side of the first point
// off the diagonal from the least-x point to the greatest-x point.
bool DecideByDiagonal(const MMPoint2d<long>* points, int32_t count, const ExtremeIndices& e) {
  for (int32_t i = 0; i < count; ++i) {
    if (i == e.minX || i == e.maxX)
      continue;
    const int16_t side = LIGGING_PUNT_TOV_XY_RECHTE(points[e.minX], points[e.maxX], points[i]);
    if (side == 0)
      continue;
    if (side == 10)
      return true;
    if (side == 1)
      return ReachedBefore(i, e.minX, e.maxX);
    return ReachedBefore(i, e.maxX, e.minX);
  }
  return true;
}

// Clockwise order of the extremes: least x, greatest y, greatest x, least y.
bool DecideByCyclicOrder(const ExtremeIndices& e) {
  int rising = 0;
  if (e.minX <= e.maxY)
    ++rising;
  if (e.maxY <= e.maxX)
    ++rising;
  if (e.maxX <= e.minY)
    ++rising;
  if (e.minY <= e.minX)
    ++rising;
  return rising >= 3;
}

// The contour's bounding box; the empty extents without points.
GridBox BoxOfPoints(const MMPoint2d<long>* points, int32_t count) {
  GridBox box = {kEmptyExtentMin, kEmptyExtentMin, kEmptyExtentMax, kEmptyExtentMax};
  for (int32_t i = 0; i < count; ++i) {
    if (points[i].x < box.minX)
      box.minX = points[i].x;
    if (points[i].y < box.minY)
      box.minY = points[i].y;
    if (points[i].x > box.maxX)
      box.maxX = points[i].x;
    if (points[i].y > box.maxY)
      box.maxY = points[i].y;
  }
  return box;
}

bool Disjoint(const GridBox& a, const GridBox& b) {
  return a.minX > b.maxX || a.maxX < b.minX || a.minY > b.maxY || a.maxY < b.minY;
}

bool EdgePasses(MMPoint2d<long> a, MMPoint2d<long> b, const GridBox& box, MMPoint2d<long> p,
                MMPoint2d<long> q) {
  MMPoint2d<long> crossing;
  return EdgeCrossesSegment(a, b, box, p, q, crossing);
}

}  // namespace

bool CONTOUR::RECHTS_DRAAIEND_OUD() {
  const int32_t count = std::abs(NumPoints);
  if (count == 0)
    return true;
  const ExtremeIndices e = FindExtremeIndices(Points, count);
  const bool folded = (e.minX == e.maxY && e.minY == e.maxX) || (e.maxX == e.maxY && e.minY == e.minX);
  if (folded)
    return DecideByDiagonal(Points, count, e);
  return DecideByCyclicOrder(e);
}

int32_t CONTOUR::INTERSECT_WITH_LINE(int32_t& x1, int32_t& y1, int32_t& x2, int32_t& y2) {
  const MMPoint2d<long> a = {x1, y1};
  const MMPoint2d<long> b = {x2, y2};
  const GridBox segmentBox = BoxOfEnds(a, b);
  if (NumPoints < 1 || Disjoint(BoxOfPoints(Points, NumPoints), segmentBox))
    return 0;
  int32_t passed = 0;
  for (int32_t i = 0; i + 1 < NumPoints; ++i) {
    if (EdgePasses(a, b, segmentBox, Points[i], Points[i + 1]))
      ++passed;
  }
  if (EdgePasses(a, b, segmentBox, Points[NumPoints - 1], Points[0]))
    ++passed;
  return passed;
}
