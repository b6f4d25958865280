// The text operations that the readers share.
//
// Texts are bytes: nothing here knows of encodings, and letters are the 52 of ASCII, so that a
// UTF-8 label passes unchanged.  "Blank" is the character 32 and nothing else; a tab is not a
// blank, because a tab separates fields and must live until the line is split.  Positions that a
// user sees or writes begin at 1, so `Mid` counts from 1.
//
// Views that go out point into the text that came in; nothing is kept.
//
// Tested by tests/unit/base/text_test.cpp.
#ifndef FLANKS_BASE_TEXT_H
#define FLANKS_BASE_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace flanks {

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr char UpperCase(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
}
constexpr bool IsLetter(char c) {
  return UpperCase(c) >= 'A' && UpperCase(c) <= 'Z';
}

// The text without the blanks at its left end, its right end, both ends.
std::string_view TrimLeft(std::string_view text);
std::string_view TrimRight(std::string_view text);
std::string_view Trim(std::string_view text);

// The letters a to z become A to Z; every other byte stays.
std::string UpperCase(std::string_view text);

// The part of `text` from position `start` (1 is the first) that is at most `length` bytes long.
// What lies outside the text is not there: the result may be shorter, or empty.
std::string_view Mid(std::string_view text, std::size_t start,
                     std::size_t length = std::string_view::npos);

// Every `from` in `text` becomes `to`.
void ReplaceCharacter(std::string& text, char from, char to);

// Walks over the fields of a text.  Each separator ends a field, so a text with n separators has
// n + 1 fields, the last of which may be empty.  Fields come trimmed.
//
//   FieldCursor cursor(text);
//   std::string_view field;
//   while (cursor.Next(field)) ...
class FieldCursor {
 public:
  explicit FieldCursor(std::string_view text, char separator = ',')
      : rest_(text), separator_(separator) {}

  // The next field, or false behind the last.
  bool Next(std::string_view& field);
  // What no field has taken yet: empty behind the last.
  std::string_view rest() const { return rest_; }

 private:
  std::string_view rest_;
  char separator_;
  bool ended_ = false;
};

// All fields of `text` between commas, trimmed, in order.  An empty text has one empty field.
std::vector<std::string_view> CommaFields(std::string_view text);

// The number at the start of a text.
struct NumericPrefix {
  double value = 0.0;      // infinite when too large for 64 bits, 0 when too small
  std::size_t length = 0;  // how much of the text the number takes; 0: no number
};

// Reads blanks, a sign, digits, one ".", digits, and an exponent (E or D, a sign, digits) as far as
// they are there.  A number has at least one digit before its exponent; an exponent without digits
// is not part of the number.  What follows is ignored: "3x" is 3.  The decimal mark is always ".".
NumericPrefix ReadNumericPrefix(std::string_view text);

}  // namespace flanks

#endif  // FLANKS_BASE_TEXT_H
