#include "base/utf8.h"

#include <algorithm>
#include <cstddef>

namespace flanks {
namespace {

// Widths are counted in tenths of a column, so that 1.8 is exact.
constexpr int kNarrow = 10;
constexpr int kWide = 18;

constexpr unsigned char Byte(char c) {
  return static_cast<unsigned char>(c);
}

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return Byte(c) < 128; });
}

// The bytes that follow this lead byte, or -1 when no character begins with it.
int Continuations(unsigned char lead) {
  if (lead <= 127) return 0;
  if (lead >= 194 && lead <= 223) return 1;
  if (lead >= 224 && lead <= 239) return 2;
  if (lead >= 240 && lead <= 244) return 3;
  return -1;
}

bool HasValidSequences(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    int following = Continuations(Byte(text[at++]));
    if (following < 0) return false;
    for (; following > 0; --following, ++at) {
      if (at == text.size() || Byte(text[at]) < 128 || Byte(text[at]) > 191) return false;
    }
  }
  return true;
}

struct Character {
  std::size_t bytes;
  int tenths;
};

Character CharacterWith(unsigned char lead) {
  if (lead <= 127) return {1, kNarrow};
  if (lead >= 194 && lead <= 223) return {2, kNarrow};
  if (lead >= 224 && lead <= 239) return {3, kWide};
  return {4, kNarrow};
}

}  // namespace

bool IsUtf8(std::string_view text, Utf8Encoded encoded) {
  if (IsAscii(text)) return false;
  return encoded == Utf8Encoded::yes || HasValidSequences(text);
}

int DisplayWidth(std::string_view text, Utf8Encoded encoded) {
  if (!IsUtf8(text, encoded)) return static_cast<int>(text.size());
  int tenths = 0;
  for (std::size_t at = 0; at < text.size();) {
    const Character character = CharacterWith(Byte(text[at]));
    tenths += character.tenths;
    at += character.bytes;
  }
  return (tenths + 5) / 10;
}

}  // namespace flanks
