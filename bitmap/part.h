// One y-monotone run of a contour in pixel coordinates, and what it covers of
// the pixels of one working row. The bitmap renderer sums these signed areas.
#pragma once

#include <algorithm>
#include <cstdint>
#include <list>

#include "kelvor2d_export.h"
#include "layer/values.h"

// Grey value of a pixel full of material.
constexpr double kBitmapFullPixel = 255.0;

// A point in pixel coordinates: pixel (i, j) is the unit square [i, i+1] x [j, j+1].
class KELVOR2D_API MContourHelperPoint {
 public:
  double x = 0.0;  // pixel column coordinate
  double y = 0.0;  // pixel row coordinate

  MContourHelperPoint() = default;
  MContourHelperPoint(double px, double py) : x(px), y(py) {}
  MContourHelperPoint(const MContourHelperPoint&) = default;
  MContourHelperPoint& operator=(const MContourHelperPoint&) = default;

  // x first, then y.
  bool operator<(const MContourHelperPoint& other) const {
    return other.x > x || (other.x == x && other.y > y);
  }
  // y first, then x: the order of the points of a run.
  bool YCompare(const MContourHelperPoint& other) const {
    return other.y > y || (other.y == y && other.x > x);
  }
  // Both coordinates equal; a NaN makes it false.
  bool operator==(const MContourHelperPoint& other) const { return x == other.x && y == other.y; }
  bool operator!=(const MContourHelperPoint& other) const { return !(*this == other); }
  // 0 gives x, any other index y (not checked).
  double operator[](int const& index) const { return index == 0 ? x : y; }
  MMPoint2d<double> Point() const { return MMPoint2d<double>{x, y}; }
};

// A run of points ascending in y (x on equal y), with a sign: an adding part
// brings the area of a pixel right of the run, a removing part takes it away.
// The part stands on one working row at a time; Left, Right and the areas
// concern that row only, and are cached per row (the cache is written even
// through a const part, so a part belongs to one thread).
// Left/Right/GetRightArea on a part never activated, or past its highest row,
// give unspecified (but defined) values; comparisons need activated parts.
class KELVOR2D_API MContourYSplittedPart {
 public:
  using Points = std::list<MContourHelperPoint>;
  using Position = Points::iterator;
  using ConstPosition = Points::const_iterator;

  // Empty part with the given sign, not activated.
  explicit MContourYSplittedPart(bool addingMaterial);
  // Member-wise: the positions still point into the source, so copy only parts
  // that are not yet activated.
  MContourYSplittedPart(const MContourYSplittedPart&) = default;
  MContourYSplittedPart& operator=(const MContourYSplittedPart&) = default;

  // Empties the points and returns to the start state; the sign stays.
  void clear();
  uint64_t size() const { return points.size(); }
  // In front when p is not above the first point (equal goes in front), else at the end.
  void PushPoint(MContourHelperPoint const& p);

  // Puts the part on its lowest row; the part must hold at least two points.
  void Activate();
  // One row up; false once the part no longer reaches the new row.
  bool IncrementWorkingY();
  // Up to `row` (not below the working row) at once, where IncrementWorkingY
  // would step there row by row to the same state; false as IncrementWorkingY.
  bool AdvanceWorkingYTo(int32_t row);
  int32_t GetWorkingY() const { return workingY; }
  double GetFirstYPos() const { return points.front().y; }
  double GetLastYPos() const { return points.back().y; }
  int32_t GetLowestYPixel() const { return _SafeRound(GetFirstYPos()); }
  int32_t GetHighestYPixel() const { return _SafeRound(GetLastYPos()); }
  bool IsAddingMaterial() const { return addingMaterial; }

  // Pixel columns of the least and greatest x of the run in the working row.
  int32_t Left() const {
    if (!leftRightValid)
      _CalculateLeftRight();
    return left;
  }
  int32_t Right() const {
    if (!leftRightValid)
      _CalculateLeftRight();
    return right;
  }
  // The least and greatest x of the run in the working row.
  double DoubleLeft() const {
    if (!leftRightValid)
      _CalculateLeftRight();
    return doubleLeft;
  }
  double DoubleRight() const {
    if (!leftRightValid)
      _CalculateLeftRight();
    return doubleRight;
  }

  // Signed grey value (within -255..255) of the area of pixel column x of the
  // working row that lies right of the run; 0.0 left of Left(). Inline for the
  // columns off the run, which the renderer asks most.
  double GetRightArea(int32_t x) const {
    if (Right() < x)
      return _LimitedYRange() * (addingMaterial ? kBitmapFullPixel : -kBitmapFullPixel);
    if (Left() > x)
      return 0.0;
    return _RightAreaInRow(x);
  }

  // True when this part stands left of other; the row argument is not used.
  bool XCompareAtGivenY(const MContourYSplittedPart& other, int32_t y) const;
  // True when other's x at height y is greater than this part's.
  bool XCompareAtCommonY(const MContourYSplittedPart& other, double y) const;
  // Order of all parts: by first point (YCompare), then by the direction in
  // which they leave a common first point (false for collinear parts).
  bool operator<(const MContourYSplittedPart& other) const;

  friend bool ActivePartXCompare(const MContourYSplittedPart* a, const MContourYSplittedPart* b);

 protected:
  Position _Begin() { return points.begin(); }
  Position _End() { return points.end(); }
  Points::reverse_iterator _RBegin() { return points.rbegin(); }
  Points::reverse_iterator _REnd() { return points.rend(); }
  int32_t _GetItWorkingY() const { return _GetItWorkingY(itWorking); }
  int32_t _GetNextItWorkingY() const { return _GetItWorkingY(itNextWorking); }
  // Row of the point at position; 2147483647 at the end of the list.
  int32_t _GetItWorkingY(ConstPosition position) const;
  // x of the point at position; 2147483647.0 at the end of the list.
  double _GetItWorkingDoubleX(ConstPosition position) const;
  // floor(v * (1 + 2^-52)) as a row or column; saturates outside 32 bits, NaN gives 0.
  static int32_t _SafeRound(double v);
  // Height of the run inside the working row.
  double _LimitedYRange() const {
    const double row = workingY;
    return std::min(row + 1.0, limitYHigh) - std::max(limitYLow, row);
  }
  // GetRightArea for a column from Left() to Right(): the capped, signed sum over the row's segments.
  double _RightAreaInRow(int32_t x) const;
  void _CalculateLeftRight() const;
  void _UpdateLeftRightCache(ConstPosition lower, ConstPosition upper) const;
  void _UpdateLeftRightCache(double v) const;
  // x of the line through (x1, y1), (x2, y2) at height y; 1.7976931348623157e308 when y1 == y2.
  static double _IntersectY(double x1, double y1, double x2, double y2, double y);
  // x of the whole run at height y; 0.0 without a segment there, 1.79e308 on a horizontal one.
  double _IntersectY(double y) const;
  // y of the segment at column position x; 1.7976931348623157e308 for a vertical one.
  static double _IntersectX(ConstPosition lower, ConstPosition upper, double x);
  // Area of the working row's pixel with left edge x that lies right of one segment.
  double _RightArea(ConstPosition lower, ConstPosition upper, double x) const;
  // Middle of the common height of both runs through y; false when they share none.
  bool _GetCommonY(double& y, const MContourYSplittedPart& other) const;

  // Calls visit(lower, upper) for every segment of the run in the working row.
  template <class Visit>
  void _ForEachSegmentInRow(Visit visit) const;

  Points points;                // the run, lowest point first
  int32_t workingY;             // working row; -2147483648 until activated
  Position itWorking;           // start of the first segment that reaches the working row
  Position itNextWorking;       // point after itWorking, or end of points
  bool addingMaterial;          // sign of the part, fixed at construction
  double limitYHigh;            // y of the last point, set by Activate
  double limitYLow;             // y of the first point, set by Activate
  mutable bool leftRightValid;  // the four cache fields hold for the working row
  mutable double doubleLeft;    // least x of the run within the working row
  mutable double doubleRight;   // greatest x of the run within the working row
  mutable int32_t left;         // pixel column of doubleLeft
  mutable int32_t right;        // pixel column of doubleRight
};

// Order of the active list of the sweep: left to right in the working row, by
// the direction of leaving or reaching a shared vertex. Both parts must be
// activated. Parts with no common height are ordered by their right ends, which
// is not transitive where several parts end within one row (sub-pixel detail).
KELVOR2D_API bool ActivePartXCompare(const MContourYSplittedPart* a, const MContourYSplittedPart* b);
