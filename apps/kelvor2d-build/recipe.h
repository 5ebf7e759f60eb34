// Internal to the kelvor2d-build program; not part of the library's public interface.
// What happens to one layer: the standard powder-bed recipe through the library.
#pragma once

#include <cstdint>
#include <string>

#include "io/cli/cli_layer.h"
#include "options.h"

// What a layer made, and what each step cost.
struct LayerStats {
  int64_t index = 0;           // layer index in the input build
  int64_t contours = 0;        // contour passes written (polylines)
  int64_t vectors = 0;         // hatch vectors written
  double contourLength = 0.0;  // internal units
  double hatchLength = 0.0;    // internal units
  bool hatched = false;        // false: nothing to hatch (empty, or open lines only)
  double offsetMs = 0.0;       // clean, unite, classify, offset
  double hatchMs = 0.0;
  double encodeMs = 0.0;
};

// The labels of the parts the recipe writes.
std::vector<CliLabel> RecipeLabels(const Recipe& recipe);

// The hatch direction of layer `index`, degrees in [0, 360).
double HatchAngle(const Recipe& recipe, int64_t index);

// Runs the recipe on `in`, layer `index` of the build, into `out`: the contour
// passes (part ids 1..N, outer first), the hatches (id N+1) and the open lines
// of the input as they were (id N+2). A layer without closed contours keeps
// its open lines and gets no hatches.
void RunRecipe(const Recipe& recipe, int64_t index, const CliLayer& in, CliLayer& out, LayerStats& stats);
