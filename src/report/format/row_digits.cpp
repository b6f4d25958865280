#include "report/format/row_digits.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <string>

#include "base/byte_order.h"
#include "report/format/delimited.h"
#include "report/format/fixed_field.h"

namespace flanks {
namespace {

constexpr double kEightDigits = 1E8;  // what EightDigits can take is below
constexpr double kDelimitedLimit = 1E6;
constexpr int kFastDecimals = 6;
constexpr std::uint64_t kZeros = 0x3030303030303030;        // "00000000"
constexpr std::uint64_t kZeroToBlank = 0x1010101010101010;  // '0' less ' ', in each byte
constexpr double kTenTo[] = {1E0, 1E1, 1E2, 1E3, 1E4, 1E5, 1E6, 1E7, 1E8, 1E9};
// Added to a number below 2^51 it leaves no place behind the point: the processor rounds half to
// even.
constexpr double kNoFraction = 4503599627370496.0;  // 2^52

void Store8(char* at, std::uint64_t bytes) {
  StoreLittle(reinterpret_cast<std::uint8_t*>(at), bytes);
}

// The eight digits of a number below 10^8, the first in the lowest byte, each 0 to 9.  Halves of
// four digits, then pairs, then digits are taken apart side by side in one word: dividing by 100
// (times 10486 / 2^20, exact below 10,000) and by 10 (times 103 / 2^10, exact below 100).
std::uint64_t EightDigits(std::uint32_t number) {
  const std::uint64_t halves = number / 10000 | static_cast<std::uint64_t>(number % 10000) << 32;
  const std::uint64_t hundreds = (halves * 10486 >> 20) & 0x0000007F0000007F;
  const std::uint64_t pairs = hundreds | (halves - 100 * hundreds) << 16;
  const std::uint64_t tens = (pairs * 103 >> 10) & 0x000F000F000F000F;
  return tens | (pairs - 10 * tens) << 8;
}

// How many of the first seven digits are leading zeros.
int LeadingZeros(std::uint64_t digits) {
  return std::countr_zero(digits | std::uint64_t{1} << 56) / 8;
}

// The first `bytes` bytes of a word; 0 to 7.
std::uint64_t FirstBytes(int bytes) {
  return (std::uint64_t{1} << (8 * bytes)) - 1;
}

char* PutText(char* at, const std::string& text) {
  std::memcpy(at, text.data(), text.size());
  return at + text.size();
}

}  // namespace

char* PutWhole(char* at, std::int32_t value) {
  const bool negative = value < 0;
  const std::uint32_t size =
      negative ? 0u - static_cast<std::uint32_t>(value) : static_cast<std::uint32_t>(value);
  if (size >= 100'000'000) return PutText(at, std::to_string(value));
  const std::uint64_t digits = EightDigits(size);
  const int zeros = LeadingZeros(digits);
  *at = '-';
  at += negative ? 1 : 0;
  Store8(at, (digits | kZeros) >> (8 * zeros));
  return at + 8 - zeros;
}

char* PutFixedWhole(char* at, std::int32_t value) {
  const bool negative = value < 0;
  const std::uint32_t size =
      negative ? 0u - static_cast<std::uint32_t>(value) : static_cast<std::uint32_t>(value);
  if (size >= 100'000'000) {
    const std::string text = std::to_string(value);
    const std::size_t blanks = text.size() < kFieldWidth ? kFieldWidth - text.size() : 0;
    std::memset(at, ' ', blanks);
    return PutText(at + blanks, text);
  }
  const std::uint64_t digits = EightDigits(size);
  const int zeros = LeadingZeros(digits);
  at[0] = at[1] = ' ';
  Store8(at + 2, (digits | kZeros) - (kZeroToBlank & FirstBytes(zeros)));
  if (negative) at[1 + zeros] = '-';
  return at + kFieldWidth;
}

char* PutFixedDecimals(char* at, double value, int decimals) {
  double size = std::abs(value);
  for (int decimal = 0; decimal < decimals; ++decimal) size *= 10;
  size += 0.5;
  if (!(size < kEightDigits) || decimals > kFastDecimals || decimals == 0) {
    std::string text;
    AppendFixedField(text, value, kFieldWidth, decimals);
    return PutText(at, text);
  }
  const auto number = static_cast<std::uint32_t>(size);
  const std::uint64_t digits = EightDigits(number);
  // Columns: a place for a sign, the digits before the point, the point, the decimals.
  const int before = 8 - decimals;
  const int zeros = std::min(LeadingZeros(digits), before);
  const std::uint64_t front = FirstBytes(before);
  const std::uint64_t text = (digits | kZeros) - (kZeroToBlank & FirstBytes(zeros));
  at[0] = ' ';
  Store8(at + 1, (text & front) | std::uint64_t{'.'} << (8 * before) | (text & ~front) << 8);
  at[9] = static_cast<char>(text >> 56);
  // The last blank is the sign's place.
  at[zeros] = value < 0 && number != 0 ? '-' : ' ';
  return at + kFieldWidth;
}

char* PutDecimals(char* at, double value, int decimals) {
  const double size = std::abs(value) * kTenTo[decimals];
  if (!(std::abs(value) < kDelimitedLimit) || !(size < kEightDigits - 1) ||
      decimals > kFastDecimals)
    return PutText(at, DelimitedDecimals(value, decimals));
  const auto number = static_cast<std::uint32_t>((size + kNoFraction) - kNoFraction);
  const std::uint64_t digits = EightDigits(number);
  *at = '-';
  at += value < 0 && number != 0 ? 1 : 0;
  const std::uint64_t text = digits | kZeros;
  if (decimals == 0) {
    const int zeros = LeadingZeros(digits);
    Store8(at, text >> (8 * zeros));
    return at + 8 - zeros;
  }
  const int before = 8 - decimals;
  const int zeros = std::min(LeadingZeros(digits), before - 1);  // one digit stays
  const std::uint64_t front = FirstBytes(before);
  const std::uint64_t pointed =
      (text & front) | std::uint64_t{'.'} << (8 * before) | (text & ~front) << 8;
  Store8(at, pointed >> (8 * zeros));
  at[8 - zeros] = static_cast<char>(text >> 56);
  return at + 9 - zeros;
}

}  // namespace flanks
