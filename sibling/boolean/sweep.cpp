// The winding sweep: edges that meet only at their ends are swept in x; the
// edge just below an edge's left end tells the winding number under it.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <new>
#include <set>

#include "sibling/boolean/sweep.h"

namespace kelvor_boolean {

namespace {

constexpr uint32_t kNoRank = 0xffffffffu;

// An edge as the sweep sees it: oriented left to right (or upward when
// vertical), with the multiplicity in that orientation.
// The part that orders the status, held in the status itself so that
// walking it reads no edge.
struct SweepLine {
  const M2dGraphPoint* left;  // left (or lower) end
  double leftX;               // its position rounded to doubles, for the filter
  double leftY;
  uint32_t leftRank;  // event rank of the left (lower) end
  uint32_t number;    // the edge's number
  int64_t anchorX;    // a grid point of the carrier line
  int64_t anchorY;
  int64_t directionX;  // > 0, or 0 for a vertical edge (then directionY > 0)
  int64_t directionY;
};

struct SweepEdge {
  SweepLine line;
  uint32_t rightRank;    // event rank of the right (upper) end
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
int SideOf(const SweepLine& e, const M2dGraphPoint* p, double px, double py) {
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

  bool operator()(const SweepLine& a, const SweepLine& b) const {
    if (a.number == b.number)
      return false;
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
    return a.number < b.number;
  }
  bool operator()(const PointProbe& p, const SweepLine& t) const { return SideOf(t, p.point, p.x, p.y) < 0; }
  bool operator()(const SweepLine& t, const PointProbe& p) const { return SideOf(t, p.point, p.x, p.y) > 0; }
};

// Storage for the status nodes: one node size, carved from large blocks and
// recycled through a free list, so that inserting and erasing never calls
// the general heap.
class NodePool {
 public:
  explicit NodePool(size_t nodeSize)
      : m_nodeSize((std::max(nodeSize, sizeof(void*)) + alignof(std::max_align_t) - 1) /
                   alignof(std::max_align_t) * alignof(std::max_align_t)) {}
  NodePool(const NodePool&) = delete;
  NodePool& operator=(const NodePool&) = delete;

  void* Take() {
    if (m_free != nullptr) {
      void* node = m_free;
      m_free = *static_cast<void**>(node);
      return node;
    }
    if (m_blocks.empty() || m_used == kNodesPerBlock) {
      m_blocks.emplace_back(new std::max_align_t[m_nodeSize * kNodesPerBlock / sizeof(std::max_align_t)]);
      m_used = 0;
    }
    return reinterpret_cast<char*>(m_blocks.back().get()) + m_nodeSize * m_used++;
  }
  void Give(void* node) {
    *static_cast<void**>(node) = m_free;
    m_free = node;
  }
  size_t NodeSize() const { return m_nodeSize; }

 private:
  static constexpr size_t kNodesPerBlock = 1024;
  size_t m_nodeSize;
  std::vector<std::unique_ptr<std::max_align_t[]>> m_blocks;
  size_t m_used = 0;
  void* m_free = nullptr;
};

// The allocator of the status: single nodes from the pool, anything else
// from the heap.
template <class T>
struct PoolAllocator {
  using value_type = T;
  NodePool* pool;

  explicit PoolAllocator(NodePool* p) : pool(p) {}
  template <class U>
  PoolAllocator(const PoolAllocator<U>& other) : pool(other.pool) {}

  T* allocate(size_t n) {
    if (n == 1 && sizeof(T) <= pool->NodeSize())
      return static_cast<T*>(pool->Take());
    return static_cast<T*>(::operator new(n * sizeof(T)));
  }
  void deallocate(T* p, size_t n) {
    if (n == 1 && sizeof(T) <= pool->NodeSize()) {
      pool->Give(p);
    } else {
      ::operator delete(p);
    }
  }
  template <class U>
  bool operator==(const PoolAllocator<U>& other) const {
    return pool == other.pool;
  }
  template <class U>
  bool operator!=(const PoolAllocator<U>& other) const {
    return pool != other.pool;
  }
};

// Large enough for a node of the status tree (a tree node: colour, three
// links and the value).
constexpr size_t kStatusNodeSize = 4 * sizeof(void*) + sizeof(SweepLine);

using Status = std::set<SweepLine, BelowOrder, PoolAllocator<SweepLine>>;

// A point with its sort keys at hand, so that ranking reads no point.
struct RankedPoint {
  int32_t x;
  int32_t y;
  uint64_t xKey;
  uint64_t yKey;
  const M2dGraphPoint* point;
  uint32_t index;  // the point's index
  bool onGrid;     // the point has no fraction
};

bool RanksBefore(const RankedPoint& p, const RankedPoint& q) {
  if (p.x != q.x)
    return p.x < q.x;
  if (p.xKey != q.xKey)
    return p.xKey < q.xKey;
  if (p.onGrid && q.onGrid)
    return p.y < q.y;
  return ComparePointXY(p.point, q.point) < 0;
}

// True when q (ranked right after p) lies at a greater x.
bool StartsNewX(const RankedPoint& p, const RankedPoint& q) {
  if (p.x != q.x || p.xKey != q.xKey)
    return true;
  if (p.onGrid && q.onGrid)
    return false;
  return ComparePointX(p.point, q.point) != 0;
}

// Ranks every end point in (x, y) order; returns per rank 1 where the x
// differs from the previous rank's (and at rank 0), so that the sweep reads
// no point for it.
std::vector<uint8_t> RankPoints(const std::vector<Edge>& edges, std::vector<uint32_t>& rankOf) {
  std::vector<RankedPoint> ranked;
  ranked.reserve(edges.size() + 1);
  for (const Edge& e : edges) {
    for (const M2dGraphPoint* p : {e.lo, e.hi}) {
      if (rankOf[p->index] == kNoRank) {
        rankOf[p->index] = 0;
        ranked.push_back({p->x, p->y, p->xKey, p->yKey, p, p->index, p->IsInteger()});
      }
    }
  }
  std::sort(ranked.begin(), ranked.end(), RanksBefore);
  std::vector<uint8_t> startsNewX(ranked.size());
  for (uint32_t r = 0; r < ranked.size(); ++r) {
    startsNewX[r] = r == 0 || StartsNewX(ranked[r - 1], ranked[r]) ? 1 : 0;
    rankOf[ranked[r].index] = r;
  }
  return startsNewX;
}

SweepEdge MakeSweepEdge(const Edge& e, uint32_t number, const std::vector<uint32_t>& rankOf) {
  const bool forward = e.directionX > 0 || (e.directionX == 0 && e.directionY > 0);
  const M2dGraphPoint* left = forward ? e.lo : e.hi;
  const M2dGraphPoint* right = forward ? e.hi : e.lo;
  SweepEdge s{};
  s.line.left = left;
  s.line.leftX = left->nearX;
  s.line.leftY = left->nearY;
  s.line.leftRank = rankOf[left->index];
  s.line.number = number;
  s.rightRank = rankOf[right->index];
  s.line.anchorX = e.anchorX;
  s.line.anchorY = e.anchorY;
  s.line.directionX = forward ? e.directionX : -e.directionX;
  s.line.directionY = forward ? e.directionY : -e.directionY;
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
  auto it = status.upper_bound(PointProbe{e.line.left, e.line.leftX, e.line.leftY});
  // Going up, the right side is +x: stored as "below" so that for every edge
  // the right side of its sweep orientation is windingBelow.
  e.windingAbove = it == status.begin() ? 0 : edges[std::prev(it)->number].windingAbove;
  e.windingBelow = e.windingAbove + e.multiplicity;
}

// Inserts the edges starting at one point, bottom to top. `above`, when
// given, is the edge just above the point (where edges ending there were
// erased): the new edges go right below it, which spares the search.
void InsertStarting(Status& status, std::vector<SweepEdge>& edges, std::vector<uint32_t>& starting,
                    std::vector<Status::iterator>& where, const Status::iterator* above) {
  std::sort(starting.begin(), starting.end(), [&edges](uint32_t s, uint32_t t) {
    const SweepLine& a = edges[s].line;
    const SweepLine& b = edges[t].line;
    return static_cast<Int128>(a.directionX) * b.directionY -
               static_cast<Int128>(a.directionY) * b.directionX >
           0;
  });
  Status::iterator hint = above != nullptr ? *above : status.end();
  for (uint32_t s : starting) {
    const auto it = above != nullptr || s != starting.front() ? status.insert(hint, edges[s].line)
                                                              : status.insert(edges[s].line).first;
    hint = std::next(it);
    where[s] = it;
    SweepEdge& e = edges[s];
    e.windingBelow = it == status.begin() ? 0 : edges[std::prev(it)->number].windingAbove;
    e.windingAbove = e.windingBelow - e.multiplicity;
  }
}

// Vertical edges at one x take the winding left of them before any edge that
// ends at that x leaves the status.
void ClassifyVerticalsAtX(Status& status, std::vector<SweepEdge>& edges, const Buckets& verticals,
                          const std::vector<uint8_t>& startsNewX, size_t first) {
  for (size_t r = first; r < startsNewX.size() && (r == first || startsNewX[r] == 0); ++r) {
    for (uint32_t k = verticals.start[r]; k < verticals.start[r + 1]; ++k) {
      ClassifyVertical(status, edges, verticals.items[k]);
    }
  }
}

void Sweep(std::vector<SweepEdge>& edges, const std::vector<uint8_t>& startsNewX) {
  const size_t numRanks = startsNewX.size();
  const Buckets starts = GroupBy(
      numRanks, edges, [](const SweepEdge& e) { return e.line.directionX != 0 ? e.line.leftRank : kNoRank; });
  const Buckets ends = GroupBy(
      numRanks, edges, [](const SweepEdge& e) { return e.line.directionX != 0 ? e.rightRank : kNoRank; });
  const Buckets verticals = GroupBy(
      numRanks, edges, [](const SweepEdge& e) { return e.line.directionX == 0 ? e.line.leftRank : kNoRank; });
  NodePool pool(kStatusNodeSize);
  Status status(BelowOrder{}, PoolAllocator<SweepLine>(&pool));
  std::vector<Status::iterator> where(edges.size(), status.end());
  std::vector<uint32_t> starting;
  for (size_t r = 0; r < numRanks; ++r) {
    if (startsNewX[r] != 0) {
      ClassifyVerticalsAtX(status, edges, verticals, startsNewX, r);
    }
    Status::iterator above = status.end();
    for (uint32_t k = ends.start[r]; k < ends.start[r + 1]; ++k)
      above = status.erase(where[ends.items[k]]);
    starting.assign(starts.items.begin() + starts.start[r], starts.items.begin() + starts.start[r + 1]);
    InsertStarting(status, edges, starting, where, ends.start[r] < ends.start[r + 1] ? &above : nullptr);
  }
}

}  // namespace

void ComputeWindings(std::vector<Edge>& edges, uint32_t numPoints) {
  std::vector<uint32_t> rankOf(numPoints, kNoRank);
  const std::vector<uint8_t> startsNewX = RankPoints(edges, rankOf);
  std::vector<SweepEdge> sweepEdges;
  sweepEdges.reserve(edges.size());
  for (uint32_t i = 0; i < edges.size(); ++i)
    sweepEdges.push_back(MakeSweepEdge(edges[i], i, rankOf));
  Sweep(sweepEdges, startsNewX);
  for (size_t i = 0; i < edges.size(); ++i) {
    const SweepEdge& s = sweepEdges[i];
    const bool forward = s.multiplicity == edges[i].multiplicity;
    // Left to right (or upward), the right side is below (or right of) the edge.
    edges[i].windingRight = forward ? s.windingBelow : s.windingAbove;
    edges[i].windingLeft = forward ? s.windingAbove : s.windingBelow;
  }
}

}  // namespace kelvor_boolean
