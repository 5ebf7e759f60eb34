#include "geometry/space_geometry.h"

#include <cmath>
#include <cstdint>

#include "geometry/grid_arithmetic.h"
#include "geometry/plane_geometry.h"
#include "geometry/space_geometry_helpers.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

constexpr float kLineTolerance = 0.0001f;
constexpr double kSphereTolerance = 1e-05;
constexpr double kMinusTwoPi = -6.283185307179586;

struct Vec3d {
  double x, y, z;
};

struct Vec3f {
  float x, y, z;
};

Vec3f ToVec(const float* v) {
  return {v[0], v[1], v[2]};
}
Vec3f Minus(const Vec3f& a, const Vec3f& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Vec3f Minus(const float* a, const float* b) {
  return Minus(ToVec(a), ToVec(b));
}
float Dot(const Vec3f& a, const Vec3f& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
float Length(const Vec3f& v) {
  return sqrtf(v.x * v.x + v.y * v.y + v.z * v.z);
}
Vec3f Scaled(const Vec3f& v, float s) {
  return {v.x * s, v.y * s, v.z * s};
}
Vec3f Normalised(const Vec3f& v) {
  const float l = Length(v);
  return {v.x / l, v.y / l, v.z / l};
}

Vec3d Widen(const MMPoint3dIntegerTypes<long>& p) {
  return {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)};
}
Vec3d Widen(const MMPoint3d<float>& p) {
  return {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)};
}
Vec3d Widen(const float* p) {
  return {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
}
Vec3d Widen(const Vec3f& p) {
  return {p.x, p.y, p.z};
}

// The plane through three points as the determinants of their coordinates.
VLAK_COEF PlaneThrough(const Vec3d& p1, const Vec3d& p2, const Vec3d& p3) {
  const double x1 = p1.x, y1 = p1.y, z1 = p1.z;
  const double x2 = p2.x, y2 = p2.y, z2 = p2.z;
  const double x3 = p3.x, y3 = p3.y, z3 = p3.z;
  VLAK_COEF v;
  v.A = y3 * z1 + z2 * y1 + z3 * y2 - (z3 * y1 + y2 * z1 + y3 * z2);
  v.B = -(x3 * z1 + z2 * x1 + z3 * x2 - (z3 * x1 + x2 * z1 + x3 * z2));
  v.C = y2 * x1 + x3 * y1 + y3 * x2 - (x2 * y1 + y3 * x1 + x3 * y2);
  v.D = y2 * x1 * z3 + x3 * y1 * z2 + y3 * x2 * z1 - (x2 * y1 * z3 + y3 * x1 * z2 + x3 * y2 * z1);
  return v;
}

// Plane with normal `direction` through `point`: D is their dot product.
VLAK_COEF PlaneByNormal(const Vec3d& direction, const Vec3d& point) {
  VLAK_COEF v;
  v.A = direction.x;
  v.B = direction.y;
  v.C = direction.z;
  v.D = point.x * v.A + point.y * v.B + point.z * v.C;
  return v;
}

Vec3d DirectionOf(const MMPoint3dIntegerTypes<long>& p, const MMPoint3dIntegerTypes<long>& q) {
  return {static_cast<double>(Sub32(q.x, p.x)), static_cast<double>(Sub32(q.y, p.y)),
          static_cast<double>(Sub32(q.z, p.z))};
}
Vec3d DirectionOf(const MMPoint3d<float>& p, const MMPoint3d<float>& q) {
  return Widen(Vec3f{q.x - p.x, q.y - p.y, q.z - p.z});
}

// Middle of pq passed through a float: integer differences widened, halved,
// offset by p in double.
float MiddleCoordinate(int32_t p, int32_t q) {
  return static_cast<float>(static_cast<double>(Sub32(q, p)) * 0.5 + static_cast<double>(p));
}
Vec3d MiddleOf(const MMPoint3dIntegerTypes<long>& p, const MMPoint3dIntegerTypes<long>& q) {
  return Widen(Vec3f{MiddleCoordinate(p.x, q.x), MiddleCoordinate(p.y, q.y), MiddleCoordinate(p.z, q.z)});
}
Vec3d MiddleOf(const MMPoint3d<float>& p, const MMPoint3d<float>& q) {
  return Widen(Vec3f{(q.x - p.x) * 0.5f + p.x, (q.y - p.y) * 0.5f + p.y, (q.z - p.z) * 0.5f + p.z});
}

// Bisector plane of ab from float arrays, the middle formed as `MiddleOf`.
VLAK_COEF BisectorOf(const float* a, const float* b) {
  MMPoint3d<float> pa = {a[0], a[1], a[2]};
  MMPoint3d<float> pb = {b[0], b[1], b[2]};
  return PlaneByNormal(DirectionOf(pa, pb), MiddleOf(pa, pb));
}

double Det2(double a, double b, double c, double d) {
  return a * d - b * c;
}

// Cramer's rule on three planes; a zero determinant divides by 1.0.
Vec3d SolvePlanes(const VLAK_COEF& p, const VLAK_COEF& q, const VLAK_COEF& r) {
  const double bc = Det2(q.B, q.C, r.B, r.C), ac = Det2(q.A, q.C, r.A, r.C), ab = Det2(q.A, q.B, r.A, r.B);
  const double dc = Det2(q.D, q.C, r.D, r.C), db = Det2(q.D, q.B, r.D, r.B), ad = Det2(q.A, q.D, r.A, r.D);
  double det = p.A * bc - p.B * ac + p.C * ab;
  if (det == 0.0)
    det = 1.0;
  const double nx = p.D * bc - p.B * dc + p.C * db;
  const double ny = p.A * dc - p.D * ac + p.C * ad;
  const double nz = p.A * -db - p.B * ad + p.D * ab;
  return {nx / det, ny / det, nz / det};
}

void StoreNarrowed(float* out, const Vec3d& v) {
  out[0] = static_cast<float>(v.x);
  out[1] = static_cast<float>(v.y);
  out[2] = static_cast<float>(v.z);
}

// Bisector plane of the grid points a, b in the plane z = 0.
VLAK_COEF BisectorInPlane(const MMPoint2d<long>& a, const MMPoint2d<long>& b) {
  const Vec3d direction = {static_cast<double>(Sub32(b.x, a.x)), static_cast<double>(Sub32(b.y, a.y)), 0.0};
  const Vec3d middle = {MiddleCoordinate(a.x, b.x), MiddleCoordinate(a.y, b.y), 0.0};
  return PlaneByNormal(direction, middle);
}

// Whether a, b, c lie on one line (exact, on 64-bit differences).
bool AreCollinear(const MMPoint2d<long>& a, const MMPoint2d<long>& b, const MMPoint2d<long>& c) {
  const int64_t ux = static_cast<int64_t>(b.x) - a.x, uy = static_cast<int64_t>(b.y) - a.y;
  const int64_t vx = static_cast<int64_t>(c.x) - b.x, vy = static_cast<int64_t>(c.y) - b.y;
  return ux * vy == uy * vx;
}

// Point at the fraction t from b towards c, each offset truncated.
MMPoint2d<long> InterpolateOnLine(const MMPoint2d<long>& b, const MMPoint2d<long>& c, double t) {
  const double dx = static_cast<double>(c.x) - static_cast<double>(b.x);
  const double dy = static_cast<double>(c.y) - static_cast<double>(b.y);
  return {Add32(b.x, Truncate(t * dx)), Add32(b.y, Truncate(t * dy))};
}

// Centre of the circle through a, b, c (not collinear), rounded, in z = 0.
MMPoint3dIntegerTypes<long> CircleCentre(const MMPoint2d<long>& a, const MMPoint2d<long>& b,
                                         const MMPoint2d<long>& c) {
  VLAK_COEF* first = new VLAK_COEF(BisectorInPlane(a, b));
  VLAK_COEF* second = new VLAK_COEF(BisectorInPlane(b, c));
  VLAK_COEF* third = new VLAK_COEF(BEREKEN_VLAK(MMPoint3dIntegerTypes<long>{a.x, a.y, 0},
                                                MMPoint3dIntegerTypes<long>{b.x, b.y, 0},
                                                MMPoint3dIntegerTypes<long>{c.x, c.y, 0}));
  MMPoint3dIntegerTypes<long>* centre = SNIJDING_VLAKKEN(first, second, third);
  const MMPoint3dIntegerTypes<long> result = *centre;
  delete first;
  delete second;
  delete third;
  delete centre;
  return result;
}

// Point at the fraction t from b towards c on the circle through a, b, c.
MMPoint2d<long> InterpolateOnCircle(const MMPoint2d<long>& a, const MMPoint2d<long>& b,
                                    const MMPoint2d<long>& c, double t) {
  MMPoint3dIntegerTypes<long> centre = CircleCentre(a, b, c);
  const double dx = static_cast<double>(Sub32(b.x, centre.x));
  const double dy = static_cast<double>(Sub32(b.y, centre.y));
  const double radius = sqrt(dx * dx + dy * dy);
  MMPoint3dIntegerTypes<long> pb = {b.x, b.y, 0};
  MMPoint3dIntegerTypes<long> pc = {c.x, c.y, 0};
  double angleB = BEREKEN_HOEK_XY(centre, pb, radius);
  double angleC = BEREKEN_HOEK_XY(centre, pc, radius);
  while (angleC - angleB > kPi)
    angleC += kMinusTwoPi;
  while (angleB - angleC > kPi)
    angleB += kMinusTwoPi;
  const double angle = (1.0 - t) * angleB + t * angleC;
  return {Add32(Truncate(cos(angle) * radius), centre.x), Add32(Truncate(sin(angle) * radius), centre.y)};
}

}  // namespace

// ---- helpers without export ----

bool COPLANAR_3D(const float* a, const float* b, const float* c, const float* d) {
  const Vec3f u = Minus(b, a), v = Minus(d, c), w = Minus(c, a);
  const float triple =
      (v.y * w.z - w.y * v.z) * u.x - (u.y * w.z - w.y * u.z) * v.x + (u.y * v.z - v.y * u.z) * w.x;
  return std::fabs(triple) < kLineTolerance;
}

float COS_ANGLE_3D(const float* a, const float* b, const float* c, const float* d) {
  return Dot(Normalised(Minus(b, a)), Normalised(Minus(d, c)));
}

double VECTOR_LENGTH_3D(const float* v) {
  const double ax = std::fabs(static_cast<double>(v[0]));
  const double ay = std::fabs(static_cast<double>(v[1]));
  const double az = std::fabs(static_cast<double>(v[2]));
  double m = ax, u = ay, w = az;
  if (az >= ax && az >= ay) {
    m = az, u = ax, w = ay;
  } else if (ay >= ax) {
    m = ay, u = ax, w = az;
  }
  if (m == 0.0)
    return 0.0;
  return sqrt((u / m) * (u / m) + (w / m) * (w / m) + 1.0) * m;
}

// ---- planes ----

void VLAK_COEF::DOORSNEDE_MET_RECHTE(MMPoint3dIntegerTypes<long>& out, MMPoint3dIntegerTypes<long>* p,
                                     MMPoint3dIntegerTypes<long>* q) {
  const double norm = A * A + B * B + C * C;
  if (norm == 0.0) {
    out = *q;
    return;
  }
  const Vec3d pp = Widen(*p), qq = Widen(*q);
  const double t = (A * qq.x + B * qq.y + C * qq.z - D) / norm;
  out.x = Round((1.0 - t) * qq.x + t * pp.x);
  out.y = Round((1.0 - t) * qq.y + t * pp.y);
  out.z = Round((1.0 - t) * qq.z + t * pp.z);
}

VLAK_COEF* RICHTINGSVECTOR(MMPoint3dIntegerTypes<long>* p, MMPoint3dIntegerTypes<long>* q) {
  return new VLAK_COEF(PlaneByNormal(DirectionOf(*p, *q), {0.0, 0.0, 0.0}));
}
VLAK_COEF* RICHTINGSVECTOR(MMPoint3d<float>* p, MMPoint3d<float>* q) {
  return new VLAK_COEF(PlaneByNormal(DirectionOf(*p, *q), {0.0, 0.0, 0.0}));
}

VLAK_COEF* BEREKEN_LOODVLAK_DOOR_PUNT(MMPoint3dIntegerTypes<long>* p, MMPoint3dIntegerTypes<long>* q,
                                      MMPoint3d<float>* r) {
  return new VLAK_COEF(PlaneByNormal(DirectionOf(*p, *q), Widen(*r)));
}
VLAK_COEF* BEREKEN_LOODVLAK_DOOR_PUNT(MMPoint3d<float>* p, MMPoint3d<float>* q, MMPoint3d<float>* r) {
  return new VLAK_COEF(PlaneByNormal(DirectionOf(*p, *q), Widen(*r)));
}

VLAK_COEF* BEREKEN_MIDDELLOODVLAK(MMPoint3dIntegerTypes<long>* p, MMPoint3dIntegerTypes<long>* q) {
  return new VLAK_COEF(PlaneByNormal(DirectionOf(*p, *q), MiddleOf(*p, *q)));
}
VLAK_COEF* BEREKEN_MIDDELLOODVLAK(MMPoint3d<float>* p, MMPoint3d<float>* q) {
  return new VLAK_COEF(PlaneByNormal(DirectionOf(*p, *q), MiddleOf(*p, *q)));
}

VLAK_COEF* BEREKEN_VLAK(MMPoint3dIntegerTypes<long>* p, MMPoint3dIntegerTypes<long>* q,
                        MMPoint3dIntegerTypes<long>* r) {
  return new VLAK_COEF(PlaneThrough(Widen(*p), Widen(*q), Widen(*r)));
}
VLAK_COEF BEREKEN_VLAK(MMPoint3dIntegerTypes<long> p, MMPoint3dIntegerTypes<long> q,
                       MMPoint3dIntegerTypes<long> r) {
  return PlaneThrough(Widen(p), Widen(q), Widen(r));
}
VLAK_COEF BEREKEN_VLAK(MMPoint3d<float> p, MMPoint3d<float> q, MMPoint3d<float> r) {
  return PlaneThrough(Widen(p), Widen(q), Widen(r));
}
void PLANE(VLAK_COEF& out, const float* p, const float* q, const float* r) {
  out = PlaneThrough(Widen(p), Widen(q), Widen(r));
}

void PLANE(float* centre, float* normal, const float* p, const float* q, const float* r) {
  for (int i = 0; i < 3; ++i)
    centre[i] = (p[i] + q[i] + r[i]) / 3.0f;
  normal[0] = (q[2] - r[2]) * p[1] + (p[2] - q[2]) * r[1] + (r[2] - p[2]) * q[1];
  normal[1] = -((p[2] - q[2]) * r[0] + (q[2] - r[2]) * p[0] + (r[2] - p[2]) * q[0]);
  normal[2] = (p[1] - q[1]) * r[0] + (q[1] - r[1]) * p[0] + (r[1] - p[1]) * q[0];
  const double length = VECTOR_LENGTH_3D(normal);
  if (length <= 0.0)
    return;
  for (int i = 0; i < 3; ++i)
    normal[i] = static_cast<float>(static_cast<double>(normal[i]) / length);
}

float BEREKEN_AFSTAND_TOT_VLAK(MMPoint3d<float>* p, MMPoint3d<float>* q, MMPoint3d<float>* r,
                               MMPoint3d<float>* s) {
  VLAK_COEF v = PlaneThrough(Widen(*p), Widen(*q), Widen(*r));
  const double length = sqrt(v.A * v.A + v.B * v.B + v.C * v.C);
  if (length == 0.0)
    return 0.0f;
  v.A /= length;
  v.B /= length;
  v.C /= length;
  v.D /= length;
  const Vec3d ss = Widen(*s);
  return static_cast<float>(v.D - ss.x * v.A - ss.y * v.B - ss.z * v.C);
}

// ---- intersections of three planes ----

MMPoint3dIntegerTypes<long>* SNIJDING_VLAKKEN(VLAK_COEF* first, VLAK_COEF* second, VLAK_COEF* third) {
  const Vec3d v = SolvePlanes(*first, *second, *third);
  return new MMPoint3dIntegerTypes<long>{Round(v.x), Round(v.y), Round(v.z)};
}

MMPoint3d<float>* SNIJDING_VLAKKEN_FLOAT(VLAK_COEF* first, VLAK_COEF* second, VLAK_COEF* third) {
  const Vec3d v = SolvePlanes(*first, *second, *third);
  return new MMPoint3d<float>{static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

void INTERSECTION(float* out, VLAK_COEF const& first, VLAK_COEF const& second, VLAK_COEF const& third) {
  StoreNarrowed(out, SolvePlanes(first, second, third));
}

void INTERSECTION(float* out, const float* p1, const float* n1, const float* p2, const float* n2,
                  const float* p3, const float* n3) {
  INTERSECTION(out, PlaneByNormal(Widen(n1), Widen(p1)), PlaneByNormal(Widen(n2), Widen(p2)),
               PlaneByNormal(Widen(n3), Widen(p3)));
}

// ---- circles and spheres ----

MMPoint3dIntegerTypes<long>* BEREKEN_3D_CIRKELBOOG(MMPoint3dIntegerTypes<long>* p,
                                                   MMPoint3dIntegerTypes<long>* q,
                                                   MMPoint3dIntegerTypes<long>* r) {
  VLAK_COEF* first = BEREKEN_MIDDELLOODVLAK(p, q);
  VLAK_COEF* second = BEREKEN_MIDDELLOODVLAK(q, r);
  VLAK_COEF* third = BEREKEN_VLAK(p, q, r);
  MMPoint3dIntegerTypes<long>* centre = SNIJDING_VLAKKEN(first, second, third);
  delete first;
  delete second;
  delete third;
  return centre;
}

void CIRCLE_CURVE(float* centre, float& radius, const float* p, const float* q, const float* r) {
  VLAK_COEF plane;
  PLANE(plane, p, q, r);
  const Vec3f pq = Minus(q, p), qr = Minus(r, q);
  const Vec3f middlePQ = Scaled(Vec3f{p[0] + q[0], p[1] + q[1], p[2] + q[2]}, 0.5f);
  const Vec3f middleQR = Scaled(Vec3f{q[0] + r[0], q[1] + r[1], q[2] + r[2]}, 0.5f);
  INTERSECTION(centre, plane, PlaneByNormal(Widen(pq), Widen(middlePQ)),
               PlaneByNormal(Widen(qr), Widen(middleQR)));
  radius = Length(Minus(p, centre));
}

bool SPHERE(float* centre, float& radius, const float* p, const float* q, const float* r, const float* s) {
  const Vec3f u = Minus(q, p), v = Minus(r, p), w = Minus(s, p);
  const float triple =
      u.x * (v.y * w.z - v.z * w.y) - u.y * (v.x * w.z - v.z * w.x) + u.z * (v.x * w.y - v.y * w.x);
  if (!(static_cast<double>(std::fabs(triple)) > kSphereTolerance))
    return false;
  VLAK_COEF* first = new VLAK_COEF(BisectorOf(p, q));
  VLAK_COEF* second = new VLAK_COEF(BisectorOf(r, s));
  VLAK_COEF* third = new VLAK_COEF(BisectorOf(p, s));
  MMPoint3d<float>* found = SNIJDING_VLAKKEN_FLOAT(first, second, third);
  centre[0] = found->x;
  centre[1] = found->y;
  centre[2] = found->z;
  delete first;
  delete second;
  delete third;
  delete found;
  const Vec3d d = Widen(Minus(centre, p));
  radius = static_cast<float>(sqrt(d.x * d.x + d.y * d.y + d.z * d.z));
  return true;
}

void INTERPOLEER_CIRKEL(MMPoint2d<long>& result, MMPoint2d<long>* points, int index, double t, int count) {
  const int previous = index - 1 < 0 ? count - 1 : index - 1;
  const int next = index + 1 == count ? 0 : index + 1;
  int a = previous, c = next;
  if (!(t > 0.0)) {
    a = next;
    c = previous;
    t = -t;
  }
  const MMPoint2d<long>& b = points[index];
  if (AreCollinear(points[a], b, points[c])) {
    result = InterpolateOnLine(b, points[c], t);
    return;
  }
  result = InterpolateOnCircle(points[a], b, points[c], t);
}

// ---- lines ----

bool DO_INTERSECT_3D(const float* a, const float* b, const float* c, const float* d) {
  if (!COPLANAR_3D(a, b, c, d))
    return false;
  const Vec3f u = Minus(b, a), v = Minus(d, c);
  if (std::fabs(u.x * v.y - v.x * u.y) > kLineTolerance)
    return true;
  if (std::fabs(v.z * u.y - u.z * v.y) > kLineTolerance)
    return true;
  return std::fabs(v.z * u.x - u.z * v.x) > kLineTolerance;
}

void INTERSECTION_3D(float* out, const float* a, const float* b, const float* c, const float* d) {
  const Vec3f u = Minus(b, a), v = Minus(d, c), w = Minus(c, a);
  float numerator = w.x * v.z - w.z * v.x;
  float denominator = v.z * u.x - u.z * v.x;
  if (std::fabs(u.x * v.y - v.x * u.y) > kLineTolerance) {
    numerator = w.y * v.x - w.x * v.y;
    denominator = v.x * u.y - u.x * v.y;
  } else if (std::fabs(v.z * u.y - u.z * v.y) > kLineTolerance) {
    numerator = w.z * v.y - w.y * v.z;
    denominator = u.z * v.y - v.z * u.y;
  }
  const float t = denominator == 0.0f ? 0.0f : numerator / denominator;
  const Vec3f point = {u.x * t + a[0], u.y * t + a[1], u.z * t + a[2]};
  out[0] = point.x;
  out[1] = point.y;
  out[2] = point.z;
}

void PROJECTION_3D(float* out, const float* p, const float* a, const float* b) {
  const bool atA = p[0] == a[0] && p[1] == a[1] && p[2] == a[2];
  const bool noLine = a[0] == b[0] && a[1] == b[1] && a[2] == b[2];
  if (atA || noLine) {  // p itself, or a, which is then p's only foot
    for (int i = 0; i < 3; ++i)
      out[i] = atA ? p[i] : a[i];
    return;
  }
  const Vec3f u = Normalised(Minus(b, a));
  const float l = Length(Minus(p, a));
  float c = COS_ANGLE_3D(a, b, a, p);
  if (c > 1.0f)
    c = 1.0f;
  if (c < -1.0f)
    c = -1.0f;
  const float s = cosf(acosf(c)) * l;
  const Vec3f foot = {s * u.x + a[0], s * u.y + a[1], s * u.z + a[2]};
  out[0] = foot.x;
  out[1] = foot.y;
  out[2] = foot.z;
}
