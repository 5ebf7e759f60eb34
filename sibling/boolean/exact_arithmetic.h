// Exact predicates of the boolean engine on the 32-bit grid. Every decision
// (orientation, order of crossings, order along the sweep) is taken in integer
// arithmetic of 64 or 128 bits, never in floating point.
#pragma once

#include <cstdint>

namespace kelvor2d_detail {

using Int128 = __int128;
using UInt128 = unsigned __int128;

// A point with rational coordinates: (x + xFraction / denominator,
// y + yFraction / denominator), 0 <= fractions < denominator. Integer points
// have denominator 1. Crossings of two grid segments have denominators below
// 2^66, so the three words of 128 bits never overflow.
struct ExactCoordinates {
  int32_t x;            // whole part of x (floor)
  int32_t y;            // whole part of y (floor)
  UInt128 xFraction;    // numerator of the fraction of x
  UInt128 yFraction;    // numerator of the fraction of y
  UInt128 denominator;  // common denominator, >= 1
};

inline int SignOf(Int128 v) {
  return (v > 0) - (v < 0);
}

// Sign of the cross product of (b - a) and (c - a): +1 when c lies left of the
// directed line a->b (counter-clockwise, y up), -1 right of it, 0 on it.
inline int Orientation(int64_t ax, int64_t ay, int64_t bx, int64_t by, int64_t cx, int64_t cy) {
  return SignOf(static_cast<Int128>(bx - ax) * (cy - ay) - static_cast<Int128>(by - ay) * (cx - ax));
}

// Compares a / b with c / d for non-negative numerators and positive
// denominators: -1, 0 or +1. Euclid's expansion, so no product can overflow.
int CompareFractions(UInt128 a, UInt128 b, UInt128 c, UInt128 d);

// Compares the exact x (or y) of two points: -1, 0 or +1.
int CompareExactX(const ExactCoordinates& p, const ExactCoordinates& q);
int CompareExactY(const ExactCoordinates& p, const ExactCoordinates& q);
// Lexicographic order on (x, y): the order of events of the sweep.
int CompareExactXY(const ExactCoordinates& p, const ExactCoordinates& q);
// True when both points are the same exact position.
bool SameExactPosition(const ExactCoordinates& p, const ExactCoordinates& q);

// Side of the exact point p relative to the line through the grid point
// (ax, ay) with direction (dx, dy): +1 left, -1 right, 0 on the line.
// |dx|, |dy| must stay below 2^33.
int OrientationOfExact(int64_t ax, int64_t ay, int64_t dx, int64_t dy, const ExactCoordinates& p);

// floor(n / d) for d > 0 and a quotient below 2^63 whose product with d,
// plus 2 d, stays below 2^128: estimated in extended precision and corrected
// exactly, which spares a 128-bit division.
UInt128 FloorQuotient(UInt128 n, UInt128 d);

// True when segments a-b and c-d cross properly: each segment's endpoints lie
// strictly on both sides of the other.
bool CrossProperly(int64_t ax, int64_t ay, int64_t bx, int64_t by, int64_t cx, int64_t cy, int64_t dx,
                   int64_t dy);

// The crossing point of the lines through a-b and c-d, which must cross
// properly.
ExactCoordinates CrossingOf(int64_t ax, int64_t ay, int64_t bx, int64_t by, int64_t cx, int64_t cy,
                            int64_t dx, int64_t dy);

// The crossing of segments a-b and c-d when they cross properly (each
// segment's endpoints strictly on both sides of the other). False otherwise,
// leaving *crossing untouched.
bool ProperCrossing(int64_t ax, int64_t ay, int64_t bx, int64_t by, int64_t cx, int64_t cy, int64_t dx,
                    int64_t dy, ExactCoordinates* crossing);

// Which of two directions comes first turning counter-clockwise from `ref`,
// in the range (0, 360] degrees (a direction equal to ref comes last): true
// when (ux, uy) comes strictly before (vx, vy).
bool TurnsBeforeCounterClockwise(int64_t refx, int64_t refy, int64_t ux, int64_t uy, int64_t vx, int64_t vy);

// The exact position as doubles, fraction first and the whole part added.
double ExactToDouble(int32_t whole, UInt128 fraction, UInt128 denominator);

}  // namespace kelvor2d_detail
