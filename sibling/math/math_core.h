// Small arithmetic of the math core used by hatching grids.
#pragma once

#include <cstdint>

#include "kelvor2d_export.h"

namespace Kelvor {
namespace Math {
namespace Core {

// The least offset + k * distance (k any integer) strictly greater than value.
// A negative distance gives the same grid as its magnitude; distance 0 is the
// grid of offset alone. INT32_MAX when no position beyond value fits 32 bits.
KELVOR2D_API int32_t GetFirstMultipleGreaterThan(int32_t value, int32_t distance, int32_t offset);

}  // namespace Core
}  // namespace Math
}  // namespace Kelvor
