// Internal to the library's sources; not part of the public interface.
// Grid arithmetic that must not overflow: clamped conversions, first grid
// multiples and edge crossings, over the 32-bit wrapping words of
// layer/wrapping_words.h.
#pragma once

#include <cstdint>

#include "layer/values.h"
#include "layer/wrapping_words.h"

namespace kelvor2d_detail {

// `convert(v)` for a real v inside the 32-bit range: NaN gives 0, v at or
// above `high` INT32_MAX, v at or below `low` INT32_MIN.
template <class Real, class Convert>
int32_t ClampedTo32(Real v, Real high, Real low, Convert convert) {
  if (!(v == v))
    return 0;
  if (v >= high)
    return INT32_MAX;
  if (v <= low)
    return INT32_MIN;
  return convert(v);
}

// Truncation toward zero of a float that may lie beyond the 32-bit range:
// clamped to INT32_MIN..INT32_MAX, NaN gives 0.
inline int32_t TruncateClamped(float v) {
  return ClampedTo32(v, 2147483648.0f, -2147483648.0f, [](float f) { return static_cast<int32_t>(f); });
}

// Truncation toward zero of a double that may lie beyond the 32-bit range:
// clamped to INT32_MIN..INT32_MAX, NaN gives 0.
inline int32_t TruncateClamped(double v) {
  return ClampedTo32(v, 2147483647.0, -2147483648.0, [](double d) { return static_cast<int32_t>(d); });
}

// Rounding half away from zero of a double that may lie beyond the 32-bit
// range: clamped to INT32_MIN..INT32_MAX, NaN gives 0.
inline int32_t RoundClamped(double v) {
  return ClampedTo32(v, 2147483647.5, -2147483648.5, [](double d) { return Round(d); });
}

// A wide value held to the 32-bit range (widened sums that a 32-bit field
// must take): below INT32_MIN gives INT32_MIN, above INT32_MAX gives INT32_MAX.
inline int32_t Clamp32(int64_t v) {
  return v < INT32_MIN ? INT32_MIN : v > INT32_MAX ? INT32_MAX : static_cast<int32_t>(v);
}

// The least multiple of `distance` (non-zero) not below `least`, in 64 bits:
// near the ends of the range it may lie beyond 32 bits.
inline int64_t FirstMultipleNotBelow(int32_t distance, int32_t least) {
  int64_t q = static_cast<int64_t>(least) / distance;
  if (q * distance < least)
    ++q;
  return q * distance;
}

// The crossing of the edge (p0, s0)-(p1, s1), p0 != p1, with the grid line at
// primary coordinate c, as scan conversion and the hatch sweep compute it: in
// single precision, slope = float(s1 - s0) / float(p1 - p0) of the 32-bit
// differences, intercept = float(s0) - float(p0) * slope, the crossing
// c * slope + intercept rounded half away from zero. Two guards keep every
// crossing on the edge, where the float steps would leave it:
// - an edge whose primary or secondary extent does not fit in 32 bits (the
//   difference would wrap and turn the slope) is crossed exactly, in integers,
//   rounded half away from zero;
// - a float crossing beyond the edge's own secondary extent (float rounding at
//   coordinates of 2^24 and more, or a value past the 32-bit range) is held at
//   the nearer end of the edge.
// Neither changes a crossing that the float steps put on the edge.
class EdgeCrossing {
 public:
  EdgeCrossing(int32_t p0, int32_t s0, int32_t p1, int32_t s1)
      : m_slope(static_cast<float>(Sub32(s1, s0)) / static_cast<float>(Sub32(p1, p0))),
        m_intercept(static_cast<float>(s0) - static_cast<float>(p0) * m_slope),
        m_p0(p0),
        m_s0(s0),
        m_least(s0 < s1 ? s0 : s1),
        m_greatest(s0 < s1 ? s1 : s0),
        m_primarySpan(static_cast<int64_t>(p1) - p0),
        m_secondarySpan(static_cast<int64_t>(s1) - s0),
        m_exact(!FitsIn32(m_primarySpan) || !FitsIn32(m_secondarySpan)) {}

  int32_t At(int32_t c) const { return m_exact ? ExactAt(c) : FloatAt(c); }

 private:
  static bool FitsIn32(int64_t v) { return v >= INT32_MIN && v <= INT32_MAX; }

  int32_t FloatAt(int32_t c) const {
    const float v = static_cast<float>(c) * m_slope + m_intercept;
    if (v < -2147483648.0f)
      return m_least;
    if (v >= 2147483648.0f)
      return m_greatest;
    const int32_t s = Round(v);
    return s < m_least ? m_least : s > m_greatest ? m_greatest : s;
  }

  int32_t ExactAt(int32_t c) const {
    const __int128 numerator = static_cast<__int128>(static_cast<int64_t>(c) - m_p0) * m_secondarySpan;
    const __int128 magnitude = numerator < 0 ? -numerator : numerator;
    const int64_t divisor = m_primarySpan < 0 ? -m_primarySpan : m_primarySpan;
    int64_t q = static_cast<int64_t>(magnitude / divisor);
    if (2 * (magnitude % divisor) >= divisor)
      ++q;
    const bool negative = (numerator < 0) != (m_primarySpan < 0);
    return static_cast<int32_t>(m_s0 + (negative ? -q : q));
  }

  float m_slope;
  float m_intercept;
  int32_t m_p0;
  int32_t m_s0;
  int32_t m_least;  // secondary extent of the edge
  int32_t m_greatest;
  int64_t m_primarySpan;    // p1 - p0, exact
  int64_t m_secondarySpan;  // s1 - s0, exact
  bool m_exact;             // an extent beyond 32 bits: integer crossings
};

}  // namespace kelvor2d_detail
