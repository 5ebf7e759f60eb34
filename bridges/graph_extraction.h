// Walking the filtered graph of the boolean engine into the contours of a
// CONTOUR_LAYER: chains of lines of one level, closed or open, each written
// with its turning.
#pragma once

#include <cstdint>
#include <deque>

#include "kelvor2d_export.h"
#include "layer/contour.h"
#include "layer/contour_layer.h"
#include "sibling/boolean/boolean.h"

// The source of a walk: the graph of one engine.
struct KELVOR2D_API M2dGraphBorderExtractSource2dGraph {
  M2dBoolean* engine;  // the engine whose graph is walked; not owned

  // First node of the line list, null when the graph has no lines.
  DLIST_ELEMENT<M2dGraphLine>* First() const { return engine->lines->first; }
};

// The sink of a walk: appends contours to a layer.
struct KELVOR2D_API M2dGraphExtractContourLayer {
  CONTOUR_LAYER* layer;  // receives the contours; not owned
  CONTOUR* current;      // contour being written, null before the first

  // LEEG_LAAG on the layer; current becomes null.
  void Empty();
  // A fresh contour with room for `numPoints` points and NumPoints 0, linked
  // behind current (or first); the layer's extents are not touched.
  void BeginContour(int32_t numPoints, bool closed);
  // Stores (x, y) at index NumPoints of the current contour.
  void AddPoint(int32_t x, int32_t y);
  // Stores 1 or 0 in Outer and RightHanded of the current contour.
  void SetTurning(bool clockwise);
};

// The walker: follows FindNextSegment and FindPreviousSegment from every
// unmarked line of the wanted level and hands each chain to the sink.
template <class Source, class Sink>
class M2dGraphBorderConvert {
 public:
  Source* source;                                  // not owned
  Sink* sink;                                      // not owned
  bool closed = false;                             // whether the chain in hand closes
  std::deque<DLIST_ELEMENT<M2dGraphLine>*> chain;  // lines of the chain in hand, in walking order

  // Extract's level that stands for the level of the graph's first line.
  static constexpr int16_t kLevelOfFirstLine = 32767;

  M2dGraphBorderConvert(Source* s, Sink* k) : source(s), sink(k) {}
  virtual ~M2dGraphBorderConvert() {}

  // level kLevelOfFirstLine: the level of the first line. keepOpen: write
  // chains that do not close as open contours (else drop them). segmentFlag
  // goes to the segment finders. clearTarget: empty the sink first.
  virtual void Extract(int16_t level, bool keepOpen, bool segmentFlag, bool clearTarget);
  // Called once per emitted chain, before its contour is begun.
  virtual void OnChainComplete() {}

 private:
  static constexpr uint8_t kMarks = 0x07;
  static bool IsTaken(const DLIST_ELEMENT<M2dGraphLine>* n) { return (n->line.status & kMarks) != 0; }
  static void Mark(DLIST_ELEMENT<M2dGraphLine>* n) {
    n->line.status = static_cast<uint8_t>((n->line.status & ~kMarks) | 1);
  }
  void WalkForward(DLIST_ELEMENT<M2dGraphLine>* start, bool segmentFlag);
  void WalkBackward(DLIST_ELEMENT<M2dGraphLine>* start, bool segmentFlag);
  void Emit();
};

// Empties `layer` and writes into it every chain of the level of the graph's
// first line, open chains included.
KELVOR2D_API void ExtractContourLayer(M2dBoolean* engine, CONTOUR_LAYER& layer);

namespace kelvor2d_detail {
// Exact coordinate of a point record: the fraction first, the whole part added.
inline double ExactOf(int32_t whole, uint32_t numerator, uint32_t denominator) {
  return static_cast<double>(numerator) / static_cast<double>(denominator) + static_cast<double>(whole);
}
}  // namespace kelvor2d_detail

template <class Source, class Sink>
void M2dGraphBorderConvert<Source, Sink>::Extract(int16_t level, bool keepOpen, bool segmentFlag,
                                                  bool clearTarget) {
  if (clearTarget)
    sink->Empty();
  DLIST_ELEMENT<M2dGraphLine>* first = source->First();
  if (first == nullptr)
    return;
  if (level == kLevelOfFirstLine)
    level = first->line.level;
  for (DLIST_ELEMENT<M2dGraphLine>* n = first; n != nullptr; n = n->next) {
    n->line.status = static_cast<uint8_t>(n->line.status & ~kMarks);
  }
  for (DLIST_ELEMENT<M2dGraphLine>* start = first; start != nullptr; start = start->next) {
    if (IsTaken(start) || start->line.level != level)
      continue;
    chain.clear();
    closed = false;
    chain.push_back(start);
    Mark(start);
    WalkForward(start, segmentFlag);
    if (!closed)
      WalkBackward(start, segmentFlag);
    if (!closed && !keepOpen)
      continue;
    Emit();
  }
}

template <class Source, class Sink>
void M2dGraphBorderConvert<Source, Sink>::WalkForward(DLIST_ELEMENT<M2dGraphLine>* start, bool segmentFlag) {
  for (DLIST_ELEMENT<M2dGraphLine>* current = start;;) {
    DLIST_ELEMENT<M2dGraphLine>* next = current->line.FindNextSegment(segmentFlag);
    if (next == nullptr) {
      closed = chain.front()->line.from == chain.back()->line.to;
      return;
    }
    if (IsTaken(next)) {
      closed = next == start;
      return;
    }
    Mark(next);
    chain.push_back(next);
    current = next;
  }
}

template <class Source, class Sink>
void M2dGraphBorderConvert<Source, Sink>::WalkBackward(DLIST_ELEMENT<M2dGraphLine>* start, bool segmentFlag) {
  for (DLIST_ELEMENT<M2dGraphLine>* current = start;;) {
    DLIST_ELEMENT<M2dGraphLine>* previous = current->line.FindPreviousSegment(segmentFlag);
    if (previous == nullptr || IsTaken(previous))
      return;
    Mark(previous);
    chain.push_front(previous);
    current = previous;
  }
}

template <class Source, class Sink>
void M2dGraphBorderConvert<Source, Sink>::Emit() {
  OnChainComplete();
  const int32_t size = static_cast<int32_t>(chain.size());
  sink->BeginContour(closed ? size : size + 1, closed);
  double sum = 0.0;
  for (const DLIST_ELEMENT<M2dGraphLine>* n : chain) {
    const M2dGraphPoint* from = n->line.from;
    const M2dGraphPoint* to = n->line.to;
    const double dx = kelvor2d_detail::ExactOf(to->x, to->xNumerator, to->denominator) -
                      kelvor2d_detail::ExactOf(from->x, from->xNumerator, from->denominator);
    const double sy = kelvor2d_detail::ExactOf(to->y, to->yNumerator, to->denominator) +
                      kelvor2d_detail::ExactOf(from->y, from->yNumerator, from->denominator);
    sum += dx * sy * 0.5;
    sink->AddPoint(from->x, from->y);
  }
  if (!closed)
    sink->AddPoint(chain.back()->line.to->x, chain.back()->line.to->y);
  sink->SetTurning(sum > 0.0);
}
