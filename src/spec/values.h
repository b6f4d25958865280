// Real numbers of a Specification: the evaluator of base/expression, plus what its fault does.
//
// A malformed number ends the process at once, in contrast to the faults of the reader: the run
// could only go on with a number that the user did not mean.
//
// Tested by tests/unit/spec/values_test.cpp.
#ifndef FLANKS_SPEC_VALUES_H
#define FLANKS_SPEC_VALUES_H

#include <cstdint>
#include <string_view>

#include "run/console.h"

namespace flanks {

// The value of the expression at the start of `text`, 0 when there is none.  A malformed one is
// shown as "VLCOMPUTE: " and the text, with what can be done, and ends the process.
float EvaluateValue(Console& console, std::string_view text);

// The same, cut to a whole number; what is too large stays at the end of the range.
std::int32_t EvaluateWhole(Console& console, std::string_view text);

}  // namespace flanks

#endif  // FLANKS_SPEC_VALUES_H
