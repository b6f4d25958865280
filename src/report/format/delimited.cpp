#include "report/format/delimited.h"

#include <cstddef>
#include <span>

#include "base/text.h"
#include "report/format/clip_field.h"
#include "report/format/fixed_field.h"

namespace flanks {
namespace {

struct NamedCharacter {
  char letter;
  std::string_view character;
};

constexpr NamedCharacter kSeparators[] = {{'T', "\t"}, {'Y', ","}, {'C', ","}, {'S', ";"},
                                          {'N', " "},  {'B', " "}, {'F', " "}};
constexpr NamedCharacter kQuotes[] = {{'D', "\""}, {'Q', "\""}, {'A', "'"}, {'C', ","},
                                      {'S', ";"},  {'B', " "},  {'N', ""}};

std::string CharacterNamed(std::span<const NamedCharacter> names, std::string_view word,
                           std::string_view otherwise) {
  if (!word.empty()) {
    for (const NamedCharacter& name : names) {
      if (name.letter == UpperCase(word.front())) return std::string(name.character);
    }
  }
  return std::string(otherwise);
}

}  // namespace

void FieldInteger(std::string& row, const FieldForm& form, std::int16_t value) {
  FieldLong(row, form, value);
}

void FieldLong(std::string& row, const FieldForm& form, std::int32_t value) {
  const std::string text = std::to_string(value);
  if (!form.isFixed()) {
    row.append(text).append(form.OutputSeparator);
    return;
  }
  constexpr std::size_t kPlaces = kFieldWidth;
  if (text.size() < kPlaces) row.append(kPlaces - text.size(), ' ');
  row += text;
}

void FieldText(std::string& row, const FieldForm& form, std::string_view text) {
  if (!form.isFixed()) {
    row.append(TrimLeft(text)).append(form.OutputSeparator);
    return;
  }
  const int width = DisplayWidth(text, form.encoded);
  if (width < kFieldWidth) {
    row.append(static_cast<std::size_t>(kFieldWidth - width), ' ').append(text);
  } else {
    row += ClipField(text, kFieldWidth, form.encoded);
  }
}

void FieldSingle(std::string& row, const FieldForm& form, float value, int decimals) {
  if (form.isFixed()) {
    AppendFixedField(row, value, kFieldWidth, decimals);
  } else {
    row.append(DelimitedDecimals(value, decimals)).append(form.OutputSeparator);
  }
}

void FieldSingle2(std::string& row, const FieldForm& form, float value) {
  FieldSingle(row, form, value, 2);
}

void FieldSingle4(std::string& row, const FieldForm& form, float value) {
  FieldSingle(row, form, value, 4);
}

std::string DelimitedDecimals(double value, int decimals) {
  RoundedDigits rounded = RoundToDigits(value, decimals, decimals + 1);
  if (rounded.tooLarge) return "???";
  if (decimals > 0) {
    rounded.digits.insert(rounded.digits.size() - static_cast<std::size_t>(decimals), 1, '.');
  }
  return rounded.negative ? "-" + rounded.digits : rounded.digits;
}

std::string SeparatorNamed(std::string_view word, std::string_view otherwise) {
  return word.empty() ? " " : CharacterNamed(kSeparators, word, otherwise);
}

std::string QuoteNamed(std::string_view word, std::string_view otherwise) {
  return CharacterNamed(kQuotes, word, otherwise);
}

}  // namespace flanks
