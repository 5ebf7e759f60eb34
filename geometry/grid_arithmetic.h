// Sums and differences of grid coordinates "in 32 bits": they wrap like the
// two's-complement words they are, instead of overflowing into undefined
// behaviour. Internal to the library's sources.
#pragma once

#include <cstdint>

namespace kelvor2d_detail {

// a - b, wrapped to 32 bits.
inline int32_t Sub32(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

// a + b, wrapped to 32 bits.
inline int32_t Add32(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

// a * b, wrapped to 32 bits.
inline int32_t Mul32(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}

// Truncation toward zero of a float that may lie beyond the 32-bit range:
// clamped to INT32_MIN..INT32_MAX, NaN gives 0.
inline int32_t TruncateClamped(float v) {
  if (!(v == v))
    return 0;
  if (v >= 2147483648.0f)
    return INT32_MAX;
  if (v < -2147483648.0f)
    return INT32_MIN;
  return static_cast<int32_t>(v);
}

}  // namespace kelvor2d_detail
