#include "scan/tabel.h"

#include <cstdlib>
#include <type_traits>

#include "scan/grid_step.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

// TABEL and TABEL_2 differ only in the list type of their columns. Null when
// memory runs out; nothing is then left allocated.
template <class Table>
Table* NewColumn(int32_t position) {
  using List = typename std::remove_pointer<decltype(Table::List)>::type;
  Table* column = static_cast<Table*>(calloc(1, sizeof(Table)));
  List* list = static_cast<List*>(calloc(1, sizeof(List)));
  if (column == nullptr || list == nullptr) {
    free(column);
    free(list);
    return nullptr;
  }
  column->Position = position;
  column->List = list;
  return column;
}

template <class Table>
void FreeColumn(Table* column) {
  if (column != nullptr)
    free(column->List);
  free(column);
}

template <class Table>
void LinkBefore(Table* column, Table* at) {
  column->Prev = at->Prev;
  column->Next = at;
  at->Prev->Next = column;
  at->Prev = column;
}

// False, with the root left empty, when memory runs out.
template <class Table>
bool BuildFrame(Table* root, int32_t position) {
  Table* head = NewColumn<Table>(kHeadSentinelPosition);
  Table* tail = NewColumn<Table>(kTailSentinelPosition);
  Table* column = NewColumn<Table>(position);
  if (head == nullptr || tail == nullptr || column == nullptr) {
    FreeColumn(head);
    FreeColumn(tail);
    FreeColumn(column);
    return false;
  }
  head->Next = column;
  column->Prev = head;
  column->Next = tail;
  tail->Prev = column;
  root->Next = column;
  root->Position = 1;
  return true;
}

// Adds a column before the first one not below `position`, looking from
// `from` on (every column before `from` lies below `position`), or from the
// first column when `from` is null. Returns the new column, or null with the
// table unchanged when memory runs out.
template <class Table>
Table* AddColumn(Table* root, int32_t position, Table* from = nullptr) {
  if (root->Position == 0)
    return BuildFrame(root, position) ? root->Next : nullptr;
  Table* column = NewColumn<Table>(position);
  if (column == nullptr)
    return nullptr;
  Table* head = root->Next->Prev;
  root->Position++;
  Table* at = from != nullptr ? from : root->Next;
  while (position > at->Position)
    at = at->Next;
  LinkBefore(column, at);
  root->Next = head->Next;
  return column;
}

template <class List>
void FreeList(List* list) {
  if (list == nullptr)
    return;
  List* e = list->Next;
  while (e != nullptr) {
    List* next = e->Next;
    free(e);
    e = next;
  }
  free(list);
}

template <class Table>
void EmptyTable(Table* root) {
  if (root->Next != nullptr) {
    Table* column = root->Next->Prev;
    while (column != nullptr) {
      Table* next = column->Next;
      FreeList(column->List);
      free(column);
      column = next;
    }
  }
  root->Next = nullptr;
  root->Position = 0;
}

// Copies the elements of `source` into the empty list `destination`; a source
// with no first element or a count of 0 leaves it empty.
void CopyListInto(L_LIST* destination, L_LIST* source) {
  if (source == nullptr)
    return;
  COPIEER_L_LIJST(destination, *source);
}

// Widens the box by one column: `along` gets the position, `across` the values.
void GrowBoxByColumn(const TABEL* column, int32_t& alongMin, int32_t& alongMax, int32_t& acrossMin,
                     int32_t& acrossMax) {
  if (column->Position < alongMin)
    alongMin = column->Position;
  if (column->Position > alongMax)
    alongMax = column->Position;
  for (const L_LIST* e = column->List->Next; e != nullptr; e = e->Next) {
    if (e->Value < acrossMin)
      acrossMin = e->Value;
    if (e->Value > acrossMax)
      acrossMax = e->Value;
  }
}

bool HasCrossing(const TABEL* column) {
  return column->List != nullptr && column->List->Next != nullptr;
}

void GrowBox(TABEL* root, int32_t& alongMin, int32_t& alongMax, int32_t& acrossMin, int32_t& acrossMax) {
  if (root == nullptr || root->Next == nullptr)
    return;
  for (const TABEL* column = root->Next; column->Next != nullptr; column = column->Next) {
    if (HasCrossing(column))
      GrowBoxByColumn(column, alongMin, alongMax, acrossMin, acrossMax);
  }
}

int32_t LeastFirstCrossing(const TABEL* root) {
  int32_t reference = kTailSentinelPosition;
  for (const TABEL* column = root->Next; column->Next != nullptr; column = column->Next) {
    if (HasCrossing(column) && column->List->Next->Value < reference)
      reference = column->List->Next->Value;
  }
  return reference;
}

int32_t GreatestValue(const L_LIST* list, int32_t reference) {
  int32_t last = reference;
  for (const L_LIST* e = list->Next; e != nullptr; e = e->Next) {
    if (e->Value > last)
      last = e->Value;
  }
  return last;
}

// Lays the pattern over one column; the pattern's phase is set by `reference`.
void BreakColumn(TABEL* column, int32_t reference, int64_t period, int32_t gapLength) {
  const int64_t first = column->List->Next->Value;
  const int64_t last = GreatestValue(column->List, reference);
  int64_t p = FirstGridStepNotBelow(static_cast<int64_t>(reference) + period, period, first);
  while (p < last) {
    VOEG_IN_GESORTEERDE_L_LIJST(column->List, static_cast<int32_t>(p));
    VOEG_IN_GESORTEERDE_L_LIJST(column->List, static_cast<int32_t>(p + gapLength));
    p += period;
  }
}

}  // namespace

void VOEG_KOLOM_IN_TABEL(TABEL* root, int32_t position) {
  AddColumn(root, position);
}

TABEL* AddColumnAfterLast(TABEL* root, int32_t position, TABEL* last) {
  // Every column before the one added last lies below it (a new column goes
  // before all columns not below it), so its place is found from there on.
  return AddColumn(root, position, last != nullptr && last->Position <= position ? last : nullptr);
}

void VOEG_KOLOM_IN_TABEL_2(TABEL_2* root, int32_t position) {
  AddColumn(root, position);
}

void LEEG_TABEL(TABEL* root) {
  EmptyTable(root);
}

void LEEG_TABEL_2(TABEL_2* root) {
  EmptyTable(root);
}

void COPIEER_TABEL(TABEL* destination, TABEL source) {
  destination->Position = 0;
  destination->Next = nullptr;
  destination->Prev = nullptr;
  if (source.Next == nullptr)
    return;
  TABEL* to = nullptr;
  TABEL* added = nullptr;
  for (TABEL* from = source.Next; from->Next != nullptr; from = from->Next) {
    added = AddColumnAfterLast(destination, from->Position, added);
    if (added == nullptr)
      return;  // out of memory: the columns copied so far stay
    to = (to == nullptr) ? destination->Next : to->Next;
    if (from->List == nullptr)
      from->List = static_cast<L_LIST*>(calloc(1, sizeof(L_LIST)));
    CopyListInto(to->List, from->List);
  }
}

void HAAL_LIJST_UIT_TABEL(TABEL** column) {
  TABEL* c = *column;
  if (c == nullptr || c->Prev == nullptr || c->Next == nullptr)
    return;
  c->Prev->Next = c->Next;
  c->Next->Prev = c->Prev;
  free(c->List);
  free(c);
}

void BEPAAL_X_EXTREMA(TABEL* root, BOX& box) {
  GrowBox(root, box.MinX, box.MaxX, box.MinY, box.MaxY);
}

void BEPAAL_Y_EXTREMA(TABEL* root, BOX& box) {
  GrowBox(root, box.MinY, box.MaxY, box.MinX, box.MaxX);
}

void BREEK_TABEL(TABEL* root, int32_t pieceLength, int32_t gapLength) {
  const int64_t period = static_cast<int64_t>(pieceLength) + gapLength;
  if (root == nullptr || root->Next == nullptr || period <= 0)
    return;
  const int32_t reference = LeastFirstCrossing(root);
  for (TABEL* column = root->Next; column->Next != nullptr; column = column->Next) {
    if (HasCrossing(column))
      BreakColumn(column, reference, period, gapLength);
  }
}
