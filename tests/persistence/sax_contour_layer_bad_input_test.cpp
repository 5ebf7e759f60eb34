// Bad documents: each must end the reading with an error that names the
// element and the line, leave the layer with exactly the contours that were
// complete, and leak nothing (the suite runs under LeakSanitizer too).
#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <fstream>
#include <stdexcept>

#include "persistence/sax_contour.h"
#include "persistence/sax_contour_layer.h"
#include "support/layer_builders.h"
#include "support/sax_documents.h"

using namespace testing_support;

namespace {

// Two good contours (lines 2 and 3, first points (1,1) and (2,2)); a bad third one starts on line 4.
const std::string kGoodHead =
    "<Contours>\n" + ContourXml(PointsXml("1", "AQAAAAEAAAA=")) + ContourXml(PointsXml("1", "AgAAAAIAAAA="));
const std::string kTail = "</Contours>\n";

struct ReadResult {
  bool ok;
  std::string error;
  uint64_t line;
};

ReadResult Read(const std::string& document, CONTOUR_LAYER& layer) {
  MSaxContourLayer handler(&layer, nullptr);
  MSAXReader reader;
  const bool ok = reader.ReadBuffer(document.data(), document.size(), handler);
  EXPECT_EQ(handler.currentContour, nullptr) << "a contour under construction was left behind";
  return {ok, reader.GetError(), reader.GetErrorLine()};
}

// The layer holds the two good contours, in reverse order, with exact extents.
void ExpectOnlyTheGoodContours(const CONTOUR_LAYER& layer, const std::string& document) {
  ASSERT_EQ(layer.NumContours, 2) << document;
  EXPECT_EQ(layer.FirstContour->Points[0].x, 2);
  EXPECT_EQ(layer.LastContour->Points[0].x, 1);
  EXPECT_EQ(layer.MinX, 1);
  EXPECT_EQ(layer.MaxX, 2);
}

struct BadCase {
  const char* what;
  std::string contour;  // the bad third contour (or other element) on line 4
  std::string error;    // expected text after "line 4: "
};

}  // namespace

TEST(MSaxContourLayerBadInput, RefusesEachBadElementAndKeepsTheCompleteContours) {
  const BadCase cases[] = {
      {"Dim 3", ContourXml("<Dim>3</Dim>"), "element \"Dim\" inside \"Points\" refused: text \"3\""},
      {"DataType int", ContourXml("<DataType>int</DataType>"),
       "element \"DataType\" inside \"Points\" refused: text \"int\""},
      {"unknown in Contour", "<Contour><Colour>red</Colour></Contour>\n",
       "element \"Colour\" inside \"Contour\" refused: text \"red\""},
      {"unknown in Contours", "<Polygon/>\n", "element \"Polygon\" inside \"Contours\" refused: no text"},
      {"empty Type", "<Contour><Type></Type></Contour>\n",
       "element \"Type\" inside \"Contour\" refused: no text"},
      {"negative Count", ContourXml(PointsXml("-1", "")),
       "element \"Count\" inside \"Points\" refused: a Count of -1 points is not between 0 and 16777216"},
      {"Count too big for 32 bits", ContourXml(PointsXml("4294967296", "")),
       "element \"Count\" inside \"Points\" refused: text \"4294967296\""},
      {"Data shorter", ContourXml(PointsXml("2", "AQAAAAEAAAA=")),
       "element \"Data\" inside \"Points\" refused: Data holds 2 values where Count 2 asks for 4"},
      {"Count at the limit, more than the 65 bytes left can hold",
       ContourXml(PointsXml("16777216", "AQAAAAEAAAA=")),
       "element \"Count\" inside \"Points\" refused: a Count of 16777216 points is more than the 6 that the "
       "document can still deliver"},
      {"huge Count, one over the limit", ContourXml(PointsXml("16777217", "")),
       "element \"Count\" inside \"Points\" refused: a Count of 16777217 points is not between 0 and "
       "16777216"},
      {"invalid base64", ContourXml(PointsXml("1", "AQAAAAEAAAA-")),
       "element \"Data\" inside \"Points\" refused: invalid base64: byte 0x2d at offset 11"},
      {"odd bytes", ContourXml(PointsXml("1", "AQAAAAEAAA==")),
       "element \"Data\" inside \"Points\" refused: binary data of 7 bytes is not a whole number of 32-bit "
       "values"},
      {"malformed XML", "<Contour><Type>1</Closed></Contour>\n", "malformed XML: mismatched tag"},
      {"element after the root", "</Contours><Extra/>", "malformed XML: junk after document element"},
  };
  for (const BadCase& c : cases) {
    SCOPED_TRACE(c.what);
    const std::string document = kGoodHead + c.contour + kTail;
    CONTOUR_LAYER layer;
    layer.AddContourAtEnd(NewContour({{9, 9}}));  // replaced by the reading
    const ReadResult result = Read(document, layer);
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.error, "line 4: " + c.error);
    EXPECT_EQ(result.line, 4u);
    ExpectOnlyTheGoodContours(layer, document);
    layer.LEEG_LAAG();
  }
}

// An end of a contour that was never started adds nothing.
TEST(MSaxContourLayerBadInput, ContourEndWithoutAContourAddsNothing) {
  CONTOUR_LAYER layer;
  MSaxContourLayer handler(&layer, nullptr);
  handler.HandleEndTag(L"Contour");
  EXPECT_EQ(layer.NumContours, 0);
}

TEST(MSaxContourLayerBadInput, AcceptsSurplusDataAndTextForNumbersAsTheHandlersReadThem) {
  const struct {
    const char* what;
    std::string contour;
    int32_t numPoints;
    unsigned char closed;
  } cases[] = {
      {"Data beyond Count: the first Count pairs", ContourXml(PointsXml("1", "AwAAAAQAAAAFAAAA")), 1, 1},
      {"Data without Count: no points", ContourXml("<Data>AQAAAAEAAAA=</Data>"), 0, 1},
      {"Closed not a number: 0", ContourXml("", "<Closed>yes</Closed>"), 0, 0},
      {"Closed a number and more: the number", ContourXml("", "<Closed>3 apples</Closed>"), 0, 3},
      {"Closed beyond 32 bits: 0", ContourXml("", "<Closed>4294967296</Closed>"), 0, 0},
  };
  for (const auto& c : cases) {
    CONTOUR_LAYER layer;
    const ReadResult result = Read(kGoodHead + c.contour + kTail, layer);
    EXPECT_TRUE(result.ok) << c.what << ": " << result.error;
    ASSERT_EQ(layer.NumContours, 3) << c.what;
    const CONTOUR& read = *layer.FirstContour;
    EXPECT_EQ(read.NumPoints, c.numPoints) << c.what;
    EXPECT_EQ(read.Closed, c.closed) << c.what;
    if (c.numPoints > 0) {
      EXPECT_EQ(read.Points[0], (MMPoint2d<long>{3, 4})) << c.what;
    }
    layer.LEEG_LAAG();
  }
}

TEST(MSaxContourLayerBadInput, RefusesACountBeyondWhatTheReaderKnowsIsLeft) {
  // 65 bytes from "</Count>" on carry at most 6 points; a stream that cannot
  // seek is known only to be bounded by the element limit.
  const std::string document = kGoodHead + ContourXml(PointsXml("100", "AQAAAAEAAAA=")) + kTail;
  const std::string atCount =
      "line 4: element \"Count\" inside \"Points\" refused: a Count of 100 points is more than the ";
  const std::string atData =
      "line 4: element \"Data\" inside \"Points\" refused: Data holds 2 values where Count 100 asks for 200";
  const std::string path = testing::TempDir() + "sax_count_beyond_the_file.xml";
  std::ofstream(path, std::ios::binary) << document;
  const struct {
    const char* what;
    size_t maxElementBytes;  // 0: the reader's default
    std::string error;
  } cases[] = {
      {"buffer", 0, atCount + "6 that the document can still deliver"},
      {"file", 0, atCount + "6 that the document can still deliver"},
      {"seekable stream", 0, atCount + "6 that the document can still deliver"},
      {"stream that cannot seek", 0, atData},
      {"stream that cannot seek, 40-byte elements", 40, atCount + "3 that the document can still deliver"},
  };
  for (const auto& c : cases) {
    const std::string how = c.what;
    CONTOUR_LAYER layer;
    MSaxContourLayer handler(&layer, nullptr);
    MSAXReader reader;
    if (c.maxElementBytes != 0) {
      reader.SetMaxElementBytes(c.maxElementBytes);
    }
    std::istringstream seekable("<!-- skipped -->" + document);
    seekable.ignore(16);
    RepeatingStreambuf unseekable(document, "", 0, "");
    std::istream unseekableStream(&unseekable);
    const bool ok = how == "buffer"            ? reader.ReadBuffer(document.data(), document.size(), handler)
                    : how == "file"            ? reader.ReadFile(path, handler)
                    : how == "seekable stream" ? reader.Read(seekable, handler)
                                               : reader.Read(unseekableStream, handler);
    EXPECT_FALSE(ok) << how;
    EXPECT_EQ(reader.GetError(), c.error) << how;
    ExpectOnlyTheGoodContours(layer, how);
    layer.LEEG_LAAG();
  }
  std::remove(path.c_str());
}

TEST(MSaxContourLayerBadInput, IgnoresTheStreamExceptionMaskAndReleasesAllWhenTheStreamThrows) {
  // Delivers its text, then throws, like a stream whose device went away.
  class ThrowingStreambuf : public std::streambuf {
   public:
    explicit ThrowingStreambuf(std::string text) : m_text(std::move(text)) {
      setg(&m_text[0], &m_text[0], &m_text[0] + m_text.size());
    }

   protected:
    int_type underflow() override { throw std::runtime_error("device gone"); }

   private:
    std::string m_text;
  };
  const std::ios::iostate mask = std::ios::badbit | std::ios::failbit | std::ios::eofbit;
  std::istringstream valid(kGoodHead + kTail);
  // Two reads of 64 KiB reach the middle of the third contour before the throw.
  ThrowingStreambuf throwing(kGoodHead + "<Contour><Points><Count>1</Count>" +
                             std::string(size_t{1} << 17, ' '));
  std::istream broken(&throwing);
  for (std::istream* in : {static_cast<std::istream*>(&valid), &broken}) {
    in->exceptions(mask);
    CONTOUR_LAYER layer;
    MSaxContourLayer handler(&layer, nullptr);
    MSAXReader reader;
    EXPECT_EQ(reader.Read(*in, handler), in == &valid);
    EXPECT_EQ(reader.GetError(), in == &valid ? "" : "line 4: the input stream failed");
    EXPECT_EQ(in->exceptions(), mask);
    EXPECT_EQ(handler.currentContour, nullptr);
    ExpectOnlyTheGoodContours(layer, reader.GetError());
    layer.LEEG_LAAG();
  }
}

TEST(MSaxContourLayerBadInput, WriterRefusesAContourTheReaderWouldRefuse) {
  CONTOUR_LAYER layer;
  CONTOUR* big = NewContour({{1, 1}});
  layer.AddContourAtEnd(big);
  // Never touched, so it costs address space only.
  big->Points = static_cast<MMPoint2d<long>*>(
      realloc(big->Points, sizeof(MMPoint2d<long>) * (kMaxPersistedPoints + size_t{1})));
  ASSERT_NE(big->Points, nullptr);
  for (int32_t numPoints : {kMaxPersistedPoints + 1, -1}) {
    big->NumPoints = numPoints;
    EXPECT_EQ(WriteLayerDocument(layer), "write failed: a contour of " + std::to_string(numPoints) +
                                             " points is not between 0 and 16777216");
  }
  layer.LEEG_LAAG();
}

TEST(MSaxContourLayerBadInput, RefusesAWrongRootAndTooDeepNesting) {
  CONTOUR_LAYER layer;
  ReadResult result = Read("<Layer><Contours/></Layer>", layer);
  EXPECT_EQ(result.error, "line 1: element \"Layer\" refused: no text");

  std::string deep = kGoodHead + "<Contour>";
  for (int i = 0; i < 5000; ++i) {
    deep += "<Contour>\n";
  }
  result = Read(deep, layer);
  EXPECT_EQ(result.error, "line 258: elements nested deeper than 256 levels");
  ExpectOnlyTheGoodContours(layer, "deep nesting");
  layer.LEEG_LAAG();
}

TEST(MSaxContourLayerBadInput, ReleasesTheFirstArrayWhenCountComesTwice) {
  CONTOUR_LAYER layer;
  const ReadResult result = Read(
      "<Contours><Contour><Points><Count>5</Count><Count>1</Count><Data>AQAAAAEAAAA=</Data>"
      "</Points></Contour></Contours>",
      layer);
  ASSERT_TRUE(result.ok) << result.error;
  ASSERT_EQ(layer.NumContours, 1);
  EXPECT_EQ(layer.FirstContour->NumPoints, 1);
  layer.LEEG_LAAG();
}

TEST(MSaxContourLayerBadInput, EveryTruncationFailsAndKeepsOnlyCompleteContoursWithExactExtents) {
  CONTOUR_LAYER source;
  for (int32_t k = 1; k <= 4; ++k) {
    source.AddContourAtEnd(NewContour({{k, k}, {k, 10 * k}, {10 * k, k}}));
  }
  source.LastContour->Type = 103;  // the largest contour is left out of the extents
  const std::string document = WriteLayerDocument(source);
  const size_t end = document.rfind("</Contours>") + 11;
  for (size_t length = 0; length < end; ++length) {
    const std::string prefix = document.substr(0, length);
    size_t closed = 0;
    for (size_t at = prefix.find("</Contour>"); at != std::string::npos;
         at = prefix.find("</Contour>", at + 1)) {
      ++closed;
    }
    CONTOUR_LAYER layer;
    const ReadResult result = Read(prefix, layer);
    ASSERT_FALSE(result.ok) << "prefix of " << length << " bytes";
    ASSERT_TRUE(result.error.find("malformed XML") != std::string::npos ||
                result.error.find("can still deliver") != std::string::npos)  // cut within the points
        << result.error;
    ASSERT_EQ(static_cast<size_t>(layer.NumContours), closed) << "prefix of " << length << " bytes";
    int32_t k = static_cast<int32_t>(closed);
    for (CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour, --k) {
      ASSERT_EQ(c->NumPoints, 3);
      ASSERT_EQ(c->Points[2].x, 10 * k);
    }
    const int32_t extents[] = {layer.MinX, layer.MinY, layer.MaxX, layer.MaxY};
    layer.BEPAAL_EXTREMA();
    ASSERT_TRUE(extents[0] == layer.MinX && extents[1] == layer.MinY && extents[2] == layer.MaxX &&
                extents[3] == layer.MaxY)
        << "prefix of " << length << " bytes";
    layer.LEEG_LAAG();
  }
  source.LEEG_LAAG();
}

TEST(MSaxContourLayerBadInput, ReadsHundredsOfMegabytesInBoundedMemoryAndStopsAtOversizedText) {
  const struct {
    const char* what;
    std::string head;
    char filler;
    std::string tail;
    size_t maxElementBytes;  // 0: the reader's default
    std::string error;       // empty: the reading succeeds
  } cases[] = {
      {"300 MB of white space", kGoodHead, ' ', kTail, 0, ""},
      {"300 MB of Data", kGoodHead + "<Contour><Points><Count>1</Count><Data>", 'A',
       "</Data></Points></Contour>" + kTail, size_t{16} << 20,
       "line 4: element \"Data\" holds more than 16777216 bytes of text"},
      {"endless tag", kGoodHead + "<Contour name=\"", 'a', "\"/>" + kTail, 0,
       "line 4: a tag or other markup longer than 1048576 bytes"},
      {"endless comment", kGoodHead + "<!-- ", 'a', "\"/>" + kTail, 0,
       "line 4: a tag or other markup longer than 1048576 bytes"},
  };
  for (const auto& c : cases) {
    RepeatingStreambuf buffer(c.head, std::string(1 << 20, c.filler), 300, c.tail);
    std::istream in(&buffer);
    CONTOUR_LAYER layer;
    MSaxContourLayer handler(&layer, nullptr);
    MSAXReader reader;
    if (c.maxElementBytes != 0) {
      reader.SetMaxElementBytes(c.maxElementBytes);
    }
    EXPECT_EQ(reader.Read(in, handler), c.error.empty()) << c.what;
    EXPECT_EQ(reader.GetError(), c.error) << c.what;
    ExpectOnlyTheGoodContours(layer, c.what);
    layer.LEEG_LAAG();
  }
}
