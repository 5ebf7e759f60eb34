#include "sibling/boolean/border_functions.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kelvor2d_detail {

namespace {

using GridPoint = std::pair<int32_t, int32_t>;
using GridRing = std::vector<GridPoint>;

// Nearest grid coordinate of an exact coordinate (halves go up).
int32_t NearestOf(int32_t whole, UInt128 fraction, UInt128 denominator) {
  return fraction != 0 && fraction * 2 >= denominator ? whole + 1 : whole;
}

GridRing RoundedRing(M2dGraphLineNode* start) {
  GridRing ring;
  M2dGraphLineNode* n = start;
  do {
    const M2dGraphPoint* q = n->line.from;
    GridPoint p{q->x, q->y};
    if (!q->IsInteger()) {
      const ExactCoordinates& e = q->fraction->exact;
      p = {NearestOf(e.x, e.xFraction, e.denominator), NearestOf(e.y, e.yFraction, e.denominator)};
    }
    if (ring.empty() || ring.back() != p)
      ring.push_back(p);
    n = n->line.successor;
  } while (n != nullptr && n != start);
  while (ring.size() > 1 && ring.back() == ring.front())
    ring.pop_back();
  return ring;
}

double DoubleArea(const GridRing& ring) {
  double sum = 0.0;
  for (size_t i = 0; i < ring.size(); ++i) {
    const GridPoint& p = ring[i];
    const GridPoint& q = ring[(i + 1) % ring.size()];
    sum += (static_cast<double>(q.first) - p.first) * (static_cast<double>(q.second) + p.second);
  }
  return sum;
}

struct ClosedContour {
  M3dBorderContourLong* contour;
  GridRing points;
  int32_t minX, minY, maxX, maxY;
};

ClosedContour Collect(M3dBorderContourLong& c) {
  ClosedContour r{&c, {}, INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
  const M3dBorderPointLong* p = c.GetFirstPoint();
  for (uint32_t i = 0; i < c.GetNumPoints(); ++i, p = p->next) {
    r.points.emplace_back(p->x, p->y);
    r.minX = std::min(r.minX, p->x);
    r.minY = std::min(r.minY, p->y);
    r.maxX = std::max(r.maxX, p->x);
    r.maxY = std::max(r.maxY, p->y);
  }
  return r;
}

// Crossing-number test of p against the ring: +1 inside, -1 outside, 0 on it.
int SideOfRing(const GridRing& ring, const GridPoint& p) {
  bool inside = false;
  for (size_t i = 0; i < ring.size(); ++i) {
    const GridPoint& a = ring[i];
    const GridPoint& b = ring[(i + 1) % ring.size()];
    const int o = Orientation(a.first, a.second, b.first, b.second, p.first, p.second);
    if (o == 0 && std::min(a.first, b.first) <= p.first && p.first <= std::max(a.first, b.first) &&
        std::min(a.second, b.second) <= p.second && p.second <= std::max(a.second, b.second)) {
      return 0;
    }
    if ((a.second > p.second) != (b.second > p.second) && (b.second > a.second ? o > 0 : o < 0))
      inside = !inside;
  }
  return inside ? 1 : -1;
}

bool Contains(const ClosedContour& outer, const ClosedContour& inner) {
  if (inner.minX < outer.minX || inner.maxX > outer.maxX || inner.minY < outer.minY ||
      inner.maxY > outer.maxY) {
    return false;
  }
  for (const GridPoint& p : inner.points) {
    const int side = SideOfRing(outer.points, p);
    if (side != 0)
      return side > 0;
  }
  return false;
}

}  // namespace

void AppendRings(M2dBoolean& engine, M3dBorderLong& border) {
  uint32_t maxRing = 0;
  for (M2dGraphLineNode* n = engine.lines->first; n != nullptr; n = n->next) {
    maxRing = std::max(maxRing, n->line.ringNumber);
  }
  std::vector<char> done(static_cast<size_t>(maxRing) + 1, 0);
  for (M2dGraphLineNode* n = engine.lines->first; n != nullptr; n = n->next) {
    if (done[n->line.ringNumber])
      continue;
    done[n->line.ringNumber] = 1;
    const GridRing ring = RoundedRing(n);
    const double area = ring.size() >= 3 ? DoubleArea(ring) : 0.0;
    if (area == 0.0)
      continue;
    M3dBorderContourLong* contour = border.AddContourAtEnd();
    for (const GridPoint& p : ring)
      contour->InsertAtEnd(p.first, p.second, nullptr);
    contour->SetIsOuterContour(area > 0.0);
    contour->SetIsClosed(true);
  }
}

void FeedBorder(M2dBoolean& engine, const M3dBorderLong& border) {
  for (const M3dBorderContourLong& c : border) {
    const M3dBorderPointLong* first = c.GetFirstPoint();
    if (first == nullptr)
      continue;
    M2dGraphPoint* previous = engine.AddPoint(first->x, first->y);
    const M3dBorderPointLong* p = first;
    for (uint32_t i = 0; i < c.GetNumPoints(); ++i) {
      p = p->next;
      M2dGraphPoint* next = engine.AddPoint(p->x, p->y);
      engine.AddLine(previous, next, false);
      previous = next;
    }
    engine.AddShell(0, 0);
  }
}

}  // namespace kelvor2d_detail

bool AU::BooleanRemoveSelfIntersections(M3dBorderLong& border) {
  M2dBoolean engine;
  M3dBorderLong closed;
  for (const M3dBorderContourLong& c : border) {
    if (c.GetIsClosed())
      closed.AddContourAtEnd(c);
  }
  kelvor2d_detail::FeedBorder(engine, closed);
  engine.RemoveIntegerSelfIntersections();
  border.MakeEmpty();
  kelvor2d_detail::AppendRings(engine, border);
  return true;
}

bool AU::OrientBorder2D(M3dBorderLong& border, bool* inverted) {
  std::vector<kelvor2d_detail::ClosedContour> contours;
  for (M3dBorderContourLong& c : border) {
    if (c.GetIsClosed() && c.GetNumPoints() > 0)
      contours.push_back(kelvor2d_detail::Collect(c));
  }
  bool any = false;
  for (const kelvor2d_detail::ClosedContour& inner : contours) {
    int depth = 0;
    for (const kelvor2d_detail::ClosedContour& outer : contours) {
      if (&outer != &inner && kelvor2d_detail::Contains(outer, inner))
        ++depth;
    }
    const bool isOuter = depth % 2 == 0;
    const double area = inner.contour->SurfaceAreaWithSignXY();
    if ((isOuter && area < 0.0) || (!isOuter && area > 0.0)) {
      inner.contour->Invert();
      any = true;
    }
    inner.contour->SetIsOuterContour(isOuter);
  }
  if (inverted != nullptr)
    *inverted = any;
  return true;
}
