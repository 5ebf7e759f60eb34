// Orientation and nesting of the closed contours of a layer: the scanner that
// enters one edge into an X crossing table. The classifying operations are
// members of CONTOUR_LAYER (layer/contour_layer.h).
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "scan/tabel.h"

// Enters the edge (x0,y0)-(x1,y1) into an X table as crossings (rounded y,
// tag contourIndex), on the process-wide x cursor and direction; with
// contourIndex -1 it only sets them up (1 for a vertical edge, which changes
// nothing, else 0). Otherwise 0 for an edge parallel to the columns, else 1.
// Not re-entrant.
KELVOR2D_API int32_t TEST_LIJNSTUK(int32_t x0, int32_t y0, int32_t x1, int32_t y1, int32_t contourIndex,
                                   TABEL_2 table);
