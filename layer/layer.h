// One slice of a part at one height: contours and vectors side by side.
#pragma once

#include <cstdint>

#include "layer/contour_layer.h"
#include "layer/values.h"
#include "layer/vector_layer.h"

// Plain record with public fields. The destructor releases nothing: Clear or
// MoveTo releases what the members hold.
class LAYER {
 public:
  // Joint extents of both members; a cache, exact after BEPAAL_EXTREMA.
  int32_t MaxX = kEmptyExtentMax;
  int32_t MaxY = kEmptyExtentMax;
  int32_t MinX = kEmptyExtentMin;
  int32_t MinY = kEmptyExtentMin;
  int32_t Z = 0;            // height in internal units
  CONTOUR_LAYER Contours;   // the contours
  VECTOR_LAYER Vectors;     // the vectors

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

  // ---- contour and vector conversion (vectors/conversion.cpp) ----

  // ---- cutting with a line (vectors/line_cut.cpp) ----

  // ---- closest search (vectors/closest.cpp) ----
};
