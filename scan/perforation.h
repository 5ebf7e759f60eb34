// Perforation of support runs into teeth with gaps on a pattern fixed in
// absolute coordinates, and the filters that clean a table afterwards. All
// lengths are in internal units along the lists of the table.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "scan/tabel.h"

// Cuts each run at least one period long into teeth, keeping the run's ends.
// Teeth of toothLength stand gapLength away from the period boundaries
// phase + k * period. Does nothing (and runs no filter) for toothLength 0, a
// table without columns, or a period that is not positive. An unpaired last
// crossing of a column is left as it is.
KELVOR2D_API void PERFOREER_TABEL(TABEL* table, int32_t toothLength, int32_t gapLength, int32_t phase,
                                  int32_t period);

// As PERFOREER_TABEL, but the ends of each run are left open: only teeth
// remain. Does nothing at all also when period < toothLength + 2 * gapLength.
KELVOR2D_API void PERFOREER_TABEL_OPEN_RAND(TABEL* table, int32_t toothLength, int32_t gapLength,
                                            int32_t phase, int32_t period);

// Widens each run shorter than minimumRun about its middle, then joins runs
// whose gap is less than minimumGap. An unpaired last crossing is left alone.
KELVOR2D_API void FILTER_SUPPORT_TABEL(TABEL* table, int32_t minimumRun, int32_t minimumGap);

// Removes each run strictly shorter than minimumLength. An unpaired last
// crossing is left alone.
KELVOR2D_API void FILTER_TABEL_OP_MIN_LENGTE(TABEL* table, int32_t minimumLength);
