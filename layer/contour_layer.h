// The chain of all contours of one layer, with their number and extents.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/contour.h"
#include "layer/values.h"

// Plain record with public fields. The layer owns the contours of its chain
// (nodes from new, point arrays from malloc). The destructor releases nothing:
// Clear or LEEG_LAAG ends a layer. A by-value copy shares the chain and owns
// nothing.
class KELVOR2D_API CONTOUR_LAYER {
 public:
  // Extents; a cache, exact after BEPAAL_EXTREMA. Empty: maxima INT32_MIN,
  // minima INT32_MAX.
  int32_t MaxX = kEmptyExtentMax;
  int32_t MaxY = kEmptyExtentMax;
  int32_t MinX = kEmptyExtentMin;
  int32_t MinY = kEmptyExtentMin;
  int32_t NumContours = 0;          // length of the chain
  CONTOUR* FirstContour = nullptr;  // head of the chain, null when empty
  CONTOUR* LastContour = nullptr;   // contour whose NextContour is null, null when empty

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
  // Removes contours of fewer than minPoints points; with onlyInner only holes
  // (Outer 0) can go. Extents are left as they were.
  void FILTER_LAAG(unsigned short minPoints, bool onlyInner);
  // Removes every contour whose Type equals `type`, then BEPAAL_EXTREMA.
  void FILTER_LAAG_OP_TYPE(char type);
  // Removes contours shorter than minLength (BEREKEN_LENGTE); onlyInner as in
  // FILTER_LAAG.
  void VERWIJDER_CONTOUREN_MINDER_LANG_DAN(uint32_t minLength, bool onlyInner);
  // Drops repeated neighbouring points (Closed 1: with wrap, so a closing point
  // that repeats point 0 drops point 0; Closed 0: ends kept; else untouched),
  // then removes contours of fewer than max(minPoints, 2) points.
  void VERWIJDER_DUBBELE_PUNTEN(unsigned short minPoints);
  // Drops each inner point whose turn, in whole degrees, is not strictly
  // between minAngle and maxAngle; then VERWIJDER_DUBBELE_PUNTEN(2).
  void COMPRES_LAAG(int32_t minAngle, int32_t maxAngle);
  // Drops points nearer than minLength to the last point kept, starting from
  // the last point; minLength < 1 changes nothing.
  void COMPRES_LAAG_OP_LENGTE(int32_t minLength);
  // Snaps every coordinate to the nearest multiple of resolution, then
  // VERWIJDER_DUBBELE_PUNTEN(3). Chosen: resolution 0 changes nothing at all.
  void COMPRES_LAAG_OP_RESOLUTIE(int32_t resolution);
  // Appends a copy of point 0 to every contour; Closed is not set. Chosen: a
  // contour without points is left as it is.
  void SLUIT_CONTOUREN();

  // ---- smoothing, transforms, circles (contour_processing/transforms.cpp) ----
  // One step of corner cutting on every contour: each inner point gives way to
  // the midpoints (truncated) of its two edges; ends stay, the closing edge is
  // not cut. Chosen: a contour without points is left as it is.
  void SMOOTH_LAAG();
  // Turns every point by `degrees` (counter-clockwise, y up) around centre,
  // rounded, then BEPAAL_EXTREMA; exactly 0 degrees changes nothing.
  void ROTEER_LAAG(MMPoint2d<long> centre, float degrees);
  // Moves every point and the extents by (dx, dy); an empty layer is left alone.
  void TRANSLEER_LAAG(int32_t dx, int32_t dy);
  // Scales around centre, truncated; the extents go through the same formula
  // (a negative scale leaves them crossed). An empty layer is left alone.
  void HERSCHAAL_LAAG(MMPoint2d<long> centre, float scaleX, float scaleY);
  // Mirrors in the horizontal line through centre (y := 2 cy - y); MinY and
  // MaxY follow. RightHanded is not changed. An empty layer is left alone.
  void SPIEGEL_LAAG(MMPoint2d<long> centre);
  // Mirrors in the vertical line through centre (x := 2 cx - x).
  void SPIEGEL_LAAG_ROND_Y(MMPoint2d<long> centre);
  // Appends a closed circle contour (Type 1) of 360 / stepDegrees points,
  // counter-clockwise from (centreX + radius, centreY), then BEPAAL_EXTREMA.
  // Nothing is added for radius 0, a step outside 0..45, or (chosen) a step
  // of 0, NaN, or so small that the count passes 2^31 - 1.
  void ZET_CIRKEL_IN_CONTOUR_LAYER(int32_t radius, int32_t centreX, int32_t centreY, float stepDegrees);

  // ---- orientation and nesting (contour_processing/orientation.cpp) ----
  // Sets Outer and RightHanded of every closed contour (Closed 1) from one
  // scan line per contour along x; the chain is not reordered. Not re-entrant.
  void SORTEER_CONTOUREN();
  // The same along y, with a table of its own.
  void CONTROLEER_SORTEER_CONTOUREN();
  // SORTEER_CONTOUREN, then CONTROLEER_SORTEER_CONTOUREN.
  void SORTEER_CONTOUREN_NIEUW();
  // Outer from the crossing lists of an X (or Y) table built from this layer
  // with closed indices as tags; the lists come back reversed, unless the
  // layer has one contour, which just gets Outer 1. Chosen: crossings whose
  // tag is no closed index of this layer are passed over.
  void BEPAAL_BINNEN_EN_BUITEN_CONTOUREN(class TABEL_2 table);
  void BEPAAL_BINNEN_EN_BUITEN_CONTOUREN_IN_Y(class TABEL_2 table);
  // RightHanded from the parity of each closed contour's own crossing on its
  // scan line of an X (or Y) table; contours without one keep theirs.
  void DRAAIRICHTING(class TABEL_2 table);
  void DRAAIRICHTING_IN_Y(class TABEL_2 table);
  // RightHanded of every closed contour from its signed area (RECHTS_DRAAIEND).
  void CONTROLEER_RECHTS_DRAAIEND();
  // Reverses every closed contour that runs clockwise (or has < 3 points).
  void MAAK_ALLE_CONTOUREN_LINKSDRAAIEND();
  // Reverses every closed contour that runs counter-clockwise.
  void MAAK_ALLE_CONTOUREN_RECHTSDRAAIEND();
  // Deep copies, at the front, of the contours of source with Outer not 0.
  void COPIEER_BINNEN_CONT(CONTOUR_LAYER& source);
  // Deep copies, at the front, of the contours of source whose Outer equals
  // their RightHanded.
  void COPIEER_BUITEN_CONT(CONTOUR_LAYER& source);

 protected:
  // Enters the edge (x0,y0)-(x1,y1) into a Y table as crossings tagged
  // contourIndex, on the process-wide y cursor and direction; -1 only sets
  // them up. 0 for an edge parallel to the rows (or set-up), else 1.
  int TEST_LIJNSTUK_IN_Y(int32_t x0, int32_t y0, int32_t x1, int32_t y1, int32_t contourIndex,
                         class TABEL_2 table);

 public:
  // ---- box and proximity operations (contour_processing/selection.cpp) ----
  // Nearest contour by its edges, closing edge always included: stores it in
  // *contour and the truncated distance, even beyond tolerance; true when one
  // was found and distance < tolerance. None found: *contour untouched and
  // distance INT32_MIN.
  bool SEARCH_CLOSEST_CONTOUR(MMPoint2d<long> point, CONTOUR** contour, int32_t& distance, int32_t tolerance);
  // The nearest contour's edges as point pairs (closing edge last); caller
  // frees. Null, count 0, when none lies within tolerance.
  MMPoint2d<long>* GET_CLOSEST_CONTOUR(int32_t& count, MMPoint2d<long> point, int32_t tolerance);
  // Removes and releases the nearest contour within tolerance; extents stay.
  bool REMOVE_CLOSEST_CONTOUR(MMPoint2d<long> point, int32_t tolerance);
  // Edge pairs of the contours with points lying wholly in the box (bounds
  // included; box normalised in place); caller frees. Null, count 0, for none.
  MMPoint2d<long>* GET_CONTOURS_IN_BOX(int32_t& count, BOX& box);
  // Removes the contours wholly in the box (contours without points too); the
  // rest end in reverse order; extents recomputed. True when one was removed.
  bool REMOVE_CONTOURS_IN_BOX(BOX& box);
  // Removes every contour of which an edge hits the box (closing edge when
  // Closed is not 0); the rest end in reverse order; extents recomputed. True
  // when one was removed.
  bool VERWIJDER_CONTOUREN_DOOR_BOX(BOX& box);

  // ---- scan conversion (scan/scan_conversion.cpp) ----
  // Builds the X table of the contours with Closed 1 in the empty root `table`
  // (not freed first): columns every XHatchDistance from the grid start up to
  // MaxX, plus one per value of `extra` (may be null); y crossings rounded.
  // Nothing is touched when the layer is empty or XHatchDistance is 0 or
  // negative. A closed contour whose points all share one x is skipped.
  // Every crossing lies on its edge: an edge spanning more than 32 bits is
  // crossed exactly, a float crossing past the edge's ends is held at the
  // nearer end. When memory runs out the table is left empty.
  void X_ARCEER_LAAG(class TABEL* table, struct MSliceFileParameters& parameters, struct L_LIST* extra);
  // The same along y: YHatchDistance, YHatchShift, its own grid flip, MaxY.
  void Y_ARCEER_LAAG(class TABEL* table, struct MSliceFileParameters& parameters, struct L_LIST* extra);

  // ---- offsetting (bridges/boolean_front_ends.cpp) ----
  // Makes this layer the offset of source by `distance` (> 0 grows outer
  // contours, < 0 shrinks them), round joins; source is left as it was.
  // INT32_MIN, whose negative does not exist, is taken as -INT32_MAX.
  void OFFSET_LAAG(CONTOUR_LAYER& source, int32_t distance);
};
