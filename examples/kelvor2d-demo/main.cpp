// kelvor2d-demo: builds a small layer through the public interface and prints
// what it holds.
#include <cstdio>
#include <cstdlib>

#include "kelvor2d.h"

namespace {

CONTOUR* MakeContour(const MMPoint2d<long>* points, int32_t count) {
  auto* c = new CONTOUR;
  c->SetPoints(points, count);
  c->Closed = 1;
  return c;
}

void PrintLayer(const CONTOUR_LAYER& layer) {
  std::printf("contours: %d, extents x [%d, %d], y [%d, %d]\n", layer.NumContours, layer.MinX, layer.MaxX,
              layer.MinY, layer.MaxY);
  int index = 0;
  for (CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour, ++index) {
    std::printf("  #%d: %d points, %s, length %u\n", index, c->NumPoints,
                c->RECHTS_DRAAIEND() ? "clockwise" : "counter-clockwise", c->BEREKEN_LENGTE());
  }
}

}  // namespace

int main() {
  const MMPoint2d<long> plate[] = {{0, 0}, {0, 20000}, {30000, 20000}, {30000, 0}};
  const MMPoint2d<long> hole[] = {{5000, 5000}, {10000, 5000}, {10000, 10000}, {5000, 10000}};
  CONTOUR_LAYER layer;
  layer.AddContourAtEnd(MakeContour(plate, 4));
  layer.AddContourAtEnd(MakeContour(hole, 4));
  layer.BEPAAL_EXTREMA();
  PrintLayer(layer);
  layer.Clear();
  return EXIT_SUCCESS;
}
