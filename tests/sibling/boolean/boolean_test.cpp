// Tests of the boolean engine: exact predicates, hand-checked booleans, and
// properties of random inputs (inclusion-exclusion, simplicity, a cell oracle).
#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "sibling/boolean/boolean.h"
#include "support/boolean_rings.h"
#include "support/rectangles.h"

using namespace testing_support;
using kelvor2d_detail::CompareFractions;
using kelvor2d_detail::ExactCoordinates;
using kelvor2d_detail::UInt128;

namespace {

struct Result {
  std::vector<Ring> rings;
  bool closed;
  double area;
};

// Runs one engine on the loops of a (and b, reversed when subtracting).
Result Combine(const std::vector<Loop>& a, const std::vector<Loop>& b, int16_t level, bool subtract,
               M2dBoolean& engine) {
  FeedLoops(engine, a);
  FeedLoops(engine, b, subtract);
  engine.SplitClassifyAndFilter(level, 32767);
  Result r;
  r.rings = WalkRings(engine, &r.closed);
  r.area = TotalArea(r.rings);
  return r;
}

void ExpectSimpleClosed(const Result& r, const std::string& input) {
  EXPECT_TRUE(r.closed) << input;
  for (const Ring& ring : r.rings)
    EXPECT_TRUE(RingIsSimple(ring)) << input;
}

TEST(ExactArithmetic, FractionsCompareExactlyNearOneAnother) {
  const UInt128 big = (static_cast<UInt128>(1) << 65) - 1;
  EXPECT_EQ(CompareFractions(1, 3, 2, 6), 0);
  EXPECT_EQ(CompareFractions(1, 3, 1, 2), -1);
  EXPECT_EQ(CompareFractions(big - 1, big, big - 2, big - 1), 1);
  EXPECT_EQ(CompareFractions(0, 5, 0, 7), 0);
  EXPECT_EQ(CompareFractions(7, 5, 3, 2), -1);
}

TEST(ExactArithmetic, ProperCrossingIsExact) {
  ExactCoordinates c;
  ASSERT_TRUE(kelvor2d_detail::ProperCrossing(0, 0, 3, 1, 0, 1, 3, 0, &c));
  EXPECT_EQ(c.x, 1);
  EXPECT_EQ(c.y, 0);
  EXPECT_EQ(CompareFractions(c.xFraction, c.denominator, 1, 2), 0);
  EXPECT_EQ(CompareFractions(c.yFraction, c.denominator, 1, 2), 0);
  // Touching at an end or running collinear is no proper crossing.
  EXPECT_FALSE(kelvor2d_detail::ProperCrossing(0, 0, 2, 2, 2, 2, 4, 0, &c));
  EXPECT_FALSE(kelvor2d_detail::ProperCrossing(0, 0, 4, 0, 1, 0, 6, 0, &c));
  // Crossing at the ends of the 32-bit range, with a negative whole part.
  ASSERT_TRUE(kelvor2d_detail::ProperCrossing(INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX, INT32_MIN,
                                              INT32_MAX, INT32_MAX, INT32_MIN - 0LL, &c));
  EXPECT_EQ(c.x, -1);
  EXPECT_EQ(c.y, -1);
  EXPECT_EQ(CompareFractions(c.xFraction, c.denominator, 1, 2), 0);
  // Segments crossing at a grid point far out give that point, though the
  // quotient's double estimate often misses it by one.
  std::mt19937 random(5);
  auto any = [&random] { return static_cast<int64_t>(static_cast<int32_t>(random()) / 4); };
  for (int k = 0; k < 1000; ++k) {
    const int64_t px = any(), py = any(), ux = any(), uy = any(), vx = any(), vy = any();
    ASSERT_TRUE(kelvor2d_detail::ProperCrossing(px - ux, py - uy, px + ux, py + uy, px - vx, py - vy, px + vx,
                                                py + vy, &c));
    EXPECT_TRUE(c.x == px && c.y == py && c.xFraction == 0 && c.yFraction == 0) << k;
  }
}

TEST(ExactArithmetic, FloorQuotientIsExactOverTheWholeRange) {
  std::mt19937_64 random(13);
  for (int k = 0; k < 20000; ++k) {
    // Denominators up to 2^65 and numerators up to 2^62 times them, as the
    // sort keys of crossing points ask for.
    const UInt128 d = ((static_cast<UInt128>(random() & 1) << 64) | random()) + 1;
    const UInt128 q = random() >> (2 + k % 60);
    const UInt128 r = (static_cast<UInt128>(random()) << 64 | random()) % d;
    EXPECT_TRUE(kelvor2d_detail::FloorQuotient(q * d + r, d) == q) << k;
  }
  EXPECT_TRUE(kelvor2d_detail::FloorQuotient(0, 7) == 0);
  EXPECT_TRUE(kelvor2d_detail::FloorQuotient(6, 7) == 0);
  EXPECT_TRUE(kelvor2d_detail::FloorQuotient(7, 7) == 1);
}

TEST(ExactArithmetic, OrientationOfExactPointSeesTinyOffsets) {
  ExactCoordinates p{};
  p.x = 5;
  p.y = 4;
  p.denominator = (static_cast<UInt128>(1) << 64) + 1;
  p.yFraction = p.denominator - 1;  // y just below 5
  EXPECT_EQ(kelvor2d_detail::OrientationOfExact(0, 5, 10, 0, p), -1);
  p.yFraction = 0;
  p.y = 5;
  EXPECT_EQ(kelvor2d_detail::OrientationOfExact(0, 5, 10, 0, p), 0);
  EXPECT_EQ(kelvor2d_detail::OrientationOfExact(0, 5, -10, 0, p), 0);
}

TEST(ExactArithmetic, TurnOrderCountsFromTheReference) {
  // From (-1, 0), turning counter-clockwise: (0, -1) at 90, (1, 0) at 180, (0, 1) at 270, (-1, 0) last.
  EXPECT_TRUE(kelvor2d_detail::TurnsBeforeCounterClockwise(-1, 0, 0, -1, 1, 0));
  EXPECT_TRUE(kelvor2d_detail::TurnsBeforeCounterClockwise(-1, 0, 1, 0, 0, 1));
  EXPECT_TRUE(kelvor2d_detail::TurnsBeforeCounterClockwise(-1, 0, 0, 1, -1, 0));
  EXPECT_FALSE(kelvor2d_detail::TurnsBeforeCounterClockwise(-1, 0, -5, 0, 0, 1));
}

TEST(BooleanEngine, OverlappingSquares) {
  const std::vector<Loop> a = {Rectangle(0, 0, 10, 10)}, b = {Rectangle(5, 5, 15, 15)};
  struct Case {
    int16_t level;
    bool subtract;
    double area;
  } cases[] = {{0, false, 175.0}, {1, false, 25.0}, {0, true, 75.0}};
  for (const Case& c : cases) {
    M2dBoolean engine;
    const Result r = Combine(a, b, c.level, c.subtract, engine);
    EXPECT_DOUBLE_EQ(r.area, c.area) << c.level << " " << c.subtract;
    ASSERT_EQ(r.rings.size(), 1u);
    ExpectSimpleClosed(r, Describe(a) + Describe(b));
    EXPECT_EQ(engine.GetNumShells(), 2u);
  }
}

TEST(BooleanEngine, TouchingSquaresStaySeparateSimpleRings) {
  const std::vector<Loop> a = {Rectangle(0, 0, 10, 10), Rectangle(20, 0, 30, 10)},
                          b = {Rectangle(10, 10, 20, 20)};
  M2dBoolean engine;
  const Result r = Combine(a, b, 0, false, engine);
  EXPECT_EQ(r.rings.size(), 3u);
  EXPECT_DOUBLE_EQ(r.area, 300.0);
  ExpectSimpleClosed(r, "corner-touching squares");
  for (const Ring& ring : r.rings)
    EXPECT_DOUBLE_EQ(RingArea(ring), 100.0);
}

TEST(BooleanEngine, FedLinesTurnAtASharedCornerIntoTheirOwnWedge) {
  // Two clockwise triangles meeting at (0, 1000), walked as fed: each stays a ring.
  M2dBoolean engine;
  FeedLoops(engine, {{{0, 1000}, {-10, 990}, {-10, 1010}}, {{0, 1000}, {10, 1010}, {10, 990}}});
  bool closed = false;
  const std::vector<Ring> rings = WalkRings(engine, &closed);
  EXPECT_TRUE(closed);
  ASSERT_EQ(rings.size(), 2u);
  for (const Ring& ring : rings)
    EXPECT_DOUBLE_EQ(RingArea(ring), 100.0);
}

// Lines of one direction out of (or into) a point tie: the first of the
// point's list wins.
TEST(BooleanEngine, UnpairedTurnsKeepTheFirstOfLinesInOneDirection) {
  M2dGraph graph;
  M2dGraphPoint* a = graph.GetGridPoint(0, 0);
  M2dGraphPoint* p = graph.GetGridPoint(10, 0);
  M2dGraphLineNode* in = graph.AddLine(a, p, false);
  graph.AddLine(p, graph.GetGridPoint(20, 0), false);
  graph.AddLine(p, graph.GetGridPoint(30, 0), false);
  EXPECT_EQ(in->line.FindNextSegment(false), p->firstOut);
  M2dGraphLineNode* out = p->firstOut;
  graph.AddLine(graph.GetGridPoint(-10, 0), a, false);
  graph.AddLine(graph.GetGridPoint(-20, 0), a, false);
  EXPECT_EQ(in->line.FindPreviousSegment(false), a->firstIn);
  EXPECT_EQ(out->line.FindPreviousSegment(false), in);
}

TEST(BooleanEngine, SharedEdgeMergesAndDifferenceLeavesNoSliver) {
  const std::vector<Loop> a = {Rectangle(0, 0, 10, 10)}, b = {Rectangle(10, 0, 20, 10)};
  M2dBoolean unite;
  const Result u = Combine(a, b, 0, false, unite);
  ASSERT_EQ(u.rings.size(), 1u);
  EXPECT_DOUBLE_EQ(u.area, 200.0);
  M2dBoolean intersect;
  EXPECT_TRUE(Combine(a, b, 1, false, intersect).rings.empty());
  M2dBoolean subtract;
  const Result d = Combine({Rectangle(0, 0, 20, 10)}, b, 0, true, subtract);
  ASSERT_EQ(d.rings.size(), 1u);
  EXPECT_DOUBLE_EQ(d.area, 100.0);
}

TEST(BooleanEngine, NestedSquaresAndHoles) {
  // A plate with a hole, united with a square inside the hole, and intersected with a cross-cut.
  const std::vector<Loop> plate = {Rectangle(0, 0, 100, 100), Rectangle(20, 20, 80, 80, false)};
  M2dBoolean same;
  const Result r = Combine(plate, {}, 0, false, same);
  EXPECT_EQ(r.rings.size(), 2u);
  EXPECT_DOUBLE_EQ(r.area, 10000.0 - 3600.0);
  int holes = 0;
  for (const Ring& ring : r.rings)
    holes += RingArea(ring) < 0;
  EXPECT_EQ(holes, 1);
  M2dBoolean filled;
  EXPECT_DOUBLE_EQ(Combine(plate, {Rectangle(40, 40, 60, 60)}, 0, false, filled).area, 6400.0 + 400.0);
  M2dBoolean cut;
  EXPECT_DOUBLE_EQ(Combine(plate, {Rectangle(-10, 45, 110, 55)}, 1, false, cut).area, 2 * 20 * 10.0);
}

TEST(BooleanEngine, BowTieAndStarByLevel) {
  const std::vector<Loop> bowTie = {{{0, 0}, {10, 10}, {10, 0}, {0, 10}}};
  M2dBoolean positive;
  const Result p = Combine(bowTie, {}, 0, false, positive);
  EXPECT_DOUBLE_EQ(p.area, 25.0);
  M2dBoolean nonZero;
  FeedLoops(nonZero, bowTie);
  nonZero.RemoveIntegerSelfIntersections();
  bool closed = false;
  const std::vector<Ring> rings = WalkRings(nonZero, &closed);
  EXPECT_TRUE(closed);
  EXPECT_EQ(rings.size(), 2u);
  EXPECT_DOUBLE_EQ(TotalArea(rings), 50.0);
  // The crossing (5, 5) lies on the grid: it is the grid point itself.
  M2dGraphPoint* crossing = nonZero.AddPoint(5, 5);
  EXPECT_TRUE(crossing->IsInteger());
  EXPECT_EQ(crossing->denominator, 1u);
  EXPECT_NE(crossing->firstOut, nullptr);

  // A clockwise pentagram: winding 1 in the points, 2 in the centre.
  Loop star;
  for (int i = 0; i < 5; ++i) {
    const double angle = 2.0 * kPi * (2 * i) / 5.0;
    star.push_back({static_cast<int32_t>(std::lround(1000 * std::sin(angle))),
                    static_cast<int32_t>(std::lround(1000 * std::cos(angle)))});
  }
  M2dBoolean outline, centre;
  const Result o = Combine({star}, {}, 0, false, outline);
  const Result c = Combine({star}, {}, 1, false, centre);
  ASSERT_EQ(o.rings.size(), 1u);
  ASSERT_EQ(c.rings.size(), 1u);
  EXPECT_EQ(o.rings[0].size(), 10u);
  EXPECT_EQ(c.rings[0].size(), 5u);
  EXPECT_GT(o.area, c.area);
  EXPECT_GT(c.area, 0.0);
}

// Crossings inside the kept region are swept and forgotten: only the points
// where kept lines meet are made, and the least winding met is reported.
TEST(BooleanEngine, OnlyPointsOfKeptLinesAreMade) {
  const int n = 101, step = 50;  // a star polygon with about 5,000 self-crossings
  Loop star;
  for (int i = 0; i < n; ++i) {
    const double angle = 2.0 * kPi * ((i * step) % n) / n;
    star.push_back({static_cast<int32_t>(std::lround(1e6 * std::cos(angle))),
                    static_cast<int32_t>(std::lround(1e6 * std::sin(angle)))});
  }
  M2dBoolean engine;
  FeedLoops(engine, {star});
  engine.RemoveIntegerSelfIntersections();
  bool closed = false;
  const std::vector<Ring> rings = WalkRings(engine, &closed);
  ASSERT_EQ(rings.size(), 1u);
  EXPECT_EQ(rings[0].size(), 2u * n);
  EXPECT_EQ(engine.GetNumPoints(), 2u * n);
  EXPECT_LE(engine.LeastWinding(), -1);  // counter-clockwise: negative inside

  Loop clockwise(star.rbegin(), star.rend());
  M2dBoolean positive;
  const Result p = Combine({clockwise}, {}, 0, false, positive);
  EXPECT_EQ(positive.LeastWinding(), 0);
  EXPECT_EQ(p.rings.size(), 1u);
}

TEST(BooleanEngine, DegenerateInputLeavesNothing) {
  const std::vector<std::vector<Loop>> inputs = {{},
                                                 {{{5, 5}}},
                                                 {{{5, 5}, {9, 9}}},
                                                 {{{1, 1}, {1, 1}, {1, 1}}},
                                                 {{{0, 0}, {10, 0}, {20, 0}}},
                                                 {{{0, 0}, {10, 10}, {0, 0}, {10, 10}}}};
  for (const std::vector<Loop>& input : inputs) {
    M2dBoolean engine;
    const Result r = Combine(input, {}, 0, false, engine);
    EXPECT_TRUE(r.rings.empty()) << Describe(input);
  }
  // A spike on a square is cut away; repeated points change nothing.
  M2dBoolean spike;
  const Result s =
      Combine({{{0, 0}, {0, 10}, {0, 10}, {10, 10}, {30, 10}, {10, 10}, {10, 0}}}, {}, 0, false, spike);
  EXPECT_DOUBLE_EQ(s.area, 100.0);
  ExpectSimpleClosed(s, "spike");
}

// Each grid position is one point, however far the lookup table has grown.
TEST(BooleanEngine, GridPointsAreMadeOncePerPosition) {
  M2dGraph graph;
  std::vector<M2dGraphPoint*> made;
  for (int32_t i = 0; i < 3000; ++i)
    made.push_back(graph.GetGridPoint(i % 64 - 32, i / 64 * 7 - 100));
  for (int32_t i = 0; i < 3000; ++i)
    ASSERT_EQ(graph.GetGridPoint(i % 64 - 32, i / 64 * 7 - 100), made[i]) << i;
  EXPECT_EQ(graph.GetNumPoints(), 3000u);
}

TEST(BooleanEngine, CoordinatesAtTheEndsOfTheRange) {
  const std::vector<Loop> a = {Rectangle(INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX)};
  const std::vector<Loop> b = {{{INT32_MIN, 0}, {0, INT32_MAX}, {INT32_MAX, 0}, {0, INT32_MIN}}};
  M2dBoolean engine;
  const Result r = Combine(a, b, 1, false, engine);
  ASSERT_EQ(r.rings.size(), 1u);
  const double side = 4294967295.0;
  EXPECT_NEAR(r.area, side * side / 2.0, side * 4.0);
  ExpectSimpleClosed(r, "range ends");
}

// Split points whose whole part is INT32_MIN on lines running towards smaller
// coordinates (found by fuzzing: the sort key once overflowed there).
TEST(BooleanEngine, ManyLinesThroughOnePoint) {
  // Bow-ties whose crossing lines all pass through the origin, with vertical
  // and horizontal ones among them, fed in both orders.
  const int32_t d[][2] = {{10, 0}, {0, 10}, {10, 10}, {10, -10}, {20, 10}, {10, 20}, {-20, 10}, {-10, 30}};
  std::vector<Loop> loops;
  for (int k = 0; k < 8; k += 2)
    loops.push_back(
        {{d[k][0], d[k][1]}, {-d[k][0], -d[k][1]}, {d[k + 1][0], d[k + 1][1]}, {-d[k + 1][0], -d[k + 1][1]}});
  std::vector<Loop> reversed(loops.rbegin(), loops.rend());
  M2dBoolean forward, backward, cleaned;
  const Result u = Combine(loops, {}, 0, false, forward);
  const Result v = Combine(reversed, {}, 0, false, backward);
  ExpectSimpleClosed(u, Describe(loops));
  ExpectSimpleClosed(v, Describe(reversed));
  EXPECT_GT(u.area, 0.0);
  EXPECT_DOUBLE_EQ(u.area, v.area);
  FeedLoops(cleaned, loops);
  cleaned.RemoveIntegerSelfIntersections();
  bool closed = false;
  const std::vector<Ring> rings = WalkRings(cleaned, &closed);
  EXPECT_TRUE(closed);
  EXPECT_GE(TotalArea(rings) + 1e-9, u.area);
}

TEST(BooleanEngine, LinesThatCrossedAtAnEventMeetAgainLater) {
  // The spike's two lines and the vertical x = 10 cross at (10, 4); after
  // (10, 10) the vertical and the upper spike line are neighbours again, and
  // their crossing, behind the sweep by then, must not come back as an event.
  const std::vector<Loop> loops = {
      {{8, 15}, {0, 10}, {10, 11}, {10, 0}, {1, 0}}, {{10, 10}, {8, 13}, {0, 0}, {0, 10}}, {{15, 6}, {0, 0}}};
  M2dBoolean engine;
  const Result r = Combine(loops, {}, 0, false, engine);
  ExpectSimpleClosed(r, Describe(loops));
  EXPECT_EQ(r.rings.size(), 2u);
}

TEST(BooleanEngine, UnionOfSquaresFromTheLowestCoordinate) {
  const std::vector<Loop> a = {Rectangle(INT32_MIN, INT32_MIN, 715827882, 715827882)};
  const std::vector<Loop> b = {Rectangle(-715827883, -715827883, INT32_MAX, INT32_MAX)};
  M2dBoolean engine;
  const Result r = Combine(a, b, 0, false, engine);
  ASSERT_EQ(r.rings.size(), 1u);
  const double side = 2863311530.0, overlap = 1431655765.0;
  EXPECT_NEAR(r.area, 2.0 * side * side - overlap * overlap, side * 4.0);
  ExpectSimpleClosed(r, "union from the lowest coordinate");
}

// True when the points turn strictly clockwise around (cx, cy), each step by
// less than half a turn and once around in all: the loop is then simple.
bool TurnsOnceClockwise(const Loop& loop, int32_t cx, int32_t cy) {
  double total = 0.0;
  for (size_t i = 0; i < loop.size(); ++i) {
    const MMPoint2d<long>& p = loop[i];
    const MMPoint2d<long>& q = loop[(i + 1) % loop.size()];
    const double cross = double(p.x - cx) * (q.y - cy) - double(p.y - cy) * (q.x - cx);
    if (cross >= 0.0)
      return false;
    total += std::atan2(cross, double(p.x - cx) * (q.x - cx) + double(p.y - cy) * (q.y - cy));
  }
  return std::abs(total + 2.0 * kPi) < 1e-6;
}

// A random star-shaped polygon around (cx, cy), clockwise: simple, winding 0 or 1.
Loop RandomStar(std::mt19937& random, int n, int32_t cx, int32_t cy, int32_t radius) {
  std::uniform_real_distribution<double> unit(0.3, 1.0);
  for (;;) {
    Loop loop;
    for (int i = 0; i < n; ++i) {
      const double a = -2.0 * kPi * (i + 0.8 * unit(random)) / n;
      const double r = radius * unit(random);
      loop.push_back({Round(cx + r * std::cos(a)), Round(cy + r * std::sin(a))});
    }
    if (TurnsOnceClockwise(loop, cx, cy))
      return loop;
  }
}

TEST(BooleanEngineProperties, InclusionExclusionOnRandomPolygons) {
  std::mt19937 random(7);
  for (int round = 0; round < 60; ++round) {
    const int n = 4 + round % 20;
    const int32_t radius = round % 3 == 0 ? 12 : 1000000;
    const std::vector<Loop> a = {RandomStar(random, n, 0, 0, radius)};
    const std::vector<Loop> b = {RandomStar(random, n + 2, radius / 3, radius / 4, radius)};
    const std::string input = Describe(a) + "| " + Describe(b);
    M2dBoolean ea, eb, eu, ebu, ei, ed;
    const double areaA = Combine(a, {}, 0, false, ea).area;
    const double areaB = Combine(b, {}, 0, false, eb).area;
    const Result u = Combine(a, b, 0, false, eu);
    const Result bu = Combine(b, a, 0, false, ebu);
    const Result i = Combine(a, b, 1, false, ei);
    const Result d = Combine(a, b, 0, true, ed);
    for (const Result* r : {&u, &bu, &i, &d})
      ExpectSimpleClosed(*r, input);
    const double tolerance = 1e-9 * (areaA + areaB + 1.0);
    EXPECT_NEAR(areaA + areaB, u.area + i.area, tolerance) << input;
    EXPECT_NEAR(areaA, d.area + i.area, tolerance) << input;
    EXPECT_NEAR(u.area, bu.area, tolerance) << input;
  }
}

TEST(BooleanEngineProperties, SelfCrossingLoopsGiveSimpleClosedRings) {
  std::mt19937 random(5);
  std::uniform_int_distribution<int32_t> coordinate(0, 30);
  for (int round = 0; round < 60; ++round) {
    Loop a, b;
    for (int k = 0; k < 4 + round % 9; ++k)
      a.push_back({coordinate(random), coordinate(random)});
    for (int k = 0; k < 5 + round % 7; ++k)
      b.push_back({coordinate(random), coordinate(random)});
    const std::string input = Describe({a}) + "| " + Describe({b});
    M2dBoolean eu, ebu, er;
    const Result u = Combine({a}, {b}, 0, false, eu);
    const Result bu = Combine({b}, {a}, 0, false, ebu);
    ExpectSimpleClosed(u, input);
    EXPECT_NEAR(u.area, bu.area, 1e-9 * (std::abs(u.area) + 1.0)) << input;
    for (const Ring& ring : u.rings)
      EXPECT_NE(RingArea(ring), 0.0) << input;
    FeedLoops(er, {a, b});
    er.RemoveIntegerSelfIntersections();
    bool closed = false;
    const std::vector<Ring> rings = WalkRings(er, &closed);
    EXPECT_TRUE(closed) << input;
    EXPECT_GE(TotalArea(rings) + 1e-9, u.area) << input;
  }
}

// Walks a result into loops of whole grid points (valid when every point is
// on the grid), so that it can be fed again.
std::vector<Loop> RingsAsLoops(const std::vector<Ring>& rings) {
  std::vector<Loop> loops;
  for (const Ring& ring : rings) {
    Loop loop;
    for (const M2dGraphLine* l : ring)
      loop.push_back({l->from->x, l->from->y});
    loops.push_back(loop);
  }
  return loops;
}

bool InsideRings(const std::vector<Ring>& rings, double x, double y) {
  bool inside = false;
  for (const Ring& ring : rings) {
    for (const M2dGraphLine* l : ring) {
      const double x0 = ExactX(l->from), y0 = ExactY(l->from), x1 = ExactX(l->to), y1 = ExactY(l->to);
      if ((y0 > y) != (y1 > y) && x < (x1 - x0) * (y - y0) / (y1 - y0) + x0)
        inside = !inside;
    }
  }
  return inside;
}

using Cells = std::vector<bool>;
constexpr int kSide = 7;

// The outline of a set of unit cells, made by uniting the cells.
std::vector<Loop> Outline(const Cells& cells) {
  std::vector<Loop> squares;
  for (int k = 0; k < kSide * kSide; ++k) {
    if (cells[k])
      squares.push_back(Rectangle(k % kSide, k / kSide, k % kSide + 1, k / kSide + 1));
  }
  M2dBoolean engine;
  return RingsAsLoops(Combine(squares, {}, 0, false, engine).rings);
}

TEST(BooleanEngineProperties, CellOracle) {
  std::mt19937 random(11);
  std::bernoulli_distribution bit(0.5);
  for (int round = 0; round < 60; ++round) {
    Cells a(kSide * kSide), b(kSide * kSide);
    for (int k = 0; k < kSide * kSide; ++k) {
      a[k] = bit(random);
      b[k] = bit(random);
    }
    const std::vector<Loop> la = Outline(a), lb = Outline(b);
    const std::string input = Describe(la) + "| " + Describe(lb);
    M2dBoolean eu, ei, ed;
    const Result results[] = {Combine(la, lb, 0, false, eu), Combine(la, lb, 1, false, ei),
                              Combine(la, lb, 0, true, ed)};
    for (int op = 0; op < 3; ++op) {
      ExpectSimpleClosed(results[op], input);
      int count = 0;
      for (int k = 0; k < kSide * kSide; ++k) {
        const bool want = op == 0 ? (a[k] || b[k]) : op == 1 ? (a[k] && b[k]) : (a[k] && !b[k]);
        count += want;
        EXPECT_EQ(InsideRings(results[op].rings, k % kSide + 0.5, k / kSide + 0.5), want)
            << "op " << op << " cell " << k << " " << input;
      }
      EXPECT_DOUBLE_EQ(results[op].area, count) << "op " << op << " " << input;
    }
  }
}

}  // namespace
