// Union, difference, selection and symmetric removal of two scan tables,
// column by column: a table is a set of runs per position, so these are merges
// of sorted lists. Both tables are taken to lie on one grid.
#pragma once

#include "kelvor2d_export.h"
#include "scan/tabel.h"

// `first` becomes the union of both. Columns of `second` that `first` lacks
// are copied in, except those above first's last column, whose lists are moved
// over: those columns of `second` are left with a null List. An empty root
// first gets a column at position 1 (no crossings).
KELVOR2D_API void TABEL1_PLUS_TABEL2(TABEL& first, TABEL& second);

// `first` loses what `second` covers; `second` is only read. Columns of either
// table that the other lacks are left alone. An empty root first gets a column
// at position 1.
KELVOR2D_API void TABEL1_MIN_TABEL2(TABEL& first, TABEL& second);

// `first` keeps only the runs in which a run of `second` begins (both ends
// included); columns that `second` lacks are emptied. An empty root first gets
// a column at position 1.
KELVOR2D_API void TABEL1_ALS_TABEL2(TABEL& first, TABEL& second);

// Both tables lose what they have in common. An empty root, or a column
// without a list, in either table is left alone (nothing is removed there);
// columns that do not line up after one step of each cursor are compared as
// they stand.
KELVOR2D_API void TABELLEN_MIN_DOORSNEDE(TABEL& first, TABEL& second);
