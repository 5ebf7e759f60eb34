// kelvor2d-demo: runs a layer through the whole road of Kelvor.2D — cleaning,
// classification, offset and boolean, scan tables, five hatch routes, the
// free-angle hatcher, the coverage bitmap and persistence — and writes
// layer.xml, hatch.svg and coverage.png, with a table of the steps.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "kelvor2d.h"
#include "options.h"
#include "road.h"

namespace {

constexpr int kExitBadInput = 2;

void PrintTable(const Road& road) {
  std::printf("\n%-40s %-62s %12s %10s\n", "step", "result", "length mm", "ms");
  double total = 0.0;
  for (const StepRecord& s : road.Steps()) {
    std::printf("%-40s %-62s %12.1f %10.2f\n", s.name.c_str(), s.counts.c_str(), s.lengthMm, s.ms);
    total += s.ms;
  }
  std::printf("%-40s %-62s %12s %10.2f\n", "total", "", "", total);
}

}  // namespace

int main(int argc, char** argv) {
  DemoOptions options;
  std::string error;
  if (!ParseOptions(argc, argv, options, error)) {
    std::fprintf(stderr, "kelvor2d-demo: %s\n", error.c_str());
    return kExitBadInput;
  }
  if (options.help) {
    std::fputs(UsageText().c_str(), stdout);
    return EXIT_SUCCESS;
  }
  std::error_code ec;
  std::filesystem::create_directories(options.outputDir, ec);
  if (ec) {
    std::fprintf(stderr, "kelvor2d-demo: cannot create '%s': %s\n", options.outputDir.c_str(),
                 ec.message().c_str());
    return kExitBadInput;
  }
  Kelvor::Common::MInternalUnits::Set(options.unitsPerMm);
  Road road(options);
  if (!road.Run(error)) {
    std::fprintf(stderr, "kelvor2d-demo: %s\n", error.c_str());
    return kExitBadInput;
  }
  PrintTable(road);
  std::printf("\nwrote %s/layer.xml, %s/hatch.svg, %s/coverage.png\n", options.outputDir.c_str(),
              options.outputDir.c_str(), options.outputDir.c_str());
  return EXIT_SUCCESS;
}
