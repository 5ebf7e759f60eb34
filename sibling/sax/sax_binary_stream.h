// Binary streams of 32-bit signed numbers, carried in a document as base64 of
// their little-endian bytes.
#pragma once

#include <cstdint>
#include <string>

#include "kelvor2d_export.h"

// Collects the numbers of one binary element while it is written.
class KELVOR2D_API MSAXStreamBinaryOut {
 public:
  // Makes room for `values` more numbers.
  void Reserve(size_t values) { m_bytes.reserve(m_bytes.size() + 4 * values); }
  // Appends one 32-bit signed number.
  MSAXStreamBinaryOut& operator<<(int32_t value);
  // The little-endian bytes collected so far.
  std::string const& Bytes() const { return m_bytes; }
  // Forgets the bytes and releases their memory.
  void Clear() { std::string().swap(m_bytes); }

 private:
  std::string m_bytes;
};

// Delivers the numbers of one binary element while it is read.
class KELVOR2D_API MSAXStreamBinaryIn {
 public:
  MSAXStreamBinaryIn() = default;
  // Takes little-endian bytes; a trailing part of less than 4 bytes is never read.
  explicit MSAXStreamBinaryIn(std::string bytes) : m_bytes(std::move(bytes)) {}
  // Reads the next number; past the end stores 0 and marks the stream failed.
  MSAXStreamBinaryIn& operator>>(int32_t& value);
  // False once a read went past the end.
  bool Good() const { return !m_failed; }
  // True when every number has been read.
  bool AtEnd() const { return m_position + 4 > m_bytes.size(); }
  // Number of numbers not yet read.
  size_t Remaining() const { return (m_bytes.size() - m_position) / 4; }

 private:
  std::string m_bytes;
  size_t m_position = 0;
  bool m_failed = false;
};

// The stream object a writer hands out; it stays the writer's.
class KELVOR2D_API MSAXWriterBinaryStream {
 public:
  // name: written as the element's "stream" attribute; none when hasName is false.
  MSAXWriterBinaryStream(std::string name, bool hasName) : m_name(std::move(name)), m_hasName(hasName) {}
  // The numbers to write.
  MSAXStreamBinaryOut& GetBinaryOut() { return m_out; }
  // The stream name; empty for the default stream.
  std::string const& GetName() const { return m_name; }
  // False for the default stream, which is written without an attribute.
  bool HasName() const { return m_hasName; }

 private:
  std::string m_name;
  bool m_hasName;
  MSAXStreamBinaryOut m_out;
};

// The stream object a reader hands out for the current element; it stays the
// reader's and lives until the next OpenBinaryStream or the end of the element.
class KELVOR2D_API MSAXReaderBinaryStream {
 public:
  // bytes: the decoded little-endian content; name: the "stream" attribute.
  MSAXReaderBinaryStream(std::string bytes, std::string name)
      : m_in(std::move(bytes)), m_name(std::move(name)) {}
  // The numbers of the element, to read in order.
  MSAXStreamBinaryIn& GetBinaryIn() { return m_in; }
  // The element's "stream" attribute; empty when it had none.
  std::string const& GetName() const { return m_name; }

 private:
  MSAXStreamBinaryIn m_in;
  std::string m_name;
};

// Appends the base64 of bytes to out, in lines of 76 characters each ended by
// a line feed (the last line too, unless bytes is empty).
void AppendBase64(std::string const& bytes, std::string& out);

// Number of characters AppendBase64 appends for that many bytes, line feeds included.
constexpr uint64_t Base64TextLength(uint64_t bytes) {
  const uint64_t groups = (bytes + 2) / 3;  // 4 characters each, 19 to a line
  return 4 * groups + (groups + 18) / 19;
}

// Most bytes that text of that many characters can carry as base64.
constexpr uint64_t Base64CapacityBytes(uint64_t characters) {
  return characters / 4 * 3;
}

// Decodes base64, skipping white space. False on a character outside the
// alphabet, misplaced padding, a cut-off group, or a byte count that is not a
// multiple of 4; problem then says which and where.
bool DecodeBase64(std::string const& text, std::string& bytes, std::string& problem);
