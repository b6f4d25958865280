#include "base/utf8_text.h"

#include <array>
#include <cstddef>

namespace flanks {
namespace {

// The code page from 0x80 to 0x9F; 0 where it has no character.
constexpr std::array<char32_t, 32> kUpperControls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

unsigned char ByteAt(std::string_view text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

// The length of the well-formed character at `at` (The Unicode Standard, table 3-7), 0 for none.
std::size_t CharacterLength(std::string_view text, std::size_t at) {
  const unsigned char lead = ByteAt(text, at), second = ByteAt(text, at + 1);
  const auto follows = [&](std::size_t i) { return (ByteAt(text, at + i) & 0xC0) == 0x80; };
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4 || !follows(1)) return 0;
  if (lead < 0xE0) return 2;
  if (!follows(2)) return 0;
  if (lead < 0xF0) {
    const bool overlong = lead == 0xE0 && second < 0xA0, surrogate = lead == 0xED && second > 0x9F;
    const bool nonCharacter = lead == 0xEF && second == 0xBF && ByteAt(text, at + 2) > 0xBD;
    return overlong || surrogate || nonCharacter ? 0 : 3;
  }
  const bool overlong = lead == 0xF0 && second < 0x90, tooLarge = lead == 0xF4 && second > 0x8F;
  return overlong || tooLarge || !follows(3) ? 0 : 4;
}

bool IsWellFormed(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = text[at] == '\0' ? 0 : CharacterLength(text, at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

}  // namespace

void AppendUtf8(char32_t code, std::string& text) {
  const auto put = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if ((code >= 0xD800 && code < 0xE000) || code > 0x10FFFF) code = U'?';
  if (code < 0x80) return put(code);
  if (code < 0x800) {
    put(0xC0 | (code >> 6));
    return put(0x80 | (code & 0x3F));
  }
  if (code < 0x10000) {
    put(0xE0 | (code >> 12));
  } else {
    put(0xF0 | (code >> 18));
    put(0x80 | ((code >> 12) & 0x3F));
  }
  put(0x80 | ((code >> 6) & 0x3F));
  put(0x80 | (code & 0x3F));
}

std::string_view Utf8Text(std::string_view text, std::string& kept) {
  if (IsWellFormed(text)) return text;
  kept.clear();
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    char32_t code = byte;
    if (byte >= 0x80 && byte < 0xA0) code = kUpperControls[byte - 0x80U];
    AppendUtf8(code == 0 ? U'?' : code, kept);
  }
  return kept;
}

}  // namespace flanks
