#include "geometry/plane_geometry.h"

#include <cmath>

#include "geometry/grid_arithmetic.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

// A line in slope form, y = slope * x + intercept; vertical lines carry the
// marker slope and no intercept.
struct SlopeLine {
  bool vertical;
  float slope;
  float intercept;
};

// Slope and intercept of the line through a and b, taken from a.
SlopeLine FormSlopeLine(MMPoint2d<long> a, MMPoint2d<long> b) {
  if (a.x == b.x)
    return {true, kVerticalSlope, 0.0f};
  const float slope = static_cast<float>(Sub32(b.y, a.y)) / static_cast<float>(Sub32(b.x, a.x));
  return {false, slope, static_cast<float>(a.y) - static_cast<float>(a.x) * slope};
}

// y of a slope line at x, rounded.
int32_t EvaluateRounded(const SlopeLine& line, int32_t x) {
  return Round(static_cast<float>(x) * line.slope + line.intercept);
}

// Sign with 0 counted as positive.
int SignOf(float v) {
  return v >= 0.0f ? 1 : -1;
}
int SignOf(int32_t v) {
  return v >= 0 ? 1 : -1;
}

bool StrictlyBetween(int32_t v, int32_t e0, int32_t e1) {
  return e0 < e1 ? (e0 < v && v < e1) : (e1 < v && v < e0);
}

bool InclusivelyBetween(int32_t v, int32_t e0, int32_t e1) {
  return e0 < e1 ? (e0 <= v && v <= e1) : (e1 <= v && v <= e0);
}

bool InclusivelyBetween(float v, float e0, float e1) {
  return e0 < e1 ? (e0 <= v && v <= e1) : (e1 <= v && v <= e0);
}

// The crossing tests of SNIJDING; the point is cleared on the first failure.
bool LiesOnSegments(MMPoint2d<long> p, MMPoint2d<long> a, MMPoint2d<long> b, MMPoint2d<long> c,
                    MMPoint2d<long> d) {
  if (a.x != b.x && !StrictlyBetween(p.x, a.x, b.x))
    return false;
  if (a.y != b.y && !StrictlyBetween(p.y, a.y, b.y))
    return false;
  if (c.x != d.x && !InclusivelyBetween(p.x, c.x, d.x))
    return false;
  if (c.y != d.y && !InclusivelyBetween(p.y, c.y, d.y))
    return false;
  return true;
}

int16_t CompareValues(float lineValue, float coordinate) {
  if (lineValue > coordinate)
    return 1;
  if (lineValue == coordinate)
    return 0;
  return -1;
}

float FloatDistance(float x0, float y0, float x1, float y1) {
  const float dx = x1 - x0;
  const float dy = y1 - y0;
  return sqrtf(dx * dx + dy * dy);
}

// The first two branches of the segment distance: a segment along one axis.
// `along` indexes the axis on which the segment extends (0 x, 1 y).
float DistanceToAxisSegment(const float* p, const float* a, const float* b, int along) {
  const int across = 1 - along;
  if (SignOf(p[along] - a[along]) == SignOf(b[along] - p[along]))
    return std::fabs(p[across] - a[across]);
  if (SignOf(a[along] - p[along]) == SignOf(b[along] - a[along]))
    return FloatDistance(p[0], p[1], a[0], a[1]);
  return FloatDistance(p[0], p[1], b[0], b[1]);
}

// Foot of the perpendicular from p on the sloped line ab.
void FindFoot(float* foot, const float* p, const float* a, const float* b) {
  const float m = (b[1] - a[1]) / (b[0] - a[0]);
  foot[0] = ((p[1] - a[1]) * m + a[0] * m * m + p[0]) / (m * m + 1.0f);
  foot[1] = (foot[0] - a[0]) * m + a[1];
}

template <class Point>
double DistanceInPlane(const Point& a, const Point& b) {
  const double dx = static_cast<double>(Sub32(a.x, b.x));
  const double dy = static_cast<double>(Sub32(a.y, b.y));
  return sqrt(dx * dx + dy * dy);
}

}  // namespace

MMPoint2d<long> SNIJPUNT_TWEE_RECHTEN(MMPoint2d<long> a, MMPoint2d<long> b, MMPoint2d<long> c,
                                      MMPoint2d<long> d) {
  MMPoint2d<long> result = {0, 0};
  const SlopeLine ab = FormSlopeLine(a, b);
  const SlopeLine cd = FormSlopeLine(c, d);
  if ((ab.vertical && cd.vertical) || ab.slope == cd.slope)
    return result;
  if (ab.vertical)
    return {a.x, EvaluateRounded(cd, a.x)};
  if (cd.vertical)
    return {c.x, EvaluateRounded(ab, c.x)};
  const float s1 = ab.slope, i1 = ab.intercept;
  const float s2 = cd.slope, i2 = cd.intercept;
  result.x = Round((i1 - i2) / (s2 - s1));
  result.y = Round((i2 * s1 - i1 * s2) / (s1 - s2));
  return result;
}

void SNIJDING(MMPoint2d<long>& result, MMPoint2d<long> a, MMPoint2d<long> b, MMPoint2d<long> c,
              MMPoint2d<long> d) {
  result = SNIJPUNT_TWEE_RECHTEN(a, b, c, d);
  if (result.x == 0 && result.y == 0)
    return;
  if (!LiesOnSegments(result, a, b, c, d))
    result = {0, 0};
}

bool RICHTINGS_COEFF_ONGELIJK(MMPoint2d<long> a, MMPoint2d<long> b, MMPoint2d<long> c, MMPoint2d<long> d) {
  const bool abVertical = a.x == b.x;
  const bool cdVertical = c.x == d.x;
  if (abVertical && cdVertical)
    return SignOf(Sub32(a.y, b.y)) != SignOf(Sub32(c.y, d.y));
  if (abVertical || cdVertical)
    return true;
  const float s1 = FormSlopeLine(a, b).slope;
  const float s2 = FormSlopeLine(c, d).slope;
  if (std::fabs(s1 - s2) > std::fabs(s1))
    return true;
  return SignOf(Sub32(a.x, b.x)) != SignOf(Sub32(c.x, d.x));
}

int16_t LIGGING_PUNT_TOV_XY_RECHTE(MMPoint2d<long> a, MMPoint2d<long> b, MMPoint2d<long> p) {
  const float dx = static_cast<float>(Sub32(b.x, a.x));
  const float dy = static_cast<float>(Sub32(b.y, a.y));
  if (dx == 0.0f && dy == 0.0f)
    return 10;
  int32_t reference = a.x;
  int32_t coordinate = p.x;
  if (dx != 0.0f) {
    const float slope = dy / dx;
    const SlopeLine line = {false, slope, static_cast<float>(a.y) - static_cast<float>(a.x) * slope};
    reference = EvaluateRounded(line, p.x);
    coordinate = p.y;
  }
  if (coordinate > reference)
    return 1;
  return coordinate == reference ? 0 : -1;
}

void BEREKEN_RECHTE(int32_t x1, int32_t y1, int32_t x2, int32_t y2, float& a, float& b, float& angle,
                    bool& swapped) {
  const float dx = static_cast<float>(Sub32(x2, x1));
  const float dy = static_cast<float>(Sub32(y2, y1));
  if (std::fabs(dx) > std::fabs(dy)) {
    a = dy / dx;
    b = static_cast<float>(y1) - static_cast<float>(x1) * a;
    swapped = false;
  } else {
    a = dy == 0.0f ? 0.0f : dx / dy;
    b = static_cast<float>(x1) - static_cast<float>(y1) * a;
    swapped = true;
  }
  angle = atan2f(dy, dx);
}

int16_t LIGGING_PUNT(float a, float b, float /*angle*/, bool swapped, int32_t x, int32_t y) {
  if (swapped)
    return CompareValues(a * static_cast<float>(y) + b, static_cast<float>(x));
  return CompareValues(a * static_cast<float>(x) + b, static_cast<float>(y));
}

double AFSTAND(MMPoint2d<long> a, MMPoint2d<long> b) {
  const double dx = static_cast<double>(a.x) - static_cast<double>(b.x);
  const double dy = static_cast<double>(a.y) - static_cast<double>(b.y);
  return sqrt(dx * dx + dy * dy);
}

double XY_AFSTAND(MMPoint2d<long>& a, MMPoint2d<long>& b) {
  return DistanceInPlane(a, b);
}
double XY_AFSTAND(MMPoint3dIntegerTypes<long>& a, MMPoint3dIntegerTypes<long>& b) {
  return DistanceInPlane(a, b);
}
double XY_AFSTAND(MMPoint3dIntegerTypes<long>* a, MMPoint3dIntegerTypes<long>* b) {
  return DistanceInPlane(*a, *b);
}

double BEREKEN_HOEK_XY(MMPoint3dIntegerTypes<long>& centre, MMPoint3dIntegerTypes<long>& point,
                       double radius) {
  if (radius == 0.0)
    return 0.0;
  const double c = static_cast<double>(Sub32(point.x, centre.x)) / radius;
  double angle = 0.0;
  if (c >= 1.0) {
    angle = 0.0;
  } else if (c <= -1.0) {
    angle = kPi;
  } else {
    angle = acos(c);
  }
  return point.y < centre.y ? -angle : angle;
}

char PUNT_OP_LIJN(MMPoint3dIntegerTypes<long>& a, MMPoint3dIntegerTypes<long>& b,
                  MMPoint3dIntegerTypes<long>& p) {
  const double dx = Sub32(b.x, a.x), dy = Sub32(b.y, a.y), dz = Sub32(b.z, a.z);
  const double ex = Sub32(p.x, a.x), ey = Sub32(p.y, a.y), ez = Sub32(p.z, a.z);
  const double tol = dx * 0.00001;
  const bool inXY = std::fabs(tol * dy) > std::fabs(ex * dy - ey * dx);
  const bool inXZ = std::fabs(tol * dz) > std::fabs(ex * dz - ez * dx);
  return (inXY && inXZ) ? 1 : 0;
}

float DISTANCE_POINT_TO_LINE_SEGMENT_2D(const float* p, const float* a, const float* b) {
  if (a[0] == b[0])
    return DistanceToAxisSegment(p, a, b, 1);
  if (a[1] == b[1])
    return DistanceToAxisSegment(p, a, b, 0);
  float foot[2];
  FindFoot(foot, p, a, b);
  if (InclusivelyBetween(foot[0], a[0], b[0]) && InclusivelyBetween(foot[1], a[1], b[1])) {
    return FloatDistance(p[0], p[1], foot[0], foot[1]);
  }
  const float toA = FloatDistance(p[0], p[1], a[0], a[1]);
  const float toB = FloatDistance(p[0], p[1], b[0], b[1]);
  return toA < toB ? toA : toB;
}

void PROJECTION_2D(float* result, const float* p, const float* a, const float* b) {
  if (a[0] == b[0]) {
    result[0] = a[0];
    result[1] = p[1];
  } else if (a[1] == b[1]) {
    result[0] = p[0];
    result[1] = a[1];
  } else {
    FindFoot(result, p, a, b);
  }
}

void MIDDLE(MMPoint3dIntegerTypes<long>& result, MMPoint3dIntegerTypes<long>* p,
            MMPoint3dIntegerTypes<long>* q) {
  result.x = Add32(p->x, q->x) / 2;
  result.y = Add32(p->y, q->y) / 2;
  result.z = Add32(p->z, q->z) / 2;
}

void MIDDLE(MMPoint3dIntegerTypes<long>& result, MMPoint3dIntegerTypes<long>* p,
            MMPoint3dIntegerTypes<long>* q, MMPoint3dIntegerTypes<long>* r) {
  result.x = Add32(Add32(p->x, q->x), r->x) / 3;
  result.y = Add32(Add32(p->y, q->y), r->y) / 3;
  result.z = Add32(Add32(p->z, q->z), r->z) / 3;
}
