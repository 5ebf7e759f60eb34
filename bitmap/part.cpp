#include "bitmap/part.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "geometry/grid_arithmetic.h"

namespace {

// 1 + 2^-52: a value one step under a whole number counts as that number.
constexpr double kSafeRoundingFactor = 1.0000000000000002;
// Row of a position past the end of the list.
constexpr int32_t kNoPositionY = 2147483647;
// Column of a position past the end of the list.
constexpr double kNoPositionX = 2147483647.0;
// Start values of the row cache before the first segment is fed in.
constexpr double kCacheStartLeft = 2147483647.0;
constexpr double kCacheStartRight = -2147483648.0;
// Placeholders of a new part's cache; overwritten before anything reads them.
constexpr double kFreshDoubleLeft = 2.2250738585072014e-308;
constexpr double kFreshDoubleRight = 1.7976931348623157e308;
// Result of the intersections where a segment has no crossing.
constexpr double kNoCrossing = 1.7976931348623157e308;
constexpr int32_t kNotActivated = -2147483648;

// Cross product of the vectors from `origin` to `a` and to `b`, as dA.x * dB.y - dB.x * dA.y.
double CrossFrom(const MContourHelperPoint& origin, const MContourHelperPoint& a,
                 const MContourHelperPoint& b) {
  const double dAx = a.x - origin.x;
  const double dAy = a.y - origin.y;
  const double dBx = b.x - origin.x;
  const double dBy = b.y - origin.y;
  return dAx * dBy - dBx * dAy;
}

// dB.y * dA.x - dB.x * dA.y for dA from a0 to a1 and dB from b0 to b1.
double TurnBetween(const MContourHelperPoint& a0, const MContourHelperPoint& a1,
                   const MContourHelperPoint& b0, const MContourHelperPoint& b1) {
  const double dAx = a1.x - a0.x;
  const double dAy = a1.y - a0.y;
  const double dBx = b1.x - b0.x;
  const double dBy = b1.y - b0.y;
  return dBy * dAx - dBx * dAy;
}

}  // namespace

MContourYSplittedPart::MContourYSplittedPart(bool adding)
    : workingY(kNotActivated),
      addingMaterial(adding),
      limitYHigh(0.0),
      limitYLow(0.0),
      leftRightValid(false),
      doubleLeft(kFreshDoubleLeft),
      doubleRight(kFreshDoubleRight),
      left(0),
      right(0) {
  itWorking = points.begin();
  itNextWorking = points.end();
}

void MContourYSplittedPart::clear() {
  points.clear();
  workingY = kNotActivated;
  leftRightValid = false;
  doubleLeft = kFreshDoubleLeft;
  doubleRight = kFreshDoubleRight;
  itWorking = points.begin();
  itNextWorking = points.end();
}

void MContourYSplittedPart::PushPoint(MContourHelperPoint const& p) {
  if (!points.empty()) {
    const MContourHelperPoint& first = points.front();
    if (!(p.y > first.y) && !(first.y == p.y && p.x > first.x)) {
      points.push_front(p);
      return;
    }
  }
  points.push_back(p);
}

void MContourYSplittedPart::Activate() {
  leftRightValid = false;
  workingY = GetLowestYPixel();
  itWorking = points.begin();
  itNextWorking = std::next(points.begin());
  limitYHigh = points.back().y;
  limitYLow = points.front().y;
}

bool MContourYSplittedPart::IncrementWorkingY() {
  return AdvanceWorkingYTo(workingY + 1);
}

bool MContourYSplittedPart::AdvanceWorkingYTo(int32_t row) {
  workingY = row;
  leftRightValid = false;
  while (_GetNextItWorkingY() < workingY) {
    itWorking = itNextWorking;
    ++itNextWorking;
  }
  return GetHighestYPixel() >= workingY;
}

int32_t MContourYSplittedPart::_GetItWorkingY(ConstPosition position) const {
  if (position == points.end())
    return kNoPositionY;
  return _SafeRound(position->y);
}

double MContourYSplittedPart::_GetItWorkingDoubleX(ConstPosition position) const {
  if (position == points.end())
    return kNoPositionX;
  return position->x;
}

int32_t MContourYSplittedPart::_SafeRound(double v) {
  return kelvor2d_detail::TruncateClamped(std::floor(v * kSafeRoundingFactor));
}

template <class Visit>
void MContourYSplittedPart::_ForEachSegmentInRow(Visit visit) const {
  ConstPosition lower = itWorking;
  ConstPosition upper = itNextWorking;
  while (upper != points.end() && _GetItWorkingY(upper) <= workingY) {
    visit(lower, upper);
    lower = upper;
    ++upper;
  }
  // The segment that leaves the row at the top.
  if (upper != points.end())
    visit(lower, upper);
}

void MContourYSplittedPart::_CalculateLeftRight() const {
  doubleLeft = kCacheStartLeft;
  doubleRight = kCacheStartRight;
  _ForEachSegmentInRow(
      [this](ConstPosition lower, ConstPosition upper) { _UpdateLeftRightCache(lower, upper); });
  leftRightValid = true;
}

void MContourYSplittedPart::_UpdateLeftRightCache(ConstPosition lower, ConstPosition upper) const {
  const double row = workingY;
  const double lowEnd = _GetItWorkingY(lower) < workingY
                            ? _IntersectY(lower->x, lower->y, upper->x, upper->y, row)
                            : _GetItWorkingDoubleX(lower);
  _UpdateLeftRightCache(lowEnd);
  const double highEnd = _GetItWorkingY(upper) > workingY
                             ? _IntersectY(lower->x, lower->y, upper->x, upper->y, row + 1.0)
                             : _GetItWorkingDoubleX(upper);
  _UpdateLeftRightCache(highEnd);
}

void MContourYSplittedPart::_UpdateLeftRightCache(double v) const {
  if (doubleLeft > v) {
    doubleLeft = v;
    left = _SafeRound(v);
  }
  if (v > doubleRight) {
    doubleRight = v;
    right = _SafeRound(v);
  }
}

double MContourYSplittedPart::_IntersectY(double x1, double y1, double x2, double y2, double y) {
  if (y1 == y2)
    return kNoCrossing;
  return (y - y1) / (y2 - y1) * (x2 - x1) + x1;
}

double MContourYSplittedPart::_IntersectX(ConstPosition lower, ConstPosition upper, double x) {
  const double x1 = lower->x, y1 = lower->y, x2 = upper->x, y2 = upper->y;
  if (x1 == x2)
    return kNoCrossing;
  return (x - x1) / (x2 - x1) * (y2 - y1) + y1;
}

double MContourYSplittedPart::_IntersectY(double y) const {
  if (points.size() < 2)
    return 0.0;
  ConstPosition lower = points.begin();
  ConstPosition upper = std::next(lower);
  while (y > upper->y) {
    lower = upper;
    ++upper;
    if (upper == points.end())
      return 0.0;
  }
  if (upper->y == y)
    return upper->x;
  return _IntersectY(lower->x, lower->y, upper->x, upper->y, y);
}

double MContourYSplittedPart::_RightArea(ConstPosition lower, ConstPosition upper, double x) const {
  const double x1 = lower->x, y1 = lower->y, x2 = upper->x, y2 = upper->y;
  if (y1 >= y2)
    return 0.0;  // horizontal segments have no area
  const double xr = x + 1.0;
  const double rowLow = workingY;
  const double rowHigh = rowLow + 1.0;
  // Clip to the row.
  double ya = y1, xa = x1, yb = y2, xb = x2;
  if (rowLow > y1) {
    ya = rowLow;
    xa = (ya - y1) / (y2 - y1) * (x2 - x1) + x1;
  }
  if (y2 > rowHigh) {
    yb = rowHigh;
    xb = (yb - y1) / (y2 - y1) * (x2 - x1) + x1;
  }
  if (x >= xa && x >= xb)
    return yb - ya;  // wholly left of the pixel
  if (xa >= xr && xb >= xr)
    return 0.0;  // wholly right of the pixel
  // Clip to the pixel. An end left of the pixel moves onto its left edge, and
  // the height it moved is a full-width strip; an end right of it moves onto
  // its right edge. Returns the new y minus the old for the first kind.
  auto clipEnd = [&](double& xe, double& ye) {
    if (x > xe) {
      const double yi = _IntersectX(lower, upper, x);
      const double moved = yi - ye;
      ye = yi;
      xe = x;
      return moved;
    }
    if (xe > xr) {
      ye = _IntersectX(lower, upper, xr);
      xe = xr;
    }
    return 0.0;
  };
  double extra = clipEnd(xa, ya);  // the strip below the crossing
  extra -= clipEnd(xb, yb);        // the strip above it
  return (xr - (xa + xb) * 0.5) * (yb - ya) + extra;
}

double MContourYSplittedPart::_RightAreaInRow(int32_t x) const {
  const double sign = addingMaterial ? kBitmapFullPixel : -kBitmapFullPixel;
  const double column = x;
  double sum = 0.0;
  _ForEachSegmentInRow([this, column, &sum](ConstPosition lower, ConstPosition upper) {
    sum += _RightArea(lower, upper, column);
  });
  return std::min(sum, 1.0) * sign;
}

bool MContourYSplittedPart::operator<(const MContourYSplittedPart& other) const {
  const MContourHelperPoint& first = points.front();
  if (first != other.points.front())
    return first.YCompare(other.points.front());
  ConstPosition a = std::next(points.begin());
  ConstPosition b = std::next(other.points.begin());
  double cross = 0.0;
  while (a != points.end() && b != other.points.end()) {
    cross = CrossFrom(first, *a, *b);
    if (cross != 0.0)
      break;
    ++a;
    ++b;
  }
  return cross < 0.0;
}

bool MContourYSplittedPart::_GetCommonY(double& y, const MContourYSplittedPart& other) const {
  const double lo = std::max(GetFirstYPos(), other.GetFirstYPos());
  const double hi = std::min(GetLastYPos(), other.GetLastYPos());
  y = (hi + lo) * 0.5;
  return hi >= lo;
}

bool MContourYSplittedPart::XCompareAtGivenY(const MContourYSplittedPart& other, int32_t /*y*/) const {
  if (other.DoubleLeft() > DoubleRight())
    return true;
  if (DoubleLeft() > other.DoubleRight())
    return false;
  double middle = 0.0;
  double a = 0.0, b = 0.0;
  if (_GetCommonY(middle, other)) {
    a = _IntersectY(middle);
    b = other._IntersectY(middle);
  } else {
    a = DoubleRight();
    b = other.DoubleRight();
  }
  return b > a;
}

bool MContourYSplittedPart::XCompareAtCommonY(const MContourYSplittedPart& other, double y) const {
  return other._IntersectY(y) > _IntersectY(y);
}

bool ActivePartXCompare(const MContourYSplittedPart* a, const MContourYSplittedPart* b) {
  if (b->DoubleLeft() > a->DoubleRight())
    return true;
  if (a->DoubleLeft() > b->DoubleRight())
    return false;
  const auto& pa = a->points;
  const auto& pb = b->points;
  if (pa.front() == pb.front()) {
    return TurnBetween(pa.front(), *std::next(pa.begin()), pb.front(), *std::next(pb.begin())) < 0.0;
  }
  if (pa.back() == pb.back()) {
    return TurnBetween(pa.back(), *std::next(pa.rbegin()), pb.back(), *std::next(pb.rbegin())) > 0.0;
  }
  return a->XCompareAtGivenY(*b, a->workingY);
}
