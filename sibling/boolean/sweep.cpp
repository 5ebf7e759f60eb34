// The winding sweep: edges that meet only at their ends are swept in x; the
// edge just below an edge's left end tells the winding number under it.
#include <algorithm>
#include <cmath>
#include <set>

#include "sibling/boolean/sweep.h"

namespace kelvor_boolean {

namespace {

constexpr uint32_t kNoRank = 0xffffffffu;

// An edge as the sweep sees it: oriented left to right (or upward when
// vertical), with the multiplicity in that orientation.
struct SweepEdge {
  const M2dGraphPoint* left;  // left (or lower) end
  double leftX;               // its position rounded to doubles, for the filter
  double leftY;
  uint32_t leftRank;   // event rank of the left (lower) end
  uint32_t rightRank;  // event rank of the right (upper) end
  int64_t anchorX;     // a grid point of the carrier line
  int64_t anchorY;
  int64_t directionX;  // > 0, or 0 for a vertical edge (then directionY > 0)
  int64_t directionY;
  int32_t multiplicity;  // net fed lines in this orientation
  int32_t windingBelow;  // right of the sweep orientation: below (vertical: +x side)
  int32_t windingAbove;  // left of the sweep orientation: above (vertical: -x side)
};

struct PointProbe {
  const M2dGraphPoint* point;
  double x;
  double y;
};

// Side of p relative to the edge's line: +1 above (left of its sense), -1
// below, 0 on it. A floating-point filter decides clear cases; the exact
// predicate decides the rest.
int SideOf(const SweepEdge& e, const M2dGraphPoint* p, double px, double py) {
  const double dx = static_cast<double>(e.directionX), dy = static_cast<double>(e.directionY);
  const double u = py - static_cast<double>(e.anchorY), v = px - static_cast<double>(e.anchorX);
  const double a = dx * u, b = dy * v;
  const double det = a - b;
  // Rounding of the point (relative 2^-52 of coordinates below 2^32) and of
  // the products stays far below this bound.
  const double bound = 1e-9 * (std::fabs(a) + std::fabs(b)) + 1e-3 * (std::fabs(dx) + std::fabs(dy));
  if (det > bound)
    return 1;
  if (det < -bound)
    return -1;
  return OrientationOfExact(e.anchorX, e.anchorY, e.directionX, e.directionY, p->exact);
}

// Order of the status: bottom to top at the sweep position. Edges in the
// status never cross, so the order holds while both are in it.
struct BelowOrder {
  using is_transparent = void;
  const std::vector<SweepEdge>* edges;

  bool operator()(uint32_t s, uint32_t t) const {
    if (s == t)
      return false;
    const SweepEdge& a = (*edges)[s];
    const SweepEdge& b = (*edges)[t];
    if (a.leftRank >= b.leftRank) {
      const int side = SideOf(b, a.left, a.leftX, a.leftY);
      if (side != 0)
        return side < 0;
    } else {
      const int side = SideOf(a, b.left, b.leftX, b.leftY);
      if (side != 0)
        return side > 0;
    }
    const Int128 turn =
        static_cast<Int128>(a.directionX) * b.directionY - static_cast<Int128>(a.directionY) * b.directionX;
    if (turn != 0)
      return turn > 0;
    return s < t;
  }
  bool operator()(const PointProbe& p, uint32_t t) const {
    return SideOf((*edges)[t], p.point, p.x, p.y) < 0;
  }
  bool operator()(uint32_t t, const PointProbe& p) const {
    return SideOf((*edges)[t], p.point, p.x, p.y) > 0;
  }
};

using Status = std::set<uint32_t, BelowOrder>;

// A point with its sort keys at hand, so that ranking reads no point.
struct RankedPoint {
  int32_t x;
  int32_t y;
  uint64_t xKey;
  uint64_t yKey;
  const M2dGraphPoint* point;
};

// Ranks every end point in (x, y) order; returns the points by rank.
std::vector<const M2dGraphPoint*> RankPoints(const std::vector<Edge>& edges, std::vector<uint32_t>& rankOf) {
  std::vector<RankedPoint> ranked;
  for (const Edge& e : edges) {
    for (const M2dGraphPoint* p : {e.lo, e.hi}) {
      if (rankOf[p->index] == kNoRank) {
        rankOf[p->index] = 0;
        ranked.push_back({p->x, p->y, p->xKey, p->yKey, p});
      }
    }
  }
  std::sort(ranked.begin(), ranked.end(), [](const RankedPoint& p, const RankedPoint& q) {
    if (p.x != q.x)
      return p.x < q.x;
    if (p.xKey != q.xKey)
      return p.xKey < q.xKey;
    if (p.point->IsInteger() && q.point->IsInteger())
      return p.y < q.y;
    return ComparePointXY(p.point, q.point) < 0;
  });
  std::vector<const M2dGraphPoint*> points(ranked.size());
  for (uint32_t r = 0; r < ranked.size(); ++r) {
    points[r] = ranked[r].point;
    rankOf[points[r]->index] = r;
  }
  return points;
}

SweepEdge MakeSweepEdge(const Edge& e, const std::vector<uint32_t>& rankOf) {
  const bool forward = e.directionX > 0 || (e.directionX == 0 && e.directionY > 0);
  const M2dGraphPoint* left = forward ? e.lo : e.hi;
  const M2dGraphPoint* right = forward ? e.hi : e.lo;
  SweepEdge s{};
  s.left = left;
  s.leftX = left->nearX;
  s.leftY = left->nearY;
  s.leftRank = rankOf[left->index];
  s.rightRank = rankOf[right->index];
  s.anchorX = e.anchorX;
  s.anchorY = e.anchorY;
  s.directionX = forward ? e.directionX : -e.directionX;
  s.directionY = forward ? e.directionY : -e.directionY;
  s.multiplicity = forward ? e.multiplicity : -e.multiplicity;
  return s;
}

// Edge indices grouped by a rank (counting sort).
struct Buckets {
  std::vector<uint32_t> start;
  std::vector<uint32_t> items;
};

template <class Key>
Buckets GroupBy(size_t numRanks, const std::vector<SweepEdge>& edges, Key key) {
  Buckets b;
  b.start.assign(numRanks + 1, 0);
  for (const SweepEdge& e : edges) {
    const uint32_t k = key(e);
    if (k != kNoRank)
      ++b.start[k + 1];
  }
  for (size_t r = 1; r < b.start.size(); ++r)
    b.start[r] += b.start[r - 1];
  std::vector<uint32_t> fill(b.start.begin(), b.start.end() - 1);
  b.items.resize(b.start.back());
  for (uint32_t i = 0; i < edges.size(); ++i) {
    const uint32_t k = key(edges[i]);
    if (k != kNoRank)
      b.items[fill[k]++] = i;
  }
  return b;
}

// A vertical edge takes the winding left of it from the highest edge that
// its lower end lies on or above.
void ClassifyVertical(Status& status, std::vector<SweepEdge>& edges, uint32_t v) {
  SweepEdge& e = edges[v];
  auto it = status.upper_bound(PointProbe{e.left, e.leftX, e.leftY});
  // Going up, the right side is +x: stored as "below" so that for every edge
  // the right side of its sweep orientation is windingBelow.
  e.windingAbove = it == status.begin() ? 0 : edges[*std::prev(it)].windingAbove;
  e.windingBelow = e.windingAbove + e.multiplicity;
}

void InsertStarting(Status& status, std::vector<SweepEdge>& edges, std::vector<uint32_t>& starting,
                    std::vector<Status::iterator>& where) {
  std::sort(starting.begin(), starting.end(), [&edges](uint32_t s, uint32_t t) {
    const SweepEdge& a = edges[s];
    const SweepEdge& b = edges[t];
    return static_cast<Int128>(a.directionX) * b.directionY -
               static_cast<Int128>(a.directionY) * b.directionX >
           0;
  });
  for (uint32_t s : starting) {
    auto it = status.insert(s).first;
    where[s] = it;
    SweepEdge& e = edges[s];
    e.windingBelow = it == status.begin() ? 0 : edges[*std::prev(it)].windingAbove;
    e.windingAbove = e.windingBelow - e.multiplicity;
  }
}

// Vertical edges at one x take the winding left of them before any edge that
// ends at that x leaves the status.
void ClassifyVerticalsAtX(Status& status, std::vector<SweepEdge>& edges, const Buckets& verticals,
                          const std::vector<const M2dGraphPoint*>& points, size_t first) {
  for (size_t r = first; r < points.size() && ComparePointX(points[r], points[first]) == 0; ++r) {
    for (uint32_t k = verticals.start[r]; k < verticals.start[r + 1]; ++k) {
      ClassifyVertical(status, edges, verticals.items[k]);
    }
  }
}

void Sweep(std::vector<SweepEdge>& edges, const std::vector<const M2dGraphPoint*>& points) {
  const size_t numRanks = points.size();
  const Buckets starts =
      GroupBy(numRanks, edges, [](const SweepEdge& e) { return e.directionX != 0 ? e.leftRank : kNoRank; });
  const Buckets ends =
      GroupBy(numRanks, edges, [](const SweepEdge& e) { return e.directionX != 0 ? e.rightRank : kNoRank; });
  const Buckets verticals =
      GroupBy(numRanks, edges, [](const SweepEdge& e) { return e.directionX == 0 ? e.leftRank : kNoRank; });
  Status status(BelowOrder{&edges});
  std::vector<Status::iterator> where(edges.size(), status.end());
  std::vector<uint32_t> starting;
  for (size_t r = 0; r < numRanks; ++r) {
    if (r == 0 || ComparePointX(points[r - 1], points[r]) != 0) {
      ClassifyVerticalsAtX(status, edges, verticals, points, r);
    }
    for (uint32_t k = ends.start[r]; k < ends.start[r + 1]; ++k)
      status.erase(where[ends.items[k]]);
    starting.assign(starts.items.begin() + starts.start[r], starts.items.begin() + starts.start[r + 1]);
    InsertStarting(status, edges, starting, where);
  }
}

}  // namespace

void ComputeWindings(std::vector<Edge>& edges, uint32_t numPoints) {
  std::vector<uint32_t> rankOf(numPoints, kNoRank);
  const std::vector<const M2dGraphPoint*> points = RankPoints(edges, rankOf);
  std::vector<SweepEdge> sweepEdges;
  sweepEdges.reserve(edges.size());
  for (const Edge& e : edges)
    sweepEdges.push_back(MakeSweepEdge(e, rankOf));
  Sweep(sweepEdges, points);
  for (size_t i = 0; i < edges.size(); ++i) {
    const SweepEdge& s = sweepEdges[i];
    const bool forward = s.multiplicity == edges[i].multiplicity;
    // Left to right (or upward), the right side is below (or right of) the edge.
    edges[i].windingRight = forward ? s.windingBelow : s.windingAbove;
    edges[i].windingLeft = forward ? s.windingAbove : s.windingBelow;
  }
}

}  // namespace kelvor_boolean
