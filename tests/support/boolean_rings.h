// Helpers for tests of the boolean engine: feed point lists as loops, walk
// the filtered graph into rings, and measure them with the exact points.
#pragma once

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "layer/values.h"
#include "sibling/boolean/boolean.h"

namespace testing_support {

using Loop = std::vector<MMPoint2d<long>>;

// Feeds each loop as closed lines in its stored order, one shell per loop.
inline void FeedLoops(M2dBoolean& engine, const std::vector<Loop>& loops, bool reverse = false) {
  for (const Loop& loop : loops) {
    if (loop.empty())
      continue;
    M2dGraphPoint* previous = engine.AddPoint(loop[0].x, loop[0].y);
    for (size_t i = 1; i <= loop.size(); ++i) {
      const MMPoint2d<long>& p = loop[i % loop.size()];
      M2dGraphPoint* next = engine.AddPoint(p.x, p.y);
      if (reverse) {
        engine.AddLine(next, previous, false);
      } else {
        engine.AddLine(previous, next, false);
      }
      previous = next;
    }
    engine.AddShell(0, 0);
  }
}

// A ring of the result: its lines in walking order.
using Ring = std::vector<const M2dGraphLine*>;

// Follows FindNextSegment from every unmarked line; every line must end up in
// a closed ring (the engine leaves no open chain).
inline std::vector<Ring> WalkRings(M2dBoolean& engine, bool* allClosed) {
  std::vector<Ring> rings;
  *allClosed = true;
  for (M2dGraphLineNode* n = engine.lines->first; n != nullptr; n = n->next)
    n->line.status = 0;
  for (M2dGraphLineNode* start = engine.lines->first; start != nullptr; start = start->next) {
    if (start->line.status & 1)
      continue;
    Ring ring;
    M2dGraphLineNode* current = start;
    while (current != nullptr && !(current->line.status & 1)) {
      current->line.status |= 1;
      ring.push_back(&current->line);
      current = current->line.FindNextSegment(false);
    }
    if (current != start)
      *allClosed = false;
    rings.push_back(ring);
  }
  return rings;
}

inline double ExactX(const M2dGraphPoint* p) {
  const kelvor2d_detail::ExactCoordinates e = p->Exact();
  return kelvor2d_detail::ExactToDouble(e.x, e.xFraction, e.denominator);
}
inline double ExactY(const M2dGraphPoint* p) {
  const kelvor2d_detail::ExactCoordinates e = p->Exact();
  return kelvor2d_detail::ExactToDouble(e.y, e.yFraction, e.denominator);
}

// Signed area, positive for clockwise rings (y up).
inline double RingArea(const Ring& ring) {
  double sum = 0.0;
  for (const M2dGraphLine* l : ring)
    sum += (ExactX(l->to) - ExactX(l->from)) * (ExactY(l->to) + ExactY(l->from));
  return 0.5 * sum;
}

inline double TotalArea(const std::vector<Ring>& rings) {
  double sum = 0.0;
  for (const Ring& r : rings)
    sum += RingArea(r);
  return sum;
}

// True when no point object is visited twice by a ring.
inline bool RingIsSimple(const Ring& ring) {
  std::vector<const M2dGraphPoint*> seen;
  for (const M2dGraphLine* l : ring)
    seen.push_back(l->from);
  std::sort(seen.begin(), seen.end());
  return std::adjacent_find(seen.begin(), seen.end()) == seen.end();
}

inline std::string Describe(const std::vector<Loop>& loops) {
  std::ostringstream out;
  for (const Loop& loop : loops) {
    out << "{";
    for (const MMPoint2d<long>& p : loop)
      out << "(" << p.x << "," << p.y << ")";
    out << "} ";
  }
  return out.str();
}

}  // namespace testing_support
