#include "base/text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>

namespace flanks {

namespace {

// The place behind the digits that begin at `at`.
std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

bool IsSign(char c) {
  return c == '+' || c == '-';
}

// The value of digits around a point, in decimal, that fits no 64-bit number: infinite or 0.
// `exponent` is the text behind the exponent letter and may be empty.
double ValueOutOfRange(std::string_view mantissa, std::string_view exponent) {
  const std::size_t firstDigit = mantissa.find_first_not_of("0.");
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  // The power of ten of the first digit that counts; only its sign matters once the exponent is in.
  auto power = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(firstDigit);
  if (!exponent.empty()) {
    const bool negative = exponent.front() == '-';
    if (IsSign(exponent.front())) exponent.remove_prefix(1);
    std::int64_t size = 0;
    const auto read = std::from_chars(exponent.data(), exponent.data() + exponent.size(), size);
    if (read.ec != std::errc{}) size = std::numeric_limits<std::int32_t>::max();
    // No mantissa is long enough to outweigh an exponent of this size.
    size = std::min<std::int64_t>(size, std::int64_t{1} << 60);
    power += negative ? -size : size;
  }
  return power > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

}  // namespace

std::string_view TrimLeft(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(' ');
  return begin == std::string_view::npos ? std::string_view() : text.substr(begin);
}

std::string_view TrimRight(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string_view Trim(std::string_view text) {
  return TrimRight(TrimLeft(text));
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = UpperCase(c);
  return upper;
}

std::string_view Mid(std::string_view text, std::size_t start, std::size_t length) {
  if (start < 1 || start > text.size()) return {};
  return text.substr(start - 1, length);
}

void ReplaceCharacter(std::string& text, char from, char to) {
  std::replace(text.begin(), text.end(), from, to);
}

bool FieldCursor::Next(std::string_view& field) {
  if (ended_) return false;
  const std::size_t end = rest_.find(separator_);
  field = Trim(rest_.substr(0, end));
  ended_ = end == std::string_view::npos;
  rest_ = ended_ ? std::string_view() : rest_.substr(end + 1);
  return true;
}

std::vector<std::string_view> CommaFields(std::string_view text) {
  std::vector<std::string_view> fields;
  FieldCursor cursor(text);
  std::string_view field;
  while (cursor.Next(field)) fields.push_back(field);
  return fields;
}

NumericPrefix ReadNumericPrefix(std::string_view text) {
  std::size_t at = text.size() - TrimLeft(text).size();
  const bool negative = at < text.size() && text[at] == '-';
  if (at < text.size() && IsSign(text[at])) ++at;

  const std::size_t mantissaBegin = at;
  at = SkipDigits(text, at);
  std::size_t digits = at - mantissaBegin;
  if (at < text.size() && text[at] == '.') {
    const std::size_t fractionEnd = SkipDigits(text, at + 1);
    digits += fractionEnd - at - 1;
    at = fractionEnd;
  }
  if (digits == 0) return {};
  const std::string_view mantissa = text.substr(mantissaBegin, at - mantissaBegin);

  std::string_view exponent;
  if (at < text.size() && (UpperCase(text[at]) == 'E' || UpperCase(text[at]) == 'D')) {
    const std::size_t exponentBegin = at + 1;
    std::size_t digitsBegin = exponentBegin;
    if (digitsBegin < text.size() && IsSign(text[digitsBegin])) ++digitsBegin;
    const std::size_t exponentEnd = SkipDigits(text, digitsBegin);
    if (exponentEnd > digitsBegin) {
      exponent = text.substr(exponentBegin, exponentEnd - exponentBegin);
      at = exponentEnd;
    }
  }

  // from_chars knows the letter E alone and takes no locale, so that "." is always the point.
  std::string decimal(mantissa);
  if (!exponent.empty()) decimal.append("E").append(exponent);
  NumericPrefix number{0.0, at};
  const auto read = std::from_chars(decimal.data(), decimal.data() + decimal.size(), number.value);
  if (read.ec != std::errc{}) number.value = ValueOutOfRange(mantissa, exponent);
  if (negative && number.value != 0.0) number.value = -number.value;
  return number;
}

}  // namespace flanks
