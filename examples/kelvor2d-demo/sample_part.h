// The built-in sample part of kelvor2d-demo.
#pragma once

#include "kelvor2d.h"

// Fills `layer` with a 60 x 40 mm plate with a concave outline (a notch), a
// round hole with a round island in it, a rectangular hole holding a rib
// thinner than the hatch distance (the X grid misses it), and a row of small
// holes. Contours are given in mixed directions, with a doubled point, as a
// slicer might deliver them. `unitsPerMm` scales millimetres to the grid.
void BuildSamplePart(CONTOUR_LAYER& layer, double unitsPerMm);

// The second shape of the boolean step: a bar across the plate.
void BuildSecondShape(CONTOUR_LAYER& layer, double unitsPerMm);
