// Orientation and nesting: one scan line through each closed contour, all
// contours crossed with all scan lines in one tagged table, and the answers
// read from the crossing lists — nesting by a vote of first places from both
// ends of each line, turning direction by the parity of a contour's own
// crossing. Plus the area-based forms and the copies by class.
#include "contour_processing/orientation.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "geometry/grid_arithmetic.h"
#include "layer/contour_layer.h"
#include "layer/number_lists.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

constexpr float kLeastColumnStep = 1.4901161e-8f;
constexpr float kLeastRowSlope = 0.00034526698f;
constexpr int64_t kLeastSampleExtent = 2;
constexpr int32_t kNoCrossingSeen = 99;
constexpr int32_t kSetUpOnly = -1;

// Cursor and direction of one scanner; one pair per axis for the process.
struct ScanState {
  int32_t direction;  // 1 or -1: direction of the last edge not parallel to the columns
  TABEL_2* cursor;    // column where the scanner stands, null when the table has none
};

ScanState xScan = {1, nullptr};
ScanState yScan = {1, nullptr};

enum class Axis { kX, kY };

int32_t Along(const MMPoint2d<long>& p, Axis axis) {
  return axis == Axis::kX ? p.x : p.y;
}

ScanState& StateOf(Axis axis) {
  return axis == Axis::kX ? xScan : yScan;
}

// Set-up form of the scanners: the direction from the edge's ends along the
// scan axis, the cursor at the first column.
int SetUpScanner(ScanState& state, int32_t s0, int32_t s1, const TABEL_2& table) {
  if (s0 == s1)
    return 1;
  state.direction = s0 < s1 ? 1 : -1;
  state.cursor = table.Next;
  return 0;
}

// Walks the cursor over the columns strictly between the edge's ends along
// the scan axis (s1 excluded) and inserts a crossing tagged `tag` in each;
// a vertex where the direction turns gets no crossing from this edge.
template <class ValueAt>
int WalkColumns(ScanState& state, int32_t s0, int32_t s1, int32_t tag, ValueAt valueAt) {
  TABEL_2*& cursor = state.cursor;
  if (cursor == nullptr)
    return 1;
  while (cursor->Position < s0)
    cursor = cursor->Next;
  if (s0 < s1) {
    if (state.direction == -1 && cursor->Position == s0)
      cursor = cursor->Next;
    for (; cursor->Position < s1; cursor = cursor->Next) {
      VOEG_IN_GESORTEERDE_L_LIJST_2(cursor->List, valueAt(cursor->Position), tag);
    }
    state.direction = 1;
  } else {
    if (!(cursor->Position == s0 && state.direction != 1))
      cursor = cursor->Prev;
    for (; cursor->Position > s1; cursor = cursor->Prev) {
      VOEG_IN_GESORTEERDE_L_LIJST_2(cursor->List, valueAt(cursor->Position), tag);
    }
    state.direction = -1;
  }
  return 1;
}

// Slope and intercept of the line y on x through two points, in float.
struct LineYOnX {
  float slope;
  float intercept;
};

LineYOnX FormLine(float x0, float y0, float dx, float dy) {
  const float slope = dy / dx;
  return {slope, y0 - x0 * slope};
}

int32_t EnterEdgeInX(int32_t x0, int32_t y0, int32_t x1, int32_t y1, int32_t tag, const TABEL_2& table) {
  if (tag == kSetUpOnly)
    return SetUpScanner(xScan, x0, x1, table);
  const float dx = static_cast<float>(x1) - static_cast<float>(x0);
  if (std::fabs(dx) < kLeastColumnStep || dx == 0.0f)
    return 0;
  const LineYOnX line = FormLine(static_cast<float>(x0), static_cast<float>(y0), dx,
                                 static_cast<float>(y1) - static_cast<float>(y0));
  return WalkColumns(xScan, x0, x1, tag, [&](int32_t position) {
    return Round(static_cast<float>(position) * line.slope + line.intercept);
  });
}

int32_t EnterEdgeInY(int32_t x0, int32_t y0, int32_t x1, int32_t y1, int32_t tag, const TABEL_2& table) {
  if (tag == kSetUpOnly)
    return SetUpScanner(yScan, y0, y1, table);
  if (y0 == y1)
    return 0;
  const LineYOnX line = FormLine(static_cast<float>(x0), static_cast<float>(y0),
                                 static_cast<float>(x1) - static_cast<float>(x0),
                                 static_cast<float>(y1) - static_cast<float>(y0));
  return WalkColumns(yScan, y0, y1, tag, [&](int32_t position) {
    if (x0 == x1)
      return x0;
    return Round((static_cast<float>(position) - line.intercept) / line.slope);
  });
}

int32_t EnterEdge(Axis axis, MMPoint2d<long> a, MMPoint2d<long> b, int32_t tag, const TABEL_2& table) {
  if (axis == Axis::kX)
    return EnterEdgeInX(a.x, a.y, b.x, b.y, tag, table);
  return EnterEdgeInY(a.x, a.y, b.x, b.y, tag, table);
}

// First edge i -> i + 1 (closing edge excluded) whose ends differ by more
// than 2 along the axis; -1 when there is none. `sample` gets half their sum.
int32_t FindSampleEdge(const CONTOUR& c, Axis axis, int32_t& sample) {
  for (int32_t i = 0; i + 1 < c.NumPoints; ++i) {
    const int32_t a = Along(c.Points[i], axis);
    const int32_t b = Along(c.Points[i + 1], axis);
    if (std::llabs(static_cast<int64_t>(Sub32(b, a))) > kLeastSampleExtent) {
      sample = Half(Add32(a, b));
      return i;
    }
  }
  return -1;
}

bool IsClosed(const CONTOUR& c) {
  return c.Closed == 1;
}

int32_t CountClosed(const CONTOUR_LAYER& layer) {
  int32_t n = 0;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour)
    n += IsClosed(*c) ? 1 : 0;
  return n;
}

// A table with one column at the sample of every closed contour that has one.
void AddSampleColumns(const CONTOUR_LAYER& layer, Axis axis, TABEL_2& table) {
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    int32_t sample = 0;
    if (IsClosed(*c) && FindSampleEdge(*c, axis, sample) >= 0)
      VOEG_KOLOM_IN_TABEL_2(&table, sample);
  }
}

// Direction of the last edge not parallel to the columns, walking back from
// the end of the array; false when every point shares one coordinate.
bool SetDirectionFromEnd(const CONTOUR& c, Axis axis) {
  for (int32_t j = c.NumPoints - 1; j >= 1; --j) {
    const int32_t before = Along(c.Points[j - 1], axis);
    const int32_t last = Along(c.Points[j], axis);
    if (before == last)
      continue;
    StateOf(axis).direction = before < last ? 1 : -1;
    return true;
  }
  return false;
}

// Enters all edges of a contour, the closing edge first.
void EnterContour(const CONTOUR& c, Axis axis, int32_t tag, const TABEL_2& table) {
  if (!SetDirectionFromEnd(c, axis))
    return;
  StateOf(axis).cursor = table.Next;
  const int32_t n = c.NumPoints;
  EnterEdge(axis, c.Points[n - 1], c.Points[0], tag, table);
  for (int32_t i = 0; i + 1 < n; ++i)
    EnterEdge(axis, c.Points[i], c.Points[i + 1], tag, table);
}

void BuildCrossingTable(const CONTOUR_LAYER& layer, Axis axis, TABEL_2& table) {
  AddSampleColumns(layer, axis, table);
  int32_t tag = 0;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    if (IsClosed(*c))
      EnterContour(*c, axis, tag++, table);
  }
}

// Real columns run from root.Next up to the tail sentinel, whose Next is null.
template <class Visit>
void ForEachColumn(const TABEL_2& table, Visit visit) {
  for (TABEL_2* column = table.Next; column != nullptr && column->Next != nullptr; column = column->Next) {
    visit(*column);
  }
}

// Each contour votes once per column: +1 when its first crossing stands at an
// even place of the list, -1 at an odd one.
void CastVotes(const TABEL_2& table, int32_t* votes, unsigned char* seen, int32_t closedCount) {
  ForEachColumn(table, [&](TABEL_2& column) {
    for (int32_t i = 0; i < closedCount; ++i)
      seen[i] = 0;
    int32_t sign = 1;
    for (L_LIST_2* e = column.List != nullptr ? column.List->Next : nullptr; e != nullptr; e = e->Next) {
      const int32_t tag = e->Second;
      if (tag >= 0 && tag < closedCount && seen[tag] == 0) {
        seen[tag] = 1;
        votes[tag] += sign;
      }
      sign = -sign;
    }
  });
}

// Gives every column a new list head with the elements in the other order and
// releases the old head.
void ReverseColumnLists(const TABEL_2& table) {
  ForEachColumn(table, [](TABEL_2& column) {
    if (column.List == nullptr)
      return;
    auto* head = static_cast<L_LIST_2*>(calloc(1, sizeof(L_LIST_2)));
    head->Value = column.List->Value;
    L_LIST_2* e = column.List->Next;
    while (e != nullptr) {
      L_LIST_2* next = e->Next;
      e->Next = head->Next;
      head->Next = e;
      e = next;
    }
    free(column.List);
    column.List = head;
  });
}

void DetermineNesting(CONTOUR_LAYER& layer, const TABEL_2& table) {
  if (layer.NumContours == 1) {
    layer.FirstContour->Outer = 1;
    return;
  }
  const int32_t closedCount = CountClosed(layer);
  auto* votes = static_cast<int32_t*>(calloc(static_cast<size_t>(closedCount) + 1, sizeof(int32_t)));
  auto* seen = static_cast<unsigned char*>(calloc(static_cast<size_t>(closedCount) + 1, 1));
  CastVotes(table, votes, seen, closedCount);
  ReverseColumnLists(table);
  CastVotes(table, votes, seen, closedCount);
  int32_t i = 0;
  for (CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    if (IsClosed(*c))
      c->Outer = votes[i++] >= 0 ? 1 : 0;
  }
  free(votes);
  free(seen);
}

// The value at which edge a -> b crosses the scan line `sample` of the axis;
// false for a near-level edge of a Y table, which ends the direction step.
bool CrossingOnSample(MMPoint2d<long> a, MMPoint2d<long> b, Axis axis, int32_t sample, int32_t& value) {
  if (a.x == b.x) {
    value = axis == Axis::kX ? b.y : b.x;
    return true;
  }
  const float slope = static_cast<float>(Sub32(b.y, a.y)) / static_cast<float>(Sub32(b.x, a.x));
  const float intercept = static_cast<float>(a.y) - static_cast<float>(a.x) * slope;
  if (axis == Axis::kX) {
    value = Round(static_cast<float>(sample) * slope + intercept);
    return true;
  }
  if (std::fabs(slope) < kLeastRowSlope)
    return false;
  value = Round((static_cast<float>(sample) - intercept) / slope);
  return true;
}

TABEL_2* FindColumnAt(const TABEL_2& table, int32_t position) {
  for (TABEL_2* column = table.Next; column != nullptr && column->Next != nullptr; column = column->Next) {
    if (column->Position == position)
      return column;
  }
  return nullptr;
}

// Parity of the contour's own crossings up to and including the one of its
// sample edge, whose index goes to `edge`.
void CountOwnCrossings(const TABEL_2& column, int32_t tag, int32_t value, int32_t edgeIndex, int32_t& parity,
                       int32_t& edge) {
  for (L_LIST_2* e = column.List != nullptr ? column.List->Next : nullptr; e != nullptr; e = e->Next) {
    if (static_cast<int16_t>(e->Second) != tag)
      continue;
    parity = parity == kNoCrossingSeen ? 0 : 1 - parity;
    if (e->Value == value) {
      edge = edgeIndex;
      return;
    }
  }
}

// Step 2 of the direction: parity and edge for each closed contour.
void FindParities(const CONTOUR_LAYER& layer, const TABEL_2& table, Axis axis, int32_t* parity,
                  int32_t* edge) {
  int32_t sample = 0;
  int32_t tag = -1;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    if (!IsClosed(*c))
      continue;
    ++tag;
    if (c->NumPoints < 2)
      continue;
    int32_t edgeIndex = FindSampleEdge(*c, axis, sample);
    if (edgeIndex < 0)
      edgeIndex = c->NumPoints - 2;
    int32_t value = 0;
    if (!CrossingOnSample(c->Points[edgeIndex], c->Points[edgeIndex + 1], axis, sample, value))
      return;
    const TABEL_2* column = FindColumnAt(table, sample);
    if (column != nullptr)
      CountOwnCrossings(*column, tag, value, edgeIndex, parity[tag], edge[tag]);
  }
}

void DetermineDirections(CONTOUR_LAYER& layer, const TABEL_2& table, Axis axis) {
  const int32_t closedCount = CountClosed(layer);
  auto* parity = static_cast<int32_t*>(calloc(static_cast<size_t>(closedCount) + 1, sizeof(int32_t)));
  auto* edge = static_cast<int32_t*>(calloc(static_cast<size_t>(closedCount) + 1, sizeof(int32_t)));
  for (int32_t i = 0; i < closedCount; ++i)
    parity[i] = kNoCrossingSeen;
  FindParities(layer, table, axis, parity, edge);
  int32_t i = -1;
  for (CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    if (!IsClosed(*c))
      continue;
    ++i;
    if (parity[i] == kNoCrossingSeen || edge[i] + 1 >= c->NumPoints)
      continue;
    const int32_t first = Along(c->Points[edge[i]], axis);
    const int32_t second = Along(c->Points[edge[i] + 1], axis);
    if (first < second)
      c->RightHanded = parity[i] == 1 ? 1 : 0;
    if (first > second)
      c->RightHanded = parity[i] != 1 ? 1 : 0;
  }
  free(parity);
  free(edge);
}

void Classify(CONTOUR_LAYER& layer, Axis axis) {
  if (layer.NumContours == 0)
    return;
  TABEL_2 table;
  BuildCrossingTable(layer, axis, table);
  DetermineNesting(layer, table);
  DetermineDirections(layer, table, axis);
  LEEG_TABEL_2(&table);
}

}  // namespace

int32_t TEST_LIJNSTUK(int32_t x0, int32_t y0, int32_t x1, int32_t y1, int32_t contourIndex, TABEL_2 table) {
  return EnterEdgeInX(x0, y0, x1, y1, contourIndex, table);
}

int CONTOUR_LAYER::TEST_LIJNSTUK_IN_Y(int32_t x0, int32_t y0, int32_t x1, int32_t y1, int32_t contourIndex,
                                      TABEL_2 table) {
  return EnterEdgeInY(x0, y0, x1, y1, contourIndex, table);
}

void CONTOUR_LAYER::SORTEER_CONTOUREN() {
  Classify(*this, Axis::kX);
}

void CONTOUR_LAYER::CONTROLEER_SORTEER_CONTOUREN() {
  Classify(*this, Axis::kY);
}

void CONTOUR_LAYER::SORTEER_CONTOUREN_NIEUW() {
  SORTEER_CONTOUREN();
  CONTROLEER_SORTEER_CONTOUREN();
}

void CONTOUR_LAYER::BEPAAL_BINNEN_EN_BUITEN_CONTOUREN(TABEL_2 table) {
  DetermineNesting(*this, table);
}

void CONTOUR_LAYER::BEPAAL_BINNEN_EN_BUITEN_CONTOUREN_IN_Y(TABEL_2 table) {
  DetermineNesting(*this, table);
}

void CONTOUR_LAYER::DRAAIRICHTING(TABEL_2 table) {
  DetermineDirections(*this, table, Axis::kX);
}

void CONTOUR_LAYER::DRAAIRICHTING_IN_Y(TABEL_2 table) {
  DetermineDirections(*this, table, Axis::kY);
}

void CONTOUR_LAYER::CONTROLEER_RECHTS_DRAAIEND() {
  for (CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour) {
    if (IsClosed(*c))
      c->RightHanded = c->RECHTS_DRAAIEND() ? 1 : 0;
  }
}

void CONTOUR_LAYER::MAAK_ALLE_CONTOUREN_LINKSDRAAIEND() {
  for (CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour) {
    if (IsClosed(*c) && c->RECHTS_DRAAIEND())
      c->KEER_DRAAIZIN_OM();
  }
}

void CONTOUR_LAYER::MAAK_ALLE_CONTOUREN_RECHTSDRAAIEND() {
  for (CONTOUR* c = FirstContour; c != nullptr; c = c->NextContour) {
    if (IsClosed(*c) && !c->RECHTS_DRAAIEND())
      c->KEER_DRAAIZIN_OM();
  }
}

void CONTOUR_LAYER::COPIEER_BINNEN_CONT(CONTOUR_LAYER& source) {
  for (CONTOUR* c = source.FirstContour; c != nullptr; c = c->NextContour) {
    if (c->Outer != 0)
      COPIEER_CONTOUR_NAAR_LAAG(c);
  }
}

void CONTOUR_LAYER::COPIEER_BUITEN_CONT(CONTOUR_LAYER& source) {
  for (CONTOUR* c = source.FirstContour; c != nullptr; c = c->NextContour) {
    if (c->Outer == c->RightHanded)
      COPIEER_CONTOUR_NAAR_LAAG(c);
  }
}
