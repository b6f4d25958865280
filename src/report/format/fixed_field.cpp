#include "report/format/fixed_field.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "base/single.h"
#include "report/format/decimal_digits.h"

namespace flanks {
namespace {

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kPlainLimit = 1E15;    // from here on a number's own text has an exponent
constexpr double kDecimalsLimit = 1E6;  // of DecimalsText
constexpr double kLongLimit = 9.2E18;   // below the largest 64-bit integer
constexpr int kFastDecimals = 20;       // more take the general way
constexpr std::string_view kNoNumber = "?";
constexpr std::string_view kTooLarge = "???";

// The absolute value times 10^decimals, and a half: its whole part is the rounded number.  A
// product beyond 64-bit range leaves the value as it was before it.
double ScaledSize(double value, int decimals) {
  double size = std::min(std::abs(value), kLargest);
  for (int decimal = 0; decimal < decimals && size <= kLargest / 10; ++decimal) size *= 10;
  return size + 0.5;
}

// The field of a number that needs more than the usual buffer or more places than there are.
// `size` is the scaled size.
std::string SlowField(double size, bool negative, std::size_t width, std::size_t decimals) {
  std::string text = PlainText(SignificantDigits(std::floor(size)));
  if (decimals > 0) {
    if (text.size() < decimals) text.insert(0, decimals - text.size(), '0');
    text.insert(text.size() - decimals, 1, '.');
  }
  if (negative) text.insert(0, 1, '-');
  if (text.size() <= width) return text.insert(0, width - text.size(), ' ');

  if (decimals == 0) text += '.';
  // How many integer digits are lost, plus 1; 0 when the point is still there.
  const std::size_t point = text.find('.');
  const std::size_t lost = point < width ? 0 : point - width + 1;
  text.resize(width);
  if (lost <= 1) return text;
  if (width > 2) {
    // Kept: a power of two digits shows its first one only (docs/quirks.md).
    text[width - 2] = 'E';
    text[width - 1] = std::to_string(lost + 1).front();
  } else if (width > 0) {
    text[width - 1] = '*';
  }
  return text;
}

}  // namespace

void AppendFixedField(std::string& text, double value, int width, int decimals) {
  decimals = std::abs(decimals);
  width = std::abs(width);
  if (decimals > 0) width = std::max(width, decimals + 1);
  const auto places = static_cast<std::size_t>(width);
  if (std::isnan(value)) {
    text.append(places - std::min<std::size_t>(places, 1), ' ');
    if (places > 0) text += kNoNumber;
    return;
  }
  const double size = ScaledSize(value, decimals);
  const bool negative = value < 0 && size >= 1;
  if (size >= kPlainLimit || decimals > kFastDecimals) {
    text += SlowField(size, negative, places, static_cast<std::size_t>(decimals));
    return;
  }

  // Written from the last digit to the first: at most 20 decimals and 15 digits before them.
  std::array<char, 40> buffer;
  char* const end = buffer.data() + buffer.size();
  char* at = end;
  auto rest = static_cast<std::uint64_t>(size);
  for (int decimal = 0; decimal < decimals; ++decimal) {
    *--at = static_cast<char>('0' + rest % 10);
    rest /= 10;
  }
  if (decimals > 0) *--at = '.';
  for (; rest > 0; rest /= 10) *--at = static_cast<char>('0' + rest % 10);
  if (at == end) *--at = '0';
  if (negative) *--at = '-';
  const auto length = static_cast<std::size_t>(end - at);
  if (length <= places) {
    text.append(places - length, ' ').append(at, length);
  } else {
    text += SlowField(size, negative, places, static_cast<std::size_t>(decimals));
  }
}

std::string FixedField(double value, int width, int decimals) {
  std::string text;
  AppendFixedField(text, value, width, decimals);
  return text;
}

std::string FixedFieldSingle(float value, int width, int decimals) {
  return FixedField(value, width, decimals);
}

std::string FixedFieldInteger(std::int16_t value, int width, int decimals) {
  return FixedField(value, width, decimals);
}

std::string NumberText(double value) {
  if (!std::isfinite(value) || value != std::floor(value)) return OneDecimalText(value);
  return PlainText(SignificantDigits(value));
}

std::string OneDecimalText(double value) {
  if (!std::isfinite(value)) return std::string(kNoNumber);
  const double shown = (value * 10 + 0.49999) * 0.1;
  if (!std::isfinite(shown)) return ".0";
  const DecimalDigits number = SignificantDigits(shown);
  if (number.exponent < -1 || number.exponent >= kSignificantDigits) return ".0";
  std::string text = PlainText(number);
  const std::size_t point = text.find('.');
  if (point == std::string::npos) return text == "0" ? ".0" : text + ".0";
  return text.substr(0, point + 2);
}

RoundedDigits RoundToDigits(double value, int decimals, int least) {
  RoundedDigits rounded;
  double power = 1;
  for (int decimal = 0; decimal < decimals; ++decimal) power *= 10;
  const double size = std::abs(value) * power;
  rounded.tooLarge = !(std::abs(value) < kDecimalsLimit) || !(size < kLongLimit);
  if (rounded.tooLarge) {
    rounded.digits = kTooLarge;
  } else {
    const auto whole = static_cast<std::int64_t>(std::nearbyint(size));  // half to even
    rounded.digits = std::to_string(whole);
    rounded.negative = value < 0 && whole != 0;
  }
  const auto places = static_cast<std::size_t>(std::max(least, 0));
  if (rounded.digits.size() < places) {
    rounded.digits.insert(0, places - rounded.digits.size(), '0');
  }
  return rounded;
}

std::string DecimalsText(double value, int decimals) {
  RoundedDigits rounded = RoundToDigits(value, decimals, decimals);
  if (decimals > 0) {
    rounded.digits.insert(rounded.digits.size() - static_cast<std::size_t>(decimals), 1, '.');
  }
  return rounded.negative ? "-" + rounded.digits : rounded.digits;
}

std::string DecimalsText2(double value) {
  return DecimalsText(value, 2);
}
std::string DecimalsText4(double value) {
  return DecimalsText(value, 4);
}

std::string SmallText(float value) {
  if (!std::isfinite(value)) return std::string(kNoNumber);
  const DecimalDigits number = ShortestDigits(value);
  constexpr int kFirstSmallExponent = -5;  // 1E-5 is written with an exponent, 1E-4 is not
  if (number.exponent > kFirstSmallExponent) return PlainText(number);
  // One is added, away from zero, and its digit taken out of the text again.
  const float lifted = Single(value < 0 ? value - 1.0 : value + 1.0);
  std::string text = PlainText(ShortestDigits(lifted));
  if (lifted == 1.0f || lifted == -1.0f) return "0";
  text[text.find('1')] = '0';
  return text;
}

std::int16_t RoundInteger(double value) {
  constexpr std::int32_t kLimit = 32760;
  return static_cast<std::int16_t>(std::clamp(RoundLong(value), -kLimit, kLimit));
}

std::int32_t RoundLong(double value) {
  if (std::isnan(value)) return 0;
  constexpr double kLow = std::numeric_limits<std::int32_t>::min();
  constexpr double kHigh = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(value < 0 ? value - 0.5 : value + 0.5, kLow, kHigh));
}

}  // namespace flanks
