// The one way from 64 to 32 bits.
//
// The program computes in 64 bits and holds measures, thresholds, probabilities and moments in 32.
// Each such cut shows in a report's last digit, so each is written out: `Single(...)`.  Nothing
// else in the program converts a double to a float (-Wfloat-conversion is an error).
//
// Tested by tests/unit/base/single_test.cpp.
#ifndef FLANKS_BASE_SINGLE_H
#define FLANKS_BASE_SINGLE_H

#include <cfloat>

namespace flanks {

static_assert(FLT_EVAL_METHOD == 0, "intermediate values must have the width of their type");

// The value cut to 32 bits (round to nearest, ties to even).
constexpr float Single(double value) {
  return static_cast<float>(value);
}

constexpr float MinSingle(float a, float b) {
  return b < a ? b : a;
}
constexpr float MaxSingle(float a, float b) {
  return a < b ? b : a;
}

// The floors of divisors and logarithms: 1E-9 in 32 and in 64 bits.
constexpr float kSingleFloor = 1E-9f;
constexpr double kDoubleFloor = 1E-9;

// A value below 1E-9 becomes 1E-9; used where a value is divided into 1.
constexpr float FloorMin(float value) {
  return MaxSingle(value, kSingleFloor);
}
constexpr double FloorMin(double value) {
  return value < kDoubleFloor ? kDoubleFloor : value;
}

}  // namespace flanks

#endif  // FLANKS_BASE_SINGLE_H
