// The document writer: an XML 1.0 document in UTF-8, built element by element
// by the Write of a handler tree.
#pragma once

#include <fstream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "kelvor2d_export.h"
#include "sibling/sax/sax_binary_stream.h"
#include "sibling/sax/sax_persist.h"

// Writes one document to a stream or a file. Misuse (a bad tag name, a closing
// tag that does not match, a second root element) and output errors put the
// writer in a failed state: it writes nothing more and WriteDocument is false.
class KELVOR2D_API MSAXWriter {
 public:
  // Writes to out, which must outlive the writer.
  explicit MSAXWriter(std::ostream& out);
  // Writes to the file at path, created or truncated; a file that cannot be
  // opened leaves the writer failed.
  explicit MSAXWriter(std::string const& path);
  MSAXWriter(MSAXWriter const&) = delete;
  MSAXWriter& operator=(MSAXWriter const&) = delete;

  // The whole document: declaration, root.Write(*this), flush. False when the
  // handler returned false, it left no single closed root element, or the
  // writer failed; GetError then says why.
  bool WriteDocument(ISAXPersistBase const& root);

  // Opens an element (small text elements and elements with children alike).
  void StartTag(wchar_t const* tag);
  // Closes the element that is open; it must carry this tag.
  void EndTag(wchar_t const* tag);
  // Text of the element that is open, escaped; characters that XML 1.0 does
  // not allow become U+FFFD.
  void WriteText(std::wstring const& text);
  // A new binary stream whose element carries name in its "stream" attribute;
  // the stream stays the writer's. Never null.
  MSAXWriterBinaryStream* CreateBinaryStream(std::string const& name);
  // A new binary stream of the default kind (no attribute). Never null.
  MSAXWriterBinaryStream* CreateBinaryStream();
  // Writes an element of this tag holding all the stream's numbers as base64,
  // then releases the stream's bytes.
  void WriteBinaryStream(wchar_t const* tag, MSAXWriterBinaryStream& stream);

  // Says why a handler cannot write its object, before its Write returns
  // false: the writer fails with this reason and writes nothing more.
  void ExplainRefusal(std::string const& why) { Fail(why); }

  // False once the writer has failed.
  bool Good() const { return !m_failed; }
  // Why the writer failed; empty while it is good.
  std::string const& GetError() const { return m_error; }

 private:
  bool OpenElement(wchar_t const* tag, std::string const* streamName);
  void Emit(std::string const& text);
  void Fail(std::string const& why);

  std::ofstream m_file;
  std::ostream* m_out;
  std::vector<std::string> m_open;  // names of the open elements, root first
  std::vector<bool> m_hasChildren;  // per open element: an element was opened inside it
  std::vector<std::unique_ptr<MSAXWriterBinaryStream>> m_streams;
  bool m_rootWritten = false;
  bool m_failed = false;
  std::string m_error;
};

// Opens an element for its lifetime: the destructor closes it, also when a
// scope is left early.
class KELVOR2D_API MSAXTagWriter {
 public:
  MSAXTagWriter(MSAXWriter& writer, wchar_t const* tag) : m_writer(writer), m_tag(tag) {
    m_writer.StartTag(m_tag);
  }
  ~MSAXTagWriter() { m_writer.EndTag(m_tag); }
  MSAXTagWriter(MSAXTagWriter const&) = delete;
  MSAXTagWriter& operator=(MSAXTagWriter const&) = delete;

 private:
  MSAXWriter& m_writer;
  wchar_t const* m_tag;
};
