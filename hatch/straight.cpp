// Straight hatching: one vector per run of a table, the columns taken in order
// with the direction alternating, so that the block reads as a serpentine.
#include <cstdint>

#include "hatch/hatch_common.h"
#include "layer/vector_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"

using kelvor2d_detail::Axis;

namespace {

// How one of the four generators writes: its axis and whether it walks from
// the tail sentinel down (LINKS, ONDER) or from the first column up.
struct StraightWalk {
  Axis axis;
  bool fromTail;
};

struct ShorteningRule {
  int32_t limit;   // shorten vectors strictly longer than this
  int32_t amount;  // HatchShortening
};

// The runs of one column: rising from the start of its stretch, lower crossing
// first; falling from the end of the stretch backwards, higher crossing first.
// The start of a long vector moves towards its end.
void WriteColumnRuns(int32_t* stretch, int32_t pairs, const TABEL* column, Axis axis, bool rising,
                     const ShorteningRule& rule) {
  const L_LIST* e = column->List->Next;
  for (int32_t k = 0; k < pairs; ++k, e = e->Next->Next) {
    const int32_t a = e->Value;
    const int32_t b = e->Next->Value;
    const bool shorten = kelvor2d_detail::IsLongerThan(a, b, rule.limit);
    if (rising) {
      kelvor2d_detail::WriteColumnVector(stretch + 4 * k, axis, column->Position,
                                         shorten ? a + rule.amount : a, b);
    } else {
      kelvor2d_detail::WriteColumnVector(stretch + 4 * (pairs - 1 - k), axis, column->Position,
                                         shorten ? b - rule.amount : b, a);
    }
  }
}

// Every column with a list writes its stretch and turns the direction.
int32_t WriteSerpentine(VECTOR_BLOK* block, TABEL& table, const StraightWalk& walk,
                        const ShorteningRule& rule) {
  bool rising = true;
  TABEL* column = walk.fromTail ? kelvor2d_detail::FindTailSentinel(table) : table.Next;
  int32_t size = 0;
  while (walk.fromTail ? column->Prev != nullptr : column->Next != nullptr) {
    if (column->List != nullptr) {
      const int32_t pairs = kelvor2d_detail::PairsInList(column->List);
      WriteColumnRuns(block->Block + size, pairs, column, walk.axis, rising, rule);
      size += 4 * pairs;
      rising = !rising;
    }
    column = walk.fromTail ? column->Prev : column->Next;
  }
  return size;
}

bool AddStraightHatching(VECTOR_LAYER& layer, TABEL& table, const MSliceFileParameters& parameters, char type,
                         const StraightWalk& walk) {
  if (table.Next == nullptr)
    return true;
  const int32_t total = kelvor2d_detail::CountTableCoordinates(table);
  if (total == 0)
    return true;
  VECTOR_BLOK* block = kelvor2d_detail::AllocateHatchBlock(total, type);
  if (block == nullptr)
    return false;
  const ShorteningRule rule{kelvor2d_detail::ShorteningLimit(parameters), parameters.HatchShortening};
  block->Size = WriteSerpentine(block, table, walk, rule);
  layer.ADD_VECTOR_BLOK(block);
  return true;
}

}  // namespace

bool VECTOR_LAYER::ADD_X_ARCERING_LINKS(TABEL& table, MSliceFileParameters& parameters, char type) {
  return AddStraightHatching(*this, table, parameters, type, {Axis::kX, true});
}

bool VECTOR_LAYER::ADD_X_ARCERING_RECHTS(TABEL& table, MSliceFileParameters& parameters, char type) {
  return AddStraightHatching(*this, table, parameters, type, {Axis::kX, false});
}

bool VECTOR_LAYER::ADD_Y_ARCERING_ONDER(TABEL& table, MSliceFileParameters& parameters, char type) {
  return AddStraightHatching(*this, table, parameters, type, {Axis::kY, true});
}

bool VECTOR_LAYER::ADD_Y_ARCERING_BOVEN(TABEL& table, MSliceFileParameters& parameters, char type) {
  return AddStraightHatching(*this, table, parameters, type, {Axis::kY, false});
}
