#include "report/format/edit_word.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/program_fault.h"
#include "report/format/fixed_field.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> Tokens(std::string_view word) {
  std::vector<std::string> tokens;
  std::size_t pos = 1;
  for (;;) {
    const std::string_view token = NextEditToken(word, pos);
    if (token.empty()) return tokens;
    tokens.emplace_back(token);
  }
}

template <class Edit>
std::string FaultOf(Edit edit) {
  try {
    edit();
  } catch (const ProgramFault& fault) {
    return fault.what();
  }
  return "no fault";
}

std::string Count(std::string_view word, float value) {
  return EditLine(word).EditCount(value).Finish();
}
std::string Text(std::string_view word, std::string_view text) {
  return EditLine(word).EditString(text).Finish();
}

TEST(NextEditToken, TakesPicturesBlanksAndLiterals) {
  EXPECT_THAT(
      Tokens(R"(######.# ####.## ! \    \ \   \ )"),
      ElementsAre("######.#", " ", "####.##", " ", "!", " ", R"(\    \)", " ", R"(\   \)", " "));
  EXPECT_THAT(Tokens("S.D.=####.## Count=######"),
              ElementsAre("S.D.=", "####.##", " ", "Count=", "######"));
  EXPECT_THAT(Tokens(R"(\    \& \   \)"), ElementsAre(R"(\    \)", "&", " ", R"(\   \)"));
  EXPECT_THAT(Tokens("a&b!#,##.#"), ElementsAre("a", "&", "b", "!", "#,##.#"));
  EXPECT_THAT(Tokens("   #"), ElementsAre("   ", "#")) << "a run of blanks is one token";
  EXPECT_THAT(Tokens(R"(\  ab)"), ElementsAre(R"(\  ab)")) << "never closed: all of the rest";
  EXPECT_THAT(Tokens("\x0F##.#\x0F"), ElementsAre("\x0F", "##.#", "\x0F"));
  EXPECT_THAT(Tokens(".# x"), ElementsAre(".", "#", " ", "x")) << "a point alone is literal";
}

TEST(NextEditToken, LeavesThePositionAtTheEnd) {
  std::size_t pos = 4;
  EXPECT_EQ(NextEditToken("abc", pos), "");
  EXPECT_EQ(pos, 4U);
  pos = 9;
  EXPECT_EQ(NextEditToken("abc", pos), "");
  EXPECT_EQ(pos, 9U);
}

TEST(EditString, FillsTheFieldToItsWidth) {
  EXPECT_EQ(Text(R"(\    \)", "abcdefgh"), "abcdef");
  EXPECT_EQ(Text(R"(\    \)", ""), "      ");
  EXPECT_EQ(Text("&", "abc"), "abc");
  EXPECT_EQ(Text("<&>", ""), "<>");
  EXPECT_EQ(Text("!", "xy"), "x");
  EXPECT_EQ(Text(R"(\ \|)", "日本"), "日 |");
}

TEST(EditString, PassesANumericTokenAsText) {
  EXPECT_EQ(Text(R"(##.# \    \)", "abc"), "##.# abc   ");
}

TEST(EditString, TakesTheUsersWordOnTheEncoding) {
  EXPECT_EQ(EditLine("! ", Utf8Encoded::yes).EditString("\xC0\x80").Finish(), "\xC0\x80 ");
  EXPECT_EQ(EditLine("! ").EditString("\xC0\x80").Finish(), "\xC0 ");
}

TEST(EditWord, AMissingFieldIsAProgramFault) {
  EXPECT_EQ(FaultOf([] { EditLine("### x").EditString("abc"); }),
            "Failure (12)! Edit word missing for: abc");
  EXPECT_EQ(FaultOf([] { EditLine(R"(\  \)").EditSingle(2.5f); }),
            "Failure (13)! Edit word missing for: 2.5");
  EXPECT_EQ(FaultOf([] { EditLine("x").EditDouble(2.5); }),
            "Failure (13)! Edit word missing for 2.5");
  EXPECT_EQ(FaultOf([] { EditLine("").EditLong(-7); }), "Failure (13)! Edit word missing for -7");
  EXPECT_EQ(FaultOf([] { EditLine("").EditInteger(7); }), "Failure (13)! Edit word missing for 7");
  EXPECT_EQ(FaultOf([] { EditLine("#").EditCount(1).EditCount(2); }),
            "Failure (13)! Edit word missing for: 2");
}

TEST(EditSingle, RoundsIntoTheToken) {
  EXPECT_EQ(EditLine("a ###.## b").EditSingle(0.125f).Finish(), "a    .13 b");
  EXPECT_EQ(EditLine("#,##.#").EditDouble(1234.56).Finish(), "1234.6") << "a comma is a place";
  EXPECT_EQ(EditLine("#").EditDouble(12).Finish(), "*");
  EXPECT_EQ(EditLine(R"(\ \###)").EditDouble(1).Finish(), R"(\ \  1)")
      << "a text picture is passed";
}

TEST(EditLong, RightAlignsAndOverflows) {
  EXPECT_EQ(EditLine("###").EditLong(7).Finish(), "  7");
  EXPECT_EQ(EditLine("###").EditLong(12345).Finish(), "1E4");
  EXPECT_EQ(EditLine("###").EditLong(-12).Finish(), "-12");
  EXPECT_EQ(EditLine("####.#").EditLong(12).Finish(), "  12.0");
}

TEST(EditInteger, RightAlignsAndLosesItsFirstDigits) {
  EXPECT_EQ(EditLine("###").EditInteger(7).Finish(), "  7");
  EXPECT_EQ(EditLine("###").EditInteger(12345).Finish(), "345");
  EXPECT_EQ(EditLine("###").EditInteger(-123).Finish(), "123");
  EXPECT_EQ(EditLine("##.#").EditInteger(-1).Finish(), "-1.0");
}

TEST(EditCount, HidesTheDecimalsOfWholeCounts) {
  EXPECT_EQ(Count("######.#", 0), "     0  ");
  EXPECT_EQ(Count("######.#", 5), "     5  ");
  EXPECT_EQ(Count("######.#", -5), "    -5  ");
  EXPECT_EQ(Count("######.#", 2.5f), "     2.5");
  EXPECT_EQ(Count("###.#", 12345), "12345");
  EXPECT_EQ(Count("###.#", 1234), "1234 ") << "the point is hidden too";
}

TEST(EditCount, ShowsAFractionInTheBlanksOfAWholeField) {
  EXPECT_EQ(Count("#####", 0), "    0");
  EXPECT_EQ(Count("#####", 7), "    7");
  EXPECT_EQ(Count("#####", 2.5f), "  2.5");
  EXPECT_EQ(Count("#####", 12345), "12345");
  EXPECT_EQ(Count("#####", 12.25f), " 12.3");
  EXPECT_EQ(Count("##", 2.5f), " 3") << "no two blanks to take";
  EXPECT_EQ(Count("a #####", 2.5f), "a   2.5");
  EXPECT_EQ(Count(" ##", 2.5f), "2.5") << "a literal blank is as good";
  EXPECT_EQ(Count("a  b ###", 2.5f), "a  b 2.5") << "words before the field stay";
}

TEST(EditLine, GoesThroughARowOfATable) {
  EditLine line("\x0F######.# #####.# ####.## !\x0F \\    \\ \x0F&\x0F");
  line.EditCount(123).EditCount(10).EditDouble(12.3).EditString("A");
  EXPECT_EQ(line.Rest(), "\x0F \\    \\ \x0F&\x0F");
  line.EditString(FixedField(-0.5, 6, 2)).EditString("Rembrandt");
  EXPECT_EQ(line.line(), "\x0F   123      10     12.30 A\x0F   -.50 \x0FRembrandt");
  EXPECT_EQ(line.Finish(), "\x0F   123      10     12.30 A\x0F   -.50 \x0FRembrandt\x0F")
      << "the rest of the word closes the line";
}

}  // namespace
}  // namespace flanks
