// Internal to the kelvor2d-build program; not part of the library's public interface.
// The command line of kelvor2d-build.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "io/cli/cli_layer.h"

enum class BuildCommand { kBuild, kMerge, kSample };

struct BuildOptions {
  BuildCommand command = BuildCommand::kBuild;
  std::vector<std::string> inputs;  // the build to hatch, or the part files to merge
  std::string output;               // -o
  double unitsPerMm = 1000.0;       // internal units per mm
  int contours = 2;                 // contour passes
  double contourOffsetMm = 0.1;     // distance between the outline and the first pass, and between passes
  double hatchDistanceMm = 0.1;
  double angleDegrees = 0.0;    // hatch direction of layer 0
  double rotateDegrees = 67.0;  // turn of the hatch direction from one layer to the next
  bool binary = false;
  std::string previewDir;  // empty: no previews
  std::vector<int64_t> previewLayers;
  int64_t previewEvery = 0;                    // 0: only previewLayers (or the default choice)
  int jobs = 0;                                // 0: every core
  int64_t fromLayer = 0, toLayer = INT64_MAX;  // --layers, inclusive
  bool quiet = false, keepGoing = false, help = false;
  int64_t sampleLayers = 1000;
};

// The recipe in internal units, as every worker uses it.
struct Recipe {
  double unitsPerMm = 1000.0;
  int contours = 2;
  int32_t contourOffset = 100;  // internal units
  int32_t hatchDistance = 100;  // internal units
  double angleDegrees = 0.0, rotateDegrees = 67.0;
  CliEncoding encoding = CliEncoding::kAscii;
};

// Part ids of what the program writes.
inline int32_t HatchId(const Recipe& r) {
  return r.contours + 1;
}
inline int32_t OpenLineId(const Recipe& r) {
  return r.contours + 2;
}

std::string UsageText();
// False with `error` for an unknown option, a missing or bad value.
bool ParseOptions(int argc, char** argv, BuildOptions& options, std::string& error);
// The recipe in internal units; false with `error` when a distance rounds to 0
// units or does not fit 32 bits.
bool MakeRecipe(const BuildOptions& options, Recipe& recipe, std::string& error);
