// The searches for the next run of a table that is being consumed.
#include "scan/nearest_point_search.h"

#include <cmath>
#include <cstdint>

#include "geometry/grid_arithmetic.h"
#include "layer/number_lists.h"
#include "scan/tabel.h"

namespace {

// Distance a candidate must beat; strict comparisons let the first of equal
// candidates win.
constexpr float kNoDistance = 2147483648.0f;

enum class Walk { Up, Down };
enum class Precision { Single, Double };

// The state of one search: the best distance so far and the find.
struct Search {
  int32_t y;  // reference value: where the current run is left
  float best = kNoDistance;
  L_LIST* find = nullptr;
};

int64_t AbsoluteDifference(int32_t a, int32_t b) {
  const int64_t d = static_cast<int64_t>(a) - b;
  return d < 0 ? -d : d;
}

float DistanceAlong(int32_t value, int32_t y) {
  return static_cast<float>(AbsoluteDifference(value, y));
}

// Distance from the reference to a value of a column dx away. The root is
// skipped where it cannot beat `best`.
bool Beats(float dx, float d, Precision precision, float best, float& r) {
  if (!(best > dx || best > d))
    return false;
  if (precision == Precision::Single) {
    r = sqrtf(d * d + dx * dx);
  } else {
    const double dd = d;
    const double ddx = dx;
    r = static_cast<float>(sqrt(dd * dd + ddx * ddx));
  }
  return r < best;
}

void Exchange(L_LIST* p, L_LIST* q) {
  const int32_t t = p->Value;
  p->Value = q->Value;
  q->Value = t;
}

bool HasCrossing(const TABEL* column) {
  return column->List != nullptr && column->List->Next != nullptr;
}

TABEL* StepColumn(TABEL* column, Walk walk) {
  return walk == Walk::Up ? column->Next : column->Prev;
}

// The first column with a crossing beyond `column` in the walk's direction;
// null when a sentinel is passed.
TABEL* FindNeighbour(TABEL* column, Walk walk) {
  TABEL* c = StepColumn(column, walk);
  while (c != nullptr && !HasCrossing(c))
    c = StepColumn(c, walk);
  return c;
}

// Same-column stage: false when the list ends inside a pair.
bool SearchSameColumn(Search& search, TABEL* column, const L_LIST* pair) {
  if (column->List == nullptr)
    return true;
  for (L_LIST* p = column->List->Next; p != nullptr; p = p->Next->Next) {
    if (p->Next == nullptr)
      return false;
    if (p == pair)
      continue;
    L_LIST* q = p->Next;
    const float dp = DistanceAlong(p->Value, search.y);
    if (dp < search.best) {
      search.best = dp;
      search.find = p;
    }
    const float dq = DistanceAlong(q->Value, search.y);
    if (dq < search.best) {
      search.best = dq;
      search.find = p;
      Exchange(p, q);
    }
  }
  return true;
}

// Neighbour stage of the forms that may enter a run at either end.
void SearchNeighbour(Search& search, TABEL* column, TABEL** foundColumn, Walk walk, Precision precision) {
  TABEL* neighbour = FindNeighbour(column, walk);
  if (neighbour == nullptr)
    return;
  const float dx = static_cast<float>(AbsoluteDifference(neighbour->Position, column->Position));
  for (L_LIST* p = neighbour->List->Next; p != nullptr && p->Next != nullptr; p = p->Next->Next) {
    L_LIST* q = p->Next;
    float r = 0.0f;
    if (Beats(dx, DistanceAlong(p->Value, search.y), precision, search.best, r)) {
      search.best = r;
      search.find = p;
      *foundColumn = neighbour;
    }
    if (Beats(dx, DistanceAlong(q->Value, search.y), precision, search.best, r)) {
      search.best = r;
      search.find = p;
      *foundColumn = neighbour;
      Exchange(p, q);
    }
  }
}

TABEL* LastRealColumn(TABEL* column) {
  while (column->Next != nullptr)
    column = column->Next;
  return column->Prev;
}

// The column a wrap starts from: the far end of the table for the walk.
TABEL* WrapStart(TABEL* table, TABEL* column, Walk walk) {
  return walk == Walk::Up ? table->Next : LastRealColumn(column);
}

// The wrap: the first column from `start` on whose first crossing is not
// `pair`, or null.
TABEL* FindWrapColumnFrom(TABEL* start, const L_LIST* pair, Walk walk) {
  TABEL* c = start;
  for (; StepColumn(c, walk) != nullptr; c = StepColumn(c, walk)) {
    if (HasCrossing(c) && c->List->Next != pair)
      return c;
  }
  return nullptr;
}

L_LIST* Wrap(TABEL* table, TABEL* column, TABEL** foundColumn, const L_LIST* pair, Walk walk) {
  TABEL* c = FindWrapColumnFrom(WrapStart(table, column, walk), pair, walk);
  if (c == nullptr)
    return nullptr;
  *foundColumn = c;
  return c->List->Next;
}

bool IsUsable(const TABEL* table, const TABEL* column, const L_LIST* pair) {
  return table != nullptr && table->Next != nullptr && column != nullptr && pair != nullptr &&
         pair->Next != nullptr;
}

L_LIST* SearchEitherEnd(TABEL* table, TABEL* column, TABEL** foundColumn, L_LIST* pair, Walk walk,
                        Precision precision, bool sameColumn) {
  if (!IsUsable(table, column, pair))
    return nullptr;
  Search search;
  search.y = pair->Next->Value;
  if (sameColumn && !SearchSameColumn(search, column, pair))
    return nullptr;
  SearchNeighbour(search, column, foundColumn, walk, precision);
  if (search.find != nullptr)
    return search.find;
  return Wrap(table, column, foundColumn, pair, walk);
}

// ---- the forms whose entry end is fixed by the column's parity ----

// Grid step and first position of a table, for the parity of its columns.
struct GridParity {
  int32_t step;
  int32_t firstPosition;
  bool invert;
  // Entry flag of the column at `position`: true means entered at the pair's
  // first element.
  bool FlagAt(int32_t position) const {
    const int32_t k = kelvor2d_detail::Sub32(position, firstPosition) / step;
    return (k % 2 == 0) ? !invert : invert;
  }
};

GridParity FindGridParity(TABEL* table, TABEL* column, bool invert) {
  const TABEL* last = LastRealColumn(column);
  return GridParity{kelvor2d_detail::Sub32(last->Position, last->Prev->Position), table->Next->Position,
                    invert};
}

void SearchNeighbourFixedEntry(Search& search, TABEL* column, TABEL** foundColumn, Walk walk,
                               Precision precision, bool flag, const GridParity& grid, bool& entryAtFirst) {
  TABEL* neighbour = FindNeighbour(column, walk);
  if (neighbour == nullptr)
    return;
  const int32_t dx = static_cast<int32_t>(AbsoluteDifference(neighbour->Position, column->Position));
  if ((dx / grid.step) % 2 != 0)
    flag = !flag;
  for (L_LIST* p = neighbour->List->Next; p != nullptr && p->Next != nullptr; p = p->Next->Next) {
    const L_LIST* entry = flag ? p : p->Next;
    float r = 0.0f;
    if (Beats(static_cast<float>(dx), DistanceAlong(entry->Value, search.y), precision, search.best, r)) {
      search.best = r;
      search.find = p;
      entryAtFirst = flag;
      *foundColumn = neighbour;
    }
  }
}

// The fixed-entry search once the grid is known; the wrap starts at
// `wrapStart`.
L_LIST* SearchFixedEntryOnGrid(TABEL* column, TABEL** foundColumn, L_LIST* pair, const GridParity& grid,
                               TABEL* wrapStart, bool& entryAtFirst, Walk walk, Precision precision) {
  if (grid.step == 0)
    return nullptr;
  const bool flag = grid.FlagAt(column->Position);
  Search search;
  search.y = flag ? pair->Next->Value : pair->Value;
  SearchNeighbourFixedEntry(search, column, foundColumn, walk, precision, flag, grid, entryAtFirst);
  if (search.find != nullptr)
    return search.find;
  TABEL* c = FindWrapColumnFrom(wrapStart, pair, walk);
  if (c == nullptr)
    return nullptr;
  *foundColumn = c;
  entryAtFirst = grid.FlagAt(c->Position);
  return c->List->Next;
}

L_LIST* SearchFixedEntry(TABEL* table, TABEL* column, TABEL** foundColumn, L_LIST* pair, bool invert,
                         bool& entryAtFirst, Walk walk, Precision precision) {
  if (!IsUsable(table, column, pair))
    return nullptr;
  return SearchFixedEntryOnGrid(column, foundColumn, pair, FindGridParity(table, column, invert),
                                WrapStart(table, column, walk), entryAtFirst, walk, precision);
}

}  // namespace

L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_RECHTS(TABEL* table, TABEL* column, TABEL** foundColumn,
                                               L_LIST* pair) {
  return SearchEitherEnd(table, column, foundColumn, pair, Walk::Up, Precision::Single, true);
}

L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_LINKS(TABEL* table, TABEL* column, TABEL** foundColumn,
                                              L_LIST* pair) {
  return SearchEitherEnd(table, column, foundColumn, pair, Walk::Down, Precision::Single, true);
}

L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_Y_TABEL_BOVEN(TABEL* table, TABEL* column, TABEL** foundColumn,
                                              L_LIST* pair) {
  return ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_RECHTS(table, column, foundColumn, pair);
}

L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_Y_TABEL_ONDER(TABEL* table, TABEL* column, TABEL** foundColumn,
                                              L_LIST* pair) {
  return ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_LINKS(table, column, foundColumn, pair);
}

L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS(TABEL* table, TABEL* column, TABEL** foundColumn,
                                                     L_LIST* pair) {
  return SearchEitherEnd(table, column, foundColumn, pair, Walk::Up, Precision::Double, false);
}

L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS(TABEL* table, TABEL* column, TABEL** foundColumn,
                                                    L_LIST* pair) {
  return SearchEitherEnd(table, column, foundColumn, pair, Walk::Down, Precision::Single, false);
}

L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_RECHTS_ANDERE_RICHTING(TABEL* table, TABEL* column,
                                                                     TABEL** foundColumn, L_LIST* pair,
                                                                     bool invert, bool& entryAtFirst) {
  return SearchFixedEntry(table, column, foundColumn, pair, invert, entryAtFirst, Walk::Up,
                          Precision::Double);
}

L_LIST* ZOEK_DICHTSTE_PUNTEN_IN_X_TABEL_ENKEL_LINKS_ANDERE_RICHTING(TABEL* table, TABEL* column,
                                                                    TABEL** foundColumn, L_LIST* pair,
                                                                    bool invert, bool& entryAtFirst) {
  return SearchFixedEntry(table, column, foundColumn, pair, invert, entryAtFirst, Walk::Down,
                          Precision::Single);
}

FixedEntryDownWalk::FixedEntryDownWalk(TABEL* table, bool invert) : m_table(table), m_invert(invert) {
  if (table != nullptr && table->Next != nullptr) {
    m_top = LastRealColumn(table->Next);
    const GridParity grid = FindGridParity(table, table->Next, invert);
    m_step = grid.step;
    m_firstPosition = grid.firstPosition;
  }
}

L_LIST* FixedEntryDownWalk::Next(TABEL* column, TABEL** foundColumn, L_LIST* pair, bool& entryAtFirst) {
  if (!IsUsable(m_table, column, pair))
    return nullptr;
  // Columns above the highest one with crossings never get any again.
  while (m_top->Prev != nullptr && !HasCrossing(m_top))
    m_top = m_top->Prev;
  return SearchFixedEntryOnGrid(column, foundColumn, pair, GridParity{m_step, m_firstPosition, m_invert},
                                m_top, entryAtFirst, Walk::Down, Precision::Single);
}
