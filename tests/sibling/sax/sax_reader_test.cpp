#include "sibling/sax/sax_reader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <sstream>
#include <stdexcept>

#include "sibling/sax/sax_writer.h"

namespace {

std::string Narrow(std::wstring const& text) {
  return std::string(text.begin(), text.end());
}

// Records every call as a line of text; refuses the tags in `refuse`, throws
// on those in `raise`, and pushes a new RecordingHandler (named "child") on
// the tags in `push`.
class RecordingHandler : public ISAXPersistHelper {
 public:
  static int live;  // handlers alive, to see that the reader deletes what it owns

  RecordingHandler(std::string name, std::vector<std::string>& log) : m_name(std::move(name)), m_log(log) {
    ++live;
  }
  ~RecordingHandler() override { --live; }
  std::set<std::wstring> refuse;
  std::set<std::wstring> raise;
  std::set<std::wstring> push;

  void SetDefaults() override { m_log.push_back(m_name + " defaults"); }
  bool HandleTag(std::wstring const& tag, MSAXReader& reader) override {
    m_log.push_back(m_name + " <" + Narrow(tag) + "> text=" + Narrow(reader.GetTagText()) +
                    " up=" + Narrow(reader.GetEnclosingTag(1)));
    if (raise.count(tag) != 0) {
      throw std::runtime_error("cannot take " + Narrow(tag));
    }
    if (push.count(tag) != 0 && m_name == "root") {
      auto* child = new RecordingHandler("child", m_log);
      child->refuse = refuse;
      child->raise = raise;
      reader.PushHandler(child);
    }
    MSAXReaderBinaryStream* stream = nullptr;
    if (tag == L"Bin" && reader.OpenBinaryStream(stream)) {
      int32_t a = 0, b = 0;
      stream->GetBinaryIn() >> a >> b;
      m_log.push_back(m_name + " bin " + stream->GetName() + " " + std::to_string(a) + " " +
                      std::to_string(b));
    }
    return refuse.count(tag) == 0 && tag != L"Bin" ? true : stream != nullptr;
  }
  void HandleEndTag(std::wstring const& tag) override { m_log.push_back(m_name + " </" + Narrow(tag) + ">"); }
  void ResolveReferences(MSAXReader&) override { m_log.push_back(m_name + " resolve"); }
  void InitAfterLoading() override { m_log.push_back(m_name + " init"); }
  void AbortLoading() override { m_log.push_back(m_name + " abort"); }
  bool Write(MSAXWriter&) const override { return false; }

 private:
  std::string m_name;
  std::vector<std::string>& m_log;
};

int RecordingHandler::live = 0;

std::string Repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i)
    all += text;
  return all;
}

std::string Join(std::vector<std::string> const& lines) {
  std::string text;
  for (const std::string& line : lines) {
    text += line + "\n";
  }
  return text;
}

}  // namespace

TEST(MSAXReader, DrivesTheHandlersOnceTextIsKnownAndDeletesPushedOnes) {
  std::vector<std::string> log;
  RecordingHandler root("root", log);
  root.push = {L"B"};
  MSAXReader reader;
  const std::string document =
      "<?xml version=\"1.0\"?>\n<R>\n <A>1</A>\n <B><C> x </C></B>\n <B/>\n <D/>\n</R>\n";
  ASSERT_TRUE(reader.ReadBuffer(document.data(), document.size(), root)) << reader.GetError();
  EXPECT_EQ(Join(log),
            "root defaults\nroot <R> text=\n  up=\nroot <A> text=1 up=R\nroot </A>\n"
            "root <B> text= up=R\nchild defaults\nchild <B> text= up=R\nchild <C> text= x  up=B\nchild </C>\n"
            "root </B>\nroot <B> text= up=R\nchild defaults\nchild <B> text= up=R\nroot </B>\n"
            "root <D> text= up=R\nroot </D>\nroot </R>\nroot resolve\nroot init\n");
  EXPECT_EQ(reader.GetError(), "");
  EXPECT_EQ(RecordingHandler::live, 1);
}

TEST(MSAXReader, StopsAtARefusedOrThrowingTagWithItsLineAndAbortsEveryHandler) {
  for (const bool throws : {false, true}) {
    std::vector<std::string> log;
    RecordingHandler root("root", log);
    root.push = {L"B"};
    (throws ? root.raise : root.refuse) = {L"Bad"};
    MSAXReader reader;
    const std::string document = "<R>\n<B>\n<C/>\n<Bad>some text</Bad>\n</B>\n</R>";
    EXPECT_FALSE(reader.ReadBuffer(document.data(), document.size(), root));
    EXPECT_EQ(reader.GetError(), throws ? "line 4: an exception stopped the reading: cannot take Bad"
                                        : "line 4: element \"Bad\" inside \"B\" refused: text \"some text\"");
    EXPECT_EQ(reader.GetErrorLine(), 4u);
    EXPECT_EQ(log.back(), "root abort");
    EXPECT_EQ(log[log.size() - 2], "child abort");
    EXPECT_EQ(RecordingHandler::live, 1);
  }
}

TEST(MSAXReader, RefusesWhatItCannotTrustWithLineAndReason) {
  const struct {
    std::string document;
    size_t maxDepth, maxElementBytes;  // 0: the reader's default
    std::string error;                 // empty: the reading succeeds
  } cases[] = {
      {"", 0, 0, "line 1: malformed XML: no element found"},
      {"<R>\n<A>1</A>\n", 0, 0, "line 3: malformed XML: no element found"},
      {"<R>\n</S>", 0, 0, "line 2: malformed XML: mismatched tag"},
      {"<R/>\n<S/>", 0, 0, "line 2: malformed XML: junk after document element"},
      {"<R>\xff\xfe</R>", 0, 0, "line 1: malformed XML: not well-formed (invalid token)"},
      {"<?xml version=\"1.0\"?>\n<!DOCTYPE R [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b "
       "\"&a;&a;&a;&a;\">]>\n<R>&b;</R>",
       0, 0, "line 2: document type declarations are not accepted"},
      {Repeated("<R>", 100000), 0, 0, "line 1: elements nested deeper than 256 levels"},
      {"<R><A>\n<B/></A></R>", 2, 0, "line 2: elements nested deeper than 2 levels"},
      {"<R><A>0123456789</A></R>", 0, 10, ""},
      {"<R>\n<A>0123456789x</A></R>", 0, 10, "line 2: element \"A\" holds more than 10 bytes of text"},
      {"<R>\n\n<Bin>AQAA*AAA</Bin></R>", 0, 0,
       "line 3: element \"Bin\" inside \"R\" refused: invalid base64: byte 0x2a at offset 4"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> log;
    RecordingHandler root("root", log);
    MSAXReader reader;
    if (c.maxDepth != 0)
      reader.SetMaxDepth(c.maxDepth);
    if (c.maxElementBytes != 0)
      reader.SetMaxElementBytes(c.maxElementBytes);
    EXPECT_EQ(reader.ReadBuffer(c.document.data(), c.document.size(), root), c.error.empty()) << c.document;
    EXPECT_EQ(reader.GetError(), c.error) << c.document.substr(0, 100);
    EXPECT_EQ(log.back(), c.error.empty() ? "root init" : "root abort") << c.document.substr(0, 100);
  }
}

TEST(MSAXReader, OpensBinaryStreamsAcrossLinesAndSpaces) {
  std::vector<std::string> log;
  RecordingHandler root("root", log);
  MSAXReader reader;
  const std::string good = "<R><Bin stream='pts'>\n AQAAAP///3\n8= </Bin></R>";
  ASSERT_TRUE(reader.ReadBuffer(good.data(), good.size(), root)) << reader.GetError();
  EXPECT_NE(Join(log).find("root bin pts 1 2147483647\n"), std::string::npos) << Join(log);
}

TEST(MSAXReader, ReadsStreamsAndBuffersAlikeAcrossChunkBoundaries) {
  const std::string document = "<R>\n" + Repeated("<A>12345</A>\n", 20000) + "</R>\n";
  std::vector<std::string> fromBuffer, fromStream;
  RecordingHandler a("root", fromBuffer), b("root", fromStream);
  MSAXReader reader;
  ASSERT_TRUE(reader.ReadBuffer(document.data(), document.size(), a)) << reader.GetError();
  std::istringstream in(document);
  ASSERT_TRUE(reader.Read(in, b)) << reader.GetError();
  EXPECT_EQ(fromBuffer.size(), 40005u);  // defaults, <R>, 20000 x (<A>, </A>), </R>, resolve, init
  EXPECT_EQ(fromBuffer, fromStream);
}

TEST(MSAXReader, LeavesTheRootUntouchedWithoutAReading) {
  std::vector<std::string> log;
  RecordingHandler root("root", log);
  MSAXReader reader;
  EXPECT_FALSE(reader.ReadFile("/nonexistent-directory/x.xml", root));
  EXPECT_EQ(reader.GetError(), "cannot open '/nonexistent-directory/x.xml' for reading");
  EXPECT_EQ(reader.GetErrorLine(), 0u);
  EXPECT_TRUE(log.empty());
  reader.PushHandler(new RecordingHandler("stray", log));  // deleted at once
  EXPECT_EQ(RecordingHandler::live, 1);
  EXPECT_EQ(reader.GetTagText() + reader.GetEnclosingTag(1), L"");
  MSAXReaderBinaryStream* stream = nullptr;
  EXPECT_FALSE(reader.OpenBinaryStream(stream));
}
