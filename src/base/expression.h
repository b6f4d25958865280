// The arithmetic evaluator: every real number of a Specification may be an expression.
//
// "2*3.5", "(1+1)/3", "2**3", "-.5", "1E+2".  Operators from weak to strong: + and -, * and /, ^
// (or
// **); operators of one strength go from left to right.  All arithmetic is in 32 bits; a power is
// computed in 64 and cut.  Blanks and tabs count for nothing, and the first character that cannot
// belong to an expression ends it, so that a comment or a label may stand behind a number.
//
// What is unusual, and kept because Specifications rely on it (docs/quirks.md):
//   - a sign belongs to the number behind it: "-2^2" is 4; before a parenthesis it is a factor -1;
//   - an exponent needs its sign: "1E+5" is a number, "1E5" is not;
//   - no sign may follow * / or ^; it may follow +, - and "(";
//   - beside a parenthesised group digits count for nothing: "2(3)" is 3.
//
// The work is done on the text in two steps: `Normalise` writes the expression in an alphabet in
// which signs cannot be taken for operators, and the groups are then computed from the innermost
// out.  There is no recursion, and two limits bound the work: 200 groups (the whole counts as one)
// and 26 values.  A value is one number, or one run of operators of equal strength: 25 numbers
// joined by "+" are 26 values.
//
// Nothing is shown or ended here: the result has a value or a fault, and spec/values decides.
//
// Tested by tests/unit/base/expression_test.cpp and tests/properties/expression_test.cpp.
#ifndef FLANKS_BASE_EXPRESSION_H
#define FLANKS_BASE_EXPRESSION_H

#include <cstdint>
#include <string_view>

namespace flanks {

enum class ExpressionFault : std::uint8_t {
  none,
  malformed,      // also a division by 0, and a value beyond 32 bits
  tooManyValues,  // a 27th value
};

struct ExpressionValue {
  float value = 0.0f;
  ExpressionFault fault = ExpressionFault::none;
};

// The value of the expression at the start of `text`; 0 when there is none (an empty text, "abc").
// A text that begins with D or E is malformed, since these letters begin an exponent.
[[nodiscard]] ExpressionValue EvaluateExpression(std::string_view text);

}  // namespace flanks

#endif  // FLANKS_BASE_EXPRESSION_H
