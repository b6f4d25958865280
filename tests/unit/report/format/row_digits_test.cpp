#include "report/format/row_digits.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "report/format/number_texts.h"

namespace flanks {
namespace {

template <class Put>
std::string TextOf(const Put& put) {
  char text[kNumberRoom];
  char* const begin = text;
  return std::string(begin, put(begin));
}

struct NumberCase {
  double value;
  int decimals;
  std::string fixed, delimited;
};

// At .5 of the last place FixedField goes away from zero, a delimited field to the even digit.
TEST(RowDigits, HaveTheTextsOfBothForms) {
  const NumberCase cases[] = {
      {.05, 2, "       .05", "0.05"},
      {-1.5, 2, "     -1.50", "-1.50"},
      {.125, 2, "       .13", "0.12"},
      {.375, 2, "       .38", "0.38"},
      {-.001, 2, "       .00", "0.00"},
      {0, 0, "         0", "0"},
      {-12345.678, 1, "  -12345.7", "-12345.7"},
      {999999.99, 2, " 999999.99", "999999.99"},
      {1234567, 2, "1234567.00", "???"},
      {-123456.78, 2, "-123456.78", "-123456.78"},
      {1.0 / 3, 9, ".333333333", "0.333333333"},
      {2.5, 0, "         3", "2"},
      {std::numeric_limits<double>::quiet_NaN(), 2, "         ?", "???"},
  };
  for (const NumberCase& c : cases) {
    EXPECT_EQ(TextOf([&](char* at) { return PutFixedDecimals(at, c.value, c.decimals); }), c.fixed);
    EXPECT_EQ(TextOf([&](char* at) { return PutDecimals(at, c.value, c.decimals); }), c.delimited);
  }
}

TEST(RowDigits, WholeNumbersTakeTenColumnsOrMore) {
  const std::int32_t least = std::numeric_limits<std::int32_t>::min();
  for (const std::int32_t value : {0, 7, -7, 99999999, -99999999, 100000000, 2147483647, least}) {
    const std::string digits = std::to_string(value);
    const std::string blanks(digits.size() < 10 ? 10 - digits.size() : 0, ' ');
    EXPECT_EQ(TextOf([&](char* at) { return PutWhole(at, value); }), digits);
    EXPECT_EQ(TextOf([&](char* at) { return PutFixedWhole(at, value); }), blanks + digits);
  }
}

// 99.99 is in the table; 100.00, 1.25 with five decimals (more than seven bytes) and what is no
// number are not.
TEST(NumberTexts, HoldWhatRoundsBelowTenThousandUnits) {
  NumberTexts texts(NumberForm::delimited, 2);
  const double values[] = {99.99, 99.995, -99.99, -1e9, std::numeric_limits<double>::quiet_NaN()};
  NumberTexts::Index indexes[5];
  texts.Look(values, indexes);
  EXPECT_EQ(TextOf([&](char* at) { return texts.PutDelimited(at, indexes[0]); }), "99.99");
  EXPECT_EQ(TextOf([&](char* at) { return texts.PutDelimited(at, indexes[2]); }), "-99.99");
  char text[kNumberRoom];
  for (const int outside : {1, 3, 4})
    EXPECT_EQ(texts.PutDelimited(text, indexes[outside]), nullptr) << outside;
  NumberTexts five(NumberForm::delimited, 5);
  const double shortAndLong[] = {.09999, -.09999};
  five.Look(shortAndLong, {indexes, 2});
  EXPECT_EQ(TextOf([&](char* at) { return five.PutDelimited(at, indexes[0]); }), "0.09999");
  EXPECT_EQ(five.PutDelimited(text, indexes[1]), nullptr);
}

}  // namespace
}  // namespace flanks
