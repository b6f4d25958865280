// From 64 to 32 bits where a weight of the user's can lead beyond them.
//
// Weights may be anything that 32 bits hold, and their products and sums are 64-bit.  Where such a
// number is cut, it stays at the end of the 32-bit range: no infinity may reach a measure.
//
// Tested by tests/unit/base/single_test.cpp.
#ifndef FLANKS_BASE_HELD_SINGLE_H
#define FLANKS_BASE_HELD_SINGLE_H

#include <algorithm>
#include <cfloat>

#include "base/single.h"

namespace flanks {

// The value cut to 32 bits; beyond them the largest number with its sign.
constexpr float HeldSingle(double value) {
  constexpr double kLargest = static_cast<double>(FLT_MAX);
  return Single(std::clamp(value, -kLargest, kLargest));
}

}  // namespace flanks

#endif  // FLANKS_BASE_HELD_SINGLE_H
