#include "options.h"

#include <cmath>
#include <cstdlib>

namespace {

bool ParseNumber(const std::string& text, double& value) {
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return !text.empty() && end != nullptr && *end == '\0' && std::isfinite(value);
}

// Reads the value of option `name` into `value`, checking it lies in (low, high].
bool ReadValue(int argc, char** argv, int& i, const std::string& name, double low, double high, double& value,
               std::string& error) {
  if (i + 1 >= argc) {
    error = "option " + name + " needs a value";
    return false;
  }
  const std::string text = argv[++i];
  if (!ParseNumber(text, value) || value <= low || value > high) {
    error = "bad value '" + text + "' for " + name;
    return false;
  }
  return true;
}

// The hatch distance in internal units must be a whole unit or more, and the
// meander's connect distance, three of them, must fit in 32 bits.
bool CheckScales(const DemoOptions& options, std::string& error) {
  constexpr double kGreatestDistanceUnits = 2147483647.0 / 3.0;
  const double distanceUnits = options.hatchDistanceMm * options.unitsPerMm;
  if (options.unitsPerMm < 1.0) {
    error = "--units-per-mm must be at least 1 (an internal unit no longer than a millimetre)";
    return false;
  }
  if (distanceUnits < 1.0 || distanceUnits > kGreatestDistanceUnits) {
    error = "--distance times --units-per-mm must lie from 1 to 715827882 internal units";
    return false;
  }
  return true;
}

}  // namespace

std::string UsageText() {
  return "usage: kelvor2d-demo [options]\n"
         "Runs a layer through the whole road of Kelvor.2D and writes layer.xml, hatch.svg and\n"
         "coverage.png into the output folder, with a table of the steps.\n\n"
         "  --input FILE          persisted contour layer to use instead of the built-in part\n"
         "  --output DIR          output folder (default demo-output)\n"
         "  --distance MM         hatch distance in mm (default 0.4)\n"
         "  --angle DEGREES       direction of the free-angle hatching (default 30)\n"
         "  --bitmap-size PIXELS  width and height of the coverage bitmap (default 1024)\n"
         "  --units-per-mm N      internal units per mm, 1 to 1e6 (default 1000)\n"
         "  --help                this text\n";
}

bool ParseOptions(int argc, char** argv, DemoOptions& options, std::string& error) {
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    double value = 0.0;
    if (arg == "--help" || arg == "-h") {
      options.help = true;
    } else if (arg == "--input" || arg == "--output") {
      if (i + 1 >= argc) {
        error = "option " + arg + " needs a value";
        return false;
      }
      (arg == "--input" ? options.input : options.outputDir) = argv[++i];
    } else if (arg == "--distance") {
      if (!ReadValue(argc, argv, i, arg, 0.0, 1000.0, options.hatchDistanceMm, error))
        return false;
    } else if (arg == "--angle") {
      if (!ReadValue(argc, argv, i, arg, -360.0, 360.0, options.angleDegrees, error))
        return false;
    } else if (arg == "--bitmap-size") {
      if (!ReadValue(argc, argv, i, arg, 0.0, 16384.0, value, error))
        return false;
      options.bitmapSize = static_cast<int>(value);
      if (options.bitmapSize != value) {
        error = "--bitmap-size takes a whole number of pixels";
        return false;
      }
    } else if (arg == "--units-per-mm") {
      if (!ReadValue(argc, argv, i, arg, 0.0, 1e6, options.unitsPerMm, error))
        return false;
    } else {
      error = "unknown option '" + arg + "' (see --help)";
      return false;
    }
  }
  return CheckScales(options, error);
}
