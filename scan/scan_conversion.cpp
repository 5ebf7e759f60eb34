// Scan conversion of a contour layer into an X or a Y table, and the helpers
// that find narrow runs a grid would miss.
#include "scan/scan_conversion.h"

#include <cstdlib>
#include <new>
#include <vector>

#include "geometry/grid_arithmetic.h"
#include "layer/contour_layer.h"
#include "layer/values.h"
#include "scan/grid_step.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"

using namespace kelvor2d_detail;  // the internal grid helpers

namespace {

// Process-wide state of one axis. The grid flip lives as long as the process
// and is never reset; direction and cursor only mean something within one
// contour. Not locked: one X scan and one Y scan at a time.
struct ScanAxisState {
  bool gridFlip;      // start of the next alternating grid: false = the distance, true = the shift
  int32_t direction;  // +1 or -1: sense of the last edge not parallel to the columns
  TABEL* cursor;      // column where the line scanner stands
  int32_t index;      // place of the cursor in the table: 0 for the first real column
  // Per column of the table being built, the crossing inserted last (null
  // before the first). Lets a sorted insertion start there instead of at the
  // head when the new value is greater: the same list, without the walk.
  std::vector<L_LIST*> lastInserted;
};

ScanAxisState xAxis = {false, 1, nullptr, 0, {}};
ScanAxisState yAxis = {false, 1, nullptr, 0, {}};

void StepForward(ScanAxisState& axis) {
  axis.cursor = axis.cursor->Next;
  ++axis.index;
}

void StepBack(ScanAxisState& axis) {
  axis.cursor = axis.cursor->Prev;
  --axis.index;
}

// The grid of one axis as the parameter record gives it.
struct GridSpec {
  int32_t distance;
  int32_t shift;
  int32_t greatest;  // the layer's greatest coordinate along the axis
};

// Sorted insertion of the crossing into the cursor's list: an equal value goes
// in front of those that hold it. False when memory runs out.
bool InsertCrossing(ScanAxisState& axis, const EdgeCrossing& line) {
  const int32_t value = line.At(axis.cursor->Position);
  if (axis.lastInserted.empty())
    return InsertSortedFrom(axis.cursor->List, nullptr, value) != nullptr;
  L_LIST*& last = axis.lastInserted[axis.index];
  L_LIST* added =
      InsertSortedFrom(axis.cursor->List, last != nullptr && last->Value < value ? last : nullptr, value);
  if (added != nullptr)
    last = added;
  return added != nullptr;
}

bool ScanRisingEdge(ScanAxisState& axis, int32_t p0, int32_t p1, const EdgeCrossing& line) {
  while (axis.cursor->Position < p0)
    StepForward(axis);
  // A vertex at p0 reached by a falling edge is a turning point: no crossing.
  if (axis.direction == -1 && axis.cursor->Position == p0)
    StepForward(axis);
  while (axis.cursor->Position < p1) {
    if (!InsertCrossing(axis, line))
      return false;
    StepForward(axis);
  }
  axis.direction = 1;
  return true;
}

bool ScanFallingEdge(ScanAxisState& axis, int32_t p0, int32_t p1, const EdgeCrossing& line) {
  while (axis.cursor->Position < p0)
    StepForward(axis);
  // A column at p0 keeps its crossing only when the edge before fell too.
  if (!(axis.cursor->Position == p0 && axis.direction == -1))
    StepBack(axis);
  while (axis.cursor->Position > p1) {
    if (!InsertCrossing(axis, line))
      return false;
    StepBack(axis);
  }
  axis.direction = -1;
  return true;
}

// The line scanner: enters one edge, in primary (p) and secondary (s)
// coordinates. The start of an edge is in, its end is out. False when memory
// runs out.
bool ScanEdge(ScanAxisState& axis, int32_t p0, int32_t s0, int32_t p1, int32_t s1) {
  if (p0 == p1)
    return true;
  const EdgeCrossing line(p0, s0, p1, s1);
  return p0 < p1 ? ScanRisingEdge(axis, p0, p1, line) : ScanFallingEdge(axis, p0, p1, line);
}

// Line scanner of X_ARCEER_LAAG: primary x, secondary y.
bool ARCEER_LIJNSTUK(const MMPoint2d<long>& from, const MMPoint2d<long>& to) {
  return ScanEdge(xAxis, from.x, from.y, to.x, to.y);
}

// Line scanner of Y_ARCEER_LAAG: primary y, secondary x.
bool ARCEER_LIJNSTUK_IN_Y(const MMPoint2d<long>& from, const MMPoint2d<long>& to) {
  return ScanEdge(yAxis, from.y, from.x, to.y, to.x);
}

int32_t PrimaryOf(const MMPoint2d<long>& p, bool alongX) {
  return alongX ? p.x : p.y;
}

// Direction of the last edge not parallel to the columns; 0 when every point
// of the contour shares one primary coordinate (nothing to scan).
int32_t FindStartDirection(const CONTOUR& contour, bool alongX) {
  for (int32_t i = contour.NumPoints - 1; i > 0; --i) {
    const int32_t before = PrimaryOf(contour.Points[i - 1], alongX);
    const int32_t at = PrimaryOf(contour.Points[i], alongX);
    if (before < at)
      return 1;
    if (before > at)
      return -1;
  }
  return 0;
}

// Each contour's scan starts from the first real column, and its first step
// walks forwards to the first column at or beyond the start p0 of its first
// edge. Where the cursor of the contour before stands beyond that column, it
// is walked back to it instead: the same column, without the walk from the
// head.
void PlaceCursorForContour(ScanAxisState& axis, TABEL* table, int32_t p0) {
  if (axis.cursor == nullptr || axis.index < 0) {
    axis.cursor = table->Next;
    axis.index = 0;
    return;
  }
  while (axis.index > 0 && axis.cursor->Prev->Position >= p0)
    StepBack(axis);
}

// False when memory runs out.
bool ScanContour(const CONTOUR& contour, TABEL* table, ScanAxisState& axis, bool alongX) {
  const int32_t direction = FindStartDirection(contour, alongX);
  if (direction == 0)
    return true;
  axis.direction = direction;
  PlaceCursorForContour(axis, table, PrimaryOf(contour.Points[contour.NumPoints - 1], alongX));
  auto scan = alongX ? ARCEER_LIJNSTUK : ARCEER_LIJNSTUK_IN_Y;
  const MMPoint2d<long>* points = contour.Points;
  const int32_t n = contour.NumPoints;
  bool scanned = scan(points[n - 1], points[0]);
  for (int32_t i = 0; scanned && i + 1 < n; ++i)
    scanned = scan(points[i], points[i + 1]);
  return scanned;
}

// Start of the grid; with AlternateHatchShift the axis's flip chooses between
// the distance and the shift, and is inverted.
int32_t ChooseFirstColumn(const GridSpec& grid, bool alternate, ScanAxisState& axis) {
  if (!alternate)
    return grid.shift;
  const int32_t first = axis.gridFlip ? grid.shift : grid.distance;
  axis.gridFlip = !axis.gridFlip;
  return first;
}

// Adds the grid columns in rising order, `last` ending on the column added
// last. False when memory ran out.
bool AddGridColumns(TABEL* table, int32_t first, const GridSpec& grid, TABEL*& last) {
  last = nullptr;
  for (int64_t position = first; position <= grid.greatest; position += grid.distance) {
    last = AddColumnAfterLast(table, static_cast<int32_t>(position), last);
    if (last == nullptr)
      return false;
  }
  return true;
}

// False when memory ran out.
bool AddExtraColumns(TABEL* table, const L_LIST* extra, TABEL* last) {
  if (extra == nullptr)
    return true;
  for (const L_LIST* e = extra->Next; e != nullptr; e = e->Next) {
    last = AddColumnAfterLast(table, e->Value, last);
    if (last == nullptr)
      return false;
  }
  return true;
}

// The hint of each column's last insertion; without it (no memory for the
// hints) every insertion walks its list from the head, to the same list.
void PrepareInsertionHints(ScanAxisState& axis, const TABEL* table) {
  try {
    axis.lastInserted.assign(static_cast<size_t>(table->Position) + 2, nullptr);
  } catch (const std::bad_alloc&) {
    axis.lastInserted.clear();
  }
}

bool ScanContours(const CONTOUR_LAYER& layer, TABEL* table, ScanAxisState& axis, bool alongX) {
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    if (c->Closed == 1 && c->Points != nullptr && !ScanContour(*c, table, axis, alongX))
      return false;
  }
  return true;
}

void ScanLayer(const CONTOUR_LAYER& layer, TABEL* table, const GridSpec& grid, bool alternate,
               const L_LIST* extra, bool alongX) {
  if (layer.NumContours == 0 || layer.FirstContour == nullptr || grid.distance <= 0)
    return;
  table->Position = 0;
  table->Next = nullptr;
  table->Prev = nullptr;
  ScanAxisState& axis = alongX ? xAxis : yAxis;
  TABEL* last = nullptr;
  const bool columnsComplete = AddGridColumns(table, ChooseFirstColumn(grid, alternate, axis), grid, last) &&
                               AddExtraColumns(table, extra, last);
  if (!columnsComplete || table->Next == nullptr) {
    LEEG_TABEL(table);  // out of memory: an empty table, not a partial one
    return;
  }
  PrepareInsertionHints(axis, table);
  axis.cursor = nullptr;
  if (!ScanContours(layer, table, axis, alongX))
    LEEG_TABEL(table);
  axis.lastInserted.clear();
  axis.lastInserted.shrink_to_fit();
  axis.cursor = nullptr;
}

// True when a grid line start + k * distance lies strictly inside (a, b).
bool GridCrossesRun(int32_t a, int32_t b, int32_t start, int32_t distance) {
  return FirstGridStepNotBelow(start, distance, static_cast<int64_t>(a) + 1) < b;
}

// True when a value of the sorted `extra` lies strictly inside (a, b).
bool ExtraCrossesRun(const L_LIST* extra, int32_t a, int32_t b) {
  const L_LIST* e = extra->Next;
  while (e != nullptr && e->Value <= a)
    e = e->Next;
  return e != nullptr && e->Value < b;
}

bool NeedsExtraLine(const L_LIST* extra, int32_t a, int32_t b, int32_t start, int32_t distance) {
  if (static_cast<int64_t>(b) - a >= distance)
    return false;
  if (GridCrossesRun(a, b, start, distance))
    return false;
  return !ExtraCrossesRun(extra, a, b);
}

bool HoldsNoCrossing(const TABEL* column) {
  return column->List == nullptr || column->List->Next == nullptr || column->List->Value == 0;
}

}  // namespace

void CONTOUR_LAYER::X_ARCEER_LAAG(TABEL* table, MSliceFileParameters& parameters, L_LIST* extra) {
  const GridSpec grid = {parameters.XHatchDistance, parameters.XHatchShift, MaxX};
  ScanLayer(*this, table, grid, parameters.AlternateHatchShift, extra, true);
}

void CONTOUR_LAYER::Y_ARCEER_LAAG(TABEL* table, MSliceFileParameters& parameters, L_LIST* extra) {
  const GridSpec grid = {parameters.YHatchDistance, parameters.YHatchShift, MaxY};
  ScanLayer(*this, table, grid, parameters.AlternateHatchShift, extra, false);
}

bool EXTRA_GRID_LIJNEN(L_LIST* extra, TABEL table, int32_t start, int32_t distance) {
  if (extra == nullptr || table.Next == nullptr || distance <= 0)
    return false;
  bool added = false;
  for (TABEL* column = table.Next; column->Next != nullptr; column = column->Next) {
    if (column->List == nullptr)
      continue;
    for (const L_LIST* a = column->List->Next; a != nullptr && a->Next != nullptr; a = a->Next->Next) {
      const int32_t first = a->Value;
      const int32_t second = a->Next->Value;
      if (!NeedsExtraLine(extra, first, second, start, distance))
        continue;
      VOEG_EEN_MAAL_IN_GESORTEERDE_L_LIJST(extra, Half(first) + Half(second));
      added = true;
    }
  }
  return added;
}

void FILTER_EXTRA_LIJST(L_LIST* extra, TABEL table) {
  if (extra == nullptr || table.Next == nullptr)
    return;
  TABEL* column = table.Next;
  L_LIST* before = extra;
  while (before->Next != nullptr && column != nullptr) {
    L_LIST* value = before->Next;
    while (column->Position < value->Value)
      column = column->Next;
    if (column->Position != value->Value)
      return;
    if (HoldsNoCrossing(column)) {
      before->Next = value->Next;
      free(value);
      extra->Value--;
    } else {
      before = value;
    }
    column = column->Next;
  }
}
