#include "progress.h"

#include <unistd.h>

#include <cstdio>
#include <string>

namespace {
constexpr int kBarWidth = 30;
constexpr double kTerminalPeriodS = 0.1, kPlainPeriodS = 5.0;

double Seconds(std::chrono::steady_clock::duration d) {
  return std::chrono::duration<double>(d).count();
}
}  // namespace

Progress::Progress(bool enabled, int64_t total)
    : m_Enabled(enabled),
      m_Terminal(isatty(STDERR_FILENO) != 0),
      m_Total(total),
      m_Start(std::chrono::steady_clock::now()),
      m_LastPrint(m_Start) {}

void Progress::Update(int64_t done) {
  if (!m_Enabled)
    return;
  const auto now = std::chrono::steady_clock::now();
  if (Seconds(now - m_LastPrint) < (m_Terminal ? kTerminalPeriodS : kPlainPeriodS))
    return;
  m_LastPrint = now;
  Print(done, false);
}

void Progress::Finish(int64_t done) {
  if (m_Enabled)
    Print(done, true);
}

void Progress::Print(int64_t done, bool last) {
  const double elapsed = Seconds(std::chrono::steady_clock::now() - m_Start);
  const double rate = elapsed > 0 ? done / elapsed : 0.0;
  char left[32] = "?";
  if (m_Total > 0 && rate > 0)
    std::snprintf(left, sizeof left, "%.0f s", (m_Total > done ? m_Total - done : 0) / rate);
  const std::string total = m_Total >= 0 ? std::to_string(m_Total) : "?";
  if (!m_Terminal) {
    std::fprintf(stderr, "kelvor2d-build: %lld/%s layers, %.1f layers/s, %s left\n",
                 static_cast<long long>(done), total.c_str(), rate, left);
    return;
  }
  const double fraction = m_Total > 0 ? static_cast<double>(done) / m_Total : 0.0;
  const int filled = static_cast<int>(kBarWidth * (fraction > 1 ? 1 : fraction));
  std::fprintf(stderr, "\r[%s%s] %lld/%s layers  %.1f layers/s  %s left   ", std::string(filled, '#').c_str(),
               std::string(kBarWidth - filled, '.').c_str(), static_cast<long long>(done), total.c_str(),
               rate, left);
  if (last)
    std::fputc('\n', stderr);
  std::fflush(stderr);
}
