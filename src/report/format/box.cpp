#include "report/format/box.h"

#include <algorithm>
#include <cstddef>

namespace flanks {
namespace {

bool IsLine(char c) {
  return c == '-' || c == 'x';
}

// The four shapes of a junction: without line on either side, line to the right only, to the left
// only, on both sides.
using Junctions = std::array<char, 4>;
constexpr Junctions kTopJunctions{kBoxHorizontal, kBoxTopLeft, kBoxTopRight, kBoxTopTee};
constexpr Junctions kMidJunctions{kBoxColumn, kBoxLeftTee, kBoxRightTee, kBoxCross};
constexpr Junctions kBotJunctions{kBoxHorizontal, kBoxBottomLeft, kBoxBottomRight, kBoxBottomTee};
constexpr Junctions kNoJunctions{'@', '@', '@', '@'};

Junctions JunctionsAt(BoxPosition position, bool crossed) {
  Junctions junctions = kNoJunctions;
  switch (position) {
    case BoxPosition::top:
      junctions = kTopJunctions;
      break;
    case BoxPosition::mid:
      junctions = kMidJunctions;
      break;
    case BoxPosition::bot:
      junctions = kBotJunctions;
      break;
    case BoxPosition::other:
      return junctions;
  }
  if (crossed) junctions[3] = kBoxCross;
  return junctions;
}

// The box codes lie in 14 to 29: one comparison passes most characters of a line.
bool MayBeBoxCode(char c) {
  return c >= kBoxHorizontal && c <= kBoxBottomRight;
}

template <class Conversion>
std::string Convert(std::string_view line, Conversion append) {
  std::string text;
  text.reserve(line.size());
  for (const char c : line) {
    const BoxCharacter* box = FindBoxCharacter(c);
    if (box == nullptr) {
      text += c;
    } else {
      append(text, *box);
    }
  }
  return text;
}

}  // namespace

const BoxCharacter* FindBoxCharacter(char code) {
  if (!MayBeBoxCode(code)) return nullptr;
  const auto* const found = std::find_if(kBoxCharacters.begin(), kBoxCharacters.end(),
                                         [code](const BoxCharacter& b) { return b.code == code; });
  return found == kBoxCharacters.end() ? nullptr : found;
}

BoxPosition BoxPositionNamed(std::string_view name) {
  if (name == "top") return BoxPosition::top;
  if (name == "mid") return BoxPosition::mid;
  if (name == "bot") return BoxPosition::bot;
  return BoxPosition::other;
}

std::string BoxLine(std::string_view pattern, BoxPosition position, int tag, bool ascii) {
  const Junctions junctions = JunctionsAt(position, ascii && tag == kCrossedJunctionsTag);
  std::string line(pattern);
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    if (pattern[at] == '-') line[at] = kBoxHorizontal;
    if (pattern[at] != 'x') continue;
    const bool left = at > 0 && IsLine(pattern[at - 1]);
    const bool right = at + 1 < pattern.size() && IsLine(pattern[at + 1]);
    line[at] = junctions[(left ? 2U : 0U) + (right ? 1U : 0U)];
  }
  return line;
}

std::string RulePattern(std::string_view headingRow) {
  std::string pattern(headingRow);
  for (char& c : pattern) c = c == kBoxColumn ? 'x' : '-';
  return pattern;
}

std::string BoxToAscii(std::string_view line) {
  return Convert(line, [](std::string& text, const BoxCharacter& box) { text += box.ascii; });
}

std::string BoxToPcBytes(std::string_view line) {
  return Convert(line, [](std::string& text, const BoxCharacter& box) {
    text += static_cast<char>(box.pcByte);
  });
}

std::string BoxToUtf8(std::string_view line) {
  // All these characters lie in U+0800 to U+FFFF and take three bytes.
  return Convert(line, [](std::string& text, const BoxCharacter& box) {
    text += static_cast<char>(0xE0 | (box.unicode >> 12));
    text += static_cast<char>(0x80 | ((box.unicode >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (box.unicode & 0x3F));
  });
}

std::string BoxToBlanks(std::string_view line) {
  return Convert(line, [](std::string& text, const BoxCharacter&) { text += ' '; });
}

bool IsRuleLine(std::string_view line) {
  return line.find(kBoxHorizontal) != std::string_view::npos &&
         std::all_of(line.begin(), line.end(),
                     [](char c) { return c == ' ' || FindBoxCharacter(c) != nullptr; });
}

}  // namespace flanks
