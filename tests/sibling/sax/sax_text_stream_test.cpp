#include "sibling/sax/sax_text_stream.h"

#include <gtest/gtest.h>

#include <climits>

TEST(MStreamTextOut, BuildsDecimalAndWideText) {
  MStreamTextOut text;
  text << 42 << L"x" << -56 << static_cast<wchar_t const*>(nullptr) << INT32_MIN;
  EXPECT_EQ(text.str(), L"42x-56-2147483648");
}

TEST(MStreamTextIn, ReadsWholeNumbersAndRejectsEverythingElse) {
  const struct {
    const wchar_t* text;
    bool whole;  // ReadWholeNumber succeeds
    int32_t value;
  } cases[] = {{L" -56 ", true, -56},
               {L"+7", true, 7},
               {L"2147483647", true, INT32_MAX},
               {L"-2147483648", true, INT32_MIN},
               {L"\n\t12\r\n", true, 12},
               {L"2147483648", false, 0},
               {L"-2147483649", false, 0},
               {L"99999999999999999999999", false, 0},
               {L"  ", false, 0},
               {L"", false, 0},
               {L"12abc", false, 0},
               {L"1 2", false, 0},
               {L"-", false, 0},
               {L"0x10", false, 0},
               {L"--1", false, 0}};
  for (const auto& c : cases) {
    int32_t value = -1;
    const std::wstring text(c.text);
    EXPECT_EQ(ReadWholeNumber(text, value), c.whole)
        << "text \"" << std::string(text.begin(), text.end()) << "\"";
    EXPECT_TRUE(!c.whole || value == c.value) << "text \"" << std::string(text.begin(), text.end()) << "\"";
  }
}

TEST(MStreamTextIn, ReadsSeveralNumbersAndStaysFailed) {
  MStreamTextIn in(L"3 -4 x 5");
  int32_t a = 0, b = 0, c = 9, d = 9;
  in >> a >> b;
  EXPECT_TRUE(in.Good());
  EXPECT_EQ(a * 10 + b, 26);
  in >> c >> d;
  EXPECT_FALSE(in.Good());
  EXPECT_EQ(c, 0);
  EXPECT_EQ(d, 0);
}
