#include "spec/values.h"

#include <cstddef>
#include <limits>
#include <string>

#include "base/expression.h"
#include "base/text.h"
#include "spec/list_reading.h"

namespace flanks {
namespace {

constexpr int kMalformedNumberExit = 1;

constexpr std::string_view kSignOfExponent = "An exponent needs its sign: write 1E+2 for 1E2.";
constexpr std::string_view kWhatANumberMayBe =
    "Check the parentheses: no sign stands behind * / or ^, nothing is divided by 0, and no word "
    "begins with D or E.";
constexpr std::string_view kFewerNumbers = "Work out a part of it: there is room for 25 numbers.";

// Whether an E or D stands behind a number, and no sign behind the letter.
bool LacksSignOfExponent(std::string_view text) {
  for (std::size_t at = 1; at < text.size(); ++at) {
    const char letter = UpperCase(text[at]);
    if (letter != 'E' && letter != 'D') continue;
    const bool behindNumber = IsDigit(text[at - 1]) || text[at - 1] == '.';
    const bool hasSign = at + 1 < text.size() && (text[at + 1] == '+' || text[at + 1] == '-');
    if (behindNumber && !hasSign) return true;
  }
  return false;
}

std::string_view CureOf(ExpressionFault fault, std::string_view text) {
  if (fault == ExpressionFault::tooManyValues) return kFewerNumbers;
  return LacksSignOfExponent(text) ? kSignOfExponent : kWhatANumberMayBe;
}

}  // namespace

float EvaluateValue(Console& console, std::string_view text) {
  const ExpressionValue result = EvaluateExpression(text);
  if (result.fault == ExpressionFault::none) return result.value;
  const bool tooMany = result.fault == ExpressionFault::tooManyValues;
  console.ShowFlagged((tooMany ? "COMPUTE1: DEPTH 27+: " : "VLCOMPUTE: ") +
                      std::string(ShownPart(text)));
  console.ShowFlagged("  To mend it: " + std::string(CureOf(result.fault, text)));
  EndProcess(kMalformedNumberExit);
}

std::int32_t EvaluateWhole(Console& console, std::string_view text) {
  constexpr double kLow = std::numeric_limits<std::int32_t>::min();
  constexpr double kHigh = std::numeric_limits<std::int32_t>::max();
  const double value = static_cast<double>(EvaluateValue(console, text));
  if (value <= kLow) return std::numeric_limits<std::int32_t>::min();
  if (value >= kHigh) return std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(value);
}

}  // namespace flanks
