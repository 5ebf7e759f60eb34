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
  text_ += std::to_wstring(value);
  return *this;
}

MStreamTextOut& MStreamTextOut::operator<<(wchar_t const* text) {
  if (text != nullptr) {
    text_ += text;
  }
  return *this;
}

void MStreamTextIn::SkipSpace() {
  while (position_ < text_.size() && IsSpace(text_[position_])) {
    ++position_;
  }
}

bool MStreamTextIn::AtEnd() const {
  for (size_t i = position_; i < text_.size(); ++i) {
    if (!IsSpace(text_[i])) {
      return false;
    }
  }
  return true;
}

MStreamTextIn& MStreamTextIn::operator>>(int32_t& value) {
  value = 0;
  SkipSpace();
  const bool negative = position_ < text_.size() && text_[position_] == L'-';
  if (position_ < text_.size() && (text_[position_] == L'-' || text_[position_] == L'+')) {
    ++position_;
  }
  int64_t magnitude = 0;
  const size_t first = position_;
  while (!failed_ && position_ < text_.size() && IsDigit(text_[position_])) {
    magnitude = magnitude * 10 + (text_[position_++] - L'0');
    failed_ = magnitude > int64_t{INT32_MAX} + 1;
  }
  const int64_t signed_value = negative ? -magnitude : magnitude;
  failed_ = failed_ || position_ == first || signed_value > INT32_MAX;
  if (!failed_) {
    value = static_cast<int32_t>(signed_value);
  }
  return *this;
}

bool ReadWholeNumber(std::wstring const& text, int32_t& value) {
  MStreamTextIn in(text);
  in >> value;
  return in.Good() && in.AtEnd();
}
