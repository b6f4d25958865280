#include "report/table4_columns.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/utf8.h"
#include "report/format/box.h"

namespace flanks {
namespace {

// Two Flanks, "Persons" with elements 1 and 1234 and "Items" with element 7; a position for each.
class Columns : public ::testing::Test {
 protected:
  Analysis analysis;
  const FigureTexts figures = {"  4", "  3", "  1.2", "  1.8", "  3.1"};

  void SetUp() override {
    Design& design = analysis.design;
    design.FlankCount = design.ModelFlankCount = 2;
    design.ElementTotal = 3;
    FlankTable& flanks = design.flanks;
    flanks.FlankName.assign(2, "Persons");
    flanks.FlankName[FlankNo(2)] = "Items";
    flanks.FlankHigh.assign(2, 1234);
    flanks.FlankHigh[FlankNo(2)] = 7;
    flanks.FlankElementCount.assign(2, 2);
    flanks.FlankElementCount[FlankNo(2)] = 1;
    flanks.FlankFirstSlot.assign(2, ElementSlot(1));
    flanks.FlankFirstSlot[FlankNo(2)] = ElementSlot(3);
    design.maps.ModelFlank.assign(2, FlankNo(1));
    design.maps.ModelFlank[Position(2)] = FlankNo(2);
    design.elements.ElementNumber.assign(3, 1);
    design.elements.ElementNumber[ElementSlot(2)] = 1234;
    design.elements.ElementNumber[ElementSlot(3)] = 7;
    design.elements.ElementLabel.assign(3, "Ann");
    design.elements.ElementLabel[ElementSlot(2)] = "Bob";
    design.elements.ElementLabel[ElementSlot(3)] = "fox";
  }

  std::string Line(const Table4Layout& layout, std::int32_t first, std::int32_t second) const {
    const ElementSlot slots[] = {ElementSlot(first), ElementSlot(second)};
    return BoxToAscii(ResponseLine(layout, analysis.design.elements, figures, slots));
  }
};

// A cell for each position: 4 places and the 7 of "Persons", 3 places and the 5 of "Items".
TEST_F(Columns, AFlankTakesTheRoomOfItsNumbersAndLabels) {
  const Table4Layout layout = LayOutTable4(analysis);
  EXPECT_EQ(BoxToAscii(layout.headingRows[1]),
            "| Cat  Score  Exp.  Resd StRes| Num  Persons Num Items| Sequence");
  EXPECT_EQ(layout.rulePattern, "x-----------------------------x-----------------------x");
  EXPECT_EQ(Line(layout, 2, 3), "|  4     3     1.2   1.8  3.1 | 1234 Bob       7 fox  |");
  EXPECT_EQ(Line(layout, 1, 3), "|  4     3     1.2   1.8  3.1 |    1 Ann       7 fox  |");
}

TEST_F(Columns, APositionWithoutAnElementIsBlank) {
  EXPECT_EQ(Line(LayOutTable4(analysis), 0, 3),
            "|  4     3     1.2   1.8  3.1 |                7 fox  |");
}

TEST_F(Columns, LeftHandPutsTheElementsFirst) {
  analysis.settings.LeftHand = true;
  const Table4Layout layout = LayOutTable4(analysis);
  EXPECT_EQ(BoxToAscii(layout.headingRows[1]),
            "| Num  Persons Num Items| Cat  Score  Exp.  Resd StRes| Sequence");
  EXPECT_EQ(layout.rulePattern, "x-----------------------x-----------------------------x");
  EXPECT_EQ(Line(layout, 2, 3), "| 1234 Bob       7 fox  |  4     3     1.2   1.8  3.1 |");
}

// One Flank of 3 + 1 + 5 columns: the group has its least width of 19.
TEST_F(Columns, TheGroupHasALeastWidth) {
  analysis.design.ModelFlankCount = 1;
  analysis.design.maps.ModelFlank.assign(1, FlankNo(2));
  const Table4Layout layout = LayOutTable4(analysis);
  EXPECT_EQ(layout.rulePattern, "x" + std::string(29, '-') + "x" + std::string(20, '-') + "x");
  EXPECT_EQ(BoxToAscii(layout.headingRows[1]),
            "| Cat  Score  Exp.  Resd StRes| Num Items          | Sequence");
  const ElementSlot slot(3);
  EXPECT_EQ(BoxToAscii(ResponseLine(layout, analysis.design.elements, figures, {&slot, 1})),
            "|  4     3     1.2   1.8  3.1 |   7 fox            |");
}

// Labels of any writing and length stand in cells of one width, so separators stay in line.
TEST_F(Columns, LabelsOfAnyWritingKeepTheColumns) {
  const std::string labels[] = {"\xE4\xB8\xAD\xE5\x9B\xBD\xE4\xBA\xBA", "\xC3\x84rzte",
                                std::string(300, 'x')};
  for (std::int32_t slot = 1; slot <= 3; ++slot)
    analysis.design.elements.ElementLabel[ElementSlot(slot)] = labels[slot - 1];
  const Table4Layout layout = LayOutTable4(analysis);
  const auto width = static_cast<int>(layout.rulePattern.size());
  for (const std::int32_t first : {1, 2}) {
    const std::string line = Line(layout, first, 3);
    EXPECT_NEAR(DisplayWidth(line), width, 1) << line;
    EXPECT_NE(line.find(labels[first - 1]), std::string::npos);
    EXPECT_NE(line.find(labels[2] + "|"), std::string::npos);
  }
}

TEST_F(Columns, Table5HasWordsInTheEmptyGroup) {
  const Table4Layout layout = LayOutTable5(analysis.settings, "Mean (Count: 3)");
  EXPECT_EQ(BoxToAscii(layout.headingRows[1]),
            "| Cat  Score  Exp.  Resd StRes|                    |");
  EXPECT_EQ(BoxToAscii(WordLine(layout, figures, "Mean (Count: 3)")),
            "|  4     3     1.2   1.8  3.1 | Mean (Count: 3)    |");
  analysis.settings.LeftHand = true;
  EXPECT_EQ(BoxToAscii(WordLine(LayOutTable5(analysis.settings, ""), figures, "S.D. (Sample)")),
            "| S.D. (Sample)      |  4     3     1.2   1.8  3.1 |");
}

TEST_F(Columns, TheGroupOfTable5GrowsWithItsWords) {
  const std::string words = "Mean (Cnt: 1234567890)";
  const Table4Layout layout = LayOutTable5(analysis.settings, words);
  EXPECT_EQ(layout.groupWidth, 22);
  EXPECT_EQ(BoxToAscii(WordLine(layout, figures, words)),
            "|  4     3     1.2   1.8  3.1 | " + words + "|");
}

TEST_F(Columns, WordsStandInTheMiddleOfTheBox) {
  analysis.design.ModelFlankCount = 0;
  analysis.design.maps.ModelFlank.clear();
  const std::string words = " *** words";
  const Table4Layout layout = LayOutTable4(analysis, words);
  EXPECT_EQ(BoxToAscii(LineAcross(layout, words)),
            "|" + std::string(20, ' ') + words + std::string(20, ' ') + "|");
}

}  // namespace
}  // namespace flanks
