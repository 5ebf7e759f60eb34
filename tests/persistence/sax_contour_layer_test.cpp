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
  EXPECT_EQ(back.MinX, layer.MinX);
  EXPECT_EQ(back.MinY, layer.MinY);
  EXPECT_EQ(back.MaxX, layer.MaxX);
  EXPECT_EQ(back.MaxY, layer.MaxY);
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

TEST(MSaxContourLayer, RoundTripsLayersOfManyShapes) {
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

TEST(MSaxContourLayer, StoresType200AsMinus56AndFlags7As1) {
  CONTOUR_LAYER layer;
  CONTOUR* c = new CONTOUR;
  c->Type = static_cast<char>(200);
  layer.AddContourAtEnd(c);
  const std::string document = WriteLayerDocument(layer);
  EXPECT_NE(document.find("<Type>-56</Type>\n    <Closed>1</Closed>\n    <Outer>1</Outer>\n    "
                          "<RightHanded>1</RightHanded>"),
            std::string::npos)
      << document;
  CONTOUR_LAYER back;
  ASSERT_TRUE(ReadLayer(document, back));
  ASSERT_EQ(back.NumContours, 1);
  EXPECT_EQ(static_cast<unsigned char>(back.FirstContour->Type), 200);
  EXPECT_EQ(back.FirstContour->Closed, 1);
  EXPECT_EQ(back.FirstContour->NumPoints, 0);
  EXPECT_EQ(back.MaxX, kEmptyExtentMax);
  layer.LEEG_LAAG();
  back.LEEG_LAAG();
}

TEST(MSaxContourLayer, ReadsContoursBackInReverseChainOrder) {
  CONTOUR_LAYER layer;
  for (int32_t k : {1, 2, 3}) {  // A, B, C told apart by their first point
    layer.AddContourAtEnd(NewContour({{k, k}, {k + 10, k}}));
  }
  CONTOUR_LAYER back;
  ASSERT_TRUE(ReadLayer(WriteLayerDocument(layer), back));
  std::vector<int32_t> order;
  for (CONTOUR* c : Chain(back)) {
    order.push_back(c->Points[0].x);
  }
  EXPECT_EQ(order, (std::vector<int32_t>{3, 2, 1}));
  layer.LEEG_LAAG();
  back.LEEG_LAAG();
}

TEST(MSaxContourLayer, WritesTheElementStructureInTheTableOrder) {
  CONTOUR_LAYER layer;
  layer.AddContourAtEnd(NewContour({{1, -2}, {INT32_MAX, INT32_MIN}}, 0));
  layer.AddContourAtEnd(new CONTOUR);
  const std::string before = WriteLayerDocument(layer);
  bool ok = false;
  const XmlNode root = ParseXmlTree(before, ok);
  ASSERT_TRUE(ok) << before;
  EXPECT_EQ(root.name, "Contours");
  EXPECT_EQ(root.ChildNames(), (std::vector<std::string>{"Contour", "Contour"}));
  const std::vector<std::string> contourChildren{"Type", "Closed", "Outer", "RightHanded", "Points"};
  const std::vector<std::string> pointsChildren{"Dim", "DataType", "Count", "Data"};
  for (const XmlNode& contour : root.children) {
    EXPECT_EQ(contour.ChildNames(), contourChildren);
    EXPECT_EQ(contour.children[4].ChildNames(), pointsChildren);
    EXPECT_EQ(contour.children[4].children[0].text, "2");
    EXPECT_EQ(contour.children[4].children[1].text, "long");
  }
  const XmlNode& first = root.children[0];
  EXPECT_EQ(first.children[1].text, "0");
  EXPECT_EQ(first.children[4].children[2].text, "2");
  std::string bytes, problem;
  ASSERT_TRUE(DecodeBase64(first.children[4].children[3].text, bytes, problem)) << problem;
  MSAXStreamBinaryIn in(bytes);
  int32_t values[4] = {};
  in >> values[0] >> values[1] >> values[2] >> values[3];
  EXPECT_TRUE(in.Good() && in.AtEnd());
  EXPECT_EQ(std::vector<int32_t>(values, values + 4), (std::vector<int32_t>{1, -2, INT32_MAX, INT32_MIN}));
  EXPECT_EQ(root.children[1].children[4].children[2].text, "0");
  EXPECT_EQ(root.children[1].children[4].children[3].text, "");
  EXPECT_EQ(WriteLayerDocument(layer), before);  // writing leaves the layer as it was
  layer.LEEG_LAAG();
}

TEST(MSaxContourLayer, NamedAndDefaultStreamsDifferOnlyInTheDataAttribute) {
  CONTOUR_LAYER layer;
  layer.AddContourAtEnd(NewContour(Rectangle(0, 0, 10, 10, true)));
  layer.AddContourAtEnd(NewContour({{7, 8}}));
  bool ok1 = false, ok2 = false;
  XmlNode plain = ParseXmlTree(WriteLayerDocument(layer), ok1);
  XmlNode named = ParseXmlTree(WriteLayerDocument(layer, "pts"), ok2);
  ASSERT_TRUE(ok1 && ok2);
  for (XmlNode& contour : named.children) {
    XmlNode& data = contour.children[4].children[3];
    EXPECT_EQ(data.attributes, (std::map<std::string, std::string>{{"stream", "pts"}}));
    data.attributes.clear();
  }
  EXPECT_EQ(WriteLayerDocument(layer), WriteLayerDocument(layer, nullptr));
  EXPECT_EQ(plain.children.size(), named.children.size());
  for (size_t i = 0; i < plain.children.size(); ++i) {
    for (size_t k = 0; k < 5; ++k) {
      EXPECT_EQ(plain.children[i].children[k].text, named.children[i].children[k].text);
    }
    EXPECT_EQ(plain.children[i].children[4].children[3].text, named.children[i].children[4].children[3].text);
  }
  layer.LEEG_LAAG();
}

TEST(MSaxContourLayer, LeavesUnwrittenFieldsAtTheirFreshValues) {
  const std::string document = "<Contours><Contour><Type>5</Type><Outer>0</Outer><Points>" +
                               PointsXml("1", "AwAAAAQAAAA=") + "</Points></Contour><Contour/></Contours>";
  CONTOUR_LAYER layer;
  ASSERT_TRUE(ReadLayer(document, layer));
  ASSERT_EQ(layer.NumContours, 2);
  const CONTOUR& empty = *layer.FirstContour;
  EXPECT_EQ(empty.Closed, kNotDetermined);
  EXPECT_EQ(empty.NumPoints, 0);
  EXPECT_EQ(empty.Points, nullptr);
  const CONTOUR& read = *layer.LastContour;
  EXPECT_EQ(read.Type, 5);
  EXPECT_EQ(read.Outer, 0);
  EXPECT_EQ(read.Closed, kNotDetermined);
  EXPECT_EQ(read.RightHanded, kNotDetermined);
  ASSERT_EQ(read.NumPoints, 1);
  EXPECT_EQ(read.Points[0], (MMPoint2d<long>{3, 4}));
  EXPECT_EQ(layer.MinX, 3);
  EXPECT_EQ(layer.MaxY, 4);
  layer.LEEG_LAAG();
}

TEST(MSaxContourLayer, StoresTheLowByteOfLargeFlagValuesAndCopiesItsFields) {
  const std::string document =
      "<Contours><Contour><Type>456</Type><Closed>257</Closed><RightHanded>-1</RightHanded></Contour></"
      "Contours>";
  CONTOUR_LAYER layer, other;
  MSaxContourLayer handler(&layer, "s");
  MSaxContourLayer copy(handler);
  EXPECT_EQ(copy.layer, &layer);
  EXPECT_STREQ(copy.streamName, "s");
  copy = MSaxContourLayer(&other, nullptr);
  EXPECT_EQ(copy.layer, &other);
  MSAXReader reader;
  ASSERT_TRUE(reader.ReadBuffer(document.data(), document.size(), handler)) << reader.GetError();
  EXPECT_EQ(static_cast<unsigned char>(layer.FirstContour->Type), 456 & 0xFF);
  EXPECT_EQ(layer.FirstContour->Closed, 1);
  EXPECT_EQ(layer.FirstContour->RightHanded, 255);
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

TEST(MSaxContourLayer, KeepsTheExtentsExactWithContoursLeftOutOfThem) {
  std::mt19937 generator(5);
  CONTOUR_LAYER layer;
  for (int i = 0; i < 40; ++i) {
    CONTOUR* c = RandomContour(generator, static_cast<int32_t>(generator() % 4));
    c->Type = generator() % 3 == 0 ? 103 : 1;
    layer.AddContourAtEnd(c);
  }
  const std::string document = WriteLayerDocument(layer);
  for (size_t cut = document.find("</Contour>"); cut != std::string::npos;
       cut = document.find("</Contour>", cut + 1)) {
    CONTOUR_LAYER back, check;
    MSaxContourLayer handler(&back, nullptr);
    MSAXReader reader;
    EXPECT_FALSE(
        reader.ReadBuffer(document.data(), cut + 10, handler));  // the layer as it stood after that contour
    check.MinX = back.MinX, check.MinY = back.MinY, check.MaxX = back.MaxX, check.MaxY = back.MaxY;
    back.BEPAAL_EXTREMA();
    EXPECT_TRUE(check.MinX == back.MinX && check.MinY == back.MinY && check.MaxX == back.MaxX &&
                check.MaxY == back.MaxY)
        << "after " << back.NumContours << " contours";
    back.LEEG_LAAG();
  }
  layer.LEEG_LAAG();
}

TEST(MSaxContourLayer, ReadsManyContoursInLinearTime) {
  std::string document = "<Contours>\n";
  for (int i = 0; i < 100000; ++i) {
    document += ContourXml(PointsXml("1", "AQAAAAEAAAA="));
  }
  document += "</Contours>\n";
  CONTOUR_LAYER layer;
  ASSERT_TRUE(ReadLayer(document, layer));
  EXPECT_EQ(layer.NumContours, 100000);
  EXPECT_EQ(layer.MaxX, 1);
  layer.LEEG_LAAG();
}

namespace {

// A caller's larger object: "Part" with a "Name" and the layer's "Contours".
class PartHandler : public ISAXPersistHelper {
 public:
  explicit PartHandler(CONTOUR_LAYER* layer) : layer_(layer) {}
  bool HandleTag(std::wstring const& tag, MSAXReader& reader) override {
    if (tag == L"Contours") {
      reader.PushHandler(new MSaxContourLayer(layer_, nullptr));
    }
    return tag == L"Part" || tag == L"Name" || tag == L"Contours";
  }
  bool Write(MSAXWriter& writer) const override {
    MSAXTagWriter part(writer, L"Part");
    writer.StartTag(L"Name");
    writer.WriteText(L"bracket");
    writer.EndTag(L"Name");
    return MSaxContourLayer(layer_, "part").Write(writer);
  }

 private:
  CONTOUR_LAYER* layer_;
};

}  // namespace

TEST(MSaxContourLayer, WorksInsideACallersLargerObject) {
  CONTOUR_LAYER layer, back;
  layer.AddContourAtEnd(NewContour(Rectangle(0, 0, 10, 10, true)));
  layer.AddContourAtEnd(NewContour({{3, 4}}));
  std::ostringstream out;
  MSAXWriter writer(out);
  ASSERT_TRUE(writer.WriteDocument(PartHandler(&layer))) << writer.GetError();
  const std::string document = out.str();
  PartHandler reading(&back);
  MSAXReader reader;
  ASSERT_TRUE(reader.ReadBuffer(document.data(), document.size(), reading)) << reader.GetError();
  ASSERT_EQ(back.NumContours, 2);
  EXPECT_TRUE(PointsOf(*back.FirstContour) == PointsOf(*layer.LastContour));

  // A document cut inside the second contour: the pushed layer handler releases it.
  back.LEEG_LAAG();
  const size_t cut = document.rfind("<Count>");
  EXPECT_FALSE(reader.ReadBuffer(document.data(), cut, reading));
  EXPECT_EQ(back.NumContours, 1);
  back.LEEG_LAAG();
  layer.LEEG_LAAG();
}
