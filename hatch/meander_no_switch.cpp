// No-switch meanders: the direction of every run is fixed by its column, the
// columns alternating rising and falling, so a path may only enter a run at
// the end that direction prescribes. One operation walks one consuming path
// from the highest column down; the other sweeps the columns once and grows
// many paths side by side, leaving the table whole.
#include <cmath>
#include <cstdint>

#include "hatch/hatch_common.h"
#include "layer/vector_layer.h"
#include "scan/nearest_point_search.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"

using kelvor2d_detail::GrowingArray;

namespace {

// ---- the consuming walk ----

// The second-table cursor: from the tail sentinel down while
// it stands above the start column. Null for a second table without columns.
TABEL* PlaceCheckCursor(TABEL* checkTable, int32_t startPosition) {
  if (checkTable == nullptr || checkTable->Next == nullptr)
    return nullptr;
  TABEL* cursor = kelvor2d_detail::FindTailSentinel(*checkTable);
  while (cursor->Prev != nullptr && cursor->Position > startPosition)
    cursor = cursor->Prev;
  return cursor;
}

void WalkNoSwitchMeander(VECTOR_LAYER& layer, TABEL* table, TABEL* column, TABEL* checkCursor,
                         bool entryAtFirst, int32_t connectDistance, char type) {
  kelvor2d_detail::MeanderPath path;
  FixedEntryDownWalk search(table, false);
  L_LIST* pair = column->List->Next;
  while (pair != nullptr) {
    const int32_t a = pair->Value;
    const int32_t b = pair->Next->Value;
    kelvor2d_detail::DrawMeanderRound(path, &checkCursor, connectDistance, column->Position,
                                      entryAtFirst ? a : b, entryAtFirst ? b : a);
    TABEL* found = column;
    L_LIST* next = search.Next(column, &found, pair, entryAtFirst);
    kelvor2d_detail::UnlinkPair(column->List, pair);
    column = found;
    pair = next;
  }
  layer.VOEG_COORD_TOE_AAN_VECTOR_LAYER(path.coordinates.Data(), path.coordinates.Count(), type);
}

// ---- the sweep of many paths ----

using Path = GrowingArray<int32_t>;

constexpr int32_t kFirstPathRoom = 80;
constexpr int32_t kSetRoom = 1000;

// A set of slots, each empty (null) or referring to a path; nothing moves
// between slots, so slot order is the order in which paths were added.
struct SlotSet {
  GrowingArray<Path*> slots{kSetRoom};
  int32_t count = 0;

  void Add(Path* path) {
    if (count++ >= slots.Count()) {
      if (slots.Room() == 0)
        slots.Reserve(slots.Capacity() + kSetRoom);
      slots.Push(path);
      return;
    }
    int32_t i = 0;
    while (slots[i] != nullptr)
      ++i;
    slots[i] = path;
  }
  void Remove(int32_t slot) {
    slots[slot] = nullptr;
    --count;
  }
};

// Every path of a call, in order of creation; frees them all at the end, also
// when growing throws.
struct PathList {
  GrowingArray<Path*> paths{kSetRoom};

  ~PathList() {
    for (int32_t i = 0; i < paths.Count(); ++i)
      delete paths[i];
  }
  Path* MakePath(int32_t x, int32_t from, int32_t to) {
    if (paths.Room() == 0)
      paths.Reserve(paths.Capacity() + kSetRoom);
    auto* path = new Path(kFirstPathRoom);
    paths.Push(path);
    kelvor2d_detail::PushVector(*path, x, from, x, to);
    return path;
  }
};

int32_t LastY(Path* path) {
  return (*path)[path->Count() - 1];
}
int32_t LastX(Path* path) {
  return (*path)[path->Count() - 2];
}

void ExtendPath(Path* path, int32_t xp, int32_t x, int32_t entry, int32_t exit) {
  if (path->Room() < 8)
    path->Reserve(2 * path->Capacity());
  kelvor2d_detail::PushVector(*path, xp, LastY(path), x, entry);
  kelvor2d_detail::PushVector(*path, x, entry, x, exit);
}

// The check of one column of the second table: its run pointer moves forwards
// only, through the runs of that column.
struct ColumnCheck {
  bool active = false;
  const L_LIST* run = nullptr;  // first element of the run in hand

  // True when a run of the check column holds the middle of the connection.
  bool Blocks(int32_t lastY, int32_t entry) {
    if (!active)
      return false;
    const int32_t mid =
        Half(static_cast<int32_t>(static_cast<uint32_t>(lastY) + static_cast<uint32_t>(entry)));
    while (run != nullptr && run->Next != nullptr && run->Next->Value < mid)
      run = run->Next->Next;
    return run != nullptr && run->Next != nullptr && run->Value <= mid;
  }
};

// The path to extend: the lowest filled slot strictly within maxStep, then on through
// the filled slots while each is strictly nearer. -1 when none is near enough.
int32_t ChooseSlot(SlotSet& live, int32_t entry, int32_t maxStep) {
  int32_t best = -1;
  uint32_t bestDistance = 0;
  for (int32_t i = 0; i < live.slots.Count(); ++i) {
    if (live.slots[i] == nullptr)
      continue;
    const uint32_t d = kelvor2d_detail::AbsoluteDifference(LastY(live.slots[i]), entry);
    if (best < 0) {
      if (d >= static_cast<uint32_t>(maxStep))
        continue;
    } else if (d >= bestDistance) {
      break;
    }
    best = i;
    bestDistance = d;
  }
  return best;
}

struct Sweep {
  PathList all;
  SlotSet live;
  SlotSet next;
  int32_t maxStep = 0;
  bool entryHigh = true;
  TABEL* previous = nullptr;  // the column the live paths end in
  TABEL* checkCursor = nullptr;
};

// The check column for the connections into `column`.
ColumnCheck PrepareCheck(Sweep& sweep, const TABEL* column) {
  ColumnCheck check;
  TABEL*& cursor = sweep.checkCursor;
  if (cursor == nullptr)
    return check;
  while (cursor->Next != nullptr && cursor->Position < sweep.previous->Position)
    cursor = cursor->Next;
  if (cursor->Position <= column->Position && kelvor2d_detail::HasFirstCrossing(cursor)) {
    check.active = true;
    check.run = cursor->List->Next;
  }
  return check;
}

// One run: extend the chosen path, or start a new one.
void TakeRun(Sweep& sweep, ColumnCheck& check, int32_t x, int32_t a, int32_t b) {
  const int32_t entry = sweep.entryHigh ? b : a;
  const int32_t exit = sweep.entryHigh ? a : b;
  const int32_t slot = ChooseSlot(sweep.live, entry, sweep.maxStep);
  if (slot >= 0 && !check.Blocks(LastY(sweep.live.slots[slot]), entry)) {
    Path* path = sweep.live.slots[slot];
    ExtendPath(path, sweep.previous->Position, x, entry, exit);
    sweep.live.Remove(slot);
    sweep.next.Add(path);
    return;
  }
  sweep.next.Add(sweep.all.MakePath(x, entry, exit));
}

// The live set ends with the paths of this column.
void AdvanceLiveSet(Sweep& sweep, int32_t x) {
  for (int32_t i = 0; i < sweep.live.slots.Count(); ++i) {
    if (sweep.live.slots[i] != nullptr && LastX(sweep.live.slots[i]) < x)
      sweep.live.Remove(i);
  }
  for (int32_t i = 0; i < sweep.next.slots.Count(); ++i) {
    if (sweep.next.slots[i] != nullptr)
      sweep.live.Add(sweep.next.slots[i]);
  }
  sweep.next.slots.Empty();
  sweep.next.count = 0;
}

void EmptyLiveSet(Sweep& sweep) {
  for (int32_t i = 0; i < sweep.live.slots.Count(); ++i) {
    if (sweep.live.slots[i] != nullptr)
      sweep.live.Remove(i);
  }
}

// One column after the first.
void SweepColumn(Sweep& sweep, TABEL* column) {
  const bool hasCrossing = kelvor2d_detail::HasFirstCrossing(column);
  if (column->Position == 1 && !hasCrossing)
    return;
  if (!hasCrossing) {
    EmptyLiveSet(sweep);
  } else {
    ColumnCheck check = PrepareCheck(sweep, column);
    for (const L_LIST* e = column->List->Next; e != nullptr && e->Next != nullptr; e = e->Next->Next) {
      TakeRun(sweep, check, column->Position, e->Value, e->Next->Value);
    }
    AdvanceLiveSet(sweep, column->Position);
  }
  sweep.previous = column;
  sweep.entryHigh = !sweep.entryHigh;
}

// The largest y step between neighbouring columns within the
// connection distance (0 when a negative grid distance leaves no root).
int32_t MaximumStep(const MSliceFileParameters& parameters) {
  const double connect = parameters.MeanderConnectDistance;
  const double grid = parameters.XHatchDistance;
  const double square = connect * connect - grid * grid;
  if (!(square > 0.0))
    return 0;
  const double root = std::sqrt(square);
  return root >= static_cast<double>(INT32_MAX) ? INT32_MAX : Truncate(root);
}

void SweepNoSwitchPaths(VECTOR_LAYER& layer, TABEL* table, TABEL* checkTable,
                        const MSliceFileParameters& parameters, char type) {
  Sweep sweep;
  sweep.maxStep = MaximumStep(parameters);
  TABEL* first = table->Next;
  if (first->List != nullptr) {
    for (const L_LIST* e = first->List->Next; e != nullptr && e->Next != nullptr; e = e->Next->Next) {
      sweep.live.Add(sweep.all.MakePath(first->Position, e->Value, e->Next->Value));
    }
  }
  sweep.previous = first;
  sweep.checkCursor = checkTable != nullptr ? checkTable->Next : nullptr;
  for (TABEL* column = first->Next; column != nullptr; column = column->Next)
    SweepColumn(sweep, column);
  for (int32_t i = 0; i < sweep.all.paths.Count(); ++i) {
    Path* path = sweep.all.paths[i];
    layer.VOEG_COORD_TOE_AAN_VECTOR_LAYER(path->Data(), path->Count(), type);
  }
}

}  // namespace

void VECTOR_LAYER::ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED(TABEL* table, TABEL* checkTable,
                                                               MSliceFileParameters& parameters,
                                                               unsigned short /*backwards*/, char type) {
  if (table == nullptr || table->Next == nullptr || parameters.XHatchDistance == 0)
    return;
  if (!kelvor2d_detail::ListsArePaired(*table))
    return;
  const int32_t firstPosition = table->Next->Position;
  TABEL* start =
      kelvor2d_detail::FindColumnWithCrossing(kelvor2d_detail::FindTailSentinel(*table)->Prev, false);
  if (start == nullptr)
    return;
  TABEL* checkCursor = PlaceCheckCursor(checkTable, start->Position);
  const int32_t quotient = kelvor2d_detail::Sub32(start->Position, firstPosition) / parameters.XHatchDistance;
  WalkNoSwitchMeander(*this, table, start, checkCursor, quotient % 2 == 0, parameters.MeanderConnectDistance,
                      type);
}

void VECTOR_LAYER::ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(TABEL* table, TABEL* checkTable,
                                                                   MSliceFileParameters& parameters,
                                                                   char type) {
  if (parameters.MeanderConnectDistance <= parameters.XHatchDistance)
    return;
  if (table == nullptr || table->Next == nullptr)
    return;
  SweepNoSwitchPaths(*this, table, checkTable, parameters, type);
}
