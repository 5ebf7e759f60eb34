// Hatch and support generation from scan tables that are already built, on the
// standard `plate` and `square-holes-infill` workloads, in vectors per second;
// and the whole road (X and Y tables, then smart hatching of both) beside
// clipping the same grid of hatch lines as open paths with Clipper 1.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "layer/contour_layer.h"
#include "layer/vector_layer.h"
#include "scan/slice_file_parameters.h"
#include "scan/tabel.h"
#include "workloads.h"

#ifdef KELVOR2D_HAVE_CLIPPER1
#include "clipper1_lines.h"
#endif

namespace {

// A workload at one hatch distance, with its tables built once.
struct HatchWorkload {
  std::string name;
  workloads::Rings rings;
  int32_t distance;
  CONTOUR_LAYER layer;
  MSliceFileParameters parameters;
  TABEL x;
  TABEL y;
};

std::vector<HatchWorkload*>& Workloads() {
  static std::vector<HatchWorkload*> all;
  return all;
}

void AddWorkload(const std::string& name, const workloads::Rings& rings, int32_t distance) {
  auto* w = new HatchWorkload{name, rings, distance, {}, {}, {}, {}};
  workloads::FillLayer(w->layer, w->rings);
  w->parameters.XHatchDistance = w->parameters.YHatchDistance = distance;
  w->parameters.MeanderConnectDistance = 3 * distance;
  w->parameters.SupportConnectDistance = 2 * distance;
  w->layer.X_ARCEER_LAAG(&w->x, w->parameters, nullptr);
  w->layer.Y_ARCEER_LAAG(&w->y, w->parameters, nullptr);
  Workloads().push_back(w);
}

int64_t CountVectors(const VECTOR_LAYER& layer) {
  int64_t n = 0;
  for (const VECTOR_BLOK* b = layer.FirstBlock; b != nullptr; b = b->NextBlock)
    n += b->Size / 4;
  return n;
}

// Best time per iteration and the vectors made, for the summary.
struct Figures {
  double seconds = 0;
  int64_t vectors = 0;
};
std::map<std::string, Figures> figures;

void Record(benchmark::State& state, const std::string& key, int64_t vectors, double seconds) {
  state.counters["vectors"] = static_cast<double>(vectors);
  state.counters["vectors/s"] =
      benchmark::Counter(static_cast<double>(vectors), benchmark::Counter::kIsIterationInvariantRate);
  Figures& f = figures[key];
  f.vectors = vectors;
  const double perIteration = seconds / static_cast<double>(state.iterations());
  if (f.seconds == 0 || perIteration < f.seconds)
    f.seconds = perIteration;
}

// A generator run on the workload's tables. Consuming generators get fresh
// copies, made outside the timed span.
struct Generator {
  const char* name;
  bool consumesTables;
  std::function<void(VECTOR_LAYER&, TABEL&, TABEL&, MSliceFileParameters&)> run;
};

const std::vector<Generator>& Generators() {
  static const std::vector<Generator> all = {
      {"straight", false,
       [](VECTOR_LAYER& v, TABEL& x, TABEL&, MSliceFileParameters& p) { v.ADD_X_ARCERING_RECHTS(x, p, 1); }},
      {"smart", true,
       [](VECTOR_LAYER& v, TABEL& x, TABEL&, MSliceFileParameters& p) {
         v.ADD_X_SMART_HATCHING(x, p, 0, 1);
       }},
      {"support", false,
       [](VECTOR_LAYER& v, TABEL& x, TABEL& y, MSliceFileParameters& p) { v.ADD_SUPPORT(p, x, y, '*'); }},
      {"support-walls", false,
       [](VECTOR_LAYER& v, TABEL& x, TABEL&, MSliceFileParameters& p) {
         v.ADD_SUPPORT_SINGLE_DIRECTION(x, p, 40);
       }},
      {"meander", true,
       [](VECTOR_LAYER& v, TABEL& x, TABEL&, MSliceFileParameters& p) {
         v.BEWAAR_X_TABEL_MEANDER(&x, p, 0, 1);
       }},
      {"no-switch-meander", true,
       [](VECTOR_LAYER& v, TABEL& x, TABEL&, MSliceFileParameters& p) {
         v.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED(&x, nullptr, p, 0, 1);
       }},
      {"no-switch-sweep", false,
       [](VECTOR_LAYER& v, TABEL& x, TABEL&, MSliceFileParameters& p) {
         v.ADD_X_TABEL_MEANDER_NO_SWITCH_CROSS_CHECKED_TYK(&x, nullptr, p, 1);
       }},
  };
  return all;
}

void RunGenerator(benchmark::State& state, HatchWorkload* w, const Generator* g) {
  int64_t vectors = 0;
  double seconds = 0;
  for (auto _ : state) {
    TABEL x;
    TABEL y;
    if (g->consumesTables) {
      COPIEER_TABEL(&x, w->x);
      COPIEER_TABEL(&y, w->y);
    }
    VECTOR_LAYER layer;
    const auto start = std::chrono::steady_clock::now();
    g->run(layer, g->consumesTables ? x : w->x, g->consumesTables ? y : w->y, w->parameters);
    seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    vectors = CountVectors(layer);
    layer.Clear();
    LEEG_TABEL(&x);
    LEEG_TABEL(&y);
  }
  Record(state, std::string(g->name) + "/" + w->name, vectors, seconds);
}

// The whole road: both tables from the contours, then both directions hatched.
void RunRoad(benchmark::State& state, HatchWorkload* w) {
  int64_t vectors = 0;
  double seconds = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    TABEL x;
    TABEL y;
    VECTOR_LAYER layer;
    w->layer.X_ARCEER_LAAG(&x, w->parameters, nullptr);
    w->layer.Y_ARCEER_LAAG(&y, w->parameters, nullptr);
    layer.ADD_HATCHINGS(w->parameters, x, y, 1);
    LEEG_TABEL(&x);
    LEEG_TABEL(&y);
    seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    vectors = CountVectors(layer);
    layer.Clear();
  }
  Record(state, "road/" + w->name, vectors, seconds);
}

#ifdef KELVOR2D_HAVE_CLIPPER1

// The grid lines of both tables as open two-point paths across the layer.
ClipperLib::Paths HatchLines(const HatchWorkload& w) {
  ClipperLib::Paths lines;
  const CONTOUR_LAYER& l = w.layer;
  for (int32_t c = 0; c <= l.MaxX; c += w.distance) {
    lines.push_back({ClipperLib::IntPoint(c, l.MinY - 1), ClipperLib::IntPoint(c, l.MaxY + 1)});
  }
  for (int32_t c = 0; c <= l.MaxY; c += w.distance) {
    lines.push_back({ClipperLib::IntPoint(l.MinX - 1, c), ClipperLib::IntPoint(l.MaxX + 1, c)});
  }
  return lines;
}

// Clipper 1 clipping of the hatch lines: the runs, unordered, as open paths.
void RunClipper(benchmark::State& state, HatchWorkload* w) {
  const ClipperLib::Paths clip = clipper1_lines::ToPaths(w->rings);
  const ClipperLib::Paths lines = HatchLines(*w);
  int64_t vectors = 0;
  double seconds = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    const ClipperLib::Paths runs = clipper1_lines::ClipLines(lines, clip);
    seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    vectors = static_cast<int64_t>(runs.size());
  }
  Record(state, "clipper1/" + w->name, vectors, seconds);
}

#endif

void RegisterAll() {
  AddWorkload("plate@100", workloads::Plate(), 100);
  for (int32_t distance : {400, 800, 1200}) {
    AddWorkload("square-holes-infill@" + std::to_string(distance), workloads::SquareHolesInfill(), distance);
  }
  for (HatchWorkload* w : Workloads()) {
    for (const Generator& g : Generators()) {
      benchmark::RegisterBenchmark(("Hatch/" + std::string(g.name) + "/" + w->name).c_str(), RunGenerator, w,
                                   &g)
          ->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark(("Road/" + w->name).c_str(), RunRoad, w)->Unit(benchmark::kMillisecond);
#ifdef KELVOR2D_HAVE_CLIPPER1
    benchmark::RegisterBenchmark(("Clipper1HatchLines/" + w->name).c_str(), RunClipper, w)
        ->Unit(benchmark::kMillisecond);
#endif
  }
}

void PrintFigure(const std::string& label, const Figures& f) {
  std::printf("  %-20s %9.3f ms %9lld vectors %8.2f M vectors/s\n", label.c_str(), f.seconds * 1e3,
              static_cast<long long>(f.vectors), f.vectors / f.seconds / 1e6);
}

void PrintSummary() {
  for (HatchWorkload* w : Workloads()) {
    if (figures.count("road/" + w->name) == 0)
      continue;
    std::printf("\n%s (best time per call):\n", w->name.c_str());
    for (const Generator& g : Generators()) {
      const auto f = figures.find(std::string(g.name) + "/" + w->name);
      if (f != figures.end())
        PrintFigure(g.name, f->second);
    }
    const auto road = figures.find("road/" + w->name);
    PrintFigure("road (tables+smart)", road->second);
    const auto clipper = figures.find("clipper1/" + w->name);
    if (clipper != figures.end()) {
      PrintFigure("Clipper 1 lines", clipper->second);
      std::printf("  ratio Clipper 1 / road %.2fx\n", clipper->second.seconds / road->second.seconds);
    }
  }
#ifndef KELVOR2D_HAVE_CLIPPER1
  std::printf("Clipper 1 comparison skipped: libpolyclipping-dev was not found when building.\n");
#endif
}

void ReleaseWorkloads() {
  for (HatchWorkload* w : Workloads()) {
    LEEG_TABEL(&w->x);
    LEEG_TABEL(&w->y);
    w->layer.LEEG_LAAG();
    delete w;
  }
  Workloads().clear();
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
  ReleaseWorkloads();
  return 0;
}
