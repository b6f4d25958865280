// Real numbers in a Specification that may be left out: measures, weights, anchors.
//
// A zero counts only when it was written, and a text that does not begin like a number is none, so
// that a word in the place of a number does not reach the evaluator, which would take the first
// letter of "early" for an exponent.
//
// Tested by tests/unit/spec/given_value_test.cpp.
#ifndef FLANKS_SPEC_GIVEN_VALUE_H
#define FLANKS_SPEC_GIVEN_VALUE_H

#include <string_view>

#include "run/console.h"

namespace flanks {

// Whether the text begins with a digit, ".", "+", "-" or "(".
bool BeginsLikeNumber(std::string_view text);

struct GivenValue {
  float value = 0.0f;
  bool given = false;
};

// The value of the text, an expression; given when it is not 0, or when a "0" stands in the text.
// A malformed expression ends the process.
GivenValue EvaluateGiven(Console& console, std::string_view text);

}  // namespace flanks

#endif  // FLANKS_SPEC_GIVEN_VALUE_H
