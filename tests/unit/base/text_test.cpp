#include "base/text.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace flanks {
namespace {

TEST(Text, TrimTakesBlanksAndNothingElse) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(TrimLeft("  a "), "a ");
  EXPECT_EQ(TrimRight("  a "), "  a");
  EXPECT_EQ(Trim("    "), "");
  EXPECT_EQ(Trim(""), "");
  EXPECT_EQ(Trim(" \ta\t "), "\ta\t") << "a tab separates fields";
  EXPECT_EQ(Trim(" \xC2\xA0 "), "\xC2\xA0") << "a no-break space is not a blank";
}

TEST(Text, UpperCaseChangesTheLettersAToZOnly) {
  EXPECT_EQ(UpperCase("azAZ09_{`"), "AZAZ09_{`");
  EXPECT_EQ(UpperCase("caf\xC3\xA9"), "CAF\xC3\xA9");
  EXPECT_TRUE(IsLetter('a') && IsLetter('z') && IsLetter('A') && IsLetter('Z'));
  EXPECT_FALSE(IsLetter('@') || IsLetter('[') || IsLetter('`') || IsLetter('{'));
  EXPECT_FALSE(IsLetter('\xE9') || IsDigit('\xB2') || IsDigit('/') || IsDigit(':'));
}

TEST(Text, MidCountsFromOneAndStaysInside) {
  EXPECT_EQ(Mid("abcdef", 1, 2), "ab");
  EXPECT_EQ(Mid("abcdef", 3), "cdef");
  EXPECT_EQ(Mid("abcdef", 6, 9), "f");
  EXPECT_EQ(Mid("abcdef", 7, 1), "");
  EXPECT_EQ(Mid("abcdef", 0, 3), "");
  EXPECT_EQ(Mid("abcdef", 2, 0), "");
  EXPECT_EQ(Mid("", 1), "");
}

TEST(Text, EverySeparatorEndsAField) {
  using ::testing::ElementsAre;
  EXPECT_THAT(CommaFields("1, Adam Smith ,2.5"), ElementsAre("1", "Adam Smith", "2.5"));
  EXPECT_THAT(CommaFields("1,a,"), ElementsAre("1", "a", ""));
  EXPECT_THAT(CommaFields(","), ElementsAre("", ""));
  EXPECT_THAT(CommaFields(""), ElementsAre(""));
  FieldCursor blanks("a b", ' ');
  std::string_view field;
  ASSERT_TRUE(blanks.Next(field));
  EXPECT_EQ(field, "a");
  EXPECT_EQ(blanks.rest(), "b");
  ASSERT_TRUE(blanks.Next(field));
  EXPECT_EQ(field, "b");
  EXPECT_FALSE(blanks.Next(field));
}

TEST(Text, ReplaceCharacterReplacesEachOne) {
  std::string text = "a=b=c";
  ReplaceCharacter(text, '=', ',');
  EXPECT_EQ(text, "a,b,c");
}

struct PrefixCase {
  std::string_view text;
  double value;
  std::size_t length;
};

class NumericPrefixOf : public ::testing::TestWithParam<PrefixCase> {};

TEST_P(NumericPrefixOf, HasThisValueAndLength) {
  const PrefixCase& c = GetParam();
  const NumericPrefix number = ReadNumericPrefix(c.text);
  EXPECT_EQ(number.value, c.value) << c.text;
  EXPECT_EQ(number.length, c.length) << c.text;
}

INSTANTIATE_TEST_SUITE_P(Text, NumericPrefixOf,
                         ::testing::Values(PrefixCase{"12", 12, 2}, PrefixCase{"  12", 12, 4},
                                           PrefixCase{"-12x", -12, 3}, PrefixCase{"+.5", .5, 3},
                                           PrefixCase{"5.", 5, 2}, PrefixCase{"1.2.3", 1.2, 3},
                                           PrefixCase{"1E5", 1e5, 3}, PrefixCase{"1d-2", .01, 4},
                                           PrefixCase{"1E+", 1, 1},   // the exponent has no digits
                                           PrefixCase{"5ebb", 5, 1},  // likewise
                                           PrefixCase{".", 0, 0},     // a point alone is no number
                                           PrefixCase{"-", 0, 0}, PrefixCase{"", 0, 0},
                                           PrefixCase{"abc", 0, 0}, PrefixCase{"inf", 0, 0},
                                           PrefixCase{"nan", 0, 0},
                                           PrefixCase{"0x10", 0, 1},  // no other bases
                                           PrefixCase{"1,5", 1, 1},   // a comma is no decimal mark
                                           PrefixCase{"1e400", HUGE_VAL, 5},
                                           PrefixCase{"-1e400", -HUGE_VAL, 6},
                                           PrefixCase{"1e-400", 0, 6}, PrefixCase{"0e400", 0, 5},
                                           PrefixCase{"1e99999999999999999999", HUGE_VAL, 22},
                                           PrefixCase{"1e-99999999999999999999", 0, 23}));

TEST(Text, ANumberOfAnyLengthIsRead) {
  const std::string zeros(400, '0');
  EXPECT_EQ(ReadNumericPrefix("0." + zeros + "1E401").value, 1.0);
  EXPECT_EQ(ReadNumericPrefix("1" + zeros + "E-400").value, 1.0);
  EXPECT_EQ(ReadNumericPrefix("0." + zeros + "1").value, 0.0);
  EXPECT_EQ(ReadNumericPrefix("1" + zeros + ".5").value, HUGE_VAL);
}

}  // namespace
}  // namespace flanks
