// The document reader: parses an XML 1.0 document as a stream (memory bounded
// by the nesting depth and the largest element, not by the document) and
// drives a stack of handlers with its elements.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <vector>

#include "kelvor2d_export.h"
#include "sibling/sax/sax_binary_stream.h"
#include "sibling/sax/sax_persist.h"

struct XML_ParserStruct;

// Reads documents into a root handler. An opening tag reaches the top handler
// once the element's leading text is known: when its first child opens or,
// for an element without children, when it closes. A handler pushed during
// HandleTag gets SetDefaults and then the same tag, and is popped and deleted
// when that element closes; its closing tag goes to the handler below.
// Malformed XML, a document type declaration, a refused tag, bad base64, too
// deep nesting, too large an element, too long a tag, or an exception thrown
// while an element is handled (by a handler or the allocator) end the reading
// with an error that says what and at which line; every handler on the stack
// then gets AbortLoading and the pushed ones are deleted.
class KELVOR2D_API MSAXReader {
 public:
  static constexpr size_t kDefaultMaxDepth = 256;
  static constexpr size_t kDefaultMaxElementBytes = size_t{256} << 20;
  // Longest tag, comment or other piece of markup accepted.
  static constexpr size_t kMaxMarkupBytes = size_t{1} << 20;

  MSAXReader() = default;
  ~MSAXReader();
  MSAXReader(MSAXReader const&) = delete;
  MSAXReader& operator=(MSAXReader const&) = delete;

  // Reads a whole document from in into root (root.SetDefaults first). True
  // when the document was complete and every tag was accepted; then root gets
  // ResolveReferences and InitAfterLoading. The stream's exception mask is
  // cleared for the reading and given back afterwards without throwing; its
  // state stays as the reading left it.
  bool Read(std::istream& in, ISAXPersistBase& root);
  // The same from the file at path; false with an error, root untouched, when it cannot be opened.
  bool ReadFile(std::string const& path, ISAXPersistBase& root);
  // The same from size bytes at data.
  bool ReadBuffer(char const* data, size_t size, ISAXPersistBase& root);

  // Deepest nesting of elements accepted (default 256).
  void SetMaxDepth(size_t depth) { m_maxDepth = depth; }
  // Most bytes of text one element may hold (default 256 MiB).
  void SetMaxElementBytes(size_t bytes) { m_maxElementBytes = bytes; }
  // "line N: what went wrong" of the last failed read; empty after a success.
  std::string const& GetError() const { return m_error; }
  // Line of the last error, 0 when there was none or it has no line.
  uint64_t GetErrorLine() const { return m_errorLine; }

  // ---- for handlers, during HandleTag ----
  // Text of the current element (before its first child); empty when none.
  std::wstring GetTagText() const;
  // The same into text; false when there is no current element or no text.
  bool ReadTagText(std::wstring& text) const;
  // Name of the element `levels` above the current one; empty when there is none.
  std::wstring GetEnclosingTag(int levels) const;
  // Tags go to handler from now on until the current element closes; the
  // reader owns it and deletes it. Outside a reading it is deleted at once.
  void PushHandler(ISAXPersistBase* handler);
  // Decodes the current element's text as base64 into a stream that stays
  // the reader's (until the element closes); false on bad base64.
  bool OpenBinaryStream(MSAXReaderBinaryStream*& out);
  // Says why the handler is about to refuse the current element; the error
  // text carries it instead of the element's text.
  void ExplainRefusal(std::string const& why) { m_detail = why; }
  // Most 32-bit values a binary element yet to come can deliver: what the
  // base64 of the rest of the document can carry where the reader knows how
  // much is left (a buffer, a file, a seekable stream), and of an element at
  // the size limit in any case. A handler that allocates for a count
  // announced before its data refuses a larger count.
  uint64_t MaxBinaryValuesAhead() const;

 private:
  struct Element {
    std::string name;        // UTF-8
    std::string text;        // leading character data, UTF-8
    std::string streamName;  // "stream" attribute, empty when absent
    uint64_t line = 0;       // line of the opening tag
    bool dispatched = false;
  };
  struct HandlerEntry {
    ISAXPersistBase* handler;
    size_t depth;  // number of open elements when it was pushed
    bool owned;
  };

  static void OnStart(void* self, char const* name, char const** attributes);
  static void OnEnd(void* self, char const* name);
  static void OnText(void* self, char const* text, int length);
  static void OnDoctype(void* self, char const* name, char const* sysid, char const* pubid, int internal);

  void StartElement(char const* name, char const** attributes);
  void AddText(char const* text, int length);
  void EndElement(char const* name);
  void Begin(ISAXPersistBase& root, uint64_t documentBytes);
  bool Feed(char const* data, size_t size, bool final);
  void CheckPendingMarkup();
  bool Finish();
  bool Dispatch();
  template <typename Step>
  void RunCatching(Step step);
  void Fail(uint64_t line, std::string const& what);
  std::string DescribeRefusal(Element const& element) const;

  XML_ParserStruct* m_parser = nullptr;
  std::vector<Element> m_elements;
  std::vector<HandlerEntry> m_handlers;
  std::unique_ptr<MSAXReaderBinaryStream> m_binary;
  std::string m_detail;  // what OpenBinaryStream found, for the error text
  size_t m_maxDepth = kDefaultMaxDepth;
  size_t m_maxElementBytes = kDefaultMaxElementBytes;
  uint64_t m_fed = 0;            // bytes given to the parser so far
  uint64_t m_documentBytes = 0;  // bytes from the start of the reading to the end, UINT64_MAX if unknown
  bool m_failed = false;
  std::string m_error;
  uint64_t m_errorLine = 0;
};
