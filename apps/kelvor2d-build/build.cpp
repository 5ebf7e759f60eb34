#include "build.h"

#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <set>

#include "io/cli/cli_reader.h"
#include "io/cli/cli_writer.h"
#include "preview.h"
#include "progress.h"
#include "recipe.h"
#include "workers.h"

namespace {

constexpr int kWindowPerWorker = 4;  // layers in flight or waiting to be written, per worker
constexpr int64_t kDefaultPreviews = 10;

double Since(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Report(const std::string& text) {
  std::fprintf(stderr, "kelvor2d-build: %s\n", text.c_str());
}

struct Totals {
  int64_t layers = 0, skipped = 0, unhatched = 0, contours = 0, vectors = 0;
  double contourLength = 0, hatchLength = 0;  // internal units
  double readS = 0, offsetMs = 0, hatchMs = 0, encodeMs = 0;
};

// Runs one build: reads layers, hands them to the workers, writes results in order.
class BuildRun {
 public:
  BuildRun(const BuildOptions& options, const Recipe& recipe)
      : m_Options(options),
        m_Recipe(recipe),
        m_Reader(options.inputs[0], options.unitsPerMm),
        m_Pool(Jobs(options), [this](const LayerJob& job, LayerResult& result) { Process(job, result); }) {}

  bool Run(std::string& error);
  void PrintSummary(double seconds) const;

 private:
  static int Jobs(const BuildOptions& o) {
    return o.jobs > 0 ? o.jobs : static_cast<int>(std::max(1L, sysconf(_SC_NPROCESSORS_ONLN)));
  }
  void Process(const LayerJob& job, LayerResult& result) const;
  bool ReadNext(LayerJob& job, bool& have, std::string& error);
  bool WantPreview(int64_t index) const;
  bool WriteReady(std::string& error);
  bool Finish(std::string& error);

  const BuildOptions& m_Options;
  Recipe m_Recipe;
  CliReader m_Reader;
  WorkerPool m_Pool;
  CliWriter m_Writer;
  CliDimension m_Dimension;
  std::map<int64_t, LayerResult> m_Waiting;  // results that arrived before their turn
  int64_t m_NextSequence = 0, m_NextToWrite = 0;
  int64_t m_PreviewEvery = 0;
  std::set<int64_t> m_PreviewLayers;
  std::vector<PlotPoint> m_Plot;
  Totals m_Totals;
  std::unique_ptr<Progress> m_Progress;
};

void BuildRun::Process(const LayerJob& job, LayerResult& result) const {
  CliLayer out;
  RunRecipe(m_Recipe, job.index, job.layer, out, result.stats);
  const auto start = std::chrono::steady_clock::now();
  EncodeCliLayer(out, m_Recipe.encoding, result.encoded);
  result.stats.encodeMs = Since(start) * 1000.0;
  result.dimension = DimensionOf(out, m_Recipe.unitsPerMm);
  result.sequence = job.sequence;
  char name[32];
  std::snprintf(name, sizeof name, "/layer-%05lld.png", static_cast<long long>(job.index));
  std::string error;
  if (job.preview && !WriteLayerPicture(m_Options.previewDir + name, out, error))
    result.warning = error;
}

bool BuildRun::WantPreview(int64_t index) const {
  if (m_Options.previewDir.empty())
    return false;
  return m_PreviewLayers.count(index) > 0 || (m_PreviewEvery > 0 && index % m_PreviewEvery == 0);
}

bool BuildRun::ReadNext(LayerJob& job, bool& have, std::string& error) {
  have = false;
  while (true) {
    const auto start = std::chrono::steady_clock::now();
    const CliStatus status = m_Reader.Next(job.layer);
    m_Totals.readS += Since(start);
    const int64_t index = m_Reader.LayerIndex();
    if (status == CliStatus::kEnd || (status != CliStatus::kFailed && index > m_Options.toLayer))
      return true;
    if (status == CliStatus::kFailed || (status == CliStatus::kBadLayer && !m_Options.keepGoing)) {
      error = m_Reader.Error();
      return false;
    }
    if (index < m_Options.fromLayer)
      continue;
    if (status == CliStatus::kBadLayer) {
      Report(m_Reader.Error() + " (layer left out)");
      ++m_Totals.skipped;
      continue;
    }
    job.sequence = m_NextSequence++;
    job.index = index;
    job.preview = WantPreview(index);
    have = true;
    return true;
  }
}

bool BuildRun::WriteReady(std::string& error) {
  for (auto it = m_Waiting.find(m_NextToWrite); it != m_Waiting.end(); it = m_Waiting.find(m_NextToWrite)) {
    const LayerResult& r = it->second;
    if (!m_Writer.Append(r.encoded, 1, error))
      return false;
    if (!r.warning.empty())
      Report("warning: " + r.warning);
    const LayerStats& s = r.stats;
    m_Dimension.Grow(r.dimension);
    m_Totals.layers += 1, m_Totals.unhatched += !s.hatched;
    m_Totals.contours += s.contours, m_Totals.vectors += s.vectors;
    m_Totals.contourLength += s.contourLength, m_Totals.hatchLength += s.hatchLength;
    m_Totals.offsetMs += s.offsetMs, m_Totals.hatchMs += s.hatchMs, m_Totals.encodeMs += s.encodeMs;
    m_Plot.push_back({(s.contourLength + s.hatchLength) / m_Recipe.unitsPerMm / 1000.0, s.vectors});
    m_Waiting.erase(it);
    ++m_NextToWrite;
    m_Progress->Update(m_Totals.layers);
  }
  return true;
}

bool BuildRun::Run(std::string& error) {
  if (!m_Pool.Start(error) || !m_Reader.Open()) {
    error = error.empty() ? m_Reader.Error() : error;
    return false;
  }
  const int64_t inHeader = m_Reader.Header().layers;
  const int64_t expected =
      inHeader < 0
          ? -1
          : std::max<int64_t>(0, std::min(inHeader - 1, m_Options.toLayer) - m_Options.fromLayer + 1);
  m_Progress.reset(new Progress(!m_Options.quiet, expected));
  m_PreviewLayers.insert(m_Options.previewLayers.begin(), m_Options.previewLayers.end());
  m_PreviewEvery = m_Options.previewEvery;
  if (m_PreviewLayers.empty() && m_PreviewEvery == 0)
    m_PreviewEvery = expected > 0 ? std::max<int64_t>(1, expected / kDefaultPreviews) : 100;
  if (!m_Writer.Open(m_Options.output, m_Recipe.encoding, error))
    return false;
  const int64_t window = kWindowPerWorker * Jobs(m_Options);
  LayerJob job;
  bool have = false;
  if (!ReadNext(job, have, error))
    return false;
  while (have || m_Pool.Busy() > 0) {
    while (have && m_Pool.HasIdle() && job.sequence - m_NextToWrite < window) {
      if (!m_Pool.Submit(job, error) || !ReadNext(job, have, error))
        return false;
    }
    if (g_StopRequested) {
      error = "interrupted";
      return false;
    }
    if (m_Pool.Busy() > 0) {
      LayerResult result;
      if (!m_Pool.Collect(result, error))
        return false;
      m_Waiting[result.sequence] = std::move(result);
      if (!WriteReady(error))
        return false;
    }
  }
  return Finish(error);
}

bool BuildRun::Finish(std::string& error) {
  m_Progress->Finish(m_Totals.layers);
  m_Pool.Stop(false);
  CliHeader header;
  header.unitsMm = 1.0 / m_Recipe.unitsPerMm;
  header.labels = RecipeLabels(m_Recipe);
  header.dimension = m_Dimension;
  if (!m_Writer.Commit(header, error))
    return false;
  if (!m_Options.previewDir.empty() && !WriteBuildPlot(m_Options.previewDir + "/build.png", m_Plot, error))
    Report("warning: " + error);
  return true;
}

void BuildRun::PrintSummary(double seconds) const {
  const Totals& t = m_Totals;
  const double toM = 1.0 / m_Recipe.unitsPerMm / 1000.0;
  const double perLayer = t.layers > 0 ? seconds * 1000.0 / t.layers : 0.0;
  std::printf("\n%-14s %s\n", "build", (m_Options.inputs[0] + " -> " + m_Options.output).c_str());
  std::printf("%-14s %lld written, %lld left out (bad), %lld without hatches\n", "layers",
              static_cast<long long>(t.layers), static_cast<long long>(t.skipped),
              static_cast<long long>(t.unhatched));
  std::printf("%-14s %lld polylines, %.3f m\n", "contours", static_cast<long long>(t.contours),
              t.contourLength * toM);
  std::printf("%-14s %lld hatches, %.3f m\n", "vectors", static_cast<long long>(t.vectors),
              t.hatchLength * toM);
  std::printf("%-14s %.3f m\n", "scan length", (t.contourLength + t.hatchLength) * toM);
  const int jobs = Jobs(m_Options);
  std::printf("%-14s %.2f s on %d job%s: %.2f ms per layer, %.1f layers/s, %.1f hatch m/s\n", "time", seconds,
              jobs, jobs == 1 ? "" : "s", perLayer, seconds > 0 ? t.layers / seconds : 0.0,
              seconds > 0 ? t.hatchLength * toM / seconds : 0.0);
  std::printf("%-14s read %.2f s, offset %.2f s, hatch %.2f s, write %.2f s (summed over workers)\n", "steps",
              t.readS, t.offsetMs / 1000.0, t.hatchMs / 1000.0, t.encodeMs / 1000.0);
  // Peak resident memory: ru_maxrss is in KiB; the children's figure is the largest worker's.
  rusage self{}, workers{};
  getrusage(RUSAGE_SELF, &self);
  getrusage(RUSAGE_CHILDREN, &workers);
  std::printf("%-14s %.1f MB peak in the main process, %.1f MB in the largest worker\n", "memory",
              self.ru_maxrss / 1024.0, workers.ru_maxrss / 1024.0);
}

// Stops the run at an interrupt, so that its temporary files go.
void OnSignal(int) {
  g_StopRequested = 1;
}

void CatchSignals() {
  struct sigaction action {};
  action.sa_handler = OnSignal;
  sigemptyset(&action.sa_mask);
  for (int s : {SIGINT, SIGTERM, SIGHUP})
    sigaction(s, &action, nullptr);
  signal(SIGPIPE, SIG_IGN);
}

}  // namespace

int RunBuild(const BuildOptions& options) {
  Recipe recipe;
  std::string error;
  if (!MakeRecipe(options, recipe, error)) {
    Report(error);
    return kExitUsage;
  }
  if (!options.previewDir.empty()) {
    std::error_code ec;
    if (!PreviewAvailable()) {
      Report("--preview needs libpng, which this build of the program lacks");
      return kExitUsage;
    }
    std::filesystem::create_directories(options.previewDir, ec);
    if (ec) {
      Report("cannot make " + options.previewDir + ": " + ec.message());
      return kExitFailed;
    }
  }
  Kelvor::Common::MInternalUnits::Set(options.unitsPerMm);
  CatchSignals();
  const auto start = std::chrono::steady_clock::now();
  BuildRun run(options, recipe);
  if (!run.Run(error)) {
    Report(error);
    return g_StopRequested ? kExitInterrupted : kExitFailed;
  }
  if (!options.quiet)
    run.PrintSummary(Since(start));
  return 0;
}
