// Sums, differences and products of grid coordinates "in 32 bits": they wrap
// like the two's-complement words they are, instead of overflowing into
// undefined behaviour. Internal to the library's sources.
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

}  // namespace kelvor2d_detail
