// Area-coverage rendering of `plate-raster` into 1024 and 4096 pixel bitmaps
// (`raster-1k`, `raster-4k`), in megapixels per second (counter Mpx), beside FreeType's
// exact-area rasteriser on the same polygons when it is available. After the
// runs it prints the ratio of the best times and, on the 1024 case, the
// largest and mean difference of each result from the exact per-pixel area.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "bitmap/convertor.h"
#include "sibling/units/internal_units.h"
#include "tests/support/bitmap_oracle.h"
#include "workloads.h"

#ifdef KELVOR2D_HAVE_FREETYPE
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#endif

namespace {

constexpr double kUnitsPerMm = 1000.0;
constexpr double kSizeMm = 200.0;

// The layer of `plate-raster`, built once and classified as a caller would
// (the plate outer, the holes inner), since the way into a border orients each
// contour by its Outer attribute.
const CONTOUR_LAYER& RasterLayer() {
  static CONTOUR_LAYER* layer = [] {
    auto* l = new CONTOUR_LAYER;
    workloads::FillLayer(*l, workloads::PlateRaster());
    for (CONTOUR* c = l->FirstContour; c != nullptr; c = c->NextContour)
      c->Outer = c == l->FirstContour ? 1 : 0;
    return l;
  }();
  return *layer;
}

// Renders without the cleaning steps of Operate: the share of the sweep and
// the row loop in the whole time.
class SweepOnly : public MContours2BitmapConvertor {
 public:
  using MContours2BitmapConvertor::MContours2BitmapConvertor;
  void Render() {
    EraseBitmap();
    _OperateWithSweep();
  }
};

// Renders the layer into `bitmap` of side x side pixels, as a user would.
void RenderKelvor(std::vector<unsigned char>& bitmap, int32_t side) {
  MContours2BitmapConvertor convertor(bitmap.data(), side, side, kSizeMm, kSizeMm, &RasterLayer());
  convertor.Operate();
}

void BM_Kelvor(benchmark::State& state) {
  Kelvor::Common::MInternalUnits::Set(kUnitsPerMm);
  const int32_t side = static_cast<int32_t>(state.range(0));
  std::vector<unsigned char> bitmap(static_cast<size_t>(side) * side);
  for (auto _ : state) {
    RenderKelvor(bitmap, side);
    benchmark::DoNotOptimize(bitmap.data());
  }
  state.counters["Mpx"] = benchmark::Counter(static_cast<double>(side) * side * 1e-6,
                                             benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_Kelvor)->Name("kelvor/raster-1k")->Arg(1024)->Unit(benchmark::kMillisecond)->Repetitions(3);
BENCHMARK(BM_Kelvor)->Name("kelvor/raster-4k")->Arg(4096)->Unit(benchmark::kMillisecond)->Repetitions(3);

void BM_KelvorSweepOnly(benchmark::State& state) {
  Kelvor::Common::MInternalUnits::Set(kUnitsPerMm);
  const int32_t side = static_cast<int32_t>(state.range(0));
  std::vector<unsigned char> bitmap(static_cast<size_t>(side) * side);
  for (auto _ : state) {
    SweepOnly convertor(bitmap.data(), side, side, kSizeMm, kSizeMm, &RasterLayer());
    convertor.Render();
    benchmark::DoNotOptimize(bitmap.data());
  }
  state.counters["Mpx"] = benchmark::Counter(static_cast<double>(side) * side * 1e-6,
                                             benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_KelvorSweepOnly)->Name("kelvor-no-cleaning/raster-1k")->Arg(1024)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_KelvorSweepOnly)->Name("kelvor-no-cleaning/raster-4k")->Arg(4096)->Unit(benchmark::kMillisecond);

#ifdef KELVOR2D_HAVE_FREETYPE
// The same polygons as a FreeType outline in 26.6 pixel coordinates, rendered
// into a top-down gray bitmap (row 0 is the highest row).
class FreeTypeRaster {
 public:
  explicit FreeTypeRaster(int32_t side) : m_side(side), m_buffer(static_cast<size_t>(side) * side) {
    FT_Init_FreeType(&m_library);
    const double scale = side / (kSizeMm * kUnitsPerMm) * 64.0;
    for (const CONTOUR* c = RasterLayer().FirstContour; c != nullptr; c = c->NextContour) {
      for (int32_t i = 0; i < c->NumPoints; ++i) {
        m_points.push_back({std::lround(c->Points[i].x * scale), std::lround(c->Points[i].y * scale)});
        m_tags.push_back(FT_CURVE_TAG_ON);
      }
      m_ends.push_back(static_cast<short>(m_points.size() - 1));
    }
    m_outline.n_contours = static_cast<short>(m_ends.size());
    m_outline.n_points = static_cast<short>(m_points.size());
    m_outline.points = m_points.data();
    m_outline.tags = m_tags.data();
    m_outline.contours = m_ends.data();
    m_outline.flags = FT_OUTLINE_NONE;
    m_bitmap.rows = side;
    m_bitmap.width = side;
    m_bitmap.pitch = side;
    m_bitmap.buffer = m_buffer.data();
    m_bitmap.num_grays = 256;
    m_bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
  }
  ~FreeTypeRaster() { FT_Done_FreeType(m_library); }

  void Render() {
    std::fill(m_buffer.begin(), m_buffer.end(), 0);
    FT_Outline_Get_Bitmap(m_library, &m_outline, &m_bitmap);
  }
  // The byte of pixel (x, y), row 0 lowest as in our bitmaps.
  int Pixel(int32_t x, int32_t y) const { return m_buffer[static_cast<size_t>(m_side - 1 - y) * m_side + x]; }

 private:
  int32_t m_side;
  std::vector<unsigned char> m_buffer;
  std::vector<FT_Vector> m_points;
  std::vector<char> m_tags;
  std::vector<short> m_ends;
  FT_Library m_library = nullptr;
  FT_Outline m_outline{};
  FT_Bitmap m_bitmap{};
};

void BM_FreeType(benchmark::State& state) {
  const int32_t side = static_cast<int32_t>(state.range(0));
  FreeTypeRaster raster(side);
  for (auto _ : state)
    raster.Render();
  state.counters["Mpx"] = benchmark::Counter(static_cast<double>(side) * side * 1e-6,
                                             benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_FreeType)->Name("freetype/raster-1k")->Arg(1024)->Unit(benchmark::kMillisecond)->Repetitions(3);
BENCHMARK(BM_FreeType)->Name("freetype/raster-4k")->Arg(4096)->Unit(benchmark::kMillisecond)->Repetitions(3);
#endif

// Keeps the best wall and CPU time (ms) of each benchmark while printing as usual.
class BestTimeReporter : public benchmark::ConsoleReporter {
 public:
  struct Best {
    double wall = 0.0;  // ms, 0 when the benchmark did not run
    double cpu = 0.0;   // ms
  };
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred)
        continue;
      Best& best = m_best[run.run_name.function_name];
      const double wall = run.GetAdjustedRealTime(), cpu = run.GetAdjustedCPUTime();
      if (best.wall == 0.0 || wall < best.wall)
        best.wall = wall;
      if (best.cpu == 0.0 || cpu < best.cpu)
        best.cpu = cpu;
    }
    ConsoleReporter::ReportRuns(runs);
  }
  Best Of(const std::string& name) const {
    auto found = m_best.find(name);
    return found == m_best.end() ? Best{} : found->second;
  }

 private:
  std::map<std::string, Best> m_best;
};

// Largest and mean absolute difference of a bitmap from the exact bytes.
template <class PixelAt>
void PrintOracleDifference(const char* who, const testing_support::BitmapAreaOracle& oracle, int32_t side,
                           PixelAt pixelAt) {
  int largest = 0;
  double total = 0.0;
  for (int32_t y = 0; y < side; ++y) {
    for (int32_t x = 0; x < side; ++x) {
      const int difference = std::abs(pixelAt(x, y) - oracle.Expected(x, y));
      largest = std::max(largest, difference);
      total += difference;
    }
  }
  std::printf("  %-9s largest %d grey levels, mean %.5f\n", who, largest,
              total / (static_cast<double>(side) * side));
}

void PrintComparison(const BestTimeReporter& reporter) {
  std::printf("\nBest of 3 in ms, wall / CPU (ratio kelvor / freetype):\n");
  for (const char* workload : {"raster-1k", "raster-4k"}) {
    const auto ours = reporter.Of(std::string("kelvor/") + workload);
    const auto theirs = reporter.Of(std::string("freetype/") + workload);
    std::printf("  %s: kelvor %.1f / %.1f", workload, ours.wall, ours.cpu);
    if (theirs.wall > 0.0 && theirs.cpu > 0.0) {
      std::printf(", freetype %.1f / %.1f, ratio %.2f / %.2f", theirs.wall, theirs.cpu,
                  ours.wall / theirs.wall, ours.cpu / theirs.cpu);
    }
    std::printf("\n");
  }
  constexpr int32_t side = 1024;
  Kelvor::Common::MInternalUnits::Set(kUnitsPerMm);
  testing_support::BitmapAreaOracle oracle(side, side, kSizeMm, kSizeMm, kUnitsPerMm);
  oracle.AddRings(workloads::PlateRaster());
  std::printf("Difference from the exact per-pixel area on raster-1k:\n");
  std::vector<unsigned char> ours(static_cast<size_t>(side) * side);
  RenderKelvor(ours, side);
  PrintOracleDifference("kelvor", oracle, side,
                        [&](int32_t x, int32_t y) { return int(ours[y * side + x]); });
#ifdef KELVOR2D_HAVE_FREETYPE
  FreeTypeRaster raster(side);
  raster.Render();
  PrintOracleDifference("freetype", oracle, side, [&](int32_t x, int32_t y) { return raster.Pixel(x, y); });
#endif
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
#ifndef KELVOR2D_HAVE_FREETYPE
  std::printf("FreeType (libfreetype-dev) not found at configure time: comparison skipped.\n");
#endif
  BestTimeReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  PrintComparison(reporter);
  benchmark::Shutdown();
  return 0;
}
