// The decimal digits of a number, between its bits and its text.
//
// Texts of real numbers are made of the same three parts: sign, significant digits, the power of
// ten of the first digit.  The digits come from the standard library's conversion, which is exact,
// knows no locale, and gives either the shortest digits that read back as the same 32-bit number or
// a fixed number of significant digits.
//
// Internal to report/format; exercised by tests/unit/report/format/fixed_field_test.cpp and
// join_number_test.cpp.
#ifndef FLANKS_REPORT_FORMAT_DECIMAL_DIGITS_H
#define FLANKS_REPORT_FORMAT_DECIMAL_DIGITS_H

#include <string>

namespace flanks {

// The value d.ddd times ten to the power `exponent`; no zeros at the end.  Zero is "0", power 0.
struct DecimalDigits {
  bool negative = false;
  std::string digits = "0";
  int exponent = 0;
};

// A 64-bit number is told in decimal by 15 digits; more would show the binary form.
constexpr int kSignificantDigits = 15;

// The value must be finite.
DecimalDigits ShortestDigits(float value);
DecimalDigits SignificantDigits(double value);  // kSignificantDigits, rounded to nearest

// The digits with sign and point and zeros as needed, never an exponent.  No zero stands before the
// point, and no point behind a whole number.
std::string PlainText(const DecimalDigits& number);

}  // namespace flanks

#endif  // FLANKS_REPORT_FORMAT_DECIMAL_DIGITS_H
