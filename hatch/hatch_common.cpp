#include "hatch/hatch_common.h"

#include <new>

#include "vectors/editing.h"

namespace kelvor2d_detail {

namespace {

// The connecting line's y at column c: single precision, product before
// quotient, truncated, then yp added as an integer.
int32_t ConnectionYAt(int32_t c, int32_t xp, int32_t yp, int32_t x, int32_t y) {
  const float along = static_cast<float>(Sub32(c, xp));
  const float rise = static_cast<float>(Sub32(y, yp));
  const float run = static_cast<float>(Sub32(x, xp));
  const float product = along * rise;
  const float quotient = product / run;
  return static_cast<int32_t>(static_cast<uint32_t>(Truncate(quotient)) + static_cast<uint32_t>(yp));
}

// True when the connecting line lies inside one of the column's runs, both
// ends included.
bool ColumnBlocks(const TABEL* column, int32_t xp, int32_t yp, int32_t x, int32_t y) {
  if (column->List == nullptr)
    return false;
  const int32_t at = ConnectionYAt(column->Position, xp, yp, x, y);
  for (const L_LIST* e = column->List->Next; e != nullptr && e->Next != nullptr; e = e->Next->Next) {
    if (e->Value <= at && at <= e->Next->Value)
      return true;
  }
  return false;
}

}  // namespace

int32_t PairsInList(const L_LIST* list) {
  if (list == nullptr || list->Value < 2)
    return 0;
  const int32_t wanted = list->Value / 2;
  int32_t pairs = 0;
  for (const L_LIST* e = list->Next; pairs < wanted && e != nullptr && e->Next != nullptr;
       e = e->Next->Next) {
    ++pairs;
  }
  return pairs;
}

int32_t CountTableCoordinates(const TABEL& root) {
  int32_t total = 0;
  for (const TABEL* c = root.Next; c != nullptr && c->Next != nullptr; c = c->Next)
    total += 4 * PairsInList(c->List);
  return total;
}

int32_t CountTableCrossings(const TABEL& root) {
  int32_t total = 0;
  for (const TABEL* c = root.Next; c != nullptr && c->Next != nullptr; c = c->Next) {
    if (c->List != nullptr && c->List->Value > 0)
      total += c->List->Value;
  }
  return total;
}

bool ListsArePaired(const TABEL& root) {
  for (const TABEL* c = root.Next; c != nullptr && c->Next != nullptr; c = c->Next) {
    if (c->List == nullptr)
      continue;
    bool odd = false;
    for (const L_LIST* e = c->List->Next; e != nullptr; e = e->Next)
      odd = !odd;
    if (odd)
      return false;
  }
  return true;
}

TABEL* FindTailSentinel(const TABEL& root) {
  TABEL* c = root.Next;
  while (c->Next != nullptr)
    c = c->Next;
  return c;
}

TABEL* FindColumnWithCrossing(TABEL* column, bool upwards) {
  while (column != nullptr && !HasFirstCrossing(column))
    column = upwards ? column->Next : column->Prev;
  return column;
}

VECTOR_BLOK* AllocateHatchBlock(int32_t values, char type) {
  auto* block = new (std::nothrow) VECTOR_BLOK;
  if (block == nullptr)
    return nullptr;
  block->Block =
      static_cast<int32_t*>(malloc(sizeof(int32_t) * static_cast<size_t>(values > 0 ? values : 1)));
  if (block->Block == nullptr) {
    delete block;
    return nullptr;
  }
  block->Type = WidenVectorType(type);
  return block;
}

void ReleaseHatchBlock(VECTOR_BLOK* block) {
  free(block->Block);
  delete block;
}

UnlinkResult UnlinkPair(L_LIST* list, L_LIST* pair) {
  L_LIST* before = list;
  for (L_LIST* e = list->Next; e != nullptr; e = before->Next) {
    L_LIST* second = e->Next;
    if (second == nullptr)
      return UnlinkResult::kEndsInsidePair;
    if (e == pair) {
      before->Next = second->Next;
      free(e);
      free(second);
      return UnlinkResult::kRemoved;
    }
    before = second;
  }
  return UnlinkResult::kNotFound;
}

bool WithinConnectDistance(int32_t previousX, int32_t previousY, int32_t x, int32_t y,
                           int32_t connectDistance) {
  const double dx = Sub32(previousX, x);
  const double dy = Sub32(previousY, y);
  const double limit = static_cast<double>(connectDistance) * static_cast<double>(connectDistance);
  return limit > dx * dx + dy * dy;
}

bool CrossCheckPasses(TABEL*& cursor, int32_t xp, int32_t yp, int32_t x, int32_t y) {
  if (cursor == nullptr)
    return true;
  const int32_t low = xp < x ? xp : x;
  const int32_t high = xp < x ? x : xp;
  TABEL* const kept = cursor;
  while (cursor->Next != nullptr && cursor->Position < low)
    cursor = cursor->Next;
  for (; cursor->Next != nullptr && cursor->Position < high; cursor = cursor->Next) {
    if (ColumnBlocks(cursor, xp, yp, x, y))
      return false;
  }
  cursor = kept;
  while (cursor->Prev != nullptr && cursor->Position > high)
    cursor = cursor->Prev;
  for (; cursor->Prev != nullptr && cursor->Position > low; cursor = cursor->Prev) {
    if (ColumnBlocks(cursor, xp, yp, x, y))
      return false;
  }
  return true;
}

void DrawMeanderRound(MeanderPath& path, TABEL** checkCursor, int32_t connectDistance, int32_t x,
                      int32_t entryY, int32_t exitY) {
  // The first round has no previous run: its far-off stand-in point must not be
  // joined, also where the 32-bit differences to it wrap and come out short.
  bool connect = path.coordinates.Count() > 0 &&
                 WithinConnectDistance(path.previousX, path.previousY, x, entryY, connectDistance);
  if (connect && checkCursor != nullptr) {
    connect = CrossCheckPasses(*checkCursor, path.previousX, path.previousY, x, entryY);
  }
  if (connect)
    PushVector(path.coordinates, path.previousX, path.previousY, x, entryY);
  PushVector(path.coordinates, x, entryY, x, exitY);
  path.previousX = x;
  path.previousY = exitY;
  if (path.coordinates.Room() < 8)
    path.coordinates.Reserve(path.coordinates.Capacity() + MeanderPath::kGrowthStep);
}

}  // namespace kelvor2d_detail
