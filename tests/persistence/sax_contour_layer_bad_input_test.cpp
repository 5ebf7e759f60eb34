// Bad documents: each must end the reading with an error that names the
// element and the line, leave the layer with exactly the contours that were
// complete, and leak nothing (the suite runs under LeakSanitizer too).
#include <gtest/gtest.h>

#include <climits>
#include <cstdio>

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
       "element \"Count\" inside \"Points\" refused: a Count of -1 points is not between 0 and 33554432"},
      {"Count too big for 32 bits", ContourXml(PointsXml("4294967296", "")),
       "element \"Count\" inside \"Points\" refused: text \"4294967296\""},
      {"Count missing", ContourXml("<Data>AQAAAAEAAAA=</Data>"),
       "element \"Data\" inside \"Points\" refused: Data holds 2 values where Count 0 asks for 0"},
      {"Data shorter", ContourXml(PointsXml("2", "AQAAAAEAAAA=")),
       "element \"Data\" inside \"Points\" refused: Data holds 2 values where Count 2 asks for 4"},
      {"Data longer", ContourXml(PointsXml("1", "AQAAAAEAAAABAAAA")),
       "element \"Data\" inside \"Points\" refused: Data holds 3 values where Count 1 asks for 2"},
      {"Count at the limit, Data short", ContourXml(PointsXml("33554432", "AQAAAAEAAAA=")),
       "element \"Data\" inside \"Points\" refused: Data holds 2 values where Count 33554432 asks for "
       "67108864"},
      {"huge Count, one over the limit", ContourXml(PointsXml("33554433", "")),
       "element \"Count\" inside \"Points\" refused: a Count of 33554433 points is not between 0 and "
       "33554432"},
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
    ASSERT_NE(result.error.find("malformed XML"), std::string::npos) << result.error;
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
