// Geometry in space: planes, the common point of three planes, circles and
// spheres through given points, lines and projections. The functions on
// grid and float points return what they make on the heap (delete it); the
// ones on float arrays write into the caller's arrays. No state.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/values.h"

// A plane A x + B y + C z = D, coefficients not normalised; also carries a
// plain direction (A, B, C) with D 0.0. All fields 0.0 on a new record.
class KELVOR2D_API VLAK_COEF {
 public:
  double A = 0.0;  // x coefficient
  double B = 0.0;  // y coefficient
  double C = 0.0;  // z coefficient
  double D = 0.0;  // constant term

  // Where the line pq meets this plane, rounded, for a plane whose (A, B, C)
  // is q - p. A plane with zero coefficients gives q.
  void DOORSNEDE_MET_RECHTE(MMPoint3dIntegerTypes<long>& out, MMPoint3dIntegerTypes<long>* p,
                            MMPoint3dIntegerTypes<long>* q);
};

// Direction q - p in (A, B, C), D 0.0; new, the caller deletes it.
KELVOR2D_API VLAK_COEF* RICHTINGSVECTOR(MMPoint3dIntegerTypes<long>* p, MMPoint3dIntegerTypes<long>* q);
KELVOR2D_API VLAK_COEF* RICHTINGSVECTOR(MMPoint3d<float>* p, MMPoint3d<float>* q);

// The plane through r perpendicular to pq; new.
KELVOR2D_API VLAK_COEF* BEREKEN_LOODVLAK_DOOR_PUNT(MMPoint3dIntegerTypes<long>* p,
                                                   MMPoint3dIntegerTypes<long>* q, MMPoint3d<float>* r);
KELVOR2D_API VLAK_COEF* BEREKEN_LOODVLAK_DOOR_PUNT(MMPoint3d<float>* p, MMPoint3d<float>* q,
                                                   MMPoint3d<float>* r);

// The plane perpendicular to pq through its middle (which passes through a
// float); new.
KELVOR2D_API VLAK_COEF* BEREKEN_MIDDELLOODVLAK(MMPoint3dIntegerTypes<long>* p,
                                               MMPoint3dIntegerTypes<long>* q);
KELVOR2D_API VLAK_COEF* BEREKEN_MIDDELLOODVLAK(MMPoint3d<float>* p, MMPoint3d<float>* q);

// The plane through three points, (A, B, C) = (q - p) x (r - p); all 0.0 for
// collinear points. The pointer form returns a new record.
KELVOR2D_API VLAK_COEF* BEREKEN_VLAK(MMPoint3dIntegerTypes<long>* p, MMPoint3dIntegerTypes<long>* q,
                                     MMPoint3dIntegerTypes<long>* r);
KELVOR2D_API VLAK_COEF BEREKEN_VLAK(MMPoint3dIntegerTypes<long> p, MMPoint3dIntegerTypes<long> q,
                                    MMPoint3dIntegerTypes<long> r);
KELVOR2D_API VLAK_COEF BEREKEN_VLAK(MMPoint3d<float> p, MMPoint3d<float> q, MMPoint3d<float> r);
KELVOR2D_API void PLANE(VLAK_COEF& out, const float* p, const float* q, const float* r);

// Centroid and unit normal of the triangle pqr; a zero normal for a
// degenerate triangle.
KELVOR2D_API void PLANE(float* centre, float* normal, const float* p, const float* q, const float* r);

// Signed distance of s from the plane through p, q, r, negative on the side
// of (q - p) x (r - p). Collinear p, q, r (no plane) give 0.
KELVOR2D_API float BEREKEN_AFSTAND_TOT_VLAK(MMPoint3d<float>* p, MMPoint3d<float>* q, MMPoint3d<float>* r,
                                            MMPoint3d<float>* s);

// Common point of three planes by Cramer's rule; planes without one common
// point divide by 1.0 instead of 0 and give the numerators. New, rounded.
KELVOR2D_API MMPoint3dIntegerTypes<long>* SNIJDING_VLAKKEN(VLAK_COEF* first, VLAK_COEF* second,
                                                           VLAK_COEF* third);
// The same in float; new.
KELVOR2D_API MMPoint3d<float>* SNIJDING_VLAKKEN_FLOAT(VLAK_COEF* first, VLAK_COEF* second, VLAK_COEF* third);
// The same into out[3].
KELVOR2D_API void INTERSECTION(float* out, VLAK_COEF const& first, VLAK_COEF const& second,
                               VLAK_COEF const& third);
// The same for three planes given as point and normal.
KELVOR2D_API void INTERSECTION(float* out, const float* p1, const float* n1, const float* p2, const float* n2,
                               const float* p3, const float* n3);

// Centre of the circle through three points, rounded; new.
KELVOR2D_API MMPoint3dIntegerTypes<long>* BEREKEN_3D_CIRKELBOOG(MMPoint3dIntegerTypes<long>* p,
                                                                MMPoint3dIntegerTypes<long>* q,
                                                                MMPoint3dIntegerTypes<long>* r);

// Centre and radius of the circle through three points.
KELVOR2D_API void CIRCLE_CURVE(float* centre, float& radius, const float* p, const float* q, const float* r);

// Centre and radius of the sphere through four points; false, outputs
// untouched, when the points lie in one plane.
KELVOR2D_API bool SPHERE(float* centre, float& radius, const float* p, const float* q, const float* r,
                         const float* s);

// Point on the circle through points[index] and its cyclic neighbours, at the
// fraction |t| of the way towards the next (t > 0) or previous neighbour.
// Three collinear points give the point at |t| from points[index] towards that
// neighbour, each offset truncated.
KELVOR2D_API void INTERPOLEER_CIRKEL(MMPoint2d<long>& result, MMPoint2d<long>* points, int index, double t,
                                     int count);

// True when the endless lines ab and cd lie in one plane and are not parallel.
KELVOR2D_API bool DO_INTERSECT_3D(const float* a, const float* b, const float* c, const float* d);

// The point where the lines ab and cd meet, as DO_INTERSECT_3D has found.
// Parallel lines (a zero denominator) give a.
KELVOR2D_API void INTERSECTION_3D(float* out, const float* a, const float* b, const float* c, const float* d);

// Foot of the perpendicular from p on the line ab; a equal to b gives a.
KELVOR2D_API void PROJECTION_3D(float* out, const float* p, const float* a, const float* b);
