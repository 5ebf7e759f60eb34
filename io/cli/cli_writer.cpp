#include "io/cli/cli_writer.h"

#include <unistd.h>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>

namespace {

constexpr uint16_t kLayerLong = 127, kLayerShort = 128, kPolylineShort = 129, kPolylineLong = 130,
                   kHatchesShort = 131, kHatchesLong = 132;
constexpr int64_t kShortMax = 65535;

void PutU16(std::string& out, int64_t v) {
  out += static_cast<char>(v & 0xff);
  out += static_cast<char>((v >> 8) & 0xff);
}
void PutU32(std::string& out, uint32_t v) {
  for (int shift = 0; shift < 32; shift += 8)
    out += static_cast<char>((v >> shift) & 0xff);
}
void PutF32(std::string& out, double v) {
  const float f = static_cast<float>(v);
  uint32_t bits;
  std::memcpy(&bits, &f, 4);
  PutU32(out, bits);
}

bool FitsShort(int64_t v) {
  return v >= 0 && v <= kShortMax;
}

// The values of a command in file order: polylines closed against the
// library's sense, repeating their first point.
std::vector<int32_t> PolylineValues(const CliPolyline& p) {
  std::vector<int32_t> values;
  values.reserve(2 * p.points.size() + 2);
  const bool closed = p.direction != kCliOpen && !p.points.empty();
  if (closed) {
    for (size_t i = p.points.size(); i-- > 0;)
      values.insert(values.end(), {p.points[i].x, p.points[i].y});
    values.insert(values.end(), {p.points.back().x, p.points.back().y});
  } else {
    for (const MMPoint2d<long>& q : p.points)
      values.insert(values.end(), {q.x, q.y});
  }
  return values;
}

void AppendAsciiNumbers(std::string& out, const std::vector<int32_t>& values) {
  char text[16];
  text[0] = ',';
  for (int32_t v : values) {
    const char* end = std::to_chars(text + 1, text + sizeof text, v).ptr;
    out.append(text, static_cast<size_t>(end - text));
  }
  out += '\n';
}

// One binary command: the head fields, then the values; short when all fit 16 bits.
void AppendBinaryCommand(std::string& out, uint16_t shortIndex, uint16_t longIndex, std::vector<int64_t> head,
                         const std::vector<int32_t>& values) {
  bool isShort = true;
  for (int64_t h : head)
    isShort = isShort && FitsShort(h);
  for (int32_t v : values)
    isShort = isShort && FitsShort(v);
  PutU16(out, isShort ? shortIndex : longIndex);
  for (int64_t h : head)
    isShort ? PutU16(out, h) : PutU32(out, static_cast<uint32_t>(h));
  for (int32_t v : values)
    isShort ? PutU16(out, v) : PutF32(out, v);
}

}  // namespace

std::string FormatCliNumber(double value) {
  char text[40];
  for (int precision = 15; precision <= 17; ++precision) {
    std::snprintf(text, sizeof text, "%.*g", precision, value);
    if (std::strtod(text, nullptr) == value)
      break;
  }
  // A ',' decimal point from the locale becomes '.'.
  for (char* c = text; *c != '\0'; ++c) {
    if (*c == ',')
      *c = '.';
  }
  return text;
}

void EncodeCliLayer(const CliLayer& layer, CliEncoding encoding, std::string& out) {
  if (encoding == CliEncoding::kAscii) {
    out += "$$LAYER/" + std::to_string(layer.z) + "\n";
    for (const CliPolyline& p : layer.polylines) {
      const std::vector<int32_t> values = PolylineValues(p);
      out += "$$POLYLINE/" + std::to_string(p.id) + "," + std::to_string(p.direction) + "," +
             std::to_string(values.size() / 2);
      AppendAsciiNumbers(out, values);
    }
    for (const CliHatches& h : layer.hatches) {
      out += "$$HATCHES/" + std::to_string(h.id) + "," + std::to_string(h.coordinates.size() / 4);
      AppendAsciiNumbers(out, h.coordinates);
    }
    return;
  }
  if (FitsShort(layer.z)) {
    PutU16(out, kLayerShort);
    PutU16(out, layer.z);
  } else {
    PutU16(out, kLayerLong);
    PutF32(out, layer.z);
  }
  for (const CliPolyline& p : layer.polylines) {
    const std::vector<int32_t> values = PolylineValues(p);
    AppendBinaryCommand(out, kPolylineShort, kPolylineLong,
                        {p.id, p.direction, static_cast<int64_t>(values.size() / 2)}, values);
  }
  for (const CliHatches& h : layer.hatches) {
    AppendBinaryCommand(out, kHatchesShort, kHatchesLong,
                        {h.id, static_cast<int64_t>(h.coordinates.size() / 4)}, h.coordinates);
  }
}

std::string EncodeCliHeader(const CliHeader& header) {
  const bool binary = header.encoding == CliEncoding::kBinary;
  std::string out = "$$HEADERSTART\n";
  out += binary ? "$$BINARY\n" : "$$ASCII\n";
  out += "$$UNITS/" + FormatCliNumber(header.unitsMm) + "\n";
  out += "$$VERSION/" + std::to_string(header.version) + "\n";
  for (const CliLabel& label : header.labels)
    out += "$$LABEL/" + std::to_string(label.id) + "," + label.text + "\n";
  const CliDimension& d = header.dimension;
  if (!d.empty) {
    const double values[6] = {d.minX, d.minY, d.minZ, d.maxX, d.maxY, d.maxZ};
    out += "$$DIMENSION/";
    for (int i = 0; i < 6; ++i)
      out += (i > 0 ? "," : "") + FormatCliNumber(values[i]);
    out += "\n";
  }
  if (header.layers >= 0)
    out += "$$LAYERS/" + std::to_string(header.layers) + "\n";
  out += binary ? "$$HEADEREND" : "$$HEADEREND\n$$GEOMETRYSTART\n";
  return out;
}

CliWriter::~CliWriter() {
  Abandon();
}

bool CliWriter::Open(const std::string& path, CliEncoding encoding, std::string& error) {
  Abandon();
  m_Path = path;
  m_Encoding = encoding;
  m_Layers = 0;
  const std::string stem = path + ".part-" + std::to_string(getpid());
  m_BodyPath = stem + ".body";
  m_FinalTemp = stem + ".tmp";
  m_Body = std::fopen(m_BodyPath.c_str(), "wb");
  if (m_Body == nullptr) {
    error = "cannot write " + m_BodyPath + ": " + std::strerror(errno);
    return false;
  }
  m_Open = true;
  return true;
}

bool CliWriter::Append(const std::string& encoded, int64_t layers, std::string& error) {
  if (std::fwrite(encoded.data(), 1, encoded.size(), m_Body) != encoded.size()) {
    error = "cannot write " + m_BodyPath + ": " + std::strerror(errno);
    return false;
  }
  m_Layers += layers;
  return true;
}

// Copies the body behind the header into the final temporary file.
static bool CopyInto(std::FILE* from, std::FILE* to) {
  std::vector<char> chunk(1 << 20);
  size_t n;
  while ((n = std::fread(chunk.data(), 1, chunk.size(), from)) > 0) {
    if (std::fwrite(chunk.data(), 1, n, to) != n)
      return false;
  }
  return !std::ferror(from);
}

bool CliWriter::Commit(CliHeader header, std::string& error) {
  header.encoding = m_Encoding;
  header.layers = m_Layers;
  const std::string head = EncodeCliHeader(header);
  const std::string tail = m_Encoding == CliEncoding::kAscii ? "$$GEOMETRYEND\n" : "";
  std::FILE* out = std::fopen(m_FinalTemp.c_str(), "wb");
  bool ok = out != nullptr && std::fflush(m_Body) == 0 && std::fseek(m_Body, 0, SEEK_SET) == 0;
  std::fclose(m_Body);
  m_Body = std::fopen(m_BodyPath.c_str(), "rb");
  ok = ok && m_Body != nullptr && std::fwrite(head.data(), 1, head.size(), out) == head.size() &&
       CopyInto(m_Body, out) && std::fwrite(tail.data(), 1, tail.size(), out) == tail.size();
  if (out != nullptr)
    ok = std::fclose(out) == 0 && ok;
  if (!ok || std::rename(m_FinalTemp.c_str(), m_Path.c_str()) != 0) {
    error = "cannot write " + m_Path + ": " + std::strerror(errno);
    Abandon();
    return false;
  }
  Abandon();
  return true;
}

void CliWriter::Abandon() {
  if (!m_Open)
    return;
  if (m_Body != nullptr)
    std::fclose(m_Body);
  m_Body = nullptr;
  std::remove(m_BodyPath.c_str());
  std::remove(m_FinalTemp.c_str());
  m_Open = false;
}
