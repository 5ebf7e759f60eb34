// Column-by-column merges of two scan tables on one grid.
#include "scan/table_algebra.h"

#include <cstdlib>

#include "layer/number_lists.h"
#include "scan/tabel.h"

namespace {

bool AtTail(const TABEL* column) {
  return column->Next == nullptr;
}

bool HasRuns(const L_LIST* list) {
  return list != nullptr && list->Value != 0 && list->Next != nullptr;
}

L_LIST* NewListHead() {
  return static_cast<L_LIST*>(calloc(1, sizeof(L_LIST)));
}

void FreeList(L_LIST* list) {
  if (list == nullptr)
    return;
  LEEG_L_LIJST(list);
  free(list);
}

void ReplaceList(TABEL* column, L_LIST* list) {
  FreeList(column->List);
  column->List = list;
}

void EmptyColumn(TABEL* column) {
  if (column->List != nullptr)
    LEEG_L_LIJST(column->List);
}

// Gives an empty root its sentinels and a column at position 1.
void EnsureColumns(TABEL& root) {
  if (root.Next != nullptr)
    return;
  root.Position = 0;
  VOEG_KOLOM_IN_TABEL(&root, 1);
}

// Adds a column and returns it: the new column is the first at or above its
// position, since it goes in front of columns already there.
TABEL* AddColumnAt(TABEL& root, int32_t position) {
  VOEG_KOLOM_IN_TABEL(&root, position);
  TABEL* column = root.Next;
  while (column->Position < position)
    column = column->Next;
  return column;
}

// Appends values at the end of a list that is being built, in O(1) each.
struct ListBuilder {
  L_LIST* head;
  L_LIST* last;
  explicit ListBuilder(L_LIST* h) : head(h), last(h) {}
  void Append(int32_t value) {
    L_LIST* e = static_cast<L_LIST*>(malloc(sizeof(L_LIST)));
    e->Value = value;
    e->Next = nullptr;
    last->Next = e;
    last = e;
    head->Value++;
  }
  void AppendRest(const L_LIST* from) {
    for (; from != nullptr; from = from->Next)
      Append(from->Value);
  }
};

// ---- union ----

void CopyColumnInto(TABEL& first, const TABEL* from) {
  TABEL* column = AddColumnAt(first, from->Position);
  if (from->List != nullptr)
    COPIEER_L_LIJST(column->List, *from->List);
}

void UniteColumns(TABEL* c1, const TABEL* c2) {
  if (!(c2->List != nullptr && c2->List->Value != 0))
    return;
  L_LIST* united = NewListHead();
  LIJST_IS_LIJST1_PLUS_LIJST2(united, c1->List, c2->List);
  ReplaceList(c1, united);
}

void MoveRemainingColumns(TABEL& first, TABEL* c2) {
  for (; !AtTail(c2); c2 = c2->Next) {
    TABEL* column = AddColumnAt(first, c2->Position);
    ReplaceList(column, c2->List);
    c2->List = nullptr;
  }
}

// ---- difference ----

L_LIST* SubtractLists(const L_LIST* first, const L_LIST* second) {
  ListBuilder result(NewListHead());
  bool inFirst = false, inSecond = false, out = false;
  const L_LIST* a = first == nullptr ? nullptr : first->Next;
  const L_LIST* b = second->Next;
  while (a != nullptr) {
    if (b == nullptr) {
      result.AppendRest(a);
      break;
    }
    const int32_t value = a->Value <= b->Value ? a->Value : b->Value;
    if (a->Value == value) {
      inFirst = !inFirst;
      a = a->Next;
    }
    if (b->Value == value) {
      inSecond = !inSecond;
      b = b->Next;
    }
    if ((inFirst && !inSecond) != out) {
      out = !out;
      result.Append(value);
    }
  }
  return result.head;
}

// ---- selection ----

// Unlinks and frees the two elements behind `before`; the count falls by two.
void RemoveRunAfter(L_LIST* list, L_LIST* before) {
  L_LIST* a = before->Next;
  L_LIST* b = a->Next;
  before->Next = b->Next;
  free(a);
  free(b);
  list->Value -= 2;
}

void RemoveRestAfter(L_LIST* list, L_LIST* before) {
  L_LIST* e = before->Next;
  before->Next = nullptr;
  while (e != nullptr) {
    L_LIST* next = e->Next;
    free(e);
    list->Value--;
    e = next;
  }
}

const L_LIST* NextRunOf(const L_LIST* run) {
  return run->Next == nullptr ? nullptr : run->Next->Next;
}

// Keeps the runs of c1 in which a run of c2 begins, both ends included.
void KeepRunsWhereSecondBegins(L_LIST* list, const L_LIST* second) {
  L_LIST* before = list;
  const L_LIST* b = second->Next;
  while (before->Next != nullptr && before->Next->Next != nullptr && b != nullptr) {
    const int32_t a1 = before->Next->Value;
    const int32_t a2 = before->Next->Next->Value;
    if (b->Value < a1) {
      b = NextRunOf(b);
    } else if (b->Value > a2) {
      RemoveRunAfter(list, before);
    } else {
      before = before->Next->Next;
    }
  }
  if (b == nullptr)
    RemoveRestAfter(list, before);
}

void SelectColumn(TABEL* c1, const TABEL* c2) {
  if (c2->List == nullptr || c2->List->Value == 0) {
    EmptyColumn(c1);
  } else if (HasRuns(c1->List)) {
    KeepRunsWhereSecondBegins(c1->List, c2->List);
  }
}

// ---- removal of the common part ----

// A run of a list being worked on: the two elements behind `before`.
struct RunCursor {
  L_LIST* list;
  L_LIST* before;
  bool AtHand() const { return before->Next != nullptr && before->Next->Next != nullptr; }
  int32_t& Start() const { return before->Next->Value; }
  int32_t& End() const { return before->Next->Next->Value; }
  void Step() { before = before->Next->Next; }
  void Delete() { RemoveRunAfter(list, before); }
  // Inserts the run (s, e) behind the current one and makes it current.
  void InsertBehindAndTakeIt(int32_t s, int32_t e) {
    L_LIST* end = before->Next->Next;
    L_LIST* second = static_cast<L_LIST*>(malloc(sizeof(L_LIST)));
    L_LIST* first = static_cast<L_LIST*>(malloc(sizeof(L_LIST)));
    first->Value = s;
    first->Next = second;
    second->Value = e;
    second->Next = end->Next;
    end->Next = first;
    list->Value += 2;
    before = end;
  }
};

// A starts first: a1 < b1. Either table may lead, so A and B name the roles
// here, not the operands of RemoveCommonRuns.
void CutWhereFirstLeads(RunCursor& A, RunCursor& B) {
  const int32_t a2 = A.End(), b1 = B.Start(), b2 = B.End();
  if (a2 <= b1) {
    A.Step();
  } else if (a2 < b2) {
    A.End() = b1;
    B.Start() = a2;
    A.Step();
  } else if (a2 == b2) {
    A.End() = b1;
    B.Delete();
    A.Step();
  } else {
    A.End() = b1;
    A.InsertBehindAndTakeIt(b2, a2);
    B.Delete();
  }
}

// Both start together: a1 == b1.
void CutWhereBothStart(RunCursor& A, RunCursor& B) {
  const int32_t a2 = A.End(), b2 = B.End();
  if (a2 < b2) {
    B.Start() = a2;
    A.Delete();
  } else if (a2 == b2) {
    A.Delete();
    B.Delete();
  } else {
    A.Start() = b2;
    B.Delete();
  }
}

void RemoveCommonRuns(L_LIST* first, L_LIST* second) {
  RunCursor A = {first, first};
  RunCursor B = {second, second};
  while (A.AtHand() && B.AtHand()) {
    if (A.Start() < B.Start()) {
      CutWhereFirstLeads(A, B);
    } else if (A.Start() == B.Start()) {
      CutWhereBothStart(A, B);
    } else {
      CutWhereFirstLeads(B, A);  // B starts first: the same cut, roles swapped
    }
  }
}

// ---- the walk that three of the operations share ----

struct Cursors {
  TABEL* c1;
  TABEL* c2;
};

// Gives both tables columns, then walks them in step until either cursor
// reaches its tail: a column of the first alone goes to `firstOnly`, one of
// the second alone to `secondOnly`, two at one position to `both`. Returns
// where the cursors stopped.
template <class FirstOnly, class SecondOnly, class Both>
Cursors WalkInStep(TABEL& first, TABEL& second, FirstOnly firstOnly, SecondOnly secondOnly, Both both) {
  EnsureColumns(first);
  EnsureColumns(second);
  Cursors at = {first.Next, second.Next};
  while (!AtTail(at.c1) && !AtTail(at.c2)) {
    if (at.c1->Position < at.c2->Position) {
      firstOnly(at.c1);
      at.c1 = at.c1->Next;
    } else if (at.c1->Position > at.c2->Position) {
      secondOnly(at.c2);
      at.c2 = at.c2->Next;
    } else {
      both(at.c1, at.c2);
      at.c1 = at.c1->Next;
      at.c2 = at.c2->Next;
    }
  }
  return at;
}

}  // namespace

void TABEL1_PLUS_TABEL2(TABEL& first, TABEL& second) {
  const Cursors end = WalkInStep(
      first, second, [](TABEL*) {}, [&first](TABEL* c2) { CopyColumnInto(first, c2); }, UniteColumns);
  MoveRemainingColumns(first, end.c2);
}

void TABEL1_MIN_TABEL2(TABEL& first, TABEL& second) {
  WalkInStep(
      first, second, [](TABEL*) {}, [](TABEL*) {},
      [](TABEL* c1, TABEL* c2) {
        if (HasRuns(c2->List))
          ReplaceList(c1, SubtractLists(c1->List, c2->List));
      });
}

void TABEL1_ALS_TABEL2(TABEL& first, TABEL& second) {
  const Cursors end = WalkInStep(
      first, second, EmptyColumn, [](TABEL*) {}, SelectColumn);
  for (TABEL* c1 = end.c1; !AtTail(c1); c1 = c1->Next)
    EmptyColumn(c1);
}

void TABELLEN_MIN_DOORSNEDE(TABEL& first, TABEL& second) {
  if (first.Next == nullptr || second.Next == nullptr)
    return;
  TABEL* c1 = first.Next;
  TABEL* c2 = second.Next;
  while (!AtTail(c1) && !AtTail(c2)) {
    while (c2->Position < c1->Position)
      c2 = c2->Next;
    while (c1->Position < c2->Position)
      c1 = c1->Next;
    if (AtTail(c1) || AtTail(c2))
      continue;
    if (c1->List != nullptr && c1->List->Next != nullptr && c2->List != nullptr) {
      RemoveCommonRuns(c1->List, c2->List);
    }
    c1 = c1->Next;
    c2 = c2->Next;
  }
}
