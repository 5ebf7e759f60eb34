// The whole road of a layer through the library, step by step, with a record
// of what each step made and how long it took.
#pragma once

#include <string>
#include <vector>

#include "kelvor2d.h"
#include "options.h"

struct StepRecord {
  std::string name;    // what the step did
  std::string counts;  // what it made, in a few words
  double lengthMm;     // total length of what it made, mm (0: not a length)
  double ms;           // wall time of the step
};

class Road {
 public:
  explicit Road(const DemoOptions& options);
  ~Road();
  Road(const Road&) = delete;
  Road& operator=(const Road&) = delete;

  // Runs every step and writes the outputs; false with a message in `error`
  // when the input cannot be read or an output cannot be written.
  bool Run(std::string& error);
  const std::vector<StepRecord>& Steps() const { return m_Steps; }

 private:
  bool LoadLayer(std::string& error);
  void CleanAndClassify();
  void OffsetAndBoolean();
  void BuildTables();
  void HatchFromTables();
  void HatchAtAngle();
  bool RenderCoverage(std::string& error);
  bool SaveAndReread(std::string& error);
  bool WritePicture(std::string& error);
  template <class Body>
  void Timed(const std::string& name, Body body);
  double Mm(double units) const { return units / m_Options.unitsPerMm; }
  int32_t Units(double mm) const { return Round(mm * m_Options.unitsPerMm); }

  DemoOptions m_Options;
  MSliceFileParameters m_Parameters;
  CONTOUR_LAYER m_Part, m_Offset, m_Bar, m_Boolean;
  TABEL m_XTable, m_YTable;
  L_LIST m_ExtraX{0, nullptr};
  VECTOR_LAYER m_Straight, m_Smart, m_Support, m_Meander, m_NoSwitch, m_Angled;
  std::vector<StepRecord> m_Steps;
  int m_StepNumber = 0;
};
