#include "geometry/space_geometry.h"

#include <gtest/gtest.h>

#include <array>

#include "geometry/space_geometry_helpers.h"

namespace {

using P3 = MMPoint3dIntegerTypes<long>;
using F3 = MMPoint3d<float>;

void ExpectPlane(const VLAK_COEF& v, double a, double b, double c, double d) {
  EXPECT_DOUBLE_EQ(v.A, a);
  EXPECT_DOUBLE_EQ(v.B, b);
  EXPECT_DOUBLE_EQ(v.C, c);
  EXPECT_DOUBLE_EQ(v.D, d);
}

// Checks a heap plane and releases it.
void ExpectPlane(VLAK_COEF* v, double a, double b, double c, double d) {
  ExpectPlane(*v, a, b, c, d);
  delete v;
}

void ExpectFloats(const float* v, float x, float y, float z) {
  EXPECT_FLOAT_EQ(v[0], x);
  EXPECT_FLOAT_EQ(v[1], y);
  EXPECT_FLOAT_EQ(v[2], z);
}

std::array<int32_t, 3> Xyz(const P3& p) {
  return {p.x, p.y, p.z};
}

TEST(SpaceGeometry, PlanesThroughPointsAndPerpendicularToLines) {
  P3 o = {0, 0, 0}, x = {1, 0, 0}, y = {0, 1, 0}, z = {0, 0, 1};
  ExpectPlane(BEREKEN_VLAK(&o, &x, &y), 0, 0, 1, 0);
  ExpectPlane(BEREKEN_VLAK(x, y, z), 1, 1, 1, 1);
  ExpectPlane(BEREKEN_VLAK(F3{1, 0, 0}, F3{0, 1, 0}, F3{0, 0, 1}), 1, 1, 1, 1);
  ExpectPlane(BEREKEN_VLAK(P3{0, 0, 0}, P3{1, 1, 1}, P3{5, 5, 5}), 0, 0, 0, 0);  // collinear
  const float p[3] = {1, 0, 0}, q[3] = {0, 1, 0}, r[3] = {0, 0, 1};
  VLAK_COEF out;
  PLANE(out, p, q, r);
  ExpectPlane(out, 1, 1, 1, 1);
  P3 ten = {10, 0, 0};
  F3 f = {3, 7, 9}, f0 = {0, 0, 0}, f4 = {0, 4, 0};
  ExpectPlane(RICHTINGSVECTOR(&o, &ten), 10, 0, 0, 0);
  ExpectPlane(BEREKEN_LOODVLAK_DOOR_PUNT(&o, &ten, &f), 10, 0, 0, 30);
  ExpectPlane(BEREKEN_MIDDELLOODVLAK(&f0, &f4), 0, 4, 0, 8);
  VLAK_COEF* bisector = BEREKEN_MIDDELLOODVLAK(&o, &ten);
  P3 cut = {9, 9, 9};
  bisector->DOORSNEDE_MET_RECHTE(cut, &o, &ten);
  EXPECT_EQ(Xyz(cut), (std::array<int32_t, 3>{5, 0, 0}));
  delete bisector;
  VLAK_COEF zero;  // chosen: no plane gives q
  zero.DOORSNEDE_MET_RECHTE(cut, &o, &ten);
  EXPECT_EQ(cut.x, 10);
}

TEST(SpaceGeometry, TrianglesAndDistanceToPlane) {
  const float p[3] = {0, 0, 0}, q[3] = {3, 0, 0}, r[3] = {0, 3, 0};
  float centre[3], normal[3];
  PLANE(centre, normal, p, q, r);
  ExpectFloats(centre, 1, 1, 0);
  ExpectFloats(normal, 0, 0, 1);
  PLANE(centre, normal, q, q, q);
  ExpectFloats(normal, 0, 0, 0);
  const float v[3] = {3, 4, 0}, big[3] = {3e30f, 4e30f, 0};
  EXPECT_DOUBLE_EQ(VECTOR_LENGTH_3D(v), 5.0);
  EXPECT_DOUBLE_EQ(VECTOR_LENGTH_3D(p), 0.0);
  EXPECT_NEAR(VECTOR_LENGTH_3D(big), 5e30, 1e24);
  F3 a = {0, 0, 0}, s = {0, 0, 2}, c1 = {1, 1, 1}, c2 = {2, 2, 2};
  EXPECT_EQ(BEREKEN_AFSTAND_TOT_VLAK(&a, &c1, &c2, &s), 0.0f);  // chosen: no plane gives 0
}

TEST(SpaceGeometry, ThreePlanes) {
  VLAK_COEF x, y, z;
  x.A = 1, x.D = 1;
  y.B = 1, y.D = 2;
  z.C = 1, z.D = 3;
  P3* point = SNIJDING_VLAKKEN(&x, &y, &z);
  EXPECT_EQ(Xyz(*point), (std::array<int32_t, 3>{1, 2, 3}));
  delete point;
  F3* f = SNIJDING_VLAKKEN_FLOAT(&y, &z, &x);
  const float fv[3] = {f->x, f->y, f->z};
  ExpectFloats(fv, 1, 2, 3);
  delete f;
  float out[3];
  const float p1[3] = {1, 0, 0}, n1[3] = {2, 0, 0}, p2[3] = {0, 2, 0}, n2[3] = {0, 1, 0};
  const float p3[3] = {0, 0, 3}, n3[3] = {0, 0, -1};
  INTERSECTION(out, p1, n1, p2, n2, p3, n3);
  ExpectFloats(out, 1, 2, 3);
  VLAK_COEF x2 = x;
  x2.D = 5;
  INTERSECTION(out, x, x2, z);  // parallel: divisor 1.0, the numerators come out
  EXPECT_EQ(out[0], 0.0f);
}

TEST(SpaceGeometry, CirclesAndSpheres) {
  P3 p = {0, 0, 0}, q = {2, 0, 0}, r = {0, 2, 0};
  P3* centre = BEREKEN_3D_CIRKELBOOG(&p, &q, &r);
  EXPECT_EQ(Xyz(*centre), (std::array<int32_t, 3>{1, 1, 0}));
  delete centre;
  const float s1[3] = {1, 0, 0}, s2[3] = {0, 1, 0}, s4[3] = {-1, 0, 0}, flat[3] = {1, 1, 0};
  float sc[3] = {7, 7, 7}, sr = 7;
  EXPECT_FALSE(SPHERE(sc, sr, s1, s2, s4, flat));
  EXPECT_EQ(sc[0], 7.0f);
  EXPECT_EQ(sr, 7.0f);
}

TEST(SpaceGeometry, InterpolationOnTheCircleOfNeighbours) {
  // A square inscribed in the circle of radius 100 around (0,0).
  MMPoint2d<long> square[4] = {{100, 0}, {0, 100}, {-100, 0}, {0, -100}};
  MMPoint2d<long> out = {7, 7};
  INTERPOLEER_CIRKEL(out, square, 1, 0.5, 4);  // half way to (-100,0) along the arc
  EXPECT_EQ(out, (MMPoint2d<long>{-70, 70}));
  INTERPOLEER_CIRKEL(out, square, 0, -0.5, 4);  // towards the previous point (0,-100), with wrap
  EXPECT_EQ(out, (MMPoint2d<long>{70, -70}));
  INTERPOLEER_CIRKEL(out, square, 2, 1.0, 4);
  EXPECT_LE(std::abs(out.x - square[3].x) + std::abs(out.y - square[3].y), 1);
}

TEST(SpaceGeometry, InterpolationOnCollinearPointsStaysOnTheLine) {
  MMPoint2d<long> straight[3] = {{0, 0}, {10, 5}, {22, 11}};
  MMPoint2d<long> out = {7, 7};
  INTERPOLEER_CIRKEL(out, straight, 1, 0.5, 3);  // on the line: offsets 6, 3
  EXPECT_EQ(out, (MMPoint2d<long>{16, 8}));
  INTERPOLEER_CIRKEL(out, straight, 1, -0.25, 3);  // towards (0,0): offsets -2.5, -1.25 truncate
  EXPECT_EQ(out, (MMPoint2d<long>{8, 4}));
  MMPoint2d<long> two[2] = {{0, 0}, {8, 4}};  // neighbours coincide: still the line
  INTERPOLEER_CIRKEL(out, two, 0, 0.5, 2);
  EXPECT_EQ(out, (MMPoint2d<long>{4, 2}));
}

TEST(SpaceGeometry, LinesInSpace) {
  const float a[3] = {-1, 0, 0}, b[3] = {1, 0, 0}, c[3] = {0, -1, 0}, d[3] = {0, 1, 0};
  float out[3] = {9, 9, 9};
  EXPECT_FLOAT_EQ(COS_ANGLE_3D(a, b, c, d), 0.0f);
  const float e[3] = {-1, 1, 0}, f[3] = {1, 1, 0};
  EXPECT_FALSE(DO_INTERSECT_3D(a, b, e, f));  // parallel
  INTERSECTION_3D(out, a, b, e, f);           // chosen: a
  EXPECT_EQ(out[0], -1.0f);
  const float o[3] = {0, 0, 0}, x[3] = {1, 0, 0}, s0[3] = {0, 0, 1}, s1[3] = {0, 1, 1};
  EXPECT_FALSE(DO_INTERSECT_3D(o, x, s0, s1));  // skew
  const float g[3] = {0, 0, 5}, h[3] = {0, 10, 5}, k[3] = {-3, 4, 5}, l[3] = {7, 4, 5};
  ASSERT_TRUE(DO_INTERSECT_3D(g, h, k, l));  // crossing found on the second pair of axes
  INTERSECTION_3D(out, g, h, k, l);
  EXPECT_FLOAT_EQ(out[1], 4.0f);
  EXPECT_FLOAT_EQ(out[2], 5.0f);
  const float m1[3] = {1, 0, 1}, n0[3] = {2, 0, 0}, n1[3] = {1, 0, 1}, n2[3] = {3, 0, 1};
  EXPECT_TRUE(DO_INTERSECT_3D(o, m1, n0, n1));   // crossing in the plane y = 0: the last pair of axes
  EXPECT_FALSE(DO_INTERSECT_3D(o, m1, n0, n2));  // and parallel there
  // Lines exactly the tolerance apart are no longer coplanar.
  const float lifted0[3] = {0, 0, 1e-4f}, lifted1[3] = {0, 1, 1e-4f};
  EXPECT_FALSE(COPLANAR_3D(o, x, lifted0, lifted1));
  // Chosen: a line without extent gives a.
  const float p[3] = {1, 1, 0}, two[3] = {2, 0, 0};
  const float above[3] = {0, 5, 0};  // apart from a in y only
  PROJECTION_3D(out, above, o, x);
  EXPECT_NEAR(out[1], 0.0f, 1e-5f);
  PROJECTION_3D(out, p, two, two);
  ExpectFloats(out, 2, 0, 0);
}

}  // namespace

namespace {

// Properties on random points against computations of the test's own.
struct D3 {
  double x, y, z;
};
D3 Sub(const float* a, const float* b) {
  return {double(a[0]) - b[0], double(a[1]) - b[1], double(a[2]) - b[2]};
}
D3 Cross(D3 u, D3 v) {
  return {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
}
double Dot(D3 u, D3 v) {
  return u.x * v.x + u.y * v.y + u.z * v.z;
}
double Norm(D3 u) {
  return std::sqrt(Dot(u, u));
}

class RandomSpace : public ::testing::Test {
 protected:
  uint32_t m_state = 12345;
  float Coordinate() {  // small whole numbers, exact in float
    m_state = m_state * 1664525u + 1013904223u;
    return static_cast<float>(static_cast<int32_t>(m_state >> 24) % 41 - 20);
  }
  void Fill(float* p) {
    for (int i = 0; i < 3; ++i)
      p[i] = Coordinate();
  }
};

TEST_F(RandomSpace, CoplanarityAndCrossingOfLines) {
  for (int round = 0; round < 200; ++round) {
    float a[3], b[3], c[3], d[3], e[3];
    Fill(a), Fill(b), Fill(c), Fill(d);
    const double triple = Dot(Cross(Sub(b, a), Sub(d, c)), Sub(c, a));
    SCOPED_TRACE(round);
    EXPECT_EQ(COPLANAR_3D(a, b, c, d), triple == 0.0);
    // A line through c and a point of ab meets ab there.
    const float t = static_cast<float>(round % 5 - 2);
    for (int i = 0; i < 3; ++i)
      e[i] = a[i] + t * (b[i] - a[i]);
    const D3 u = Sub(b, a), v = Sub(e, c);
    if (Norm(Cross(u, v)) == 0.0 || Norm(v) == 0.0)
      continue;
    ASSERT_TRUE(COPLANAR_3D(a, b, c, e));
    ASSERT_TRUE(DO_INTERSECT_3D(a, b, c, e));
    float out[3];
    INTERSECTION_3D(out, a, b, c, e);
    for (int i = 0; i < 3; ++i)
      EXPECT_NEAR(out[i], e[i], 1e-3f) << i;
  }
}

TEST_F(RandomSpace, CirclesSpheresAndProjections) {
  for (int round = 0; round < 200; ++round) {
    float p[3], q[3], r[3], s[3];
    Fill(p), Fill(q), Fill(r), Fill(s);
    SCOPED_TRACE(round);
    const D3 normal = Cross(Sub(q, p), Sub(r, p));
    if (Norm(normal) > 1.0) {  // the circle's centre is equidistant and in the plane
      float centre[3], radius = 0;
      CIRCLE_CURVE(centre, radius, p, q, r);
      const double tolerance = 1e-3 * (1.0 + radius);
      EXPECT_NEAR(Norm(Sub(p, centre)), radius, tolerance);
      EXPECT_NEAR(Norm(Sub(q, centre)), radius, tolerance);
      EXPECT_NEAR(Norm(Sub(r, centre)), radius, tolerance);
      EXPECT_NEAR(Dot(Sub(centre, p), normal) / Norm(normal), 0.0, tolerance);
      float f3[3];
      F3 fp = {p[0], p[1], p[2]}, fq = {q[0], q[1], q[2]}, fr = {r[0], r[1], r[2]}, fs = {s[0], s[1], s[2]};
      const double distance = Dot(Sub(s, p), normal) / Norm(normal);
      EXPECT_NEAR(BEREKEN_AFSTAND_TOT_VLAK(&fp, &fq, &fr, &fs), -distance,
                  1e-3 * (1.0 + std::fabs(distance)));
      if (std::fabs(Dot(normal, Sub(s, p))) > 1.0) {
        float sphere[3], sphereRadius = 0;
        ASSERT_TRUE(SPHERE(sphere, sphereRadius, p, q, r, s));
        for (const float* point : {p, q, r, s})
          EXPECT_NEAR(Norm(Sub(point, sphere)), sphereRadius, 1e-2 * (1.0 + sphereRadius));
      }
      // Three planes through s meet in s.
      VLAK_COEF planes[3];
      const D3 normals[3] = {normal, Sub(q, p), Cross(normal, Sub(q, p))};
      for (int i = 0; i < 3; ++i) {
        planes[i] = {normals[i].x, normals[i].y, normals[i].z, Dot(normals[i], D3{s[0], s[1], s[2]})};
      }
      INTERSECTION(f3, planes[0], planes[1], planes[2]);
      for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(f3[i], s[i], 1e-2f);
    }
    // The foot of the perpendicular lies on the line; the residual is orthogonal to it.
    const D3 u = Sub(q, p);
    if (Norm(u) == 0.0)
      continue;
    float foot[3];
    PROJECTION_3D(foot, r, p, q);
    const double scale = 1e-3 * (1.0 + Norm(Sub(r, p)));
    EXPECT_NEAR(Norm(Cross(Sub(foot, p), u)) / Norm(u), 0.0, scale);
    EXPECT_NEAR(Dot(Sub(r, foot), u) / Norm(u), 0.0, scale);
    // The plane square to pq through r meets the line pq in that foot, rounded.
    P3 ip = {int32_t(p[0]), int32_t(p[1]), int32_t(p[2])}, iq = {int32_t(q[0]), int32_t(q[1]), int32_t(q[2])};
    F3 fr = {r[0], r[1], r[2]};
    VLAK_COEF* square = BEREKEN_LOODVLAK_DOOR_PUNT(&ip, &iq, &fr);
    P3 met = {0, 0, 0};
    square->DOORSNEDE_MET_RECHTE(met, &ip, &iq);
    delete square;
    EXPECT_NEAR(met.x, foot[0], 0.51);
    EXPECT_NEAR(met.y, foot[1], 0.51);
    EXPECT_NEAR(met.z, foot[2], 0.51);
    // The perpendicular bisector holds the middle, symmetric in its ends.
    F3 fp = {p[0], p[1], p[2]}, fq = {q[0], q[1], q[2]};
    VLAK_COEF* forward = BEREKEN_MIDDELLOODVLAK(&fp, &fq);
    VLAK_COEF* backward = BEREKEN_MIDDELLOODVLAK(&fq, &fp);
    const D3 middle = {(p[0] + double(q[0])) / 2, (p[1] + double(q[1])) / 2, (p[2] + double(q[2])) / 2};
    EXPECT_NEAR(forward->A * middle.x + forward->B * middle.y + forward->C * middle.z, forward->D, 1e-6);
    EXPECT_EQ(backward->A, -forward->A);
    EXPECT_EQ(backward->D, -forward->D);
    delete forward;
    delete backward;
  }
}

}  // namespace
