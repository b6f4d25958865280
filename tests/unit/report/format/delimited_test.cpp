#include "report/format/delimited.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace flanks {
namespace {

const FieldForm kFixed{};
const FieldForm kCommas{","};

std::string Real(const FieldForm& form, float value, int decimals) {
  std::string row;
  FieldSingle(row, form, value, decimals);
  return row;
}
std::string Text(const FieldForm& form, std::string_view text) {
  std::string row;
  FieldText(row, form, text);
  return row;
}

TEST(DelimitedDecimals, HaveADigitBeforeThePointAndRoundHalfToEven) {
  EXPECT_EQ(DelimitedDecimals(.05, 2), "0.05");
  EXPECT_EQ(DelimitedDecimals(-1.5, 2), "-1.50");
  EXPECT_EQ(DelimitedDecimals(.125, 2), "0.12");
  EXPECT_EQ(DelimitedDecimals(.375, 2), "0.38");
  EXPECT_EQ(DelimitedDecimals(-.001, 2), "0.00") << "no sign on a value that rounds to zero";
  EXPECT_EQ(DelimitedDecimals(2.5, 0), "2");
  EXPECT_EQ(DelimitedDecimals(999999.5, 4), "999999.5000");
}

TEST(DelimitedDecimals, ShowQuestionMarksFromAMillionOn) {
  EXPECT_EQ(DelimitedDecimals(1234567, 2), "???");
  EXPECT_EQ(DelimitedDecimals(-1000000, 9), "???");
  EXPECT_EQ(DelimitedDecimals(std::numeric_limits<double>::quiet_NaN(), 2), "???");
  EXPECT_EQ(DelimitedDecimals(1, 30), "???") << "more decimals than a 64-bit number holds";
}

TEST(FixedFields, TakeTenColumns) {
  std::string row;
  FieldInteger(row, kFixed, -5);
  FieldLong(row, kFixed, 123);
  FieldSingle2(row, kFixed, 0.05f);
  FieldSingle4(row, kFixed, -0.5f);
  EXPECT_EQ(row, "        -5       123       .05    -.5000");
  EXPECT_EQ(Real(kFixed, 1.5f, 1), "       1.5");
  row.clear();
  FieldLong(row, kFixed, -2147483647);
  EXPECT_EQ(row, "-2147483647") << "digits of a whole number are never cut";
}

TEST(FixedFields, RightAlignTextsByDisplayWidth) {
  EXPECT_EQ(Text(kFixed, "abc"), "       abc");
  EXPECT_EQ(Text(kFixed, "abcdefghijkl"), "abcdefghij");
  EXPECT_EQ(Text(kFixed, "caf\xC3\xA9"), "      caf\xC3\xA9");
  EXPECT_EQ(Text({" ", Utf8Encoded::yes}, "\xC0\x80"), "         \xC0\x80");
  EXPECT_EQ(Text({"", Utf8Encoded::detect}, "abc"), "       abc") << "no separator: fixed too";
}

TEST(DelimitedFields, EndInTheSeparator) {
  std::string row;
  FieldInteger(row, kCommas, -5);
  FieldLong(row, kCommas, 123456789);
  FieldSingle2(row, kCommas, -0.5f);
  FieldSingle4(row, kCommas, 2);
  FieldText(row, kCommas, "  a b ");
  EXPECT_EQ(row, "-5,123456789,-0.50,2.0000,a b ,");
  EXPECT_EQ(Real({"\t"}, 0.25f, 1), "0.2\t");
}

TEST(SettingWords, NameSeparatorsByTheirFirstLetter) {
  EXPECT_EQ(SeparatorNamed("Tabs"), "\t");
  EXPECT_EQ(SeparatorNamed("Yes"), ",");
  EXPECT_EQ(SeparatorNamed("commas"), ",");
  EXPECT_EQ(SeparatorNamed("Semicolons"), ";");
  EXPECT_EQ(SeparatorNamed("No"), " ");
  EXPECT_EQ(SeparatorNamed("Blank"), " ");
  EXPECT_EQ(SeparatorNamed("Fixed"), " ");
  EXPECT_EQ(SeparatorNamed(""), " ");
  EXPECT_EQ(SeparatorNamed("|"), " ");
  EXPECT_EQ(SeparatorNamed("|", "|"), "|");
}

TEST(SettingWords, NameQuotesByTheirFirstLetter) {
  EXPECT_EQ(QuoteNamed("Double-quotes"), "\"");
  EXPECT_EQ(QuoteNamed("q"), "\"");
  EXPECT_EQ(QuoteNamed("Apostrophes"), "'");
  EXPECT_EQ(QuoteNamed("Commas"), ",");
  EXPECT_EQ(QuoteNamed("Semicolons"), ";");
  EXPECT_EQ(QuoteNamed("Blanks"), " ");
  EXPECT_EQ(QuoteNamed("None", "x"), "");
  EXPECT_EQ(QuoteNamed(""), "");
  EXPECT_EQ(QuoteNamed("%", "%"), "%");
}

}  // namespace
}  // namespace flanks
