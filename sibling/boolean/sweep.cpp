// The arrangement sweep: a Bentley-Ottmann sweep in (x, y) order. The status
// holds the carriers cut by the sweep line, bottom to top; at every event
// point the carriers through it end their current piece there, which splits
// them, and the winding below the lowest of them, read from the carrier just
// below, gives every new piece its two windings. Kept pieces become lines as
// they begin, and the lines around the point are linked there.
#include <algorithm>
#include <cmath>
#include <queue>

#include "sibling/boolean/sweep.h"
#include "sibling/boolean/sweep_status.h"

namespace kelvor2d_detail {

namespace {

constexpr int32_t kNone = SweepStatus::kNone;
constexpr size_t kPrefetchAhead = 8;  // end records between asking for a segment and reading it

// A carrier as the sweep sees it: oriented left to right, or upward when it
// is vertical.
struct Segment {
  int32_t leftX;  // the left (lower) end
  int32_t leftY;
  int32_t rightX;  // the right (upper) end
  int32_t rightY;
  M2dGraphPoint* right;    // the right (upper) end
  M2dGraphPoint* left;     // the left (lower) end
  M2dGraphLineNode* line;  // the line of the current piece when it is kept, else null
  int32_t windingBelow;    // winding right of the sweep orientation (below; +x of a vertical)
  int32_t windingAbove;    // winding left of it
  int32_t node;            // status node while in the status
  uint32_t queuedAbove;    // the carrier above whose crossing with this one was queued last
  int8_t multiplicity;     // +1 when fed left to right, -1 when fed right to left
  bool emits;              // lowest of coincident carriers: it alone emits the shared piece

  // right - left: directionX > 0, or 0 with directionY > 0.
  int64_t DirectionX() const { return static_cast<int64_t>(rightX) - leftX; }
  int64_t DirectionY() const { return static_cast<int64_t>(rightY) - leftY; }
};
static_assert(sizeof(Segment) <= 64, "a segment fits in a cache line");

// An event on the grid, keyed by (x, y) packed so that unsigned order is
// lexicographic signed order: a point where a carrier starts, or where carriers
// only end. A start names a carrier ending there when a neighbour in the
// line list does, so that the sweep finds the point's place in the status
// without a search.
struct EndRecord {
  uint64_t key;
  uint32_t starting;  // carrier whose left end this is, or kNoCarrier
  uint32_t ending;    // a carrier whose right end this is, or kNoCarrier
};

constexpr uint32_t kNoCarrier = 0xffffffffu;

uint64_t EventKey(int32_t x, int32_t y) {
  return (static_cast<uint64_t>(static_cast<uint32_t>(x) ^ 0x80000000u) << 32) |
         (static_cast<uint32_t>(y) ^ 0x80000000u);
}
int32_t KeyX(uint64_t key) {
  return static_cast<int32_t>(static_cast<uint32_t>(key >> 32) ^ 0x80000000u);
}
int32_t KeyY(uint64_t key) {
  return static_cast<int32_t>(static_cast<uint32_t>(key) ^ 0x80000000u);
}

// Stable LSD radix sort of the records by key. The keys are first mapped to
// (x - least x) * (y span) + (y - least y), which keeps their order and needs
// only as many bits as the extent of the points; those bits are sorted in
// passes of at most 10 bits, so each pass scatters into few enough buckets to
// stay in cache (plate: 4 passes of 9 bits sort faster than 3 of 12).
void SortByKey(std::vector<EndRecord>& records) {
  if (records.size() < 2)
    return;
  uint32_t minX = UINT32_MAX, maxX = 0, minY = UINT32_MAX, maxY = 0;
  for (const EndRecord& r : records) {
    const uint32_t x = static_cast<uint32_t>(r.key >> 32), y = static_cast<uint32_t>(r.key);
    minX = std::min(minX, x);
    maxX = std::max(maxX, x);
    minY = std::min(minY, y);
    maxY = std::max(maxY, y);
  }
  const uint64_t spanY = static_cast<uint64_t>(maxY - minY) + 1;
  auto compact = [=](uint64_t key) {
    return (static_cast<uint32_t>(key >> 32) - minX) * spanY + (static_cast<uint32_t>(key) - minY);
  };
  const uint64_t largest = compact((static_cast<uint64_t>(maxX) << 32) | maxY);
  const int bits = largest == 0 ? 0 : 64 - __builtin_clzll(largest);
  const int passes = (bits + 9) / 10;
  const int digitBits = passes == 0 ? 0 : (bits + passes - 1) / passes;
  const uint64_t mask = (static_cast<uint64_t>(1) << digitBits) - 1;
  std::vector<EndRecord> buffer(records.size());
  std::vector<uint32_t> count((static_cast<size_t>(1) << digitBits) + 1);
  for (int shift = 0; shift < bits; shift += digitBits) {
    std::fill(count.begin(), count.end(), 0);
    for (const EndRecord& r : records)
      ++count[((compact(r.key) >> shift) & mask) + 1];
    for (size_t d = 1; d < count.size(); ++d)
      count[d] += count[d - 1];
    for (const EndRecord& r : records)
      buffer[count[(compact(r.key) >> shift) & mask]++] = r;
    records.swap(buffer);
  }
}

// An event point as the status tests see it. Grid points are tested from
// their coordinates alone, so the sweep reads no point record for them.
struct Probe {
  const ExactCoordinates* exact;  // the exact position off the grid; null on the grid
  double x;                       // the position rounded to doubles
  double y;
  int32_t gridX;  // whole parts
  int32_t gridY;
  bool onGrid;  // no fraction: the whole parts are the position
};

Probe GridProbe(uint64_t key) {
  const int32_t x = KeyX(key), y = KeyY(key);
  return Probe{nullptr, static_cast<double>(x), static_cast<double>(y), x, y, true};
}

Probe CrossingProbe(const ExactCoordinates& c) {
  if (c.xFraction == 0 && c.yFraction == 0)
    return Probe{nullptr, static_cast<double>(c.x), static_cast<double>(c.y), c.x, c.y, true};
  return Probe{&c,
               ExactToDouble(c.x, c.xFraction, c.denominator),
               ExactToDouble(c.y, c.yFraction, c.denominator),
               c.x,
               c.y,
               false};
}

// Side of p relative to the segment's line: +1 above (left of its sense), -1
// below, 0 on it. A floating-point filter decides clear cases; the exact
// predicate decides the rest.
int SideOf(const Segment& s, const Probe& p) {
  const double dx = static_cast<double>(s.DirectionX()), dy = static_cast<double>(s.DirectionY());
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
  return OrientationOfExact(s.leftX, s.leftY, s.DirectionX(), s.DirectionY(), *p.exact);
}

// Sign of the turn from a's direction to b's: > 0 when b is steeper, so that
// right of a common point a lies below b.
int TurnBetween(const Segment& a, const Segment& b) {
  return SignOf(static_cast<Int128>(a.DirectionX()) * b.DirectionY() -
                static_cast<Int128>(a.DirectionY()) * b.DirectionX());
}

bool BoxesMeet(const Segment& a, const Segment& b) {
  return a.leftX <= b.rightX && b.leftX <= a.rightX &&
         std::min(a.leftY, a.rightY) <= std::max(b.leftY, b.rightY) &&
         std::min(b.leftY, b.rightY) <= std::max(a.leftY, a.rightY);
}

// The pairs of carriers whose crossing is queued and not yet swept: in the
// sweep a pair can meet as neighbours again and again, and its one crossing
// is queued once. A pair leaves when its crossing is swept (meeting again
// after that, the crossing lies behind the sweep), so the set stays as small
// as the queue. Open addressing over nonzero 64-bit keys, erased by shifting
// the following keys back.
class PairSet {
 public:
  static uint64_t KeyOf(uint32_t a, uint32_t b) {
    return (static_cast<uint64_t>(std::min(a, b)) + 1) << 32 | (std::max(a, b) + 1u);
  }
  // Adds the key; false when it was there.
  bool Insert(uint64_t key) {
    if ((m_count + 1) * 2 > m_keys.size())
      Grow();
    const size_t mask = m_keys.size() - 1;
    for (size_t i = Mix(key) & mask;; i = (i + 1) & mask) {
      if (m_keys[i] == key)
        return false;
      if (m_keys[i] == 0) {
        m_keys[i] = key;
        ++m_count;
        return true;
      }
    }
  }
  void Erase(uint64_t key) {
    const size_t mask = m_keys.size() - 1;
    size_t hole = Mix(key) & mask;
    for (; m_keys[hole] != key; hole = (hole + 1) & mask) {
      if (m_keys[hole] == 0)
        return;
    }
    // Each following key of the run moves into the hole unless its home slot
    // lies cyclically after the hole (up to its own slot).
    for (size_t j = (hole + 1) & mask; m_keys[j] != 0; j = (j + 1) & mask) {
      const size_t home = Mix(m_keys[j]) & mask;
      if (((j - home) & mask) >= ((j - hole) & mask)) {
        m_keys[hole] = m_keys[j];
        hole = j;
      }
    }
    m_keys[hole] = 0;
    --m_count;
  }

 private:
  std::vector<uint64_t> m_keys;
  size_t m_count = 0;

  static uint64_t Mix(uint64_t h) {
    h ^= h >> 33;
    h *= 0xff51afd7ed558ccdULL;
    h ^= h >> 33;
    h *= 0xc4ceb3fa0c7fda5bULL;
    return h ^ (h >> 33);
  }
  void Grow() {
    std::vector<uint64_t> old(std::max<size_t>(1024, 2 * m_keys.size()), 0);
    old.swap(m_keys);
    const size_t mask = m_keys.size() - 1;
    for (uint64_t key : old) {
      if (key == 0)
        continue;
      size_t i = Mix(key) & mask;
      while (m_keys[i] != 0)
        i = (i + 1) & mask;
      m_keys[i] = key;
    }
  }
};

// The exact positions of the queued crossings, each in a slot that is
// reused once its crossing is swept: the pool is as large as the queue.
class PendingCrossings {
 public:
  uint32_t Add(const ExactCoordinates& c) {
    const M2dGraphFraction f = FractionOf(c);
    if (m_free.empty()) {
      m_slots.push_back(f);
      return static_cast<uint32_t>(m_slots.size() - 1);
    }
    const uint32_t slot = m_free.back();
    m_free.pop_back();
    m_slots[slot] = f;
    return slot;
  }
  void Release(uint32_t slot) { m_free.push_back(slot); }
  const M2dGraphFraction& operator[](uint32_t slot) const { return m_slots[slot]; }

 private:
  std::vector<M2dGraphFraction> m_slots;
  std::vector<uint32_t> m_free;
};

// A queued crossing, with its sort keys at hand so that ordering the queue
// seldom reads its exact position, and a carrier through it, whose status
// node is where the event finds its place.
struct CrossingEvent {
  uint64_t pair;  // key of the pair of carriers in the PairSet
  uint64_t xKey;
  uint64_t yKey;
  int32_t x;
  int32_t y;
  uint32_t carrier;
  uint32_t slot;  // its exact position in the PendingCrossings
};

// True when c comes after the event point p in (x, y) order.
bool ComesAfter(const ExactCoordinates& c, const Probe& p) {
  if (!p.onGrid)
    return CompareExactXY(c, *p.exact) > 0;
  if (c.x != p.gridX)
    return c.x > p.gridX;
  if (c.xFraction != 0)
    return true;
  return c.y != p.gridY ? c.y > p.gridY : c.yFraction != 0;
}

bool OnGrid(const ExactCoordinates& c) {
  return c.xFraction == 0 && c.yFraction == 0;
}

// Order of two queued crossings: -1, 0 or +1. The whole parts and the keys
// decide almost always; the exact positions decide the rest.
int CompareEvents(const CrossingEvent& a, const CrossingEvent& b, const PendingCrossings& pending) {
  if (a.x != b.x)
    return a.x < b.x ? -1 : 1;
  if (a.xKey != b.xKey)
    return a.xKey < b.xKey ? -1 : 1;
  const ExactCoordinates& p = pending[a.slot].exact;
  const ExactCoordinates& q = pending[b.slot].exact;
  const bool bothOnGrid = OnGrid(p) && OnGrid(q);
  const int byX = bothOnGrid ? 0 : CompareExactX(p, q);
  if (byX != 0)
    return byX;
  if (a.y != b.y)
    return a.y < b.y ? -1 : 1;
  if (a.yKey != b.yKey)
    return a.yKey < b.yKey ? -1 : 1;
  return bothOnGrid ? 0 : CompareExactY(p, q);
}

// Order of the grid point (x, y) and a queued crossing: -1, 0 or +1.
int CompareGridWithEvent(int32_t x, int32_t y, const CrossingEvent& e, const PendingCrossings& pending) {
  if (x != e.x)
    return x < e.x ? -1 : 1;
  if (e.xKey != 0 || pending[e.slot].exact.xFraction != 0)
    return -1;
  if (y != e.y)
    return y < e.y ? -1 : 1;
  return e.yKey != 0 || pending[e.slot].exact.yFraction != 0 ? -1 : 0;
}

struct LaterEvent {
  const PendingCrossings* pending;
  bool operator()(const CrossingEvent& a, const CrossingEvent& b) const {
    return CompareEvents(a, b, *pending) > 0;
  }
};

class ArrangementSweep {
 public:
  ArrangementSweep(M2dGraph& graph, PieceSink& sink)
      : m_graph(graph), m_sink(sink), m_crossings(LaterEvent{&m_pending}) {
    TakeLines(*graph.lines);
  }

  void Run() {
    size_t r = 0;
    while (r < m_ends.size() || !m_crossings.empty()) {
      const uint64_t key = r < m_ends.size() ? m_ends[r].key : 0;
      const bool fromEnds = r < m_ends.size() && (m_crossings.empty() || CompareGridWithNext(key) <= 0);
      if (fromEnds) {
        while (!m_crossings.empty() && CompareGridWithNext(key) == 0)
          PopCrossing();  // crossings on the grid point of an end: one event
        r = SweepEndPoint(r);
        continue;
      }
      const CrossingEvent e = m_crossings.top();
      m_crossings.pop();
      m_queuedPairs.Erase(e.pair);
      while (!m_crossings.empty() && CompareEvents(m_crossings.top(), e, m_pending) == 0)
        PopCrossing();  // more pairs crossing at the same position: one event, e's point
      const ExactCoordinates exact = m_pending[e.slot].exact;
      m_pending.Release(e.slot);
      m_starting.clear();
      SweepPoint(CrossingProbe(exact), nullptr, m_segments[e.carrier].node);
    }
  }

 private:
  M2dGraph& m_graph;
  PieceSink& m_sink;
  std::vector<Segment> m_segments;
  std::vector<EndRecord> m_ends;  // the events on the grid, in event order
  PendingCrossings m_pending;     // exact positions of the queued crossings
  std::priority_queue<CrossingEvent, std::vector<CrossingEvent>, LaterEvent> m_crossings;
  PairSet m_queuedPairs;                  // pairs of carriers whose crossing is queued, not yet swept
  const Probe* m_event = nullptr;         // the event point being swept
  M2dGraphPoint* m_eventPoint = nullptr;  // its graph point; null until a kept piece needs it
  SweepStatus m_status;
  std::vector<int32_t> m_oldNodes;            // scratch: the status nodes through the event point
  std::vector<uint32_t> m_group;              // scratch: the carriers leaving the event point
  std::vector<uint32_t> m_starting;           // scratch: the carriers starting at the event point
  std::vector<M2dGraphLineNode*> m_arrivals;  // scratch: kept lines ending at the event point, bottom to top
  std::vector<M2dGraphLineNode*> m_departures;  // scratch: kept lines starting there, bottom to top
  std::vector<M2dGraphLineNode*> m_around;      // scratch: both, counter-clockwise

  // Every fed line of some length becomes a carrier; then the sink may clear
  // the lines.
  void TakeLines(const DLIST<M2dGraphLine>& lines) {
    m_segments.reserve(lines.count);
    for (const M2dGraphLineNode* n = lines.first; n != nullptr; n = n->next) {
      if (n->line.from != n->line.to)
        AddCarrier(n->line.from, n->line.to);
    }
    m_sink.LinesTaken();
    MakeEndRecords();
    SortByKey(m_ends);
    m_status.Reserve(m_segments.size() / 4 + 16);
  }

  void AddCarrier(M2dGraphPoint* from, M2dGraphPoint* to) {
    const bool forward = from->x < to->x || (from->x == to->x && from->y < to->y);
    M2dGraphPoint* left = forward ? from : to;
    M2dGraphPoint* right = forward ? to : from;
    Segment s;
    s.leftX = left->x;
    s.leftY = left->y;
    s.rightX = right->x;
    s.rightY = right->y;
    s.right = right;
    s.left = left;
    s.line = nullptr;
    s.windingBelow = s.windingAbove = 0;
    s.node = kNone;
    s.queuedAbove = kNoCarrier;
    s.multiplicity = forward ? 1 : -1;
    s.emits = true;
    m_segments.push_back(s);
  }

  // One record per left end; a right end gets its own record only when no
  // neighbour in the line list starts there (chained lines share a point).
  void MakeEndRecords() {
    const size_t n = m_segments.size();
    m_ends.reserve(n + n / 8 + 1);
    for (size_t i = 0; i < n; ++i) {
      const Segment& s = m_segments[i];
      const Segment* before = i > 0 ? &m_segments[i - 1] : nullptr;
      const Segment* after = i + 1 < n ? &m_segments[i + 1] : nullptr;
      uint32_t ending = kNoCarrier;
      if (before != nullptr && before->right == s.left) {
        ending = static_cast<uint32_t>(i - 1);
      } else if (after != nullptr && after->right == s.left) {
        ending = static_cast<uint32_t>(i + 1);
      }
      m_ends.push_back(EndRecord{EventKey(s.leftX, s.leftY), static_cast<uint32_t>(i), ending});
      const bool startsAtRight =
          (before != nullptr && before->left == s.right) || (after != nullptr && after->left == s.right);
      if (!startsAtRight)
        m_ends.push_back(EndRecord{EventKey(s.rightX, s.rightY), kNoCarrier, static_cast<uint32_t>(i)});
    }
  }

  // Sweeps the grid point of the end records from r on; returns the first
  // record of the next point.
  size_t SweepEndPoint(size_t r) {
    const uint64_t key = m_ends[r].key;
    const size_t first = r;
    M2dGraphPoint* p = nullptr;
    int32_t seed = kNone;
    m_starting.clear();
    for (; r < m_ends.size() && m_ends[r].key == key; ++r) {
      if (r + kPrefetchAhead < m_ends.size()) {
        const EndRecord& ahead = m_ends[r + kPrefetchAhead];
        __builtin_prefetch(&m_segments[ahead.starting != kNoCarrier ? ahead.starting : ahead.ending]);
      }
      const EndRecord& e = m_ends[r];
      if (e.starting != kNoCarrier) {
        m_starting.push_back(e.starting);
        p = m_segments[e.starting].left;
      }
      if (e.ending != kNoCarrier) {
        const Segment& s = m_segments[e.ending];
        p = s.right;
        if (seed == kNone)
          seed = s.node;
      }
    }
    const Probe probe = GridProbe(key);
    if (r - first != 1 || m_ends[first].starting == kNoCarrier || m_ends[first].ending == kNoCarrier ||
        !PassOn(probe, p, m_ends[first].ending, m_ends[first].starting)) {
      SweepPoint(probe, p, seed);
    }
    return r;
  }

  // The common event of a chain: one carrier ends at p and the next one of
  // its loop starts there, and no other carrier touches p. The new carrier
  // takes the status node of the old one; the rest is what SweepPoint does
  // for this case, without its search and scratch lists. False, doing
  // nothing, when some neighbour passes through p.
  bool PassOn(const Probe& probe, M2dGraphPoint* p, uint32_t ending, uint32_t starting) {
    Segment& old = m_segments[ending];
    const int32_t node = old.node;
    const int32_t below = m_status.Previous(node), above = m_status.Next(node);
    if ((below != kNone && Holds(below, probe)) || (above != kNone && Holds(above, probe)))
      return false;
    m_event = &probe;
    m_eventPoint = p;
    m_arrivals.clear();
    m_departures.clear();
    if (old.line != nullptr) {
      m_sink.End(old.line, p);
      m_arrivals.push_back(old.line);
    }
    Segment& next = m_segments[starting];
    m_status.SetValue(node, starting);
    next.node = node;
    next.windingBelow = below == kNone ? 0 : m_segments[m_status.ValueOf(below)].windingAbove;
    next.windingAbove = next.windingBelow - next.multiplicity;
    next.emits = true;
    next.line = nullptr;
    if (m_sink.Keeps(next.windingBelow, next.windingAbove)) {
      next.line = m_sink.Begin(p, next.DirectionX(), next.DirectionY(), next.windingBelow, next.windingAbove);
      m_departures.push_back(next.line);
    }
    if (!m_arrivals.empty() && !m_departures.empty())
      LinkAround(p);
    CheckPair(below, node);
    CheckPair(node, above);
    return true;
  }

  bool Holds(int32_t node, const Probe& p) const {
    return SideOf(m_segments[m_status.ValueOf(node)], p) == 0;
  }

  // The event at the probe's point: the status nodes through it (from a node
  // known to hold it, or found by search), their pieces ending there, and the
  // carriers leaving it placed in their stead. `p` is its graph point, or
  // null for a crossing not made yet.
  void SweepPoint(const Probe& probe, M2dGraphPoint* p, int32_t seed) {
    m_event = &probe;
    m_eventPoint = p;
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
    EndPiecesHere();
    m_group.insert(m_group.end(), m_starting.begin(), m_starting.end());
    if (m_group.size() > 1)
      SortBySlope();
    PlaceGroup(below);
    AssignWindings(below);
    BeginPiecesHere();
    LinkAround(m_eventPoint);
    CheckNeighbours(below);
  }

  // The graph point of the event, made on first use at a crossing.
  M2dGraphPoint* EventPoint() {
    if (m_eventPoint == nullptr) {
      m_eventPoint = m_event->onGrid ? m_graph.GetGridPoint(m_event->gridX, m_event->gridY)
                                     : m_graph.MakeExactPoint(*m_event->exact);
    }
    return m_eventPoint;
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

  // Every carrier through the event point ends its piece there; those that
  // go on start the next piece there and form the group with the carriers
  // starting there. No carrier ends at a crossing: an end on the grid is an
  // event of its own, which takes the crossings there along.
  void EndPiecesHere() {
    m_group.clear();
    m_arrivals.clear();
    for (int32_t node : m_oldNodes) {
      const uint32_t v = m_status.ValueOf(node);
      Segment& s = m_segments[v];
      if (s.line != nullptr) {
        m_sink.End(s.line, EventPoint());
        m_arrivals.push_back(s.line);
      }
      if (s.right != m_eventPoint)
        m_group.push_back(v);
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

  // The kept pieces leaving the event point get their lines, bottom to top.
  void BeginPiecesHere() {
    m_departures.clear();
    for (uint32_t v : m_group) {
      Segment& s = m_segments[v];
      s.line = nullptr;
      if (s.emits && m_sink.Keeps(s.windingBelow, s.windingAbove)) {
        s.line = m_sink.Begin(EventPoint(), s.DirectionX(), s.DirectionY(), s.windingBelow, s.windingAbove);
        m_departures.push_back(s.line);
      }
    }
  }

  // Counter-clockwise around p from straight down, the kept lines come as
  // the departures bottom to top, then the arrivals top to bottom. Each line
  // into p is continued by the first line out of p after it in that order:
  // the line bounding the same wedge of material.
  void LinkAround(const M2dGraphPoint* p) {
    m_around.assign(m_departures.begin(), m_departures.end());
    m_around.insert(m_around.end(), m_arrivals.rbegin(), m_arrivals.rend());
    const size_t m = m_around.size();
    M2dGraphLineNode* nextOut = nullptr;
    for (size_t k = 2 * m; k-- > 0;) {
      M2dGraphLineNode* n = m_around[k % m];
      if (n->line.to != p) {
        nextOut = n;
      } else if (k < m && nextOut != nullptr) {
        n->line.successor = nextOut;
        nextOut->line.predecessor = n;
      }
    }
  }

  void PopCrossing() {
    m_queuedPairs.Erase(m_crossings.top().pair);
    m_pending.Release(m_crossings.top().slot);
    m_crossings.pop();
  }

  // Order of the grid point of an end key and the next queued crossing.
  int CompareGridWithNext(uint64_t key) const {
    return CompareGridWithEvent(KeyX(key), KeyY(key), m_crossings.top(), m_pending);
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

  // Queues the proper crossing of two neighbours when it lies ahead of the
  // sweep; one behind it was an event point that both passed through.
  void CheckPair(int32_t lower, int32_t upper) {
    if (lower == kNone || upper == kNone)
      return;
    const uint32_t i = m_status.ValueOf(lower), j = m_status.ValueOf(upper);
    Segment& a = m_segments[i];
    const Segment& b = m_segments[j];
    if (a.queuedAbove == j || !BoxesMeet(a, b) ||
        !CrossProperly(a.leftX, a.leftY, a.rightX, a.rightY, b.leftX, b.leftY, b.rightX, b.rightY)) {
      return;
    }
    a.queuedAbove = j;
    const ExactCoordinates c =
        CrossingOf(a.leftX, a.leftY, a.rightX, a.rightY, b.leftX, b.leftY, b.rightX, b.rightY);
    if (!ComesAfter(c, *m_event))
      return;  // they crossed at an earlier event point, where both passed
    const uint64_t pair = PairSet::KeyOf(i, j);
    if (!m_queuedPairs.Insert(pair))
      return;
    // Coincident crossings meet in the queue; one on the grid may be an end
    // already, and meets that end's event there.
    const uint32_t slot = m_pending.Add(c);
    const M2dGraphFraction& f = m_pending[slot];
    m_crossings.push(CrossingEvent{pair, f.xKey, f.yKey, c.x, c.y, i, slot});
  }
};

}  // namespace

void SweepArrangement(M2dGraph& graph, PieceSink& sink) {
  ArrangementSweep sweep(graph, sink);
  sweep.Run();
}

}  // namespace kelvor2d_detail
