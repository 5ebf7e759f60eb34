#include "sibling/sax/sax_writer.h"

#include "sibling/sax/sax_utf8.h"

using kelvor2d_detail::DecodeUtf8;
using kelvor2d_detail::EncodeUtf8;
using kelvor2d_detail::IsXmlChar;

namespace {

constexpr char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

bool IsNameStart(wchar_t c) {
  return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || c == L'_' || c >= 0xC0;
}

bool IsNameChar(wchar_t c) {
  return IsNameStart(c) || (c >= L'0' && c <= L'9') || c == L'-' || c == L'.';
}

// A tag name the writer accepts: an XML name without a namespace colon.
bool IsValidTag(wchar_t const* tag) {
  if (tag == nullptr || !IsNameStart(tag[0])) {
    return false;
  }
  for (const wchar_t* c = tag + 1; *c != 0; ++c) {
    if (!IsNameChar(*c)) {
      return false;
    }
  }
  return true;
}

// The reference that stands for c, null when c stands for itself. Tab, line
// feed and quote need one only inside an attribute value.
wchar_t const* ReferenceFor(wchar_t c, bool attribute) {
  static constexpr struct {
    wchar_t c;
    wchar_t const* reference;
    bool attributeOnly;
  } kReferences[] = {{L'&', L"&amp;", false},  {L'<', L"&lt;", false},  {L'>', L"&gt;", false},
                     {L'\r', L"&#13;", false}, {L'"', L"&quot;", true}, {L'\t', L"&#9;", true},
                     {L'\n', L"&#10;", true}};
  for (const auto& entry : kReferences) {
    if (entry.c == c && (attribute || !entry.attributeOnly)) {
      return entry.reference;
    }
  }
  return nullptr;
}

// Character data or an attribute value, escaped; disallowed characters become U+FFFD.
std::wstring EscapeText(std::wstring const& text, bool attribute) {
  std::wstring out;
  out.reserve(text.size());
  for (wchar_t c : text) {
    if (wchar_t const* reference = ReferenceFor(c, attribute)) {
      out += reference;
    } else {
      out += IsXmlChar(static_cast<uint32_t>(c)) ? c : static_cast<wchar_t>(0xFFFD);
    }
  }
  return out;
}

std::string Indentation(size_t depth) {
  return "\n" + std::string(2 * depth, ' ');
}

}  // namespace

MSAXWriter::MSAXWriter(std::ostream& out) : out_(&out) {}

MSAXWriter::MSAXWriter(std::string const& path)
    : file_(path, std::ios::binary | std::ios::trunc), out_(&file_) {
  if (!file_.is_open()) {
    Fail("cannot open '" + path + "' for writing");
  }
}

void MSAXWriter::Fail(std::string const& why) {
  if (!failed_) {
    failed_ = true;
    error_ = why;
  }
}

void MSAXWriter::Emit(std::string const& text) {
  if (!failed_ && !out_->write(text.data(), static_cast<std::streamsize>(text.size()))) {
    Fail("the output stream refused the document");
  }
}

bool MSAXWriter::OpenElement(wchar_t const* tag, std::string const* streamName) {
  if (failed_) {
    return false;
  }
  if (!IsValidTag(tag)) {
    Fail("invalid element name");
    return false;
  }
  if (open_.empty() && rootWritten_) {
    Fail("a second root element '" + EncodeUtf8(tag) + "'");
    return false;
  }
  if (!open_.empty()) {
    hasChildren_.back() = true;
  }
  const std::string name = EncodeUtf8(tag);
  std::string text = Indentation(open_.size()) + "<" + name;
  if (streamName != nullptr) {
    text += " stream=\"" + EncodeUtf8(EscapeText(DecodeUtf8(*streamName), true)) + "\"";
  }
  Emit(text + ">");
  open_.push_back(name);
  hasChildren_.push_back(false);
  rootWritten_ = true;
  return true;
}

void MSAXWriter::StartTag(wchar_t const* tag) {
  OpenElement(tag, nullptr);
}

void MSAXWriter::EndTag(wchar_t const* tag) {
  if (failed_) {
    return;
  }
  const std::string name = tag == nullptr ? std::string() : EncodeUtf8(tag);
  if (open_.empty() || open_.back() != name) {
    Fail("closing tag '" + name + "' does not match the open element");
    return;
  }
  Emit((hasChildren_.back() ? Indentation(open_.size() - 1) : std::string()) + "</" + name + ">");
  open_.pop_back();
  hasChildren_.pop_back();
}

void MSAXWriter::WriteText(std::wstring const& text) {
  if (!failed_ && open_.empty()) {
    Fail("text outside any element");
  }
  Emit(EncodeUtf8(EscapeText(text, false)));
}

MSAXWriterBinaryStream* MSAXWriter::CreateBinaryStream(std::string const& name) {
  streams_.push_back(std::make_unique<MSAXWriterBinaryStream>(name, true));
  return streams_.back().get();
}

MSAXWriterBinaryStream* MSAXWriter::CreateBinaryStream() {
  streams_.push_back(std::make_unique<MSAXWriterBinaryStream>(std::string(), false));
  return streams_.back().get();
}

void MSAXWriter::WriteBinaryStream(wchar_t const* tag, MSAXWriterBinaryStream& stream) {
  if (OpenElement(tag, stream.HasName() ? &stream.GetName() : nullptr)) {
    std::string text;
    if (!stream.GetBinaryOut().Bytes().empty()) {
      text += '\n';
      AppendBase64(stream.GetBinaryOut().Bytes(), text);
      text += std::string(2 * (open_.size() - 1), ' ');
    }
    Emit(text);
    EndTag(tag);
  }
  stream.GetBinaryOut().Clear();
}

bool MSAXWriter::WriteDocument(ISAXPersistBase const& root) {
  Emit(kDeclaration);
  const bool written = root.Write(*this);
  if (!failed_ && (!rootWritten_ || !open_.empty())) {
    Fail(rootWritten_ ? "the handler left elements open" : "the handler wrote no element");
  }
  Emit("\n");
  if (!failed_ && !out_->flush()) {
    Fail("the output stream refused the document");
  }
  if (!written) {
    Fail("the handler could not write its object");
  }
  return !failed_;
}
