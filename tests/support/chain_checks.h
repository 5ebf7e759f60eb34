// Invariant checks of a contour chain, shared by the suites that add and
// remove contours.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "layer/contour_layer.h"

namespace testing_support {

// The chain links agree with NumContours and LastContour.
inline void ExpectChainConsistent(const CONTOUR_LAYER& layer) {
  int32_t n = 0;
  const CONTOUR* last = nullptr;
  for (const CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour, ++n)
    last = c;
  EXPECT_EQ(n, layer.NumContours);
  EXPECT_EQ(last, layer.LastContour);
}

}  // namespace testing_support
