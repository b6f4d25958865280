// Edit words: the picture of a report line, and the line that is built along it.
//
// An edit word describes one line and is at the same time the column ruler of its Table.  It is
// taken token by token from left to right:
//
//   ####.##    a number, as wide as the token; "." gives the decimals, "," is a place only
//   \    \     a text, as wide as the token, backslashes included
//   !          a text of one column
//   &          a text of its own width
//   else       literal, blanks and box codes too
//
// A value looks for the next token of its kind; whatever it passes on the way, pictures of the
// other kind included, is copied as it stands.  A word that ends before the value has found its
// token is a fault of the program (ProgramFault).
//
//   EditLine line(word);
//   line.EditString(label).EditCount(score).EditDouble(average);
//   WriteReportLine(console, line.Finish());
//
// Finish puts what is left of the word behind the last value, the closing separator among it.
//
// Tested by tests/unit/report/format/edit_word_test.cpp.
#ifndef FLANKS_REPORT_FORMAT_EDIT_WORD_H
#define FLANKS_REPORT_FORMAT_EDIT_WORD_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/utf8.h"

namespace flanks {

// The token of `word` that begins at position `pos` (1 is the first); `pos` goes behind it.  At the
// end of the word the token is empty and `pos` stays.
std::string_view NextEditToken(std::string_view word, std::size_t& pos);

class EditLine {
 public:
  // `word` is not copied and must live as long as the line is built.
  explicit EditLine(std::string_view word, Utf8Encoded encoded = Utf8Encoded::detect)
      : word_(word), encoded_(encoded) {}

  EditLine& EditString(std::string_view text);
  EditLine& EditSingle(float value);
  EditLine& EditDouble(double value);

  // Whole numbers as they are, right-aligned; through FixedField when the token has a point.  What
  // is too wide goes through FixedField as EditLong, and loses its left places as EditInteger.
  EditLine& EditLong(std::int32_t value);
  EditLine& EditInteger(std::int16_t value);

  // A count or raw score: without decimals when whole, else with one decimal, in the same column.
  EditLine& EditCount(float value);

  // What no value has taken of the word.
  std::string_view Rest() const { return word_.substr(pos_ - 1); }
  const std::string& line() const { return line_; }
  // The line with the rest of the word; the object is done.
  std::string Finish();

 private:
  enum class Field : std::uint8_t { text, number };

  std::string_view TakeField(Field field, std::string& passed);

  std::string_view word_;
  std::size_t pos_ = 1;
  std::string line_;
  Utf8Encoded encoded_;
};

}  // namespace flanks

#endif  // FLANKS_REPORT_FORMAT_EDIT_WORD_H
