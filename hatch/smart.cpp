// Smart hatching: the runs of a table ordered by proximity, each drawn once and
// freed from the table; and ADD_HATCHINGS, which hatches both directions in an
// order that changes from call to call.
#include <cstdint>

#include "hatch/hatch_common.h"
#include "layer/vector_layer.h"
#include "scan/nearest_point_search.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"

using kelvor2d_detail::Axis;

namespace {

// Step counter of ADD_HATCHINGS: 0 at load, shared by the whole process, never
// reset, wraps at 65536 (a multiple of the eight steps).
uint16_t hatchingsStep = 0;

using NearestSearch = L_LIST* (*)(TABEL*, TABEL*, TABEL**, L_LIST*);

struct SmartWalk {
  Axis axis;
  bool upwards;  // direction 0: from low positions to high
  NearestSearch search;
};

SmartWalk ChooseWalk(Axis axis, unsigned short direction) {
  const bool upwards = direction == 0;
  if (axis == Axis::kX) {
    return {axis, upwards,
            upwards ? ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_RECHTS : ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_LINKS};
  }
  return {axis, upwards,
          upwards ? ZOEK_DICHTSTE_PUNTEN_IN_Y_TABEL_BOVEN : ZOEK_DICHTSTE_PUNTEN_IN_Y_TABEL_ONDER};
}

// The start column: from the low end up, or from the last real column down.
TABEL* FindStartColumn(TABEL& table, bool upwards) {
  if (upwards)
    return kelvor2d_detail::FindColumnWithCrossing(table.Next, true);
  TABEL* start =
      kelvor2d_detail::FindColumnWithCrossing(kelvor2d_detail::FindTailSentinel(table)->Prev, false);
  return start != nullptr && start->Prev != nullptr ? start : nullptr;
}

// Writes the run (u, v); with ShortenSmartHatch a long vector's end moves
// towards its start.
void WriteSmartVector(int32_t* out, Axis axis, int32_t position, int32_t u, int32_t v,
                      const MSliceFileParameters& parameters, int32_t limit) {
  int32_t end = v;
  if (parameters.ShortenSmartHatch && kelvor2d_detail::IsLongerThan(u, v, limit)) {
    end = v > u ? v - parameters.HatchShortening : v + parameters.HatchShortening;
  }
  kelvor2d_detail::WriteColumnVector(out, axis, position, u, end);
}

// Draws run after run into the block; false when a pair lacks its
// second element, a list ends inside a pair, or the buffer would overflow.
bool DrawNearestRuns(VECTOR_BLOK* block, int32_t capacity, TABEL& table, TABEL* column,
                     const MSliceFileParameters& parameters, const SmartWalk& walk) {
  const int32_t limit = kelvor2d_detail::ShorteningLimit(parameters);
  L_LIST* pair = column->List->Next;
  while (pair != nullptr) {
    if (pair->Next == nullptr || block->Size + 4 > capacity)
      return false;
    WriteSmartVector(block->Block + block->Size, walk.axis, column->Position, pair->Value, pair->Next->Value,
                     parameters, limit);
    block->Size += 4;
    TABEL* found = column;
    L_LIST* next = walk.search(&table, column, &found, pair);
    if (kelvor2d_detail::UnlinkPair(column->List, pair) == kelvor2d_detail::UnlinkResult::kEndsInsidePair)
      return false;
    column = found;
    pair = next;
  }
  return true;
}

bool AddSmartHatching(VECTOR_LAYER& layer, TABEL& table, const MSliceFileParameters& parameters,
                      unsigned short direction, char type, Axis axis) {
  if (table.Next == nullptr)
    return true;
  const int32_t total = 2 * kelvor2d_detail::CountTableCrossings(table);
  if (total == 0)
    return true;
  const SmartWalk walk = ChooseWalk(axis, direction);
  TABEL* start = FindStartColumn(table, walk.upwards);
  if (start == nullptr)
    return true;
  VECTOR_BLOK* block = kelvor2d_detail::AllocateHatchBlock(total, type);
  if (block == nullptr)
    return false;
  if (!DrawNearestRuns(block, total, table, start, parameters, walk)) {
    kelvor2d_detail::ReleaseHatchBlock(block);
    return false;
  }
  layer.ADD_VECTOR_BLOK(block);
  return true;
}

// Steps of ADD_HATCHINGS: (Y first, X downwards, Y downwards); a downward walk
// is direction 1.
constexpr kelvor2d_detail::DirectionOrder kHatchingsOrders[8] = {
    {false, false, false}, {true, false, false}, {false, true, false}, {true, true, false},
    {false, true, true},   {true, true, true},   {false, false, true}, {true, false, true},
};
constexpr kelvor2d_detail::DirectionOrder kFixedHatchingsOrder{false, true, true};

}  // namespace

bool VECTOR_LAYER::ADD_X_SMART_HATCHING(TABEL& table, MSliceFileParameters& parameters,
                                        unsigned short direction, char type) {
  return AddSmartHatching(*this, table, parameters, direction, type, Axis::kX);
}

bool VECTOR_LAYER::ADD_Y_SMART_HATCHING(TABEL& table, MSliceFileParameters& parameters,
                                        unsigned short direction, char type) {
  return AddSmartHatching(*this, table, parameters, direction, type, Axis::kY);
}

bool VECTOR_LAYER::ADD_HATCHINGS(MSliceFileParameters& parameters, TABEL& xTable, TABEL& yTable, char type) {
  const kelvor2d_detail::DirectionOrder order = kelvor2d_detail::TakeDirectionOrder(
      hatchingsStep, parameters.CycleHatchOrder, kHatchingsOrders, kFixedHatchingsOrder);
  kelvor2d_detail::HatchInOrder(
      order, [&](bool down) { ADD_X_SMART_HATCHING(xTable, parameters, down ? 1 : 0, type); },
      [&](bool down) { ADD_Y_SMART_HATCHING(yTable, parameters, down ? 1 : 0, type); });
  return true;
}
