// Box characters: rules and column separators of the Tables.
//
// No Table holds drawing characters.  Separators and rules stand in its lines as control codes, and
// whoever lets a line out (report file, screen, webpage) converts them at the last moment: to
// ASCII, to single bytes of the PC code page, to UTF-8, to webpage entities (webpage_line.h) or to
// blanks. Other bytes of a line pass unchanged, so labels in any encoding do.
//
// A rule starts as a pattern of "-" with an "x" at each column separator, which can be made from a
// heading row; BoxLine turns it into codes.
//
// Tested by tests/unit/report/format/box_test.cpp.
#ifndef FLANKS_REPORT_FORMAT_BOX_H
#define FLANKS_REPORT_FORMAT_BOX_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace flanks {

// Named for what they draw.  A tee is named for the side of the box on which it stands.
constexpr char kBoxHorizontal = 14;
constexpr char kBoxColumn = 15;  // the separator inside edit words and heading rows
constexpr char kBoxLeftTee = 16;
constexpr char kBoxDoubleCross = 17;
constexpr char kBoxDoubleRightTee = 18;
constexpr char kBoxDoubleLeftTee = 19;
constexpr char kBoxCross = 20;
constexpr char kBoxRightTee = 21;
constexpr char kBoxTopLeft = 22;
constexpr char kBoxTopTee = 23;
constexpr char kBoxTopRight = 24;
constexpr char kBoxBottomLeft = 25;
constexpr char kBoxBottomTee = 28;
constexpr char kBoxBottomRight = 29;

struct BoxCharacter {
  char code;
  unsigned char pcByte;
  char ascii;
  std::uint16_t unicode;
};

constexpr std::array<BoxCharacter, 14> kBoxCharacters{{
    {kBoxHorizontal, 0xC4, '-', 9472},
    {kBoxColumn, 0xB3, '|', 9474},
    {kBoxLeftTee, 0xC3, '|', 9500},
    {kBoxCross, 0xC5, '+', 9532},
    {kBoxRightTee, 0xB4, '|', 9508},
    {kBoxTopLeft, 0xDA, '+', 9484},
    {kBoxTopTee, 0xC2, '-', 9516},
    {kBoxTopRight, 0xBF, '+', 9488},
    {kBoxBottomLeft, 0xC0, '+', 9492},
    {kBoxBottomTee, 0xC1, '-', 9524},
    {kBoxBottomRight, 0xD9, '+', 9496},
    {kBoxDoubleCross, 0xD8, '*', 9578},
    {kBoxDoubleRightTee, 0xB5, '*', 9569},
    {kBoxDoubleLeftTee, 0xC6, '*', 9566},
}};

// The box character of a code, or null for any other character.
const BoxCharacter* FindBoxCharacter(char code);

// Where a rule stands in its box.  `other` draws "@" at each junction, so that it is seen.
enum class BoxPosition : std::uint8_t { top, mid, bot, other };
BoxPosition BoxPositionNamed(std::string_view name);

// With this tag, junctions within a top or bottom rule print "+" in ASCII.
constexpr int kCrossedJunctionsTag = 91;

// The rule of a pattern.  An "x" takes its shape from its two neighbours in the pattern, where "-"
// and "x" count as line and the ends of the pattern do not; each "-" becomes a horizontal; other
// characters (words in a rule) stay.  `ascii`: the line is for ASCII output, where the tag counts.
std::string BoxLine(std::string_view pattern, BoxPosition position, int tag = 0,
                    bool ascii = false);

// The pattern of a heading row: "x" at each column separator, "-" elsewhere.
std::string RulePattern(std::string_view headingRow);

std::string BoxToAscii(std::string_view line);
std::string BoxToPcBytes(std::string_view line);
std::string BoxToUtf8(std::string_view line);  // for the screen of a terminal
std::string BoxToBlanks(std::string_view line);

// True for a line of box codes and blanks with at least one horizontal: such a line is dropped when
// boxes are hidden, while a line of separators only keeps its place.
bool IsRuleLine(std::string_view line);

}  // namespace flanks

#endif  // FLANKS_REPORT_FORMAT_BOX_H
