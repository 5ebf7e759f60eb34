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
  explicit ExceptionMaskPause(std::istream& in) : in_(in), mask_(in.exceptions()) {
    in_.exceptions(std::ios::goodbit);
  }
  ~ExceptionMaskPause() {
    try {
      in_.exceptions(mask_);  // sets the mask, then throws if the state matches it
    } catch (...) {
    }
  }
  ExceptionMaskPause(ExceptionMaskPause const&) = delete;
  ExceptionMaskPause& operator=(ExceptionMaskPause const&) = delete;

 private:
  std::istream& in_;
  std::ios::iostate mask_;
};

}  // namespace

MSAXReader::~MSAXReader() {
  if (parser_ != nullptr) {
    XML_ParserFree(parser_);
  }
}

void MSAXReader::Fail(uint64_t line, std::string const& what) {
  if (failed_) {
    return;
  }
  failed_ = true;
  errorLine_ = line;
  error_ = line > 0 ? "line " + std::to_string(line) + ": " + what : what;
  if (parser_ != nullptr) {
    XML_StopParser(parser_, XML_FALSE);
  }
}

void MSAXReader::Begin(ISAXPersistBase& root, uint64_t documentBytes) {
  if (parser_ != nullptr) {
    XML_ParserFree(parser_);
  }
  parser_ = XML_ParserCreate(nullptr);
  elements_.clear();
  handlers_.assign(1, HandlerEntry{&root, 0, false});
  binary_.reset();
  failed_ = false;
  fed_ = 0;
  documentBytes_ = documentBytes;
  error_.clear();
  errorLine_ = 0;
  if (parser_ == nullptr) {
    Fail(0, "out of memory for the XML parser");
    return;
  }
  XML_SetUserData(parser_, this);
  XML_SetElementHandler(parser_, &MSAXReader::OnStart, &MSAXReader::OnEnd);
  XML_SetCharacterDataHandler(parser_, &MSAXReader::OnText);
  XML_SetStartDoctypeDeclHandler(parser_, &MSAXReader::OnDoctype);
  root.SetDefaults();
}

bool MSAXReader::Feed(char const* data, size_t size, bool final) {
  if (failed_) {
    return false;
  }
  if (XML_Parse(parser_, data, static_cast<int>(size), final ? XML_TRUE : XML_FALSE) == XML_STATUS_ERROR) {
    Fail(XML_GetCurrentLineNumber(parser_),
         std::string("malformed XML: ") + XML_ErrorString(XML_GetErrorCode(parser_)));
  }
  fed_ += size;
  CheckPendingMarkup();
  return !failed_;
}

void MSAXReader::CheckPendingMarkup() {
  // Expat keeps an unfinished tag, comment or other piece of markup whole in
  // its buffer and scans it again with every chunk; bound it, or one endless
  // tag would cost memory and quadratic time.
  const XML_Index processed = XML_GetCurrentByteIndex(parser_);
  if (!failed_ && processed >= 0 && fed_ - static_cast<uint64_t>(processed) > kMaxMarkupBytes) {
    Fail(XML_GetCurrentLineNumber(parser_),
         "a tag or other markup longer than " + std::to_string(kMaxMarkupBytes) + " bytes");
  }
}

bool MSAXReader::Finish() {
  if (failed_) {
    for (auto entry = handlers_.rbegin(); entry != handlers_.rend(); ++entry) {
      entry->handler->AbortLoading();
      if (entry->owned) {
        delete entry->handler;
      }
    }
  } else {
    handlers_.front().handler->ResolveReferences(*this);
    handlers_.front().handler->InitAfterLoading();
  }
  handlers_.clear();
  elements_.clear();
  binary_.reset();
  XML_ParserFree(parser_);
  parser_ = nullptr;
  return !failed_;
}

bool MSAXReader::Read(std::istream& in, ISAXPersistBase& root) {
  const ExceptionMaskPause pause(in);
  std::vector<char> chunk(kChunkBytes);
  Begin(root, BytesLeftIn(in));
  while (!failed_) {
    in.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
    if (in.bad()) {
      Fail(parser_ == nullptr ? 0 : XML_GetCurrentLineNumber(parser_), "the input stream failed");
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
    failed_ = true;
    errorLine_ = 0;
    error_ = "cannot open '" + path + "' for reading";
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
    Fail(XML_GetCurrentLineNumber(parser_), std::string("an exception stopped the reading: ") + e.what());
  } catch (...) {
    Fail(XML_GetCurrentLineNumber(parser_), "an exception stopped the reading");
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
  if (failed_ || (!elements_.empty() && !elements_.back().dispatched && !Dispatch())) {
    return;
  }
  const uint64_t line = XML_GetCurrentLineNumber(parser_);
  if (elements_.size() >= maxDepth_) {
    Fail(line, "elements nested deeper than " + std::to_string(maxDepth_) + " levels");
    return;
  }
  Element element;
  element.name = name;
  element.streamName = FindStreamName(attributes);
  element.line = line;
  elements_.push_back(std::move(element));
}

void MSAXReader::AddText(char const* text, int length) {
  if (failed_ || elements_.empty() || elements_.back().dispatched) {
    return;
  }
  Element& element = elements_.back();
  if (element.text.size() + static_cast<size_t>(length) > maxElementBytes_) {
    Fail(element.line, "element \"" + element.name + "\" holds more than " +
                           std::to_string(maxElementBytes_) + " bytes of text");
    return;
  }
  element.text.append(text, static_cast<size_t>(length));
}

void MSAXReader::EndElement(char const* name) {
  if (failed_ || (!elements_.back().dispatched && !Dispatch())) {
    return;
  }
  const size_t depth = elements_.size();
  while (handlers_.back().owned && handlers_.back().depth == depth) {
    delete handlers_.back().handler;
    handlers_.pop_back();
  }
  binary_.reset();
  handlers_.back().handler->HandleEndTag(DecodeUtf8(name));
  elements_.pop_back();
}

void MSAXReader::OnDoctype(void* self, char const* /*name*/, char const* /*sysid*/, char const* /*pubid*/,
                           int /*internal*/) {
  MSAXReader& reader = *static_cast<MSAXReader*>(self);
  reader.Fail(XML_GetCurrentLineNumber(reader.parser_), "document type declarations are not accepted");
}

std::string MSAXReader::DescribeRefusal(Element const& element) const {
  std::string what = "element \"" + element.name + "\"";
  if (elements_.size() > 1) {
    what += " inside \"" + elements_[elements_.size() - 2].name + "\"";
  }
  return what + " refused: " + (detail_.empty() ? QuoteText(element.text) : detail_);
}

bool MSAXReader::Dispatch() {
  Element& element = elements_.back();
  element.dispatched = true;
  const std::wstring tag = DecodeUtf8(element.name);
  const size_t before = handlers_.size();
  detail_.clear();
  bool accepted = handlers_.back().handler->HandleTag(tag, *this);
  if (accepted && handlers_.size() > before) {
    accepted = handlers_.back().handler->HandleTag(tag, *this);
  }
  if (!accepted) {
    Fail(element.line, DescribeRefusal(element));
    return false;
  }
  std::string().swap(element.text);
  return !failed_;
}

std::wstring MSAXReader::GetTagText() const {
  return elements_.empty() ? std::wstring() : DecodeUtf8(elements_.back().text);
}

bool MSAXReader::ReadTagText(std::wstring& text) const {
  text = GetTagText();
  return !text.empty();
}

std::wstring MSAXReader::GetEnclosingTag(int levels) const {
  if (levels < 0 || static_cast<size_t>(levels) >= elements_.size()) {
    return std::wstring();
  }
  return DecodeUtf8(elements_[elements_.size() - 1 - static_cast<size_t>(levels)].name);
}

void MSAXReader::PushHandler(ISAXPersistBase* handler) {
  if (handler == nullptr) {
    return;
  }
  std::unique_ptr<ISAXPersistBase> owned(handler);  // deleted here if it cannot be pushed
  if (parser_ == nullptr || failed_) {
    return;
  }
  handlers_.push_back(HandlerEntry{handler, elements_.size(), true});
  owned.release();
  handler->SetDefaults();
}

uint64_t MSAXReader::MaxBinaryValuesAhead() const {
  uint64_t characters = maxElementBytes_;
  if (documentBytes_ != kUnknownSize && parser_ != nullptr) {
    const XML_Index at = XML_GetCurrentByteIndex(parser_);
    const uint64_t done = std::min(at > 0 ? static_cast<uint64_t>(at) : 0, documentBytes_);
    characters = std::min(characters, documentBytes_ - done);
  }
  return Base64CapacityBytes(characters) / 4;
}

bool MSAXReader::OpenBinaryStream(MSAXReaderBinaryStream*& out) {
  out = nullptr;
  if (elements_.empty()) {
    return false;
  }
  std::string bytes;
  if (!DecodeBase64(elements_.back().text, bytes, detail_)) {
    return false;
  }
  detail_ = "binary data of " + std::to_string(bytes.size() / 4) + " 32-bit values";
  binary_ = std::make_unique<MSAXReaderBinaryStream>(std::move(bytes), elements_.back().streamName);
  out = binary_.get();
  return true;
}
