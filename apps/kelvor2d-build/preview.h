// Internal to the kelvor2d-build program; not part of the library's public interface.
// PNG pictures of a build: a layer's contours and hatches, and a plot of scan
// length and vector count per layer over the build.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "io/cli/cli_layer.h"

// False when the program was built without libpng.
bool PreviewAvailable();

// Contour passes dark, hatches in colour, fitted into a square picture.
bool WriteLayerPicture(const std::string& path, const CliLayer& layer, std::string& error);

struct PlotPoint {
  double scanLengthM = 0.0;  // contours and hatches, m
  int64_t vectors = 0;
};
// Scan length (blue) and vector count (orange) per layer, each scaled to its own maximum.
bool WriteBuildPlot(const std::string& path, const std::vector<PlotPoint>& points, std::string& error);
