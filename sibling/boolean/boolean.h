// The boolean engine: a graph fed with closed loops of directed lines, split
// at every crossing, classified by winding number and filtered down to the
// boundary of the wanted region.
#pragma once

#include <cstdint>
#include <vector>

#include "kelvor2d_export.h"
#include "sibling/boolean/graph.h"

// Winding convention: a loop fed clockwise (y up) counts +1 inside, a loop
// fed counter-clockwise -1. Degenerate input (lines of zero length, loops
// without area, spikes that run back on themselves) adds no area and leaves
// no line.
class KELVOR2D_API M2dBoolean : public M2dGraph {
 public:
  // `second` of SplitClassifyAndFilter that puts no upper bound on the winding.
  static constexpr int16_t kNoUpperBound = 32767;

  unsigned char options = 0;  // option byte of the caller; stored, selects nothing

  M2dBoolean() = default;
  ~M2dBoolean() override = default;

  // The graph point at the grid position (x, y); equal positions give the
  // same object.
  virtual M2dGraphPoint* AddPoint(int32_t x, int32_t y);
  // Closes the lines added since the previous call as one shell with that y
  // range. Shells are recorded only; the classification does not need them.
  void AddShell(int32_t lowestY, int32_t highestY);
  // Number of shells closed by AddShell.
  uint32_t GetNumShells() const { return static_cast<uint32_t>(m_shellRanges.size() / 2); }

  // Splits every line at every crossing, touch and overlap; keeps the lines
  // between a region of winding number w with first < w <= second (second
  // kNoUpperBound: no upper bound) and one without. Survivors are directed
  // with the region on their right (outer boundaries clockwise, holes
  // counter-clockwise), all with level 0; dropped lines leave the graph.
  void SplitClassifyAndFilter(int16_t first, int16_t second);
  // As SplitClassifyAndFilter, keeping the region of non-zero winding: every
  // area that some loop encloses stays, self-crossings are resolved.
  void RemoveIntegerSelfIntersections();
  // The least winding number of any region met by the last split (the
  // region far away counts, so it is at most 0); 0 before any split.
  int32_t LeastWinding() const { return m_leastWinding; }

 private:
  std::vector<int32_t> m_shellRanges;  // lowest and highest y of each shell
  uint32_t m_shellStart = 0;           // line count when the current shell began
  int32_t m_leastWinding = 0;          // least winding of any region met by the last split

  // Splits, computes windings and rebuilds the line list from the edges whose
  // two sides differ in `inside`.
  template <class Inside>
  void SplitAndKeep(Inside inside);
};
