#include "report/format/clip_field.h"

#include <gtest/gtest.h>

namespace flanks {
namespace {

TEST(ClipField, CutsAndPadsOneByteCharacters) {
  EXPECT_EQ(ClipField("abc", 5), "abc  ");
  EXPECT_EQ(ClipField("abcdef", 3), "abc");
  EXPECT_EQ(ClipField("", 4), "    ");
  EXPECT_EQ(ClipField("abc", 0), "");
  EXPECT_EQ(ClipField("abc", -1), "");
  EXPECT_EQ(ClipField("\xE9t\xE9", 2), "\xE9t") << "not UTF-8";
}

TEST(ClipField, NeverSplitsAWideCharacter) {
  EXPECT_EQ(ClipField("日本語", 1), " ");
  EXPECT_EQ(ClipField("日本語", 2), "日");
  EXPECT_EQ(ClipField("日本語", 3), "日 ");
  EXPECT_EQ(ClipField("日本語", 4), "日本");
  EXPECT_EQ(ClipField("日本語", 5), "日本語");
  EXPECT_EQ(ClipField("日本語", 7), "日本語  ");
  EXPECT_EQ(ClipField("日本語語", 6), "日本語 ");
  EXPECT_EQ(ClipField("日本語語", 7), "日本語語");
}

TEST(ClipField, CountsOtherCharactersAsOneColumn) {
  EXPECT_EQ(ClipField("é1", 3), "é1 ");
  EXPECT_EQ(ClipField("ééé", 2), "éé");
  EXPECT_EQ(ClipField("\xF0\x9F\x98\x80z", 1), "\xF0\x9F\x98\x80");
  EXPECT_EQ(ClipField("a\xC2\xA0z", 2), "a\xC2\xA0");
}

TEST(ClipField, TakesOnlySomeThreeByteCharactersAsWide) {
  EXPECT_EQ(ClipField("\xE2\x82\xAC\xE2\x82\xAC", 2), "\xE2\x82\xAC\xE2\x82\xAC") << "lead 226";
  EXPECT_EQ(ClipField("\xEA\xB0\x80\xEA\xB0\x80", 2), "\xEA\xB0\x80\xEA\xB0\x80") << "lead 234";
  EXPECT_EQ(DisplayWidth("\xE2\x82\xAC\xE2\x82\xAC"), 4);
}

TEST(ClipField, ComesThroughAnEncodingThatTheUserVouchesFor) {
  EXPECT_EQ(ClipField("ab\xE6", 5, Utf8Encoded::yes), "ab\xE6 ") << "1.8 columns, cut off";
  EXPECT_EQ(ClipField("\xA0"
                      "b",
                      3, Utf8Encoded::yes),
            "\xA0"
            "b ");
}

}  // namespace
}  // namespace flanks
