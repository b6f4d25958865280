// Numbers as text: the fixed-width field of the Tables, and the texts beside it.
//
// Every number of a Table goes through FixedField.  It rounds half away from zero on the value
// times ten to the decimals, which is computed in 64 bits by one multiplication for each decimal,
// so 1.005 at two decimals is "1.00" because the product lies below 100.5.  No zero stands before
// the point, and what rounds to zero has no sign.  What does not fit keeps its first characters:
// first decimals go, then the last two places become "E" and a digit, the power of ten that is
// missing.  A field is always exactly as wide as asked for (at least decimals + 1).
//
// FixedField is called for each number of a report and of the output files, so its usual way is
// written for speed: no allocation beyond the text that grows, no library formatting.
//
// Whole numbers beyond 15 digits show 15 significant digits, then zeros.  What is no number shows
// "?"; an infinite value counts as the largest that is finite.
//
// Tested by tests/unit/report/format/fixed_field_test.cpp and, as laws,
// tests/properties/report/format_test.cpp; bench/bench_format.cpp measures it.
#ifndef FLANKS_REPORT_FORMAT_FIXED_FIELD_H
#define FLANKS_REPORT_FORMAT_FIXED_FIELD_H

#include <cstdint>
#include <string>

namespace flanks {

// The value in a field of `width` places with `decimals` of them behind the point.  Of both the
// absolute value counts; a width too small for the decimals and the point is raised.
std::string FixedField(double value, int width, int decimals);
std::string FixedFieldSingle(float value, int width, int decimals);
std::string FixedFieldInteger(std::int16_t value, int width, int decimals);

// The same, put at the end of `text`: for lines and files that are built piece by piece.
void AppendFixedField(std::string& text, double value, int width, int decimals);

// A whole value as plain digits, any other as OneDecimalText.
std::string NumberText(double value);

// One digit behind the point, of (value * 10 + 0.49999) * 0.1; the further digits are cut.
// Kept: below 0.1 and from 1E15 on the text is ".0" (docs/quirks.md).
std::string OneDecimalText(double value);

// The value rounded to `decimals`, half to even, without leading zeros or blanks: ".05".  From
// 1,000,000 on (in absolute value) the digits are "???", with the point between them.
std::string DecimalsText(double value, int decimals);
std::string DecimalsText2(double value);
std::string DecimalsText4(double value);

// The digits of value * 10^decimals, rounded half to even, without sign, at least `least` of them
// by zeros in front.  "???" when the absolute value is 1,000,000 or more, or the digits do not fit
// 64 bits.
struct RoundedDigits {
  bool negative = false;
  bool tooLarge = false;
  std::string digits;
};
RoundedDigits RoundToDigits(double value, int decimals, int least);

// A 32-bit number without exponent.  From 1E-4 on the shortest digits that read back as the same
// number, ".25"; below it, what 32 bits keep of it beside a 1, "0.00001", and "0" when that is
// nothing.
std::string SmallText(float value);

// Rounded half away from zero.  RoundInteger stays within -32760 and 32760, RoundLong within 32
// bits; what is no number becomes 0.
std::int16_t RoundInteger(double value);
std::int32_t RoundLong(double value);

}  // namespace flanks

#endif  // FLANKS_REPORT_FORMAT_FIXED_FIELD_H
