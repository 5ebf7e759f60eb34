// Writes a CLI file one encoded layer after another. The file is written under
// a temporary name and renamed only once it is complete, so a failed run never
// leaves a half-written build.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "io/cli/cli_layer.h"

// Appends the commands of one layer, in `encoding`, with coordinates written in
// units of 1 / unitsPerMm mm (integers). Closed polylines are written against
// the library's sense and repeat their first point. Binary commands take the
// short form when every value fits 16 bits unsigned, the long form otherwise
// (32-bit floats: exact up to 2^24 units).
void EncodeCliLayer(const CliLayer& layer, CliEncoding encoding, std::string& out);

// Shortest decimal text that reads back as the same double ('.' whatever the locale).
std::string FormatCliNumber(double value);

class CliWriter {
 public:
  CliWriter() = default;
  ~CliWriter();  // abandons an uncommitted file
  CliWriter(const CliWriter&) = delete;
  CliWriter& operator=(const CliWriter&) = delete;

  // Starts `path`; false with `error` when the temporary file cannot be made.
  bool Open(const std::string& path, CliEncoding encoding, std::string& error);
  // Appends a layer encoded by EncodeCliLayer (or a run of them, `layers` counting them).
  bool Append(const std::string& encoded, int64_t layers, std::string& error);
  // Writes the header (encoding from Open, the layer count from the appends)
  // followed by the geometry, then renames the file into place.
  bool Commit(CliHeader header, std::string& error);
  // Removes the temporary files; nothing is left at the path.
  void Abandon();
  int64_t Layers() const { return m_Layers; }

 private:
  std::string m_Path, m_BodyPath, m_FinalTemp;
  CliEncoding m_Encoding = CliEncoding::kAscii;
  std::FILE* m_Body = nullptr;
  int64_t m_Layers = 0;
  bool m_Open = false;
};

// The header text, from $$HEADERSTART to $$HEADEREND (and the line end and
// $$GEOMETRYSTART line of an ASCII file).
std::string EncodeCliHeader(const CliHeader& header);
