// Helpers for tests of scan tables: build a table from columns of values,
// read it back, check the chain's invariants, and scan-convert small layers.
// Header-only.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "layer/contour_layer.h"
#include "layer/number_lists.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "support/layer_builders.h"

namespace testing_support {

// One column as (position, crossings in list order).
using Column = std::pair<int32_t, std::vector<int32_t>>;
using Columns = std::vector<Column>;

// Adds the columns in the given order, appending each value as it stands.
inline void FillTable(TABEL& table, const Columns& columns) {
  for (const Column& c : columns) {
    VOEG_KOLOM_IN_TABEL(&table, c.first);
    TABEL* column = table.Next;
    while (column->Position < c.first)
      column = column->Next;
    for (int32_t v : c.second)
      VOEG_ACHTER_L_LIJST(column->List, v);
  }
}

inline std::vector<int32_t> ValuesOf(const L_LIST* list) {
  std::vector<int32_t> values;
  if (list == nullptr)
    return values;
  for (const L_LIST* e = list->Next; e != nullptr; e = e->Next)
    values.push_back(e->Value);
  return values;
}

// The real columns of a table, in chain order.
inline Columns ColumnsOf(const TABEL& table) {
  Columns columns;
  if (table.Next == nullptr)
    return columns;
  for (const TABEL* c = table.Next; c->Next != nullptr; c = c->Next)
    columns.push_back({c->Position, ValuesOf(c->List)});
  return columns;
}

inline std::string Describe(const Columns& columns) {
  std::ostringstream out;
  for (const Column& c : columns) {
    out << c.first << ":{";
    for (size_t i = 0; i < c.second.size(); ++i)
      out << (i ? "," : "") << c.second[i];
    out << "} ";
  }
  return out.str();
}

// The columns written as Describe writes them, e.g. "0:{1,5} 10:{}".
inline Columns ParseColumns(const std::string& text) {
  Columns columns;
  std::istringstream in(text);
  for (std::string token; in >> token;) {
    const size_t colon = token.find(':');
    Column c{std::stoi(token.substr(0, colon)), {}};
    std::istringstream values(token.substr(colon + 2, token.size() - colon - 3));
    for (std::string v; std::getline(values, v, ',');)
      c.second.push_back(std::stoi(v));
    columns.push_back(c);
  }
  return columns;
}

// Empty string when the chain holds the invariants of a table: sentinels at
// both ends, links both ways, root count and Next, sorted positions, and list
// counts that match their elements; otherwise what is wrong.
inline std::string CheckTable(const TABEL& table) {
  if (table.Next == nullptr)
    return table.Position == 0 ? "" : "empty chain with a count";
  const TABEL* head = table.Next->Prev;
  if (head == nullptr || head->Prev != nullptr || head->Position != INT32_MIN)
    return "bad head sentinel";
  int32_t count = 0;
  const TABEL* c = head->Next;
  for (; c->Next != nullptr; c = c->Next) {
    ++count;
    if (c->Next->Prev != c || c->Prev->Next != c)
      return "broken links at " + std::to_string(c->Position);
    if (c->Prev != head && c->Prev->Position > c->Position)
      return "unsorted at " + std::to_string(c->Position);
    if (c->List != nullptr && static_cast<size_t>(c->List->Value) != ValuesOf(c->List).size()) {
      return "count mismatch at " + std::to_string(c->Position);
    }
  }
  if (c->Position != INT32_MAX)
    return "bad tail sentinel";
  if (count != table.Position)
    return "root count " + std::to_string(table.Position) + " for " + std::to_string(count);
  return "";
}

// A table root that releases its columns at the end of a test.
struct ScopedTable {
  TABEL root;
  ScopedTable() = default;
  explicit ScopedTable(const Columns& columns) { FillTable(root, columns); }
  explicit ScopedTable(const char* text) { FillTable(root, ParseColumns(text)); }
  ~ScopedTable() { LEEG_TABEL(&root); }
  ScopedTable(const ScopedTable&) = delete;
  ScopedTable& operator=(const ScopedTable&) = delete;
};

// A layer of closed (or `closed`) rings that releases them at the end of a test.
struct ScopedLayer {
  CONTOUR_LAYER layer;
  ScopedLayer(std::initializer_list<std::vector<MMPoint2d<long>>> rings, unsigned char closed = 1) {
    for (const auto& r : rings)
      layer.AddContourAtEnd(NewContour(r, closed));
    layer.BEPAAL_EXTREMA();
  }
  ~ScopedLayer() { layer.LEEG_LAAG(); }
};

// Hatch parameters with the same distance and shift along both axes.
inline MSliceFileParameters Grid(int32_t distance, int32_t shift) {
  MSliceFileParameters p;
  p.XHatchDistance = p.YHatchDistance = distance;
  p.XHatchShift = p.YHatchShift = shift;
  return p;
}

// The X (or Y) table of a layer as columns, after checking its invariants.
inline Columns Scan(CONTOUR_LAYER& layer, MSliceFileParameters p, bool alongX = true,
                    L_LIST* extra = nullptr) {
  ScopedTable t;
  if (alongX)
    layer.X_ARCEER_LAAG(&t.root, p, extra);
  else
    layer.Y_ARCEER_LAAG(&t.root, p, extra);
  EXPECT_EQ(CheckTable(t.root), "");
  return ColumnsOf(t.root);
}

}  // namespace testing_support
