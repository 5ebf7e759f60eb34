// The scan table: a doubly linked chain of columns (scan lines) between two
// sentinel columns, each column holding the sorted crossings of the layer's
// contours with it. One record serves as the caller's root and as a column.
// Columns and list elements come from calloc/malloc; as with the number lists,
// an allocation that fails is not reported (these operations have no result).
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"
#include "layer/number_lists.h"
#include "layer/values.h"

// Positions of the sentinel columns at both ends of every non-empty table.
constexpr int32_t kHeadSentinelPosition = INT32_MIN;
constexpr int32_t kTailSentinelPosition = INT32_MAX;

// Plain record with public fields and no constructor of its own; a fresh
// record is an empty root. A by-value copy of a root shares its columns.
class KELVOR2D_API TABEL {
 public:
  // Column: position of the scan line (internal units); sentinels INT32_MIN and
  // INT32_MAX. Root: number of real columns, sentinels not counted.
  int32_t Position = 0;
  // Column: neighbour towards lower positions, null only in the head sentinel.
  // Root: null.
  TABEL* Prev = nullptr;
  // Column: neighbour towards higher positions, null only in the tail sentinel.
  // Root: the first real column, null when the table is empty.
  TABEL* Next = nullptr;
  // Column: sorted crossings (head holds the count), owned by the column; null
  // after a union handed the list over. Root: unused.
  L_LIST* List = nullptr;
};

// The same chain with tagged crossings (Value, Second), for orientation and
// nesting.
class KELVOR2D_API TABEL_2 {
 public:
  int32_t Position = 0;      // as TABEL::Position
  TABEL_2* Prev = nullptr;   // as TABEL::Prev
  TABEL_2* Next = nullptr;   // as TABEL::Next
  L_LIST_2* List = nullptr;  // as TABEL::List, with tagged crossings
};

// Adds a column with an empty list at `position`; a first column also builds
// the two sentinels. Among equal positions the newest column comes first.
// When memory runs out nothing is added and the table stays as it was.
KELVOR2D_API void VOEG_KOLOM_IN_TABEL(TABEL* root, int32_t position);
KELVOR2D_API void VOEG_KOLOM_IN_TABEL_2(TABEL_2* root, int32_t position);
// As VOEG_KOLOM_IN_TABEL, for a caller adding columns one after another:
// `last` is the column this function returned on the previous call (null at
// first). When the new position is not below it, the place is looked for from
// there instead of from the first column, which gives the same table; a
// table filled in rising order costs no walk over its columns. Returns the
// new column, or null with the table unchanged when memory runs out.
TABEL* AddColumnAfterLast(TABEL* root, int32_t position, TABEL* last);

// Frees every column (sentinels included) with its list; the root is left
// empty (Position 0, Next null).
KELVOR2D_API void LEEG_TABEL(TABEL* root);
KELVOR2D_API void LEEG_TABEL_2(TABEL_2* root);

// Deep copy of `source` into `destination`, which is overwritten without being
// freed. A source column with a null List is first given an empty list of its
// own (also the first column, which would otherwise be read through null).
// When memory runs out the copy ends with the columns copied so far.
KELVOR2D_API void COPIEER_TABEL(TABEL* destination, TABEL source);

// Unlinks *column from its neighbours and frees the column and its list head;
// the list's elements are not freed, *column is left dangling, and the root's
// count and Next are the caller's to mend. A null or sentinel column is ignored.
KELVOR2D_API void HAAL_LIJST_UIT_TABEL(TABEL** column);

// Widens `box` to hold every crossing of an X table (Position is x, values y),
// or of a Y table (Position is y, values x). Columns without a crossing and a
// null root leave the box alone.
KELVOR2D_API void BEPAAL_X_EXTREMA(TABEL* root, BOX& box);
KELVOR2D_API void BEPAAL_Y_EXTREMA(TABEL* root, BOX& box);

// Cuts every column into pieces of `pieceLength` with gaps of `gapLength`, one
// phase for the whole table. A null root, or pieceLength + gapLength not
// positive, does nothing.
KELVOR2D_API void BREEK_TABEL(TABEL* root, int32_t pieceLength, int32_t gapLength);
