#include "persistence/sax_contour.h"

#include <cstdlib>

#include "sibling/sax/sax_binary_stream.h"
#include "sibling/sax/sax_reader.h"
#include "sibling/sax/sax_text_stream.h"
#include "sibling/sax/sax_writer.h"

// The "Data" of the most points, with the writer's line feed and indentation
// at the deepest nesting, stays within what a reader accepts by default.
static_assert(Base64TextLength(sizeof(MMPoint2d<long>) * uint64_t{kMaxPersistedPoints}) + 1 +
                      2 * MSAXReader::kDefaultMaxDepth <=
                  MSAXReader::kDefaultMaxElementBytes,
              "a contour of kMaxPersistedPoints points must be readable");

namespace {

// Writes <tag>text</tag> with the text built by a fresh text stream.
void WriteTextElement(MSAXWriter& writer, wchar_t const* tag, MStreamTextOut const& text) {
  writer.StartTag(tag);
  writer.WriteText(text.str());
  writer.EndTag(tag);
}

void WriteNumberElement(MSAXWriter& writer, wchar_t const* tag, int32_t value) {
  MStreamTextOut text;
  text << value;
  WriteTextElement(writer, tag, text);
}

void WriteLiteralElement(MSAXWriter& writer, wchar_t const* tag, wchar_t const* literal) {
  MStreamTextOut text;
  text << literal;
  WriteTextElement(writer, tag, text);
}

// The element's text as one number; false when it is empty or not a whole number.
bool ReadNumber(MSAXReader& reader, int32_t& value) {
  const std::wstring text = reader.GetTagText();
  return !text.empty() && ReadWholeNumber(text, value);
}

// Empty when a contour of `count` points may be stored, otherwise why not;
// `what` names the count in the message.
std::string CheckPointCount(char const* what, int32_t count) {
  if (count >= 0 && count <= kMaxPersistedPoints) {
    return std::string();
  }
  return std::string("a ") + what + " of " + std::to_string(count) + " points is not between 0 and " +
         std::to_string(kMaxPersistedPoints);
}

// The points written for a contour: none without an array.
int32_t StoredPointCount(CONTOUR const& contour) {
  return contour.Points != nullptr ? contour.NumPoints : 0;
}

// The field that one of the four small elements fills, null for other tags.
unsigned char* FindByteField(CONTOUR& contour, std::wstring const& tag) {
  if (tag == L"Type") {
    return reinterpret_cast<unsigned char*>(&contour.Type);
  }
  if (tag == L"Closed") {
    return &contour.Closed;
  }
  if (tag == L"Outer") {
    return &contour.Outer;
  }
  return tag == L"RightHanded" ? &contour.RightHanded : nullptr;
}

}  // namespace

void MSaxContour::SetDefaults() {
  contour->Clear();
}

bool MSaxContour::HandleTag(std::wstring const& tag, MSAXReader& reader) {
  if (tag == L"Contour") {
    return true;
  }
  if (unsigned char* field = FindByteField(*contour, tag)) {
    const std::wstring text = reader.GetTagText();
    if (text.empty()) {
      return false;
    }
    int32_t value = 0;
    MStreamTextIn(text) >> value;
    *field = static_cast<unsigned char>(value & 0xFF);
    return true;
  }
  if (tag == L"Points" || reader.GetEnclosingTag(1) == L"Points") {
    return _HandleTagPoints(tag, reader);
  }
  return false;
}

bool MSaxContour::_HandleTagPoints(std::wstring const& tag, MSAXReader& reader) {
  if (tag == L"Points") {
    return true;
  }
  if (tag == L"DataType") {
    std::wstring text;
    return reader.ReadTagText(text) && text == L"long";
  }
  if (tag == L"Dim") {
    int32_t dim = 0;
    return ReadNumber(reader, dim) && dim == 2;
  }
  if (tag == L"Count") {
    return _HandleCount(reader);
  }
  return tag == L"Data" && _HandleData(reader);
}

bool MSaxContour::_HandleCount(MSAXReader& reader) {
  int32_t count = 0;
  if (!ReadNumber(reader, count)) {
    return false;
  }
  const std::string outOfRange = CheckPointCount("Count", count);
  if (!outOfRange.empty()) {
    reader.ExplainRefusal(outOfRange);
    return false;
  }
  const uint64_t pointsAhead = reader.MaxBinaryValuesAhead() / 2;
  if (static_cast<uint64_t>(count) > pointsAhead) {
    reader.ExplainRefusal("a Count of " + std::to_string(count) + " points is more than the " +
                          std::to_string(pointsAhead) + " that the document can still deliver");
    return false;
  }
  free(contour->Points);
  contour->NumPoints = count;
  contour->Points =
      static_cast<MMPoint2d<long>*>(calloc(static_cast<size_t>(count), sizeof(MMPoint2d<long>)));
  if (contour->Points == nullptr && count > 0) {
    contour->NumPoints = 0;  // no point may be stored after a failed allocation
    return false;
  }
  return true;
}

bool MSaxContour::_HandleData(MSAXReader& reader) {
  MSAXReaderBinaryStream* stream = nullptr;
  if (!reader.OpenBinaryStream(stream)) {
    return false;
  }
  MSAXStreamBinaryIn& in = stream->GetBinaryIn();
  const size_t held = in.Remaining();
  for (int32_t i = 0; i < contour->NumPoints && in.Good(); ++i) {
    in >> contour->Points[i].x >> contour->Points[i].y;
  }
  if (!in.Good()) {
    reader.ExplainRefusal("Data holds " + std::to_string(held) + " values where Count " +
                          std::to_string(contour->NumPoints) + " asks for " +
                          std::to_string(2 * static_cast<size_t>(contour->NumPoints)));
  }
  return in.Good();
}

bool MSaxContour::Write(MSAXWriter& writer) const {
  const std::string outOfRange = CheckPointCount("contour", StoredPointCount(*contour));
  if (!outOfRange.empty()) {
    writer.ExplainRefusal(outOfRange);
    return false;
  }
  MSAXTagWriter element(writer, L"Contour");
  WriteNumberElement(writer, L"Type", static_cast<int32_t>(static_cast<signed char>(contour->Type)));
  WriteNumberElement(writer, L"Closed", contour->Closed != 0 ? 1 : 0);
  WriteNumberElement(writer, L"Outer", contour->Outer != 0 ? 1 : 0);
  WriteNumberElement(writer, L"RightHanded", contour->RightHanded != 0 ? 1 : 0);
  return _WritePoints(writer);
}

bool MSaxContour::_WritePoints(MSAXWriter& writer) const {
  MSAXTagWriter element(writer, L"Points");
  MSAXWriterBinaryStream* stream = streamName != nullptr ? writer.CreateBinaryStream(std::string(streamName))
                                                         : writer.CreateBinaryStream();
  MSAXStreamBinaryOut& out = stream->GetBinaryOut();
  const int32_t count = StoredPointCount(*contour);
  out.Reserve(2 * static_cast<size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    out << contour->Points[i].x << contour->Points[i].y;
  }
  WriteLiteralElement(writer, L"Dim", L"2");
  WriteLiteralElement(writer, L"DataType", L"long");
  WriteNumberElement(writer, L"Count", count);
  writer.WriteBinaryStream(L"Data", *stream);
  return true;
}
