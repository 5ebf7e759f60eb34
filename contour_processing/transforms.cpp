// Smoothing, affine transforms and circles on contours: refinement of one
// contour along circular arcs, corner cutting of a layer, rotation,
// translation, scaling, mirroring, and a circle made as a new contour.
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "geometry/grid_arithmetic.h"
#include "geometry/grid_transforms.h"
#include "geometry/space_geometry.h"
#include "layer/contour_layer.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

constexpr int32_t kLeastPointsToSmooth = 3;
constexpr float kMaxCircleStep = 45.0f;
constexpr double kFullTurnDegrees = 360.0;
constexpr double kMaxPointCount = 2147483647.0;
constexpr char kCircleType = 1;

MMPoint2d<long>* AllocatePointArray(int32_t count) {
  return static_cast<MMPoint2d<long>*>(calloc(static_cast<size_t>(count), sizeof(MMPoint2d<long>)));
}

// The sub-point at step r of `factor` on the edge from point q to point
// `next`: the circles around both ends, weighted along the edge.
MMPoint2d<long> BlendSubPoint(MMPoint2d<long>* points, int32_t count, int32_t q, int32_t next, int32_t r,
                              int factor) {
  const double t = static_cast<double>(r) / factor;
  const double u = static_cast<double>(factor - r) / factor;
  MMPoint2d<long> a, b;
  INTERPOLEER_CIRKEL(a, points, q, t, count);
  INTERPOLEER_CIRKEL(b, points, next, -u, count);
  return {Truncate(static_cast<double>(b.x) * t + static_cast<double>(a.x) * u),
          Truncate(static_cast<double>(b.y) * t + static_cast<double>(a.y) * u)};
}

// The point at new index j: an old point at every factor-th index, else a
// blended sub-point; the edge after the last point closes on point 0.
MMPoint2d<long> RefinedPoint(MMPoint2d<long>* points, int32_t count, int32_t j, int factor) {
  const int32_t q = j / factor;
  const int32_t r = j % factor;
  if (r == 0)
    return points[q];
  return BlendSubPoint(points, count, q, q + 1 == count ? 0 : q + 1, r, factor);
}

MMPoint2d<long>* RefineClosed(MMPoint2d<long>* points, int32_t n, int factor, int32_t& newCount) {
  newCount = n * factor;
  MMPoint2d<long>* fresh = AllocatePointArray(newCount);
  for (int32_t j = 0; j < newCount; ++j)
    fresh[j] = RefinedPoint(points, n, j, factor);
  return fresh;
}

// Open form: the first and last edges use only the circle of their inner end.
MMPoint2d<long>* RefineOpen(MMPoint2d<long>* points, int32_t n, int factor, int32_t& newCount) {
  newCount = (n - 1) * factor + 1;
  MMPoint2d<long>* fresh = AllocatePointArray(newCount);
  for (int32_t j = factor; j < newCount - factor; ++j)
    fresh[j] = RefinedPoint(points, n, j, factor);
  fresh[0] = points[0];
  fresh[newCount - 1] = points[n - 1];
  for (int v = 1; v < factor; ++v) {
    INTERPOLEER_CIRKEL(fresh[v], points, 1, -static_cast<double>(factor - v) / factor, n);
    INTERPOLEER_CIRKEL(fresh[(n - 2) * factor + v], points, n - 2, static_cast<double>(v) / factor, n);
  }
  return fresh;
}

void CutCorners(CONTOUR& c) {
  const int32_t n = c.NumPoints;
  if (n < 1)
    return;
  c.Points = static_cast<MMPoint2d<long>*>(realloc(c.Points, sizeof(MMPoint2d<long>) * (n + 1)));
  MMPoint2d<long>* p = c.Points;
  p[n] = p[n - 1];
  for (int32_t k = n - 1; k >= 1; --k) {
    p[k].x = Half(Add32(p[k - 1].x, p[k].x));
    p[k].y = Half(Add32(p[k - 1].y, p[k].y));
  }
  c.NumPoints = n + 1;
}

// Applies `move` to every point of every contour of the layer.
template <class Move>
void MoveEveryPoint(CONTOUR_LAYER& layer, Move move) {
  for (CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    for (int32_t i = 0; i < c->NumPoints; ++i)
      move(c->Points[i]);
  }
}

// Number of points of a circle of the given step; 0 when none is to be made.
int32_t CountCirclePoints(int32_t radius, float stepDegrees) {
  if (radius == 0 || !(stepDegrees > 0.0f) || stepDegrees > kMaxCircleStep)
    return 0;
  const double count = kFullTurnDegrees / static_cast<double>(stepDegrees);
  if (count > kMaxPointCount)
    return 0;
  return Truncate(count);
}

MMPoint2d<long>* MakeCirclePoints(int32_t count, int32_t radius, int32_t centreX, int32_t centreY,
                                  float stepDegrees) {
  MMPoint2d<long>* points = AllocatePointArray(count);
  MMPoint2d<long> current = {Add32(radius, centreX), centreY};
  const float step = stepDegrees * kDegreesToRadians;
  const float r = static_cast<float>(radius);
  float angle = 0.0f;
  for (int32_t i = 0; i <= count - 2; ++i) {
    angle += step;
    points[i] = current;
    current = {Add32(TruncateClamped(cosf(angle) * r), centreX),
               Add32(TruncateClamped(sinf(angle) * r), centreY)};
  }
  points[count - 1] = current;
  return points;
}

}  // namespace

void CONTOUR::SMOOTH_CONTOUR(int factor) {
  if (factor < 1 || NumPoints < kLeastPointsToSmooth)
    return;
  int32_t newCount = 0;
  MMPoint2d<long>* fresh = Closed == 0 ? RefineOpen(Points, NumPoints, factor, newCount)
                                       : RefineClosed(Points, NumPoints, factor, newCount);
  free(Points);
  Points = fresh;
  NumPoints = newCount;
}

void CONTOUR_LAYER::SMOOTH_LAAG() {
  for (CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour)
    CutCorners(*c);
}

void CONTOUR_LAYER::ROTEER_LAAG(MMPoint2d<long> centre, float degrees) {
  if (degrees == 0.0f)
    return;
  const GridRotation turn = MakeGridRotation(centre, degrees);
  MoveEveryPoint(*this, [&](MMPoint2d<long>& p) { p = turn(p.x, p.y); });
  BEPAAL_EXTREMA();
}

void CONTOUR_LAYER::TRANSLEER_LAAG(int32_t dx, int32_t dy) {
  if (NumContours == 0)
    return;
  MoveEveryPoint(*this, [&](MMPoint2d<long>& p) { p = {Add32(p.x, dx), Add32(p.y, dy)}; });
  TranslateExtents(*this, dx, dy);
}

void CONTOUR_LAYER::HERSCHAAL_LAAG(MMPoint2d<long> centre, float scaleX, float scaleY) {
  if (NumContours == 0)
    return;
  const AxisScale x = MakeAxisScale(centre.x, scaleX);
  const AxisScale y = MakeAxisScale(centre.y, scaleY);
  MoveEveryPoint(*this, [&](MMPoint2d<long>& p) { p = {x(p.x), y(p.y)}; });
  ScaleExtents(*this, x, y);
}

void CONTOUR_LAYER::SPIEGEL_LAAG(MMPoint2d<long> centre) {
  if (NumContours == 0)
    return;
  MoveEveryPoint(*this, [&](MMPoint2d<long>& p) { p.y = Reflect(p.y, centre.y); });
  ReflectExtents(*this, &CONTOUR_LAYER::MinY, &CONTOUR_LAYER::MaxY, centre.y);
}

void CONTOUR_LAYER::SPIEGEL_LAAG_ROND_Y(MMPoint2d<long> centre) {
  if (NumContours == 0)
    return;
  MoveEveryPoint(*this, [&](MMPoint2d<long>& p) { p.x = Reflect(p.x, centre.x); });
  ReflectExtents(*this, &CONTOUR_LAYER::MinX, &CONTOUR_LAYER::MaxX, centre.x);
}

void CONTOUR_LAYER::ZET_CIRKEL_IN_CONTOUR_LAYER(int32_t radius, int32_t centreX, int32_t centreY,
                                                float stepDegrees) {
  const int32_t count = CountCirclePoints(radius, stepDegrees);
  if (count < 1)
    return;
  CONTOUR* circle = new CONTOUR;
  circle->Points = MakeCirclePoints(count, radius, centreX, centreY, stepDegrees);
  circle->NumPoints = count;
  circle->Closed = 1;
  circle->Type = kCircleType;
  AddContourAtEnd(circle);
  circle->Owner = nullptr;  // linked, not adopted
  BEPAAL_EXTREMA();
}
