// The chain of all contours of one layer, with their number and extents.
#pragma once

#include <cstdint>

#include "layer/contour.h"
#include "layer/values.h"

// Plain record with public fields. The layer owns the contours of its chain
// (nodes from new, point arrays from malloc). The destructor releases nothing:
// Clear or LEEG_LAAG ends a layer. A by-value copy shares the chain and owns
// nothing.
class CONTOUR_LAYER {
 public:
  // Extents; a cache, exact after BEPAAL_EXTREMA. Empty: maxima INT32_MIN,
  // minima INT32_MAX.
  int32_t MaxX = kEmptyExtentMax;
  int32_t MaxY = kEmptyExtentMax;
  int32_t MinX = kEmptyExtentMin;
  int32_t MinY = kEmptyExtentMin;
  int32_t NumContours = 0;           // length of the chain
  CONTOUR* FirstContour = nullptr;   // head of the chain, null when empty
  CONTOUR* LastContour = nullptr;    // contour whose NextContour is null, null when empty

  CONTOUR_LAYER() = default;
  ~CONTOUR_LAYER() {}

  // ---- container ----
  CONTOUR* GetFirstContour() const { return FirstContour; }
  CONTOUR* GetLastContour() const { return LastContour; }
  int32_t GetNumContours() const { return NumContours; }
  // Stores c; LastContour follows when c is null or LastContour was null.
  void _SetFirstContour(CONTOUR* c);
  // Stores the count only.
  void _SetNumContours(int32_t n) { NumContours = n; }

  // Releases every contour and empties the extents; with NumContours 0 it
  // returns at once and changes nothing.
  void LEEG_LAAG();
  void Clear() { LEEG_LAAG(); }
  // Exchanges the fields; adopted contours (Owner not null) are re-pointed at
  // the layer that now holds them, so no stale layer is reached.
  void SwapWith(CONTOUR_LAYER& other);
  // Empties this layer, then takes the content of `other`, which is left empty.
  void MoveTo(CONTOUR_LAYER& other);

  // Adopting operations: set c->Owner, leave the extents.
  void AddContourAtEnd(CONTOUR* c);
  void AddContourAtFront(CONTOUR* c);
  // With after null, AddContourAtFront.
  void AddContourAfter(CONTOUR* c, CONTOUR* after);
  // Unlinks *c and returns its successor; null when *c is not in this layer.
  // With destroy, releases it and nulls the caller's pointer.
  CONTOUR* RemoveContour(CONTOUR*& c, bool destroy);

  // Deep copy of source into this (empty) layer; false when memory ran out.
  bool COPIEER_LAAG(CONTOUR_LAYER& source);
  // Empties this layer, then deep-copies source.
  void COPY_FROM(const CONTOUR_LAYER& source);
  // Deep copy of c at the front; the extents grow.
  void COPIEER_CONTOUR_NAAR_LAAG(CONTOUR* c);
  // Adopts c itself at the front without setting Owner; the extents grow.
  void VOEG_CONTOUR_TOE_AAN_LAAG(CONTOUR* c);
  // Moves all contours of other to the end of this layer; always true.
  bool VOEG_TOE(CONTOUR_LAYER& other);
  // One contour from chained vectors (4 values each); false when count is not
  // a multiple of 4, is 0 or less, or memory ran out.
  bool COPIEER_VECTORS_TO_CONTOUR(int32_t* coordinates, int32_t count);
  // Reverses the chain in place.
  void VERANDER_CONTOUR_VOLGORDE();
  // Exact extents over all points of contours whose Type is not 103.
  void BEPAAL_EXTREMA();

  // ---- cleaning and compression (contour_processing/cleaning.cpp) ----

  // ---- smoothing, transforms, circles (contour_processing/transforms.cpp) ----

  // ---- orientation and nesting (contour_processing/orientation.cpp) ----

  // ---- box and proximity operations (contour_processing/selection.cpp) ----

  // ---- scan conversion (scan/scan_conversion.cpp) ----

  // ---- offsetting (bridges/boolean_front_ends.cpp) ----
};
