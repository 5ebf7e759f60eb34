// Joining part files: each is read whole (so a damaged part is found), then
// the parts' geometry is copied byte for byte in layer order.
#include <algorithm>
#include <cstdio>
#include <vector>

#include "build.h"
#include "io/cli/cli_reader.h"
#include "io/cli/cli_writer.h"

namespace {

struct Part {
  std::string path;
  CliHeader header;
  int64_t layers = 0;
  int32_t firstZ = 0, lastZ = 0;  // internal units
  int64_t begin = 0, end = 0;     // geometry bytes
};

bool Survey(const std::string& path, double unitsPerMm, Part& part, std::string& error) {
  CliReader reader(path, unitsPerMm);
  if (!reader.Open()) {
    error = reader.Error();
    return false;
  }
  part.path = path;
  part.header = reader.Header();
  CliLayer layer;
  CliStatus status;
  while ((status = reader.Next(layer)) == CliStatus::kLayer) {
    if (part.layers++ == 0)
      part.firstZ = layer.z;
    part.lastZ = layer.z;
  }
  if (status != CliStatus::kEnd) {
    error = reader.Error();
    return false;
  }
  part.begin = reader.GeometryBegin();
  part.end = reader.GeometryEnd();
  return true;
}

bool SameKind(const Part& a, const Part& b, std::string& error) {
  bool labels = a.header.labels.size() == b.header.labels.size();
  for (size_t i = 0; labels && i < a.header.labels.size(); ++i)
    labels =
        a.header.labels[i].id == b.header.labels[i].id && a.header.labels[i].text == b.header.labels[i].text;
  if (a.header.encoding != b.header.encoding || a.header.unitsMm != b.header.unitsMm || !labels) {
    error = b.path + " was not made like " + a.path + " (encoding, units or labels differ)";
    return false;
  }
  return true;
}

bool CopyGeometry(const Part& part, CliWriter& writer, std::string& error) {
  std::FILE* file = std::fopen(part.path.c_str(), "rb");
  if (file == nullptr || std::fseek(file, part.begin, SEEK_SET) != 0) {
    error = "cannot read " + part.path;
    if (file != nullptr)
      std::fclose(file);
    return false;
  }
  std::string chunk;
  bool ok = true;
  for (int64_t left = part.end - part.begin; ok && left > 0;) {
    chunk.resize(static_cast<size_t>(std::min<int64_t>(left, 1 << 20)));
    ok = std::fread(&chunk[0], 1, chunk.size(), file) == chunk.size();
    ok = ok && writer.Append(chunk, 0, error);
    left -= static_cast<int64_t>(chunk.size());
  }
  std::fclose(file);
  if (!ok && error.empty())
    error = "cannot read " + part.path;
  return ok && writer.Append("", part.layers, error);
}

}  // namespace

int RunMerge(const BuildOptions& options) {
  std::vector<Part> parts(options.inputs.size());
  std::string error;
  for (size_t i = 0; i < parts.size(); ++i) {
    if (!Survey(options.inputs[i], options.unitsPerMm, parts[i], error) ||
        !SameKind(parts[0], parts[i], error)) {
      std::fprintf(stderr, "kelvor2d-build: %s\n", error.c_str());
      return kExitFailed;
    }
  }
  parts.erase(std::remove_if(parts.begin(), parts.end(), [](const Part& p) { return p.layers == 0; }),
              parts.end());
  std::stable_sort(parts.begin(), parts.end(),
                   [](const Part& a, const Part& b) { return a.firstZ < b.firstZ; });
  CliHeader header;
  for (size_t i = 0; i < parts.size(); ++i) {
    if (i > 0 && parts[i].firstZ <= parts[i - 1].lastZ) {
      std::fprintf(stderr, "kelvor2d-build: %s and %s overlap in height: give each layer once\n",
                   parts[i - 1].path.c_str(), parts[i].path.c_str());
      return kExitFailed;
    }
    header.dimension.Grow(parts[i].header.dimension);
  }
  if (!parts.empty()) {
    header.unitsMm = parts[0].header.unitsMm;
    header.version = parts[0].header.version;
    header.labels = parts[0].header.labels;
  }
  CliWriter writer;
  const CliEncoding encoding = parts.empty() ? CliEncoding::kAscii : parts[0].header.encoding;
  bool ok = writer.Open(options.output, encoding, error);
  for (size_t i = 0; ok && i < parts.size(); ++i)
    ok = CopyGeometry(parts[i], writer, error);
  if (!ok || !writer.Commit(header, error)) {
    std::fprintf(stderr, "kelvor2d-build: %s\n", error.c_str());
    return kExitFailed;
  }
  return 0;
}
