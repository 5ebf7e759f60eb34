// The crossing test of a segment with an edge, as the counts of crossings
// and the cuts with a line use it: on the grid, through the rounded crossing
// of the two endless lines, judged inside both boxes. Internal to the
// library's sources.
#pragma once

#include <cstdint>

#include "geometry/plane_geometry.h"
#include "layer/values.h"

namespace kelvor2d_detail {

// Axis-aligned box of grid coordinates; comparisons inclusive.
struct GridBox {
  int32_t minX;  // least x
  int32_t minY;  // least y
  int32_t maxX;  // greatest x
  int32_t maxY;  // greatest y

  bool Contains(MMPoint2d<long> p) const { return minX <= p.x && p.x <= maxX && minY <= p.y && p.y <= maxY; }
  // True when both a and b lie strictly beyond one side of the box.
  bool BothBeyondOneSide(MMPoint2d<long> a, MMPoint2d<long> b) const {
    return (a.x < minX && b.x < minX) || (a.x > maxX && b.x > maxX) || (a.y < minY && b.y < minY) ||
           (a.y > maxY && b.y > maxY);
  }
};

inline GridBox BoxOfEnds(MMPoint2d<long> a, MMPoint2d<long> b) {
  return {a.x < b.x ? a.x : b.x, a.y < b.y ? a.y : b.y, a.x > b.x ? a.x : b.x, a.y > b.y ? a.y : b.y};
}

// Whether the edge pq passes the segment ab whose box is `box`: not both
// ends beyond one side of the box, and SNIJPUNT_TWEE_RECHTEN(a, b, p, q),
// stored in `crossing`, inside the box and inside the edge's box. Parallel
// lines give (0,0), which goes through the same test.
inline bool EdgeCrossesSegment(MMPoint2d<long> a, MMPoint2d<long> b, const GridBox& box, MMPoint2d<long> p,
                               MMPoint2d<long> q, MMPoint2d<long>& crossing) {
  if (box.BothBeyondOneSide(p, q))
    return false;
  crossing = SNIJPUNT_TWEE_RECHTEN(a, b, p, q);
  return box.Contains(crossing) && BoxOfEnds(p, q).Contains(crossing);
}

}  // namespace kelvor2d_detail
