// Builds a one-contour layer through the installed headers and library.
#include <cstdio>
#include <cstdlib>

#include "kelvor2d.h"

int main() {
  CONTOUR_LAYER layer;
  CONTOUR* square = new CONTOUR;
  const MMPoint2d<long> points[4] = {{0, 0}, {0, 10}, {10, 10}, {10, 0}};
  square->SetPoints(points, 4);
  square->Closed = 1;
  layer.AddContourAtEnd(square);
  layer.BEPAAL_EXTREMA();
  const bool ok = layer.NumContours == 1 && layer.MaxX == 10 && square->RECHTS_DRAAIEND();
  layer.Clear();
  std::printf("consumer: %s\n", ok ? "ok" : "FAILED");
  return ok ? EXIT_SUCCESS : EXIT_FAILURE;
}
