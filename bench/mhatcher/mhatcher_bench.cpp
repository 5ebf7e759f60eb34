// Hatching `plate` at distance 100 in a free direction (37 degrees) through
// the hatch line sweep, beside the table route (scan conversion + straight
// hatching) at 0 degrees on the same layer and grid.
#include <benchmark/benchmark.h>

#include "kelvor2d.h"
#include "workloads.h"

namespace {

constexpr int32_t kDistance = 100;

struct PlateLayer {
  CONTOUR_LAYER layer;
  PlateLayer() { workloads::FillLayer(layer, workloads::Plate()); }
  ~PlateLayer() { layer.Clear(); }
};

CONTOUR_LAYER& Plate() {
  static PlateLayer plate;
  return plate.layer;
}

void BM_MHatcherAtAngle(benchmark::State& state) {
  MHatcher hatcher;
  hatcher.GetHatchLayer().SetAngle(static_cast<double>(state.range(0)));
  int64_t vectors = 0;
  for (auto _ : state) {
    hatcher.Hatch(Plate(), kDistance, 0);
    VECTOR_LAYER out;
    AddHatchLayerToVectorLayer(hatcher.GetHatchLayer(), out, 1);
    vectors += hatcher.GetHatchLayer().VectorCount;
    out.Clear();
  }
  state.counters["vectors/s"] = benchmark::Counter(static_cast<double>(vectors), benchmark::Counter::kIsRate);
  state.counters["vectors"] = static_cast<double>(hatcher.GetHatchLayer().VectorCount);
}
BENCHMARK(BM_MHatcherAtAngle)->Arg(37)->Arg(0)->Unit(benchmark::kMillisecond);

void BM_TableRouteAtZero(benchmark::State& state) {
  MSliceFileParameters parameters;
  parameters.XHatchDistance = kDistance;
  int64_t vectors = 0;
  for (auto _ : state) {
    TABEL table;
    Plate().X_ARCEER_LAAG(&table, parameters, nullptr);
    VECTOR_LAYER out;
    out.ADD_X_ARCERING_LINKS(table, parameters, 1);
    for (const VECTOR_BLOK* b = out.FirstBlock; b != nullptr; b = b->NextBlock)
      vectors += b->Size / 4;
    out.Clear();
    LEEG_TABEL(&table);
  }
  state.counters["vectors/s"] = benchmark::Counter(static_cast<double>(vectors), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_TableRouteAtZero)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
