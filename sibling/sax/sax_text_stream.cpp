#include "sibling/sax/sax_text_stream.h"

namespace {

bool IsSpace(wchar_t c) {
  return c == L' ' || c == L'\t' || c == L'\n' || c == L'\r';
}

bool IsDigit(wchar_t c) {
  return c >= L'0' && c <= L'9';
}

}  // namespace

MStreamTextOut& MStreamTextOut::operator<<(int32_t value) {
  m_text += std::to_wstring(value);
  return *this;
}

MStreamTextOut& MStreamTextOut::operator<<(wchar_t const* text) {
  if (text != nullptr) {
    m_text += text;
  }
  return *this;
}

void MStreamTextIn::SkipSpace() {
  while (m_position < m_text.size() && IsSpace(m_text[m_position])) {
    ++m_position;
  }
}

bool MStreamTextIn::AtEnd() const {
  for (size_t i = m_position; i < m_text.size(); ++i) {
    if (!IsSpace(m_text[i])) {
      return false;
    }
  }
  return true;
}

MStreamTextIn& MStreamTextIn::operator>>(int32_t& value) {
  value = 0;
  SkipSpace();
  const bool negative = m_position < m_text.size() && m_text[m_position] == L'-';
  if (m_position < m_text.size() && (m_text[m_position] == L'-' || m_text[m_position] == L'+')) {
    ++m_position;
  }
  int64_t magnitude = 0;
  const size_t first = m_position;
  while (!m_failed && m_position < m_text.size() && IsDigit(m_text[m_position])) {
    magnitude = magnitude * 10 + (m_text[m_position++] - L'0');
    m_failed = magnitude > int64_t{INT32_MAX} + 1;
  }
  const int64_t signed_value = negative ? -magnitude : magnitude;
  m_failed = m_failed || m_position == first || signed_value > INT32_MAX;
  if (!m_failed) {
    value = static_cast<int32_t>(signed_value);
  }
  return *this;
}

bool ReadWholeNumber(std::wstring const& text, int32_t& value) {
  MStreamTextIn in(text);
  in >> value;
  return in.Good() && in.AtEnd();
}
