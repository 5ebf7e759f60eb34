// The planar graph of the boolean engine: exact points, directed lines held in
// a doubly linked list, and the two segment-finding operations that let a
// walker follow the lines into contours.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kelvor2d_export.h"
#include "sibling/boolean/exact_arithmetic.h"

class M2dGraph;
struct M2dGraphLine;

// A node of a doubly linked list that holds its element by value.
template <class T>
struct DLIST_ELEMENT {
  DLIST_ELEMENT* next = nullptr;      // next node, null at the end
  DLIST_ELEMENT* previous = nullptr;  // previous node, null at the front
  T line;                             // the element itself
};

// The list of a graph's lines; the graph owns the storage of its nodes.
template <class T>
struct DLIST {
  DLIST_ELEMENT<T>* first = nullptr;  // first node, null when empty
  DLIST_ELEMENT<T>* last = nullptr;   // last node, null when empty
  uint32_t count = 0;                 // number of nodes

  // Links a node at the end and returns it.
  DLIST_ELEMENT<T>* Append(DLIST_ELEMENT<T>* node) {
    node->next = nullptr;
    node->previous = last;
    if (last != nullptr) {
      last->next = node;
    } else {
      first = node;
    }
    last = node;
    ++count;
    return node;
  }
  // Forgets every node; the storage of the nodes belongs to the graph.
  void Clear() {
    first = last = nullptr;
    count = 0;
  }
};

using M2dGraphLineNode = DLIST_ELEMENT<M2dGraphLine>;

// The exact position of a point off the grid, with keys that order it
// before exact tests.
struct M2dGraphFraction {
  kelvor2d_detail::ExactCoordinates exact;  // the exact position
  uint64_t xKey;                            // floor(2^62 * fraction of x)
  uint64_t yKey;                            // floor(2^62 * fraction of y)
};

// A point of the graph. The lines at one position all meet in one object. The exact
// position is (x + xNumerator / denominator, y + yNumerator / denominator);
// when the exact denominator of a crossing does not fit 32 bits, the three
// 32-bit words hold the nearest fraction over 2^31 and the exact value stays
// in `fraction`.
struct KELVOR2D_API M2dGraphPoint {
  const M2dGraphFraction* fraction = nullptr;  // exact position off the grid; null on the grid
  int32_t x = 0;                               // whole part of x (floor)
  int32_t y = 0;                               // whole part of y (floor)
  uint32_t xNumerator = 0;                     // fraction of x above the whole part
  uint32_t yNumerator = 0;                     // fraction of y above the whole part
  uint32_t denominator = 1;                    // common denominator of both fractions, >= 1
  uint32_t index = 0;                          // creation number within the graph
  M2dGraphLineNode* firstOut = nullptr;        // first line leaving this point
  M2dGraphLineNode* firstIn = nullptr;         // first line entering this point

  // True when the point lies on the grid.
  bool IsInteger() const { return fraction == nullptr; }
  // The exact position.
  kelvor2d_detail::ExactCoordinates Exact() const {
    return fraction != nullptr ? fraction->exact : kelvor2d_detail::ExactCoordinates{x, y, 0, 0, 1};
  }
  uint64_t XKey() const { return fraction != nullptr ? fraction->xKey : 0; }
  uint64_t YKey() const { return fraction != nullptr ? fraction->yKey : 0; }
  // The exact position rounded to doubles (for filters only).
  double NearX() const {
    return fraction != nullptr
               ? kelvor2d_detail::ExactToDouble(x, fraction->exact.xFraction, fraction->exact.denominator)
               : static_cast<double>(x);
  }
  double NearY() const {
    return fraction != nullptr
               ? kelvor2d_detail::ExactToDouble(y, fraction->exact.yFraction, fraction->exact.denominator)
               : static_cast<double>(y);
  }
};

namespace kelvor2d_detail {

// The exact position with its sort keys.
M2dGraphFraction FractionOf(const ExactCoordinates& position);

// Order of the exact x (or y) of two graph points: -1, 0 or +1. The whole
// parts and the 62-bit fraction keys decide almost always; exact fractions
// decide the rest.
inline int ComparePointX(const M2dGraphPoint* p, const M2dGraphPoint* q) {
  if (p->x != q->x)
    return p->x < q->x ? -1 : 1;
  const uint64_t pk = p->XKey(), qk = q->XKey();
  if (pk != qk)
    return pk < qk ? -1 : 1;
  return p == q || (p->IsInteger() && q->IsInteger()) ? 0 : CompareExactX(p->Exact(), q->Exact());
}
inline int ComparePointY(const M2dGraphPoint* p, const M2dGraphPoint* q) {
  if (p->y != q->y)
    return p->y < q->y ? -1 : 1;
  const uint64_t pk = p->YKey(), qk = q->YKey();
  if (pk != qk)
    return pk < qk ? -1 : 1;
  return p == q || (p->IsInteger() && q->IsInteger()) ? 0 : CompareExactY(p->Exact(), q->Exact());
}
// Lexicographic (x, y): the order of events of the sweep.
inline int ComparePointXY(const M2dGraphPoint* p, const M2dGraphPoint* q) {
  const int c = ComparePointX(p, q);
  return c != 0 ? c : ComparePointY(p, q);
}

}  // namespace kelvor2d_detail

// A directed line between two graph points.
struct KELVOR2D_API M2dGraphLine {
  int64_t directionX = 0;         // direction on the grid, a positive multiple of to - from
  M2dGraphPoint* from = nullptr;  // start of the directed line
  M2dGraphPoint* to = nullptr;    // end of the directed line
  int64_t directionY = 0;
  M2dGraphLineNode* nextOut = nullptr;      // next line leaving `from`
  M2dGraphLineNode* nextIn = nullptr;       // next line entering `to`
  M2dGraphLineNode* successor = nullptr;    // chosen continuation at `to`; null until the engine pairs lines
  M2dGraphLineNode* predecessor = nullptr;  // chosen line leading in at `from`; null until paired
  uint32_t ringNumber = 0;                  // ring of the pairing, 0 before it
  int16_t level = 0;                        // level given by the engine; 0 for every surviving line
  uint8_t flag = 0;                         // the caller's flag of AddLine (not interpreted)
  uint8_t status = 0;                       // bits 0-2: a walker's marks; bits 3-7 unused

  // The line that continues this one at `to`. After the engine's filtering it
  // is the pairing that makes every ring simple; on a graph that was never
  // filtered, the first line leaving `to` turning counter-clockwise from the
  // way back (the line bounding the same wedge of material). Null when no
  // line leaves `to`. The flag changes nothing.
  M2dGraphLineNode* FindNextSegment(bool flag) const;
  // The line that leads into this one at `from`, by the same pairing (or the
  // mirrored rule); null when none enters `from`. The flag changes nothing.
  M2dGraphLineNode* FindPreviousSegment(bool flag) const;
  // The two rules of an unpaired graph.
  M2dGraphLineNode* TurnToNextSegment() const;
  M2dGraphLineNode* TurnToPreviousSegment() const;
};

// A graph of points and directed lines. Owns both.
class KELVOR2D_API M2dGraph {
 public:
  DLIST<M2dGraphLine>* lines;  // the list object of the lines, never null

  M2dGraph();
  virtual ~M2dGraph();
  M2dGraph(const M2dGraph&) = delete;
  M2dGraph& operator=(const M2dGraph&) = delete;

  // Adds the directed line from -> to at the end of the list; flag is stored
  // and not interpreted. Both points must belong to this graph.
  DLIST_ELEMENT<M2dGraphLine>* AddLine(M2dGraphPoint* from, M2dGraphPoint* to, bool flag);
  // The point at the grid position (x, y), made on first use.
  M2dGraphPoint* GetGridPoint(int32_t x, int32_t y);
  // The point at an exact position, made on first use (points of MakeExactPoint
  // are not looked at).
  KELVOR2D_NO_EXPORT M2dGraphPoint* GetExactPoint(const kelvor2d_detail::ExactCoordinates& position);
  // A new point at an exact position off the grid (some fraction nonzero),
  // made without looking for one there: for a caller that keeps coincident
  // positions together itself. GetExactPoint does not find it.
  KELVOR2D_NO_EXPORT M2dGraphPoint* MakeExactPoint(const kelvor2d_detail::ExactCoordinates& position);
  // Hints that the point at the grid position (x, y) is asked for soon, so
  // that its lookup can start early; changes nothing.
  void PrefetchGridPoint(int32_t x, int32_t y) const;
  // Prepares room for `count` points in all, so that feeding them grows no
  // table; changes no result.
  void ReservePoints(uint32_t count);
  // Number of points made so far.
  uint32_t GetNumPoints() const { return m_numPoints; }
  // Deletes all lines and points.
  void ClearGraph();

 protected:
  // Deletes all lines and forgets the adjacency of every point.
  void ClearLines();
  // Appends a line of which one end (from or to) is still null, with its
  // grid direction given; CloseLine sets the other end.
  M2dGraphLineNode* AddOpenLine(M2dGraphPoint* from, M2dGraphPoint* to, int64_t directionX,
                                int64_t directionY);
  void CloseLine(M2dGraphLineNode* node, M2dGraphPoint* end);

 private:
  // A slot of the open-addressing lookup table: whole parts packed in 64 bits.
  // A slot of the open-addressing lookup table: the high half of the hash
  // of the point's whole parts, and the point's number plus one (0: free).
  struct Slot {
    uint32_t tag;
    uint32_t number;
  };
  uint32_t m_numPoints = 0;                         // points made, numbered in order of making
  std::vector<M2dGraphPoint*> m_blocks;             // owned blocks of points, in order of making
  uint32_t m_blockUsed = 0;                         // points used in the last block
  std::vector<M2dGraphFraction*> m_fractionBlocks;  // owned blocks of fractions (new[])
  uint32_t m_fractionBlockUsed = 0;                 // fractions used in the last block
  std::vector<Slot> m_slots;                        // lookup table, at most three quarters full
  std::vector<M2dGraphLineNode*> m_lineBlocks;      // owned blocks of line nodes (new[])
  size_t m_lineBlock = 0;                           // block that the next line node comes from
  uint32_t m_lineBlockUsed = 0;                     // nodes used in that block
  M2dGraphPoint* NewPoint(int32_t x, int32_t y);
  M2dGraphPoint* PointNumber(uint32_t index) const;
  // The slot holding the point at (x, y) that `same` accepts, or the free
  // slot where such a point goes.
  template <class Same>
  Slot& FindSlot(int32_t x, int32_t y, Same same);
  M2dGraphPoint* Enter(Slot& slot, M2dGraphPoint* p);
  KELVOR2D_NO_EXPORT const M2dGraphFraction* NewFraction(const kelvor2d_detail::ExactCoordinates& position);
  M2dGraphLineNode* NewLineNode();
  void GrowSlots(size_t size);
};
