// One polygon or open polyline of a layer: an owned array of grid points, four
// one-byte attributes and the link that chains it into its CONTOUR_LAYER.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/values.h"

class CONTOUR_LAYER;

// Value of Outer, RightHanded and Closed before anything has determined them.
constexpr unsigned char kNotDetermined = 7;

// Plain record with public fields; no copy of its own (copying the record
// shares Points). The destructor releases nothing: call Clear on a contour
// that is not in a layer, and let the layer release the ones it holds.
class KELVOR2D_API CONTOUR {
 public:
  unsigned char Outer = kNotDetermined;        // 1 outer, 0 hole, 7 not determined
  unsigned char RightHanded = kNotDetermined;  // 1 clockwise (y up), 0 counter-clockwise, 7 not determined
  unsigned char Closed = kNotDetermined;       // 1 closed, 0 open, 7 not determined
  char Type = 0;                               // slice type code; 103 ('g') is left out of layer extents
  int32_t Order = 0;                           // carried to and from borders; only the low byte travels
  int32_t NumPoints = 0;                       // number of points in Points
  MMPoint2d<long>* Points = nullptr;           // owned, malloc'ed array of NumPoints points
  CONTOUR* NextContour = nullptr;              // next contour of the chain, null at the end
  CONTOUR_LAYER* Owner = nullptr;              // layer that adopted it through AddContourAt*/After, else null

  CONTOUR() = default;
  ~CONTOUR() {}

  // Releases the points and resets the attributes to 7 and Type to 0; Order,
  // NextContour and Owner stay.
  void Clear();
  void Erase() { Clear(); }

  // Resizes the array to n points, keeping the first min(n, NumPoints).
  void AllocPoints(int32_t n);
  void AllocatePoints(int32_t n) { AllocPoints(n); }
  // Copies n points from p; the array is reused when the count is unchanged.
  void SetPoints(const MMPoint2d<long>* p, int32_t n);

  MMPoint2d<long>* GetPoints() const { return Points; }
  // Stores the pointer only: the old array is not released.
  void _SetPoints(MMPoint2d<long>* p) { Points = p; }
  int32_t GetNumPoints() const { return NumPoints; }
  int32_t size() const { return NumPoints; }
  // Stores the count only.
  void _SetNumPoints(int32_t n) { NumPoints = n; }
  // The point at index i; the index is not checked.
  const MMPoint2d<long>& GetPoint(int32_t i) const { return Points[i]; }
  CONTOUR* GetNextContour() const { return NextContour; }
  // Stores next and, when this is its owner's last contour, moves the owner's
  // LastContour to the end of the chain hung behind it.
  void _SetNextContour(CONTOUR* next);

  // Index of the lowest, then leftmost point; on a contour that repeats its
  // first point at the end, the start of the closing run. 0 without points.
  int32_t LowestLeftmostPoint() const;
  // Index of the next point (wrapping) that differs from point i; i itself
  // when all points are equal; 0 without points.
  int32_t NextPoint(const int32_t& i) const;

  // True when the signed area (y up) is >= 0: clockwise, or no area, or fewer
  // than 3 points. The closing edge always counts. Each edge's x difference and
  // y sum are formed in 32 bits (wrapping), then widened.
  bool RECHTS_DRAAIEND() const;
  // True for clockwise (y up), judged by the index order of the four extreme
  // points (geometry/contour_geometry.cpp); true for an empty contour.
  bool RECHTS_DRAAIEND_OUD();
  // Length in internal units, truncated, with the closing edge when Closed is
  // not 0. A contour without points has length 0, whatever Closed holds.
  uint32_t BEREKEN_LENGTE();
  // Reverses the points and flips RightHanded (0 -> 1, anything else -> 0).
  void KEER_DRAAIZIN_OM();

  // Number of edges, the closing one always included, that the segment
  // (x1,y1)-(x2,y2) crosses; 0 without points. The references are only read.
  int32_t INTERSECT_WITH_LINE(int32_t& x1, int32_t& y1, int32_t& x2, int32_t& y2);
  // Refines the contour along the circles through each point and its
  // neighbours, `factor` sub-steps per edge (Closed 0: open form, else
  // closed). Chosen: factor < 1 or fewer than 3 points leave it unchanged.
  void SMOOTH_CONTOUR(int factor);
};
