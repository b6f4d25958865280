#include "data/data_line.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace flanks {
namespace {

struct SplitCase {
  const char* line;
  float replication;
  std::vector<std::string> fields;
  const char* why;
};

std::vector<std::string> FieldsOf(const DataLine& line) {
  return {line.Fields.begin(), line.Fields.end()};
}

void ExpectSplits(const std::vector<SplitCase>& cases, const SplitRules& rules) {
  DataLine line;  // one for all: nothing of a line may stay behind
  for (const SplitCase& c : cases) {
    SCOPED_TRACE(std::string(c.line) + " : " + c.why);
    ASSERT_EQ(SplitDataLine(c.line, rules, line), Fault::none);
    EXPECT_EQ(line.Replication, c.replication);
    EXPECT_EQ(FieldsOf(line), c.fields);
  }
}

SplitRules Flanks(int dataFlankCount) {
  SplitRules rules;
  rules.DataFlankCount = dataFlankCount;
  return rules;
}

TEST(SplitDataLine, SplitsAtCommasOrTabsOrBlanks) {
  ExpectSplits(
      {
          {"1,2,3", 1, {"1", "2", "3"}, "commas"},
          {"1 2  3", 1, {"1", "2", "3"}, "runs of blanks"},
          {"Ann Lee,2,3", 1, {"Ann Lee", "2", "3"}, "blanks stay in a line with commas"},
          {" 1 , 2 ,3 ", 1, {"1", "2", "3"}, "fields are trimmed"},
          {"1\t2\t3", 1, {"1", "2", "3"}, "tabs"},
          {"1\t2 b\t3", 1, {"1", "2 b", "3"}, "blanks stay in a line with tabs"},
          {"1,2\t3,4", 1, {"1", "2 3", "4"}, "a tab in a line with commas is a blank"},
          {"1=2=3", 1, {"1", "2", "3"}, "= is a comma"},
          {"1=2 3=4", 1, {"1", "2 3", "4"}, "= is a comma, so blanks stay"},
          {"1,2,", 1, {"1", "2", ""}, "an empty last field"},
          {",1,3", 1, {"", "1", "3"}, "an empty first field"},
          {"*", 1, {"*"}, "the end of the data"},
          {"* the end", 1, {"*"}, "with a word"},
          {"", 1, {}, "an empty line"},
          {"   ", 1, {}, "a line of blanks"},
      },
      Flanks(2));
}

TEST(SplitDataLine, QuoteMarksDisappear) {
  ExpectSplits(
      {
          {"\"Ann\",2,3", 1, {"Ann", "2", "3"}, "in a line with commas"},
          {"\"Ann\" \"B\" 3", 1, {"Ann", "B", "3"}, "in a line of blanks"},
          {"\"Ann Lee\" 2 3", 1, {"Ann Lee", "2", "3"}, "a quoted text keeps its blanks"},
          {"'Ann Lee' 2 '3'", 1, {"Ann Lee", "2", "3"}, "apostrophes too"},
          {"\"Ann\"\t2\t\"3\"", 1, {"Ann", "2", "3"}, "in a line with tabs"},
          {"O'Brien 2 3", 1, {"O", "Brien", "2", "3"}, "an apostrophe in a word separates"},
          {"O'Brien,2,3", 1, {"O Brien", "2", "3"}, "and is a blank where there are commas"},
          {"\"\" 2 3", 1, {"2", "3"}, "nothing quoted is nothing"},
          {"\"\"", 1, {}, "and a line of it is empty"},
      },
      Flanks(2));
}

TEST(SplitDataLine, ReplicationIsTheWeightOfTheLine) {
  ExpectSplits(
      {
          {"R2.5,1,2,3", 2.5f, {"1", "2", "3"}, "a fraction"},
          {"r3 1 2 4", 3, {"1", "2", "4"}, "small letter, blanks"},
          {"R.5,1,1,2", 0.5f, {"1", "1", "2"}, "no digit before the point"},
          {"R3.,1,1,2", 3, {"1", "1", "2"}, "none behind it"},
          {"R0,1,1,2", 0, {"1", "1", "2"}, "nothing"},
          {"R2 ,1,1,3", 2, {"1", "1", "3"}, "trimmed"},
          {"R,1,2,3", 1, {"R", "1", "2", "3"}, "no number: a field"},
          {"R.,1,2,3", 1, {"R.", "1", "2", "3"}, "a point is no number"},
          {"R1.2.3,1,3", 1, {"R1.2.3", "1", "3"}, "nor are two"},
          {"R2D2,1,3", 1, {"R2D2", "1", "3"}, "a name"},
          {"R-1,1,3", 1, {"R-1", "1", "3"}, "a sign"},
          {"1,R2,3", 1, {"1", "R2", "3"}, "only in front"},
          {"R2", 2, {}, "and nothing else"},
      },
      Flanks(1));
}

TEST(SplitDataLine, ReplicationTextMayBeAnother) {
  SplitRules rules = Flanks(2);
  rules.Replication = "W";
  ExpectSplits({{"W2,1,1,3", 2, {"1", "1", "3"}, "the text"},
                {"R2,1,1,3", 1, {"R2", "1", "1", "3"}, "no more the text"}},
               rules);
  rules.Replication = "N=";
  ExpectSplits({{"n=2,1,1,3", 1, {"n", "2", "1", "1", "3"}, "= is gone before the look"}}, rules);
}

TEST(SplitDataLine, ReplicationBeyondEveryNumberIsAField) {
  const std::string huge = "R" + std::string(60, '9');
  DataLine line;
  ASSERT_EQ(SplitDataLine(huge + ",1,3", Flanks(1), line), Fault::none);
  EXPECT_EQ(line.Replication, 1.0f);
  EXPECT_EQ(line.Field(1), huge);
}

TEST(SplitDataLine, UnderlineBecomesMinusInElementPositionsOnly) {
  ExpectSplits({{"1_3,Ann_Lee,2_3", 1, {"1-3", "Ann-Lee", "2_3"}, ""}}, Flanks(2));
}

TEST(SplitDataLine, PositionsWithADvalueTakeNothingOfTheLine) {
  const DvalueEntry second, last;
  SplitRules rules = Flanks(3);
  rules.dvalues = {nullptr, &second, &last};
  ExpectSplits({{"1,3", 1, {"1", "", "", "3"}, "two positions are left out"},
                {"1", 1, {"1", "", ""}, "no response"},
                {"R2,1,3,4", 2, {"1", "", "", "3", "4"}, "replication is no position"}},
               rules);
}

TEST(SplitDataLine, TakesThirtyTwoThousandFieldsAndNoMore) {
  std::string text(2 * kMostFields - 1, '1');
  for (std::size_t i = 1; i < text.size(); i += 2) text[i] = ',';
  DataLine line;
  ASSERT_EQ(SplitDataLine(text, Flanks(2), line), Fault::none);
  EXPECT_EQ(line.FieldCount(), kMostFields);
  EXPECT_EQ(SplitDataLine(text + ",1", Flanks(2), line), Fault::tooManyFields);
  EXPECT_EQ(SplitDataLine("R2," + text, Flanks(2), line), Fault::none);
}

TEST(SplitDataLine, TellsHowItUnderstoodTheLine) {
  DataLine line;
  ASSERT_EQ(SplitDataLine("r2 'Ann Lee' 2  3", Flanks(2), line), Fault::none);
  EXPECT_EQ(line.Processed(), "Ann Lee,2,3");
  EXPECT_EQ(line.replicationField, "r2");
}

}  // namespace
}  // namespace flanks
