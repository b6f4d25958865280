// Whole numbers: value and fault.
//
// There are two ways to read a whole number.  `ParseInteger` is forgiving: it takes the absolute
// value of the number at the start of a text, whatever follows ("3x" is 3, "-12" is 12).
// `ParseElementNumber` is strict: an element number is digits alone, so that "3a" is never taken
// for element 3.
//
// Neither ends or reports anything: the caller turns the fault into a fault of the Specification,
// or only counts it.
//
// Tested by tests/unit/base/parse_integer_test.cpp.
#ifndef FLANKS_BASE_PARSE_INTEGER_H
#define FLANKS_BASE_PARSE_INTEGER_H

#include <cstdint>
#include <string_view>

namespace flanks {

enum class NumberFault : std::uint8_t {
  none,
  notNumeric,  // no number, or for an element number anything but digits
  tooLarge,    // above the limit; the value is 0
  notWhole,    // the value is what stands before the point
};

struct WholeNumber {
  std::int32_t value = 0;
  NumberFault fault = NumberFault::none;
};

// The largest element number: one less than the largest 32-bit integer.
constexpr std::int32_t kLargestElementNumber = 2147483646;

// The absolute value of the numeric prefix of `text`.  The tests come in this order: a zero from a
// text without the digit 0 is notNumeric, a value above `limit` is tooLarge, a fraction is
// notWhole.
[[nodiscard]] WholeNumber ParseInteger(std::string_view text, std::int32_t limit);

// An element number: digits alone between blanks, leading zeros allowed, 0 to
// kLargestElementNumber.
[[nodiscard]] WholeNumber ParseElementNumber(std::string_view text);

}  // namespace flanks

#endif  // FLANKS_BASE_PARSE_INTEGER_H
