#include "sibling/sax/sax_binary_stream.h"

#include <gtest/gtest.h>

#include <random>

TEST(MSAXStreamBinary, WritesAndReadsLittleEndianValuesAndFailsPastTheEnd) {
  MSAXStreamBinaryOut out;
  out << 0x12345678 << -1 << INT32_MIN;
  EXPECT_EQ(out.Bytes(), std::string("\x78\x56\x34\x12\xff\xff\xff\xff\0\0\0\x80", 12));
  MSAXStreamBinaryIn in(out.Bytes());
  out.Clear();
  EXPECT_TRUE(out.Bytes().empty());
  int32_t a = 0, b = 0, c = 0, d = 7;
  EXPECT_EQ(in.Remaining(), 3u);
  in >> a >> b >> c;
  EXPECT_TRUE(a == 0x12345678 && b == -1 && c == INT32_MIN);
  EXPECT_TRUE(in.Good() && in.AtEnd());
  in >> d;
  EXPECT_EQ(d, 0);
  EXPECT_FALSE(in.Good());
}

TEST(Base64, EncodesInLinesOf76Characters) {
  std::string fullLine;  // 57 bytes "aaa..." make one full line of 76 characters
  for (int i = 0; i < 19; ++i)
    fullLine += "YWFh";
  const struct {
    std::string bytes, text;
  } cases[] = {
      {"foob", "Zm9vYg==\n"},
      {"", ""},
      {std::string(57, 'a'), fullLine + "\n"},
      {std::string(60, 'a'), fullLine + "\nYWFh\n"},
  };
  for (const auto& c : cases) {
    std::string text;
    AppendBase64(c.bytes, text);
    EXPECT_EQ(text, c.text) << c.bytes.size() << " bytes";
    EXPECT_EQ(Base64TextLength(c.bytes.size()), c.text.size());
  }
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
    EXPECT_EQ(Base64TextLength(n), text.size()) << n << " bytes";
    ASSERT_TRUE(DecodeBase64(" \r\n" + text + "\t", back, problem)) << n << " bytes: " << problem;
    EXPECT_EQ(back, bytes) << n << " bytes";
  }
}

TEST(Base64, RejectsMalformedTextWithAReason) {
  const struct {
    const char* text;
    const char* reason;
  } cases[] = {{"Zm9vYg!=", "byte 0x21 at offset 6"},
               {"Zm9vYg=", "ends inside a group"},
               {"Zm9vY", "ends inside a group"},
               {"Zm9v=Yg==", "misplaced '='"},
               {"Zm9vYg==Zm9vYg==", "misplaced '='"},
               {"Zm9vYg===", "misplaced '='"},
               {"Zm9vYmE=", "not a whole number of 32-bit values"},
               {"Zm9v\xc3\xa9", "byte 0xc3"}};
  for (const auto& c : cases) {
    std::string bytes, problem;
    EXPECT_FALSE(DecodeBase64(c.text, bytes, problem)) << c.text;
    EXPECT_NE(problem.find(c.reason), std::string::npos) << c.text << " gave: " << problem;
  }
}
