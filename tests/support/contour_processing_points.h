// Test helpers of the contour processing suites: point lists as text for
// failure messages, and a layer that owns contours built from point lists.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "layer/contour_layer.h"
#include "support/layer_builders.h"

namespace testing_support {

inline std::string Describe(const std::vector<MMPoint2d<long>>& points) {
  std::string s;
  for (const MMPoint2d<long>& p : points)
    s += "(" + std::to_string(p.x) + "," + std::to_string(p.y) + ")";
  return s;
}

// A layer owning one contour per entry, in chain order; released at the end.
struct OwningLayer {
  CONTOUR_LAYER layer;
  OwningLayer() = default;
  OwningLayer(std::initializer_list<std::vector<MMPoint2d<long>>> contours, unsigned char closed = 1) {
    for (const auto& points : contours)
      Add(points, closed);
  }
  ~OwningLayer() { layer.LEEG_LAAG(); }
  void Add(const std::vector<MMPoint2d<long>>& points, unsigned char closed = 1) {
    layer.AddContourAtEnd(NewContour(points, closed));
  }
  CONTOUR* At(int index) const {
    CONTOUR* c = layer.FirstContour;
    while (index-- > 0)
      c = c->NextContour;
    return c;
  }
  // The points of the first contour.
  std::vector<MMPoint2d<long>> Points() const { return PointsOf(*layer.FirstContour); }
};

}  // namespace testing_support
