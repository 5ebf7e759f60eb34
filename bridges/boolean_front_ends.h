// The boolean operations on contour layers, and the feeding of a layer into
// the boolean engine. Each call builds an engine, feeds it, lets it work and
// writes the result back; no engine outlives a call.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/contour_layer.h"
#include "sibling/boolean/boolean.h"

namespace AU {

// Options of a boolean operation. Only the first byte is read: it is copied
// into the engine's option byte, which selects nothing in this engine.
struct KELVOR2D_API M2DBooleanOptions {
  unsigned char flags;  // copied into M2dBoolean::options
};

// a united with b into result (which may be a or b). Always true. The result
// extents are left as the emptying left them. Each operand must be a region:
// contours that do not overlap one another (BooleanUnify(layer, 0) makes one
// of any layer). Where an operand's own contours overlap, the area counts
// twice and the result is not the set operation.
KELVOR2D_API bool BooleanUnite(const CONTOUR_LAYER& a, const CONTOUR_LAYER& b, CONTOUR_LAYER& result,
                               M2DBooleanOptions* options);
// a intersected with b. If either has no contours, result is emptied
// (LEEG_LAAG) and no engine is built. Always true. Operands as for
// BooleanUnite: a region each.
KELVOR2D_API bool BooleanIntersect(const CONTOUR_LAYER& a, const CONTOUR_LAYER& b, CONTOUR_LAYER& result,
                                   M2DBooleanOptions* options);
// a minus b. If a has no contours, result is emptied and no engine is built;
// an empty b gives a as the engine redraws it. Always true. Operands as for
// BooleanUnite: a region each.
KELVOR2D_API bool BooleanSubtract(const CONTOUR_LAYER& a, const CONTOUR_LAYER& b, CONTOUR_LAYER& result,
                                  M2DBooleanOptions* options);
// In place: the region covered by more than `level` contours (low 16 bits,
// as a short). Always true.
KELVOR2D_API bool BooleanUnify(CONTOUR_LAYER& layer, int32_t level);
// In place: the layer's self-crossings resolved; every area that a contour
// encloses (non-zero winding) stays. Always true.
KELVOR2D_API bool BooleanRemoveSelfIntersections(CONTOUR_LAYER& layer);

}  // namespace AU

namespace M2dBoolean_Utilities {

// Feeds every contour of `layer` as a closed loop of lines (outer contours
// clockwise, holes counter-clockwise when their flags are right; the other
// way with reverse), one shell per contour with points when addShells.
// Contours without points are skipped; an open contour is closed from its
// second-to-last point back to point 0.
KELVOR2D_API void AddContourLayerToBoolean(M2dBoolean* engine, const CONTOUR_LAYER& layer, bool reverse,
                                           bool lineFlag, bool addShells);

}  // namespace M2dBoolean_Utilities
