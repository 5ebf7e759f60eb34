// The <long, void *> family is instantiated once here, so that every member is
// compiled and users of the header do not instantiate it again.
#include "sibling/math/border.h"

template class M3dBorderContourBase<long, void*, M3dBorderPointLong, M3dBorderContourLong>;
template class M3dBorder<long, void*, M3dBorderContourLong>;
