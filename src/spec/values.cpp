#include "spec/values.h"

#include <limits>
#include <string>

#include "base/expression.h"
#include "spec/list_reading.h"

namespace flanks {
namespace {

constexpr int kMalformedNumberExit = 1;

}  // namespace

float EvaluateValue(Console& console, std::string_view text) {
  const ExpressionValue result = EvaluateExpression(text);
  if (result.fault == ExpressionFault::none) return result.value;
  const bool tooMany = result.fault == ExpressionFault::tooManyValues;
  console.ShowFlagged((tooMany ? "COMPUTE1: DEPTH 27+: " : "VLCOMPUTE: ") +
                      std::string(ShownPart(text)));
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
