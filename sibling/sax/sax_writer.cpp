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

MSAXWriter::MSAXWriter(std::ostream& out) : m_out(&out) {}

MSAXWriter::MSAXWriter(std::string const& path)
    : m_file(path, std::ios::binary | std::ios::trunc), m_out(&m_file) {
  if (!m_file.is_open()) {
    Fail("cannot open '" + path + "' for writing");
  }
}

void MSAXWriter::Fail(std::string const& why) {
  if (!m_failed) {
    m_failed = true;
    m_error = why;
  }
}

void MSAXWriter::Emit(std::string const& text) {
  if (!m_failed && !m_out->write(text.data(), static_cast<std::streamsize>(text.size()))) {
    Fail("the output stream refused the document");
  }
}

bool MSAXWriter::OpenElement(wchar_t const* tag, std::string const* streamName) {
  if (m_failed) {
    return false;
  }
  if (!IsValidTag(tag)) {
    Fail("invalid element name");
    return false;
  }
  if (m_open.empty() && m_rootWritten) {
    Fail("a second root element '" + EncodeUtf8(tag) + "'");
    return false;
  }
  if (!m_open.empty()) {
    m_hasChildren.back() = true;
  }
  const std::string name = EncodeUtf8(tag);
  std::string text = Indentation(m_open.size()) + "<" + name;
  if (streamName != nullptr) {
    text += " stream=\"" + EncodeUtf8(EscapeText(DecodeUtf8(*streamName), true)) + "\"";
  }
  Emit(text + ">");
  m_open.push_back(name);
  m_hasChildren.push_back(false);
  m_rootWritten = true;
  return true;
}

void MSAXWriter::StartTag(wchar_t const* tag) {
  OpenElement(tag, nullptr);
}

void MSAXWriter::EndTag(wchar_t const* tag) {
  if (m_failed) {
    return;
  }
  const std::string name = tag == nullptr ? std::string() : EncodeUtf8(tag);
  if (m_open.empty() || m_open.back() != name) {
    Fail("closing tag '" + name + "' does not match the open element");
    return;
  }
  Emit((m_hasChildren.back() ? Indentation(m_open.size() - 1) : std::string()) + "</" + name + ">");
  m_open.pop_back();
  m_hasChildren.pop_back();
}

void MSAXWriter::WriteText(std::wstring const& text) {
  if (!m_failed && m_open.empty()) {
    Fail("text outside any element");
  }
  Emit(EncodeUtf8(EscapeText(text, false)));
}

MSAXWriterBinaryStream* MSAXWriter::CreateBinaryStream(std::string const& name) {
  m_streams.push_back(std::make_unique<MSAXWriterBinaryStream>(name, true));
  return m_streams.back().get();
}

MSAXWriterBinaryStream* MSAXWriter::CreateBinaryStream() {
  m_streams.push_back(std::make_unique<MSAXWriterBinaryStream>(std::string(), false));
  return m_streams.back().get();
}

void MSAXWriter::WriteBinaryStream(wchar_t const* tag, MSAXWriterBinaryStream& stream) {
  if (OpenElement(tag, stream.HasName() ? &stream.GetName() : nullptr)) {
    std::string text;
    if (!stream.GetBinaryOut().Bytes().empty()) {
      text += '\n';
      AppendBase64(stream.GetBinaryOut().Bytes(), text);
      text += std::string(2 * (m_open.size() - 1), ' ');
    }
    Emit(text);
    EndTag(tag);
  }
  stream.GetBinaryOut().Clear();
}

bool MSAXWriter::WriteDocument(ISAXPersistBase const& root) {
  Emit(kDeclaration);
  const bool written = root.Write(*this);
  if (!m_failed && (!m_rootWritten || !m_open.empty())) {
    Fail(m_rootWritten ? "the handler left elements open" : "the handler wrote no element");
  }
  Emit("\n");
  if (!m_failed && !m_out->flush()) {
    Fail("the output stream refused the document");
  }
  if (!written) {
    Fail("the handler could not write its object");
  }
  return !m_failed;
}
