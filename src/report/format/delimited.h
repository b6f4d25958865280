// Fields of the output files: of ten columns, or between separators.
//
// With a blank as separator (or none) each value takes ten columns, right-aligned, numbers with a
// fraction through FixedField; a whole number longer than that is not cut.  With any other
// separator each value is its plain text without leading blanks, and the separator behind it:
// numbers with a fraction then have at least one digit before the point, are rounded half to even,
// and are "???" from 1,000,000 on in absolute value.
//
// Each function puts its field at the end of a row, which the caller owns and reuses.
//
// Tested by tests/unit/report/format/delimited_test.cpp.
#ifndef FLANKS_REPORT_FORMAT_DELIMITED_H
#define FLANKS_REPORT_FORMAT_DELIMITED_H

#include <cstdint>
#include <string>
#include <string_view>

#include "base/utf8.h"

namespace flanks {

constexpr int kFieldWidth = 10;

struct FieldForm {
  std::string OutputSeparator = " ";
  Utf8Encoded encoded = Utf8Encoded::detect;

  bool isFixed() const { return OutputSeparator.empty() || OutputSeparator == " "; }
};

void FieldInteger(std::string& row, const FieldForm& form, std::int16_t value);
void FieldLong(std::string& row, const FieldForm& form, std::int32_t value);
void FieldText(std::string& row, const FieldForm& form, std::string_view text);
void FieldSingle(std::string& row, const FieldForm& form, float value, int decimals);
void FieldSingle2(std::string& row, const FieldForm& form, float value);
void FieldSingle4(std::string& row, const FieldForm& form, float value);

// The delimited form of a number with decimals: "0.05", "-1.50", "???".
std::string DelimitedDecimals(double value, int decimals);

// What a setting word means, by its first letter in either case; `otherwise` when it means nothing.
// Separators: T tab, Y and C comma, S semicolon, N, B and F blank; an empty word is a blank.
// Quotes: D and Q double quote, A apostrophe, C comma, S semicolon, B blank, N none.
std::string SeparatorNamed(std::string_view word, std::string_view otherwise = " ");
std::string QuoteNamed(std::string_view word, std::string_view otherwise = "");

}  // namespace flanks

#endif  // FLANKS_REPORT_FORMAT_DELIMITED_H
