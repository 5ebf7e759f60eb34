// Conversion between a CONTOUR_LAYER and the border of 32-bit points that the
// offset engine and the bitmap side work on.
#pragma once

#include "kelvor2d_export.h"
#include "layer/contour.h"
#include "layer/contour_layer.h"
#include "sibling/math/border.h"

// Mapping: Outer and Closed to bool (any non-zero is true, 7 included) and
// back as 0/1; RightHanded is not read, and comes back equal to Outer; Type to
// the status byte unchanged; the low 8 bits of Order to the order byte.
// M3dBorderLong is M3dBorder<long, void *, M3dBorderContour<long, void *, M3dBorderPoint<long, void *>>>.
namespace M3dBorder2LayerConvertor {

// Layer to border. Each closed contour is turned so that an outer one has a
// positive SurfaceAreaWithSignXY (clockwise) and a hole a negative one; an
// outer contour of zero area is inverted too. Open contours keep their sense.
KELVOR2D_API void _Convert(const CONTOUR_LAYER& layer, M3dBorderLong& border);
// Border to layer: empties the layer (LEEG_LAAG) and appends one CONTOUR per
// border contour, empty ones included; Owner stays null, extents are not computed.
KELVOR2D_API void _Convert(const M3dBorderLong& border, CONTOUR_LAYER& layer);
// Fills a fresh CONTOUR from one border contour; the old Points array is
// overwritten, not released. A contour without points gets Points null.
KELVOR2D_API void _Convert(const M3dBorderContourLong& borderContour, CONTOUR& contour);

}  // namespace M3dBorder2LayerConvertor
