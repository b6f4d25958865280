// Labels that a spreadsheet must not read as something else.
//
// A spreadsheet takes a cell that looks like a number, a date or a formula for one, so that the
// label 12-3 becomes a day in December.  A no-break space behind the text keeps it a text.
//
// Tested by tests/unit/output/protected_label_test.cpp.
#ifndef FLANKS_OUTPUT_PROTECTED_LABEL_H
#define FLANKS_OUTPUT_PROTECTED_LABEL_H

#include <string>
#include <string_view>

namespace flanks {

// What is put behind a label: the no-break space, character 160, in UTF-8.
constexpr std::string_view kLabelGuard = "\xC2\xA0";

// The text, with kLabelGuard behind it when, without blanks at its ends, it is a number ("12",
// "1,234.5", "1E5") or a date (three groups of digits with "-", "/" or "." between them; the name
// of a month with one or two numbers), when it begins with "+", "-" or "=", or when it has a digit
// and nothing but digits and the characters of "+-=*/^ ".
std::string ProtectForExcel(std::string_view text);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_PROTECTED_LABEL_H
