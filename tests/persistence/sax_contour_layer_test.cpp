#include "persistence/sax_contour_layer.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "persistence/sax_contour.h"
#include "support/layer_builders.h"
#include "support/sax_documents.h"

using namespace testing_support;

namespace {

// Reads document into layer; the reader's error goes to the failure message.
bool ReadLayer(const std::string& document, CONTOUR_LAYER& layer) {
  MSaxContourLayer handler(&layer, nullptr);
  MSAXReader reader;
  const bool ok = reader.ReadBuffer(document.data(), document.size(), handler);
  EXPECT_EQ(handler.currentContour, nullptr);
  if (!ok) {
    ADD_FAILURE() << reader.GetError() << "\nin document:\n" << document.substr(0, 2000);
  }
  return ok;
}

std::vector<CONTOUR*> Chain(const CONTOUR_LAYER& layer) {
  std::vector<CONTOUR*> chain;
  for (CONTOUR* c = layer.FirstContour; c != nullptr; c = c->NextContour) {
    chain.push_back(c);
  }
  return chain;
}

// What a contour becomes when stored: flags reduced to 1 or 0, Order and links dropped.
void ExpectStoredForm(const CONTOUR& read, const CONTOUR& written, size_t index) {
  SCOPED_TRACE("contour " + std::to_string(index) + " of " + std::to_string(written.NumPoints) + " points");
  EXPECT_EQ(read.Type, written.Type);
  EXPECT_EQ(read.Closed, written.Closed != 0 ? 1 : 0);
  EXPECT_EQ(read.Outer, written.Outer != 0 ? 1 : 0);
  EXPECT_EQ(read.RightHanded, written.RightHanded != 0 ? 1 : 0);
  EXPECT_EQ(read.Order, 0);
  EXPECT_EQ(read.Owner, nullptr);
  EXPECT_TRUE(PointsOf(read) == PointsOf(written));
}

// Writes layer, reads it back and checks every contour, in reverse order, and the extents.
void ExpectRoundTrip(CONTOUR_LAYER& layer, const char* streamName) {
  const std::string document = WriteLayerDocument(layer, streamName);
  CONTOUR_LAYER back;
  back.AddContourAtEnd(NewContour({{5, 5}}));  // reading replaces what the layer held
  ASSERT_TRUE(ReadLayer(document, back));
  const std::vector<CONTOUR*> written = Chain(layer), read = Chain(back);
  ASSERT_EQ(read.size(), written.size());
  EXPECT_EQ(back.NumContours, layer.NumContours);
  for (size_t i = 0; i < written.size(); ++i) {
    ExpectStoredForm(*read[read.size() - 1 - i], *written[i], i);
  }
  EXPECT_EQ(back.LastContour, read.empty() ? nullptr : read.back());
  layer.BEPAAL_EXTREMA();
  EXPECT_TRUE(back.MinX == layer.MinX && back.MinY == layer.MinY && back.MaxX == layer.MaxX &&
              back.MaxY == layer.MaxY);
  back.LEEG_LAAG();
}

CONTOUR* RandomContour(std::mt19937& generator, int32_t n) {
  std::uniform_int_distribution<int32_t> coordinate(INT32_MIN, INT32_MAX);
  std::vector<MMPoint2d<long>> points;
  for (int32_t i = 0; i < n; ++i) {
    points.push_back({coordinate(generator), coordinate(generator)});
  }
  CONTOUR* c = NewContour(points, static_cast<unsigned char>(generator() % 3 == 0 ? 7 : generator() % 2));
  c->Type = static_cast<char>(generator());
  c->Outer = static_cast<unsigned char>(generator());
  c->RightHanded = static_cast<unsigned char>(generator() % 2);
  c->Order = static_cast<int32_t>(generator());
  return c;
}

}  // namespace

TEST(MSaxContourLayer, RoundTripsLayersOfManyShapesInReverseOrder) {
  for (const char* streamName : {static_cast<const char*>(nullptr), "points"}) {
    SCOPED_TRACE(streamName == nullptr ? "default stream" : "named stream");
    CONTOUR_LAYER empty;
    ExpectRoundTrip(empty, streamName);

    CONTOUR_LAYER shapes;
    shapes.AddContourAtEnd(NewContour(Rectangle(0, 0, 100, 50, true)));
    shapes.AddContourAtEnd(NewContour(Circle(40, 20, 10, 64, false), 0));
    shapes.AddContourAtEnd(new CONTOUR);  // 0 points, flags 7
    shapes.AddContourAtEnd(
        NewContour({{INT32_MIN, INT32_MAX}, {INT32_MAX, INT32_MIN}, {INT32_MIN, INT32_MAX}}));
    shapes.LastContour->Type = 103;  // left out of the extents
    ExpectRoundTrip(shapes, streamName);
    shapes.LEEG_LAAG();

    std::mt19937 generator(11);
    CONTOUR_LAYER random;
    for (int32_t n : {1, 2, 3, 57, 1000, 0, 19}) {
      random.AddContourAtEnd(RandomContour(generator, n));
    }
    ExpectRoundTrip(random, streamName);
    random.LEEG_LAAG();
  }
}

TEST(MSaxContourLayer, WritesTheElementStructureInTheTableOrderWithType200AsMinus56) {
  CONTOUR_LAYER layer;
  layer.AddContourAtEnd(NewContour({{1, -2}, {INT32_MAX, INT32_MIN}}, 0));
  layer.AddContourAtEnd(new CONTOUR);  // 0 points, flags 7 stored as 1
  layer.LastContour->Type = static_cast<char>(200);
  for (const char* streamName : {static_cast<const char*>(nullptr), "pts"}) {
    const std::string before = WriteLayerDocument(layer, streamName);
    bool ok = false;
    const XmlNode root = ParseXmlTree(before, ok);
    ASSERT_TRUE(ok) << before;
    EXPECT_EQ(root.name, "Contours");
    EXPECT_EQ(root.ChildNames(), (std::vector<std::string>{"Contour", "Contour"}));
    const std::map<std::string, std::string> dataAttributes =
        streamName == nullptr ? std::map<std::string, std::string>{}
                              : std::map<std::string, std::string>{{"stream", "pts"}};
    for (const XmlNode& contour : root.children) {
      EXPECT_EQ(contour.ChildNames(),
                (std::vector<std::string>{"Type", "Closed", "Outer", "RightHanded", "Points"}));
      const XmlNode& points = contour.children[4];
      EXPECT_EQ(points.ChildNames(), (std::vector<std::string>{"Dim", "DataType", "Count", "Data"}));
      EXPECT_EQ(points.children[0].text + points.children[1].text, "2long");
      EXPECT_EQ(points.children[3].attributes, dataAttributes) << before;
    }
    EXPECT_EQ(root.children[0].children[1].text, "0");
    EXPECT_EQ(root.children[0].children[4].children[2].text, "2");
    const XmlNode& empty = root.children[1];
    EXPECT_EQ(
        empty.children[0].text + empty.children[1].text + empty.children[2].text + empty.children[3].text,
        "-56111");
    EXPECT_EQ(empty.children[4].children[2].text + empty.children[4].children[3].text, "0");
    EXPECT_EQ(WriteLayerDocument(layer, streamName), before);  // writing leaves the layer as it was
  }
  layer.LEEG_LAAG();
}

TEST(MSaxContourLayer, ReadsHandWrittenFieldsAsTheyStand) {
  // Missing fields keep their fresh values; large flag values keep their low byte.
  const std::string document =
      "<Contours><Contour><Type>5</Type><Outer>0</Outer><Points>" + PointsXml("1", "AwAAAAQAAAA=") +
      "</Points></Contour><Contour/><Contour><Type>456</Type><Closed>257</Closed><RightHanded>-1</"
      "RightHanded></Contour></Contours>";
  CONTOUR_LAYER layer;
  ASSERT_TRUE(ReadLayer(document, layer));
  const std::vector<CONTOUR*> read = Chain(layer);
  ASSERT_EQ(read.size(), 3u);
  EXPECT_EQ(static_cast<unsigned char>(read[0]->Type), 456 & 0xFF);
  EXPECT_EQ(read[0]->Closed, 1);
  EXPECT_EQ(read[0]->RightHanded, 255);
  EXPECT_EQ(read[1]->Closed, kNotDetermined);
  EXPECT_EQ(read[1]->Points, nullptr);
  EXPECT_EQ(read[2]->Type, 5);
  EXPECT_EQ(read[2]->Outer, 0);
  EXPECT_EQ(read[2]->Closed, kNotDetermined);
  EXPECT_EQ(read[2]->RightHanded, kNotDetermined);
  ASSERT_EQ(read[2]->NumPoints, 1);
  EXPECT_EQ(read[2]->Points[0], (MMPoint2d<long>{3, 4}));
  EXPECT_EQ(layer.MinX, 3);
  EXPECT_EQ(layer.MaxY, 4);
  layer.LEEG_LAAG();
}

TEST(MSaxContourLayer, StoresAndReadsAFileInThreeLines) {
  CONTOUR_LAYER layer;
  layer.AddContourAtEnd(NewContour(Rectangle(0, 0, 100, 50, true)));
  const std::string path = testing::TempDir() + "sax_contour_layer_test.xml";

  MSaxContourLayer handler(&layer, nullptr);
  ASSERT_TRUE(MSAXWriter(path).WriteDocument(handler));
  MSAXReader reader;
  ASSERT_TRUE(reader.ReadFile(path, handler)) << reader.GetError();

  std::remove(path.c_str());
  ASSERT_EQ(layer.NumContours, 1);
  EXPECT_TRUE(PointsOf(*layer.FirstContour) == Rectangle(0, 0, 100, 50, true));
  layer.LEEG_LAAG();
}

TEST(MSaxContourLayer, ReadsManyContoursInLinearTime) {
  std::string document = "<Contours>\n";
  for (int i = 0; i < 100000; ++i) {
    document += ContourXml(PointsXml("1", "AQAAAAEAAAA="));
  }
  CONTOUR_LAYER layer;
  ASSERT_TRUE(ReadLayer(document + "</Contours>\n", layer));
  EXPECT_EQ(layer.NumContours, 100000);
  layer.LEEG_LAAG();
}
