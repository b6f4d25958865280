#include "report/format/box.h"

#include <gtest/gtest.h>
#include <string>

namespace flanks {
namespace {

std::string Ascii(std::string_view pattern, BoxPosition position, int tag = 0) {
  return BoxToAscii(BoxLine(pattern, position, tag, true));
}

constexpr std::string_view kAllCodes = "\x0E\x0F\x10\x14\x15\x16\x17\x18\x19\x1C\x1D\x11\x12\x13";

TEST(BoxLine, DrawsTheThreeRulesOfABox) {
  EXPECT_EQ(Ascii("x---x--x", BoxPosition::top), "+------+");
  EXPECT_EQ(Ascii("x---x--x", BoxPosition::mid), "|---+--|");
  EXPECT_EQ(Ascii("x---x--x", BoxPosition::bot), "+------+");
  EXPECT_EQ(BoxLine("x---x--x", BoxPosition::top), "\x16\x0E\x0E\x0E\x17\x0E\x0E\x18");
  EXPECT_EQ(BoxLine("x---x--x", BoxPosition::mid), "\x10\x0E\x0E\x0E\x14\x0E\x0E\x15");
  EXPECT_EQ(BoxLine("x---x--x", BoxPosition::bot), "\x19\x0E\x0E\x0E\x1C\x0E\x0E\x1D");
}

TEST(BoxLine, ShapesAJunctionByItsNeighbours) {
  EXPECT_EQ(BoxLine("x", BoxPosition::top), "\x0E");
  EXPECT_EQ(BoxLine("x", BoxPosition::mid), "\x0F");
  EXPECT_EQ(BoxLine("x", BoxPosition::bot), "\x0E");
  EXPECT_EQ(BoxLine("xx", BoxPosition::top), "\x16\x18") << "an x counts as line";
  EXPECT_EQ(BoxLine("- x -", BoxPosition::mid), "\x0E \x0F \x0E") << "a blank does not";
  EXPECT_EQ(BoxLine("x(Mean)x", BoxPosition::bot), "\x0E(Mean)\x0E") << "words stay";
  EXPECT_EQ(BoxLine("", BoxPosition::top), "");
}

TEST(BoxLine, PrintsCrossesOnRequestInAsciiOnly) {
  EXPECT_EQ(Ascii("x--x--x", BoxPosition::top, 91), "+--+--+");
  EXPECT_EQ(Ascii("x--x--x", BoxPosition::mid, 91), "|--+--|");
  EXPECT_EQ(Ascii("x--x--x", BoxPosition::bot, 91), "+--+--+");
  EXPECT_EQ(Ascii("x--x--x", BoxPosition::top, 90), "+-----+");
  EXPECT_EQ(BoxLine("x--x--x", BoxPosition::top, 91, false),
            BoxLine("x--x--x", BoxPosition::top, 0, false));
}

TEST(BoxLine, ShowsAnUnknownPosition) {
  EXPECT_EQ(BoxPositionNamed("top"), BoxPosition::top);
  EXPECT_EQ(BoxPositionNamed("mid"), BoxPosition::mid);
  EXPECT_EQ(BoxPositionNamed("bot"), BoxPosition::bot);
  EXPECT_EQ(BoxLine("x-x x", BoxPositionNamed("abc"), 91, true), "@\x0E@ @");
}

TEST(Box, APatternFollowsTheHeadingRow) {
  EXPECT_EQ(RulePattern("\x0F ab \x0F"
                        "c\x0F"),
            "x----x-x");
}

TEST(Box, CodesBecomeTheCharactersOfTheOutput) {
  EXPECT_EQ(BoxToAscii(kAllCodes), "-||+|+-++-+***");
  EXPECT_EQ(BoxToPcBytes(kAllCodes), "\xC4\xB3\xC3\xC5\xB4\xDA\xC2\xBF\xC0\xC1\xD9\xD8\xB5\xC6");
  EXPECT_EQ(BoxToUtf8(kAllCodes), "─│├┼┤┌┬┐└┴┘╪╡╞");
  EXPECT_EQ(BoxToBlanks(kAllCodes), std::string(14, ' '));
}

TEST(Box, OtherBytesPassUnchanged) {
  const std::string label = "\t\x0C caf\xC3\xA9 \xB3 \x1A\x1B\x1E-+|";
  EXPECT_EQ(BoxToAscii(label), label);
  EXPECT_EQ(BoxToPcBytes(label + "  "), label + "  ") << "trailing blanks stay";
  EXPECT_EQ(BoxToUtf8(label), label);
  EXPECT_EQ(BoxToBlanks("\x0F"
                        "12\x0F"
                        "34\x0F"),
            " 12 34 ")
      << "columns keep their places";
}

TEST(Box, ARuleLineHoldsAHorizontalAndNoWords) {
  EXPECT_TRUE(IsRuleLine(BoxLine("x---x", BoxPosition::mid)));
  EXPECT_TRUE(IsRuleLine("  \x0E "));
  EXPECT_FALSE(IsRuleLine("\x0F   \x0F")) << "a row with separators only stays";
  EXPECT_FALSE(IsRuleLine(BoxLine("x--(Mean)--x", BoxPosition::mid)));
  EXPECT_FALSE(IsRuleLine("---")) << "no box code";
  EXPECT_FALSE(IsRuleLine(""));
}

}  // namespace
}  // namespace flanks
