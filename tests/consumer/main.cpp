// Builds a one-contour layer through the installed headers and library, and
// takes it through the boolean engine and the border types, whose template
// instances the library provides.
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
  CONTOUR_LAYER united;
  AU::BooleanUnite(layer, layer, united, nullptr);
  M3dBorderLong border;
  M3dBorder2LayerConvertor::_Convert(united, border);
  const bool ok = layer.NumContours == 1 && layer.MaxX == 10 && square->RECHTS_DRAAIEND() &&
                  border.GetNumContours() == 1 && border.GetFirstContour()->GetNumPoints() == 4;
  layer.Clear();
  united.Clear();
  std::printf("consumer: %s\n", ok ? "ok" : "FAILED");
  return ok ? EXIT_SUCCESS : EXIT_FAILURE;
}
