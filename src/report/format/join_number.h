// Numbers in sentences and settings: the text of a number outside any field, and how it is joined
// to the words before it.
//
// Where words and a number meet, exactly one blank stands between them, whether the quoted words
// end in one or not: "Flanks = 3", "line: 5", "There are 2 disconnected subsets", "range 0 - 9".
// No blank comes behind a "(", a quote mark, a comma or the "-" of "1-3".  Numbered marks such as
// "Error F34", "Warning (7)!" and "Table 7.1.1" are not made here.
//
// Tested by tests/unit/report/format/join_number_test.cpp.
#ifndef FLANKS_REPORT_FORMAT_JOIN_NUMBER_H
#define FLANKS_REPORT_FORMAT_JOIN_NUMBER_H

#include <concepts>
#include <string>
#include <string_view>

namespace flanks {

// `text` and `number` joined; `number` is the text of a number.
std::string JoinNumber(std::string_view text, std::string_view number);

template <std::integral Integer>
std::string JoinNumber(std::string_view text, Integer number) {
  return JoinNumber(text, std::to_string(number));
}
std::string JoinNumber(std::string_view text, float number);  // as FreeNumber

// The shortest decimal text that reads back as the same 32-bit number: ".5", "3", "-.25".  No zero
// before the point, never an exponent; below 1E-5 as SmallText.
std::string FreeNumber(float value);

}  // namespace flanks

#endif  // FLANKS_REPORT_FORMAT_JOIN_NUMBER_H
