// Booleans and offsets of the standard workloads, timed against Clipper 1 in
// the same run: union, intersection and difference of random-500/1000,
// star-10000/100000 and plate with plate-shifted, with the area difference of
// the results. Google Benchmark runs our operations; the comparison table is
// printed after it (best of 3; Clipper once on star-100000, where it needs
// about half a minute per operation).
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <string>

#include "bridges/boolean_front_ends.h"
#include "tests/support/layer_builders.h"  // LayerArea, as the tests measure results
#include "workloads.h"

#ifdef KELVOR2D_HAVE_CLIPPER1
#include <polyclipping/clipper.hpp>
#endif

namespace {

enum class Operation { kUnion, kIntersection, kDifference };
const char* const kOperationNames[] = {"union", "intersection", "difference"};

struct Workload {
  std::string name;
  workloads::Rings a;
  workloads::Rings b;
  bool selfCrossing;  // operands cross themselves: both sides reduce each operand to positive winding first
};

std::vector<Workload> MakeWorkloads() {
  std::vector<Workload> list;
  for (int n : {500, 1000}) {
    workloads::Ring a, b;
    workloads::RandomPolygons(n, a, b);
    list.push_back({"random-" + std::to_string(n), {a}, {b}, true});
  }
  for (int n : {10000, 100000}) {
    workloads::Ring a, b;
    workloads::Stars(n, a, b);
    list.push_back({"star-" + std::to_string(n), {a}, {b}, false});
  }
  list.push_back({"plate", workloads::Plate(), workloads::PlateShifted(), false});
  return list;
}

// Our side: the front-end on layers filled beforehand; self-crossing operands
// are first unified (each its own region of positive winding).
double RunOurs(const Workload& w, Operation op) {
  CONTOUR_LAYER a, b, result;
  workloads::FillLayer(a, w.a);
  workloads::FillLayer(b, w.b);
  if (w.selfCrossing) {
    AU::BooleanUnify(a, 0);
    AU::BooleanUnify(b, 0);
  }
  if (op == Operation::kUnion)
    AU::BooleanUnite(a, b, result, nullptr);
  if (op == Operation::kIntersection)
    AU::BooleanIntersect(a, b, result, nullptr);
  if (op == Operation::kDifference)
    AU::BooleanSubtract(a, b, result, nullptr);
  const double area = testing_support::LayerArea(result);
  a.LEEG_LAAG();
  b.LEEG_LAAG();
  result.LEEG_LAAG();
  return area;
}

#ifdef KELVOR2D_HAVE_CLIPPER1
ClipperLib::Paths ToPaths(const workloads::Rings& rings) {
  ClipperLib::Paths paths;
  for (const workloads::Ring& ring : rings) {
    ClipperLib::Path path;
    for (const MMPoint2d<long>& p : ring)
      path.push_back(ClipperLib::IntPoint(p.x, p.y));
    paths.push_back(path);
  }
  return paths;
}

// Clipper with the same region: winding counted clockwise-positive is
// Clipper's negative fill.
double RunClipper(const Workload& w, Operation op) {
  const ClipperLib::Paths a = ToPaths(w.a), b = ToPaths(w.b);
  ClipperLib::Clipper clipper;
  clipper.AddPaths(a, ClipperLib::ptSubject, true);
  clipper.AddPaths(b, ClipperLib::ptClip, true);
  const ClipperLib::ClipType type = op == Operation::kUnion          ? ClipperLib::ctUnion
                                    : op == Operation::kIntersection ? ClipperLib::ctIntersection
                                                                     : ClipperLib::ctDifference;
  ClipperLib::Paths solution;
  clipper.Execute(type, solution, ClipperLib::pftNegative, ClipperLib::pftNegative);
  double area = 0.0;
  for (const ClipperLib::Path& p : solution)
    area += ClipperLib::Area(p);  // outer paths come counter-clockwise
  return area;
}
#endif

double BestOf(int runs, const std::function<double()>& run, double* value) {
  double best = 1e300;
  for (int i = 0; i < runs; ++i) {
    const auto start = std::chrono::steady_clock::now();
    *value = run();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    best = std::min(best, took.count());
  }
  return best;
}

void PrintComparison(const std::vector<Workload>& list) {
  std::printf("\n%-14s %-13s %12s %12s %8s %14s\n", "workload", "operation", "ours [ms]", "clipper [ms]",
              "ratio", "area diff");
  for (const Workload& w : list) {
    for (int k = 0; k < 3; ++k) {
      const Operation op = static_cast<Operation>(k);
      double ourArea = 0.0;
      const double ours = BestOf(
          3, [&] { return RunOurs(w, op); }, &ourArea);
#ifdef KELVOR2D_HAVE_CLIPPER1
      double theirArea = 0.0;
      const double theirs = BestOf(
          w.name == "star-100000" ? 1 : 3, [&] { return RunClipper(w, op); }, &theirArea);
      std::printf("%-14s %-13s %12.1f %12.1f %8.2f %13.2e%%\n", w.name.c_str(), kOperationNames[k], ours,
                  theirs, ours / theirs,
                  100.0 * std::fabs(ourArea - theirArea) / std::max(std::fabs(theirArea), 1.0));
#else
      std::printf("%-14s %-13s %12.1f %12s %8s %14s\n", w.name.c_str(), kOperationNames[k], ours, "-", "-",
                  "-");
#endif
      std::fflush(stdout);
    }
  }
#ifndef KELVOR2D_HAVE_CLIPPER1
  std::printf("Clipper 1 (libpolyclipping-dev) not found at build time: comparison skipped.\n");
#endif
}

void RegisterOurs(const std::vector<Workload>& list) {
  for (const Workload& w : list) {
    for (int k = 0; k < 3; ++k) {
      const Operation op = static_cast<Operation>(k);
      benchmark::RegisterBenchmark((w.name + "/" + kOperationNames[k]).c_str(),
                                   [&w, op](benchmark::State& state) {
                                     for (auto _ : state)
                                       benchmark::DoNotOptimize(RunOurs(w, op));
                                   })
          ->Unit(benchmark::kMillisecond)
          ->Iterations(3);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<Workload> list = MakeWorkloads();
  RegisterOurs(list);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  PrintComparison(list);
  benchmark::Shutdown();
  return 0;
}
