#include "sibling/sax/sax_binary_stream.h"

#include <gtest/gtest.h>

#include <random>

TEST(MSAXStreamBinaryOut, AppendsLittleEndianValues) {
  MSAXStreamBinaryOut out;
  out << 1 << -1 << 0x12345678;
  EXPECT_EQ(out.Bytes(), std::string("\x01\0\0\0\xff\xff\xff\xff\x78\x56\x34\x12", 12));
  out.Clear();
  EXPECT_TRUE(out.Bytes().empty());
}

TEST(MSAXStreamBinaryIn, ReadsLittleEndianValuesAndFailsPastTheEnd) {
  MSAXStreamBinaryIn in(std::string("\x78\x56\x34\x12\x00\x00\x00\x80", 8));
  int32_t a = 0, b = 0, c = 7;
  EXPECT_EQ(in.Remaining(), 2u);
  in >> a >> b;
  EXPECT_EQ(a, 0x12345678);
  EXPECT_EQ(b, INT32_MIN);
  EXPECT_TRUE(in.Good());
  EXPECT_TRUE(in.AtEnd());
  in >> c;
  EXPECT_EQ(c, 0);
  EXPECT_FALSE(in.Good());
}

TEST(Base64, EncodesInLinesOf76Characters) {
  std::string text;
  AppendBase64("foob", text);
  EXPECT_EQ(text, "Zm9vYg==\n");
  text.clear();
  AppendBase64("", text);
  EXPECT_EQ(text, "");
  text.clear();
  AppendBase64(std::string(57, 'a'), text);  // exactly one full line
  EXPECT_EQ(text.size(), 77u);
  EXPECT_EQ(text.back(), '\n');
  text.clear();
  AppendBase64(std::string(60, 'a'), text);
  EXPECT_EQ(text, std::string(text.substr(0, 76)) + "\nYWFh\n");
}

TEST(Base64, DecodesWhatItEncodesWhateverTheLength) {
  std::mt19937 generator(7);
  for (size_t n = 0; n < 400; n += 4) {
    std::string bytes(n, '\0');
    for (char& b : bytes) {
      b = static_cast<char>(generator());
    }
    std::string text, back, problem;
    AppendBase64(bytes, text);
    ASSERT_TRUE(DecodeBase64(" \r\n" + text + "\t", back, problem)) << n << " bytes: " << problem;
    EXPECT_EQ(back, bytes) << n << " bytes";
  }
}

TEST(Base64, RejectsMalformedTextWithAReason) {
  const struct {
    const char* text;
    const char* reason;
  } cases[] = {
      {"Zm9vYg!=", "byte 0x21 at offset 6"},
      {"Zm9vYg=", "ends inside a group"},
      {"Zm9vY", "ends inside a group"},
      {"Zm9v=Yg==", "misplaced '='"},
      {"Zm9vYg==Zm9vYg==", "misplaced '='"},
      {"Zm9vYg===", "misplaced '='"},
      {"====", "misplaced '='"},
      {"Zm9v", "not a whole number of 32-bit values"},
      {"Zm9vYmE=", "not a whole number of 32-bit values"},
      {"Zm9v\xc3\xa9", "byte 0xc3"},
  };
  for (const auto& c : cases) {
    std::string bytes, problem;
    EXPECT_FALSE(DecodeBase64(c.text, bytes, problem)) << c.text;
    EXPECT_NE(problem.find(c.reason), std::string::npos) << c.text << " gave: " << problem;
  }
}
