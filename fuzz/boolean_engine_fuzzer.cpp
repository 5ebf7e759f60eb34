// libFuzzer target for the boolean engine through its contour-layer front-ends.
// The input bytes become two small layers (a few rings of a few points on a
// 16 x 16 grid, optionally stretched to the ends of the coordinate range;
// degenerate, self-crossing and touching rings included). Union, intersection
// and difference must give closed, simple contours turned and flagged as outer
// or hole, built only from input points and crossings, and areas that obey
// area(A) + area(B) = area(A or B) + area(A and B) and
// area(A minus B) = area(A or B) - area(B).
//
// Result contours carry the whole part of each crossing point, so a vertex
// that comes from a crossing off the grid lies up to one unit off in each
// axis ("loose"). The area identities allow the area that moving the loose
// vertices can sweep; the simplicity and turning checks pass over edges and
// slivers that a loose vertex may have bent. Everything made only of input
// points and crossings on the grid is checked exactly.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <utility>
#include <vector>

#include "bridges/boolean_front_ends.h"

namespace {

using Int128 = __int128;
using GridPoint = std::pair<int64_t, int64_t>;

constexpr int kGridSide = 16;
constexpr int kMaxRings = 5;
constexpr int kMaxRingPoints = 9;
// Scaled modes: the grid spread over the range whose sums and differences fit
// in 32 bits, over the whole 32-bit range, or packed at its upper or lower end.
constexpr int64_t kContractHalf = int64_t{1} << 30;
constexpr int64_t kContractStep = (2 * kContractHalf - 1) / (kGridSide - 1);
constexpr int64_t kFullStep = (int64_t{UINT32_MAX}) / (kGridSide - 1);

void Check(bool condition) {
  if (!condition) {
    __builtin_trap();
  }
}

// The input bytes, read front to back; zeros once they run out.
struct ByteSource {
  const uint8_t* data;
  size_t size;
  size_t position = 0;

  uint8_t Next() { return position < size ? data[position++] : 0; }
};

int32_t MapCoordinate(int grid, uint8_t mode) {
  switch (mode) {
    case 1:
      return static_cast<int32_t>(-kContractHalf + grid * kContractStep);
    case 2:
      return static_cast<int32_t>(int64_t{INT32_MIN} + grid * kFullStep);
    case 3:
      return static_cast<int32_t>(kContractHalf - kGridSide + grid);
    case 4:
      return static_cast<int32_t>(-kContractHalf + grid);
    default:
      return grid;
  }
}

// One ring: a header byte (point count in the low nibble; bit 4 open; bit 5
// flags as counter-clockwise; bits 6 and 7 Outer and RightHanded when the
// layer is flagged), then one byte per point, x in the low nibble, y in the high.
CONTOUR* DecodeRing(ByteSource& in, uint8_t mode, bool flagged) {
  const uint8_t header = in.Next();
  auto* c = new CONTOUR();
  c->NumPoints = (header & 0x0F) % kMaxRingPoints;
  c->Closed = (header & 0x10) != 0 ? 0 : 1;
  const bool clockwise = (header & 0x20) == 0;
  c->Outer = flagged ? static_cast<unsigned char>((header >> 6) & 1) : clockwise;
  c->RightHanded = flagged ? static_cast<unsigned char>(header >> 7) : clockwise;
  c->Points = static_cast<MMPoint2d<long>*>(malloc(sizeof(MMPoint2d<long>) * (c->NumPoints + 1)));
  for (int32_t i = 0; i < c->NumPoints; ++i) {
    const uint8_t b = in.Next();
    c->Points[i].x = MapCoordinate(b % kGridSide, mode);
    c->Points[i].y = MapCoordinate(b / kGridSide, mode);
  }
  return c;
}

void DecodeLayer(ByteSource& in, uint8_t mode, bool flagged, CONTOUR_LAYER& layer) {
  const int rings = in.Next() % (kMaxRings + 1);
  for (int r = 0; r < rings; ++r) {
    layer.AddContourAtEnd(DecodeRing(in, mode, flagged));
  }
}

struct Segment {
  GridPoint from, to;
};

// The points of every contour as the front-ends feed them: closed contours
// back to point 0, open ones from their second-to-last point back to point 0.
std::vector<std::vector<GridPoint>> FedLoops(const CONTOUR_LAYER& layer) {
  std::vector<std::vector<GridPoint>> loops;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    const int32_t m = c->Closed != 0 ? c->NumPoints : c->NumPoints - 1;
    std::vector<GridPoint> loop;
    for (int32_t i = 0; i < m || (i == 0 && c->NumPoints > 0); ++i) {
      loop.push_back({c->Points[i].x, c->Points[i].y});
    }
    loops.push_back(loop);
  }
  return loops;
}

Int128 Cross(int64_t ax, int64_t ay, int64_t bx, int64_t by) {
  return static_cast<Int128>(ax) * by - static_cast<Int128>(ay) * bx;
}

Int128 FloorDivide(Int128 numerator, Int128 denominator) {
  Int128 q = numerator / denominator;
  if ((numerator % denominator != 0) && ((numerator < 0) != (denominator < 0))) {
    --q;
  }
  return q;
}

// What a result point may be: an input point, a crossing on the grid, or the
// whole part of a crossing off the grid (loose).
struct PointOrigins {
  std::set<GridPoint> exact;
  std::set<GridPoint> loose;
};

// Records where s and t meet in one point (a touch at an end gives an input point again).
void RecordCrossing(const Segment& s, const Segment& t, PointOrigins& origins) {
  const int64_t dx = s.to.first - s.from.first, dy = s.to.second - s.from.second;
  const int64_t ex = t.to.first - t.from.first, ey = t.to.second - t.from.second;
  Int128 denominator = Cross(dx, dy, ex, ey);
  if (denominator == 0) {
    return;  // parallel or collinear: overlaps end at input points
  }
  const int64_t fx = t.from.first - s.from.first, fy = t.from.second - s.from.second;
  Int128 along = Cross(fx, fy, ex, ey), across = Cross(fx, fy, dx, dy);
  if (denominator < 0) {
    denominator = -denominator;
    along = -along;
    across = -across;
  }
  if (along < 0 || along > denominator || across < 0 || across > denominator) {
    return;
  }
  const Int128 nx = along * dx, ny = along * dy;
  const GridPoint whole{static_cast<int64_t>(s.from.first + FloorDivide(nx, denominator)),
                        static_cast<int64_t>(s.from.second + FloorDivide(ny, denominator))};
  const bool onGrid = nx % denominator == 0 && ny % denominator == 0;
  (onGrid ? origins.exact : origins.loose).insert(whole);
}

PointOrigins OriginsOf(const CONTOUR_LAYER& a, const CONTOUR_LAYER& b) {
  PointOrigins origins;
  std::vector<Segment> segments;
  for (const CONTOUR_LAYER* layer : {&a, &b}) {
    for (const std::vector<GridPoint>& loop : FedLoops(*layer)) {
      for (size_t i = 0; i < loop.size(); ++i) {
        origins.exact.insert(loop[i]);
        segments.push_back({loop[i], loop[(i + 1) % loop.size()]});
      }
    }
  }
  for (size_t i = 0; i < segments.size(); ++i) {
    for (size_t j = i + 1; j < segments.size(); ++j) {
      RecordCrossing(segments[i], segments[j], origins);
    }
  }
  return origins;
}

int Orientation(const GridPoint& a, const GridPoint& b, const GridPoint& c) {
  const Int128 cross = Cross(b.first - a.first, b.second - a.second, c.first - a.first, c.second - a.second);
  return cross > 0 ? 1 : cross < 0 ? -1 : 0;
}

bool Between(const GridPoint& a, const GridPoint& b, const GridPoint& p) {
  return std::min(a.first, b.first) <= p.first && p.first <= std::max(a.first, b.first) &&
         std::min(a.second, b.second) <= p.second && p.second <= std::max(a.second, b.second);
}

// True when the closed segments ab and cd share a point.
bool SegmentsMeet(const GridPoint& a, const GridPoint& b, const GridPoint& c, const GridPoint& d) {
  const int o1 = Orientation(a, b, c), o2 = Orientation(a, b, d);
  const int o3 = Orientation(c, d, a), o4 = Orientation(c, d, b);
  if (o1 * o2 < 0 && o3 * o4 < 0) {
    return true;
  }
  return (o1 == 0 && Between(a, b, c)) || (o2 == 0 && Between(a, b, d)) || (o3 == 0 && Between(c, d, a)) ||
         (o4 == 0 && Between(c, d, b));
}

// True when the edges b->c after a->b meet beyond b: a zero-length edge or a fold back.
bool FoldsBack(const GridPoint& a, const GridPoint& b, const GridPoint& c) {
  if (a == b || b == c) {
    return true;
  }
  const Int128 dot = static_cast<Int128>(a.first - b.first) * (c.first - b.first) +
                     static_cast<Int128>(a.second - b.second) * (c.second - b.second);
  return Orientation(a, b, c) == 0 && dot > 0;
}

// No two edges meet except consecutive ones at their shared point; edges that
// touch a loose vertex are passed over.
void CheckSimple(const std::vector<GridPoint>& p, const std::vector<bool>& loose) {
  const size_t n = p.size();
  auto edgeLoose = [&](size_t i) { return loose[i] || loose[(i + 1) % n]; };
  for (size_t i = 0; i < n; ++i) {
    const size_t next = (i + 1) % n;
    if (!edgeLoose(i) && !loose[(next + 1) % n]) {
      Check(!FoldsBack(p[i], p[next], p[(next + 1) % n]));
    }
    for (size_t j = i + 2; j < n; ++j) {
      if ((j + 1) % n == i || edgeLoose(i) || edgeLoose(j)) {
        continue;
      }
      Check(!SegmentsMeet(p[i], p[next], p[j], p[(j + 1) % n]));
    }
  }
}

Int128 Magnitude(Int128 v) {
  return v < 0 ? -v : v;
}

int64_t TaxicabLength(const GridPoint& a, const GridPoint& b) {
  return std::llabs(a.first - b.first) + std::llabs(a.second - b.second);
}

// Checks one result contour; returns twice the area that its loose vertices
// may sweep, and adds twice its signed area (clockwise positive) to *area.
Int128 CheckContour(const CONTOUR& c, const PointOrigins& origins, Int128* area) {
  Check(c.Closed == 1 && c.NumPoints >= 3 && c.Outer == c.RightHanded && c.Outer <= 1);
  const size_t n = static_cast<size_t>(c.NumPoints);
  std::vector<GridPoint> p(n);
  std::vector<bool> loose(n);
  for (size_t i = 0; i < n; ++i) {
    p[i] = {c.Points[i].x, c.Points[i].y};
    loose[i] = origins.loose.count(p[i]) != 0;
    Check(loose[i] || origins.exact.count(p[i]) != 0);  // no point from nowhere
  }
  Int128 doubled = 0, sweep = 0;
  for (size_t i = 0; i < n; ++i) {
    const GridPoint& q = p[(i + 1) % n];
    doubled += static_cast<Int128>(q.first - p[i].first) * (q.second + p[i].second);
    if (loose[i]) {
      sweep += TaxicabLength(p[(i + n - 1) % n], p[i]) + TaxicabLength(p[i], q) + 8;
    }
  }
  CheckSimple(p, loose);
  Check(sweep != 0 || doubled != 0);
  if (Magnitude(doubled) > sweep) {
    Check((doubled > 0) == (c.Outer == 1));
  }
  *area += doubled;
  return sweep;
}

// A result layer measured: twice its area and twice the area its loose vertices may sweep.
struct Measure {
  Int128 area = 0;
  Int128 sweep = 0;
};

Measure CheckLayer(const CONTOUR_LAYER& layer, const PointOrigins& origins) {
  Measure m;
  int32_t count = 0;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    m.sweep += CheckContour(*c, origins, &m.area);
    ++count;
  }
  Check(count == layer.NumContours);
  return m;
}

// The three operations on a and b, each result checked; their measures.
struct Results {
  Measure unite, intersect, subtract;
};

Results RunOperations(const CONTOUR_LAYER& a, const CONTOUR_LAYER& b) {
  const PointOrigins origins = OriginsOf(a, b);
  CONTOUR_LAYER result;
  Results r;
  AU::BooleanUnite(a, b, result, nullptr);
  r.unite = CheckLayer(result, origins);
  AU::BooleanIntersect(a, b, result, nullptr);
  r.intersect = CheckLayer(result, origins);
  AU::BooleanSubtract(a, b, result, nullptr);
  r.subtract = CheckLayer(result, origins);
  result.LEEG_LAAG();
  return r;
}

// The region of positive winding of a raw layer, as the union with nothing.
Measure Normalize(const CONTOUR_LAYER& raw, CONTOUR_LAYER& region) {
  const CONTOUR_LAYER nothing;
  AU::BooleanUnite(raw, nothing, region, nullptr);
  return CheckLayer(region, OriginsOf(raw, nothing));
}

void CheckAreas(const Measure& a, const Measure& b, const Results& r) {
  const Int128 inputs = 2 * (a.sweep + b.sweep);
  const Int128 first = inputs + 2 * (r.unite.sweep + r.intersect.sweep);
  Check(Magnitude(a.area + b.area - r.unite.area - r.intersect.area) <= first);
  const Int128 second = inputs + 2 * (r.unite.sweep + r.subtract.sweep);
  Check(Magnitude(r.subtract.area - (r.unite.area - b.area)) <= second);
}

}  // namespace

// Input: a mode byte (coordinate scaling in the low bits, whether the raw
// layers carry arbitrary Outer/RightHanded flags in bit 3), then the two layers.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ByteSource in{data, size};
  const uint8_t mode = in.Next();
  const bool flagged = (mode & 0x08) != 0;
  CONTOUR_LAYER rawA, rawB, a, b;
  DecodeLayer(in, mode % 8, flagged, rawA);
  DecodeLayer(in, mode % 8, flagged, rawB);
  RunOperations(rawA, rawB);  // raw operands: shape checks only, windings may exceed 1
  const Measure areaA = Normalize(rawA, a), areaB = Normalize(rawB, b);
  CheckAreas(areaA, areaB, RunOperations(a, b));
  for (CONTOUR_LAYER* layer : {&rawA, &rawB, &a, &b}) {
    layer->LEEG_LAAG();
  }
  return 0;
}
