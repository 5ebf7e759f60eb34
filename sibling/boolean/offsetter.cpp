#include "sibling/boolean/offsetter.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <vector>

#include "geometry/grid_arithmetic.h"
#include "sibling/boolean/border_functions.h"

namespace {

constexpr double kChordError = 0.5;
constexpr double kPiHere = 3.141592653589793;
// Raw offset points up to which all raw offsets are united in one pass, and
// the size of the groups united one by one beyond that, so that the engine
// (a few hundred bytes per point while it runs) never holds all raw offsets.
constexpr size_t kOnePassPoints = size_t{1} << 19;
constexpr size_t kGroupPoints = size_t{1} << 15;

struct Vertex {
  int64_t x;
  int64_t y;
};

struct GridPoint {
  int32_t x;
  int32_t y;
};

struct OffsetSide {
  double radius;  // > 0
  int side;       // +1: to the left of the running sense (grows), -1: to the right (shrinks)
  double step;    // largest arc step in radians that keeps the chord error
};

// The raw offsets of all contours, one flat array of grid points with the
// start of each loop, so that the engine can be sized before it is fed.
class RawLoops {
 public:
  void BeginLoop() { m_starts.push_back(m_points.size()); }
  size_t PointCount() const { return m_points.size(); }
  void Clear() {
    m_points.clear();
    m_starts.clear();
  }
  void Add(double x, double y) {
    const GridPoint p{kelvor2d_detail::RoundClamped(x), kelvor2d_detail::RoundClamped(y)};
    if (m_points.size() == m_starts.back() || p.x != m_points.back().x || p.y != m_points.back().y)
      m_points.push_back(p);
  }
  // Each loop of at least two points as a closed loop of lines.
  void Feed(M2dBoolean& engine) const {
    engine.ReservePoints(static_cast<uint32_t>(std::min<size_t>(m_points.size(), UINT32_MAX)));
    for (size_t k = 0; k < m_starts.size(); ++k)
      FeedLoop(engine, m_starts[k], k + 1 < m_starts.size() ? m_starts[k + 1] : m_points.size());
  }

 private:
  static constexpr size_t kPrefetchAhead = 8;  // points between asking for a lookup and making it
  std::vector<GridPoint> m_points;
  std::vector<size_t> m_starts;  // index of the first point of each loop

  void FeedLoop(M2dBoolean& engine, size_t begin, size_t end) const {
    if (end - begin < 2)
      return;
    M2dGraphPoint* first = engine.AddPoint(m_points[begin].x, m_points[begin].y);
    M2dGraphPoint* previous = first;
    for (size_t i = begin + 1; i <= end; ++i) {
      if (i + kPrefetchAhead < end)
        engine.PrefetchGridPoint(m_points[i + kPrefetchAhead].x, m_points[i + kPrefetchAhead].y);
      M2dGraphPoint* next = i < end ? engine.AddPoint(m_points[i].x, m_points[i].y) : first;
      engine.AddLine(previous, next, false);
      previous = next;
    }
  }
};

std::vector<Vertex> DistinctVertices(const M3dBorderContourLong& c) {
  std::vector<Vertex> v;
  const M3dBorderPointLong* p = c.GetFirstPoint();
  for (uint32_t i = 0; i < c.GetNumPoints(); ++i, p = p->next) {
    if (v.empty() || v.back().x != p->x || v.back().y != p->y)
      v.push_back({p->x, p->y});
  }
  while (v.size() > 1 && v.back().x == v.front().x && v.back().y == v.front().y)
    v.pop_back();
  return v;
}

// Arc around `center` from angle a0 over `sweep` radians, both ends included.
void AddArc(RawLoops& loop, const Vertex& center, double a0, double sweep, const OffsetSide& s) {
  const int count = std::max(1, static_cast<int>(std::ceil(std::fabs(sweep) / s.step)));
  for (int j = 0; j <= count; ++j) {
    const double a = a0 + sweep * j / count;
    loop.Add(center.x + s.radius * std::cos(a), center.y + s.radius * std::sin(a));
  }
}

// The unit normal of (dx, dy) on the offset side.
void NormalOf(int64_t dx, int64_t dy, const OffsetSide& s, double* nx, double* ny) {
  const double length = std::hypot(static_cast<double>(dx), static_cast<double>(dy));
  *nx = -s.side * dy / length;
  *ny = s.side * dx / length;
}

struct Normal {
  double x;
  double y;
};

// The join at `cur` between the edge from `prev` (offset side normal a) and
// the edge to `next` (normal b).
void AddJoin(RawLoops& loop, const Vertex& prev, const Vertex& cur, const Vertex& next, const Normal& a,
             const Normal& b, const OffsetSide& s) {
  const int64_t inX = cur.x - prev.x, inY = cur.y - prev.y, outX = next.x - cur.x, outY = next.y - cur.y;
  const int turn = kelvor2d_detail::Orientation(prev.x, prev.y, cur.x, cur.y, next.x, next.y);
  const bool backwards =
      static_cast<kelvor2d_detail::Int128>(inX) * outX + static_cast<kelvor2d_detail::Int128>(inY) * outY < 0;
  const double ax = a.x, ay = a.y, bx = b.x, by = b.y;
  if (turn == 0 && !backwards) {
    loop.Add(cur.x + s.radius * ax, cur.y + s.radius * ay);
    return;
  }
  // Turning away from the offset side (or back) opens a gap that an arc fills.
  if ((turn == 0 && backwards) || turn == -s.side) {
    double sweep = std::atan2(ax * by - ay * bx, ax * bx + ay * by);
    if (s.side > 0 && sweep > 0.0)
      sweep -= 2.0 * kPiHere;
    if (s.side < 0 && sweep < 0.0)
      sweep += 2.0 * kPiHere;
    AddArc(loop, cur, std::atan2(ay, ax), sweep, s);
    return;
  }
  // Turning toward the offset side: the two offset edges overlap; passing the
  // vertex keeps the winding of the overlap right.
  loop.Add(cur.x + s.radius * ax, cur.y + s.radius * ay);
  loop.Add(static_cast<double>(cur.x), static_cast<double>(cur.y));
  loop.Add(cur.x + s.radius * bx, cur.y + s.radius * by);
}

// Appends the raw offset of the ring v as one loop; `normals` is scratch.
void AddRawOffset(RawLoops& loops, const std::vector<Vertex>& v, const OffsetSide& s,
                  std::vector<Normal>& normals) {
  loops.BeginLoop();
  if (v.size() == 1) {
    AddArc(loops, v[0], 0.0, -s.side * 2.0 * kPiHere, s);
    return;
  }
  const size_t n = v.size();
  normals.resize(n);
  for (size_t i = 0; i < n; ++i) {
    const Vertex& from = v[i];
    const Vertex& to = v[(i + 1) % n];
    NormalOf(to.x - from.x, to.y - from.y, s, &normals[i].x, &normals[i].y);
  }
  for (size_t i = 0; i < n; ++i) {
    const size_t before = (i + n - 1) % n;
    AddJoin(loops, v[before], v[i], v[(i + 1) % n], normals[before], normals[i], s);
  }
}

void AddAsIs(RawLoops& loops, const std::vector<Vertex>& v) {
  loops.BeginLoop();
  for (const Vertex& p : v)
    loops.Add(static_cast<double>(p.x), static_cast<double>(p.y));
}

OffsetSide SideFor(int32_t distance) {
  OffsetSide s;
  s.radius = std::fabs(static_cast<double>(distance));
  s.side = distance < 0 ? 1 : -1;
  s.step = s.radius > kChordError ? 2.0 * std::acos(1.0 - kChordError / s.radius) : kPiHere;
  return s;
}

// Appends the loop that contour c adds to the offset, if any.
void AddOffsetLoop(RawLoops& loops, const M3dBorderContourLong& c, int32_t distance, const OffsetSide& s,
                   std::vector<Normal>& normals) {
  if (!c.GetIsClosed())
    return;
  const std::vector<Vertex> v = DistinctVertices(c);
  if (v.empty())
    return;
  const bool flat = v.size() < 3 || c.SurfaceAreaWithSignXY() == 0.0;
  if (flat && !(c.GetIsOuterContour() && distance < 0))
    return;
  if (distance == 0) {
    AddAsIs(loops, v);
  } else {
    AddRawOffset(loops, v, s, normals);
  }
}

// The region of positive winding of what was fed, appended to `rings`;
// returns the least winding met.
int32_t KeepPositive(M2dBoolean& engine, M3dBorderLong& rings) {
  engine.SplitClassifyAndFilter(0, M2dBoolean::kNoUpperBound);
  kelvor2d_detail::AppendRings(engine, rings);
  return engine.LeastWinding();
}

int32_t UniteLoops(const RawLoops& loops, M3dBorderLong& rings) {
  M2dBoolean engine;
  loops.Feed(engine);
  return KeepPositive(engine, rings);
}

// Unites groups of raw loops. Each group's union enters at level 0, and two
// unions of one level become one of the next, as in a binary counter, so at
// most one union per level is held. Uniting the unions is exact only when no
// group winds negatively anywhere; and as they are rounded to the grid, the
// boundary may move by up to a unit near their rounded points.
class StagedUnion {
 public:
  bool Empty() const { return m_stages.empty(); }
  // Adds the union of the loops; false, adding nothing, when some region of
  // them winds negatively.
  bool AddGroup(const RawLoops& loops) {
    auto rings = std::make_unique<M3dBorderLong>();
    if (UniteLoops(loops, *rings) < 0)
      return false;
    int level = 0;
    for (; !m_stages.empty() && m_stages.back().level == level; ++level) {
      rings = Unite(*m_stages.back().rings, *rings);
      m_stages.pop_back();
    }
    m_stages.push_back(Stage{level, std::move(rings)});
    return true;
  }
  // Unites what is held into `result`.
  void Finish(M3dBorderLong& result) {
    std::unique_ptr<M3dBorderLong> all = std::move(m_stages.back().rings);
    for (m_stages.pop_back(); !m_stages.empty(); m_stages.pop_back())
      all = Unite(*m_stages.back().rings, *all);
    result.Swap(*all);
  }

 private:
  struct Stage {
    int level;
    std::unique_ptr<M3dBorderLong> rings;
  };
  std::vector<Stage> m_stages;

  static std::unique_ptr<M3dBorderLong> Unite(const M3dBorderLong& a, const M3dBorderLong& b) {
    M2dBoolean engine;
    kelvor2d_detail::FeedBorder(engine, a);
    kelvor2d_detail::FeedBorder(engine, b);
    auto united = std::make_unique<M3dBorderLong>();
    KeepPositive(engine, *united);
    return united;
  }
};

// Appends the raw loops of the input's contours; false, stopping there, once
// they hold more than `limit` points.
bool AddRawLoops(RawLoops& loops, const M3dBorderLong& input, int32_t distance, size_t limit) {
  const OffsetSide s = SideFor(distance);
  std::vector<Normal> normals;
  for (const M3dBorderContourLong& c : input) {
    AddOffsetLoop(loops, c, distance, s, normals);
    if (loops.PointCount() > limit)
      return false;
  }
  return true;
}

// The offset through groups of raw loops; false, leaving `result` as it was,
// when a group winds negatively.
bool OffsetInGroups(const M3dBorderLong& input, int32_t distance, M3dBorderLong& result) {
  const OffsetSide s = SideFor(distance);
  std::vector<Normal> normals;
  RawLoops loops;
  StagedUnion groups;
  for (const M3dBorderContourLong& c : input) {
    AddOffsetLoop(loops, c, distance, s, normals);
    if (loops.PointCount() < kGroupPoints)
      continue;
    if (!groups.AddGroup(loops))
      return false;
    loops.Clear();
  }
  if (loops.PointCount() > 0 && !groups.AddGroup(loops))
    return false;
  groups.Finish(result);
  return true;
}

}  // namespace

M2dOffsetter::M2dOffsetter() : result(&m_result) {}

M2dOffsetter::~M2dOffsetter() {}

void M2dOffsetter::CreateOffset(int32_t distance) {
  m_result.MakeEmpty();
  RawLoops loops;
  const size_t limit = distance == 0 ? SIZE_MAX : kOnePassPoints;
  if (!AddRawLoops(loops, input, distance, limit)) {
    loops.Clear();
    if (OffsetInGroups(input, distance, m_result))
      return;
    AddRawLoops(loops, input, distance, SIZE_MAX);
  }
  UniteLoops(loops, m_result);
}

void M2dOffsetter::Clear() {
  m_result.MakeEmpty();
}
