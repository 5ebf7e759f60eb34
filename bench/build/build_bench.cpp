// The steps of kelvor2d-build on the sample build with the default recipe:
// reading a CLI file, the recipe's offset (clean, unite, classify, contour
// passes) and hatch steps, and writing (encoding) a layer. The whole program
// at 1 and 2 jobs is timed by scripts/bench_build.sh.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <vector>

#include "io/cli/cli_reader.h"
#include "io/cli/cli_writer.h"
#include "options.h"
#include "recipe.h"
#include "sample.h"

namespace {

constexpr int64_t kLayers = 1000;
constexpr int64_t kEvery = 10;  // the recipe benchmarks take every 10th layer of the build

const Recipe& DefaultRecipe() {
  static const Recipe recipe = [] {
    BuildOptions options;
    Recipe r;
    std::string error;
    MakeRecipe(options, r, error);
    return r;
  }();
  return recipe;
}

const std::string& SampleFile(CliEncoding encoding) {
  static std::string paths[2];
  std::string& path = paths[encoding == CliEncoding::kBinary];
  if (path.empty()) {
    path = "/tmp/kelvor2d-build-bench-" + std::to_string(getpid()) +
           (encoding == CliEncoding::kBinary ? ".b" : ".a");
    CliWriter writer;
    std::string error, encoded;
    writer.Open(path, encoding, error);
    for (int64_t i = 0; i < kLayers; ++i) {
      encoded.clear();
      EncodeCliLayer(SampleLayer(i, kLayers, 1000.0), encoding, encoded);
      writer.Append(encoded, 1, error);
    }
    writer.Commit(CliHeader(), error);
  }
  return path;
}

void BM_Read(benchmark::State& state) {
  const CliEncoding encoding = state.range(0) != 0 ? CliEncoding::kBinary : CliEncoding::kAscii;
  const std::string& path = SampleFile(encoding);
  int64_t layers = 0;
  for (auto _ : state) {
    CliReader reader(path, 1000.0);
    reader.Open();
    CliLayer layer;
    while (reader.Next(layer) == CliStatus::kLayer)
      ++layers;
  }
  state.counters["layers/s"] = benchmark::Counter(static_cast<double>(layers), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_Read)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Every tenth layer of the sample through the recipe, with the offset and hatch
// steps timed apart; hatch metres per second of the whole recipe.
void BM_Recipe(benchmark::State& state) {
  Kelvor::Common::MInternalUnits::Set(1000.0);
  std::vector<CliLayer> layers;
  for (int64_t i = 0; i < kLayers; i += kEvery)
    layers.push_back(SampleLayer(i, kLayers, 1000.0));
  double offsetMs = 0, hatchMs = 0, hatchM = 0;
  int64_t runs = 0;
  CliLayer out;
  LayerStats stats;
  for (auto _ : state) {
    for (size_t i = 0; i < layers.size(); ++i) {
      RunRecipe(DefaultRecipe(), static_cast<int64_t>(i) * kEvery, layers[i], out, stats);
      offsetMs += stats.offsetMs, hatchMs += stats.hatchMs, hatchM += stats.hatchLength / 1e6;
    }
    runs += static_cast<int64_t>(layers.size());
  }
  state.counters["layers/s"] = benchmark::Counter(static_cast<double>(runs), benchmark::Counter::kIsRate);
  state.counters["hatch m/s"] = benchmark::Counter(hatchM, benchmark::Counter::kIsRate);
  state.counters["offset ms/layer"] = offsetMs / runs;
  state.counters["hatch ms/layer"] = hatchMs / runs;
}
BENCHMARK(BM_Recipe)->Unit(benchmark::kMillisecond);

void BM_Write(benchmark::State& state) {
  const CliEncoding encoding = state.range(0) != 0 ? CliEncoding::kBinary : CliEncoding::kAscii;
  std::vector<CliLayer> layers;
  LayerStats stats;
  for (int64_t i = 0; i < kLayers; i += kEvery) {
    layers.emplace_back();
    RunRecipe(DefaultRecipe(), i, SampleLayer(i, kLayers, 1000.0), layers.back(), stats);
  }
  int64_t bytes = 0, runs = 0;
  std::string encoded;
  for (auto _ : state) {
    for (const CliLayer& layer : layers) {
      encoded.clear();
      EncodeCliLayer(layer, encoding, encoded);
      bytes += static_cast<int64_t>(encoded.size());
    }
    runs += static_cast<int64_t>(layers.size());
  }
  state.counters["layers/s"] = benchmark::Counter(static_cast<double>(runs), benchmark::Counter::kIsRate);
  state.SetBytesProcessed(bytes);
}
BENCHMARK(BM_Write)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
