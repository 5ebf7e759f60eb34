#include "layer/layer.h"

#include <utility>

void LAYER::LEEG_LAAG() {
  Contours.LEEG_LAAG();
  Vectors.LEEG_LAAG();
  Z = 0;
}

void LAYER::SwapWith(LAYER& other) {
  SwapExtents(*this, other);
  std::swap(Z, other.Z);
  Contours.SwapWith(other.Contours);
  Vectors.SwapWith(other.Vectors);
}

void LAYER::MoveTo(LAYER& other) {
  LEEG_LAAG();
  SwapWith(other);
}

void LAYER::COPIEER_LAAG(LAYER& source) {
  Z = source.Z;
  MaxX = source.MaxX;
  MaxY = source.MaxY;
  MinX = source.MinX;
  MinY = source.MinY;
  Contours.COPIEER_LAAG(source.Contours);
  Vectors.COPIEER_VECTOR_LAYER(source.Vectors);
}

void LAYER::JoinExtents() {
  MinX = Contours.MinX < Vectors.MinX ? Contours.MinX : Vectors.MinX;
  MinY = Contours.MinY < Vectors.MinY ? Contours.MinY : Vectors.MinY;
  MaxX = Contours.MaxX > Vectors.MaxX ? Contours.MaxX : Vectors.MaxX;
  MaxY = Contours.MaxY > Vectors.MaxY ? Contours.MaxY : Vectors.MaxY;
}

void LAYER::BEPAAL_EXTREMA() {
  Contours.BEPAAL_EXTREMA();
  Vectors.BEPAAL_EXTREMA();
  JoinExtents();
}
