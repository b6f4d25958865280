// Counts of lines and observations.
//
// A replication may be a fraction, and a count must neither stick (a 32-bit float does at
// 16,777,216) nor gather rounding noise, so a count is a fixed-point number: a 64-bit integer that
// holds the value times 10,000.  It adds exactly, holds some 900 million million, and stays at its
// end rather than turn over.  As text it has up to four decimals, without trailing zeros and
// without a zero before the point: "30", "2.5", ".25".
//
// Tested by tests/unit/base/fixed_count_test.cpp.
#ifndef FLANKS_BASE_FIXED_COUNT_H
#define FLANKS_BASE_FIXED_COUNT_H

#include <compare>
#include <cstdint>
#include <string>

namespace flanks {

class FixedCount {
 public:
  static constexpr std::int64_t kUnit = 10000;

  constexpr FixedCount() = default;
  // A whole number.
  static FixedCount Of(std::int64_t whole);
  // A replication or weight: rounded to four decimals, half away from zero.  What is no number
  // counts 0; what is too large stays at the end of the range.
  static FixedCount FromReplication(float replication);
  // The number of ten-thousandths as it is kept.
  static constexpr FixedCount FromScaled(std::int64_t scaled) { return FixedCount(scaled); }

  constexpr bool isZero() const { return scaled_ == 0; }
  constexpr std::int64_t scaled() const { return scaled_; }
  // The whole part; the fraction is cut.
  constexpr std::int64_t whole() const { return scaled_ / kUnit; }
  constexpr double value() const {
    return static_cast<double>(scaled_) / static_cast<double>(kUnit);
  }
  std::string text() const;

  void increment() { *this += FromScaled(kUnit); }
  FixedCount& operator++() { return *this += FromScaled(kUnit); }
  FixedCount& operator+=(FixedCount other);
  FixedCount& operator-=(FixedCount other);
  friend FixedCount operator+(FixedCount a, FixedCount b) { return a += b; }
  friend FixedCount operator-(FixedCount a, FixedCount b) { return a -= b; }
  constexpr auto operator<=>(const FixedCount&) const = default;

 private:
  constexpr explicit FixedCount(std::int64_t scaled) : scaled_(scaled) {}

  std::int64_t scaled_ = 0;
};

}  // namespace flanks

#endif  // FLANKS_BASE_FIXED_COUNT_H
