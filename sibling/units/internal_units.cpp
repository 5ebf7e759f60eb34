#include "sibling/units/internal_units.h"

namespace Kelvor {
namespace Common {

namespace {
double g_unitsPerLength = 1.0;
}  // namespace

double MInternalUnits::Get() {
  return g_unitsPerLength;
}

void MInternalUnits::Set(double unitsPerLength) {
  g_unitsPerLength = unitsPerLength;
}

}  // namespace Common
}  // namespace Kelvor
