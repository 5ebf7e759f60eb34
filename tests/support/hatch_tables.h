// Helpers for hatching tests: scan tables written as literals, read back as
// plain values, and the blocks of a vector layer as coordinate lists.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "layer/number_lists.h"
#include "layer/vector_layer.h"
#include "scan/tabel.h"

namespace testing_support {

// The coordinates of one block, and of all blocks of a layer.
using Coordinates = std::vector<int32_t>;
using Blocks = std::vector<Coordinates>;

// One column of a literal table: its position and its crossings in list order.
struct TableColumn {
  int32_t position;
  std::vector<int32_t> crossings;
  bool operator==(const TableColumn& o) const { return position == o.position && crossings == o.crossings; }
};
using Columns = std::vector<TableColumn>;

inline std::ostream& operator<<(std::ostream& out, const TableColumn& c) {
  out << c.position << ":(";
  for (int32_t v : c.crossings)
    out << " " << v;
  return out << " )";
}

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

// A table root that frees its columns when it goes out of scope.
class ScopedTable {
 public:
  // Columns at increasing, distinct positions; crossings appended as given,
  // so odd or unsorted lists can be written too.
  explicit ScopedTable(const Columns& columns = {}) {
    for (const TableColumn& c : columns)
      VOEG_KOLOM_IN_TABEL(&root, c.position);
    TABEL* column = root.Next;
    for (const TableColumn& c : columns) {
      for (int32_t v : c.crossings)
        VOEG_ACHTER_L_LIJST(column->List, v);
      column = column->Next;
    }
  }
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

// The real columns of a table with the elements their chains hold (not the
// counts, which consuming walks leave out of date).
inline Columns ColumnsOf(const TABEL& root) {
  Columns out;
  for (const TABEL* c = root.Next; c != nullptr && c->Next != nullptr; c = c->Next) {
    TableColumn column{c->Position, {}};
    for (const L_LIST* e = c->List != nullptr ? c->List->Next : nullptr; e != nullptr; e = e->Next)
      column.crossings.push_back(e->Value);
    out.push_back(column);
  }
  return out;
}

// Every crossing left in a table, column after column.
inline std::vector<int32_t> CrossingsOf(const TABEL& root) {
  std::vector<int32_t> out;
  for (const TableColumn& c : ColumnsOf(root))
    out.insert(out.end(), c.crossings.begin(), c.crossings.end());
  return out;
}

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

}  // namespace testing_support
