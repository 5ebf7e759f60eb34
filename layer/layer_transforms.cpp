// Transforms of a whole layer: both members, then the joint extents.
#include "layer/layer.h"

void LAYER::ROTEER_LAAG(MMPoint2d<long> centre, float degrees) {
  Contours.ROTEER_LAAG(centre, degrees);
  Vectors.ROTEER_LAAG(centre, degrees);
  JoinExtents();
}

void LAYER::TRANSLEER_LAAG(int32_t dx, int32_t dy) {
  Contours.TRANSLEER_LAAG(dx, dy);
  Vectors.TRANSLEER_LAAG(dx, dy);
  JoinExtents();
}

void LAYER::HERSCHAAL_LAAG(MMPoint2d<long> centre, float scaleX, float scaleY) {
  Contours.HERSCHAAL_LAAG(centre, scaleX, scaleY);
  Vectors.HERSCHAAL_LAAG(centre, scaleX, scaleY);
  JoinExtents();
}

void LAYER::SPIEGEL_LAAG(MMPoint2d<long> centre) {
  Contours.SPIEGEL_LAAG(centre);
  Vectors.SPIEGEL_LAAG(centre);
  JoinExtents();
}
