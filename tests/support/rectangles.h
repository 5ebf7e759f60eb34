// The tests' one builder of axis-aligned rectangles as point lists.
#pragma once

#include <cstdint>
#include <vector>

#include "layer/values.h"

namespace testing_support {

// Corners from (x0, y0); clockwise with y up when `clockwise`.
inline std::vector<MMPoint2d<long>> Rectangle(int32_t x0, int32_t y0, int32_t x1, int32_t y1,
                                              bool clockwise = true) {
  if (clockwise)
    return {{x0, y0}, {x0, y1}, {x1, y1}, {x1, y0}};
  return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
}

}  // namespace testing_support
