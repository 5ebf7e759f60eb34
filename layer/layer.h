// One slice of a part at one height: contours and vectors side by side.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/contour_layer.h"
#include "layer/values.h"
#include "layer/vector_layer.h"

// Plain record with public fields. The destructor releases nothing: Clear or
// MoveTo releases what the members hold.
class KELVOR2D_API LAYER {
 public:
  // Joint extents of both members; a cache, exact after BEPAAL_EXTREMA.
  int32_t MaxX = kEmptyExtentMax;
  int32_t MaxY = kEmptyExtentMax;
  int32_t MinX = kEmptyExtentMin;
  int32_t MinY = kEmptyExtentMin;
  int32_t Z = 0;           // height in internal units
  CONTOUR_LAYER Contours;  // the contours
  VECTOR_LAYER Vectors;    // the vectors

  LAYER() = default;
  ~LAYER() {}

  // Empties both members and sets Z to 0; the own extents keep their values.
  void LEEG_LAAG();
  void Clear() { LEEG_LAAG(); }
  void SwapWith(LAYER& other);
  // Empties this layer, then takes the content of `other`, which is left empty.
  void MoveTo(LAYER& other);
  // Deep copy of source, meant for an empty layer (vectors are appended).
  void COPIEER_LAAG(LAYER& source);
  // Exact extents of both members, then joined.
  void BEPAAL_EXTREMA();
  // Joins the members' extents into the own extents: lesser minima, greater maxima.
  void JoinExtents();

  // ---- layer transforms (layer/layer_transforms.cpp) ----
  // The transforms of both members with the same arguments (contours round,
  // vectors truncate; each member's own rule for an empty member), then the
  // joint extents are joined anew.
  void ROTEER_LAAG(MMPoint2d<long> centre, float degrees);
  void TRANSLEER_LAAG(int32_t dx, int32_t dy);
  void HERSCHAAL_LAAG(MMPoint2d<long> centre, float scaleX, float scaleY);
  void SPIEGEL_LAAG(MMPoint2d<long> centre);

  // ---- contour and vector conversion (vectors/conversion.cpp) ----
  // Every contour becomes a block of type 1 (closing vector unless Closed is
  // 0); the vector extents are recomputed, the others stay.
  void ZET_LAAG_OM_NAAR_VECTOREN();
  // Contours of which an edge hits the box (normalised in place) become blocks
  // of type 1, closing vector always; the kept contours end in reverse order
  // and the contour extents are recomputed.
  void ZET_CONTOUR_DOOR_BOX_OM_NAAR_VECTOREN(BOX& box);
  // Sorts size / 4 vectors into closed chains (contours) and blocks of `type`
  // (open chains, loose vectors); stops when a contour cannot be made.
  void ADD_VECTORS_IN_CONTOURS_AND_VECTOR_BLOKS(int32_t* coordinates, int32_t size, char type);

  // ---- cutting with a line (vectors/line_cut.cpp) ----
  // Contours whose box meets the line's box and that the segment cuts at least
  // minimumCuts times become one block of type 1 each, starting at the first
  // cut (with gap, one unit short at each cut); then empty contours go and the
  // extents are recomputed and joined. True when a contour was converted.
  bool CUT_CONTOURS_WITH_LINE(int32_t& x1, int32_t& y1, int32_t& x2, int32_t& y2, int32_t minimumCuts,
                              bool gap);
  // Vectors.CUT_VECTORS_WITH_LINE, then CUT_CONTOURS_WITH_LINE with
  // minimumCuts 2; true when either changed something.
  bool CUT_VECTORS_WITH_LINE(int32_t& x1, int32_t& y1, int32_t& x2, int32_t& y2, bool gap);
  // Contours with at least minimumCuts crossings (INTERSECT_WITH_LINE) become
  // blocks of type 1 from point 0, unsplit; the bool has no effect. A contour
  // without points is never converted (but goes with the other empty ones).
  bool CONVERT_CONTOURS_CUT_BY_LINE_TO_VECTORS(int32_t& x1, int32_t& y1, int32_t& x2, int32_t& y2, bool,
                                               int32_t minimumCuts);

  // ---- closest search (vectors/closest.cpp) ----
  // Vectors.GET_CLOSEST_POINT; contours are not searched.
  bool GET_CLOSEST_POINT(int32_t& x, int32_t& y, bool endsOnly);
};
