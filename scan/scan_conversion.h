// Helpers of scan conversion that find narrow runs a grid would miss. The scan
// conversion itself is CONTOUR_LAYER::X_ARCEER_LAAG and Y_ARCEER_LAAG
// (layer/contour_layer.h).
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/number_lists.h"
#include "scan/tabel.h"

// Adds to `extra` (sorted, no duplicates) the middle of every run of `table`
// narrower than `distance` that no grid line start + k * distance and no value
// already in `extra` crosses strictly inside. True when some run called for a
// line. A table without columns, a null `extra` or a distance that is not
// positive gives false and adds nothing; an unpaired last crossing is ignored.
KELVOR2D_API bool EXTRA_GRID_LIJNEN(L_LIST* extra, TABEL table, int32_t start, int32_t distance);

// Removes from `extra` each value whose column of `table` holds no crossing;
// stops at the first value that has no column, keeping the rest. A null
// `extra` or an empty table does nothing.
KELVOR2D_API void FILTER_EXTRA_LIJST(L_LIST* extra, TABEL table);
