// libFuzzer target for MHatcher: a layer of a few closed rings anywhere on the
// 32-bit grid, hatched at 0, 90, 180 or 270 degrees or at any angle, through
// Hatch with a shift, HatchWithAutoShift or HatchConceptLaser. Every vector
// brought into a vector layer must lie inside the layer's extent: exactly at
// the axis angles; at the others within the rounding of the two turns and
// the float crossing (a few units per 2^20 of the coordinates), on a layer
// halved so that it still fits in 32 bits once turned.
#include <cmath>
#include <cstdint>

#include "fuzz_layers.h"
#include "hatch/mhatcher.h"

using namespace fuzz_layers;

namespace {

int64_t GreatestMagnitude(const CONTOUR_LAYER& layer) {
  return std::max(
      {std::llabs(layer.MinX), std::llabs(layer.MaxX), std::llabs(layer.MinY), std::llabs(layer.MaxY)});
}

void HatchBy(FuzzInput& in, MHatcher& hatcher, CONTOUR_LAYER& layer, int32_t distance) {
  switch (in.Byte() % 3) {
    case 0:
      hatcher.Hatch(layer, distance, static_cast<int32_t>(in.Word(4)));
      break;
    case 1:
      hatcher.HatchWithAutoShift(layer, distance);
      break;
    default:
      hatcher.HatchConceptLaser(layer, distance);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzInput in(data, size);
  const uint8_t turn = in.Byte();
  const bool axisAngle = turn % 8 < 4;
  const double angle = axisAngle ? 90.0 * (turn % 4) : in.Word(2) * (360.0 / 65536.0);
  CONTOUR_LAYER layer;
  ReadLayer(in, layer, axisAngle ? 1 : 2);
  for (CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour)
    c->Type = static_cast<char>(in.Byte() % 8 == 0 ? 100 : 1);
  const int64_t extent =
      std::max(static_cast<int64_t>(layer.MaxX) - layer.MinX, static_cast<int64_t>(layer.MaxY) - layer.MinY);
  const int32_t distance = DistanceFor(3 * extent / 2, 1 + in.Byte() % 64);
  MHatcher hatcher;
  hatcher.GetHatchLayer().SetAngle(angle);
  HatchBy(in, hatcher, layer, distance);
  VECTOR_LAYER vectors;
  AddHatchLayerToVectorLayer(hatcher.GetHatchLayer(), vectors, 6);
  CheckVectorsInside(vectors, layer, axisAngle ? 0 : 4 + (GreatestMagnitude(layer) >> 20));
  vectors.Clear();
  layer.LEEG_LAAG();
  return 0;
}
