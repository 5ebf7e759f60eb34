// Scan conversion of the standard plates into X and Y tables at a hatch
// distance of 100 units, against clipping the same grid of hatch lines as open
// paths with Clipper 1 (what open slicers do to make infill).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <ctime>
#include <map>
#include <string>
#include <vector>

#include "layer/contour_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "workloads.h"

#ifdef KELVOR2D_HAVE_CLIPPER1
#include "clipper1_lines.h"
#endif

namespace {

constexpr int32_t kHatchDistance = 100;

// CPU time of this thread: the machine is shared, so wall time is noisy.
double ThreadSeconds() {
  timespec t;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

struct Workload {
  const char* name;
  workloads::Rings rings;
  CONTOUR_LAYER layer;
};

Workload& GetWorkload(bool quarter) {
  static Workload plate{"plate", workloads::Plate(), {}};
  static Workload plateQuarter{"plate/4", workloads::PlateQuarter(), {}};
  Workload& w = quarter ? plateQuarter : plate;
  if (w.layer.NumContours == 0)
    workloads::FillLayer(w.layer, w.rings);
  return w;
}

MSliceFileParameters HatchParameters() {
  MSliceFileParameters p;
  p.XHatchDistance = p.YHatchDistance = kHatchDistance;
  return p;
}

int64_t CountCrossings(const TABEL& table) {
  int64_t n = 0;
  for (const TABEL* c = table.Next; c != nullptr && c->Next != nullptr; c = c->Next)
    n += c->List->Value;
  return n;
}

// Figures of one run, for the summary printed after all benchmarks.
struct Figures {
  double secondsPerTable = 0;
  int64_t crossings = 0;
  int64_t edges = 0;
};
std::map<std::string, Figures> figures;

std::string Key(const char* library, const Workload& w, bool alongX) {
  return std::string(library) + "/" + w.name + (alongX ? "/X" : "/Y");
}

void Record(benchmark::State& state, const std::string& key, int64_t crossings, int64_t edges,
            double seconds) {
  state.counters["crossings"] = static_cast<double>(crossings);
  state.counters["crossings/s"] =
      benchmark::Counter(static_cast<double>(crossings), benchmark::Counter::kIsIterationInvariantRate);
  Figures& f = figures[key];
  f.crossings = crossings;
  f.edges = edges;
  const double perTable = seconds / static_cast<double>(state.iterations());
  if (f.secondsPerTable == 0 || perTable < f.secondsPerTable)
    f.secondsPerTable = perTable;
}

void ScanTable(benchmark::State& state, bool quarter, bool alongX) {
  Workload& w = GetWorkload(quarter);
  MSliceFileParameters p = HatchParameters();
  int64_t crossings = 0;
  double seconds = 0;
  for (auto _ : state) {
    const double start = ThreadSeconds();
    TABEL table;
    if (alongX) {
      w.layer.X_ARCEER_LAAG(&table, p, nullptr);
    } else {
      w.layer.Y_ARCEER_LAAG(&table, p, nullptr);
    }
    crossings = CountCrossings(table);
    LEEG_TABEL(&table);
    seconds += ThreadSeconds() - start;
  }
  Record(state, Key("Kelvor.2D", w, alongX), crossings, static_cast<int64_t>(workloads::PointCount(w.rings)),
         seconds);
}

#ifdef KELVOR2D_HAVE_CLIPPER1

// The grid of the scan tables as open two-point paths across the layer.
ClipperLib::Paths HatchLines(const CONTOUR_LAYER& layer, bool alongX) {
  ClipperLib::Paths lines;
  const int32_t last = alongX ? layer.MaxX : layer.MaxY;
  const ClipperLib::cInt low = (alongX ? layer.MinY : layer.MinX) - 1;
  const ClipperLib::cInt high = (alongX ? layer.MaxY : layer.MaxX) + 1;
  for (int32_t c = 0; c <= last; c += kHatchDistance) {
    if (alongX) {
      lines.push_back({ClipperLib::IntPoint(c, low), ClipperLib::IntPoint(c, high)});
    } else {
      lines.push_back({ClipperLib::IntPoint(low, c), ClipperLib::IntPoint(high, c)});
    }
  }
  return lines;
}

void ClipHatchLines(benchmark::State& state, bool quarter, bool alongX) {
  Workload& w = GetWorkload(quarter);
  const ClipperLib::Paths clip = clipper1_lines::ToPaths(w.rings);
  const ClipperLib::Paths lines = HatchLines(w.layer, alongX);
  int64_t crossings = 0;
  double seconds = 0;
  for (auto _ : state) {
    const double start = ThreadSeconds();
    const ClipperLib::Paths runs = clipper1_lines::ClipLines(lines, clip);
    crossings = 2 * static_cast<int64_t>(runs.size());
    seconds += ThreadSeconds() - start;
  }
  Record(state, Key("Clipper 1", w, alongX), crossings, static_cast<int64_t>(workloads::PointCount(w.rings)),
         seconds);
}

#endif

void RegisterAll() {
  for (bool quarter : {true, false}) {
    for (bool alongX : {true, false}) {
      const std::string suffix = std::string(quarter ? "plate/4" : "plate") + (alongX ? "/X" : "/Y");
      benchmark::RegisterBenchmark(("ScanTable/" + suffix).c_str(), ScanTable, quarter, alongX)
          ->Unit(benchmark::kMillisecond)
          ->MeasureProcessCPUTime();
#ifdef KELVOR2D_HAVE_CLIPPER1
      benchmark::RegisterBenchmark(("Clipper1HatchLines/" + suffix).c_str(), ClipHatchLines, quarter, alongX)
          ->Unit(benchmark::kMillisecond)
          ->MeasureProcessCPUTime();
#endif
    }
  }
}

void PrintSummary() {
  std::printf("\nScan tables at hatch distance %d (thread CPU time per table, best run):\n", kHatchDistance);
  for (const char* workload : {"plate/4", "plate"}) {
    for (const char* axis : {"/X", "/Y"}) {
      const std::string name = std::string(workload) + axis;
      const Figures& k = figures["Kelvor.2D/" + name];
      if (k.secondsPerTable == 0)
        continue;  // filtered out of this run
      const double work = static_cast<double>(k.edges + k.crossings);
      std::printf(
          "  %-9s Kelvor.2D %8.3f ms, %8lld crossings, %6.1f M crossings/s, %5.1f ns per edge+crossing",
          name.c_str(), k.secondsPerTable * 1e3, static_cast<long long>(k.crossings),
          k.crossings / k.secondsPerTable / 1e6, k.secondsPerTable / work * 1e9);
      const auto c = figures.find("Clipper 1/" + name);
      if (c != figures.end()) {
        std::printf(" | Clipper 1 %8.3f ms (%lld crossings), ratio Clipper/Kelvor %.1fx",
                    c->second.secondsPerTable * 1e3, static_cast<long long>(c->second.crossings),
                    c->second.secondsPerTable / k.secondsPerTable);
      }
      std::printf("\n");
    }
  }
#ifndef KELVOR2D_HAVE_CLIPPER1
  std::printf("Clipper 1 comparison skipped: libpolyclipping-dev was not found when building.\n");
#endif
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv))
    return 1;
  RegisterAll();
  benchmark::RunSpecifiedBenchmarks();
  PrintSummary();
  benchmark::Shutdown();
  for (bool quarter : {true, false})
    GetWorkload(quarter).layer.LEEG_LAAG();
  return 0;
}
