// Command line of kelvor2d-demo.
#pragma once

#include <cstdint>
#include <string>

struct DemoOptions {
  std::string input;  // persisted layer to run instead of the built-in part; empty: built-in
  std::string outputDir = "demo-output";
  double hatchDistanceMm = 0.4;  // distance between hatch lines
  double angleDegrees = 30.0;    // direction of the MHatcher hatching
  int bitmapSize = 1024;         // width and height of the coverage bitmap, pixels
  double unitsPerMm = 1000.0;    // internal units per millimetre
  bool help = false;
};

// Parses argv; on a bad option returns false with a message in `error`.
bool ParseOptions(int argc, char** argv, DemoOptions& options, std::string& error);
// The text printed by --help.
std::string UsageText();
