#include "report/format/sort_key.h"

#include <bit>
#include <cstddef>

#include "base/program_fault.h"
#include "base/text.h"
#include "report/format/join_number.h"

namespace flanks {
namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

void AppendByte(std::string& text, std::uint32_t value, int byte) {
  const std::uint32_t bits = value >> (8 * byte);
  text += kHexDigits[(bits >> 4) & 15];
  text += kHexDigits[bits & 15];
}

std::string MemoryOrder(std::uint32_t value, int bytes) {
  std::string text;
  for (int byte = 0; byte < bytes; ++byte) AppendByte(text, value, byte);
  return text;
}

// The value of a text in memory order of this many bytes; a fault beginning with `faultText` when
// the text is none.
std::uint32_t FromMemoryOrder(std::string_view text, std::size_t bytes,
                              std::string_view faultText) {
  std::uint32_t value = 0;
  bool valid = text.size() == 2 * bytes;
  for (std::size_t at = 0; valid && at < text.size(); ++at) {
    const std::size_t digit = kHexDigits.find(UpperCase(text[at]));
    valid = digit != std::string_view::npos;
    // Within a byte the first digit is the higher one.
    if (valid) value |= static_cast<std::uint32_t>(digit) << (4 * (at ^ 1U));
  }
  if (!valid) throw ProgramFault(std::string(faultText).append(text).append("."));
  return value;
}

std::string SwapPairs(std::string_view text) {
  std::string swapped;
  for (std::size_t at = text.size(); at >= 2; at -= 2) swapped += text.substr(at - 2, 2);
  return swapped;
}

std::string LengthFault(std::string_view words, std::size_t length) {
  return JoinNumber(words, length) + ".";
}

}  // namespace

std::string MKIhex(std::int16_t value) {
  return MemoryOrder(static_cast<std::uint16_t>(value), 2);
}
std::string MKLhex(std::int32_t value) {
  return MemoryOrder(static_cast<std::uint32_t>(value), 4);
}

std::int16_t CVIhex(std::string_view text) {
  return static_cast<std::int16_t>(
      FromMemoryOrder(text, 2, "Failure (10)! Illegal Function Call for CVIhex of: "));
}

std::int32_t CVLhex(std::string_view text) {
  return static_cast<std::int32_t>(
      FromMemoryOrder(text, 4, "Failure (11)! Illegal Function Call for CVLhex of: "));
}

std::string Swapl(std::string_view text) {
  if (text.size() != 8) {
    throw ProgramFault(LengthFault("Failure (1)! Swapl$ not 8 bytes: ", text.size()));
  }
  return SwapPairs(text);
}

std::string iSwap(std::string_view text) {
  if (text.size() != 4) {
    throw ProgramFault(LengthFault("Failure (2)! iSwap$ not 4 bytes: ", text.size()));
  }
  return SwapPairs(text);
}

std::string FloatKey(float value) {
  if (value == 0.0f) return "100000000";
  const bool negative = value < 0.0f;
  const float shown = negative ? 1.0f / value : value;
  std::string key(1, negative ? '0' : '1');
  for (int byte = 3; byte >= 0; --byte) AppendByte(key, std::bit_cast<std::uint32_t>(shown), byte);
  return key;
}

std::string Complement(std::string_view text) {
  std::string complement(text);
  for (char& c : complement) c = static_cast<char>(255 - static_cast<unsigned char>(c));
  return complement;
}

}  // namespace flanks
