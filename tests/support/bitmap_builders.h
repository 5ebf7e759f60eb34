// Helpers for the bitmap tests: borders built from point lists.
#pragma once

#include <cstdint>
#include <iterator>
#include <vector>

#include "bitmap/part.h"
#include "layer/values.h"
#include "sibling/math/border.h"

namespace testing_support {

using BitmapBorder = M3dBorder<long, void*, M3dBorderContour<long, void*, M3dBorderPoint<long, void*>>>;

// One border contour per ring, points in the given order.
inline BitmapBorder MakeBorder(const std::vector<std::vector<MMPoint2d<long>>>& rings) {
  BitmapBorder border;
  for (const auto& ring : rings) {
    auto* contour = border.AddContourAtEnd();
    for (const auto& p : ring)
      contour->InsertAtEnd(p.x, p.y, nullptr);
  }
  return border;
}

// Opens the protected steps of a part to the tests; also a copy of any part,
// to read its points.
class PartProbe : public MContourYSplittedPart {
 public:
  explicit PartProbe(bool adding, const std::vector<MContourHelperPoint>& pts = {})
      : MContourYSplittedPart(adding) {
    for (const auto& p : pts)
      PushPoint(p);
  }
  explicit PartProbe(const MContourYSplittedPart& part) : MContourYSplittedPart(part) {}
  using MContourYSplittedPart::_IntersectY;
  using MContourYSplittedPart::_LimitedYRange;
  using MContourYSplittedPart::_SafeRound;

  // _RightArea of the segment from point i to point i + 1 in the working row.
  double SegmentArea(int i, double x) const {
    auto lower = std::next(points.begin(), i);
    return _RightArea(lower, std::next(lower), x);
  }
  std::vector<MContourHelperPoint> List() const { return {points.begin(), points.end()}; }
  // Activates the part and moves it up to `row`.
  void StepTo(int32_t row) {
    Activate();
    while (GetWorkingY() < row)
      IncrementWorkingY();
  }
};

}  // namespace testing_support
