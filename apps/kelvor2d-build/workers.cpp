#include "workers.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

volatile std::sig_atomic_t g_StopRequested = 0;

namespace {

// ---- messages: a 64-bit length, then the fields in host order ----

class Packer {
 public:
  explicit Packer(std::string& out) : m_Out(out) {}
  template <class T>
  void Put(const T& value) {
    m_Out.append(reinterpret_cast<const char*>(&value), sizeof value);
  }
  void Put(const std::string& text) {
    Put<uint64_t>(text.size());
    m_Out += text;
  }

 private:
  std::string& m_Out;
};

class Unpacker {
 public:
  explicit Unpacker(const std::string& in) : m_In(in) {}
  template <class T>
  void Get(T& value) {
    if (m_Pos + sizeof value <= m_In.size())
      std::memcpy(&value, m_In.data() + m_Pos, sizeof value);
    m_Pos += sizeof value;
  }
  void Get(std::string& text) {
    uint64_t n = 0;
    Get(n);
    text.assign(m_In, std::min<size_t>(m_Pos, m_In.size()), n);
    m_Pos += n;
  }
  void GetBytes(void* data, size_t n) {
    if (m_Pos + n <= m_In.size())
      std::memcpy(data, m_In.data() + m_Pos, n);
    m_Pos += n;
  }

 private:
  const std::string& m_In;
  size_t m_Pos = 0;
};

void PackJob(const LayerJob& job, std::string& out) {
  Packer p(out);
  p.Put(job.sequence), p.Put(job.index), p.Put(job.preview), p.Put(job.layer.z);
  p.Put<uint64_t>(job.layer.polylines.size());
  for (const CliPolyline& line : job.layer.polylines) {
    p.Put(line.id), p.Put(line.direction), p.Put<uint64_t>(line.points.size());
    out.append(reinterpret_cast<const char*>(line.points.data()),
               line.points.size() * sizeof(line.points[0]));
  }
}

void UnpackJob(const std::string& in, LayerJob& job) {
  Unpacker u(in);
  uint64_t lines = 0;
  u.Get(job.sequence), u.Get(job.index), u.Get(job.preview), u.Get(job.layer.z), u.Get(lines);
  job.layer.polylines.assign(std::min<uint64_t>(lines, in.size()), CliPolyline());
  job.layer.hatches.clear();
  for (CliPolyline& line : job.layer.polylines) {
    uint64_t n = 0;
    u.Get(line.id), u.Get(line.direction), u.Get(n);
    line.points.resize(std::min<uint64_t>(n, in.size()));
    u.GetBytes(line.points.data(), line.points.size() * sizeof(line.points[0]));
  }
}

void PackResult(const LayerResult& r, std::string& out) {
  Packer p(out);
  p.Put(r.sequence), p.Put(r.stats), p.Put(r.dimension.empty);
  for (double v : {r.dimension.minX, r.dimension.minY, r.dimension.minZ, r.dimension.maxX, r.dimension.maxY,
                   r.dimension.maxZ})
    p.Put(v);
  p.Put(r.encoded), p.Put(r.warning);
}

void UnpackResult(const std::string& in, LayerResult& r) {
  Unpacker u(in);
  u.Get(r.sequence), u.Get(r.stats), u.Get(r.dimension.empty);
  for (double* v : {&r.dimension.minX, &r.dimension.minY, &r.dimension.minZ, &r.dimension.maxX,
                    &r.dimension.maxY, &r.dimension.maxZ})
    u.Get(*v);
  u.Get(r.encoded), u.Get(r.warning);
}

// Moves all n bytes through `transfer` (read or write), retrying after a
// signal unless a stop was asked for; false on an error or an early end.
template <class Transfer, class Bytes>
bool TransferFull(Transfer transfer, int fd, Bytes* data, size_t n) {
  while (n > 0) {
    const ssize_t done = transfer(fd, data, n);
    if (done < 0 && errno == EINTR && !g_StopRequested)
      continue;
    if (done <= 0)
      return false;
    data += done, n -= static_cast<size_t>(done);
  }
  return true;
}

bool WriteFull(int fd, const char* data, size_t n) {
  return TransferFull(write, fd, data, n);
}

bool ReadFull(int fd, char* data, size_t n) {
  return TransferFull(read, fd, data, n);
}

bool SendMessage(int fd, const std::string& body) {
  const uint64_t n = body.size();
  return WriteFull(fd, reinterpret_cast<const char*>(&n), sizeof n) &&
         WriteFull(fd, body.data(), body.size());
}

bool ReceiveMessage(int fd, std::string& body) {
  uint64_t n = 0;
  if (!ReadFull(fd, reinterpret_cast<char*>(&n), sizeof n))
    return false;
  body.resize(n);
  return ReadFull(fd, &body[0], n);
}

void CloseFd(int& fd) {
  if (fd >= 0)
    close(fd);
  fd = -1;
}

}  // namespace

WorkerPool::WorkerPool(int workers, LayerWork work)
    : m_Count(workers < 1 ? 1 : workers), m_Work(std::move(work)) {}

WorkerPool::~WorkerPool() {
  Stop(true);
}

void WorkerPool::RunWorker(int jobs, int results) {
  // A worker dies with its parent, and leaves interrupts to it.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  signal(SIGINT, SIG_IGN);
  signal(SIGTERM, SIG_DFL);
  signal(SIGHUP, SIG_DFL);
  std::string message;
  LayerJob job;
  LayerResult result;
  while (ReceiveMessage(jobs, message)) {
    UnpackJob(message, job);
    result = LayerResult();
    m_Work(job, result);
    message.clear();
    PackResult(result, message);
    if (!SendMessage(results, message))
      break;
  }
  // _exit: the parent's stdio buffers are not this process's to flush.
  _exit(0);
}

bool WorkerPool::Start(std::string& error) {
  if (m_Count == 1)
    return true;
  std::fflush(nullptr);
  for (int i = 0; i < m_Count; ++i) {
    int jobs[2], results[2];
    if (pipe(jobs) != 0 || pipe(results) != 0) {
      error = std::string("cannot make a pipe: ") + std::strerror(errno);
      return false;
    }
    const pid_t pid = fork();
    if (pid < 0) {
      error = std::string("cannot start a worker: ") + std::strerror(errno);
      return false;
    }
    if (pid == 0) {
      for (Worker& w : m_Workers)
        CloseFd(w.jobs), CloseFd(w.results);
      close(jobs[1]), close(results[0]);
      RunWorker(jobs[0], results[1]);
    }
    close(jobs[0]), close(results[1]);
    Worker w;
    w.pid = pid, w.jobs = jobs[1], w.results = results[0];
    m_Workers.push_back(w);
  }
  return true;
}

bool WorkerPool::HasIdle() const {
  return Busy() < m_Count;
}

int WorkerPool::Busy() const {
  if (m_Count == 1)
    return m_InProcessBusy ? 1 : 0;
  int busy = 0;
  for (const Worker& w : m_Workers)
    busy += w.busy;
  return busy;
}

bool WorkerPool::Submit(const LayerJob& job, std::string& error) {
  if (m_Count == 1) {
    m_InProcess.emplace_back();
    m_Work(job, m_InProcess.back());
    m_InProcessBusy = true;
    return true;
  }
  for (Worker& w : m_Workers) {
    if (w.busy)
      continue;
    std::string message;
    PackJob(job, message);
    if (!SendMessage(w.jobs, message)) {
      error = g_StopRequested ? "interrupted" : "a worker process ended unexpectedly";
      return false;
    }
    w.busy = true;
    w.layer = job.index;
    return true;
  }
  error = "no idle worker";
  return false;
}

bool WorkerPool::Collect(LayerResult& result, std::string& error) {
  if (m_Count == 1) {
    result = std::move(m_InProcess.front());
    m_InProcess.pop_front();
    m_InProcessBusy = false;
    return true;
  }
  std::vector<pollfd> fds;
  std::vector<Worker*> owners;
  for (Worker& w : m_Workers) {
    if (w.busy) {
      fds.push_back({w.results, POLLIN, 0});
      owners.push_back(&w);
    }
  }
  while (poll(fds.data(), fds.size(), -1) < 0) {
    if (errno != EINTR || g_StopRequested) {
      error = g_StopRequested ? "interrupted" : std::string("poll: ") + std::strerror(errno);
      return false;
    }
  }
  for (size_t i = 0; i < fds.size(); ++i) {
    if (fds[i].revents == 0)
      continue;
    std::string message;
    if (!ReceiveMessage(owners[i]->results, message)) {
      error = g_StopRequested
                  ? "interrupted"
                  : "the worker process on layer " + std::to_string(owners[i]->layer) + " ended unexpectedly";
      return false;
    }
    UnpackResult(message, result);
    owners[i]->busy = false;
    return true;
  }
  error = "no result";
  return false;
}

void WorkerPool::Stop(bool kill) {
  for (Worker& w : m_Workers) {
    if (kill && w.pid > 0)
      ::kill(w.pid, SIGTERM);
    CloseFd(w.jobs);
    CloseFd(w.results);
  }
  for (Worker& w : m_Workers) {
    if (w.pid > 0)
      waitpid(w.pid, nullptr, 0);
  }
  m_Workers.clear();
}
