// What the boolean and offset benchmarks share: best-of processor time, the peak
// memory of one run measured in a child process, and the conversion of the
// workload rings to Clipper2 paths.
#pragma once

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <string>

#include "workloads.h"

#ifdef KELVOR2D_HAVE_CLIPPER2
#include <clipper2/clipper.h>
#endif

namespace comparison {

// True when KELVOR2D_BENCH_ONLY (names separated by commas) is unset or
// names the workload.
inline bool Selected(const std::string& name) {
  const char* only = std::getenv("KELVOR2D_BENCH_ONLY");
  return only == nullptr || ("," + std::string(only) + ",").find("," + name + ",") != std::string::npos;
}

// Processor time of this process in ms (user and system): on a shared
// machine it counts only the work of the call, not the waits for a core.
inline double CpuMilliseconds() {
  timespec t;
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return t.tv_sec * 1e3 + t.tv_nsec * 1e-6;
}

// Best processor time of `runs` calls in ms; *value receives the last result.
inline double BestOf(int runs, const std::function<double()>& run, double* value) {
  double best = 1e300;
  for (int i = 0; i < runs; ++i) {
    const double start = CpuMilliseconds();
    *value = run();
    best = std::min(best, CpuMilliseconds() - start);
  }
  return best;
}

// A field of /proc/self/status in kB ("VmHWM", "VmRSS"), -1 when unreadable.
inline long StatusKilobytes(const char* field) {
  FILE* f = std::fopen("/proc/self/status", "r");
  if (f == nullptr)
    return -1;
  char line[256];
  long value = -1;
  const size_t length = std::strlen(field);
  while (std::fgets(line, sizeof line, f) != nullptr) {
    if (std::strncmp(line, field, length) == 0 && line[length] == ':') {
      value = std::atol(line + length + 1);
      break;
    }
  }
  std::fclose(f);
  return value;
}

// Peak resident memory that one call adds, in MB: measured in a forked child
// whose high-water mark is reset after the heap is trimmed; -1 when the
// system does not allow it.
inline double PeakMegabytes(const std::function<void()>& run) {
  int channel[2];
  if (pipe(channel) != 0)
    return -1.0;
  const pid_t child = fork();
  if (child == 0) {
    malloc_trim(0);
    FILE* reset = std::fopen("/proc/self/clear_refs", "w");
    long grown = -1;
    if (reset != nullptr && std::fputs("5", reset) >= 0 && std::fclose(reset) == 0) {
      const long before = StatusKilobytes("VmRSS");
      run();
      grown = StatusKilobytes("VmHWM") - before;
    }
    if (write(channel[1], &grown, sizeof grown) != static_cast<ssize_t>(sizeof grown))
      _exit(1);
    _exit(0);
  }
  close(channel[1]);
  long grown = -1;
  if (child < 0 || read(channel[0], &grown, sizeof grown) != static_cast<ssize_t>(sizeof grown))
    grown = -1;
  close(channel[0]);
  if (child > 0)
    waitpid(child, nullptr, 0);
  return grown < 0 ? -1.0 : grown / 1024.0;
}

// A figure of PeakMegabytes for the table: "-" when not measured.
inline std::string Megabytes(double value) {
  if (value < 0.0)
    return "-";
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

#ifdef KELVOR2D_HAVE_CLIPPER2
inline Clipper2Lib::Paths64 ToPaths64(const workloads::Rings& rings) {
  Clipper2Lib::Paths64 paths;
  paths.reserve(rings.size());
  for (const workloads::Ring& ring : rings) {
    Clipper2Lib::Path64 path;
    path.reserve(ring.size());
    for (const MMPoint2d<long>& p : ring)
      path.emplace_back(p.x, p.y);
    paths.push_back(std::move(path));
  }
  return paths;
}

// Total area of Clipper2 paths: outer paths come counter-clockwise (positive).
inline double Area64(const Clipper2Lib::Paths64& paths) {
  double area = 0.0;
  for (const Clipper2Lib::Path64& p : paths)
    area += Clipper2Lib::Area(p);
  return area;
}
#endif

inline double RelativeDifference(double ours, double theirs) {
  return 100.0 * std::fabs(std::fabs(ours) - std::fabs(theirs)) / std::max(std::fabs(theirs), 1.0);
}

}  // namespace comparison
