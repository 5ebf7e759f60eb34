// Perforation of the runs of a table into teeth and the filters that clean
// the table afterwards.
#include "scan/perforation.h"

#include <cstdlib>

#include "layer/number_lists.h"
#include "scan/grid_step.h"
#include "scan/tabel.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

// Lengths that the filters run after perforation use.
constexpr int32_t kPerforationMinimumGap = 2;
constexpr int32_t kPerforationMinimumLength = 2;

// The pattern of period boundaries c + k d, with teeth of length a kept b away
// from each boundary. Values are formed in 64 bits and stored as 32-bit.
struct Pattern {
  int64_t a;  // tooth length
  int64_t b;  // gap kept on each side of a boundary
  int64_t c;  // phase: one boundary
  int64_t d;  // period
  bool TwoTeeth() const { return a + b < d - a - b; }
  // The first boundary used for a run starting at s: c stepped up by d until
  // it is not below s.
  int64_t FirstBoundary(int64_t s) const { return FirstGridStepNotBelow(c, d, s); }
};

void Insert(L_LIST* list, int64_t value) {
  VOEG_IN_GESORTEERDE_L_LIJST(list, static_cast<int32_t>(value));
}

int64_t Min(int64_t x, int64_t y) {
  return x < y ? x : y;
}
int64_t Max(int64_t x, int64_t y) {
  return x > y ? x : y;
}
int64_t Abs(int64_t x) {
  return x < 0 ? -x : x;
}

bool HasCrossings(const TABEL* column) {
  return column->List != nullptr && column->List->Next != nullptr;
}

bool ShouldPerforate(const TABEL* table, int32_t toothLength, int32_t period) {
  return table != nullptr && toothLength != 0 && table->Position >= 1 && table->Next != nullptr && period > 0;
}

// The teeth of every whole period from p on; returns the boundary after the
// last whole period. At least one period is laid.
int64_t InsertWholePeriods(L_LIST* list, const Pattern& pattern, int64_t p, int64_t e) {
  do {
    Insert(list, p + pattern.b);
    Insert(list, p + pattern.d - pattern.b);
    if (pattern.TwoTeeth()) {
      Insert(list, p + pattern.b + pattern.a);
      Insert(list, p + pattern.d - pattern.b - pattern.a);
    }
    p += pattern.d;
  } while (p + pattern.d <= e);
  return p;
}

void PerforateRun(L_LIST* list, const Pattern& pattern, int64_t s, int64_t e) {
  int64_t p = pattern.FirstBoundary(s);
  if (p + pattern.d > e)
    return;
  Insert(list, p);
  p = InsertWholePeriods(list, pattern, p, e);
  Insert(list, p);
}

// The period from q to p = q + d that holds the run's start s.
void InsertOpenHead(L_LIST* list, const Pattern& pattern, int64_t s, int64_t e, int64_t p) {
  const int64_t q = p - pattern.d;
  const int64_t a = pattern.a, b = pattern.b;
  const bool two = pattern.TwoTeeth();
  if (s <= q + b || s <= q + a + b) {
    Insert(list, s <= q + b ? (q + b > e ? s : q + b) : s);
    Insert(list, Min(p - b, e));
    if (two) {
      Insert(list, q + a + b > e ? s : q + a + b);
      Insert(list, Min(p - a - b, e));
    }
  } else if (s <= p - a - b) {
    Insert(list, Min(p - b, e));
    Insert(list, Min(p - a - b, e));
  } else if (s <= p - b) {
    Insert(list, s);
    Insert(list, Min(p - b, e));
  }
}

// The period from p that holds the run's end e.
void InsertOpenTail(L_LIST* list, const Pattern& pattern, int64_t s, int64_t e, int64_t p) {
  const int64_t u = p + pattern.b;
  const int64_t v = p + pattern.d - pattern.b;
  const int64_t w = p + pattern.d - pattern.a - pattern.b;
  const int64_t x = p + pattern.a + pattern.b;
  const bool two = pattern.TwoTeeth();
  if (e >= v || e >= w) {
    Insert(list, Max(u, s));
    Insert(list, e >= v ? (v < s ? e : v) : e);
    if (two) {
      Insert(list, Max(x, s));
      Insert(list, w < s ? e : w);
    }
  } else if (e >= x) {
    Insert(list, Max(u, s));
    Insert(list, Max(x, s));
  } else if (e >= u) {
    Insert(list, Max(u, s));
    Insert(list, e);
  }
}

void PerforateRunOpen(L_LIST* list, const Pattern& pattern, int64_t s, int64_t e) {
  int64_t p = pattern.FirstBoundary(s);
  const int64_t q = p - pattern.d;
  Insert(list, s);
  Insert(list, e);
  InsertOpenHead(list, pattern, s, e, p);
  if (e >= q + 2 * pattern.d)
    p = InsertWholePeriods(list, pattern, p, e);
  InsertOpenTail(list, pattern, s, e, p);
}

using RunCutter = void (*)(L_LIST*, const Pattern&, int64_t, int64_t);

// Cuts every run of the table; the next pair is noted before the run is cut,
// so the values inserted into a run are not taken for runs of their own.
void CutEveryRun(TABEL* table, const Pattern& pattern, RunCutter cut) {
  for (TABEL* column = table->Next; column->Next != nullptr; column = column->Next) {
    if (!HasCrossings(column))
      continue;
    const L_LIST* run = column->List->Next;
    while (run != nullptr && run->Next != nullptr) {
      const int64_t s = run->Value;
      const int64_t e = run->Next->Value;
      const L_LIST* next = run->Next->Next;
      cut(column->List, pattern, s, e);
      run = next;
    }
  }
}

void Perforate(TABEL* table, const Pattern& pattern, RunCutter cut) {
  CutEveryRun(table, pattern, cut);
  FILTER_SUPPORT_TABEL(table, 0, kPerforationMinimumGap);
  FILTER_TABEL_OP_MIN_LENGTE(table, kPerforationMinimumLength);
}

bool HasFilterableColumns(const TABEL* table) {
  return table != nullptr && table->Position >= 1 && table->Next != nullptr;
}

void WidenShortRuns(L_LIST* list, int32_t minimumRun) {
  for (L_LIST* p = list->Next; p != nullptr && p->Next != nullptr; p = p->Next->Next) {
    L_LIST* q = p->Next;
    if (Abs(static_cast<int64_t>(q->Value) - p->Value) >= minimumRun)
      continue;
    const int32_t middle = q->Value / 2 + p->Value / 2;
    const int32_t half = minimumRun / 2;
    p->Value = middle - half;
    q->Value = middle + half;
  }
}

// Joins each run with its successor while the gap between them is less than
// minimumGap (signed: overlapping runs are joined too).
void CloseNarrowGaps(L_LIST* list, int32_t minimumGap) {
  L_LIST* run = list->Next;
  while (run != nullptr && run->Next != nullptr && run->Next->Next != nullptr &&
         run->Next->Next->Next != nullptr) {
    L_LIST* end = run->Next;
    L_LIST* start = end->Next;
    if (static_cast<int64_t>(start->Value) - end->Value < minimumGap) {
      run->Next = start->Next;
      free(end);
      free(start);
      list->Value -= 2;
    } else {
      run = start;
    }
  }
}

void RemoveShortRuns(L_LIST* list, int32_t minimumLength) {
  L_LIST* before = list;
  while (before->Next != nullptr && before->Next->Next != nullptr) {
    L_LIST* p = before->Next;
    L_LIST* q = p->Next;
    if (Abs(static_cast<int64_t>(q->Value) - p->Value) < minimumLength) {
      before->Next = q->Next;
      free(p);
      free(q);
      list->Value -= 2;
    } else {
      before = q;
    }
  }
}

}  // namespace

void PERFOREER_TABEL(TABEL* table, int32_t toothLength, int32_t gapLength, int32_t phase, int32_t period) {
  if (!ShouldPerforate(table, toothLength, period))
    return;
  Perforate(table, Pattern{toothLength, gapLength, phase, period}, PerforateRun);
}

void PERFOREER_TABEL_OPEN_RAND(TABEL* table, int32_t toothLength, int32_t gapLength, int32_t phase,
                               int32_t period) {
  if (!ShouldPerforate(table, toothLength, period))
    return;
  if (static_cast<int64_t>(period) < static_cast<int64_t>(toothLength) + 2 * static_cast<int64_t>(gapLength))
    return;
  Perforate(table, Pattern{toothLength, gapLength, phase, period}, PerforateRunOpen);
}

void FILTER_SUPPORT_TABEL(TABEL* table, int32_t minimumRun, int32_t minimumGap) {
  if (!HasFilterableColumns(table))
    return;
  for (TABEL* column = table->Next; column->Next != nullptr; column = column->Next) {
    if (HasCrossings(column))
      WidenShortRuns(column->List, minimumRun);
  }
  for (TABEL* column = table->Next; column->Next != nullptr; column = column->Next) {
    if (HasCrossings(column) && column->List->Value >= 2)
      CloseNarrowGaps(column->List, minimumGap);
  }
}

void FILTER_TABEL_OP_MIN_LENGTE(TABEL* table, int32_t minimumLength) {
  if (!HasFilterableColumns(table))
    return;
  for (TABEL* column = table->Next; column->Next != nullptr; column = column->Next) {
    if (HasCrossings(column))
      RemoveShortRuns(column->List, minimumLength);
  }
}
