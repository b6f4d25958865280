#include "spec/given_value.h"

#include "base/text.h"
#include "spec/values.h"

namespace flanks {

bool BeginsLikeNumber(std::string_view text) {
  const std::string_view trimmed = TrimLeft(text);
  if (trimmed.empty()) return false;
  return IsDigit(trimmed.front()) ||
         std::string_view(".+-(").find(trimmed.front()) != std::string_view::npos;
}

GivenValue EvaluateGiven(Console& console, std::string_view text) {
  if (!BeginsLikeNumber(text)) return {};
  const float value = EvaluateValue(console, text);
  const bool hasDigitZero = text.find('0') != std::string_view::npos;
  return {value, value != 0.0f || hasDigitZero};
}

}  // namespace flanks
