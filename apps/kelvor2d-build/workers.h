// Internal to the kelvor2d-build program; not part of the library's public interface.
// Worker processes that each run layers through the recipe. The library's
// process-wide state makes threads unsafe, so parallel work runs in processes:
// each worker is forked with a pipe for jobs and one for results, and has one
// job at a time.
#pragma once

#include <sys/types.h>

#include <csignal>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "io/cli/cli_layer.h"
#include "recipe.h"

struct LayerJob {
  int64_t sequence = 0;  // order in which results are written
  int64_t index = 0;     // layer index in the input build
  bool preview = false;  // picture this layer
  CliLayer layer;
};

struct LayerResult {
  int64_t sequence = 0;
  LayerStats stats;
  CliDimension dimension;  // of what was written, mm
  std::string encoded;     // the layer's CLI commands
  std::string warning;     // e.g. a preview that could not be written; empty when none
};

using LayerWork = std::function<void(const LayerJob&, LayerResult&)>;

// Set by the signal handler: every wait gives up and the run ends without output.
extern volatile std::sig_atomic_t g_StopRequested;

class WorkerPool {
 public:
  // With one worker the work runs in this process.
  WorkerPool(int workers, LayerWork work);
  ~WorkerPool();
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  // Forks the workers; call before opening files, as children inherit them.
  bool Start(std::string& error);
  bool HasIdle() const;
  int Busy() const;
  // Hands `job` to an idle worker.
  bool Submit(const LayerJob& job, std::string& error);
  // Waits for the result of one busy worker.
  bool Collect(LayerResult& result, std::string& error);
  // Ends the workers: closes their job pipes and waits for them; with `kill`
  // terminates them first.
  void Stop(bool kill);

 private:
  struct Worker {
    pid_t pid = -1;
    int jobs = -1;     // write end of the job pipe
    int results = -1;  // read end of the result pipe
    bool busy = false;
    int64_t layer = -1;  // input index of the layer it works on
  };
  void RunWorker(int jobs, int results);

  int m_Count;
  LayerWork m_Work;
  std::vector<Worker> m_Workers;
  std::deque<LayerResult> m_InProcess;  // results of the one-process mode
  bool m_InProcessBusy = false;
};
