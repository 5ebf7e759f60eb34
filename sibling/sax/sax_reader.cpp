#include "sibling/sax/sax_reader.h"

#include <expat.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <fstream>

#include "sibling/sax/sax_utf8.h"

using kelvor2d_detail::DecodeUtf8;
using kelvor2d_detail::EncodeUtf8;
using kelvor2d_detail::IsXmlChar;

namespace {

constexpr size_t kChunkBytes = size_t{64} << 10;
constexpr size_t kQuotedTextLength = 40;
constexpr char kStreamAttribute[] = "stream";
constexpr uint64_t kUnknownSize = UINT64_MAX;  // a stream that cannot seek to its end

std::string FindStreamName(char const** attributes) {
  for (char const** a = attributes; a[0] != nullptr; a += 2) {
    if (std::strcmp(a[0], kStreamAttribute) == 0) {
      return a[1];
    }
  }
  return std::string();
}

// The element's text without surrounding white space, cut short for a message.
std::string QuoteText(std::string const& text) {
  const size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) {
    return "no text";
  }
  const size_t last = text.find_last_not_of(" \t\r\n");
  std::string quoted = text.substr(first, last - first + 1);
  if (quoted.size() > kQuotedTextLength) {
    quoted = quoted.substr(0, kQuotedTextLength) + "...";
  }
  return "text \"" + quoted + "\"";
}

// Bytes from the stream's position to its end, kUnknownSize when it cannot
// seek. The position is left where it was, and so is the stream's state.
uint64_t BytesLeftIn(std::istream& in) {
  std::streambuf* buffer = in.rdbuf();
  if (buffer == nullptr) {
    return kUnknownSize;
  }
  const std::streampos here = buffer->pubseekoff(0, std::ios::cur, std::ios::in);
  if (here == std::streampos(-1)) {
    return kUnknownSize;
  }
  const std::streampos end = buffer->pubseekoff(0, std::ios::end, std::ios::in);
  buffer->pubseekpos(here, std::ios::in);
  return end == std::streampos(-1) || end < here ? kUnknownSize : static_cast<uint64_t>(end - here);
}

// Clears a stream's exception mask for its lifetime, then gives the caller's
// mask back without throwing for the state that the reading left.
class ExceptionMaskPause {
 public:
  explicit ExceptionMaskPause(std::istream& in) : m_in(in), m_mask(in.exceptions()) {
    m_in.exceptions(std::ios::goodbit);
  }
  ~ExceptionMaskPause() {
    try {
      m_in.exceptions(m_mask);  // sets the mask, then throws if the state matches it
    } catch (...) {
    }
  }
  ExceptionMaskPause(ExceptionMaskPause const&) = delete;
  ExceptionMaskPause& operator=(ExceptionMaskPause const&) = delete;

 private:
  std::istream& m_in;
  std::ios::iostate m_mask;
};

}  // namespace

MSAXReader::~MSAXReader() {
  if (m_parser != nullptr) {
    XML_ParserFree(m_parser);
  }
}

void MSAXReader::Fail(uint64_t line, std::string const& what) {
  if (m_failed) {
    return;
  }
  m_failed = true;
  m_errorLine = line;
  m_error = line > 0 ? "line " + std::to_string(line) + ": " + what : what;
  if (m_parser != nullptr) {
    XML_StopParser(m_parser, XML_FALSE);
  }
}

void MSAXReader::Begin(ISAXPersistBase& root, uint64_t documentBytes) {
  if (m_parser != nullptr) {
    XML_ParserFree(m_parser);
  }
  m_parser = XML_ParserCreate(nullptr);
  m_elements.clear();
  m_handlers.assign(1, HandlerEntry{&root, 0, false});
  m_binary.reset();
  m_failed = false;
  m_fed = 0;
  m_documentBytes = documentBytes;
  m_error.clear();
  m_errorLine = 0;
  if (m_parser == nullptr) {
    Fail(0, "out of memory for the XML parser");
    return;
  }
  XML_SetUserData(m_parser, this);
  XML_SetElementHandler(m_parser, &MSAXReader::OnStart, &MSAXReader::OnEnd);
  XML_SetCharacterDataHandler(m_parser, &MSAXReader::OnText);
  XML_SetStartDoctypeDeclHandler(m_parser, &MSAXReader::OnDoctype);
  root.SetDefaults();
}

bool MSAXReader::Feed(char const* data, size_t size, bool final) {
  if (m_failed) {
    return false;
  }
  if (XML_Parse(m_parser, data, static_cast<int>(size), final ? XML_TRUE : XML_FALSE) == XML_STATUS_ERROR) {
    Fail(XML_GetCurrentLineNumber(m_parser),
         std::string("malformed XML: ") + XML_ErrorString(XML_GetErrorCode(m_parser)));
  }
  m_fed += size;
  CheckPendingMarkup();
  return !m_failed;
}

void MSAXReader::CheckPendingMarkup() {
  // Expat keeps an unfinished tag, comment or other piece of markup whole in
  // its buffer and scans it again with every chunk; bound it, or one endless
  // tag would cost memory and quadratic time.
  const XML_Index processed = XML_GetCurrentByteIndex(m_parser);
  if (!m_failed && processed >= 0 && m_fed - static_cast<uint64_t>(processed) > kMaxMarkupBytes) {
    Fail(XML_GetCurrentLineNumber(m_parser),
         "a tag or other markup longer than " + std::to_string(kMaxMarkupBytes) + " bytes");
  }
}

bool MSAXReader::Finish() {
  if (m_failed) {
    for (auto entry = m_handlers.rbegin(); entry != m_handlers.rend(); ++entry) {
      entry->handler->AbortLoading();
      if (entry->owned) {
        delete entry->handler;
      }
    }
  } else {
    m_handlers.front().handler->ResolveReferences(*this);
    m_handlers.front().handler->InitAfterLoading();
  }
  m_handlers.clear();
  m_elements.clear();
  m_binary.reset();
  XML_ParserFree(m_parser);
  m_parser = nullptr;
  return !m_failed;
}

bool MSAXReader::Read(std::istream& in, ISAXPersistBase& root) {
  const ExceptionMaskPause pause(in);
  std::vector<char> chunk(kChunkBytes);
  Begin(root, BytesLeftIn(in));
  while (!m_failed) {
    in.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
    if (in.bad()) {
      Fail(m_parser == nullptr ? 0 : XML_GetCurrentLineNumber(m_parser), "the input stream failed");
      break;
    }
    const bool final = !in;
    if (!Feed(chunk.data(), static_cast<size_t>(in.gcount()), final) || final) {
      break;
    }
  }
  return Finish();
}

bool MSAXReader::ReadFile(std::string const& path, ISAXPersistBase& root) {
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) {
    m_failed = true;
    m_errorLine = 0;
    m_error = "cannot open '" + path + "' for reading";
    return false;
  }
  return Read(file, root);
}

bool MSAXReader::ReadBuffer(char const* data, size_t size, ISAXPersistBase& root) {
  Begin(root, size);
  size_t done = 0;
  do {
    const size_t part = size - done < kChunkBytes ? size - done : kChunkBytes;
    if (!Feed(data + done, part, done + part == size)) {
      break;
    }
    done += part;
  } while (done < size);
  return Finish();
}

// Expat is C: nothing may unwind through it. An exception of a handler or of
// the allocator becomes the error of the reading, and Finish releases the rest.
template <typename Step>
void MSAXReader::RunCatching(Step step) {
  try {
    step();
  } catch (std::exception const& e) {
    Fail(XML_GetCurrentLineNumber(m_parser), std::string("an exception stopped the reading: ") + e.what());
  } catch (...) {
    Fail(XML_GetCurrentLineNumber(m_parser), "an exception stopped the reading");
  }
}

void MSAXReader::OnStart(void* self, char const* name, char const** attributes) {
  MSAXReader& reader = *static_cast<MSAXReader*>(self);
  reader.RunCatching([&reader, name, attributes] { reader.StartElement(name, attributes); });
}

void MSAXReader::OnText(void* self, char const* text, int length) {
  MSAXReader& reader = *static_cast<MSAXReader*>(self);
  reader.RunCatching([&reader, text, length] { reader.AddText(text, length); });
}

void MSAXReader::OnEnd(void* self, char const* name) {
  MSAXReader& reader = *static_cast<MSAXReader*>(self);
  reader.RunCatching([&reader, name] { reader.EndElement(name); });
}

void MSAXReader::StartElement(char const* name, char const** attributes) {
  if (m_failed || (!m_elements.empty() && !m_elements.back().dispatched && !Dispatch())) {
    return;
  }
  const uint64_t line = XML_GetCurrentLineNumber(m_parser);
  if (m_elements.size() >= m_maxDepth) {
    Fail(line, "elements nested deeper than " + std::to_string(m_maxDepth) + " levels");
    return;
  }
  Element element;
  element.name = name;
  element.streamName = FindStreamName(attributes);
  element.line = line;
  m_elements.push_back(std::move(element));
}

void MSAXReader::AddText(char const* text, int length) {
  if (m_failed || m_elements.empty() || m_elements.back().dispatched) {
    return;
  }
  Element& element = m_elements.back();
  if (element.text.size() + static_cast<size_t>(length) > m_maxElementBytes) {
    Fail(element.line, "element \"" + element.name + "\" holds more than " +
                           std::to_string(m_maxElementBytes) + " bytes of text");
    return;
  }
  element.text.append(text, static_cast<size_t>(length));
}

void MSAXReader::EndElement(char const* name) {
  if (m_failed || (!m_elements.back().dispatched && !Dispatch())) {
    return;
  }
  const size_t depth = m_elements.size();
  while (m_handlers.back().owned && m_handlers.back().depth == depth) {
    delete m_handlers.back().handler;
    m_handlers.pop_back();
  }
  m_binary.reset();
  m_handlers.back().handler->HandleEndTag(DecodeUtf8(name));
  m_elements.pop_back();
}

void MSAXReader::OnDoctype(void* self, char const* /*name*/, char const* /*sysid*/, char const* /*pubid*/,
                           int /*internal*/) {
  MSAXReader& reader = *static_cast<MSAXReader*>(self);
  reader.Fail(XML_GetCurrentLineNumber(reader.m_parser), "document type declarations are not accepted");
}

std::string MSAXReader::DescribeRefusal(Element const& element) const {
  std::string what = "element \"" + element.name + "\"";
  if (m_elements.size() > 1) {
    what += " inside \"" + m_elements[m_elements.size() - 2].name + "\"";
  }
  return what + " refused: " + (m_detail.empty() ? QuoteText(element.text) : m_detail);
}

bool MSAXReader::Dispatch() {
  Element& element = m_elements.back();
  element.dispatched = true;
  const std::wstring tag = DecodeUtf8(element.name);
  const size_t before = m_handlers.size();
  m_detail.clear();
  bool accepted = m_handlers.back().handler->HandleTag(tag, *this);
  if (accepted && m_handlers.size() > before) {
    accepted = m_handlers.back().handler->HandleTag(tag, *this);
  }
  if (!accepted) {
    Fail(element.line, DescribeRefusal(element));
    return false;
  }
  std::string().swap(element.text);
  return !m_failed;
}

std::wstring MSAXReader::GetTagText() const {
  return m_elements.empty() ? std::wstring() : DecodeUtf8(m_elements.back().text);
}

bool MSAXReader::ReadTagText(std::wstring& text) const {
  text = GetTagText();
  return !text.empty();
}

std::wstring MSAXReader::GetEnclosingTag(int levels) const {
  if (levels < 0 || static_cast<size_t>(levels) >= m_elements.size()) {
    return std::wstring();
  }
  return DecodeUtf8(m_elements[m_elements.size() - 1 - static_cast<size_t>(levels)].name);
}

void MSAXReader::PushHandler(ISAXPersistBase* handler) {
  if (handler == nullptr) {
    return;
  }
  std::unique_ptr<ISAXPersistBase> owned(handler);  // deleted here if it cannot be pushed
  if (m_parser == nullptr || m_failed) {
    return;
  }
  m_handlers.push_back(HandlerEntry{handler, m_elements.size(), true});
  owned.release();
  handler->SetDefaults();
}

uint64_t MSAXReader::MaxBinaryValuesAhead() const {
  uint64_t characters = m_maxElementBytes;
  if (m_documentBytes != kUnknownSize && m_parser != nullptr) {
    const XML_Index at = XML_GetCurrentByteIndex(m_parser);
    const uint64_t done = std::min(at > 0 ? static_cast<uint64_t>(at) : 0, m_documentBytes);
    characters = std::min(characters, m_documentBytes - done);
  }
  return Base64CapacityBytes(characters) / 4;
}

bool MSAXReader::OpenBinaryStream(MSAXReaderBinaryStream*& out) {
  out = nullptr;
  if (m_elements.empty()) {
    return false;
  }
  std::string bytes;
  if (!DecodeBase64(m_elements.back().text, bytes, m_detail)) {
    return false;
  }
  m_detail = "binary data of " + std::to_string(bytes.size() / 4) + " 32-bit values";
  m_binary = std::make_unique<MSAXReaderBinaryStream>(std::move(bytes), m_elements.back().streamName);
  out = m_binary.get();
  return true;
}
