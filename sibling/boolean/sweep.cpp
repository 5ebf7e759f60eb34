// The arrangement sweep: a Bentley-Ottmann sweep in (x, y) order. The status
// holds the carriers cut by the sweep line, bottom to top; at every event
// point the carriers through it end their current piece there, which splits
// them, and the winding below the lowest of them, read from the carrier just
// below, gives every new piece its two windings.
#include <algorithm>
#include <cmath>
#include <queue>

#include "sibling/boolean/sweep.h"
#include "sibling/boolean/sweep_status.h"

namespace kelvor_boolean {

namespace {

constexpr int32_t kNone = SweepStatus::kNone;

// A carrier as the sweep sees it: oriented left to right, or upward when it
// is vertical.
struct Segment {
  int32_t leftX;  // the left (lower) end
  int32_t leftY;
  int32_t rightX;  // the right (upper) end
  int32_t rightY;
  int64_t directionX;  // right - left: > 0, or 0 with directionY > 0
  int64_t directionY;
  const M2dGraphPoint* right;  // the right (upper) end
  M2dGraphPoint* pieceStart;   // where the current piece began
  int32_t multiplicity;        // +1 when fed left to right, -1 when fed right to left
  int32_t windingBelow;        // winding right of the sweep orientation (below; +x of a vertical)
  int32_t windingAbove;        // winding left of it
  int32_t node;                // status node while in the status
  bool emits;                  // lowest of coincident carriers: it alone emits the shared piece
};

// An end of a carrier in the event order: (x, y) packed so that unsigned
// order is lexicographic signed order, and the carrier number with a flag.
struct EndRecord {
  uint64_t key;
  M2dGraphPoint* point;      // the end itself
  uint32_t carrierAndStart;  // carrier * 2 + 1 for a left end, carrier * 2 for a right end
};

uint64_t EventKey(const M2dGraphPoint* p) {
  return (static_cast<uint64_t>(static_cast<uint32_t>(p->x) ^ 0x80000000u) << 32) |
         (static_cast<uint32_t>(p->y) ^ 0x80000000u);
}

// Stable LSD radix sort on the 64-bit key, 16 bits per pass; passes whose
// digit is the same for every record are skipped.
void SortByKey(std::vector<EndRecord>& records) {
  std::vector<EndRecord> buffer(records.size());
  std::vector<uint32_t> count(65537);
  for (int shift = 0; shift < 64; shift += 16) {
    std::fill(count.begin(), count.end(), 0);
    for (const EndRecord& r : records)
      ++count[((r.key >> shift) & 0xffff) + 1];
    if (std::any_of(count.begin() + 1, count.end(), [&](uint32_t c) { return c == records.size(); }))
      continue;
    for (size_t d = 1; d < count.size(); ++d)
      count[d] += count[d - 1];
    for (const EndRecord& r : records)
      buffer[count[(r.key >> shift) & 0xffff]++] = r;
    records.swap(buffer);
  }
}

// An event point as the status tests see it. Grid points are tested from
// their coordinates alone, so the sweep reads no point record for them.
struct Probe {
  const M2dGraphPoint* point;
  double x;  // the position rounded to doubles
  double y;
  int32_t gridX;  // whole parts
  int32_t gridY;
  bool onGrid;  // no fraction: the whole parts are the position
};

Probe GridProbe(const M2dGraphPoint* p, uint64_t key) {
  const int32_t x = static_cast<int32_t>(static_cast<uint32_t>(key >> 32) ^ 0x80000000u);
  const int32_t y = static_cast<int32_t>(static_cast<uint32_t>(key) ^ 0x80000000u);
  return Probe{p, static_cast<double>(x), static_cast<double>(y), x, y, true};
}

Probe PointProbe(const M2dGraphPoint* p) {
  return Probe{p, p->NearX(), p->NearY(), p->x, p->y, p->IsInteger()};
}

// Side of p relative to the segment's line: +1 above (left of its sense), -1
// below, 0 on it. A floating-point filter decides clear cases; the exact
// predicate decides the rest.
int SideOf(const Segment& s, const Probe& p) {
  const double dx = static_cast<double>(s.directionX), dy = static_cast<double>(s.directionY);
  const double a = dx * (p.y - s.leftY), b = dy * (p.x - s.leftX);
  const double det = a - b;
  // Rounding of the point (relative 2^-52 of coordinates below 2^32) and of
  // the products stays far below this bound.
  const double bound = 1e-9 * (std::fabs(a) + std::fabs(b)) + 1e-3 * (std::fabs(dx) + std::fabs(dy));
  if (det > bound)
    return 1;
  if (det < -bound)
    return -1;
  if (p.onGrid)
    return Orientation(s.leftX, s.leftY, s.rightX, s.rightY, p.gridX, p.gridY);
  return OrientationOfExact(s.leftX, s.leftY, s.directionX, s.directionY, p.point->fraction->exact);
}

// Sign of the turn from a's direction to b's: > 0 when b is steeper, so that
// right of a common point a lies below b.
int TurnBetween(const Segment& a, const Segment& b) {
  return SignOf(static_cast<Int128>(a.directionX) * b.directionY -
                static_cast<Int128>(a.directionY) * b.directionX);
}

bool BoxesMeet(const Segment& a, const Segment& b) {
  return a.leftX <= b.rightX && b.leftX <= a.rightX &&
         std::min(a.leftY, a.rightY) <= std::max(b.leftY, b.rightY) &&
         std::min(b.leftY, b.rightY) <= std::max(a.leftY, a.rightY);
}

struct LaterPoint {
  bool operator()(const M2dGraphPoint* p, const M2dGraphPoint* q) const { return ComparePointXY(p, q) > 0; }
};

class ArrangementSweep {
 public:
  ArrangementSweep(M2dGraph& graph, const std::vector<Carrier>& carriers) : m_graph(graph) {
    MakeSegments(carriers);
  }

  std::vector<Edge> Run() {
    size_t r = 0;
    while (r < m_ends.size() || !m_crossings.empty()) {
      const bool fromEnds = r < m_ends.size() &&
                            (m_crossings.empty() || ComparePointXY(m_ends[r].point, m_crossings.top()) <= 0);
      if (fromEnds) {
        if (!m_crossings.empty() && m_crossings.top() == m_ends[r].point)
          m_crossings.pop();  // a crossing on the grid point of an end: one event
        r = SweepEndPoint(r);
        continue;
      }
      M2dGraphPoint* p = m_crossings.top();
      m_crossings.pop();
      m_starting.clear();
      SweepPoint(PointProbe(p), p, kNone);
    }
    return std::move(m_edges);
  }

 private:
  M2dGraph& m_graph;
  std::vector<Segment> m_segments;
  std::vector<EndRecord> m_ends;  // both ends of every carrier, in event order
  std::priority_queue<M2dGraphPoint*, std::vector<M2dGraphPoint*>, LaterPoint> m_crossings;
  std::vector<uint8_t> m_queued;  // per point index: 1 once queued as a crossing
  SweepStatus m_status;
  std::vector<Edge> m_edges;
  std::vector<int32_t> m_oldNodes;   // scratch: the status nodes through the event point
  std::vector<uint32_t> m_group;     // scratch: the carriers leaving the event point
  std::vector<uint32_t> m_starting;  // scratch: the carriers starting at the event point

  void MakeSegments(const std::vector<Carrier>& carriers) {
    m_segments.resize(carriers.size());
    m_ends.resize(2 * carriers.size());
    for (uint32_t i = 0; i < carriers.size(); ++i) {
      M2dGraphPoint* from = carriers[i].from;
      M2dGraphPoint* to = carriers[i].to;
      const bool forward = from->x < to->x || (from->x == to->x && from->y < to->y);
      M2dGraphPoint* left = forward ? from : to;
      M2dGraphPoint* right = forward ? to : from;
      Segment& s = m_segments[i];
      s.leftX = left->x;
      s.leftY = left->y;
      s.rightX = right->x;
      s.rightY = right->y;
      s.directionX = static_cast<int64_t>(right->x) - left->x;
      s.directionY = static_cast<int64_t>(right->y) - left->y;
      s.right = right;
      s.pieceStart = left;
      s.multiplicity = forward ? 1 : -1;
      s.windingBelow = s.windingAbove = 0;
      s.node = kNone;
      s.emits = true;
      m_ends[2 * i] = EndRecord{EventKey(left), left, 2 * i + 1};
      m_ends[2 * i + 1] = EndRecord{EventKey(right), right, 2 * i};
    }
    SortByKey(m_ends);
    m_status.Reserve(carriers.size() / 4 + 16);
    m_edges.reserve(carriers.size() + carriers.size() / 4);
  }

  uint8_t& QueuedMark(const M2dGraphPoint* p) {
    if (p->index >= m_queued.size())
      m_queued.resize(std::max<size_t>(p->index + 1, 2 * m_queued.size()), 0);
    return m_queued[p->index];
  }

  // Sweeps the grid point of the end records from r on; returns the first
  // record of the next point.
  size_t SweepEndPoint(size_t r) {
    M2dGraphPoint* p = m_ends[r].point;
    const uint64_t key = m_ends[r].key;
    int32_t seed = kNone;
    m_starting.clear();
    for (; r < m_ends.size() && m_ends[r].key == key; ++r) {
      const uint32_t carrier = m_ends[r].carrierAndStart >> 1;
      if ((m_ends[r].carrierAndStart & 1) != 0) {
        m_starting.push_back(carrier);
      } else if (seed == kNone) {
        seed = m_segments[carrier].node;
      }
    }
    SweepPoint(GridProbe(p, key), p, seed);
    return r;
  }

  bool Holds(int32_t node, const Probe& p) const {
    return SideOf(m_segments[m_status.ValueOf(node)], p) == 0;
  }

  // The event at p: the status nodes through p (from a node known to hold p,
  // or found by search), their pieces ending at p, and the carriers leaving
  // p placed in their stead.
  void SweepPoint(const Probe& probe, M2dGraphPoint* p, int32_t seed) {
    int32_t below = kNone;
    if (seed == kNone) {
      bool on = false;
      const int32_t found =
          m_status.Locate([this, &probe](uint32_t v) { return SideOf(m_segments[v], probe); }, &on);
      (on ? seed : below) = found;
    }
    m_oldNodes.clear();
    if (seed != kNone)
      below = CollectNodesThrough(probe, seed);
    EndPiecesAt(p);
    m_group.insert(m_group.end(), m_starting.begin(), m_starting.end());
    if (m_group.size() > 1)
      SortBySlope();
    PlaceGroup(below);
    AssignWindings(below);
    CheckNeighbours(below);
  }

  // Fills m_oldNodes with the nodes through p, bottom to top; returns the
  // node just below them.
  int32_t CollectNodesThrough(const Probe& p, int32_t seed) {
    int32_t low = seed;
    while (m_status.Previous(low) != kNone && Holds(m_status.Previous(low), p))
      low = m_status.Previous(low);
    m_oldNodes.push_back(low);
    for (int32_t n = m_status.Next(low); n != kNone && (n == seed || Holds(n, p)); n = m_status.Next(n))
      m_oldNodes.push_back(n);
    return m_status.Previous(low);
  }

  // Every carrier through p ends its piece at p; those that go on start the
  // next piece there and form the group with the carriers starting at p.
  void EndPiecesAt(M2dGraphPoint* p) {
    m_group.clear();
    for (int32_t node : m_oldNodes) {
      const uint32_t v = m_status.ValueOf(node);
      Segment& s = m_segments[v];
      if (s.emits && s.windingBelow != s.windingAbove)
        m_edges.push_back(Edge{s.pieceStart, p, s.directionX, s.directionY, s.windingBelow, s.windingAbove});
      if (s.right != p) {
        s.pieceStart = p;
        m_group.push_back(v);
      }
    }
  }

  // Right of the event point the group runs bottom to top by slope; equal
  // slopes (overlapping carriers) by number.
  void SortBySlope() {
    std::sort(m_group.begin(), m_group.end(), [this](uint32_t a, uint32_t b) {
      const int turn = TurnBetween(m_segments[a], m_segments[b]);
      return turn != 0 ? turn > 0 : a < b;
    });
  }

  // The group takes over the positions of the old nodes, bottom up; the rest
  // are erased, or new nodes made above the last.
  void PlaceGroup(int32_t below) {
    const size_t reused = std::min(m_oldNodes.size(), m_group.size());
    for (size_t i = 0; i < reused; ++i) {
      m_status.SetValue(m_oldNodes[i], m_group[i]);
      m_segments[m_group[i]].node = m_oldNodes[i];
    }
    for (size_t i = reused; i < m_oldNodes.size(); ++i)
      m_status.Erase(m_oldNodes[i]);
    int32_t last = reused > 0 ? m_oldNodes[reused - 1] : below;
    for (size_t i = reused; i < m_group.size(); ++i) {
      last = m_status.InsertAbove(last, m_group[i]);
      m_segments[m_group[i]].node = last;
    }
  }

  // Going up from the carrier below, each carrier of the group adds its
  // multiplicity; coincident carriers share the windings of the run.
  void AssignWindings(int32_t below) {
    int32_t winding = below == kNone ? 0 : m_segments[m_status.ValueOf(below)].windingAbove;
    for (size_t i = 0; i < m_group.size();) {
      size_t j = i;
      int32_t after = winding;
      do {
        after -= m_segments[m_group[j]].multiplicity;
        ++j;
      } while (j < m_group.size() && TurnBetween(m_segments[m_group[j - 1]], m_segments[m_group[j]]) == 0);
      for (size_t k = i; k < j; ++k) {
        Segment& s = m_segments[m_group[k]];
        s.windingBelow = winding;
        s.windingAbove = after;
        s.emits = k == i;
      }
      winding = after;
      i = j;
    }
  }

  void CheckNeighbours(int32_t below) {
    if (m_group.empty()) {
      CheckPair(below, below == kNone ? m_status.Head() : m_status.Next(below));
      return;
    }
    CheckPair(below, m_segments[m_group.front()].node);
    const int32_t top = m_segments[m_group.back()].node;
    CheckPair(top, m_status.Next(top));
  }

  // Queues the proper crossing of two neighbours (ahead of the sweep, as
  // neighbours cannot have crossed behind it).
  void CheckPair(int32_t lower, int32_t upper) {
    if (lower == kNone || upper == kNone)
      return;
    const Segment& a = m_segments[m_status.ValueOf(lower)];
    const Segment& b = m_segments[m_status.ValueOf(upper)];
    if (!BoxesMeet(a, b))
      return;
    ExactCoordinates c;
    if (!ProperCrossing(a.leftX, a.leftY, a.rightX, a.rightY, b.leftX, b.leftY, b.rightX, b.rightY, &c))
      return;
    M2dGraphPoint* q = m_graph.GetExactPoint(c);
    uint8_t& queued = QueuedMark(q);
    if (queued == 0) {
      queued = 1;
      m_crossings.push(q);
    }
  }
};

}  // namespace

std::vector<Edge> SweepArrangement(M2dGraph& graph, const std::vector<Carrier>& carriers) {
  ArrangementSweep sweep(graph, carriers);
  return sweep.Run();
}

}  // namespace kelvor_boolean
