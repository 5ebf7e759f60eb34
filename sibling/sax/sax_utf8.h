// Conversions between the wide strings of the handler interface and the UTF-8
// of documents.
#pragma once

#include <cstdint>
#include <string>

namespace kelvor2d_detail {

// UTF-8 of a wide string; a value that is no Unicode scalar becomes U+FFFD.
std::string EncodeUtf8(std::wstring const& text);

// Wide string of UTF-8; a malformed sequence becomes U+FFFD.
std::wstring DecodeUtf8(std::string const& text);

// True for a character that XML 1.0 allows in a document.
bool IsXmlChar(uint32_t c);

}  // namespace kelvor2d_detail
