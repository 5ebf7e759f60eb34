#include "sibling/sax/sax_binary_stream.h"

#include <array>

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr size_t kLineLength = 76;
constexpr uint8_t kInvalid = 0xFF;
constexpr uint8_t kSpace = 0xFE;
constexpr uint8_t kPad = 0xFD;

std::array<uint8_t, 256> MakeDecodeTable() {
  std::array<uint8_t, 256> table{};
  table.fill(kInvalid);
  for (uint8_t i = 0; i < 64; ++i) {
    table[static_cast<unsigned char>(kAlphabet[i])] = i;
  }
  table[' '] = table['\t'] = table['\n'] = table['\r'] = kSpace;
  table['='] = kPad;
  return table;
}

void AppendGroup(uint32_t triple, int bytes, std::string& out) {
  out += kAlphabet[(triple >> 18) & 63];
  out += kAlphabet[(triple >> 12) & 63];
  out += bytes > 1 ? kAlphabet[(triple >> 6) & 63] : '=';
  out += bytes > 2 ? kAlphabet[triple & 63] : '=';
}

std::string DescribeCharacter(unsigned char c, size_t offset) {
  std::string text = "invalid base64: byte 0x";
  constexpr char kHex[] = "0123456789abcdef";
  text += kHex[c >> 4];
  text += kHex[c & 15];
  return text + " at offset " + std::to_string(offset);
}

// Emits the bytes of a complete group of `count` sextets (2 to 4).
void FlushGroup(uint32_t group, int count, std::string& bytes) {
  const uint32_t triple = group << (6 * (4 - count));
  bytes += static_cast<char>((triple >> 16) & 0xFF);
  if (count > 2) {
    bytes += static_cast<char>((triple >> 8) & 0xFF);
  }
  if (count > 3) {
    bytes += static_cast<char>(triple & 0xFF);
  }
}

}  // namespace

MSAXStreamBinaryOut& MSAXStreamBinaryOut::operator<<(int32_t value) {
  const uint32_t u = static_cast<uint32_t>(value);
  const char b[4] = {static_cast<char>(u & 0xFF), static_cast<char>((u >> 8) & 0xFF),
                     static_cast<char>((u >> 16) & 0xFF), static_cast<char>(u >> 24)};
  m_bytes.append(b, 4);
  return *this;
}

MSAXStreamBinaryIn& MSAXStreamBinaryIn::operator>>(int32_t& value) {
  value = 0;
  if (AtEnd()) {
    m_failed = true;
    return *this;
  }
  const unsigned char* b = reinterpret_cast<const unsigned char*>(m_bytes.data()) + m_position;
  value = static_cast<int32_t>(uint32_t{b[0]} | uint32_t{b[1]} << 8 | uint32_t{b[2]} << 16 |
                               uint32_t{b[3]} << 24);
  m_position += 4;
  return *this;
}

void AppendBase64(std::string const& bytes, std::string& out) {
  const unsigned char* b = reinterpret_cast<const unsigned char*>(bytes.data());
  const size_t n = bytes.size();
  out.reserve(out.size() + Base64TextLength(n));
  size_t column = 0;
  for (size_t i = 0; i < n; i += 3) {
    const int count = static_cast<int>(n - i < 3 ? n - i : 3);
    uint32_t triple = uint32_t{b[i]} << 16;
    triple |= count > 1 ? uint32_t{b[i + 1]} << 8 : 0;
    triple |= count > 2 ? uint32_t{b[i + 2]} : 0;
    AppendGroup(triple, count, out);
    column += 4;
    if (column == kLineLength || i + 3 >= n) {
      out += '\n';
      column = 0;
    }
  }
}

bool DecodeBase64(std::string const& text, std::string& bytes, std::string& problem) {
  static const std::array<uint8_t, 256> table = MakeDecodeTable();
  bytes.clear();
  bytes.reserve(text.size() / 4 * 3);
  uint32_t group = 0;
  int count = 0;
  int padding = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    const uint8_t v = table[c];
    if (v == kSpace) {
      continue;
    }
    if (v == kInvalid) {
      problem = DescribeCharacter(c, i);
      return false;
    }
    if (padding == 3 || (padding > 0 && v != kPad) || (v == kPad && count < 2)) {
      problem = "invalid base64: misplaced '=' padding near offset " + std::to_string(i);
      return false;
    }
    if (v == kPad) {
      ++padding;
    } else {
      group = group << 6 | v;
      ++count;
    }
    if (count + padding == 4) {
      FlushGroup(group, count, bytes);
      padding = padding > 0 ? 3 : 0;  // after a padded group only white space may follow
      group = 0;
      count = 0;
    }
  }
  if (count != 0 || (padding != 0 && padding != 3)) {
    problem = "invalid base64: the text ends inside a group of four characters";
    return false;
  }
  if (bytes.size() % 4 != 0) {
    problem =
        "binary data of " + std::to_string(bytes.size()) + " bytes is not a whole number of 32-bit values";
    return false;
  }
  return true;
}
