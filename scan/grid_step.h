// Arithmetic on regular grids shared by the scan-table operations; not part
// of the public interface.
#pragma once

#include <cstdint>

namespace kelvor2d_detail {

// The least start + k * step (k >= 0) that is not below `least`, the same
// value that stepping up from `start` one step at a time reaches, found
// without the loop. `step` must be positive.
inline int64_t FirstGridStepNotBelow(int64_t start, int64_t step, int64_t least) {
  if (start >= least)
    return start;
  return start + (least - start + step - 1) / step * step;
}

}  // namespace kelvor2d_detail
