// Helpers for hatching tests: scan tables written as literals, read back as
// plain values, and the blocks of a vector layer as coordinate lists.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "layer/number_lists.h"
#include "layer/vector_layer.h"
#include "scan/tabel.h"

namespace testing_support {

// The coordinates of one block, and of all blocks of a layer.
using Coordinates = std::vector<int32_t>;
using Blocks = std::vector<Coordinates>;

// One column of a literal table: its position and its crossings in list order.
struct ColumnSpec {
  int32_t position;
  std::vector<int32_t> crossings;
};

inline bool operator==(const ColumnSpec& a, const ColumnSpec& b) {
  return a.position == b.position && a.crossings == b.crossings;
}

inline std::ostream& operator<<(std::ostream& out, const ColumnSpec& c) {
  out << c.position << ":(";
  for (size_t i = 0; i < c.crossings.size(); ++i)
    out << (i ? " " : "") << c.crossings[i];
  return out << ")";
}

// A table root that frees its columns when it goes out of scope.
class ScopedTable {
 public:
  ScopedTable() = default;
  // Columns at increasing, distinct positions; crossings appended as given,
  // so odd or unsorted lists can be written too.
  explicit ScopedTable(const std::vector<ColumnSpec>& columns) {
    for (const ColumnSpec& c : columns)
      VOEG_KOLOM_IN_TABEL(&root, c.position);
    TABEL* column = root.Next;
    for (const ColumnSpec& c : columns) {
      for (int32_t v : c.crossings)
        VOEG_ACHTER_L_LIJST(column->List, v);
      column = column->Next;
    }
  }
  ~ScopedTable() { LEEG_TABEL(&root); }
  ScopedTable(const ScopedTable&) = delete;
  ScopedTable& operator=(const ScopedTable&) = delete;

  // The real column at index i (0 is the first).
  TABEL* Column(int i) {
    TABEL* c = root.Next;
    while (i-- > 0)
      c = c->Next;
    return c;
  }

  TABEL root;
};

// The real columns of a table with the elements their chains hold (not the
// counts, which consuming walks leave out of date).
inline std::vector<ColumnSpec> ColumnsOf(const TABEL& root) {
  std::vector<ColumnSpec> out;
  for (const TABEL* c = root.Next; c != nullptr && c->Next != nullptr; c = c->Next) {
    ColumnSpec spec{c->Position, {}};
    if (c->List != nullptr) {
      for (const L_LIST* e = c->List->Next; e != nullptr; e = e->Next)
        spec.crossings.push_back(e->Value);
    }
    out.push_back(spec);
  }
  return out;
}

// Total number of crossings in columns read back from a table.
inline size_t CrossingsIn(const std::vector<ColumnSpec>& columns) {
  size_t n = 0;
  for (const ColumnSpec& c : columns)
    n += c.crossings.size();
  return n;
}

// Printable form of a table, for SCOPED_TRACE.
inline std::string Describe(const std::vector<ColumnSpec>& columns) {
  std::ostringstream out;
  for (const ColumnSpec& c : columns)
    out << c << " ";
  return out.str();
}

// The coordinates of every block of a layer, in chain order.
inline Blocks BlocksOf(const VECTOR_LAYER& layer) {
  Blocks out;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock) {
    out.emplace_back(b->Block, b->Block + b->Size);
  }
  return out;
}

// The types of every block of a layer, in chain order.
inline std::vector<uint16_t> TypesOf(const VECTOR_LAYER& layer) {
  std::vector<uint16_t> out;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock)
    out.push_back(b->Type);
  return out;
}

// Tables that tell walks apart: X columns at x = 1000 and 1005, Y columns at
// y = 2000 and 2005, one run (0, 10) each.
inline const std::vector<ColumnSpec> kSignatureXTable = {{1000, {0, 10}}, {1005, {0, 10}}};
inline const std::vector<ColumnSpec> kSignatureYTable = {{2000, {0, 10}}, {2005, {0, 10}}};

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
