// The texts of small numbers, made once: for files that write millions of numbers of one kind.
//
// All numbers that round to less than 10,000 units of their last decimal have their text in a
// table, the form's rounding decides which: half away from zero in a fixed field, half to even in a
// delimited one.  Index looks a batch up, in loops that g++ vectorises; Put writes one text.  The
// texts are those of row_digits.h to the byte, which also writes what is not in the table.
//
// Tested by tests/properties/report/row_digits_test.cpp; timed by bench/bench_rows.cpp.
#ifndef FLANKS_REPORT_FORMAT_NUMBER_TEXTS_H
#define FLANKS_REPORT_FORMAT_NUMBER_TEXTS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/byte_order.h"

namespace flanks {

enum class NumberForm : std::uint8_t { fixed, delimited };

class NumberTexts {
 public:
  // A place in the table; kOutside for none.
  using Index = std::int32_t;
  static constexpr Index kOutside = 0;

  // `decimals` 0 to 9; numbers without decimals are whole numbers.
  NumberTexts(NumberForm form, int decimals);

  // The index of each value.
  void Look(std::span<const double> values, std::span<Index> indexes);
  // Of a whole number.
  static Index LookWhole(std::int32_t value) {
    return value > -kNumbers && value < kNumbers ? value + kNumbers : kOutside;
  }

  // Puts a text at `at`, where kNumberRoom bytes must be free; returns its end, or null when the
  // number is outside the table.
  char* PutFixed(char* at, Index index) const {
    const std::uint64_t text = texts_[static_cast<std::size_t>(index)];
    at[0] = at[1] = ' ';
    StoreLittle(reinterpret_cast<std::uint8_t*>(at + 2), text);
    return text != 0 ? at + 10 : nullptr;
  }
  char* PutDelimited(char* at, Index index) const {
    const std::uint64_t text = texts_[static_cast<std::size_t>(index)];
    StoreLittle(reinterpret_cast<std::uint8_t*>(at), text);
    return text != 0 ? at + (text >> 56) : nullptr;
  }

 private:
  static constexpr std::int32_t kNumbers = 10'000;

  void Scale(std::span<const double> values);

  NumberForm form_;
  int decimals_;
  // By index.  Fixed: the last eight of ten columns, or 0.  Delimited: up to seven bytes and in the
  // eighth how many, or 0.
  std::vector<std::uint64_t> texts_;
  std::vector<double> sizes_;  // of a batch: absolute values in units of the last decimal
};

}  // namespace flanks

#endif  // FLANKS_REPORT_FORMAT_NUMBER_TEXTS_H
