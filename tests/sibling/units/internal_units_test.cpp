#include "sibling/units/internal_units.h"

#include <gtest/gtest.h>

// The scale is process-wide: the test puts back the value it found.
TEST(MInternalUnits, StartAtOneAndAreSettable) {
  EXPECT_EQ(Kelvor::Common::MInternalUnits::Get(), 1.0);
  Kelvor::Common::MInternalUnits::Set(1000.0);
  EXPECT_EQ(Kelvor::Common::MInternalUnits::Get(), 1000.0);
  Kelvor::Common::MInternalUnits::Set(1.0);
}
