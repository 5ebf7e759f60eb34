#include "sibling/sax/sax_utf8.h"

#include <cstdint>

namespace {

constexpr uint32_t kReplacement = 0xFFFD;

bool IsScalar(uint32_t c) {
  return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

void AppendCodePoint(uint32_t c, std::string& out) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

// Length of the sequence a lead byte announces, 0 for a byte that cannot lead.
int SequenceLength(unsigned char lead) {
  if (lead < 0x80) {
    return 1;
  }
  if (lead >= 0xC2 && lead <= 0xDF) {
    return 2;
  }
  if (lead >= 0xE0 && lead <= 0xEF) {
    return 3;
  }
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

// Decodes the sequence at text[i] of `length` bytes; kReplacement when it is malformed.
uint32_t DecodeSequence(std::string const& text, size_t i, int length) {
  constexpr uint32_t kLeadMask[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  constexpr uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  uint32_t c = static_cast<unsigned char>(text[i]) & kLeadMask[length];
  for (int k = 1; k < length; ++k) {
    const unsigned char b = static_cast<unsigned char>(text[i + k]);
    if ((b & 0xC0) != 0x80) {
      return kReplacement;
    }
    c = c << 6 | (b & 0x3F);
  }
  return c < kLeast[length] || !IsScalar(c) ? kReplacement : c;
}

}  // namespace

namespace kelvor2d_detail {

bool IsXmlChar(uint32_t c) {
  if (c < 0x20) {
    return c == 0x9 || c == 0xA || c == 0xD;
  }
  return IsScalar(c) && c != 0xFFFE && c != 0xFFFF;
}

std::string EncodeUtf8(std::wstring const& text) {
  std::string out;
  out.reserve(text.size());
  for (wchar_t w : text) {
    const uint32_t c = static_cast<uint32_t>(w);
    AppendCodePoint(IsScalar(c) ? c : kReplacement, out);
  }
  return out;
}

std::wstring DecodeUtf8(std::string const& text) {
  std::wstring out;
  out.reserve(text.size());
  size_t i = 0;
  while (i < text.size()) {
    int length = SequenceLength(static_cast<unsigned char>(text[i]));
    if (length == 0 || i + length > text.size()) {
      length = 1;
      out += static_cast<wchar_t>(kReplacement);
    } else {
      out += static_cast<wchar_t>(DecodeSequence(text, i, length));
    }
    i += length;
  }
  return out;
}

}  // namespace kelvor2d_detail
