#include "spec/scales.h"

#include <gtest/gtest.h>
#include <string>

#include "support/spec_bench.h"

namespace flanks {
namespace {

std::string Scale(std::string_view lines) {
  return "Flanks=2\nRating scale=" + std::string(lines);
}

TEST(RecodeItem, IsATextOrAnAscendingRange) {
  struct Case {
    std::string text, shown;
    bool isRange = false;
    double low = 0.0, high = 0.0;
  };
  const Case cases[] = {
      {"9", "9"},
      {"x", "x"},
      {" good ", "good"},
      {"-1", "-1"},  // a sign, not a range
      {"1E-5", "1E-5"},
      {"NA-", "NA-"},
      {"-", "-"},
      {"1-3", "1-3", true, 1, 3},
      {"3-1", "1-3", true, 1, 3},
      {"-3--1", "-3--1", true, -3, -1},
      {"-1--3", "-3--1", true, -3, -1},
      {"2 - 4.5", "2-4.5", true, 2, 4.5},
      {".5-1", ".5-1", true, 0.5, 1},
      {"4-4", "4-4", true, 4, 4},
  };
  for (const Case& c : cases) {
    const RecodeText read = ParseRecodeItem(c.text);
    EXPECT_EQ(read.fault, Fault::none) << c.text;
    EXPECT_EQ(read.item.text, c.shown) << c.text;
    EXPECT_EQ(read.item.isRange, c.isRange) << c.text;
    EXPECT_EQ(read.item.low, c.low) << c.text;
    EXPECT_EQ(read.item.high, c.high) << c.text;
  }
}

TEST(RecodeItem, RangeNeedsTwoNumbers) {
  for (const std::string text : {"a-b", "1-b", "a-2", "1-2x", "x-y-z"})
    EXPECT_EQ(ParseRecodeItem(text).fault, Fault::recodeRange) << text;
}

std::string Shown(const ScaleDefinition& scale) {
  std::string text = scale.name + "," + scale.type + (scale.specific ? ",S" : ",G") +
                     (scale.keep ? ",K," : ",O,") + scale.tail + "\n";
  for (const ScaleCategory& c : scale.categories)
    text += std::to_string(c.number) + "=" + c.label + "," +
            (c.hasAnchorValue ? std::to_string(c.anchor) : "") + "," + c.flag + "\n";
  for (const RecodeItem& item : scale.recodes)
    text += item.text + (item.isRange ? " (range)" : "") + " to " + item.category + "\n";
  return text;
}

TEST(ReadRatingScale, KeepsEveryPartOfADefinition) {
  SpecBench bench(
      Scale("Quality,r3,Specific,Keep,,tail\n"
            "0=poor\n"
            "1=fair,,,9+8\n"
            "2=good,1.25,anchored,4-6+x\n"
            "-1=absent,,,99\n"
            "*\n"));
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  ASSERT_EQ(bench.design().ScaleLast, 0);
  EXPECT_EQ(Shown(bench.design().scales[ScaleDefinitionRow(0)]),
            "Quality,R3,S,K,tail\n"
            "0=poor,, \n"
            "1=fair,, \n"
            "2=good,1.250000,A\n"
            "-1=absent,, \n"
            "9 to 1\n8 to 1\n4-6 (range) to 2\nx to 2\n99 to -1\n");
}

TEST(ReadRatingScale, TakesGeneralAndOrdinalWhenNothingIsSaid) {
  SpecBench bench(Scale("RS,R3\n1=a\n*\n"));
  EXPECT_EQ(Shown(bench.design().scales[ScaleDefinitionRow(0)]), "RS,R3,G,O,\n1=a,, \n");
}

TEST(ReadRatingScale, MayComeAnyNumberOfTimes) {
  SpecBench bench(Scale("A,R3\n1=a\n*\nRating scale=B,D\n*\nRating scale=C,M\n*\n"));
  ASSERT_EQ(bench.fault(), Fault::none) << bench.faultText();
  ASSERT_EQ(bench.design().ScaleLast, 2);
  ASSERT_EQ(bench.design().scales.rows(), 3);
  EXPECT_EQ(bench.design().scales[ScaleDefinitionRow(1)].name, "B");
}

TEST(ReadRatingScale, ListEndsAtAKeywordWhichIsThenRead) {
  SpecBench bench(Scale("A,R3\n1=a\nTitle=after\n"));
  EXPECT_EQ(bench.fault(), Fault::none) << bench.faultText();
  EXPECT_EQ(bench.analysis.settings.Title, "after");
  EXPECT_EQ(bench.design().scales[ScaleDefinitionRow(0)].categories.size(), 1u);
}

TEST(ReadRatingScale, ZeroAnchorCountsOnlyWhenWritten) {
  SpecBench bench(Scale("A,R3\n0=a,0,A\n1=b,,A\n2=c,word,A\n*\n"));
  const ScaleDefinition& scale = bench.design().scales[ScaleDefinitionRow(0)];
  EXPECT_TRUE(scale.categories[0].hasAnchorValue);
  EXPECT_FALSE(scale.categories[1].hasAnchorValue);
  EXPECT_FALSE(scale.categories[2].hasAnchorValue);
}

TEST(ReadRatingScale, TextIsRecodedByTheFirstCategoryThatNamesIt) {
  SpecBench bench(Scale("A,R3\n0=a,,,9+9+1-2\n1=b,,,9+2-1+7\n*\n"));
  EXPECT_EQ(Shown(bench.design().scales[ScaleDefinitionRow(0)]),
            "A,R3,G,O,\n0=a,, \n1=b,, \n9 to 0\n1-2 (range) to 0\n7 to 1\n");
}

struct FaultCase {
  std::string lines;
  Fault fault;
  int line;
};

TEST(ReadRatingScale, RefusesWhatIsWrongWithItsLine) {
  const FaultCase cases[] = {
      {"RS,R3\n0=a\n1=b\n1=c\n*\n", Fault::duplicateCategory, 5},
      {"RS,R3\n2=mid,,,a-b\n*\n", Fault::recodeRange, 3},
      {"RS,R3\n4=too large\n*\n", Fault::invalidCategory, 3},
      {"RS,R3\n1.5=half\n*\n", Fault::invalidCategory, 3},
      {"RS,D\n2=two\n*\n", Fault::invalidCategory, 3},
      {"RS,M\n256=large\n*\n", Fault::invalidCategory, 3},
      {"RS,Q\n*\n", Fault::invalidScaleType, 2},
      {"\n", Fault::invalidScaleType, 2},
      // A first field that is no number stands for category 0.
      {"RS,R3\n0=a\n?=b\n*\n", Fault::duplicateCategory, 4},
  };
  for (const FaultCase& c : cases) {
    SpecBench bench(Scale(c.lines));
    EXPECT_EQ(bench.fault(), c.fault) << c.lines;
    EXPECT_EQ(bench.faultLine(), c.line) << c.lines;
  }
}

TEST(ReadRatingScale, AllowsWhatOnlyLooksWrong) {
  for (const std::string lines : {
           "RS,R3\n1\n1\n1=b\n*\n",                // a line without text does not count
           "RS,R3\n0=a\n-1=b,,,7\n-1=c,,,8\n*\n",  // recoding lines are no categories
           "RS,M\n255=large\n*\n",
       }) {
    SpecBench bench(Scale(lines));
    EXPECT_EQ(bench.fault(), Fault::none) << lines << bench.faultText();
  }
}

TEST(ReadRatingScale, NeedsFlanksFirst) {
  SpecBench bench("Rating scale=RS,R3\n*\n");
  EXPECT_EQ(bench.fault(), Fault::flanksFirst);
  EXPECT_EQ(bench.faultLine(), 1);
}

TEST(ReadRatingScale, LocksTheUserUnits) {
  SpecBench bench(Scale("A,R3\n*\nUmean=50\n"));
  EXPECT_EQ(bench.fault(), Fault::unitsTooLate);
}

TEST(ScaleRecord, ReadsBackWhatItWrote) {
  ScaleDefinition scale;
  scale.name = "a name";
  scale.type = "R5";
  scale.keep = true;
  scale.categories = {{0, "", 0.0f, false, ' '}, {5, "five", 0.1f, true, 'A'}};
  scale.recodes = {{"5", "x", false, 0, 0}, {"-1", "7-9", true, 7, 9}};
  const ScaleDefinition back = ScaleFromRecord(ScaleRecord(scale));
  EXPECT_EQ(Shown(back), Shown(scale));
  EXPECT_EQ(back.categories[1].anchor, 0.1f);
  EXPECT_EQ(back.recodes[1].high, 9);
  EXPECT_EQ(Shown(ScaleFromRecord(ScaleRecord({}))), Shown({}));
}

}  // namespace
}  // namespace flanks
