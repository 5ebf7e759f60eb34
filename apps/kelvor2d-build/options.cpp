#include "options.h"

#include <climits>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <map>

namespace {

// Distances in internal units stay below this, so sums of a few of them fit 32 bits.
constexpr double kMaxUnits = 1 << 30;

bool ParseReal(const std::string& text, double& value) {
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return !text.empty() && end != nullptr && *end == '\0' && std::isfinite(value);
}

bool ParseWhole(const std::string& text, int64_t& value) {
  double real = 0;
  if (!ParseReal(text, real) || real != std::floor(real) || std::fabs(real) > 1e15)
    return false;
  value = static_cast<int64_t>(real);
  return true;
}

// A real in [low, high] (low excluded when `openLow`).
bool CheckReal(const std::string& name, const std::string& text, double low, double high, bool openLow,
               double& value, std::string& error) {
  if (!ParseReal(text, value) || value < low || value > high || (openLow && value == low)) {
    error = "bad value '" + text + "' for " + name + ": give a number " + (openLow ? "above " : "from ") +
            std::to_string(low) + " up to " + std::to_string(high);
    return false;
  }
  return true;
}

bool CheckWhole(const std::string& name, const std::string& text, int64_t low, int64_t high, int64_t& value,
                std::string& error) {
  if (!ParseWhole(text, value) || value < low || value > high) {
    error = "bad value '" + text + "' for " + name + ": give a whole number from " + std::to_string(low) +
            " to " + std::to_string(high);
    return false;
  }
  return true;
}

bool ParseLayerRange(const std::string& text, BuildOptions& o, std::string& error) {
  const size_t dash = text.find('-');
  if (dash == std::string::npos || !ParseWhole(text.substr(0, dash), o.fromLayer) ||
      !ParseWhole(text.substr(dash + 1), o.toLayer) || o.fromLayer < 0 || o.toLayer < o.fromLayer) {
    error = "bad value '" + text + "' for --layers: give FROM-TO, 0 <= FROM <= TO";
    return false;
  }
  return true;
}

bool ParseLayerList(const std::string& text, BuildOptions& o, std::string& error) {
  size_t pos = 0;
  while (pos <= text.size()) {
    const size_t comma = text.find(',', pos);
    const std::string item = text.substr(pos, comma == std::string::npos ? std::string::npos : comma - pos);
    int64_t layer = 0;
    if (!CheckWhole("--preview-layers", item, 0, INT32_MAX, layer, error))
      return false;
    o.previewLayers.push_back(layer);
    if (comma == std::string::npos)
      break;
    pos = comma + 1;
  }
  return true;
}

bool ToUnits(const char* name, double mm, double unitsPerMm, int64_t times, bool allowZero, int32_t& units,
             std::string& error) {
  const double value = std::round(mm * unitsPerMm);
  if (!allowZero && value < 1) {
    error = std::string(name) + " " + std::to_string(mm) + " mm rounds to 0 internal units";
    return false;
  }
  if (value * static_cast<double>(times > 0 ? times : 1) > kMaxUnits) {
    error = std::string(name) + " " + std::to_string(mm) + " mm does not fit 32-bit internal units";
    return false;
  }
  units = static_cast<int32_t>(value);
  return true;
}

using Handler = std::function<bool(const std::string& value, BuildOptions& o, std::string& error)>;

// Options taking a value.
const std::map<std::string, Handler>& ValueOptions() {
  static const std::map<std::string, Handler> handlers = {
      {"-o", [](const std::string& v, BuildOptions& o, std::string&) { return o.output = v, true; }},
      {"--output", [](const std::string& v, BuildOptions& o, std::string&) { return o.output = v, true; }},
      {"--units-per-mm",
       [](const std::string& v, BuildOptions& o, std::string& e) {
         return CheckReal("--units-per-mm", v, 1, 1e6, false, o.unitsPerMm, e);
       }},
      {"--contours",
       [](const std::string& v, BuildOptions& o, std::string& e) {
         int64_t n = 0;
         return CheckWhole("--contours", v, 0, 100, n, e) && (o.contours = static_cast<int>(n), true);
       }},
      {"--contour-offset",
       [](const std::string& v, BuildOptions& o, std::string& e) {
         return CheckReal("--contour-offset", v, 0, 1e4, false, o.contourOffsetMm, e);
       }},
      {"--hatch-distance",
       [](const std::string& v, BuildOptions& o, std::string& e) {
         return CheckReal("--hatch-distance", v, 0, 1e4, true, o.hatchDistanceMm, e);
       }},
      {"--angle",
       [](const std::string& v, BuildOptions& o, std::string& e) {
         return CheckReal("--angle", v, -360, 360, false, o.angleDegrees, e);
       }},
      {"--rotate",
       [](const std::string& v, BuildOptions& o, std::string& e) {
         return CheckReal("--rotate", v, -360, 360, false, o.rotateDegrees, e);
       }},
      {"--preview",
       [](const std::string& v, BuildOptions& o, std::string&) { return o.previewDir = v, true; }},
      {"--preview-layers", ParseLayerList},
      {"--preview-every",
       [](const std::string& v, BuildOptions& o, std::string& e) {
         return CheckWhole("--preview-every", v, 1, INT32_MAX, o.previewEvery, e);
       }},
      {"--jobs",
       [](const std::string& v, BuildOptions& o, std::string& e) {
         int64_t n = 0;
         return CheckWhole("--jobs", v, 1, 256, n, e) && (o.jobs = static_cast<int>(n), true);
       }},
      {"--layers", ParseLayerRange},
      {"--sample",
       [](const std::string& v, BuildOptions& o, std::string&) {
         o.command = BuildCommand::kSample;
         return o.output = v, true;
       }},
      {"--sample-layers",
       [](const std::string& v, BuildOptions& o, std::string& e) {
         return CheckWhole("--sample-layers", v, 1, 1000000, o.sampleLayers, e);
       }},
  };
  return handlers;
}

}  // namespace

std::string UsageText() {
  return "usage: kelvor2d-build IN.cli -o OUT.cli [options]\n"
         "       kelvor2d-build merge PART.cli... -o OUT.cli\n"
         "       kelvor2d-build --sample OUT.cli [--sample-layers N] [--binary]\n"
         "Hatches every layer of a CLI build: cleans and unites the contours, offsets contour passes\n"
         "inward and hatches inside the innermost one, on every core; writes a CLI build.\n\n"
         "  -o, --output FILE        the build to write (written complete or not at all)\n"
         "  --contours N             contour passes (default 2; 0: hatch the outline itself)\n"
         "  --contour-offset MM      outline to first pass and pass to pass (default 0.1)\n"
         "  --hatch-distance MM      distance between hatch lines (default 0.1)\n"
         "  --angle DEG              hatch direction of layer 0 (default 0)\n"
         "  --rotate DEG             turn of the hatch direction per layer (default 67)\n"
         "  --units-per-mm N         internal units per mm (default 1000)\n"
         "  --binary                 write binary CLI (default ASCII)\n"
         "  --jobs N                 worker processes (default: every core)\n"
         "  --layers FROM-TO         only layers FROM to TO (0-based, inclusive): a part file for merge\n"
         "  --keep-going             report a bad layer and go on without it (default: stop)\n"
         "  --preview DIR            write PNG pictures of layers and a plot of the build into DIR\n"
         "  --preview-layers L,L,..  layers to picture (default: 10 spread over the build)\n"
         "  --preview-every K        picture every K-th layer\n"
         "  --quiet                  no progress and no summary\n"
         "  --sample FILE            write the built-in sample build to FILE and stop\n"
         "  --sample-layers N        layers of the sample (default 1000)\n"
         "  --help                   this text\n"
         "merge joins part files made with --layers, in layer order, into one build.\n";
}

bool ParseOptions(int argc, char** argv, BuildOptions& o, std::string& error) {
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    const auto handler = ValueOptions().find(arg);
    if (handler != ValueOptions().end()) {
      if (i + 1 >= argc) {
        error = "option " + arg + " needs a value";
        return false;
      }
      if (!handler->second(argv[++i], o, error))
        return false;
    } else if (arg == "--help" || arg == "-h") {
      o.help = true;
    } else if (arg == "--binary" || arg == "--quiet" || arg == "--keep-going") {
      (arg == "--binary" ? o.binary : arg == "--quiet" ? o.quiet : o.keepGoing) = true;
    } else if (!arg.empty() && arg[0] == '-') {
      error = "unknown option '" + arg + "' (see --help)";
      return false;
    } else if (arg == "merge" && i == 1) {
      o.command = BuildCommand::kMerge;
    } else {
      o.inputs.push_back(arg);
    }
  }
  if (o.help)
    return true;
  if (o.output.empty()) {
    error = "no output: give -o OUT.cli (see --help)";
    return false;
  }
  if (o.command == BuildCommand::kBuild && o.inputs.size() != 1) {
    error = o.inputs.empty() ? "no input build given (see --help)" : "give one input build";
    return false;
  }
  if (o.command == BuildCommand::kMerge && o.inputs.empty()) {
    error = "merge needs part files";
    return false;
  }
  return true;
}

bool MakeRecipe(const BuildOptions& o, Recipe& r, std::string& error) {
  r.unitsPerMm = o.unitsPerMm;
  r.contours = o.contours;
  r.angleDegrees = o.angleDegrees;
  r.rotateDegrees = o.rotateDegrees;
  r.encoding = o.binary ? CliEncoding::kBinary : CliEncoding::kAscii;
  return ToUnits("--hatch-distance", o.hatchDistanceMm, o.unitsPerMm, 1, false, r.hatchDistance, error) &&
         ToUnits("--contour-offset", o.contourOffsetMm, o.unitsPerMm, o.contours, o.contours == 0,
                 r.contourOffset, error);
}
