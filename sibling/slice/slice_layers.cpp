#include "sibling/slice/slice_layers.h"

template class M3dBorderContourBase<long, void*, M2DSliceContourPoint, M2DSliceContour>;
template class M3dBorder<long, void*, M2DSliceContour>;

uint32_t M2DSliceVectorLayer::GetNumVectors() const {
  uint32_t count = 0;
  for (const M2DSliceVectorBlock& block : *this)
    count += static_cast<uint32_t>(block.Vectors.size());
  return count;
}
