// CLI reading and writing: round trips in both encodings and both senses of
// direction, the short and long binary commands, units, a hand-written file
// with CRLF line ends and comments, and every kind of bad input.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "io/cli/cli_reader.h"
#include "io/cli/cli_writer.h"

namespace {

std::string TempPath(const std::string& name) {
  return ::testing::TempDir() + "cli-" + name + "-" + std::to_string(getpid()) + ".cli";
}

void WriteText(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

std::string ReadText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

CliPolyline Line(int32_t direction, std::vector<MMPoint2d<long>> points) {
  CliPolyline p;
  p.id = 1;
  p.direction = direction;
  p.points = std::move(points);
  return p;
}

// An outer border clockwise and one counter-clockwise (y up), a hole, an open
// line, hatches; small coordinates (short binary form) and large or negative
// ones (long form).
CliLayer MixedLayer(int32_t z) {
  CliLayer layer;
  layer.z = z;
  layer.polylines = {Line(kCliOuter, {{0, 0}, {0, 1000}, {1000, 1000}, {1000, 0}}),
                     Line(kCliOuter, {{-5000, 0}, {-4000, 0}, {-4000, 90000}}),
                     Line(kCliInner, {{100, 100}, {200, 100}, {200, 200}}),
                     Line(kCliOpen, {{1, 2}, {3, 4}, {1, 2}})};
  layer.hatches = {{3, {0, 0, 10, 10, 20, 20, 30, 30}}, {3, {-7, 70000, 8, 9}}};
  return layer;
}

std::vector<CliLayer> ReadAll(const std::string& path, double unitsPerMm, CliHeader* header = nullptr) {
  CliReader reader(path, unitsPerMm);
  EXPECT_TRUE(reader.Open()) << reader.Error();
  std::vector<CliLayer> layers(1);
  CliStatus status;
  while ((status = reader.Next(layers.back())) == CliStatus::kLayer)
    layers.emplace_back();
  EXPECT_EQ(status, CliStatus::kEnd) << reader.Error();
  layers.pop_back();
  if (header != nullptr)
    *header = reader.Header();
  return layers;
}

void ExpectSameLayer(const CliLayer& a, const CliLayer& b) {
  EXPECT_EQ(a.z, b.z);
  ASSERT_EQ(a.polylines.size(), b.polylines.size());
  for (size_t i = 0; i < a.polylines.size(); ++i) {
    EXPECT_EQ(a.polylines[i].id, b.polylines[i].id);
    EXPECT_EQ(a.polylines[i].direction, b.polylines[i].direction);
    EXPECT_EQ(a.polylines[i].points, b.polylines[i].points) << "polyline " << i;
  }
  ASSERT_EQ(a.hatches.size(), b.hatches.size());
  for (size_t i = 0; i < a.hatches.size(); ++i)
    EXPECT_EQ(a.hatches[i].coordinates, b.hatches[i].coordinates);
}

bool Write(const std::string& path, CliEncoding encoding, const std::vector<CliLayer>& layers) {
  CliWriter writer;
  std::string error, encoded;
  CliHeader header;
  header.labels = {{1, "part one"}};
  bool ok = writer.Open(path, encoding, error);
  for (const CliLayer& layer : layers) {
    header.dimension.Grow(DimensionOf(layer, 1000.0));
    encoded.clear();
    EncodeCliLayer(layer, encoding, encoded);
    ok = ok && writer.Append(encoded, 1, error);
  }
  return ok && writer.Commit(header, error);
}

TEST(CliRoundTrip, WhatIsWrittenReadsBackTheSameInBothEncodings) {
  for (CliEncoding encoding : {CliEncoding::kAscii, CliEncoding::kBinary}) {
    const std::string path = TempPath(encoding == CliEncoding::kAscii ? "ascii" : "binary");
    const std::vector<CliLayer> layers = {MixedLayer(30), MixedLayer(70000), CliLayer()};
    ASSERT_TRUE(Write(path, encoding, layers));
    CliHeader header;
    const std::vector<CliLayer> back = ReadAll(path, 1000.0, &header);
    ASSERT_EQ(back.size(), layers.size());
    for (size_t i = 0; i < layers.size(); ++i)
      ExpectSameLayer(layers[i], back[i]);
    EXPECT_EQ(header.encoding, encoding);
    EXPECT_EQ(header.layers, 3);
    ASSERT_EQ(header.labels.size(), 1u);
    EXPECT_EQ(header.labels[0].text, "part one");
    EXPECT_EQ(header.dimension.minX, -5.0);
    EXPECT_EQ(header.dimension.maxY, 90.0);
    EXPECT_EQ(header.dimension.maxZ, 70.0);
  }
}

TEST(CliRoundTrip, ClosedPolylinesAreWrittenAgainstTheLibrarySenseAndClosed) {
  std::string text;
  CliLayer layer;
  layer.polylines = {Line(kCliOuter, {{0, 0}, {0, 10}, {10, 10}})};  // clockwise, y up
  EncodeCliLayer(layer, CliEncoding::kAscii, text);
  EXPECT_EQ(text, "$$LAYER/0\n$$POLYLINE/1,1,4,10,10,0,10,0,0,10,10\n");
}

TEST(CliBinary, ShortAndLongCommandsAreChosenByTheValues) {
  std::string bytes;
  EncodeCliLayer(MixedLayer(30), CliEncoding::kBinary, bytes);
  auto index = [&](size_t at) {
    return static_cast<unsigned char>(bytes[at]) | static_cast<unsigned char>(bytes[at + 1]) << 8;
  };
  EXPECT_EQ(index(0), 128);  // short layer: z = 30
  EXPECT_EQ(index(4), 129);  // short polyline: the first square
  const size_t second = 4 + 2 + 6 + 5 * 4;
  EXPECT_EQ(index(second), 130);  // long polyline: negative x
  bytes.clear();
  EncodeCliLayer(MixedLayer(70000), CliEncoding::kBinary, bytes);
  EXPECT_EQ(index(0), 127);  // long layer
}

TEST(CliUnits, CoordinatesMapThroughTheFileUnitsAndTheInternalUnits) {
  struct Case {
    const char* units;
    double unitsPerMm;
    const char* value;
    int32_t expected;
  } cases[] = {{"0.001", 1000, "1234", 1234},
               {"0.01", 1000, "1.5", 15},
               {"1", 100, "0.125", 13},
               {"0.005", 1000, "-3", -15}};
  for (const Case& c : cases) {
    const std::string path = TempPath("units");
    WriteText(path, std::string("$$HEADERSTART\n$$ASCII\n$$UNITS/") + c.units +
                        "\n$$HEADEREND\n$$GEOMETRYSTART\n$$LAYER/0\n$$HATCHES/1,1," + c.value +
                        ",0,0,0\n$$GEOMETRYEND\n");
    const std::vector<CliLayer> layers = ReadAll(path, c.unitsPerMm);
    ASSERT_EQ(layers.size(), 1u);
    EXPECT_EQ(layers[0].hatches[0].coordinates[0], c.expected) << c.units << " " << c.value;
  }
}

TEST(CliAscii, CrlfLineEndsCommentsCaseAndSpacesAreAccepted) {
  const std::string path = TempPath("crlf");
  WriteText(path,
            "// written by hand //\r\n$$HEADERSTART\r\n$$ascii // text //\r\n$$UNITS/1\r\n$$DATE/241126\r\n"
            "$$HEADEREND\r\n$$GEOMETRYSTART\r\n\r\n$$layer/ 2.5 \r\n"
            "$$POLYLINE/7, 2, 2, 0, 0, 1.5, 0 // an open line\r\n$$GEOMETRYEND\r\n");
  const std::vector<CliLayer> layers = ReadAll(path, 10.0);
  ASSERT_EQ(layers.size(), 1u);
  EXPECT_EQ(layers[0].z, 25);
  ASSERT_EQ(layers[0].polylines.size(), 1u);
  EXPECT_EQ(layers[0].polylines[0].id, 7);
  EXPECT_EQ(layers[0].polylines[0].points, (std::vector<MMPoint2d<long>>{{0, 0}, {15, 0}}));
}

std::string Binary(std::initializer_list<uint16_t> words) {
  std::string out = "$$HEADERSTART\n$$BINARY\n$$UNITS/1\n$$HEADEREND";
  for (uint16_t w : words)
    out += static_cast<char>(w & 0xff), out += static_cast<char>(w >> 8);
  return out;
}

const char* kAsciiHead = "$$HEADERSTART\n$$ASCII\n$$UNITS/1\n$$HEADEREND\n$$GEOMETRYSTART\n";

TEST(CliBadInput, EachFaultIsReportedWithPlaceAndLayer) {
  struct Case {
    std::string name, content;
    CliStatus status;  // of the first Next after any good layers
    std::string message;
  } cases[] = {
      {"no header end", "$$HEADERSTART\n$$ASCII\n", CliStatus::kFailed,
       "line 2: the file ends without $$HEADEREND"},
      {"not cli", "hello\n", CliStatus::kFailed, "not a CLI file"},
      {"count", std::string(kAsciiHead) + "$$LAYER/0\n$$POLYLINE/1,2,3,0,0,1,1\n$$GEOMETRYEND\n",
       CliStatus::kBadLayer, "line 7, layer 0: $$POLYLINE count 3 calls for 6 numbers, 4 follow"},
      {"before layer", std::string(kAsciiHead) + "$$HATCHES/1,0\n", CliStatus::kFailed,
       "line 6: $$HATCHES before the first layer"},
      {"not a number", std::string(kAsciiHead) + "$$LAYER/0\n$$HATCHES/1,1,0,0,x,0\n$$GEOMETRYEND\n",
       CliStatus::kBadLayer, "'x' is not a number"},
      {"direction", std::string(kAsciiHead) + "$$LAYER/0\n$$POLYLINE/1,5,1,0,0\n$$GEOMETRYEND\n",
       CliStatus::kBadLayer, "direction 5 is not 0, 1 or 2"},
      {"overflow", std::string(kAsciiHead) + "$$LAYER/0\n$$HATCHES/1,1,0,0,3e9,0\n$$GEOMETRYEND\n",
       CliStatus::kBadLayer, "layer 0: coordinate 3e+09 does not fit 32 bits"},
      {"no end", std::string(kAsciiHead) + "$$LAYER/0\n", CliStatus::kFailed, "ends without $$GEOMETRYEND"},
      {"unknown index", Binary({128, 0, 200}), CliStatus::kFailed,
       "byte 48, layer 0: unknown command index 200"},
      {"truncated", Binary({128, 0, 131, 1, 1, 5}), CliStatus::kFailed, "layer 0: truncated command"},
      {"huge count", Binary({128, 0, 132, 1, 0, 0xffff, 0x7fff}), CliStatus::kFailed, "truncated command"},
      {"binary before layer", Binary({129, 1, 2, 0}), CliStatus::kFailed, "polyline before the first layer"},
      {"aligned", "$$HEADERSTART\n$$BINARY\n$$ALIGN\n$$HEADEREND", CliStatus::kFailed, "not supported"},
  };
  for (const Case& c : cases) {
    const std::string path = TempPath("bad");
    WriteText(path, c.content);
    CliReader reader(path, 1.0);
    CliStatus status = CliStatus::kFailed;
    if (reader.Open()) {
      CliLayer layer;
      status = reader.Next(layer);
    }
    EXPECT_EQ(status, c.status) << c.name;
    EXPECT_NE(reader.Error().find(path), std::string::npos) << c.name;
    EXPECT_NE(reader.Error().find(c.message), std::string::npos) << c.name << ": " << reader.Error();
  }
}

TEST(CliBadInput, ReadingGoesOnAfterABadAsciiLayer) {
  const std::string path = TempPath("recover");
  WriteText(path, std::string(kAsciiHead) + "$$LAYER/1\n$$POLYLINE/1,2,9\n$$HATCHES/1,0\n$$LAYER/2\n" +
                      "$$HATCHES/1,1,1,2,3,4\n$$GEOMETRYEND\n");
  CliReader reader(path, 1.0);
  ASSERT_TRUE(reader.Open());
  CliLayer layer;
  EXPECT_EQ(reader.Next(layer), CliStatus::kBadLayer);
  ASSERT_EQ(reader.Next(layer), CliStatus::kLayer);
  EXPECT_EQ(reader.LayerIndex(), 1);
  EXPECT_EQ(layer.hatches[0].coordinates, (std::vector<int32_t>{1, 2, 3, 4}));
  EXPECT_EQ(reader.Next(layer), CliStatus::kEnd);
}

TEST(CliWriter, AnAbandonedFileLeavesNothingBehind) {
  const std::string path = TempPath("abandon");
  std::remove(path.c_str());
  {
    CliWriter writer;
    std::string error;
    ASSERT_TRUE(writer.Open(path, CliEncoding::kAscii, error));
    ASSERT_TRUE(writer.Append("$$LAYER/0\n", 1, error));
  }
  EXPECT_FALSE(std::ifstream(path).good());
  EXPECT_EQ(ReadText(path + ".part-" + std::to_string(getpid()) + ".body"), "");
}

}  // namespace
