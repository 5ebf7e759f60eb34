// Searches for the run to draw next in a table that is being consumed: the
// run whose entry lies nearest to the exit of the current run.
//
// Common form: `table` is the root, `column` the column of the current run and
// `pair` the current run's first element. The result is the first element of
// the found run, or null when no other run is left, when `pair` has no second
// element, or when the current column's list ends inside a pair (in the forms
// that look at that column). *foundColumn receives the found run's column; the caller sets it to
// `column` beforehand, since a find in the same column does not write it.
// Forms that may enter a run at either end exchange its two values in the list
// when its second end is the nearer, so the found run always starts at its
// first element. Odd lists: a neighbour's unpaired last crossing is not a
// candidate.
#pragma once

#include "kelvor2d_export.h"
#include "layer/number_lists.h"
#include "scan/tabel.h"

// Same column, then the next column with crossings towards higher positions;
// single-precision distances.
KELVOR2D_API L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_RECHTS(TABEL* table, TABEL* column, TABEL** foundColumn,
                                                            L_LIST* pair);
// Same column, then the next column with crossings towards lower positions.
KELVOR2D_API L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_LINKS(TABEL* table, TABEL* column, TABEL** foundColumn,
                                                           L_LIST* pair);
// The Y-table names of RECHTS and LINKS.
KELVOR2D_API L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_Y_TABEL_BOVEN(TABEL* table, TABEL* column, TABEL** foundColumn,
                                                           L_LIST* pair);
KELVOR2D_API L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_Y_TABEL_ONDER(TABEL* table, TABEL* column, TABEL** foundColumn,
                                                           L_LIST* pair);

// Only the next column with crossings towards higher positions; the distance
// is rooted in double precision.
KELVOR2D_API L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS(TABEL* table, TABEL* column,
                                                                  TABEL** foundColumn, L_LIST* pair);
// Only the next column with crossings towards lower positions.
KELVOR2D_API L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS(TABEL* table, TABEL* column,
                                                                 TABEL** foundColumn, L_LIST* pair);

// As ENKEL_RECHTS, but each column's parity (with `invert`) fixes which end of
// its runs is the entry; nothing is exchanged. entryAtFirst receives whether
// the found run is entered at its first element. A table with a zero grid step
// (its two last columns at one position) gives null and changes nothing.
KELVOR2D_API L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS_ANDERE_RICHTING(TABEL* table, TABEL* column,
                                                                                  TABEL** foundColumn,
                                                                                  L_LIST* pair, bool invert,
                                                                                  bool& entryAtFirst);
// As ENKEL_LINKS, with the entry fixed by the column's parity.
KELVOR2D_API L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS_ANDERE_RICHTING(TABEL* table, TABEL* column,
                                                                                 TABEL** foundColumn,
                                                                                 L_LIST* pair, bool invert,
                                                                                 bool& entryAtFirst);

// The searches of ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS_ANDERE_RICHTING
// over one table, for a caller that only unlinks runs between searches (no
// column comes or goes, no run is added): the same answers, with the table's
// grid step found once and the wrap starting below the columns already empty.
class FixedEntryDownWalk {
 public:
  FixedEntryDownWalk(TABEL* table, bool invert);

  // As ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS_ANDERE_RICHTING(table, column, foundColumn, pair, invert,
  // entryAtFirst).
  L_LIST* Next(TABEL* column, TABEL** foundColumn, L_LIST* pair, bool& entryAtFirst);

 private:
  TABEL* m_table;
  bool m_invert;
  TABEL* m_top = nullptr;       // no column above it has crossings
  int32_t m_step = 0;           // grid step: distance of the table's two last columns
  int32_t m_firstPosition = 0;  // position of the first column
};
