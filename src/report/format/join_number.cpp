#include "report/format/join_number.h"

#include <cmath>

#include "base/text.h"
#include "report/format/decimal_digits.h"
#include "report/format/fixed_field.h"

namespace flanks {
namespace {

bool TakesBlankBehind(std::string_view text) {
  if (text.empty()) return false;
  const char last = text.back();
  // Bytes above 127 are parts of letters.
  if (IsLetter(last) || IsDigit(last) || static_cast<unsigned char>(last) > 127) return true;
  if (last == '=' || last == ':' || last == '!') return true;
  return text.ends_with(" -");
}

}  // namespace

std::string JoinNumber(std::string_view text, std::string_view number) {
  std::string joined(text);
  if (TakesBlankBehind(text)) joined += ' ';
  return joined.append(number);
}

std::string JoinNumber(std::string_view text, float number) {
  return JoinNumber(text, FreeNumber(number));
}

std::string FreeNumber(float value) {
  if (!std::isfinite(value)) return SmallText(value);
  const DecimalDigits number = ShortestDigits(value);
  constexpr int kLeastExponent = -5;
  return number.exponent < kLeastExponent ? SmallText(value) : PlainText(number);
}

}  // namespace flanks
