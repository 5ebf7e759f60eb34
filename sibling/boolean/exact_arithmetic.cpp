#include "sibling/boolean/exact_arithmetic.h"

#include <cmath>

namespace kelvor2d_detail {

namespace {

// Splits n / d (d > 0, quotient within 32 bits) into its floor and a
// fraction numerator in [0, d). The quotient is estimated in double precision
// and corrected exactly, which spares a 128-bit division.
void SplitRational(Int128 n, Int128 d, int32_t* whole, UInt128* fraction) {
  Int128 w = static_cast<Int128>(std::floor(static_cast<double>(n) / static_cast<double>(d)));
  Int128 r = n - w * d;
  while (r < 0) {
    --w;
    r += d;
  }
  while (r >= d) {
    ++w;
    r -= d;
  }
  *whole = static_cast<int32_t>(w);
  *fraction = static_cast<UInt128>(r);
}

// Half of the circle that a direction lies in, seen from ref: 0 for angles in
// (0, 180], 1 for (180, 360].
int HalfOf(int64_t refx, int64_t refy, int64_t vx, int64_t vy) {
  const Int128 cross = static_cast<Int128>(refx) * vy - static_cast<Int128>(refy) * vx;
  if (cross > 0)
    return 0;
  if (cross < 0)
    return 1;
  const Int128 dot = static_cast<Int128>(refx) * vx + static_cast<Int128>(refy) * vy;
  return dot < 0 ? 0 : 1;
}

}  // namespace

int CompareFractions(UInt128 a, UInt128 b, UInt128 c, UInt128 d) {
  if (a == 0 || c == 0)
    return a == c ? 0 : (a == 0 ? -1 : 1);
  int sign = 1;
  for (;;) {
    const UInt128 qa = a / b;
    const UInt128 qc = c / d;
    if (qa != qc)
      return qa < qc ? -sign : sign;
    a -= qa * b;
    c -= qc * d;
    if (a == 0 || c == 0) {
      if (a == 0 && c == 0)
        return 0;
      return a == 0 ? -sign : sign;
    }
    // Both in (0, 1): a/b < c/d exactly when b/a > d/c.
    const UInt128 oldA = a, oldC = c;
    a = b;
    b = oldA;
    c = d;
    d = oldC;
    sign = -sign;
  }
}

int CompareExactX(const ExactCoordinates& p, const ExactCoordinates& q) {
  if (p.x != q.x)
    return p.x < q.x ? -1 : 1;
  return CompareFractions(p.xFraction, p.denominator, q.xFraction, q.denominator);
}

int CompareExactY(const ExactCoordinates& p, const ExactCoordinates& q) {
  if (p.y != q.y)
    return p.y < q.y ? -1 : 1;
  return CompareFractions(p.yFraction, p.denominator, q.yFraction, q.denominator);
}

int CompareExactXY(const ExactCoordinates& p, const ExactCoordinates& q) {
  const int c = CompareExactX(p, q);
  return c != 0 ? c : CompareExactY(p, q);
}

bool SameExactPosition(const ExactCoordinates& p, const ExactCoordinates& q) {
  return p.x == q.x && p.y == q.y && CompareExactX(p, q) == 0 && CompareExactY(p, q) == 0;
}

int OrientationOfExact(int64_t ax, int64_t ay, int64_t dx, int64_t dy, const ExactCoordinates& p) {
  // dx * (py - ay) - dy * (px - ax) = whole + fraction / denominator.
  const Int128 whole = static_cast<Int128>(dx) * (p.y - ay) - static_cast<Int128>(dy) * (p.x - ax);
  const Int128 fraction = static_cast<Int128>(dx) * static_cast<Int128>(p.yFraction) -
                          static_cast<Int128>(dy) * static_cast<Int128>(p.xFraction);
  if (fraction == 0)
    return SignOf(whole);
  // |fraction / denominator| < |dx| + |dy| < 2^34: a larger whole part decides alone.
  constexpr Int128 kDecisive = static_cast<Int128>(1) << 35;
  if (whole >= kDecisive)
    return 1;
  if (whole <= -kDecisive)
    return -1;
  return SignOf(whole * static_cast<Int128>(p.denominator) + fraction);
}

UInt128 FloorQuotient(UInt128 n, UInt128 d) {
  const long double estimate = std::floor(static_cast<long double>(n) / static_cast<long double>(d));
  UInt128 q = estimate > 0.0L ? static_cast<UInt128>(static_cast<uint64_t>(estimate)) : 0;
  UInt128 product = q * d;
  while (product > n) {
    --q;
    product -= d;
  }
  while (n - product >= d) {
    ++q;
    product += d;
  }
  return q;
}

bool CrossProperly(int64_t ax, int64_t ay, int64_t bx, int64_t by, int64_t cx, int64_t cy, int64_t dx,
                   int64_t dy) {
  const int o1 = Orientation(ax, ay, bx, by, cx, cy);
  const int o2 = Orientation(ax, ay, bx, by, dx, dy);
  if (o1 == 0 || o2 == 0 || o1 == o2)
    return false;
  const int o3 = Orientation(cx, cy, dx, dy, ax, ay);
  const int o4 = Orientation(cx, cy, dx, dy, bx, by);
  return o3 != 0 && o4 != 0 && o3 != o4;
}

ExactCoordinates CrossingOf(int64_t ax, int64_t ay, int64_t bx, int64_t by, int64_t cx, int64_t cy,
                            int64_t dx, int64_t dy) {
  const Int128 ux = bx - ax, uy = by - ay, vx = dx - cx, vy = dy - cy;
  Int128 den = ux * vy - uy * vx;
  Int128 num = static_cast<Int128>(cx - ax) * vy - static_cast<Int128>(cy - ay) * vx;
  if (den < 0) {
    den = -den;
    num = -num;
  }
  ExactCoordinates crossing;
  SplitRational(static_cast<Int128>(ax) * den + ux * num, den, &crossing.x, &crossing.xFraction);
  SplitRational(static_cast<Int128>(ay) * den + uy * num, den, &crossing.y, &crossing.yFraction);
  crossing.denominator = static_cast<UInt128>(den);
  return crossing;
}

bool ProperCrossing(int64_t ax, int64_t ay, int64_t bx, int64_t by, int64_t cx, int64_t cy, int64_t dx,
                    int64_t dy, ExactCoordinates* crossing) {
  if (!CrossProperly(ax, ay, bx, by, cx, cy, dx, dy))
    return false;
  *crossing = CrossingOf(ax, ay, bx, by, cx, cy, dx, dy);
  return true;
}

bool TurnsBeforeCounterClockwise(int64_t refx, int64_t refy, int64_t ux, int64_t uy, int64_t vx, int64_t vy) {
  const int hu = HalfOf(refx, refy, ux, uy);
  const int hv = HalfOf(refx, refy, vx, vy);
  if (hu != hv)
    return hu < hv;
  return static_cast<Int128>(ux) * vy - static_cast<Int128>(uy) * vx > 0;
}

double ExactToDouble(int32_t whole, UInt128 fraction, UInt128 denominator) {
  const double f = denominator <= 1 ? 0.0 : static_cast<double>(fraction) / static_cast<double>(denominator);
  return f + static_cast<double>(whole);
}

}  // namespace kelvor2d_detail
