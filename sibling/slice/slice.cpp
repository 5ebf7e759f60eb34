#include "sibling/slice/slice.h"

void M2DSlice::Clear() {
  m_border.MakeEmpty();
  m_areas.MakeEmpty();
  m_vectors.MakeEmpty();
}

void M2DSlice::SetZArea(const M2DSliceZArea& area) {
  m_zArea = area;
  if (area.IsValid())
    Z = area.GetZ();
}
