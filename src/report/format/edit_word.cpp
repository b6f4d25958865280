#include "report/format/edit_word.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/program_fault.h"
#include "base/text.h"
#include "report/format/clip_field.h"
#include "report/format/fixed_field.h"
#include "report/format/join_number.h"

namespace flanks {
namespace {

constexpr std::string_view kNoTextField = "Failure (12)! Edit word missing for: ";
constexpr std::string_view kNoSingleField = "Failure (13)! Edit word missing for: ";
constexpr std::string_view kNoNumberField = "Failure (13)! Edit word missing for";

bool IsTextPicture(char c) {
  return c == '\\' || c == '&' || c == '!';
}

std::size_t TokenLength(std::string_view rest) {
  const auto upTo = [rest](std::size_t end) { return std::min(end, rest.size()); };
  switch (rest.front()) {
    case ' ':
      return upTo(rest.find_first_not_of(' '));
    case '!':
    case '&':
      return 1;
    case '\\': {
      const std::size_t closing = rest.find('\\', 1);
      return closing == std::string_view::npos ? rest.size() : closing + 1;
    }
    case '#':
      return upTo(rest.find_first_not_of("#.,"));
    default:
      return upTo(rest.find_first_of("#&\\! "));
  }
}

int Width(std::string_view token) {
  return static_cast<int>(token.size());
}

int Decimals(std::string_view token) {
  const std::size_t point = token.find('.');
  return point == std::string_view::npos ? 0 : static_cast<int>(token.size() - point - 1);
}

bool HasPoint(std::string_view token) {
  return token.find('.') != std::string_view::npos;
}

void AppendReal(std::string& line, double value, std::string_view token) {
  AppendFixedField(line, value, Width(token), Decimals(token));
}

void AppendRight(std::string& line, std::string_view text, std::size_t width) {
  if (text.size() > width) text.remove_prefix(text.size() - width);
  line.append(width - text.size(), ' ').append(text);
}

// A whole count, edited as a real number, without its decimals.
void HideDecimals(std::string& text) {
  if (text.ends_with(".0")) {
    text.replace(text.size() - 2, 2, "  ");
  } else if (text.ends_with(".")) {
    text.back() = ' ';
  }
  if (text.ends_with("   ")) text[text.size() - 3] = '0';  // zero shows in the column of units
}

// A count with a fraction, edited into a field without decimals, takes the blanks before it if
// there are two or more.
void ShowOneDecimal(std::string& text, double value) {
  const std::size_t lastBlank = text.rfind(' ');
  if (HasPoint(text) || lastBlank == std::string::npos) return;
  const std::size_t lastOther = text.find_last_not_of(' ', lastBlank);
  const std::size_t blanks = lastOther == std::string::npos ? 0 : lastOther + 1;
  if (lastBlank == blanks) return;
  const auto space = static_cast<int>(text.size() - blanks);
  text.resize(blanks);
  AppendFixedField(text, value, space, 1);
}

}  // namespace

std::string_view NextEditToken(std::string_view word, std::size_t& pos) {
  const std::string_view rest = Mid(word, pos);
  if (rest.empty()) return {};
  const std::string_view token = rest.substr(0, TokenLength(rest));
  pos += token.size();
  return token;
}

// The next token of the kind; those before it go to `passed`.  Empty when there is none.
std::string_view EditLine::TakeField(Field field, std::string& passed) {
  for (;;) {
    const std::string_view token = NextEditToken(word_, pos_);
    if (token.empty()) return token;
    const bool found = field == Field::text ? IsTextPicture(token.front()) : token.front() == '#';
    if (found) return token;
    passed += token;
  }
}

EditLine& EditLine::EditString(std::string_view text) {
  const std::string_view token = TakeField(Field::text, line_);
  if (token.empty()) throw ProgramFault(std::string(kNoTextField).append(text));
  if (token.front() == '&') {
    line_ += text;
  } else {
    line_ += ClipField(text, Width(token), encoded_);
  }
  return *this;
}

EditLine& EditLine::EditSingle(float value) {
  const std::string_view token = TakeField(Field::number, line_);
  if (token.empty()) throw ProgramFault(JoinNumber(kNoSingleField, value));
  AppendReal(line_, value, token);
  return *this;
}

EditLine& EditLine::EditDouble(double value) {
  const std::string_view token = TakeField(Field::number, line_);
  if (token.empty()) throw ProgramFault(JoinNumber(kNoNumberField, NumberText(value)));
  AppendReal(line_, value, token);
  return *this;
}

EditLine& EditLine::EditLong(std::int32_t value) {
  const std::string text = std::to_string(value);
  const std::string_view token = TakeField(Field::number, line_);
  if (token.empty()) throw ProgramFault(JoinNumber(kNoNumberField, text));
  if (HasPoint(token) || text.size() > token.size()) {
    AppendReal(line_, value, token);
  } else {
    AppendRight(line_, text, token.size());
  }
  return *this;
}

EditLine& EditLine::EditInteger(std::int16_t value) {
  const std::string text = std::to_string(value);
  const std::string_view token = TakeField(Field::number, line_);
  if (token.empty()) throw ProgramFault(JoinNumber(kNoNumberField, text));
  if (HasPoint(token)) {
    AppendReal(line_, value, token);
  } else {
    // Kept: a number too wide loses its first digits (docs/quirks.md).
    AppendRight(line_, text, token.size());
  }
  return *this;
}

EditLine& EditLine::EditCount(float value) {
  std::string text;
  const std::string_view token = TakeField(Field::number, text);
  if (token.empty()) throw ProgramFault(JoinNumber(kNoSingleField, value));
  AppendReal(text, value, token);
  if (value == std::floor(value)) {
    HideDecimals(text);
  } else {
    ShowOneDecimal(text, value);
  }
  line_ += text;
  return *this;
}

std::string EditLine::Finish() {
  line_ += Rest();
  pos_ = word_.size() + 1;
  return std::move(line_);
}

}  // namespace flanks
