#include "sibling/sax/sax_writer.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

namespace {

// A root handler whose Write is a test's lambda.
class LambdaHandler : public ISAXPersistHelper {
 public:
  explicit LambdaHandler(std::function<bool(MSAXWriter&)> write) : write_(std::move(write)) {}
  bool HandleTag(std::wstring const&, MSAXReader&) override { return false; }
  bool Write(MSAXWriter& writer) const override { return write_(writer); }

 private:
  std::function<bool(MSAXWriter&)> write_;
};

void WriteText(MSAXWriter& writer, wchar_t const* tag, std::wstring const& text) {
  writer.StartTag(tag);
  writer.WriteText(text);
  writer.EndTag(tag);
}

// The document the lambda writes, and whether WriteDocument succeeded.
std::string Document(std::function<bool(MSAXWriter&)> write, bool* ok = nullptr,
                     std::string* error = nullptr) {
  std::ostringstream out;
  MSAXWriter writer(out);
  const bool written = writer.WriteDocument(LambdaHandler(std::move(write)));
  if (ok != nullptr) {
    *ok = written;
  }
  if (error != nullptr) {
    *error = writer.GetError();
  }
  return out.str();
}

}  // namespace

TEST(MSAXWriter, WritesIndentedElementsWithEscapedUtf8TextAndNamedBase64Streams) {
  const std::string document = Document([](MSAXWriter& writer) {
    MSAXTagWriter root(writer, L"Root");
    WriteText(writer, L"A", L"x & <y> \"q\"\r");
    WriteText(writer, L"T",  // what XML forbids becomes U+FFFD
              std::wstring(L"\u00e9\u20ac\U0001F600") + wchar_t(1) + wchar_t(0xD800) + wchar_t(0x110000));
    MSAXWriterBinaryStream* named = writer.CreateBinaryStream("s\"<1>&");
    named->GetBinaryOut() << 1 << 0x7fffffff;
    writer.WriteBinaryStream(L"Data", *named);
    EXPECT_TRUE(named->GetBinaryOut().Bytes().empty());
    writer.WriteBinaryStream(L"Empty", *writer.CreateBinaryStream());
    MSAXTagWriter inner(writer, L"Inner");
    return true;
  });
  EXPECT_EQ(document,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root>\n  <A>x &amp; &lt;y&gt; \"q\"&#13;</A>\n"
            "  <T>\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd</T>\n"
            "  <Data stream=\"s&quot;&lt;1&gt;&amp;\">\nAQAAAP///38=\n  </Data>\n  <Empty></Empty>\n"
            "  <Inner></Inner>\n</Root>\n");
}

TEST(MSAXTagWriter, ClosesItsElementWhenTheHandlerLeavesEarly) {
  bool ok = true;
  const std::string document = Document(
      [](MSAXWriter& writer) {
        MSAXTagWriter root(writer, L"Root");
        MSAXTagWriter child(writer, L"Child");
        return false;
      },
      &ok);
  EXPECT_FALSE(ok);
  EXPECT_NE(document.find("<Root>\n  <Child></Child>\n</Root>"), std::string::npos) << document;
}

TEST(MSAXWriter, FailsOnMisuseAndSaysWhy) {
  const struct {
    const char* what;
    std::function<bool(MSAXWriter&)> write;
  } cases[] = {
      {"invalid element name", [](MSAXWriter& w) { return w.StartTag(L"1abc"), true; }},
      {"invalid element name", [](MSAXWriter& w) { return w.StartTag(L""), true; }},
      {"invalid element name", [](MSAXWriter& w) { return w.StartTag(L"ns:tag"), true; }},
      {"does not match", [](MSAXWriter& w) { return w.StartTag(L"A"), w.EndTag(L"B"), true; }},
      {"a second root",
       [](MSAXWriter& w) { return w.StartTag(L"A"), w.EndTag(L"A"), w.StartTag(L"B"), true; }},
      {"wrote no element", [](MSAXWriter&) { return true; }},
      {"left elements open", [](MSAXWriter& w) { return w.StartTag(L"A"), true; }},
      {"text outside", [](MSAXWriter& w) { return w.WriteText(L"x"), true; }},
  };
  for (const auto& c : cases) {
    bool ok = true;
    std::string error;
    Document(c.write, &ok, &error);
    EXPECT_FALSE(ok) << c.what;
    EXPECT_NE(error.find(c.what), std::string::npos)
        << "expected \"" << c.what << "\", got \"" << error << "\"";
  }
}

TEST(MSAXWriter, ReportsAFileThatCannotBeOpenedOrAStreamThatFails) {
  LambdaHandler handler([](MSAXWriter& w) { return w.StartTag(L"A"), w.EndTag(L"A"), true; });
  MSAXWriter toFile("/nonexistent-directory/x.xml");
  EXPECT_FALSE(toFile.WriteDocument(handler));
  EXPECT_NE(toFile.GetError().find("cannot open"), std::string::npos) << toFile.GetError();

  std::ostream broken(nullptr);
  MSAXWriter toStream(broken);
  EXPECT_FALSE(toStream.WriteDocument(handler));
  EXPECT_NE(toStream.GetError().find("refused"), std::string::npos) << toStream.GetError();
}

TEST(MSAXWriter, StreamNamesBecomeUtf8WithEachByteThatCannotBeDecodedReplaced) {
  const std::string r = "\xef\xbf\xbd";  // U+FFFD
  const struct {
    std::string name, attribute;
  } cases[] = {
      {"\xf4\x8f\xbf\xbf", "\xf4\x8f\xbf\xbf"},  // the last code point
      {"\xf5\x80\x80\x80", r + r + r + r},       // no lead byte above 0xF4
      {"\xff xyz", r + " xyz"},
      {"\x80 xyz", r + " xyz"},        // a continuation byte cannot lead
      {"\xc1\xbf xy", r + r + " xy"},  // nor can an overlong two-byte lead
  };
  for (const auto& c : cases) {
    const std::string document = Document([&c](MSAXWriter& w) {
      w.WriteBinaryStream(L"D", *w.CreateBinaryStream(c.name));
      return true;
    });
    EXPECT_NE(document.find("<D stream=\"" + c.attribute + "\">"), std::string::npos) << document;
  }
}
