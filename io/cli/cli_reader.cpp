#include "io/cli/cli_reader.h"

#include <sys/stat.h>
#include <algorithm>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace {

constexpr size_t kChunk = 1 << 16;
constexpr uint16_t kLayerLong = 127, kLayerShort = 128, kPolylineShort = 129, kPolylineLong = 130,
                   kHatchesShort = 131, kHatchesLong = 132;

// The line without comments (from `//` to the next `//` or the end), surrounding blanks and line end.
std::string StripComments(const std::string& line) {
  std::string out;
  size_t pos = 0;
  while (pos < line.size()) {
    const size_t open = line.find("//", pos);
    out += line.substr(pos, open == std::string::npos ? std::string::npos : open - pos);
    if (open == std::string::npos)
      break;
    const size_t close = line.find("//", open + 2);
    pos = close == std::string::npos ? line.size() : close + 2;
  }
  const size_t first = out.find_first_not_of(" \t\r");
  const size_t last = out.find_last_not_of(" \t\r");
  return first == std::string::npos ? std::string() : out.substr(first, last - first + 1);
}

std::string Upper(std::string text) {
  for (char& c : text)
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

// Splits "$$NAME/a,b,c" into the upper-case name and its parameters.
void SplitCommand(const std::string& line, std::string& name, std::vector<std::string>& params) {
  const size_t slash = line.find('/');
  name = Upper(line.substr(0, slash));
  name.erase(name.find_last_not_of(" \t") + 1);
  params.clear();
  if (slash == std::string::npos)
    return;
  size_t pos = slash + 1;
  while (true) {
    const size_t comma = line.find(',', pos);
    params.push_back(line.substr(pos, comma == std::string::npos ? std::string::npos : comma - pos));
    if (comma == std::string::npos)
      break;
    pos = comma + 1;
  }
}

bool ParseReal(const std::string& text, double& value) {
  const char* begin = text.c_str();
  while (*begin == ' ' || *begin == '\t')
    ++begin;
  char* end = nullptr;
  value = std::strtod(begin, &end);
  while (end != nullptr && (*end == ' ' || *end == '\t'))
    ++end;
  return end != begin && end != nullptr && *end == '\0' && std::isfinite(value);
}

bool ParseInteger(const std::string& text, int32_t& value) {
  double real = 0;
  if (!ParseReal(text, real) || real != std::floor(real) || real < INT32_MIN || real > INT32_MAX)
    return false;
  value = static_cast<int32_t>(real);
  return true;
}

uint16_t U16(const unsigned char* p) {
  return static_cast<uint16_t>(p[0] | p[1] << 8);
}
uint32_t U32(const unsigned char* p) {
  return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 | static_cast<uint32_t>(p[2]) << 16 |
         static_cast<uint32_t>(p[3]) << 24;
}
float F32(const unsigned char* p) {
  const uint32_t bits = U32(p);
  float value;
  std::memcpy(&value, &bits, 4);
  return value;
}

}  // namespace

void CliDimension::Grow(double x, double y, double z) {
  if (empty) {
    minX = maxX = x;
    minY = maxY = y;
    minZ = maxZ = z;
    empty = false;
    return;
  }
  minX = std::min(minX, x), maxX = std::max(maxX, x);
  minY = std::min(minY, y), maxY = std::max(maxY, y);
  minZ = std::min(minZ, z), maxZ = std::max(maxZ, z);
}

void CliDimension::Grow(const CliDimension& other) {
  if (other.empty)
    return;
  Grow(other.minX, other.minY, other.minZ);
  Grow(other.maxX, other.maxY, other.maxZ);
}

CliDimension DimensionOf(const CliLayer& layer, double unitsPerMm) {
  int32_t minX = INT32_MAX, minY = INT32_MAX, maxX = INT32_MIN, maxY = INT32_MIN;
  auto grow = [&](int32_t x, int32_t y) {
    minX = std::min(minX, x), maxX = std::max(maxX, x);
    minY = std::min(minY, y), maxY = std::max(maxY, y);
  };
  for (const CliPolyline& p : layer.polylines)
    for (const MMPoint2d<long>& q : p.points)
      grow(q.x, q.y);
  for (const CliHatches& h : layer.hatches)
    for (size_t i = 0; i + 1 < h.coordinates.size(); i += 2)
      grow(h.coordinates[i], h.coordinates[i + 1]);
  CliDimension d;
  const double z = layer.z / unitsPerMm;
  if (minX <= maxX) {
    d.Grow(minX / unitsPerMm, minY / unitsPerMm, z);
    d.Grow(maxX / unitsPerMm, maxY / unitsPerMm, z);
  }
  return d;
}

CliReader::CliReader(std::string path, double unitsPerMm)
    : m_Path(std::move(path)), m_UnitsPerMm(unitsPerMm) {}

CliReader::~CliReader() {
  if (m_File != nullptr)
    std::fclose(m_File);
}

bool CliReader::Fail(const std::string& what) {
  std::string where = m_Path + ": ";
  if (m_Header.encoding == CliEncoding::kBinary && m_GeometryBegin > 0)
    where += "byte " + std::to_string(m_CommandOffset);
  else
    where += "line " + std::to_string(m_Line);
  if (m_LayerIndex >= 0)
    where += ", layer " + std::to_string(m_LayerIndex);
  m_Error = where + ": " + what;
  return false;
}

// Moves the unread rest of the buffer to its front and reads more; false at the end of the file.
bool CliReader::Fill() {
  m_Buffer.erase(0, m_BufferPos);
  m_BufferOffset += static_cast<int64_t>(m_BufferPos);
  m_BufferPos = 0;
  const size_t old = m_Buffer.size();
  m_Buffer.resize(old + kChunk);
  const size_t got = std::fread(&m_Buffer[old], 1, kChunk, m_File);
  m_Buffer.resize(old + got);
  return got > 0;
}

bool CliReader::ReadLine(std::string& line) {
  size_t end, scanned = 0;  // bytes from m_BufferPos on known to hold no line end
  while ((end = m_Buffer.find('\n', m_BufferPos + scanned)) == std::string::npos) {
    scanned = m_Buffer.size() - m_BufferPos;
    if (!Fill()) {
      if (m_BufferPos >= m_Buffer.size())
        return false;
      end = m_Buffer.size();
      break;
    }
  }
  line.assign(m_Buffer, m_BufferPos, end - m_BufferPos);
  m_BufferPos = std::min(end + 1, m_Buffer.size());
  ++m_Line;
  return true;
}

bool CliReader::ReadBytes(void* data, size_t n) {
  while (m_Buffer.size() - m_BufferPos < n) {
    if (!Fill())
      return false;
  }
  std::memcpy(data, m_Buffer.data() + m_BufferPos, n);
  m_BufferPos += n;
  return true;
}

bool CliReader::Open() {
  m_File = std::fopen(m_Path.c_str(), "rb");
  if (m_File == nullptr) {
    m_Error = m_Path + ": cannot open: " + std::strerror(errno);
    return false;
  }
  struct stat info {};
  if (fstat(fileno(m_File), &info) == 0)
    m_FileSize = info.st_size;
  return ReadHeader();
}

bool CliReader::ReadHeader() {
  std::string line;
  bool started = false;
  while (true) {
    const int64_t lineStart = m_BufferOffset + static_cast<int64_t>(m_BufferPos);
    if (!ReadLine(line))
      return Fail(started ? "the file ends without $$HEADEREND" : "not a CLI file: no $$HEADERSTART");
    const std::string text = StripComments(line);
    const std::string upper = Upper(text);
    if (!started) {
      if (text.empty())
        continue;
      if (upper.rfind("$$HEADERSTART", 0) != 0)
        return Fail("not a CLI file: no $$HEADERSTART");
      started = true;
      continue;
    }
    const size_t end = upper.find("$$HEADEREND");
    if (!HeaderCommand(end == std::string::npos ? text : text.substr(0, end)))
      return false;
    if (end == std::string::npos)
      continue;
    m_Scale = m_Header.unitsMm * m_UnitsPerMm;
    if (m_Header.encoding == CliEncoding::kBinary) {
      // Binary data begin right after the marker, whatever follows it on the "line".
      const int64_t marker = lineStart + static_cast<int64_t>(Upper(line).find("$$HEADEREND")) + 11;
      m_BufferPos = static_cast<size_t>(marker - m_BufferOffset);
      m_GeometryBegin = marker;
    }
    return true;
  }
}

bool CliReader::HeaderCommand(const std::string& text) {
  if (text.empty())
    return true;
  std::string name;
  std::vector<std::string> params;
  SplitCommand(text, name, params);
  double value = 0;
  if (name == "$$BINARY") {
    m_Header.encoding = CliEncoding::kBinary;
  } else if (name == "$$ASCII") {
    m_Header.encoding = CliEncoding::kAscii;
  } else if (name == "$$ALIGN") {
    return Fail("$$ALIGN (4-byte aligned binary data) is not supported");
  } else if (name == "$$UNITS") {
    if (params.size() != 1 || !ParseReal(params[0], value) || value <= 0)
      return Fail("$$UNITS needs one positive number, got '" + text + "'");
    m_Header.unitsMm = value;
  } else if (name == "$$VERSION") {
    if (params.size() != 1 || !ParseInteger(params[0], m_Header.version))
      return Fail("$$VERSION needs an integer, got '" + text + "'");
  } else if (name == "$$LABEL") {
    const size_t comma = text.find(',');
    CliLabel label;
    if (params.empty() || comma == std::string::npos || !ParseInteger(params[0], label.id))
      return Fail("$$LABEL needs an id and a text, got '" + text + "'");
    label.text = text.substr(comma + 1);
    m_Header.labels.push_back(label);
  } else if (name == "$$LAYERS") {
    int32_t n = 0;
    if (params.size() != 1 || !ParseInteger(params[0], n) || n < 0)
      return Fail("$$LAYERS needs a count, got '" + text + "'");
    m_Header.layers = n;
  } else if (name == "$$DIMENSION") {
    double v[6];
    for (size_t i = 0; i < 6; ++i) {
      if (params.size() != 6 || !ParseReal(params[i], v[i]))
        return Fail("$$DIMENSION needs six numbers, got '" + text + "'");
    }
    m_Header.dimension = CliDimension();
    m_Header.dimension.Grow(v[0], v[1], v[2]);
    m_Header.dimension.Grow(v[3], v[4], v[5]);
  }
  return true;  // other header commands are not needed here
}

bool CliReader::Map(double value, int32_t& units) {
  const double mapped = value * m_Scale;
  if (!std::isfinite(mapped) || std::fabs(mapped) > static_cast<double>(INT32_MAX)) {
    char text[64];
    std::snprintf(text, sizeof text, "%.9g", value);
    return Fail(std::string("coordinate ") + text + " does not fit 32 bits in internal units");
  }
  units = Round(mapped);
  return true;
}

bool CliReader::AddPolyline(int32_t id, int32_t direction, const std::vector<double>& values,
                            CliLayer& layer) {
  if (direction < kCliInner || direction > kCliOpen)
    return Fail("polyline direction " + std::to_string(direction) + " is not 0, 1 or 2");
  CliPolyline polyline;
  polyline.id = id;
  polyline.direction = direction;
  polyline.points.resize(values.size() / 2);
  for (size_t i = 0; i < polyline.points.size(); ++i) {
    if (!Map(values[2 * i], polyline.points[i].x) || !Map(values[2 * i + 1], polyline.points[i].y))
      return false;
  }
  if (direction != kCliOpen) {
    // The file repeats the first point and runs outer borders counter-clockwise (y up).
    if (polyline.points.size() > 1 && polyline.points.front() == polyline.points.back())
      polyline.points.pop_back();
    std::reverse(polyline.points.begin(), polyline.points.end());
  }
  layer.polylines.push_back(std::move(polyline));
  return true;
}

bool CliReader::AddHatches(int32_t id, const std::vector<double>& values, CliLayer& layer) {
  CliHatches hatches;
  hatches.id = id;
  hatches.coordinates.resize(values.size());
  for (size_t i = 0; i < values.size(); ++i) {
    if (!Map(values[i], hatches.coordinates[i]))
      return false;
  }
  layer.hatches.push_back(std::move(hatches));
  return true;
}

CliStatus CliReader::Next(CliLayer& layer) {
  layer.z = 0;
  layer.polylines.clear();
  layer.hatches.clear();
  if (m_Ended)
    return CliStatus::kEnd;
  return m_Header.encoding == CliEncoding::kBinary ? NextBinary(layer) : NextAscii(layer);
}

CliStatus CliReader::FinishLayer(bool bad) {
  return bad ? CliStatus::kBadLayer : CliStatus::kLayer;
}

// Starts the pending layer: counts it and maps its height (false: the height does not map).
bool CliReader::StartLayer(CliLayer& layer) {
  ++m_LayerIndex;
  m_HavePendingLayer = false;
  const int64_t line = m_Line, offset = m_CommandOffset;
  m_Line = m_PendingLine;
  m_CommandOffset = m_PendingLine;
  const bool ok = m_PendingBad ? Fail(m_PendingError) : Map(m_PendingZ, layer.z);
  m_Line = line;
  m_CommandOffset = offset;
  return ok;
}

void CliReader::SetPending(double z, bool bad, const std::string& error) {
  m_HavePendingLayer = true;
  m_PendingZ = z;
  m_PendingBad = bad;
  m_PendingError = error;
  m_PendingLine = m_Header.encoding == CliEncoding::kBinary ? m_CommandOffset : m_Line;
}

CliStatus CliReader::NextAscii(CliLayer& layer) {
  std::string line, name;
  std::vector<std::string> params;
  bool inLayer = m_HavePendingLayer, bad = inLayer && !StartLayer(layer);
  while (true) {
    const int64_t lineStart = m_BufferOffset + static_cast<int64_t>(m_BufferPos);
    if (!ReadLine(line)) {
      m_Ended = true;
      Fail(m_GeometryBegin > 0 ? "the file ends without $$GEOMETRYEND" : "the file has no $$GEOMETRYSTART");
      return CliStatus::kFailed;
    }
    const std::string text = StripComments(line);
    if (text.empty())
      continue;
    SplitCommand(text, name, params);
    if (m_GeometryBegin == 0) {
      if (name != "$$GEOMETRYSTART") {
        m_Ended = true;
        Fail("expected $$GEOMETRYSTART, got '" + text + "'");
        return CliStatus::kFailed;
      }
      m_GeometryBegin = m_BufferOffset + static_cast<int64_t>(m_BufferPos);
      continue;
    }
    if (name == "$$GEOMETRYEND") {
      m_Ended = true;
      m_GeometryEnd = lineStart;
      return inLayer ? FinishLayer(bad) : CliStatus::kEnd;
    }
    if (name == "$$LAYER") {
      double z = 0;
      const bool ok = params.size() == 1 && ParseReal(params[0], z);
      SetPending(z, !ok, "$$LAYER needs one number, got '" + text + "'");
      if (inLayer)
        return FinishLayer(bad);
      inLayer = true;
      bad = !StartLayer(layer);
      continue;
    }
    if (!inLayer) {
      m_Ended = true;
      Fail(name + " before the first layer");
      return CliStatus::kFailed;
    }
    if (!bad)
      bad = !AsciiCommand(name, params, layer);
  }
}

bool CliReader::AsciiCommand(const std::string& name, const std::vector<std::string>& params,
                             CliLayer& layer) {
  const bool polyline = name == "$$POLYLINE";
  if (!polyline && name != "$$HATCHES")
    return Fail("unknown command '" + name + "'");
  const size_t head = polyline ? 3 : 2, perItem = polyline ? 2 : 4;
  int32_t id = 0, direction = 0, count = 0;
  if (params.size() < head || !ParseInteger(params[0], id) ||
      (polyline && !ParseInteger(params[1], direction)) || !ParseInteger(params[head - 1], count) ||
      count < 0)
    return Fail(name + " needs " +
                (polyline ? "an id, a direction and a point count" : "an id and a hatch count"));
  if (params.size() - head != static_cast<size_t>(count) * perItem)
    return Fail(name + " count " + std::to_string(count) + " calls for " +
                std::to_string(static_cast<int64_t>(count) * perItem) + " numbers, " +
                std::to_string(params.size() - head) + " follow");
  std::vector<double> values(params.size() - head);
  for (size_t i = 0; i < values.size(); ++i) {
    if (!ParseReal(params[head + i], values[i]))
      return Fail(name + ": '" + params[head + i] + "' is not a number");
  }
  return polyline ? AddPolyline(id, direction, values, layer) : AddHatches(id, values, layer);
}

CliStatus CliReader::NextBinary(CliLayer& layer) {
  bool inLayer = m_HavePendingLayer, bad = inLayer && !StartLayer(layer);
  while (true) {
    m_CommandOffset = m_BufferOffset + static_cast<int64_t>(m_BufferPos);
    unsigned char raw[4];
    if (!ReadBytes(raw, 2)) {
      m_Ended = true;
      m_GeometryEnd = m_CommandOffset;
      if (m_Buffer.size() > m_BufferPos) {
        Fail("truncated command");
        return CliStatus::kFailed;
      }
      return inLayer ? FinishLayer(bad) : CliStatus::kEnd;
    }
    const uint16_t command = U16(raw);
    if (command == kLayerLong || command == kLayerShort) {
      const bool isLong = command == kLayerLong;
      if (!ReadBytes(raw, isLong ? 4 : 2)) {
        m_Ended = true;
        Fail("truncated layer command");
        return CliStatus::kFailed;
      }
      const double z = isLong ? F32(raw) : U16(raw);
      SetPending(z, !std::isfinite(z), "layer height is not a number");
      if (inLayer)
        return FinishLayer(bad);
      inLayer = true;
      bad = !StartLayer(layer);
      continue;
    }
    if (command < kPolylineShort || command > kHatchesLong) {
      m_Ended = true;
      Fail("unknown command index " + std::to_string(command));
      return CliStatus::kFailed;
    }
    if (!inLayer) {
      m_Ended = true;
      Fail(std::string(command <= kPolylineLong ? "polyline" : "hatches") + " before the first layer");
      return CliStatus::kFailed;
    }
    const bool ok = BinaryCommand(command, bad ? m_Scratch : layer);
    m_Scratch.polylines.clear();
    m_Scratch.hatches.clear();
    if (m_Fatal) {
      m_Ended = true;
      return CliStatus::kFailed;
    }
    bad = bad || !ok;
  }
}

bool CliReader::BinaryCommand(uint16_t command, CliLayer& layer) {
  const bool polyline = command <= kPolylineLong;
  const bool isLong = command == kPolylineLong || command == kHatchesLong;
  const size_t width = isLong ? 4 : 2, fields = polyline ? 3 : 2;
  unsigned char raw[12];
  if (!ReadBytes(raw, width * fields))
    return Truncated();
  int32_t head[3] = {0, 0, 0};
  for (size_t i = 0; i < fields; ++i)
    head[i] = isLong ? static_cast<int32_t>(U32(raw + 4 * i)) : U16(raw + 2 * i);
  const int32_t count = head[fields - 1];
  if (count < 0) {
    m_Fatal = true;
    return Fail("negative count " + std::to_string(count));
  }
  const int64_t numbers = static_cast<int64_t>(count) * (polyline ? 2 : 4);
  std::vector<double> values;
  if (!BinaryNumbers(isLong, numbers, values))
    return false;
  return polyline ? AddPolyline(head[0], head[1], values, layer) : AddHatches(head[0], values, layer);
}

bool CliReader::Truncated() {
  m_Fatal = true;
  return Fail("truncated command: the file ends inside it");
}

bool CliReader::BinaryNumbers(bool isLong, int64_t count, std::vector<double>& values) {
  const int64_t width = isLong ? 4 : 2;
  const int64_t here = m_BufferOffset + static_cast<int64_t>(m_BufferPos);
  if (m_FileSize > 0 && count * width > m_FileSize - here)
    return Truncated();
  values.resize(static_cast<size_t>(count));
  unsigned char raw[4];
  for (double& v : values) {
    if (!ReadBytes(raw, static_cast<size_t>(width)))
      return Truncated();
    v = isLong ? F32(raw) : U16(raw);
  }
  for (double v : values) {
    if (!std::isfinite(v))
      return Fail("a coordinate is not a number");
  }
  return true;
}
