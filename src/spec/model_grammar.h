// The small languages within a model statement: scale types and references to elements.
//
// Both are plain functions of a text, with the fault beside the value.
//
// Tested by tests/unit/spec/model_grammar_test.cpp.
#ifndef FLANKS_SPEC_MODEL_GRAMMAR_H
#define FLANKS_SPEC_MODEL_GRAMMAR_H

#include <string>
#include <string_view>

#include "run/design.h"
#include "run/faults.h"

namespace flanks {

// The highest category of an "R" without a number, and of any scale.
constexpr int kDefaultCategoryMaximum = 9;
constexpr int kLargestCategoryMaximum = 255;

// What a scale type such as "R5K" says.
struct ScaleTypeText {
  ScaleType type = ScaleType::missing;
  int maximum = -1;   // highest category; -1 for type M
  bool keep = false;  // K: unobserved intermediate categories are kept
  Fault fault = Fault::none;
};

// Reads a scale type; blanks and case count for nothing, and K may stand anywhere:
//   D    dichotomy                   Bn   binomial trials, 1 to `limit`
//   R    rating, 0 to `defaultMaximum`   P    Poisson count, 0 to `limit`
//   Rn   rating, 0 to n              M    treat as missing
// R0 is R.  Fault: invalidScaleType for everything else.
[[nodiscard]] ScaleTypeText ParseScaleType(std::string_view text, int defaultMaximum, int limit);

// A reference to the elements of one position of a statement.
struct ElementReference {
  PositionReference reference;
  std::string normalised;  // the marks B - @ # ? $ in this order, then the numbers
  Fault fault = Fault::none;
};

// Reads one position field of a statement, in any case.  B marks the position for the bias
// analysis, a leading "-" reverses its orientation; both go with everything else.  Of the rest the
// first that applies decides: nothing, X, "?", "$", "@", "#", numbers.  So "?#" is any element, and
// its "#" is only shown.  Fault: invalidElementNumber.
[[nodiscard]] ElementReference ParseElementReference(std::string_view text);

}  // namespace flanks

#endif  // FLANKS_SPEC_MODEL_GRAMMAR_H
