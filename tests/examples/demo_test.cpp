// Runs the example program as a user would and checks its outputs: the PNG
// decodes to the asked size, the SVG and the XML parse, and bad input gives
// exit code 2.
#include <expat.h>
#include <gtest/gtest.h>
#include <png.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string TempDir(const std::string& name) {
  const char* base = std::getenv("TMPDIR");
  std::string dir = std::string(base != nullptr ? base : "/tmp") + "/kelvor2d-demo-test-" + name + "-" +
                    std::to_string(::getpid());
  std::system(("rm -rf '" + dir + "' && mkdir -p '" + dir + "'").c_str());
  return dir;
}

int RunDemo(const std::string& arguments) {
  const std::string command = std::string(KELVOR2D_DEMO_PATH) + " " + arguments + " > /dev/null 2>&1";
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream out;
  out << file.rdbuf();
  return out.str();
}

// True when expat parses the whole document; the root element's name is returned.
bool ParsesAsXml(const std::string& path, std::string& root) {
  const std::string text = ReadFile(path);
  XML_Parser parser = XML_ParserCreate("UTF-8");
  XML_SetUserData(parser, &root);
  XML_SetStartElementHandler(parser, [](void* data, const XML_Char* name, const XML_Char**) {
    auto* r = static_cast<std::string*>(data);
    if (r->empty())
      *r = name;
  });
  const bool ok =
      !text.empty() && XML_Parse(parser, text.data(), static_cast<int>(text.size()), 1) == XML_STATUS_OK;
  XML_ParserFree(parser);
  return ok;
}

// Decodes a PNG with libpng; false when it does not decode.
bool DecodesAsPng(const std::string& path, png_uint_32& width, png_uint_32& height) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&image, path.c_str()))
    return false;
  image.format = PNG_FORMAT_GRAY;
  std::string buffer(PNG_IMAGE_SIZE(image), '\0');
  const bool ok = png_image_finish_read(&image, nullptr, &buffer[0], 0, nullptr) != 0;
  width = image.width;
  height = image.height;
  png_image_free(&image);
  return ok;
}

void ExpectWellFormedOutputs(const std::string& dir, png_uint_32 size) {
  std::string root;
  EXPECT_TRUE(ParsesAsXml(dir + "/layer.xml", root)) << dir;
  EXPECT_EQ(root, "Contours");
  root.clear();
  EXPECT_TRUE(ParsesAsXml(dir + "/hatch.svg", root)) << dir;
  EXPECT_EQ(root, "svg");
  png_uint_32 width = 0, height = 0;
  EXPECT_TRUE(DecodesAsPng(dir + "/coverage.png", width, height)) << dir;
  EXPECT_EQ(width, size);
  EXPECT_EQ(height, size);
}

}  // namespace

TEST(Demo, BuiltInPartWritesWellFormedPictures) {
  const std::string dir = TempDir("builtin");
  ASSERT_EQ(RunDemo("--output " + dir + " --bitmap-size 256"), 0);
  ExpectWellFormedOutputs(dir, 256);
}

TEST(Demo, PersistedLayerRunsTheSameRoad) {
  const std::string first = TempDir("first");
  ASSERT_EQ(RunDemo("--output " + first + " --bitmap-size 128"), 0);
  const std::string second = TempDir("second");
  ASSERT_EQ(RunDemo("--input " + first + "/layer.xml --output " + second + " --bitmap-size 128 --angle 45"),
            0);
  ExpectWellFormedOutputs(second, 128);
}

TEST(Demo, BadInputGivesExitCodeTwo) {
  const std::string dir = TempDir("bad");
  EXPECT_EQ(RunDemo("--distance -1"), 2);
  EXPECT_EQ(RunDemo("--no-such-option"), 2);
  EXPECT_EQ(RunDemo("--input " + dir + "/missing.xml --output " + dir), 2);
  std::ofstream(dir + "/broken.xml") << "<Contours><Contour>";
  EXPECT_EQ(RunDemo("--input " + dir + "/broken.xml --output " + dir), 2);
  EXPECT_EQ(RunDemo("--input " + dir + " --output " + dir), 2);  // a directory
  EXPECT_EQ(RunDemo("--units-per-mm 1e-300 --output " + dir), 2);
  EXPECT_EQ(RunDemo("--units-per-mm 1000000 --distance 1000 --output " + dir), 2);
  EXPECT_EQ(RunDemo("--help"), 0);
}

// Persisted layers a user may hand in: a square given twice (unified on
// reading into one contour) and a square at the top of the 32-bit grid.
TEST(Demo, PersistedEdgeCasesRunTheRoad) {
  const struct {
    const char* name;
    std::vector<const char*> squares;  // base64 of four points each
  } cases[] = {
      {"twice",
       {"AAAAAAAAAAAAAAAAMgAAAGQAAAAyAAAAZAAAAAAAAAA=", "AAAAAAAAAAAAAAAAMgAAAGQAAAAyAAAAZAAAAAAAAAA="}},
      {"top", {"eP3/f3j9/394/f9/0P//f9D//3/Q//9/0P//f3j9/38="}},
  };
  for (const auto& c : cases) {
    const std::string dir = TempDir(c.name);
    std::ofstream input(dir + "/layer.xml");
    input << "<Contours>";
    for (const char* square : c.squares) {
      input << "<Contour><Type>1</Type><Closed>1</Closed><Outer>1</Outer><RightHanded>1</RightHanded><Points>"
               "<Dim>2</Dim><DataType>long</DataType><Count>4</Count><Data>"
            << square << "</Data></Points></Contour>";
    }
    input << "</Contours>";
    input.close();
    ASSERT_EQ(RunDemo("--input " + dir + "/layer.xml --output " + dir + "/out --bitmap-size 16"), 0)
        << c.name;
    const std::string written = ReadFile(dir + "/out/layer.xml");
    EXPECT_EQ(written.find("<Contour>"), written.rfind("<Contour>")) << c.name << ": one contour";
  }
}
