// The fast texts of rows beside FixedField and the delimited form, over random values: the same to
// the byte, whether a number is in a table or not.
#include "report/format/row_digits.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "report/format/delimited.h"
#include "report/format/fixed_field.h"
#include "report/format/number_texts.h"

namespace flanks {
namespace {

constexpr unsigned kSeed = 20240611;
constexpr int kValues = 4000;

// Numbers of all sizes, near ties, whole, and now and then of the other kind.
std::vector<double> RandomValues(int decimals, std::mt19937& random) {
  std::normal_distribution<double> normal(0.0, 1.0);
  std::uniform_real_distribution<double> size(-8.0, 12.0);
  std::uniform_int_distribution<int> units(-20000, 20000);
  std::vector<double> values;
  const double unit = std::pow(10.0, -decimals);
  for (int n = 0; n < kValues / 4; ++n) {
    values.push_back(normal(random) * std::pow(10.0, size(random)));
    values.push_back(static_cast<float>(3 * normal(random)));
    values.push_back((units(random) + .5) * unit);
    values.push_back(units(random) * unit);
  }
  for (const double limit : {9999.0, 9999.5, 10000.0, 99999999.0, 99999999.5, 100000000.0})
    for (const double sign : {-1.0, 1.0})
      for (const double toward : {-1e300, 1e300}) {
        values.push_back(sign * limit * unit);
        values.push_back(std::nextafter(sign * limit * unit, toward));
      }
  for (const double odd : {0.0, -0.0, HUGE_VAL, -HUGE_VAL, std::nan("")}) values.push_back(odd);
  return values;
}

std::string TextTo(const char* begin, const char* end) {
  return {begin, end};
}
std::string Delimited(double value, int decimals) {
  return DelimitedDecimals(value, decimals);
}
std::string Fixed(double value, int decimals) {
  return FixedField(value, kFieldWidth, decimals);
}

TEST(RowDigitsOf, RandomValuesAreThoseOfTheFormatters) {
  std::mt19937 random(kSeed);
  char text[kNumberRoom];
  for (int decimals = 0; decimals <= 9; ++decimals) {
    for (const double value : RandomValues(decimals, random)) {
      ASSERT_EQ(TextTo(text, PutFixedDecimals(text, value, decimals)), Fixed(value, decimals))
          << value << " with " << decimals << ", seed " << kSeed;
      ASSERT_EQ(TextTo(text, PutDecimals(text, value, decimals)), Delimited(value, decimals))
          << value << " with " << decimals << ", seed " << kSeed;
    }
  }
}

TEST(NumberTextsOf, RandomValuesAreThoseOfTheFormatters) {
  std::mt19937 random(kSeed);
  char text[kNumberRoom];
  for (int decimals = 1; decimals <= 6; ++decimals) {
    NumberTexts fixed(NumberForm::fixed, decimals), delimited(NumberForm::delimited, decimals);
    const std::vector<double> values = RandomValues(decimals, random);
    std::vector<NumberTexts::Index> inFixed(values.size()), inDelimited(values.size());
    fixed.Look(values, inFixed);
    delimited.Look(values, inDelimited);
    int found = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (const char* end = fixed.PutFixed(text, inFixed[i])) {
        ++found;
        ASSERT_EQ(TextTo(text, end), Fixed(values[i], decimals))
            << values[i] << " with " << decimals << ", seed " << kSeed;
      }
      if (const char* end = delimited.PutDelimited(text, inDelimited[i])) {
        ASSERT_EQ(TextTo(text, end), Delimited(values[i], decimals))
            << values[i] << " with " << decimals << ", seed " << kSeed;
      }
    }
    EXPECT_GT(found, kValues / 4);
  }
}

TEST(NumberTextsOf, WholeNumbersAreTheirDigits) {
  const NumberTexts fixed(NumberForm::fixed, 0), delimited(NumberForm::delimited, 0);
  char text[kNumberRoom];
  for (std::int32_t value = -10'001; value <= 10'001; ++value) {
    const NumberTexts::Index index = NumberTexts::LookWhole(value);
    const bool inside = std::abs(value) < 10'000;
    const char* end = delimited.PutDelimited(text, index);
    ASSERT_EQ(end != nullptr, inside) << value;
    if (!inside) continue;
    ASSERT_EQ(TextTo(text, end), std::to_string(value));
    end = fixed.PutFixed(text, index);
    ASSERT_EQ(TextTo(text, end), Fixed(value, 0));
  }
}

}  // namespace
}  // namespace flanks
