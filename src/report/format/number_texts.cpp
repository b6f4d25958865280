#include "report/format/number_texts.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "report/format/row_digits.h"

namespace flanks {
namespace {

constexpr std::size_t kFixedColumns = 10;
constexpr std::size_t kFixedText = 8;               // of these the last
constexpr std::size_t kDelimitedText = 7;           // at most
constexpr double kNoFraction = 4503599627370496.0;  // 2^52: see row_digits.cpp

// The table's entry of a number that takes the text from `begin` to `end`; 0 when it does not fit.
std::uint64_t FixedEntry(const char* begin, const char* end) {
  if (end - begin != kFixedColumns || begin[0] != ' ' || begin[1] != ' ') return 0;
  std::uint8_t bytes[kFixedText];
  std::memcpy(bytes, begin + 2, kFixedText);
  return LoadLittle<std::uint64_t>(bytes);
}

std::uint64_t DelimitedEntry(const char* begin, const char* end) {
  const auto length = static_cast<std::size_t>(end - begin);
  if (length > kDelimitedText) return 0;
  std::uint8_t bytes[kFixedText] = {};
  std::memcpy(bytes, begin, length);
  bytes[kDelimitedText] = static_cast<std::uint8_t>(length);
  return LoadLittle<std::uint64_t>(bytes);
}

}  // namespace

NumberTexts::NumberTexts(NumberForm form, int decimals)
    : form_(form), decimals_(decimals), texts_(2 * kNumbers) {
  const double unit = std::pow(10.0, -decimals);
  char text[kNumberRoom];
  for (std::int32_t number = 1 - kNumbers; number < kNumbers; ++number) {
    // Within a tenth of a unit of the number, so that it rounds to it in either way.
    const double value = number * unit;
    std::uint64_t& entry = texts_[static_cast<std::size_t>(number + kNumbers)];
    if (form == NumberForm::fixed) {
      entry = FixedEntry(text, decimals == 0 ? PutFixedWhole(text, number)
                                             : PutFixedDecimals(text, value, decimals));
    } else {
      entry = DelimitedEntry(
          text, decimals == 0 ? PutWhole(text, number) : PutDecimals(text, value, decimals));
    }
  }
}

// As the functions of row_digits.h do it, to the bit.
void NumberTexts::Scale(std::span<const double> values) {
  sizes_.resize(values.size());
  double* const sizes = sizes_.data();
  const std::size_t count = values.size();
  for (std::size_t i = 0; i < count; ++i) sizes[i] = std::abs(values[i]);
  if (form_ == NumberForm::fixed) {
    for (int decimal = 0; decimal < decimals_; ++decimal)
      for (std::size_t i = 0; i < count; ++i) sizes[i] *= 10;
    for (std::size_t i = 0; i < count; ++i) sizes[i] += 0.5;
    return;
  }
  double power = 1.0;
  for (int decimal = 0; decimal < decimals_; ++decimal) power *= 10;
  for (std::size_t i = 0; i < count; ++i) sizes[i] = (sizes[i] * power + kNoFraction) - kNoFraction;
}

void NumberTexts::Look(std::span<const double> values, std::span<Index> indexes) {
  Scale(values);
  const double* const sizes = sizes_.data();
  const double* const from = values.data();
  Index* const to = indexes.data();
  const std::size_t count = values.size();
  for (std::size_t i = 0; i < count; ++i) {
    const bool inside = sizes[i] < kNumbers;
    const auto size = static_cast<Index>(inside ? sizes[i] : 0.0);
    const Index place = (from[i] < 0 ? -size : size) + kNumbers;
    to[i] = inside ? place : kOutside;
  }
}

}  // namespace flanks
