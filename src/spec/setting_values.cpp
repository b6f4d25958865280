#include "spec/setting_values.h"

#include <algorithm>

#include "base/text.h"
#include "report/format/join_number.h"
#include "spec/file_names.h"
#include "spec/given_value.h"
#include "spec/list_reading.h"
#include "spec/specification_reader.h"
#include "spec/values.h"

namespace flanks {
namespace {

constexpr std::int32_t kMostDecimals = 9;

// What became of a value that is not taken as it stands.
void TellValue(SpecContext& context, std::string_view value, std::string_view became) {
  context.console.ShowFlagged("The value " + std::string(value) + " " + std::string(became) + " " +
                              std::string(ShownPart(context.reading.SourceLine)));
}

// The evaluator takes a word for 0: most often a slip.
void TellWord(SpecContext& context, std::string_view value) {
  if (!BeginsLikeNumber(value)) TellValue(context, value, "is no number and taken as 0:");
}

}  // namespace

const std::string& Value(const SpecContext& context, std::size_t field) {
  return context.reading.Fields[field];
}

char Letter(const SpecContext& context) {
  const std::string& value = Value(context);
  return value.empty() ? '\0' : UpperCase(value.front());
}

bool IsYes(const SpecContext& context) {
  return Letter(context) == 'Y';
}

bool IsOneOf(char letter, std::string_view letters) {
  return letter != '\0' && letters.find(letter) != std::string_view::npos;
}

std::string JoinFields(const SpecContext& context, std::string_view separator) {
  std::string text;
  for (int field = 1; field <= context.reading.FieldCount; ++field) {
    if (field > 1) text += separator;
    text += Value(context, static_cast<std::size_t>(field));
  }
  return text;
}

void TakeNumber(SpecContext& context, std::size_t field, float& number) {
  const std::string& text = Value(context, field);
  if (text.empty()) return;
  number = EvaluateValue(context.console, text);
  TellWord(context, text);
}
void TakeWhole(SpecContext& context, std::size_t field, std::int32_t& number) {
  const std::string& text = Value(context, field);
  if (text.empty()) return;
  number = EvaluateWhole(context.console, text);
  TellWord(context, text);
}

void TellNotTaken(SpecContext& context, const std::string& value) {
  TellValue(context, value, "is out of range and not taken:");
}

void TakeNonZero(SpecContext& context, std::size_t field, float& number) {
  TakeInRange(context, field, number, [](float value) { return FreeNumber(value) != "0"; });
}

void TakeDecimals(SpecContext& context, std::size_t field, std::int32_t& decimals) {
  TakeWhole(context, field, decimals);
  const std::int32_t taken = std::clamp(decimals, 0, kMostDecimals);
  if (taken != decimals)
    TellValue(context, Value(context, field),
              JoinNumber("is out of range and taken as", taken) + ":");
  decimals = taken;
}

void TakeUpperText(SpecContext& context, std::string& text) {
  if (context.reading.FieldCount > 0) text = UpperCase(JoinFields(context, ","));
}

void TakeName(SpecContext& context, std::size_t field, std::string& name) {
  const std::string& value = Value(context, field);
  if (value.empty() || !name.empty()) return;
  if (const Fault fault = CheckFileName(value); fault != Fault::none)
    return SetFault(context.reading, fault, TextAtFault(value));
  name = value;
}

}  // namespace flanks
