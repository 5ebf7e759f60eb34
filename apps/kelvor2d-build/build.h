// Internal to the kelvor2d-build program; not part of the library's public interface.
// The three things the program does; each returns the exit status.
#pragma once

#include "options.h"

// Hatches a build (or the slice --layers picks) into a CLI file, on --jobs workers.
int RunBuild(const BuildOptions& options);
// Joins part files in layer order.
int RunMerge(const BuildOptions& options);
// Writes the sample build.
int RunSample(const BuildOptions& options);

constexpr int kExitFailed = 1;  // bad input or an output that cannot be written
constexpr int kExitUsage = 2;   // bad command line
constexpr int kExitInterrupted = 130;
