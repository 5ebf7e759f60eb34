// Booleans of the standard workloads, timed against Clipper 1 and Clipper2 in
// the same run: union, intersection and difference of random-500/1000,
// star-10000/100000 and plate with plate-shifted, with the area difference of
// the results and the peak memory of one run of each side. Google Benchmark
// runs our operations; the comparison table is printed after it (processor
// time, best of 5; both Clippers once on star-100000, where Clipper 1 needs about half a minute
// per operation). KELVOR2D_BENCH_ONLY=name,name limits the table to those workloads.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include "bridges/boolean_front_ends.h"
#include "comparison.h"
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

#ifdef KELVOR2D_HAVE_CLIPPER2
// Clipper2 with the same region; its outer paths come counter-clockwise.
double RunClipper2(const Workload& w, Operation op) {
  using namespace Clipper2Lib;
  const Paths64 a = comparison::ToPaths64(w.a), b = comparison::ToPaths64(w.b);
  const Paths64 solution = op == Operation::kUnion          ? Union(a, b, FillRule::Negative)
                           : op == Operation::kIntersection ? Intersect(a, b, FillRule::Negative)
                                                            : Difference(a, b, FillRule::Negative);
  return comparison::Area64(solution);
}
#endif

constexpr int kRuns = 5;

// One row per workload and operation: ours, Clipper 1, Clipper2 (time, ratio
// ours / theirs, area difference) and the peak memory of ours and Clipper2.
void PrintComparison(const std::vector<Workload>& list) {
  std::printf("\n%-12s %-12s %9s | %9s %6s %9s | %9s %6s %9s | %8s %8s\n", "workload", "operation", "ours ms",
              "clip1 ms", "ratio", "area diff", "clip2 ms", "ratio", "area diff", "ours MB", "clip2 MB");
  for (const Workload& w : list) {
    if (!comparison::Selected(w.name))
      continue;
    for (int k = 0; k < 3; ++k) {
      const Operation op = static_cast<Operation>(k);
      double ourArea = 0.0;
      const double ours = comparison::BestOf(
          kRuns, [&] { return RunOurs(w, op); }, &ourArea);
      std::printf("%-12s %-12s %9.2f |", w.name.c_str(), kOperationNames[k], ours);
#ifdef KELVOR2D_HAVE_CLIPPER1
      double area1 = 0.0;
      const double clipper1 = comparison::BestOf(
          w.name == "star-100000" ? 1 : kRuns, [&] { return RunClipper(w, op); }, &area1);
      std::printf(" %9.2f %6.2f %8.1e%% |", clipper1, ours / clipper1,
                  comparison::RelativeDifference(ourArea, area1));
#else
      std::printf(" %9s %6s %9s |", "-", "-", "-");
#endif
#ifdef KELVOR2D_HAVE_CLIPPER2
      double area2 = 0.0;
      const double clipper2 = comparison::BestOf(
          w.name == "star-100000" ? 1 : kRuns, [&] { return RunClipper2(w, op); }, &area2);
      std::printf(" %9.2f %6.2f %8.1e%% |", clipper2, ours / clipper2,
                  comparison::RelativeDifference(ourArea, area2));
      const double theirMemory = comparison::PeakMegabytes([&] { RunClipper2(w, op); });
#else
      std::printf(" %9s %6s %9s |", "-", "-", "-");
      const double theirMemory = -1.0;
#endif
      const double ourMemory = comparison::PeakMegabytes([&] { RunOurs(w, op); });
      std::printf(" %8s %8s\n", comparison::Megabytes(ourMemory).c_str(),
                  comparison::Megabytes(theirMemory).c_str());
      std::fflush(stdout);
    }
  }
#ifndef KELVOR2D_HAVE_CLIPPER1
  std::printf("Clipper 1 (libpolyclipping-dev) not found at build time: its comparison skipped.\n");
#endif
#ifndef KELVOR2D_HAVE_CLIPPER2
  std::printf("Clipper2 sources (KELVOR2D_CLIPPER2_DIR) not found at build time: its comparison skipped.\n");
#endif
}

void RegisterOurs(const std::vector<Workload>& list) {
  for (const Workload& w : list) {
    if (!comparison::Selected(w.name))
      continue;
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
