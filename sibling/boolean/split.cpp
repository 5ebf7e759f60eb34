// Splitting the fed lines: a uniform grid proposes pairs of carriers, exact
// predicates decide where they cross, touch or overlap, and the pieces along
// each carrier become edges.
#include <algorithm>
#include <cmath>
#include <utility>

#include "sibling/boolean/sweep.h"

namespace kelvor_boolean {

namespace {

constexpr uint32_t kMaxGridSide = 8192;
constexpr double kCellsPerCarrier = 4.0;
constexpr uint64_t kKeyTop = (static_cast<uint64_t>(1) << 62) - 1;

struct Grid {
  double originX;
  double originY;
  double cellWidth;
  double cellHeight;
  uint32_t columns;
  uint32_t rows;
};

// A point on a carrier with its position along it (dominant axis, reversed
// for carriers running down that axis), so that sorting reads no point.
struct SplitPoint {
  uint32_t carrier;
  int32_t whole;
  uint64_t key;
  M2dGraphPoint* point;
  uint32_t index;  // the point's index
};

uint32_t ClampCell(double v, uint32_t count) {
  if (!(v > 0.0))
    return 0;
  if (v >= static_cast<double>(count - 1))
    return count - 1;
  return static_cast<uint32_t>(v);
}

Grid MakeGrid(const std::vector<Carrier>& carriers) {
  double minX = carriers[0].minX, maxX = carriers[0].maxX, minY = carriers[0].minY, maxY = carriers[0].maxY;
  for (const Carrier& c : carriers) {
    minX = std::min<double>(minX, c.minX);
    maxX = std::max<double>(maxX, c.maxX);
    minY = std::min<double>(minY, c.minY);
    maxY = std::max<double>(maxY, c.maxY);
  }
  const double width = std::max(maxX - minX, 1.0), height = std::max(maxY - minY, 1.0);
  const double cells = kCellsPerCarrier * static_cast<double>(carriers.size());
  const double side = std::sqrt(cells * width / height);
  Grid grid;
  grid.columns = std::max<uint32_t>(1, std::min<uint32_t>(kMaxGridSide, static_cast<uint32_t>(side)));
  grid.rows =
      std::max<uint32_t>(1, std::min<uint32_t>(kMaxGridSide, static_cast<uint32_t>(cells / grid.columns)));
  // Cells of at least one unit, so that rounding of a crossing is far below
  // the slack of the cell test.
  grid.columns = std::min<uint32_t>(grid.columns, static_cast<uint32_t>(std::max(1.0, std::floor(width))));
  grid.rows = std::min<uint32_t>(grid.rows, static_cast<uint32_t>(std::max(1.0, std::floor(height))));
  grid.originX = minX;
  grid.originY = minY;
  grid.cellWidth = width / grid.columns * (1.0 + 1e-9);
  grid.cellHeight = height / grid.rows * (1.0 + 1e-9);
  return grid;
}

// Calls f(cell) for every cell the carrier may pass (a superset: one unit of
// margin along x in every row).
template <class F>
void ForEachCellOf(const Grid& g, const Carrier& c, F f) {
  const double ax = c.fromX, ay = c.fromY, bx = c.toX, by = c.toY;
  const double lowY = std::min(ay, by), highY = std::max(ay, by);
  const uint32_t r0 = ClampCell((lowY - g.originY) / g.cellHeight, g.rows);
  const uint32_t r1 = ClampCell((highY - g.originY) / g.cellHeight, g.rows);
  constexpr double kMargin = 1.0;
  for (uint32_t r = r0; r <= r1; ++r) {
    double x0 = std::min(ax, bx), x1 = std::max(ax, bx);
    if (r0 != r1) {
      const double y0 = std::max(lowY, g.originY + r * g.cellHeight);
      const double y1 = std::min(highY, g.originY + (r + 1) * g.cellHeight);
      const double xa = ax + (y0 - ay) * (bx - ax) / (by - ay);
      const double xb = ax + (y1 - ay) * (bx - ax) / (by - ay);
      x0 = std::max(x0, std::min(xa, xb) - kMargin);
      x1 = std::min(x1, std::max(xa, xb) + kMargin);
    }
    const uint32_t c0 = ClampCell((x0 - g.originX) / g.cellWidth, g.columns);
    const uint32_t c1 = ClampCell((x1 - g.originX) / g.cellWidth, g.columns);
    for (uint32_t col = c0; col <= c1; ++col)
      f(r * g.columns + col);
  }
}

// A carrier listed in a cell, copied so that the pair filter and the pair
// tests read the cell's list only. Used while the lists stay short (few cells
// per carrier); long carriers are listed by number.
struct CellMember {
  Carrier carrier;  // a copy of the carrier
  uint32_t index;   // its number
};

constexpr uint32_t kCopiedCellsPerCarrier = 4;

const Carrier& CarrierOf(const std::vector<Carrier>&, const CellMember& m) {
  return m.carrier;
}
const Carrier& CarrierOf(const std::vector<Carrier>& carriers, uint32_t m) {
  return carriers[m];
}
uint32_t IndexOf(const CellMember& m) {
  return m.index;
}
uint32_t IndexOf(uint32_t m) {
  return m;
}
void MakeMember(const std::vector<Carrier>& carriers, uint32_t i, CellMember* m) {
  *m = CellMember{carriers[i], i};
}
void MakeMember(const std::vector<Carrier>&, uint32_t i, uint32_t* m) {
  *m = i;
}

bool BoxesMeet(const Carrier& a, const Carrier& b) {
  return a.maxX >= b.minX && b.maxX >= a.minX && a.maxY >= b.minY && b.maxY >= a.minY;
}

// Lists the carriers by cell (`start` holds the cell offsets) and calls
// visit for every pair in a cell whose boxes meet, cell by cell.
template <class Member, class Visit>
void VisitCellPairs(const Grid& grid, const std::vector<Carrier>& carriers,
                    const std::vector<uint32_t>& start, Visit visit) {
  std::vector<uint32_t> fill(start.begin(), start.end() - 1);
  std::vector<Member> members(start.back());
  for (uint32_t i = 0; i < carriers.size(); ++i) {
    Member member;
    MakeMember(carriers, i, &member);
    ForEachCellOf(grid, carriers[i], [&](uint32_t cell) { members[fill[cell]++] = member; });
  }
  for (uint32_t cell = 0; cell + 1 < start.size(); ++cell) {
    for (uint32_t a = start[cell]; a < start[cell + 1]; ++a) {
      const Carrier& first = CarrierOf(carriers, members[a]);
      for (uint32_t b = a + 1; b < start[cell + 1]; ++b) {
        const Carrier& second = CarrierOf(carriers, members[b]);
        if (BoxesMeet(first, second))
          visit(first, IndexOf(members[a]), second, IndexOf(members[b]), cell);
      }
    }
  }
}

// Calls visit(a, i, b, j, cell) for every pair of carriers a (number i) and
// b (number j) sharing a grid cell whose boxes meet, once per shared cell.
template <class Visit>
void ForEachCandidatePair(const Grid& grid, const std::vector<Carrier>& carriers, Visit visit) {
  std::vector<uint32_t> start(static_cast<size_t>(grid.columns) * grid.rows + 1, 0);
  for (const Carrier& c : carriers)
    ForEachCellOf(grid, c, [&start](uint32_t cell) { ++start[cell + 1]; });
  for (size_t k = 1; k < start.size(); ++k)
    start[k] += start[k - 1];
  if (start.back() <= static_cast<size_t>(kCopiedCellsPerCarrier) * carriers.size()) {
    VisitCellPairs<CellMember>(grid, carriers, start, visit);
  } else {
    VisitCellPairs<uint32_t>(grid, carriers, start, visit);
  }
}

// True when grid point (px, py) lies on carrier c strictly between its ends.
bool LiesInside(const Carrier& c, int64_t px, int64_t py) {
  if (Orientation(c.fromX, c.fromY, c.toX, c.toY, px, py) != 0)
    return false;
  const Int128 ux = static_cast<int64_t>(c.toX) - c.fromX, uy = static_cast<int64_t>(c.toY) - c.fromY;
  const Int128 along = ux * (px - c.fromX) + uy * (py - c.fromY);
  return along > 0 && along < ux * ux + uy * uy;
}

// The splitting state: every split belongs to the one grid cell that holds
// its point (a point near a cell border to both), so a pair met in several
// cells splits once.
class Splitter {
 public:
  Splitter(M2dGraph& graph, const std::vector<Carrier>& carriers, const Grid& grid)
      : m_graph(graph), m_grid(grid), m_overlapping(carriers.size(), 0) {}

  std::vector<SplitPoint> splits;

  bool Overlaps(uint32_t carrier) const { return m_overlapping[carrier] != 0; }

  void SplitPair(const Carrier& a, uint32_t i, const Carrier& b, uint32_t j, uint32_t cell) {
    if (!CellMeetsBox(cell, std::max(a.minX, b.minX), std::max(a.minY, b.minY), std::min(a.maxX, b.maxX),
                      std::min(a.maxY, b.maxY))) {
      return;
    }
    ExactCoordinates c;
    if (ProperCrossing(a.fromX, a.fromY, a.toX, a.toY, b.fromX, b.fromY, b.toX, b.toY, &c)) {
      if (!Owns(cell, ExactToDouble(c.x, c.xFraction, c.denominator),
                ExactToDouble(c.y, c.yFraction, c.denominator))) {
        return;
      }
      M2dGraphPoint* p = m_graph.GetExactPoint(c);
      Add(a, i, p);
      Add(b, j, p);
      return;
    }
    if (Orientation(a.fromX, a.fromY, a.toX, a.toY, b.fromX, b.fromY) == 0 &&
        Orientation(a.fromX, a.fromY, a.toX, a.toY, b.toX, b.toY) == 0) {
      m_overlapping[i] = m_overlapping[j] = 1;
    }
    AddEndsInside(cell, b, a, i);
    AddEndsInside(cell, a, b, j);
  }

  void Add(const Carrier& c, uint32_t carrier, M2dGraphPoint* p) {
    const int64_t dx = static_cast<int64_t>(c.toX) - c.fromX;
    const int64_t dy = static_cast<int64_t>(c.toY) - c.fromY;
    const bool alongX = (dx < 0 ? -dx : dx) >= (dy < 0 ? -dy : dy);
    int32_t whole = alongX ? p->x : p->y;
    uint64_t key = alongX ? p->xKey : p->yKey;
    if ((alongX ? dx : dy) < 0) {
      whole = ~whole;  // -whole - 1, without overflow at INT32_MIN
      key = kKeyTop - key;
    }
    splits.push_back({carrier, whole, key, p, p->index});
  }

 private:
  M2dGraph& m_graph;
  const Grid& m_grid;
  std::vector<char> m_overlapping;  // carriers that run along another one

  // True when the cell (with slack) meets the box where the pair can meet.
  bool CellMeetsBox(uint32_t cell, double x0, double y0, double x1, double y1) const {
    const double col0 = cell % m_grid.columns, row0 = cell / m_grid.columns;
    constexpr double kSlack = 1e-6;
    return (x1 - m_grid.originX) / m_grid.cellWidth >= col0 - kSlack &&
           (x0 - m_grid.originX) / m_grid.cellWidth <= col0 + 1 + kSlack &&
           (y1 - m_grid.originY) / m_grid.cellHeight >= row0 - kSlack &&
           (y0 - m_grid.originY) / m_grid.cellHeight <= row0 + 1 + kSlack;
  }

  // Splits carrier `onto` (number `ontoIndex`) at the ends of `ends` that
  // lie inside it, in this cell.
  void AddEndsInside(uint32_t cell, const Carrier& ends, const Carrier& onto, uint32_t ontoIndex) {
    if (Owns(cell, ends.fromX, ends.fromY) && LiesInside(onto, ends.fromX, ends.fromY))
      Add(onto, ontoIndex, ends.from);
    if (Owns(cell, ends.toX, ends.toY) && LiesInside(onto, ends.toX, ends.toY))
      Add(onto, ontoIndex, ends.to);
  }

  bool Owns(uint32_t cell, double x, double y) const {
    const double column = (x - m_grid.originX) / m_grid.cellWidth;
    const double row = (y - m_grid.originY) / m_grid.cellHeight;
    const double col0 = cell % m_grid.columns, row0 = cell / m_grid.columns;
    constexpr double kSlack = 1e-6;
    const bool inColumn =
        (col0 == 0 || column >= col0 - kSlack) && (col0 + 1 == m_grid.columns || column <= col0 + 1 + kSlack);
    const bool inRow =
        (row0 == 0 || row >= row0 - kSlack) && (row0 + 1 == m_grid.rows || row <= row0 + 1 + kSlack);
    return inColumn && inRow;
  }
};

// Exact order of two distinct points of one carrier whose keys tie.
bool ExactlyBefore(const Carrier& c, const M2dGraphPoint* p, const M2dGraphPoint* q) {
  const int64_t dx = static_cast<int64_t>(c.toX) - c.fromX;
  const int64_t dy = static_cast<int64_t>(c.toY) - c.fromY;
  if ((dx < 0 ? -dx : dx) >= (dy < 0 ? -dy : dy)) {
    const int cmp = ComparePointX(p, q);
    return dx > 0 ? cmp < 0 : cmp > 0;
  }
  const int cmp = ComparePointY(p, q);
  return dy > 0 ? cmp < 0 : cmp > 0;
}

bool ComesFirst(const std::vector<Carrier>& carriers, const SplitPoint& s, const SplitPoint& t) {
  if (s.whole != t.whole)
    return s.whole < t.whole;
  if (s.key != t.key)
    return s.key < t.key;
  return s.point != t.point && ExactlyBefore(carriers[s.carrier], s.point, t.point);
}

// Groups the splits by carrier (counting sort), orders each group along its
// carrier and drops repeated points.
void SortAlongCarriers(const std::vector<Carrier>& carriers, std::vector<SplitPoint>& splits) {
  std::vector<uint32_t> start(carriers.size() + 1, 0);
  for (const SplitPoint& s : splits)
    ++start[s.carrier + 1];
  for (size_t k = 1; k < start.size(); ++k)
    start[k] += start[k - 1];
  std::vector<SplitPoint> grouped(splits.size());
  std::vector<uint32_t> fill(start.begin(), start.end() - 1);
  for (const SplitPoint& s : splits)
    grouped[fill[s.carrier]++] = s;
  auto before = [&carriers](const SplitPoint& s, const SplitPoint& t) { return ComesFirst(carriers, s, t); };
  for (size_t c = 0; c < carriers.size(); ++c) {
    std::sort(grouped.begin() + start[c], grouped.begin() + start[c + 1], before);
  }
  grouped.erase(std::unique(grouped.begin(), grouped.end(),
                            [](const SplitPoint& s, const SplitPoint& t) {
                              return s.carrier == t.carrier && s.point == t.point;
                            }),
                grouped.end());
  splits.swap(grouped);
}

Edge MakeEdge(const Carrier& c, const SplitPoint& p, const SplitPoint& q) {
  Edge e{};
  const bool forward = p.index < q.index;
  e.lo = forward ? p.point : q.point;
  e.hi = forward ? q.point : p.point;
  e.anchorX = c.fromX;
  e.anchorY = c.fromY;
  const int64_t dx = static_cast<int64_t>(c.toX) - c.fromX;
  const int64_t dy = static_cast<int64_t>(c.toY) - c.fromY;
  e.directionX = forward ? dx : -dx;
  e.directionY = forward ? dy : -dy;
  e.multiplicity = forward ? 1 : -1;
  return e;
}

// Coincident pieces (of overlapping carriers, which come last) become one
// edge with the sum of their multiplicities; edges whose sum is 0 separate
// nothing and go.
void MergeCoincidentEdges(std::vector<Edge>& edges, size_t firstOverlapping) {
  std::sort(edges.begin() + firstOverlapping, edges.end(), [](const Edge& a, const Edge& b) {
    return a.lo->index != b.lo->index ? a.lo->index < b.lo->index : a.hi->index < b.hi->index;
  });
  size_t out = firstOverlapping;
  for (size_t i = firstOverlapping; i < edges.size();) {
    Edge merged = edges[i];
    size_t j = i + 1;
    for (; j < edges.size() && edges[j].lo == merged.lo && edges[j].hi == merged.hi; ++j) {
      merged.multiplicity += edges[j].multiplicity;
    }
    if (merged.multiplicity != 0)
      edges[out++] = merged;
    i = j;
  }
  edges.resize(out);
}

}  // namespace

Carrier MakeCarrier(M2dGraphPoint* from, M2dGraphPoint* to) {
  return {from,
          to,
          std::min(from->x, to->x),
          std::min(from->y, to->y),
          std::max(from->x, to->x),
          std::max(from->y, to->y),
          from->x,
          from->y,
          to->x,
          to->y};
}

std::vector<Edge> SplitIntoEdges(M2dGraph& graph, const std::vector<Carrier>& carriers) {
  if (carriers.empty())
    return {};
  const Grid grid = MakeGrid(carriers);
  Splitter splitter(graph, carriers, grid);
  splitter.splits.reserve(carriers.size() * 3);
  for (uint32_t i = 0; i < carriers.size(); ++i) {
    splitter.Add(carriers[i], i, carriers[i].from);
    splitter.Add(carriers[i], i, carriers[i].to);
  }
  ForEachCandidatePair(
      grid, carriers, [&splitter](const Carrier& a, uint32_t i, const Carrier& b, uint32_t j, uint32_t cell) {
        splitter.SplitPair(a, i, b, j, cell);
      });
  std::vector<SplitPoint>& splits = splitter.splits;
  SortAlongCarriers(carriers, splits);
  std::vector<Edge> edges, overlapping;
  edges.reserve(splits.size());
  for (size_t k = 0; k + 1 < splits.size(); ++k) {
    if (splits[k].carrier != splits[k + 1].carrier)
      continue;
    const Edge e = MakeEdge(carriers[splits[k].carrier], splits[k], splits[k + 1]);
    (splitter.Overlaps(splits[k].carrier) ? overlapping : edges).push_back(e);
  }
  const size_t firstOverlapping = edges.size();
  edges.insert(edges.end(), overlapping.begin(), overlapping.end());
  MergeCoincidentEdges(edges, firstOverlapping);
  return edges;
}

}  // namespace kelvor_boolean
