#include "base/shown_text.h"

#include <algorithm>

#include "base/utf8.h"

namespace flanks {
namespace {

constexpr std::size_t kMostBytes = 4;  // of a character

bool IsAbove127(char c) {
  return static_cast<unsigned char>(c) > 127;
}
bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// The bytes of the whole character at the start of `text`; 0 when there is none.
std::size_t CharacterLength(std::string_view text) {
  if (!IsAbove127(text.front())) return 1;
  std::size_t bytes = 1;
  while (bytes < std::min(text.size(), kMostBytes) && IsContinuation(text[bytes])) ++bytes;
  for (; bytes > 1; --bytes)
    if (IsUtf8(text.substr(0, bytes))) return bytes;
  return 0;
}

}  // namespace

std::string_view CutBetweenCharacters(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  std::size_t end = most;
  while (end > 0 && most - end < kMostBytes && IsContinuation(text[end])) --end;
  return text.substr(0, end);
}

std::string WholeCharacters(std::string_view part, std::string_view source) {
  const bool oneByteCodePage =
      std::any_of(source.begin(), source.end(), IsAbove127) && !IsUtf8(source);
  if (oneByteCodePage) return std::string(part);
  std::string whole;
  whole.reserve(part.size());
  while (!part.empty()) {
    const std::size_t bytes = CharacterLength(part);
    if (bytes == 0)
      whole += '?';
    else
      whole += part.substr(0, bytes);
    part.remove_prefix(std::max<std::size_t>(bytes, 1));
  }
  return whole;
}

}  // namespace flanks
