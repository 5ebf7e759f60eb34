// Moving a CLI layer's geometry into the library's layers and back.
#pragma once

#include <cstdint>

#include "io/cli/cli_layer.h"

// Appends the closed polylines of `layer` to `contours` as closed contours: Outer
// from the stated direction, RightHanded from the points, so that a contour
// given the wrong way round is taken the way the file states it.
// Returns the number of open polylines, which are left out.
int32_t AddClosedPolylines(const CliLayer& layer, CONTOUR_LAYER& contours);

// Appends every contour of `contours` as a polyline of part `id`: closed ones as
// outer or inner by Outer, or by their sense (clockwise, y up: outer) while
// Outer is undetermined; the others as open lines.
void AddContourPolylines(const CONTOUR_LAYER& contours, int32_t id, CliLayer& layer);

// Appends every vector of `vectors`, in block order, as one hatch command of
// part `id`; nothing for a layer without vectors.
void AddHatchVectors(const VECTOR_LAYER& vectors, int32_t id, CliLayer& layer);
