#include "base/shown_text.h"

#include <gtest/gtest.h>
#include <string_view>

namespace flanks {
namespace {

// E with an acute accent is C3 89, the sign for "day" E6 97 A5.

TEST(WholeCharacters, AQuestionMarkStandsForEachBrokenByte) {
  struct PartCase {
    std::string_view part, shown;
  };
  const PartCase cases[] = {
      {"", ""},
      {"Ann", "Ann"},
      {"\xC3\x89", "\xC3\x89"},
      {"\xC3", "?"},
      {"\x89"
       "1-",
       "?1-"},
      {"1\xC3", "1?"},
      {"\x97\xA5\xE6\x97\xA5\xE6\x97", "??\xE6\x97\xA5??"},
      {"\xC3\x89\x89", "\xC3\x89?"},
  };
  for (const PartCase& c : cases)
    EXPECT_EQ(WholeCharacters(c.part, "\xC3\x89-Ann"), c.shown) << c.part;
}

TEST(WholeCharacters, ATextOfAOneByteCodePageStays) {
  EXPECT_EQ(WholeCharacters("\xC9", "\xC9-Ann"), "\xC9");
  EXPECT_EQ(WholeCharacters("\xC9", "Ann"), "?") << "the source has no such byte";
}

TEST(CutBetweenCharacters, TakesNoHalfCharacter) {
  EXPECT_EQ(CutBetweenCharacters("Ann", 3), "Ann");
  EXPECT_EQ(CutBetweenCharacters("Ann", 2), "An");
  EXPECT_EQ(CutBetweenCharacters("\xE6\x97\xA5\xE6\x97\xA5", 6), "\xE6\x97\xA5\xE6\x97\xA5");
  for (const std::size_t most : {3u, 4u, 5u})
    EXPECT_EQ(CutBetweenCharacters("\xE6\x97\xA5\xE6\x97\xA5", most), "\xE6\x97\xA5") << most;
  EXPECT_EQ(CutBetweenCharacters("\x80\x80\x80\x80\x80\x80\x80\x80", 6).size(), 2u)
      << "no more bytes are left out than a character has";
}

}  // namespace
}  // namespace flanks
