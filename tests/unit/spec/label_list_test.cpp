#include "spec/label_list.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/scratch_folder.h"

namespace flanks {
namespace {

void Fill(TextWorkFile& file, const std::vector<std::string>& lines) {
  ASSERT_FALSE(file.Create("labels", "txt"));
  for (std::size_t i = 0; i < lines.size(); ++i)
    file.WriteLine(LabelRecord(lines[i], static_cast<std::int64_t>(i + 10)));
}

std::string Shown(const LabelLine& line) {
  std::string text = std::to_string(line.lineNumber) + (line.beginsFlank ? "F" : "E");
  for (int field = 1; field <= kLabelLineFields; ++field)
    text += "|" + std::string(line.fields[static_cast<std::size_t>(field)]);
  return text;
}

TEST(LabelLines, TellsFlankLinesFromElementLines) {
  ScratchFolder folder;
  TextWorkFile file;
  Fill(file, {"1,Persons,A", "1=Ann", "2-9=Guest,1.5,2,1,3", "*", "*", "2,Items", "1=i1", "* end",
              "3,Raters"});
  LabelLines lines(file);
  LabelLine line;
  std::vector<std::string> shown;
  while (lines.Next(line)) shown.push_back(Shown(line));
  const std::vector<std::string> expected = {
      "10F|1|Persons|A|||", "11E|1|Ann||||", "12E|2-9|Guest|1.5|2|1|3",
      "15F|2|Items||||",    "16E|1|i1||||",  "18F|3|Raters||||"};
  EXPECT_EQ(shown, expected);
}

TEST(LabelLines, SkipsAnEmptyFirstLineAndReadsTwice) {
  ScratchFolder folder;
  TextWorkFile file;
  Fill(file, {"", "1,Persons"});
  for (int reading = 1; reading <= 2; ++reading) {
    LabelLines lines(file);
    LabelLine line;
    ASSERT_TRUE(lines.Next(line));
    EXPECT_EQ(Shown(line), "11F|1|Persons||||");
    EXPECT_FALSE(lines.Next(line));
  }
}

TEST(LabelLines, SplitsAtEqualSignsCommasAndTabs) {
  struct Case {
    std::string line, shown;
  };
  const Case cases[] = {
      {"1\tAnn\t2", "10F|1|Ann|2|||"},
      {" 1 = Adam Smith , 2.5 ,1", "10F|1|Adam Smith|2.5|1||"},
      {"1,\"A\",\"B\"", "10F|1|\"A\"|B|||"},  // quotes go at the ends of the last field only
      {"1,' \"A' ", "10F|1|A||||"},
      {"1,\"A\",", "10F|1|\"A\"||||"},
      {"1,a,b,c,d,\"e\"", "10F|1|a|b|c|d|e"},
      {"1,a,b,c,d,\"e\",f", "10F|1|a|b|c|d|\"e\""},
      {"5", "10F|5|||||"},
  };
  for (const Case& c : cases) {
    ScratchFolder folder;
    TextWorkFile file;
    Fill(file, {c.line});
    LabelLines lines(file);
    LabelLine line;
    ASSERT_TRUE(lines.Next(line));
    EXPECT_EQ(Shown(line), c.shown) << c.line;
  }
}

TEST(RangeOrder, TellsWhatIsOutOfOrder) {
  const FlankNo one(1), two(2);
  EXPECT_EQ(OrderOf({}), RangeOrder::inOrder);
  EXPECT_EQ(OrderOf({{one, 1, 30}, {one, 3, 3}, {two, 1, 1}}), RangeOrder::inOrder);
  EXPECT_EQ(OrderOf({{one, 2, 2}, {one, 1, 1}}), RangeOrder::numbersOutOfOrder);
  EXPECT_EQ(OrderOf({{two, 1, 1}, {one, 2, 2}}), RangeOrder::flanksOutOfOrder);
}

TEST(RangeOrder, HoldsAfterSorting) {
  std::vector<NumberRange> ranges;
  std::uint32_t state = 7;  // any sequence without order
  for (int i = 0; i < 1000; ++i) {
    state = state * 1664525u + 1013904223u;
    const auto low = static_cast<std::int32_t>(state >> 20);
    ranges.push_back({FlankNo(static_cast<std::int32_t>(state >> 10 & 3) + 1), low, low + 5});
  }
  ASSERT_NE(OrderOf(ranges), RangeOrder::inOrder);
  SortRanges(ranges);
  EXPECT_EQ(OrderOf(ranges), RangeOrder::inOrder);
}

std::string Numbers(const Design& design) {
  std::string text;
  for (const ElementSlot slot : Upward(design.elements.ElementNumber))
    text += std::to_string(design.elements.ElementFlank[slot].number()) + ":" +
            std::to_string(design.elements.ElementNumber[slot]) + " ";
  return text;
}

TEST(GiveSlots, GivesEachNumberOneSlotHoweverOftenItStands) {
  Design design;
  design.FlankCount = 2;
  GiveSlots({{FlankNo(1), 1, 4}, {FlankNo(1), 2, 2}, {FlankNo(1), 3, 6}, {FlankNo(2), 5, 5}}, 0,
            design);
  EXPECT_EQ(Numbers(design), "1:1 1:2 1:3 1:4 1:5 1:6 2:5 ");
  EXPECT_EQ(design.ElementTotal, 7);
}

TEST(GiveSlots, LeavesTheNullElementOut) {
  Design design;
  design.FlankCount = 2;
  GiveSlots({{FlankNo(1), 1, 4}, {FlankNo(2), 3, 3}, {FlankNo(2), 5, 6}}, 3, design);
  EXPECT_EQ(Numbers(design), "1:1 1:2 1:4 2:5 2:6 ");
  EXPECT_EQ(design.flanks.FlankLow[FlankNo(2)], 5);
  GiveSlots({{FlankNo(1), 0, 1}}, -1, design);  // no null element
  EXPECT_EQ(Numbers(design), "1:0 1:1 ");
}

TEST(GiveSlots, FillsTheFlankTableAndLeavesEmptyFlanksAtZero) {
  Design design;
  design.FlankCount = 3;
  GiveSlots({{FlankNo(1), 2, 3}, {FlankNo(1), 7, 7}, {FlankNo(3), 2147483646, 2147483646}}, 0,
            design);
  const FlankTable& flanks = design.flanks;
  struct Row {
    int flank, low, high, count, first;
  };
  for (const Row& row :
       {Row{1, 2, 7, 3, 1}, Row{2, 0, 0, 0, 0}, Row{3, 2147483646, 2147483646, 1, 4}}) {
    const FlankNo flank(row.flank);
    EXPECT_EQ(flanks.FlankLow[flank], row.low) << row.flank;
    EXPECT_EQ(flanks.FlankHigh[flank], row.high) << row.flank;
    EXPECT_EQ(flanks.FlankElementCount[flank], row.count) << row.flank;
    EXPECT_EQ(flanks.FlankFirstSlot[flank].number(), row.first) << row.flank;
  }
  EXPECT_TRUE(SlotsOf(flanks, FlankNo(2)).empty());
}

}  // namespace
}  // namespace flanks
