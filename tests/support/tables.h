// Helpers for tests of scan tables and of what is made from them: tables
// written as text, read back and checked for the chain's invariants, small
// layers scan-converted, and the blocks of a vector layer as coordinate lists.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "layer/contour_layer.h"
#include "layer/number_lists.h"
#include "layer/vector_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "support/layer_builders.h"

namespace testing_support {

// The coordinates of one block, and of all blocks of a layer.
using Coordinates = std::vector<int32_t>;
using Blocks = std::vector<Coordinates>;

// One column of a table: its position and its crossings in list order.
struct TableColumn {
  int32_t position;
  std::vector<int32_t> crossings;
  bool operator==(const TableColumn& o) const { return position == o.position && crossings == o.crossings; }
};
using Columns = std::vector<TableColumn>;

// Number lists written as text: numbers apart by spaces, lists by ';', a ':'
// reads as a space ("0 0 0 10; 3 14 3 0"); "" is no list at all.
inline Blocks Lists(std::string text) {
  std::replace(text.begin(), text.end(), ':', ' ');
  Blocks out;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, ';');) {
    std::istringstream numbers(part);
    out.emplace_back(std::istream_iterator<int32_t>(numbers), std::istream_iterator<int32_t>());
  }
  return out;
}

// A table written as text, "position: crossings" per column ("0: 0 10; 5:").
inline Columns Table(const std::string& text) {
  Columns out;
  for (const Coordinates& list : Lists(text))
    out.push_back({list[0], Coordinates(list.begin() + 1, list.end())});
  return out;
}

// The columns written as Table reads them.
inline std::string Describe(const Columns& columns) {
  std::ostringstream out;
  for (size_t i = 0; i < columns.size(); ++i) {
    out << (i ? "; " : "") << columns[i].position << ":";
    for (int32_t v : columns[i].crossings)
      out << " " << v;
  }
  return out.str();
}

inline std::ostream& operator<<(std::ostream& out, const TableColumn& c) {
  return out << Describe({c});
}

inline std::vector<int32_t> ValuesOf(const L_LIST* list) {
  std::vector<int32_t> values;
  for (const L_LIST* e = list != nullptr ? list->Next : nullptr; e != nullptr; e = e->Next)
    values.push_back(e->Value);
  return values;
}

// The real columns of a table with the elements their chains hold (not the
// counts, which consuming walks leave out of date).
inline Columns ColumnsOf(const TABEL& root) {
  Columns out;
  for (const TABEL* c = root.Next; c != nullptr && c->Next != nullptr; c = c->Next)
    out.push_back({c->Position, ValuesOf(c->List)});
  return out;
}

// Every crossing left in a table, column after column.
inline std::vector<int32_t> CrossingsOf(const TABEL& root) {
  std::vector<int32_t> out;
  for (const TableColumn& c : ColumnsOf(root))
    out.insert(out.end(), c.crossings.begin(), c.crossings.end());
  return out;
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

// A table root that frees its columns when it goes out of scope.
class ScopedTable {
 public:
  // Columns added in the given order, crossings appended as given, so odd or
  // unsorted lists can be written too.
  explicit ScopedTable(const Columns& columns = {}) {
    for (const TableColumn& c : columns) {
      VOEG_KOLOM_IN_TABEL(&root, c.position);
      TABEL* column = root.Next;
      while (column->Position < c.position)
        column = column->Next;
      for (int32_t v : c.crossings)
        VOEG_ACHTER_L_LIJST(column->List, v);
    }
  }
  explicit ScopedTable(const char* text) : ScopedTable(Table(text)) {}
  ~ScopedTable() { LEEG_TABEL(&root); }
  ScopedTable(const ScopedTable&) = delete;
  ScopedTable& operator=(const ScopedTable&) = delete;

  // Frees the list of the real column at index i (0 is the first) and leaves
  // a null List there; a negative index does nothing.
  void DropList(int i) {
    if (i < 0)
      return;
    TABEL* c = root.Next;
    while (i-- > 0)
      c = c->Next;
    LEEG_L_LIJST(c->List);
    free(c->List);
    c->List = nullptr;
  }

  TABEL root;
};

// The coordinates of every block of a layer, in chain order.
inline Blocks BlocksOf(const VECTOR_LAYER& layer) {
  Blocks out;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock)
    out.emplace_back(b->Block, b->Block + b->Size);
  return out;
}

// Tables that tell walks apart: X columns at x = 1000 and 1005, Y columns at
// y = 2000 and 2005, one run (0, 10) each.
inline const Columns kSignatureXTable = {{1000, {0, 10}}, {1005, {0, 10}}};
inline const Columns kSignatureYTable = {{2000, {0, 10}}, {2005, {0, 10}}};

// For each block from `first` on, made from the signature tables: "X0 " or
// "Y0 " when its walk began at the low end, "X1 " or "Y1 " at the high end.
inline std::string WalkSignature(const VECTOR_LAYER& layer, int first) {
  std::string out;
  int i = 0;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock, ++i) {
    if (i < first)
      continue;
    const bool isX = b->Block[0] == 1000 || b->Block[0] == 1005;
    const bool fromHigh = isX ? b->Block[0] == 1005 : b->Block[1] == 2005;
    out += std::string(isX ? "X" : "Y") + (fromHigh ? "1 " : "0 ");
  }
  return out;
}

// A vector layer that is cleared when it goes out of scope.
struct ScopedVectorLayer : VECTOR_LAYER {
  ~ScopedVectorLayer() { Clear(); }
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
