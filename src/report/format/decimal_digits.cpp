#include "report/format/decimal_digits.h"

#include <array>
#include <charconv>
#include <string_view>

namespace flanks {
namespace {

// Takes a text like "-1.25e-07" apart.
DecimalDigits Parse(std::string_view scientific) {
  DecimalDigits number;
  number.negative = scientific.front() == '-';
  if (number.negative) scientific.remove_prefix(1);
  const std::size_t mantissaEnd = scientific.find('e');
  number.digits.clear();
  for (const char c : scientific.substr(0, mantissaEnd)) {
    if (c != '.') number.digits += c;
  }
  number.digits.erase(number.digits.find_last_not_of('0') + 1);
  if (number.digits.empty()) return {};
  scientific.remove_prefix(mantissaEnd + 1);
  if (scientific.front() == '+') scientific.remove_prefix(1);  // from_chars takes no plus sign
  std::from_chars(scientific.data(), scientific.data() + scientific.size(), number.exponent);
  return number;
}

using Buffer = std::array<char, 40>;

}  // namespace

DecimalDigits ShortestDigits(float value) {
  Buffer text;
  const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::scientific);
  return Parse({text.begin(), end.ptr});
}

DecimalDigits SignificantDigits(double value) {
  Buffer text;
  const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::scientific,
                                 kSignificantDigits - 1);
  return Parse({text.begin(), end.ptr});
}

std::string PlainText(const DecimalDigits& number) {
  std::string text = number.negative ? "-" : "";
  if (number.exponent < 0) {
    const auto zeros = static_cast<std::size_t>(-number.exponent - 1);
    return text.append(".").append(zeros, '0').append(number.digits);
  }
  const auto wholeDigits = static_cast<std::size_t>(number.exponent) + 1;
  if (number.digits.size() <= wholeDigits) {
    return text.append(number.digits).append(wholeDigits - number.digits.size(), '0');
  }
  text.append(number.digits, 0, wholeDigits).append(".");
  return text.append(number.digits, wholeDigits);
}

}  // namespace flanks
