// Writing and reading a contour layer through the SAX layer, in memory:
// megabytes of document per second both ways, and points per second.
#include <benchmark/benchmark.h>

#include <sstream>
#include <string>

#include "persistence/sax_contour_layer.h"
#include "workloads.h"

namespace {

// One million points: 100 round contours of 10,000 points each.
workloads::Rings MillionPoints() {
  workloads::Rings rings;
  for (int i = 0; i < 100; ++i) {
    rings.push_back(workloads::RoundHole(1e6 * (i % 10), 1e6 * (i / 10), 9e5, 10000, i % 2 == 0));
  }
  return rings;
}

std::string WriteDocument(CONTOUR_LAYER& layer) {
  std::ostringstream out;
  MSAXWriter writer(out);
  writer.WriteDocument(MSaxContourLayer(&layer, nullptr));
  return out.str();
}

void Report(benchmark::State& state, size_t bytes, size_t points) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
  state.counters["MB/s"] =
      benchmark::Counter(static_cast<double>(bytes) / 1e6, benchmark::Counter::kIsIterationInvariantRate);
  state.counters["points/s"] =
      benchmark::Counter(static_cast<double>(points), benchmark::Counter::kIsIterationInvariantRate);
  state.counters["document_MB"] = static_cast<double>(bytes) / 1e6;
}

void BM_WriteLayer(benchmark::State& state, workloads::Rings (*make)()) {
  const workloads::Rings rings = make();
  CONTOUR_LAYER layer;
  workloads::FillLayer(layer, rings);
  size_t bytes = 0;
  for (auto _ : state) {
    const std::string document = WriteDocument(layer);
    bytes = document.size();
    benchmark::DoNotOptimize(document.data());
  }
  Report(state, bytes, workloads::PointCount(rings));
  layer.LEEG_LAAG();
}

void BM_ReadLayer(benchmark::State& state, workloads::Rings (*make)()) {
  const workloads::Rings rings = make();
  CONTOUR_LAYER layer;
  workloads::FillLayer(layer, rings);
  const std::string document = WriteDocument(layer);
  MSaxContourLayer handler(&layer, nullptr);
  MSAXReader reader;
  for (auto _ : state) {
    if (!reader.ReadBuffer(document.data(), document.size(), handler)) {
      state.SkipWithError(reader.GetError().c_str());
      break;
    }
  }
  Report(state, document.size(), workloads::PointCount(rings));
  layer.LEEG_LAAG();
}

}  // namespace

BENCHMARK_CAPTURE(BM_WriteLayer, million_points, MillionPoints)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadLayer, million_points, MillionPoints)->Unit(benchmark::kMillisecond);
// `plate`: 2,501 contours; reading recomputes the extents after each contour.
BENCHMARK_CAPTURE(BM_WriteLayer, plate, workloads::Plate)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadLayer, plate, workloads::Plate)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
