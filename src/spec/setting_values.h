// How the handlers of keywords take the values of their line.
//
// Values are the fields of the line, from 1 on; a field that is not there is empty, and an empty
// one leaves a setting as it is.  What is not taken as it stands is told on the screen.
//
// Tested by tests/unit/spec/keyword_settings_test.cpp.
#ifndef FLANKS_SPEC_SETTING_VALUES_H
#define FLANKS_SPEC_SETTING_VALUES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "spec/spec_context.h"
#include "spec/values.h"

namespace flanks {

const std::string& Value(const SpecContext& context, std::size_t field = 1);

// The first letter of the value in upper case; code 0 when there is no value.
char Letter(const SpecContext& context);
bool IsYes(const SpecContext& context);
bool IsOneOf(char letter, std::string_view letters);

std::string JoinFields(const SpecContext& context, std::string_view separator);

// Real numbers, which may be expressions; whole ones are cut.
void TakeNumber(SpecContext& context, std::size_t field, float& number);
void TakeWhole(SpecContext& context, std::size_t field, std::int32_t& number);

// A number of units; one so small that it shows as 0 is none.
void TakeNonZero(SpecContext& context, std::size_t field, float& number);
void TakeDecimals(SpecContext& context, std::size_t field, std::int32_t& decimals);

// A text that is kept when there is none.
void TakeUpperText(SpecContext& context, std::string& text);

// A file name, unless the file has one already.  Fault: badFileName.
void TakeName(SpecContext& context, std::size_t field, std::string& name);

// A value out of its range leaves the setting as it is.
void TellNotTaken(SpecContext& context, const std::string& value);

// Takes a number within a range.
template <class InRange>
void TakeInRange(SpecContext& context, std::size_t field, float& number, InRange inRange) {
  const std::string& text = Value(context, field);
  if (text.empty()) return;
  const float value = EvaluateValue(context.console, text);
  if (inRange(value))
    number = value;
  else
    TellNotTaken(context, text);
}

}  // namespace flanks

#endif  // FLANKS_SPEC_SETTING_VALUES_H
