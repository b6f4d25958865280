#include "base/parse_integer.h"

#include <charconv>
#include <cmath>

#include "base/text.h"

namespace flanks {

WholeNumber ParseInteger(std::string_view text, std::int32_t limit) {
  const double size = std::abs(ReadNumericPrefix(text).value);
  const bool hasDigitZero = text.find('0') != std::string_view::npos;
  if (size == 0.0 && !hasDigitZero) return {0, NumberFault::notNumeric};
  if (size > limit) return {0, NumberFault::tooLarge};
  const auto whole = static_cast<std::int32_t>(size);
  return {whole, whole == size ? NumberFault::none : NumberFault::notWhole};
}

WholeNumber ParseElementNumber(std::string_view text) {
  const std::string_view digits = Trim(text);
  std::int32_t value = 0;
  // from_chars would take a minus sign, which an element number must not have.
  if (digits.empty() || !IsDigit(digits.front())) return {0, NumberFault::notNumeric};
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (read.ptr != digits.data() + digits.size()) return {0, NumberFault::notNumeric};
  if (read.ec != std::errc{} || value > kLargestElementNumber) return {0, NumberFault::tooLarge};
  return {value, NumberFault::none};
}

}  // namespace flanks
