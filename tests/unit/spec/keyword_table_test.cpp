#include "spec/keyword_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "support/spec_run.h"

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

// ---- Which keyword a word is

struct WordCase {
  std::string_view word;
  int code;
};

class ResolveKeywordOf : public testing::TestWithParam<WordCase> {};

TEST_P(ResolveKeywordOf, GivesItsCode) {
  const KeywordRow* row = ResolveKeyword(UpperCase(GetParam().word));
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->code, GetParam().code) << GetParam().word;
}

INSTANTIATE_TEST_SUITE_P(
    Words, ResolveKeywordOf,
    testing::Values(WordCase{"Flanks", 6}, WordCase{"Fair score", 40}, WordCase{"Title", 20},
                    WordCase{"Totalscore", 49}, WordCase{"Tables", 51}, WordCase{"T4MAX", 50},
                    WordCase{"T3onscreen", 53}, WordCase{"T7LGS", 69}, WordCase{"T8NBC", 54},
                    WordCase{"Barchart", 30}, WordCase{"Batch", 41}, WordCase{"Bad", 2},
                    WordCase{"Bias", 2}, WordCase{"Beep", 39}, WordCase{"Box", 64},
                    WordCase{"Residualfile", 37}, WordCase{"Yni", 37}, WordCase{"Reversed", 67},
                    WordCase{"Replication", 61}, WordCase{"Rating scale", 18},
                    WordCase{"Umean", 29}, WordCase{"Uscale", 58}, WordCase{"Usort", 28},
                    WordCase{"Udecimals", 59}, WordCase{"Unexpected", 21}, WordCase{"UTF8sub", 65},
                    WordCase{"UTF8encoded", 65}, WordCase{"Newton", 55}, WordCase{"Negative", 16},
                    WordCase{"Noncenter", 14}, WordCase{"Null", 11}, WordCase{"Keepzero", 11},
                    WordCase{"Center", 14}));

INSTANTIATE_TEST_SUITE_P(
    MoreWords, ResolveKeywordOf,
    testing::Values(WordCase{"Convergence", 3}, WordCase{"CSV", 38}, WordCase{"Point-biserial", 7},
                    WordCase{"Pt-biserial", 7}, WordCase{"Positive", 16}, WordCase{"Person", 68},
                    WordCase{"Glabel", 56}, WordCase{"Graphfile", 35}, WordCase{"Gamma", 7},
                    WordCase{"Heading", 44}, WordCase{"HL", 44}, WordCase{"Hardware", 8},
                    WordCase{"HS", 33}, WordCase{"Inter-rater", 42}, WordCase{"Iterations", 9},
                    WordCase{"Labels", 12}, WordCase{"Left-hand", 31}, WordCase{"Missing", 32},
                    WordCase{"Models", 13}, WordCase{"Omit", 47}, WordCase{"Output", 15},
                    WordCase{"Query", 17}, WordCase{"QM", 48}, WordCase{"Scorefile", 27},
                    WordCase{"Subsets", 34}, WordCase{"Simulated", 46}, WordCase{"Show", 60},
                    WordCase{"Standard", 19}, WordCase{"Whexact", 43}, WordCase{"Write", 23},
                    WordCase{"Xtreme", 24}, WordCase{"Yardstick", 25}, WordCase{"Zscore", 26},
                    WordCase{"Dvalues", 45}, WordCase{"Delements", 57}, WordCase{"Data", 4},
                    WordCase{"Anchorfile", 36}, WordCase{"ASCII", 52}, WordCase{"Arrange", 1},
                    WordCase{"Entered", 5}, WordCase{"Estimates", 5}, WordCase{"Juxtapose", 10},
                    WordCase{"Vertical", 22}, WordCase{"Response", 37}, WordCase{"Onscreen", 15},
                    WordCase{"Comment", 3}, WordCase{"Group", 35}));

TEST(ResolveKeyword, EveryLetterIsAKeywordAndNothingElse) {
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const KeywordRow* row = ResolveKeyword(std::string(1, letter));
    ASSERT_NE(row, nullptr);
    const int place = letter - 'A' + 1;
    EXPECT_EQ(row->code, letter == 'G' ? 7 : letter == 'K' ? 11 : place) << letter;
  }
  EXPECT_EQ(ResolveKeyword(""), nullptr);
  EXPECT_EQ(ResolveKeyword("1"), nullptr);
}

TEST(KeywordRows, EveryRowCanBeReachedByItsPrefix) {
  for (const KeywordRow& row : KeywordRows())
    EXPECT_EQ(ResolveKeyword(row.prefix), &row) << row.prefix;
}

TEST(KeywordRows, EveryKeywordLeadsToItsOwnCode) {
  for (const KeywordRow& row : KeywordRows()) {
    const KeywordRow* own = ResolveKeyword(UpperCase(row.keyword));
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(own->code, row.code) << row.keyword;
  }
}

TEST(KeywordRows, RowsOfACodeAgreeAndHaveAPlaceForTheirMark) {
  std::map<int, const KeywordRow*> first;
  for (const KeywordRow& row : KeywordRows()) {
    ASSERT_GE(row.code, 1);
    ASSERT_LE(static_cast<std::size_t>(row.code), SpecificationState().SeenCodes.size());
    first.emplace(row.code, &row);
    EXPECT_LT(row.prefix.size(), 4u);
  }
  EXPECT_EQ(first.size(), 66u);  // 1 to 69 but for three
  for (const int without : {62, 63, 66}) EXPECT_EQ(first.count(without), 0u);
}

// ---- Once only

TEST(Duplicates, ASecondOneInTheFileIsShownAndIgnored) {
  SpecRun test;
  test.Read("Title=One\n  Title=Two ; again\n");
  EXPECT_EQ(test.fault(), Fault::none);
  EXPECT_EQ(test.analysis.settings.Title, "One");
  EXPECT_THAT(test.shell.Screen(),
              HasSubstr("Duplicate specification ignored: Title=Two ; again\n"));
  EXPECT_THAT(test.IgnoredLines(),
              ElementsAre("Duplicate specification ignored: Title=Two ; again"));
}

TEST(Duplicates, AnExtraSpecificationTakesThePlaceOfTheFiles) {
  SpecRun test;
  test.Read("Title=Check\nFlanks=3\nNegative=1\n", "Title=New Flanks=2 Positive=2");
  EXPECT_EQ(test.fault(), Fault::none) << test.FaultText();
  EXPECT_EQ(test.analysis.settings.Title, "New");
  EXPECT_EQ(test.analysis.design.FlankCount, 2);
  EXPECT_EQ(test.analysis.specification.IgnoredLines.size(), 3);
}

TEST(Duplicates, FlanksThatDisagreeAreAFaultAndThoseThatAgreeAreNot) {
  struct FlanksCase {
    std::string text;
    Fault fault;
  };
  const FlanksCase cases[] = {{"Flanks=2\nFlanks=3\n", Fault::flanksConflict},
                              {"Flanks=2\nFlanks=2\n", Fault::none},
                              {"Flanks=2,3\nFlanks=2,4\n", Fault::flanksConflict},
                              {"Flanks=2\nFlanks=\n", Fault::none},
                              {"Flanks=\nFlanks=2\n", Fault::none}};
  for (const FlanksCase& c : cases) {
    SpecRun test;
    test.Read(c.text);
    EXPECT_EQ(test.fault(), c.fault) << c.text;
    EXPECT_EQ(test.analysis.design.FlankCount, 2);
  }
}

TEST(Duplicates, ASecondLabelsListIsAFault) {
  SpecRun test;
  test.Read("Flanks=1\nLabels=\n1,A\n1=a\n*\nTitle=x\nLabels=\n1,A\n1=a\n*\n");
  EXPECT_THAT(test.FaultText(),
              HasSubstr("Labels= must only appear once in your Specification file: 7 in line"));
  EXPECT_THAT(test.FaultText(), EndsWith("Error F70"));
}

TEST(Duplicates, AListBehindAnIgnoredKeywordIsNoListAnyMore) {
  SpecRun test;
  test.Read("Flanks=1\nModels=?,R\n*\nModels=\n?,D\n");
  EXPECT_EQ(test.fault(), Fault::notSpecificationValue);
  EXPECT_EQ(test.analysis.reading.fault.lineNumber, 5);
}

TEST(Duplicates, DataWithoutAValueEndsTheSpecificationAllTheSame) {
  SpecRun test;
  test.Read("Data=\n1,1,3\nTitle=not read\n", "Data=d.txt");
  EXPECT_EQ(test.fault(), Fault::none) << test.FaultText();
  EXPECT_EQ(test.analysis.settings.dataFile, "d.txt");
  EXPECT_EQ(test.analysis.settings.Title, "");
  EXPECT_FALSE(test.analysis.specification.InlineData);
}

TEST(Duplicates, DataWithANameDoesNotEndTheSpecification) {
  SpecRun test;
  test.Read("Data=e.txt\nTitle=read\n", "Data=d.txt");
  EXPECT_EQ(test.analysis.settings.dataFile, "d.txt");
  EXPECT_EQ(test.analysis.settings.Title, "read");
}

TEST(Duplicates, AnEmptyDataAmongTheExtrasSaysNothing) {
  SpecRun test;
  test.Read("Data=d.txt\n", "Data=");
  EXPECT_EQ(test.analysis.settings.dataFile, "d.txt");
  EXPECT_TRUE(test.analysis.specification.IgnoredLines.empty());
}

TEST(Duplicates, OneSettingUnderTwoNamesCountsOnce) {
  SpecRun test;
  test.Read("Flanks=2\nNoncenter=2\nCenter=1\n");
  EXPECT_EQ(test.analysis.specification.IgnoredLines.size(), 1);
}

TEST(Duplicates, EncodedAndSubstituteShareOneKeyword) {
  SpecRun test;
  test.Read("UTF8encoded=Y\nUTF8sub=?\n");
  EXPECT_EQ(test.analysis.settings.UTF8enc, "Y");
  EXPECT_EQ(test.analysis.settings.UTF8sub, ".");
  EXPECT_EQ(test.analysis.specification.IgnoredLines.size(), 1);
}

TEST(Duplicates, ScalesMayComeAnyNumberOfTimes) {
  SpecRun test;
  test.Read("Flanks=1\nRating scale=a,R3\n*\nRating scale=b,R4\n*\n");
  EXPECT_EQ(test.fault(), Fault::none) << test.FaultText();
  EXPECT_EQ(test.analysis.design.ScaleLast, 1);
}

// ---- What is not understood, what is ignored

TEST(ApplySpecification, ALineWithoutAKeywordIsNotUnderstood) {
  SpecRun test;
  test.Read("Flanks=2\n5\n");
  EXPECT_THAT(test.shell.Screen(), HasSubstr("Specification not understood: 5\n"));
  EXPECT_EQ(test.FaultText(),
            "5 Specification is: \"Specification=value\" expected: 2 in line Error F1");
}

TEST(ApplySpecification, ALoneStarIsHarmless) {
  SpecRun test;
  test.Read("*\nFlanks=2\n*\n*\nTitle=x\n");
  EXPECT_EQ(test.fault(), Fault::none);
  EXPECT_EQ(test.analysis.settings.Title, "x");
}

TEST(ApplySpecification, SomeKeywordsAreTakenAndIgnored) {
  SpecRun test;
  test.Read("HS=5\nPerson=Ann\nTitle=x\n");
  EXPECT_EQ(test.fault(), Fault::none);
  EXPECT_EQ(test.analysis.settings.Title, "x");
}

// A value of each keyword that asks for an output file, a Table or a statistic.
TEST(ApplySpecification, NoKeywordIsRefused) {
  for (const std::string line : {"Anchorfile=a.txt",
                                 "Residualfile=a.txt",
                                 "Scorefile=a.txt",
                                 "Graphfile=a.txt",
                                 "Simulated=a.txt",
                                 "Output=o.txt,a.txt,r.txt,g.txt",
                                 "Inter-rater=2",
                                 "Pt-biserial=Y",
                                 "Gamma=Also",
                                 "Dvalues=2,1",
                                 "Glabel=1,2,x",
                                 "Usort=u",
                                 "Vertical=1*",
                                 "Yardstick=,80",
                                 "Zscore=1,2",
                                 "T4MAX=5",
                                 "Unexpected=2",
                                 "T8NBC=N",
                                 "Barchart=Y",
                                 "CSV=T",
                                 "QM=D",
                                 "Heading lines=N",
                                 "HL=N",
                                 "Subsets=R",
                                 "Subsets=List"}) {
    SpecRun test;
    test.Read("Flanks=2\n" + line + "\n");
    EXPECT_EQ(test.fault(), Fault::none) << test.FaultText();
  }
}

}  // namespace
}  // namespace flanks
