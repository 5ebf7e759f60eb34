// The boolean engine's operations on borders: resolving self-crossings and
// orienting contours, as the bitmap side needs them.
#pragma once

#include "kelvor2d_export.h"
#include "sibling/boolean/boolean.h"
#include "sibling/math/border.h"

namespace kelvor2d_detail {

// Appends the rings of a filtered engine to `border`: closed contours whose
// points are the exact points rounded to the nearest grid point (repeats
// dropped), outer when clockwise. Rings that rounding leaves with fewer than
// three points are dropped.
void AppendRings(M2dBoolean& engine, M3dBorderLong& border);

// Feeds every contour of the border with at least one point into the engine
// as a closed loop, in its stored sense.
void FeedBorder(M2dBoolean& engine, const M3dBorderLong& border);

}  // namespace kelvor2d_detail

namespace AU {

// Replaces the closed contours of `border` by rings that cross neither
// themselves nor each other, covering every area that a closed contour
// encloses (non-zero winding). Open contours are dropped; status and order
// bytes are not kept. Always true.
KELVOR2D_API bool BooleanRemoveSelfIntersections(M3dBorderLong& border);

// Turns each closed contour so that outer ones (inside an even number of
// other closed contours) are clockwise (positive SurfaceAreaWithSignXY) and
// holes counter-clockwise, and sets their outer property. Open contours are
// left alone. When inverted is not null it receives whether any contour was
// turned. Always true. Nesting is tested contour against contour (boxes
// first), meant for contours that do not cross.
KELVOR2D_API bool OrientBorder2D(M3dBorderLong& border, bool* inverted);

}  // namespace AU
