// Numbers: expressions, and the whole numbers beside them.
//
// Any text has a finite value or a fault, and blanks, tabs, case and what stands behind the
// expression change neither.
#include <cmath>
#include <string>

#include "base/expression.h"
#include "base/parse_integer.h"
#include "base/text.h"
#include "fuzz_checks.h"

namespace flanks {
namespace {

bool Same(const ExpressionValue& a, const ExpressionValue& b) {
  return a.fault == b.fault && a.value == b.value;
}

// Up to the first character that no expression has, without blanks and tabs.
std::string Bare(std::string_view text) {
  constexpr std::string_view kMarks = "0123456789.+-*/^()EeDd";
  std::string bare;
  for (const char c : text) {
    if (c == ' ' || c == '\t') continue;
    if (kMarks.find(c) == std::string_view::npos) break;
    bare += c;
  }
  return bare;
}

// A sign belongs to the letter of an exponent without a blank between.
bool ExponentsStandClose(std::string_view text) {
  for (std::size_t at = 0; at + 1 < text.size(); ++at) {
    const char c = UpperCase(text[at]);
    const bool blank = text[at + 1] == ' ' || text[at + 1] == '\t';
    if ((c == 'E' || c == 'D') && blank) return false;
  }
  return true;
}

void CheckExpression(std::string_view text) {
  const ExpressionValue result = EvaluateExpression(text);
  Require(std::isfinite(result.value), "a finite value", text);
  Require(result.fault == ExpressionFault::none || result.value == 0.0f, "a fault has no value",
          text);
  Require(!std::signbit(result.value) || result.value != 0.0f, "a zero has no sign", text);
  Require(Same(result, EvaluateExpression(UpperCase(text))), "case changes nothing", text);
  const std::string bare = Bare(text);
  if (ExponentsStandClose(text))
    Require(Same(result, EvaluateExpression(bare)), "blanks and what follows change nothing", text);
  Require(Same(EvaluateExpression(bare), EvaluateExpression(bare + ";1+(")),
          "a comment changes nothing", text);
}

void CheckWholeNumbers(std::string_view text) {
  for (const std::int32_t limit : {0, 9, 255, 32760, kLargestElementNumber}) {
    const WholeNumber number = ParseInteger(text, limit);
    Require(number.value >= 0 && number.value <= limit, "a whole number within its limit", text);
  }
  const WholeNumber element = ParseElementNumber(text);
  Require(element.value >= 0 && element.value <= kLargestElementNumber, "an element number", text);
  if (element.fault != NumberFault::none) return;
  const std::string shown = std::to_string(element.value);
  Require(ParseElementNumber(shown).value == element.value, "an element number is read again",
          text);
  Require(ParseInteger(text, kLargestElementNumber).value == element.value,
          "both readers of whole numbers agree", text);
  const NumericPrefix prefix = ReadNumericPrefix(text);
  Require(prefix.length <= text.size() && !std::isnan(prefix.value), "a numeric prefix", text);
}

}  // namespace
}  // namespace flanks

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = flanks::TextOf(data, size);
  flanks::CheckExpression(text);
  flanks::CheckWholeNumbers(text);
  return 0;
}
