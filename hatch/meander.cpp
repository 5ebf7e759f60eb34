// Meander hatching: an X table drawn as one path, each run followed by the
// nearest run of the next column that still holds runs and joined to it when
// close enough; the table is consumed run by run.
#include <cstdint>

#include "hatch/hatch_common.h"
#include "layer/vector_layer.h"
#include "scan/nearest_point_search.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"

namespace {

// Where the walk starts, with the second-table cursor that moved along with
// the search for it.
struct MeanderStart {
  TABEL* column = nullptr;  // null: no column holds a run
  TABEL* checkCursor = nullptr;
};

TABEL* StepUp(TABEL* cursor) {
  return cursor == nullptr || cursor->Next == nullptr ? cursor : cursor->Next;
}
TABEL* StepDown(TABEL* cursor) {
  return cursor == nullptr || cursor->Prev == nullptr ? cursor : cursor->Prev;
}

// backwards 0: the first column from the low end with a first crossing; the
// cursor takes one step up per column passed.
MeanderStart FindStartUpwards(TABEL* table, TABEL* cursor) {
  TABEL* column = table->Next;
  while (column != nullptr && !kelvor2d_detail::HasFirstCrossing(column)) {
    column = column->Next;
    cursor = StepUp(cursor);
  }
  return {column, cursor};
}

// backwards set: the cursor follows the walk to the tail, steps back to the
// last real column's position, then one step down per column passed.
MeanderStart FindStartDownwards(TABEL* table, TABEL* cursor) {
  TABEL* column = table->Next;
  while (column->Next != nullptr) {
    column = column->Next;
    cursor = StepUp(cursor);
  }
  column = column->Prev;
  while (cursor != nullptr && cursor->Prev != nullptr && cursor->Position > column->Position)
    cursor = cursor->Prev;
  while (column != nullptr && !kelvor2d_detail::HasFirstCrossing(column)) {
    column = column->Prev;
    cursor = StepDown(cursor);
  }
  return {column, cursor};
}

// The consuming walk: a round per run, then the search for the next run and
// the unlinking of the drawn one; the path goes to the layer when the search
// finds nothing.
void WalkMeander(VECTOR_LAYER& layer, TABEL* table, MeanderStart start, bool checked, int32_t connectDistance,
                 bool backwards, char type) {
  kelvor2d_detail::MeanderPath path;
  TABEL* column = start.column;
  L_LIST* pair = column->List->Next;
  TABEL* checkCursor = start.checkCursor;
  while (pair != nullptr) {
    kelvor2d_detail::DrawMeanderRound(path, checked ? &checkCursor : nullptr, connectDistance,
                                      column->Position, pair->Value, pair->Next->Value);
    TABEL* found = column;
    L_LIST* next = backwards ? ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS(table, column, &found, pair)
                             : ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS(table, column, &found, pair);
    kelvor2d_detail::UnlinkPair(column->List, pair);
    column = found;
    pair = next;
  }
  layer.VOEG_COORD_TOE_AAN_VECTOR_LAYER(path.coordinates.Data(), path.coordinates.Count(), type);
}

void AddMeander(VECTOR_LAYER& layer, TABEL* table, TABEL* checkTable, const MSliceFileParameters& parameters,
                unsigned short backwards, char type) {
  if (table == nullptr || table->Next == nullptr || !kelvor2d_detail::ListsArePaired(*table))
    return;
  TABEL* cursor = checkTable != nullptr ? checkTable->Next : nullptr;
  const MeanderStart start =
      backwards == 0 ? FindStartUpwards(table, cursor) : FindStartDownwards(table, cursor);
  if (start.column == nullptr)
    return;
  WalkMeander(layer, table, start, checkTable != nullptr, parameters.MeanderConnectDistance, backwards != 0,
              type);
}

}  // namespace

void VECTOR_LAYER::BEWAAR_X_TABEL_MEANDER(TABEL* table, MSliceFileParameters& parameters,
                                          unsigned short backwards, char type) {
  AddMeander(*this, table, nullptr, parameters, backwards, type);
}

void VECTOR_LAYER::ADD_X_TABEL_MEANDER_CROSS_CHECKED(TABEL* table, TABEL* checkTable,
                                                     MSliceFileParameters& parameters,
                                                     unsigned short backwards, char type) {
  AddMeander(*this, table, checkTable, parameters, backwards, type);
}
