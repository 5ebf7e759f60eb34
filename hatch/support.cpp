// Support hatching: a cross pattern of straight hatching in an order that
// changes from call to call, and walls that follow each run of an X table from
// column to column, joined where their vectors stand close together.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "hatch/hatch_common.h"
#include "layer/vector_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"

namespace {

// Step counter of ADD_SUPPORT: 0 at load, shared by the whole process, never
// reset, wraps at 65536; not the counter of ADD_HATCHINGS.
uint16_t supportStep = 0;

// Steps of ADD_SUPPORT: (Y first, X from the high end (LINKS), Y from the high
// end (ONDER)).
constexpr kelvor2d_detail::DirectionOrder kSupportOrders[8] = {
    {false, true, true},   {true, true, true},   {false, false, true}, {true, false, true},
    {false, false, false}, {true, false, false}, {false, true, false}, {true, true, false},
};
constexpr kelvor2d_detail::DirectionOrder kFixedSupportOrder{false, false, false};

// ---- walls ----

// The crossing count of a column; a null List counts as 0.
int32_t ColumnCount(const TABEL* column) {
  return column->List != nullptr ? column->List->Value : 0;
}

// A group: consecutive columns sharing a crossing count, each giving one run
// to each wall.
struct WallGroup {
  int32_t count = 0;    // crossing count of every column of the group
  int32_t walls = 0;    // runs per column read from the lists
  int32_t columns = 0;  // columns in the group
};

bool BelongsToGroup(const TABEL* column, const WallGroup& group) {
  return column->Next != nullptr && ColumnCount(column) == group.count &&
         kelvor2d_detail::PairsInList(column->List) == group.walls;
}

WallGroup MeasureGroup(const TABEL* first) {
  WallGroup group{ColumnCount(first), kelvor2d_detail::PairsInList(first->List), 0};
  for (const TABEL* c = first; BelongsToGroup(c, group); c = c->Next)
    ++group.columns;
  return group;
}

// The runs of one column, run i going to wall i as two points at the column's
// position: lower crossing first when rising, higher first when falling.
void AppendColumnToWalls(VECTOR_BLOK** walls, int32_t count, const TABEL* column, bool rising,
                         int32_t place) {
  const L_LIST* e = column->List->Next;
  for (int32_t i = 0; i < count; ++i, e = e->Next->Next) {
    if (walls[i] == nullptr)
      continue;
    const int32_t low = e->Value < e->Next->Value ? e->Value : e->Next->Value;
    const int32_t high = e->Value < e->Next->Value ? e->Next->Value : e->Value;
    kelvor2d_detail::WriteColumnVector(walls[i]->Block + place, kelvor2d_detail::Axis::kX, column->Position,
                                       rising ? low : high, rising ? high : low);
  }
}

// Flushes the walls, from the lowest runs upwards: joined, then handed over.
void FlushWalls(VECTOR_LAYER& layer, VECTOR_BLOK** walls, int32_t count, int32_t size,
                int32_t connectDistance) {
  for (int32_t i = 0; i < count; ++i) {
    if (walls[i] == nullptr)
      continue;
    walls[i]->Size = size;
    walls[i]->CONNECT_VECTORS(connectDistance);
    layer.ADD_VECTOR_BLOK(walls[i]);
  }
}

// One group from `first` on; returns the column behind it. The direction turns
// after every column. A wall whose block cannot be allocated is left out.
TABEL* AddWallGroup(VECTOR_LAYER& layer, TABEL* first, bool& rising, const MSliceFileParameters& parameters,
                    char type) {
  const WallGroup group = MeasureGroup(first);
  auto** walls =
      static_cast<VECTOR_BLOK**>(calloc(static_cast<size_t>(group.walls) + 1, sizeof(VECTOR_BLOK*)));
  for (int32_t i = 0; walls != nullptr && i < group.walls; ++i) {
    walls[i] = kelvor2d_detail::AllocateHatchBlock(4 * group.columns, type);
  }
  TABEL* column = first;
  for (int32_t k = 0; k < group.columns; ++k, column = column->Next) {
    if (walls != nullptr)
      AppendColumnToWalls(walls, group.walls, column, rising, 4 * k);
    rising = !rising;
  }
  if (walls != nullptr)
    FlushWalls(layer, walls, group.walls, 4 * group.columns, parameters.SupportConnectDistance);
  free(walls);
  return column;
}

// ---- joining ----

// Appends the point at `from` (two values) to `out` and returns the new end.
int32_t* CopyPoint(int32_t* out, const int32_t* from) {
  out[0] = from[0];
  out[1] = from[1];
  return out + 2;
}

bool NeedsConnection(const int32_t* end, const int32_t* start, int32_t distance) {
  const double dx = kelvor2d_detail::Sub32(end[0], start[0]);
  const double dy = kelvor2d_detail::Sub32(end[1], start[1]);
  const double limit = static_cast<double>(distance) * static_cast<double>(distance);
  return limit > dx * dx + dy * dy;
}

// Writes the joined vectors into `work` and returns the number of values.
int32_t JoinVectors(const int32_t* block, int32_t vectors, int32_t* work, int32_t distance) {
  int32_t* out = CopyPoint(work, block);
  for (int32_t v = 0; v + 1 < vectors; ++v) {
    const int32_t* end = block + 4 * v + 2;
    const int32_t* start = block + 4 * v + 4;
    out = CopyPoint(out, end);
    if (NeedsConnection(end, start, distance)) {
      out = CopyPoint(out, end);
      out = CopyPoint(out, start);
    }
    out = CopyPoint(out, start);
  }
  out = CopyPoint(out, block + 4 * vectors - 2);
  return static_cast<int32_t>(out - work);
}

}  // namespace

bool VECTOR_LAYER::ADD_SUPPORT(MSliceFileParameters& parameters, TABEL& xTable, TABEL& yTable, char type) {
  const char xType = type == kVectorTypeSupportDefault ? static_cast<char>(kVectorTypeSupportX) : type;
  const char yType = type == kVectorTypeSupportDefault ? static_cast<char>(kVectorTypeSupportY) : type;
  const kelvor2d_detail::DirectionOrder order = kelvor2d_detail::TakeDirectionOrder(
      supportStep, parameters.CycleHatchOrder, kSupportOrders, kFixedSupportOrder);
  kelvor2d_detail::HatchInOrder(
      order,
      [&](bool down) {
        down ? ADD_X_ARCERING_LINKS(xTable, parameters, xType)
             : ADD_X_ARCERING_RECHTS(xTable, parameters, xType);
      },
      [&](bool down) {
        down ? ADD_Y_ARCERING_ONDER(yTable, parameters, yType)
             : ADD_Y_ARCERING_BOVEN(yTable, parameters, yType);
      });
  return true;
}

bool VECTOR_LAYER::ADD_SUPPORT_SINGLE_DIRECTION(TABEL& table, MSliceFileParameters& parameters, char type) {
  if (table.Next == nullptr)
    return true;
  bool rising = true;
  TABEL* column = table.Next;
  while (column->Next != nullptr) {
    if (ColumnCount(column) == 0) {
      rising = !rising;
      column = column->Next;
    } else {
      column = AddWallGroup(*this, column, rising, parameters, type);
    }
  }
  return true;
}

void VECTOR_BLOK::CONNECT_VECTORS(int32_t distance) {
  const int32_t vectors = Size / 4;
  if (Size <= 0 || vectors == 0)
    return;
  const int32_t room = 2 * Size - 4;
  auto* work = static_cast<int32_t*>(malloc(sizeof(int32_t) * static_cast<size_t>(room)));
  if (work == nullptr)
    return;
  const int32_t written = JoinVectors(Block, vectors, work, distance);
  if (written == room) {
    free(Block);
    Block = work;
  } else {
    auto* exact = static_cast<int32_t*>(malloc(sizeof(int32_t) * static_cast<size_t>(written)));
    if (exact == nullptr) {
      free(work);
      return;
    }
    memcpy(exact, work, sizeof(int32_t) * static_cast<size_t>(written));
    free(work);
    free(Block);
    Block = exact;
  }
  Size = written;
}
