#include "sibling/sax/sax_reader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <set>
#include <sstream>

#include "sibling/sax/sax_writer.h"

namespace {

std::string Narrow(std::wstring const& text) {
  return std::string(text.begin(), text.end());
}

// Records every call as a line of text; refuses the tags in `refuse`, and
// pushes a new RecordingHandler (named "child") on the tags in `push`.
class RecordingHandler : public ISAXPersistHelper {
 public:
  static int live;  // handlers alive, to see that the reader deletes what it owns

  RecordingHandler(std::string name, std::vector<std::string>& log) : name_(std::move(name)), log_(log) {
    ++live;
  }
  ~RecordingHandler() override { --live; }
  std::set<std::wstring> refuse;
  std::set<std::wstring> push;

  void SetDefaults() override { log_.push_back(name_ + " defaults"); }
  bool HandleTag(std::wstring const& tag, MSAXReader& reader) override {
    log_.push_back(name_ + " <" + Narrow(tag) + "> text=" + Narrow(reader.GetTagText()) +
                   " up=" + Narrow(reader.GetEnclosingTag(1)));
    if (push.count(tag) != 0 && name_ == "root") {
      auto* child = new RecordingHandler("child", log_);
      child->refuse = refuse;
      reader.PushHandler(child);
    }
    MSAXReaderBinaryStream* stream = nullptr;
    if (tag == L"Bin" && reader.OpenBinaryStream(stream)) {
      int32_t a = 0, b = 0;
      stream->GetBinaryIn() >> a >> b;
      log_.push_back(name_ + " bin " + stream->GetName() + " " + std::to_string(a) + " " + std::to_string(b));
    }
    return refuse.count(tag) == 0 && tag != L"Bin" ? true : stream != nullptr;
  }
  void HandleEndTag(std::wstring const& tag) override { log_.push_back(name_ + " </" + Narrow(tag) + ">"); }
  void ResolveReferences(MSAXReader&) override { log_.push_back(name_ + " resolve"); }
  void InitAfterLoading() override { log_.push_back(name_ + " init"); }
  void AbortLoading() override { log_.push_back(name_ + " abort"); }
  bool Write(MSAXWriter&) const override { return false; }

 private:
  std::string name_;
  std::vector<std::string>& log_;
};

int RecordingHandler::live = 0;

std::string Join(std::vector<std::string> const& lines) {
  std::string text;
  for (const std::string& line : lines) {
    text += line + "\n";
  }
  return text;
}

}  // namespace

TEST(MSAXReader, DrivesTheHandlerOnceEachElementsTextIsKnown) {
  std::vector<std::string> log;
  RecordingHandler root("root", log);
  MSAXReader reader;
  const std::string document = "<?xml version=\"1.0\"?>\n<R>\n <A>1</A>\n <B><C> x </C></B>\n <D/>\n</R>\n";
  ASSERT_TRUE(reader.ReadBuffer(document.data(), document.size(), root)) << reader.GetError();
  EXPECT_EQ(Join(log),
            "root defaults\nroot <R> text=\n  up=\nroot <A> text=1 up=R\nroot </A>\nroot <B> text= up=R\n"
            "root <C> text= x  up=B\nroot </C>\nroot </B>\nroot <D> text= up=R\nroot </D>\nroot </R>\n"
            "root resolve\nroot init\n");
  EXPECT_EQ(reader.GetError(), "");
}

TEST(MSAXReader, GivesPushedHandlersTheirSubtreeAndDeletesThem) {
  std::vector<std::string> log;
  RecordingHandler root("root", log);
  root.push = {L"B"};
  MSAXReader reader;
  const std::string document = "<R><B><C>x</C></B><B/><E/></R>";
  ASSERT_TRUE(reader.ReadBuffer(document.data(), document.size(), root)) << reader.GetError();
  EXPECT_EQ(Join(log),
            "root defaults\nroot <R> text= up=\n"
            "root <B> text= up=R\nchild defaults\nchild <B> text= up=R\nchild <C> text=x up=B\nchild "
            "</C>\nroot </B>\n"
            "root <B> text= up=R\nchild defaults\nchild <B> text= up=R\nroot </B>\n"
            "root <E> text= up=R\nroot </E>\nroot </R>\nroot resolve\nroot init\n");
  EXPECT_EQ(RecordingHandler::live, 1);
}

TEST(MSAXReader, StopsAtARefusedTagWithItsLineAndAbortsEveryHandler) {
  std::vector<std::string> log;
  RecordingHandler root("root", log);
  root.push = {L"B"};
  root.refuse = {L"Bad"};
  MSAXReader reader;
  const std::string document = "<R>\n<B>\n<C/>\n<Bad>some text</Bad>\n</B>\n</R>";
  EXPECT_FALSE(reader.ReadBuffer(document.data(), document.size(), root));
  EXPECT_EQ(reader.GetError(), "line 4: element \"Bad\" inside \"B\" refused: text \"some text\"");
  EXPECT_EQ(reader.GetErrorLine(), 4u);
  EXPECT_EQ(log.back(), "root abort");
  EXPECT_EQ(log[log.size() - 2], "child abort");
  EXPECT_EQ(RecordingHandler::live, 1);
}

TEST(MSAXReader, ReportsMalformedXmlWithItsLine) {
  const struct {
    const char* document;
    uint64_t line;
  } cases[] = {
      {"", 1},
      {"<R>\n<A>1</A>\n", 3},
      {"<R>\n</S>", 2},
      {"<R>\n&bogus;</R>", 2},
      {"<R a='1' a='2'/>", 1},
      {"just text", 1},
      {"<R/>\n<S/>", 2},
      {"<R>\x01</R>", 1},
      {"<R>\xff\xfe</R>", 1},
  };
  for (const auto& c : cases) {
    std::vector<std::string> log;
    RecordingHandler root("root", log);
    MSAXReader reader;
    EXPECT_FALSE(reader.ReadBuffer(c.document, std::strlen(c.document), root)) << c.document;
    EXPECT_EQ(reader.GetErrorLine(), c.line) << c.document << " gave: " << reader.GetError();
    EXPECT_NE(reader.GetError().find("malformed XML: "), std::string::npos) << reader.GetError();
    EXPECT_EQ(log.back(), "root abort") << c.document;
  }
}

TEST(MSAXReader, RefusesDocumentTypeDeclarationsSoNoEntityCanExpand) {
  std::vector<std::string> log;
  RecordingHandler root("root", log);
  MSAXReader reader;
  const std::string document =
      "<?xml version=\"1.0\"?>\n<!DOCTYPE R [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;\">]>\n"
      "<R>&b;</R>";
  EXPECT_FALSE(reader.ReadBuffer(document.data(), document.size(), root));
  EXPECT_EQ(reader.GetError(), "line 2: document type declarations are not accepted");
}

TEST(MSAXReader, LimitsNestingAndElementSize) {
  std::vector<std::string> log;
  RecordingHandler root("root", log);
  MSAXReader reader;
  std::string deep;
  for (int i = 0; i < 100000; ++i) {
    deep += "<R>";
  }
  EXPECT_FALSE(reader.ReadBuffer(deep.data(), deep.size(), root));
  EXPECT_EQ(reader.GetError(), "line 1: elements nested deeper than 256 levels");

  reader.SetMaxDepth(2);
  const std::string three = "<R><A>\n<B/></A></R>";
  EXPECT_FALSE(reader.ReadBuffer(three.data(), three.size(), root));
  EXPECT_EQ(reader.GetError(), "line 2: elements nested deeper than 2 levels");

  reader.SetMaxElementBytes(10);
  const std::string fits = "<R><A>0123456789</A></R>";
  EXPECT_TRUE(reader.ReadBuffer(fits.data(), fits.size(), root)) << reader.GetError();
  const std::string large = "<R>\n<A>0123456789x</A></R>";
  EXPECT_FALSE(reader.ReadBuffer(large.data(), large.size(), root));
  EXPECT_EQ(reader.GetError(), "line 2: element \"A\" holds more than 10 bytes of text");
}

TEST(MSAXReader, OpensBinaryStreamsAndRejectsBadBase64) {
  std::vector<std::string> log;
  RecordingHandler root("root", log);
  MSAXReader reader;
  const std::string good = "<R><Bin stream='pts'>\n AQAAAP///3\n8= </Bin></R>";
  ASSERT_TRUE(reader.ReadBuffer(good.data(), good.size(), root)) << reader.GetError();
  EXPECT_NE(Join(log).find("root bin pts 1 2147483647\n"), std::string::npos) << Join(log);

  const std::string bad = "<R>\n\n<Bin>AQAA*AAA</Bin></R>";
  EXPECT_FALSE(reader.ReadBuffer(bad.data(), bad.size(), root));
  EXPECT_EQ(reader.GetError(),
            "line 3: element \"Bin\" inside \"R\" refused: invalid base64: byte 0x2a at offset 4");
}

TEST(MSAXReader, ReadsStreamsFilesAndBuffersAlikeAcrossChunkBoundaries) {
  std::string document = "<R>\n";
  for (int i = 0; i < 20000; ++i) {
    document += "<A>" + std::to_string(i) + "</A>\n";
  }
  document += "</R>\n";
  std::vector<std::string> fromBuffer, fromStream, fromFile;
  RecordingHandler a("root", fromBuffer), b("root", fromStream), c("root", fromFile);
  MSAXReader reader;
  ASSERT_TRUE(reader.ReadBuffer(document.data(), document.size(), a)) << reader.GetError();
  std::istringstream in(document);
  ASSERT_TRUE(reader.Read(in, b)) << reader.GetError();
  const std::string path = testing::TempDir() + "sax_reader_test.xml";
  std::ofstream(path, std::ios::binary) << document;
  ASSERT_TRUE(reader.ReadFile(path, c)) << reader.GetError();
  std::remove(path.c_str());
  EXPECT_EQ(fromBuffer.size(), 40005u);  // defaults, <R>, 20000 x (<A>, </A>), </R>, resolve, init
  EXPECT_EQ(fromBuffer, fromStream);
  EXPECT_EQ(fromBuffer, fromFile);
}

TEST(MSAXReader, LeavesTheRootUntouchedWhenTheFileCannotBeOpened) {
  std::vector<std::string> log;
  RecordingHandler root("root", log);
  MSAXReader reader;
  EXPECT_FALSE(reader.ReadFile("/nonexistent-directory/x.xml", root));
  EXPECT_EQ(reader.GetError(), "cannot open '/nonexistent-directory/x.xml' for reading");
  EXPECT_EQ(reader.GetErrorLine(), 0u);
  EXPECT_TRUE(log.empty());
}

TEST(MSAXReader, DeletesAHandlerPushedOutsideAReading) {
  std::vector<std::string> log;
  MSAXReader reader;
  reader.PushHandler(new RecordingHandler("stray", log));
  EXPECT_EQ(RecordingHandler::live, 0);
  EXPECT_EQ(reader.GetTagText(), L"");
  EXPECT_EQ(reader.GetEnclosingTag(1), L"");
  MSAXReaderBinaryStream* stream = nullptr;
  EXPECT_FALSE(reader.OpenBinaryStream(stream));
}
