// Internal to the kelvor2d-build program; not part of the library's public interface.
// Progress of a run on stderr: a bar redrawn in place on a terminal, a plain
// line every few seconds otherwise.
#pragma once

#include <chrono>
#include <cstdint>

class Progress {
 public:
  // `total` layers expected; negative when unknown. Disabled: prints nothing.
  Progress(bool enabled, int64_t total);
  void Update(int64_t done);
  // The last state, and the end of the bar's line.
  void Finish(int64_t done);

 private:
  void Print(int64_t done, bool last);
  bool m_Enabled;
  bool m_Terminal;
  int64_t m_Total;
  std::chrono::steady_clock::time_point m_Start, m_LastPrint;
};
