#include "report/format/clip_field.h"

#include <cstddef>

namespace flanks {
namespace {

// Tenths of a column, so that 1.8 is exact.
constexpr int kColumn = 10;
constexpr int kWide = 18;

struct Character {
  std::size_t bytes;
  int tenths;
};

Character CharacterWith(unsigned char lead) {
  if (lead >= 192 && lead <= 223) return {2, kColumn};
  if (lead >= 228 && lead <= 233) return {3, kWide};
  if (lead >= 224 && lead <= 239) return {3, kColumn};
  if (lead >= 240 && lead <= 247) return {4, kColumn};
  return {1, kColumn};
}

std::string ClipCharacters(std::string_view text, int width) {
  std::string field;
  std::size_t at = 0;
  int tenths = 0;
  while ((tenths + kColumn / 2) / kColumn < width) {
    if (at >= text.size()) {
      field += ' ';
      tenths += kColumn;
      continue;
    }
    const Character character = CharacterWith(static_cast<unsigned char>(text[at]));
    tenths += character.tenths;
    if (character.tenths == kWide && tenths - kColumn / 2 > width * kColumn) {
      field += ' ';
    } else {
      field += text.substr(at, character.bytes);
    }
    at += character.bytes;
  }
  return field;
}

}  // namespace

std::string ClipField(std::string_view text, int width, Utf8Encoded encoded) {
  if (width <= 0) return {};
  if (IsUtf8(text, encoded)) return ClipCharacters(text, width);
  const auto places = static_cast<std::size_t>(width);
  std::string field(text.substr(0, places));
  field.resize(places, ' ');
  return field;
}

}  // namespace flanks
