// Internal to the kelvor2d-build program; not part of the library's public interface.
// The sample build: a bracket whose outline twists with height and whose two
// holes grow until they merge, beside a small hole that stays.
#pragma once

#include <cstdint>

#include "io/cli/cli_layer.h"

constexpr double kSampleLayerMm = 0.03;  // layer thickness

// Layer `index` of a build of `layers`, in internal units of `unitsPerMm`. The
// holes are given as the slicer saw them: as separate circles, overlapping once
// they have grown into one another.
CliLayer SampleLayer(int64_t index, int64_t layers, double unitsPerMm);
