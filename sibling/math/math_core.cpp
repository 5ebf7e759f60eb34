#include "sibling/math/math_core.h"

namespace Kelvor {
namespace Math {
namespace Core {

namespace {
// Floor division for a positive divisor.
int64_t DivideRoundingDown(int64_t numerator, int64_t divisor) {
  int64_t quotient = numerator / divisor;
  if (numerator % divisor != 0 && numerator < 0)
    --quotient;
  return quotient;
}
}  // namespace

int32_t GetFirstMultipleGreaterThan(int32_t value, int32_t distance, int32_t offset) {
  const int64_t step = distance < 0 ? -static_cast<int64_t>(distance) : distance;
  if (step == 0)
    return offset > value ? offset : INT32_MAX;
  const int64_t k = DivideRoundingDown(static_cast<int64_t>(value) - offset, step) + 1;
  const int64_t result = offset + k * step;
  return result > INT32_MAX ? INT32_MAX : static_cast<int32_t>(result);
}

}  // namespace Core
}  // namespace Math
}  // namespace Kelvor
