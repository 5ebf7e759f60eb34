// kelvor2d-build: turns a sliced build (CLI) into a hatched one, layer by layer
// on every core; joins part files made on several machines; writes a sample build.
#include <cstdio>

#include "build.h"
#include "options.h"

int main(int argc, char** argv) {
  BuildOptions options;
  std::string error;
  if (!ParseOptions(argc, argv, options, error)) {
    std::fprintf(stderr, "kelvor2d-build: %s\n", error.c_str());
    return kExitUsage;
  }
  if (options.help) {
    std::fputs(UsageText().c_str(), stdout);
    return 0;
  }
  switch (options.command) {
    case BuildCommand::kMerge:
      return RunMerge(options);
    case BuildCommand::kSample:
      return RunSample(options);
    case BuildCommand::kBuild:
      break;
  }
  return RunBuild(options);
}
