// Reads a CLI file (ASCII or binary, told apart by the header) one layer at a
// time, so a build of any size is read in the memory of its largest layer.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "io/cli/cli_layer.h"

enum class CliStatus {
  kLayer,     // a layer was read
  kBadLayer,  // a layer could not be read and was skipped; Error() says why, Next goes on after it
  kEnd,       // the geometry ended cleanly
  kFailed     // nothing more can be read; Error() says why
};

class CliReader {
 public:
  // Coordinates map to internal units as value * $$UNITS * unitsPerMm, rounded.
  CliReader(std::string path, double unitsPerMm);
  ~CliReader();
  CliReader(const CliReader&) = delete;
  CliReader& operator=(const CliReader&) = delete;

  // Opens the file and reads the header; false with Error() set.
  bool Open();
  const CliHeader& Header() const { return m_Header; }
  // Reads the next layer into `layer` (cleared first).
  CliStatus Next(CliLayer& layer);
  // "FILE: line L, layer K: what" (byte offset instead of line in binary files).
  const std::string& Error() const { return m_Error; }
  // 0-based index of the layer last returned (bad ones count); -1 before the first.
  int64_t LayerIndex() const { return m_LayerIndex; }
  // Byte range of the geometry section between its markers, for copying it whole;
  // the end is known once Next has returned kEnd.
  int64_t GeometryBegin() const { return m_GeometryBegin; }
  int64_t GeometryEnd() const { return m_GeometryEnd; }

 private:
  bool Fill();
  bool ReadLine(std::string& line);
  bool ReadBytes(void* data, size_t n);
  bool ReadHeader();
  bool HeaderCommand(const std::string& line);
  CliStatus NextAscii(CliLayer& layer);
  CliStatus NextBinary(CliLayer& layer);
  bool AsciiCommand(const std::string& name, const std::vector<std::string>& params, CliLayer& layer);
  bool BinaryCommand(uint16_t command, CliLayer& layer);
  bool Truncated();
  bool StartLayer(CliLayer& layer);
  void SetPending(double z, bool bad, const std::string& error);
  bool BinaryNumbers(bool isLong, int64_t count, std::vector<double>& values);
  bool Map(double value, int32_t& units);
  bool AddPolyline(int32_t id, int32_t direction, const std::vector<double>& values, CliLayer& layer);
  bool AddHatches(int32_t id, const std::vector<double>& values, CliLayer& layer);
  bool Fail(const std::string& what);
  CliStatus FinishLayer(bool bad);

  std::string m_Path;
  double m_UnitsPerMm;
  double m_Scale = 1.0;  // internal units per file unit
  std::FILE* m_File = nullptr;
  int64_t m_FileSize = 0;
  std::string m_Buffer;
  size_t m_BufferPos = 0;
  int64_t m_BufferOffset = 0;  // file offset of m_Buffer[0]
  CliHeader m_Header;
  std::string m_Error;
  int64_t m_Line = 0;           // line of the last line read (ASCII)
  int64_t m_CommandOffset = 0;  // offset of the command being read (binary)
  int64_t m_LayerIndex = -1;
  bool m_HavePendingLayer = false;  // a layer command was read whose layer has not been returned
  double m_PendingZ = 0.0;          // its height in file units
  bool m_PendingBad = false;        // its layer command was malformed
  std::string m_PendingError;       // why
  int64_t m_PendingLine = 0;        // its line (ASCII) or byte offset (binary)
  bool m_Fatal = false;             // a binary command broke the stream
  CliLayer m_Scratch;               // where the rest of a bad binary layer is read to
  bool m_Ended = false;
  int64_t m_GeometryBegin = 0;
  int64_t m_GeometryEnd = 0;
};
