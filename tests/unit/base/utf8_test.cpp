#include "base/utf8.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "base/utf8_text.h"

namespace flanks {
namespace {

struct EncodingCase {
  std::string_view text;
  bool isUtf8;
  std::string_view why;
};

TEST(IsUtf8, LooksAtLeadAndContinuationBytes) {
  const EncodingCase cases[] = {
      {"", false, "an empty text has no encoding"},
      {"abc", false, "every byte is below 128"},
      {"\xC3\xA9", true, "two bytes"},
      {"ab\xC3\xA9z", true, "between other letters"},
      {"\xE6\x97\xA5", true, "three bytes"},
      {"\xF0\x9F\x98\x80", true, "four bytes"},
      {"\xF4\x8F\xBF\xBF", true, "the last lead byte"},
      {"\xC0\x80", false, "192 leads nothing"},
      {"\xC1\xBF", false, "193 leads nothing"},
      {"a\xF5"
       "b",
       false, "245 leads nothing"},
      {"\xC3", false, "cut off after the lead byte"},
      {"\xE6\x97", false, "cut off within a character"},
      {"\xF0\x9F\x98", false, "cut off before the last byte"},
      {"\xC3z", false, "a letter is no continuation"},
      {"\xC3\xC0", false, "a lead byte is no continuation"},
      {"\xA0", false, "a continuation without a lead"},
      {"caf\xE9", false, "an accent of a one-byte code page"},
      {"\xE0\x80\x80", true, "overlong forms are not told apart"},
      {"\xED\xA0\x80", true, "surrogates are not told apart"},
  };
  for (const EncodingCase& c : cases) {
    EXPECT_EQ(IsUtf8(c.text), c.isUtf8) << c.why;
    EXPECT_EQ(IsUtf8(c.text, Utf8Encoded::no), c.isUtf8) << "as when not told: " << c.why;
  }
}

TEST(IsUtf8, TakesTheUsersWordForBytesAbove127Only) {
  EXPECT_TRUE(IsUtf8("\xC0\x80", Utf8Encoded::yes));
  EXPECT_TRUE(IsUtf8("a\xF5", Utf8Encoded::yes));
  EXPECT_FALSE(IsUtf8("abc", Utf8Encoded::yes));
  EXPECT_FALSE(IsUtf8("", Utf8Encoded::yes));
}

TEST(DisplayWidth, CountsColumns) {
  const std::string wide = "\xE6\x97\xA5";
  EXPECT_EQ(DisplayWidth(""), 0);
  EXPECT_EQ(DisplayWidth("abc"), 3);
  EXPECT_EQ(DisplayWidth("\xC3\xA9"), 1);
  EXPECT_EQ(DisplayWidth("Voil\xC3\xA0"), 5);
  EXPECT_EQ(DisplayWidth(wide), 2);
  EXPECT_EQ(DisplayWidth(wide + wide), 4);
  EXPECT_EQ(DisplayWidth(wide + wide + wide + wide + wide), 9);
  EXPECT_EQ(DisplayWidth("\xE0\xA4\x95"), 2) << "1.8 for every lead byte from 224 to 239";
  EXPECT_EQ(DisplayWidth("\xF0\x9F\x98\x80"), 1) << "four bytes count one";
  EXPECT_EQ(DisplayWidth("\xA0"), 1) << "not UTF-8: bytes are counted";
  EXPECT_EQ(DisplayWidth("\xE9t\xE9"), 3) << "not UTF-8: bytes are counted";
}

TEST(DisplayWidth, TakesFourBytesForAnUnknownLeadThatTheUserVouchesFor) {
  EXPECT_EQ(DisplayWidth("\xC0\x80", Utf8Encoded::yes), 1);
  EXPECT_EQ(DisplayWidth("\xF5"
                         "abcde",
                         Utf8Encoded::yes),
            3);
}

TEST(Utf8Text, TakesOtherBytesForTheWindowsCodePage) {
  std::string kept;
  EXPECT_EQ(Utf8Text("M\xC3\xBCller \xF0\x9F\x8E\xA8", kept), "M\xC3\xBCller \xF0\x9F\x8E\xA8");
  EXPECT_EQ(Utf8Text("M\xFCller \x80 \x93", kept), "M\xC3\xBCller \xE2\x82\xAC \xE2\x80\x9C");
  EXPECT_EQ(Utf8Text("a\x81z", kept), "a?z") << "no character of the code page";
  // No characters of Unicode: a surrogate, an overlong form, U+FFFF, code 0.
  EXPECT_EQ(Utf8Text("\xED\xA0\x80", kept), "\xC3\xAD\xC2\xA0\xE2\x82\xAC");
  EXPECT_EQ(Utf8Text("\xC0\x80", kept), "\xC3\x80\xE2\x82\xAC");
  EXPECT_EQ(Utf8Text("\xEF\xBF\xBF", kept), "\xC3\xAF\xC2\xBF\xC2\xBF");
  EXPECT_EQ(Utf8Text(std::string_view("a\0z", 3), kept), "a?z");
}

TEST(AppendUtf8, WritesEachCharacterOfUnicode) {
  const std::pair<char32_t, const char*> cases[] = {{0x7F, "\x7F"},
                                                    {0x80, "\xC2\x80"},
                                                    {0x7FF, "\xDF\xBF"},
                                                    {0x800, "\xE0\xA0\x80"},
                                                    {0xFFFF, "\xEF\xBF\xBF"},
                                                    {0x10000, "\xF0\x90\x80\x80"},
                                                    {0x10FFFF, "\xF4\x8F\xBF\xBF"},
                                                    {0x110000, "?"},
                                                    {0xD800, "?"},
                                                    {0xDFFF, "?"}};
  for (const auto& [code, expected] : cases) {
    std::string text;
    AppendUtf8(code, text);
    EXPECT_EQ(text, expected) << static_cast<unsigned>(code);
  }
}

}  // namespace
}  // namespace flanks
