// Short text values of elements: numbers to and from wide strings.
#pragma once

#include <cstdint>
#include <string>

#include "kelvor2d_export.h"

// Builds the text of one element.
class KELVOR2D_API MStreamTextOut {
 public:
  // Appends the decimal form of a number (int and long are both 32 bits here).
  MStreamTextOut& operator<<(int32_t value);
  // Appends a string; a null pointer appends nothing.
  MStreamTextOut& operator<<(wchar_t const* text);
  // The text built so far.
  std::wstring str() const { return m_text; }

 private:
  std::wstring m_text;
};

// Reads numbers from the text of one element, in decimal, each after optional
// white space, with an optional sign.
class KELVOR2D_API MStreamTextIn {
 public:
  // Reads from a copy of text.
  explicit MStreamTextIn(std::wstring const& text) : m_text(text) {}
  // Reads one number; on a missing, malformed or out-of-range number stores 0
  // and marks the stream failed (further reads fail too).
  MStreamTextIn& operator>>(int32_t& value);
  // False once a read has failed.
  bool Good() const { return !m_failed; }
  // True when only white space is left.
  bool AtEnd() const;

 private:
  void SkipSpace();

  std::wstring m_text;
  size_t m_position = 0;
  bool m_failed = false;
};

// Reads exactly one whole number from text (white space around it allowed);
// false when the text holds anything else.
bool ReadWholeNumber(std::wstring const& text, int32_t& value);
