// Laws of the formatter that hold for all values.  The seed of a failing run is printed; setting
// FLANKS_SEED repeats it.

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "base/utf8.h"
#include "report/format/clip_field.h"
#include "report/format/fixed_field.h"
#include "report/format/join_number.h"
#include "report/format/key_sort.h"
#include "report/format/sort_key.h"

namespace flanks {
namespace {

constexpr int kTrials = 20000;

class FormatLaws : public ::testing::Test {
 protected:
  FormatLaws() : seed_(Seed()), random_(seed_) {}

  static std::uint64_t Seed() {
    const char* const given = std::getenv("FLANKS_SEED");
    return given != nullptr ? std::strtoull(given, nullptr, 10) : std::random_device{}();
  }
  std::string SeedText() const { return "FLANKS_SEED=" + std::to_string(seed_); }

  int Whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

  // Any normal 32-bit number, all sizes alike.
  float NormalFloat() {
    for (;;) {
      const float value = std::bit_cast<float>(static_cast<std::uint32_t>(random_()));
      if (std::isnormal(value)) return value;
    }
  }

  // Measures, scores and huge values, and often a value that lies on or beside a tie.
  double ReportValue() {
    const double size = std::pow(10.0, std::uniform_real_distribution<double>(-6, 17)(random_));
    const double value = std::uniform_real_distribution<double>(-size, size)(random_);
    return Whole(0, 3) == 0 ? std::round(value * 8) / 8 : value;
  }

  std::uint64_t seed_;
  std::mt19937_64 random_;
};

TEST_F(FormatLaws, FixedFieldIsExactlyAsWideAsItsField) {
  for (int trial = 0; trial < kTrials; ++trial) {
    const double value = Whole(0, 9) == 0 ? NormalFloat() : ReportValue();
    const int width = Whole(0, 25), decimals = Whole(0, 12);
    const int raised = decimals > 0 ? std::max(width, decimals + 1) : width;
    const std::string field = FixedField(value, width, decimals);
    ASSERT_EQ(field.size(), static_cast<std::size_t>(raised))
        << value << " in " << width << "." << decimals << ": " << field << " " << SeedText();
  }
}

TEST_F(FormatLaws, WhatFitsAFixedFieldParsesBack) {
  for (int trial = 0; trial < kTrials; ++trial) {
    const double value = ReportValue();
    const int decimals = Whole(0, 6);
    const std::string field = FixedField(value, 40, decimals);
    const NumericPrefix back = ReadNumericPrefix(field);
    ASSERT_EQ(back.length, field.size()) << field << " " << SeedText();
    // Half a unit of the last decimal, and what 15 digits and the product by ten lose.
    const double tolerance = 0.5 * std::pow(10.0, -decimals) + std::abs(value) * 1E-14;
    ASSERT_LE(std::abs(back.value - value), tolerance) << field << " " << SeedText();
  }
}

// The rule as it is told, written with the library's formatting: digits of the rounded product, a
// point, a sign.
std::string PlainlyFormatted(double value, int decimals) {
  double size = std::fabs(value);
  for (int decimal = 0; decimal < decimals; ++decimal) size *= 10;
  size = std::floor(size + 0.5);
  char digits[64];
  std::snprintf(digits, sizeof digits, "%0*.0f", decimals > 0 ? decimals : 1, size);
  std::string text = digits;
  if (decimals > 0) text.insert(text.size() - static_cast<std::size_t>(decimals), ".");
  return value < 0 && size > 0 ? "-" + text : text;
}

TEST_F(FormatLaws, FixedFieldAgreesWithTheLibraryOnPlainNumbers) {
  int compared = 0;
  for (int trial = 0; trial < kTrials; ++trial) {
    const double value = ReportValue();
    const int decimals = Whole(0, 6);
    if (std::abs(value) * std::pow(10.0, decimals) > 9E14) continue;
    const std::string plain = PlainlyFormatted(value, decimals);
    const auto width = static_cast<int>(plain.size()) + Whole(0, 5);
    const std::string field = FixedField(value, width, decimals);
    ASSERT_EQ(TrimLeft(field), plain) << SeedText();
    ++compared;
  }
  EXPECT_GT(compared, kTrials / 2);
}

TEST_F(FormatLaws, FloatKeyKeepsTheOrderOfNormalNumbers) {
  for (int trial = 0; trial < kTrials; ++trial) {
    const float a = NormalFloat();
    // A near neighbour every other time.
    const float b = Whole(0, 1) == 0 ? NormalFloat() : std::nextafter(a, NormalFloat());
    const float low = std::min(a, b), high = std::max(a, b);
    const std::string lowKey = FloatKey(low), highKey = FloatKey(high);
    ASSERT_EQ(lowKey.size(), 9U);
    ASSERT_LE(lowKey, highKey) << low << " and " << high << " " << SeedText();
    if (low < high && high >= 0) {
      ASSERT_LT(lowKey, highKey) << low << " and " << high << " " << SeedText();
    }
  }
}

TEST_F(FormatLaws, WholeNumberKeysKeepTheirOrder) {
  for (int trial = 0; trial < kTrials; ++trial) {
    const int a = Whole(0, 2147483647), b = Whole(0, 2147483647);
    ASSERT_EQ(a < b, Swapl(MKLhex(a)) < Swapl(MKLhex(b))) << SeedText();
    if (a > 0 && b > 0) {
      ASSERT_EQ(a < b, Swapl(MKLhex(-b)) < Swapl(MKLhex(-a))) << SeedText();
    }
    ASSERT_EQ(CVLhex(Swapl(Swapl(MKLhex(a)))), a) << SeedText();
  }
}

TEST_F(FormatLaws, FreeNumberReadsBackAsTheSameNumber) {
  for (int trial = 0; trial < kTrials; ++trial) {
    const float value = NormalFloat();
    if (std::abs(value) < 1E-5f) continue;
    const std::string text = FreeNumber(value);
    float back = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), back);
    ASSERT_EQ(read.ptr, text.data() + text.size()) << text << " " << SeedText();
    ASSERT_EQ(back, value) << text << " " << SeedText();
    ASSERT_EQ(text.find_first_not_of("-.0123456789"), std::string::npos) << text;
    ASSERT_FALSE(text.starts_with("0.") || text.starts_with("-0.")) << text << " " << SeedText();
  }
}

TEST_F(FormatLaws, AClippedFieldKeepsItsWidthAndItsEncoding) {
  const std::string_view characters[] = {"a", " ", "é", "ß", "日", "語", "\xF0\x9F\x98\x80"};
  for (int trial = 0; trial < kTrials; ++trial) {
    std::string text;
    for (int n = Whole(0, 12); n > 0; --n) text += characters[Whole(0, 6)];
    const int width = Whole(0, 20);
    const std::string field = ClipField(text, width);
    ASSERT_EQ(DisplayWidth(field), width) << '"' << text << "\" " << SeedText();
    const bool ascii =
        std::all_of(field.begin(), field.end(), [](unsigned char c) { return c < 128; });
    ASSERT_TRUE(ascii || IsUtf8(field)) << '"' << text << "\" " << SeedText();
  }
}

TEST_F(FormatLaws, TheKeySortAgreesWithTheLibrary) {
  for (int trial = 0; trial < 100; ++trial) {
    const int count = Whole(0, 300);
    KeyArray keys("Failure (3)! Sort length error.");
    std::vector<std::string> expected;
    for (int n = 1; n <= count; ++n) {
      expected.push_back(FloatKey(static_cast<float>(Whole(-9, 9))) + Swapl(MKLhex(n)));
      keys.Add(expected.back());
    }
    keys.Sort();
    std::sort(expected.begin(), expected.end());
    ASSERT_TRUE(std::equal(keys.begin(), keys.end(), expected.begin(), expected.end()))
        << SeedText();
  }
}

}  // namespace
}  // namespace flanks
