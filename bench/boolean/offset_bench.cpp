// Offsets of the standard workloads with round joins (chord error at most
// half a unit on both sides), timed against Clipper2 in the same run: `plate`
// (its contours classified first) with the holes grown and shrunk by 300
// units, the first star of `star-10000` by 1,000 units both ways, and two
// memory cases: 4,000 small squares grown by 1e6 units into one disc, and the
// self-crossings of a 4,001-point star polygon removed. Each row gives both
// processor times (best of 5), their ratio, the area difference and the peak memory of
// one run of each side. KELVOR2D_BENCH_ONLY=name,name limits the rows.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "comparison.h"
#include "sibling/boolean/border_functions.h"
#include "sibling/boolean/offsetter.h"
#include "workloads.h"

namespace {

struct Workload {
  std::string name;
  workloads::Rings rings;
  int32_t distance;  // > 0 shrinks the material (grows holes); 0: remove self-crossings only
};

// 4,000 squares of side 100 on a grid of pitch 1,000 (80 x 50), clockwise.
workloads::Rings SmallSquares() {
  workloads::Rings rings;
  for (int i = 0; i < 80; ++i) {
    for (int j = 0; j < 50; ++j) {
      const int32_t x = i * 1000, y = j * 1000;
      rings.push_back({{x, y}, {x, y + 100}, {x + 100, y + 100}, {x + 100, y}});
    }
  }
  return rings;
}

// The star polygon {4001/2000} of radius 1e6: about 8 million self-crossings.
workloads::Rings StarPolygon() {
  const int n = 4001, step = 2000;
  workloads::Ring ring;
  for (int i = 0; i < n; ++i) {
    const double a = 2.0 * 3.141592653589793 * static_cast<double>((static_cast<int64_t>(i) * step) % n) / n;
    ring.push_back({static_cast<int32_t>(std::lround(1e6 * std::cos(a))),
                    static_cast<int32_t>(std::lround(1e6 * std::sin(a)))});
  }
  return {ring};
}

std::vector<Workload> MakeWorkloads() {
  workloads::Ring star, other;
  workloads::Stars(10000, star, other);
  return {{"plate-grow-holes", workloads::Plate(), 300},
          {"plate-shrink-holes", workloads::Plate(), -300},
          {"star-10000-shrink", {star}, 1000},
          {"star-10000-grow", {star}, -1000},
          {"squares-4000-grow", SmallSquares(), -1000000},
          {"star-4001-self", StarPolygon(), 0}};
}

// The rings as a classified border: outer contours clockwise, holes
// counter-clockwise, flags set.
M3dBorderLong ClassifiedBorder(const workloads::Rings& rings) {
  M3dBorderLong border;
  for (const workloads::Ring& ring : rings) {
    M3dBorderContourLong* c = border.AddContourAtEnd();
    for (const MMPoint2d<long>& p : ring)
      c->InsertAtEnd(p.x, p.y, nullptr);
    c->SetIsClosed(true);
  }
  AU::OrientBorder2D(border, nullptr);
  return border;
}

double BorderArea(const M3dBorderLong& border) {
  double area = 0.0;
  for (const M3dBorderContourLong& c : border)
    area += c.SurfaceAreaWithSignXY();
  return area;
}

// The offsetter holds the classified input already (as Clipper2 gets its
// paths ready-made); the call and the result's area are timed.
double RunOurs(const Workload& w, M2dOffsetter& offsetter) {
  if (w.distance == 0) {
    M3dBorderLong border = offsetter.input;
    AU::BooleanRemoveSelfIntersections(border);
    return BorderArea(border);
  }
  offsetter.CreateOffset(w.distance);
  return BorderArea(*offsetter.result);
}

#ifdef KELVOR2D_HAVE_CLIPPER2
// Clipper2 grows the material for a positive delta, whatever the orientation.
double RunClipper2(const Workload& w, const Clipper2Lib::Paths64& paths) {
  using namespace Clipper2Lib;
  if (w.distance == 0)
    return comparison::Area64(Union(paths, FillRule::NonZero));
  return comparison::Area64(
      InflatePaths(paths, -static_cast<double>(w.distance), JoinType::Round, EndType::Polygon, 2.0, 0.5));
}
#endif

constexpr int kRuns = 5;

void PrintComparison(const std::vector<Workload>& list) {
  std::printf("\n%-20s %10s | %10s %6s %9s | %8s %8s\n", "workload", "ours ms", "clip2 ms", "ratio",
              "area diff", "ours MB", "clip2 MB");
  for (const Workload& w : list) {
    if (!comparison::Selected(w.name))
      continue;
    M2dOffsetter offsetter;
    offsetter.input = ClassifiedBorder(w.rings);
    const int runs = w.rings.size() == 4000 || w.distance == 0 ? 1 : kRuns;
    double ourArea = 0.0;
    const double ours = comparison::BestOf(
        runs, [&] { return RunOurs(w, offsetter); }, &ourArea);
    std::printf("%-20s %10.2f |", w.name.c_str(), ours);
#ifdef KELVOR2D_HAVE_CLIPPER2
    const Clipper2Lib::Paths64 paths = comparison::ToPaths64(w.rings);
    double theirArea = 0.0;
    const double theirs = comparison::BestOf(
        runs, [&] { return RunClipper2(w, paths); }, &theirArea);
    std::printf(" %10.2f %6.2f %8.1e%% |", theirs, ours / theirs,
                comparison::RelativeDifference(ourArea, theirArea));
    const double theirMemory = comparison::PeakMegabytes([&] { RunClipper2(w, paths); });
#else
    std::printf(" %10s %6s %9s |", "-", "-", "-");
    const double theirMemory = -1.0;
#endif
    const double ourMemory = comparison::PeakMegabytes([&] { RunOurs(w, offsetter); });
    std::printf(" %8s %8s\n", comparison::Megabytes(ourMemory).c_str(),
                comparison::Megabytes(theirMemory).c_str());
    std::fflush(stdout);
  }
#ifndef KELVOR2D_HAVE_CLIPPER2
  std::printf("Clipper2 sources (KELVOR2D_CLIPPER2_DIR) not found at build time: its comparison skipped.\n");
#endif
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<Workload> list = MakeWorkloads();
  benchmark::Initialize(&argc, argv);
  PrintComparison(list);
  benchmark::Shutdown();
  return 0;
}
