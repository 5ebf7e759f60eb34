// Internal units: how many grid units make one unit of real length.
#pragma once

#include "kelvor2d_export.h"

namespace Kelvor {
namespace Common {

// Process-wide number of internal units in one unit of length (for example
// 1000 units per millimetre). Only the bitmap side converts to real lengths.
class KELVOR2D_API MInternalUnits {
 public:
  // The current value; 1.0 in a fresh process.
  static double Get();
  // Sets the value for the whole process. Not validated: a value that is zero
  // or not finite makes every bitmap conversion write nothing.
  static void Set(double unitsPerLength);
};

}  // namespace Common
}  // namespace Kelvor
