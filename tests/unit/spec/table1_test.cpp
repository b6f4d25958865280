#include "spec/table1.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/table1_run.h"

namespace flanks {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;
using Lines = std::vector<std::string>;

const std::string& kBase = kTable1Base;
const std::string& kData = kTable1Data;

TEST(Table1, ShowsTheSpecificationAsUnderstood) {
  const Table1Run test(kBase + kData, "Output=out.txt");
  EXPECT_THAT(
      test.lines,
      ElementsAre("", "Check", "Table 1. Specifications from file \"s.txt\".", "", "Title = Check",
                  "Data file = (s.txt)", "Output file = out.txt", "", "; Data specification",
                  "Flanks = 2", "Delements = N  ; element identifiers are element numbers",
                  "Non-centered = 1", "Positive = 1",
                  "Labels =", "Flank 1,Persons, , ; (elements = 3, highest group = 0)",
                  "Flank 2,Items, , ; (elements = 2, highest group = 0)", "Model = ?,?,R5,1",
                  "; Output description",
                  "Bias/Interaction direction = plus ; ability, easiness, leniency: "
                  "higher score = positive logit",
                  "Fair score = Mean", "Pt-biserial = Measure", "CSValues = Fixed",
                  "Barchart = Yes", "Total score for elements = Yes",
                  "T3onscreen show only one line on screen iteration report = Y",
                  "T4MAX maximum number of unexpected observations reported in Table 4 = "
                  "100",
                  "T7LGS show table 7 element list, group details, group summary = LGS",
                  "T8NBC show table 8 numbers-barcharts-curves = NBC",
                  "Unexpected observations reported if standardized residual >= 3",
                  "WHexact - Wilson-Hilferty standardization = Y", "", "; Convergence control",
                  "Convergence = .5,.01,0,0", "Iterations (maximum) = 0 ; unlimited",
                  "Xtreme scores adjusted by = .3,.5  ;(estimation, bias)"));
}

TEST(Table1, ShowsCommentsAndWhatWasIgnored) {
  const Table1Run test(kBase + ";; made in May\n" + kData, "Title=New");
  const Lines lines = test.From("Title = New");
  ASSERT_GE(lines.size(), 5u);
  EXPECT_EQ(lines[1], ";; Comments =");
  EXPECT_EQ(lines[2], "  Duplicate specification ignored: Title=Check");
  EXPECT_EQ(lines[3], "  ;; made in May");
  EXPECT_EQ(lines[4], "Data file = (s.txt)");
}

TEST(Table1, BeginsWithTheMessagesThatCameBeforeTheReport) {
  const Table1Run test(
      "Flanks=1\nEntered-in-data=1,1\nModels=?,?,R\n*\n"
      "Labels=\n1,A\n1=a\n*\nData=d.txt\n");
  const Lines lines = test.From(" Messages:");
  ASSERT_GE(lines.size(), 4u);
  EXPECT_EQ(lines[1], " Entered= has 2 active flank positions. This must match Models=");
  EXPECT_EQ(lines[2], "Title =");
  EXPECT_EQ(lines[3], "Data file = d.txt");
  EXPECT_TRUE(test.analysis.report.deferredMessages.empty());
}

TEST(Table1, ShowsSettingsThatAreNotAtTheirDefault) {
  const Table1Run test(
      "Umean=500,100,0\nHardware=60\nJuxtapose=-5\nArrange=N\nASCII=W\nBox=N\nFair=Z\n"
      "Omit-unobserved=N\nStandard errors=R\nSubsets=N\nTotalscore=N\nUTF8encoded=Y\nWhexact=N\n"
      "Write=Y\nNewton=Y\nIterations=20\nXtreme=.2,.25\nBias=S\nT3onscreen=N\nPt-biserial=N\n" +
      kBase + kData);
  EXPECT_THAT(
      test.lines,
      IsSupersetOf(
          {"Umean = 500,100,0 ; Umean, Uscale, Udecimals", "Hardware maximum exponent = 60",
           "Juxtaposition heading every lines = 5", "Arrange tables in order = N",
           "ASCII table format = W ; HTML code: display as webpage",
           "Box show around Tables = N ; hide box-drawing characters", "Fair score = Zero",
           "Omit unobserved elements = No", "Standard error = Real ; enlarged by mean square infit",
           "Subset detection = N", "UTF8encoded = Y",
           "WHexact - Wilson-Hilferty standardization = N",
           "Write iteration residuals in output file = yes", "Newton-Raphson = .5",
           "Iterations (maximum) = 20", "Xtreme scores adjusted by = .2,.25  ;(estimation, bias)",
           "Bias/Interaction direction = minus ;difficulty, severity: lower score = "
           "positive logit",
           "T3onscreen show only one line on screen iteration report = N", "Pt-biserial = No"}));
  EXPECT_THAT(test.lines, Not(Contains("Total score for elements = Yes")));
}

TEST(Table1, EvaluatesExpressions) {
  const Table1Run test(kBase + kData, "\"Umean=2*25,20/2,1\"");
  EXPECT_THAT(test.lines, Contains("Umean = 50,10,1 ; Umean, Uscale, Udecimals"));
}

struct BlockCase {
  std::string before;  // lines in front of the base
  std::string line;
};

TEST(Table1, ShowsListsOfFlanks) {
  const std::string body = kBase.substr(kBase.find("Models="));
  const BlockCase cases[] = {
      {"Flanks=2\nEntered-in-data=2,1\n", "Entered-in-data = 2,1"},
      {"Flanks=2\nEntered-in-data=2,0,1\n", "Entered-in-data = 2,0(unused),1"},
      {"Flanks=2\nEntered-in-data=2,0,1\n", "Flanks = 2,3"},
      {"Flanks=2\nPositive=Y\n", "Positive = 1,2"},
      {"Flanks=2\nPositive=2\n", "Positive = 2"},
      {"Flanks=2\nNegative=2\n", "Positive = 1"},
      {"Flanks=2\nPositive=N\n", "Positive = none"},
      {"Flanks=2\nNoncenter=1,2\n", "Non-centered = 1,2"},
      {"Flanks=2\nCenter=1Z,2z\n", "Centered = 1Z,2Z"},
      {"Flanks=2\nNull=-1\n", "Null (Keepzero) element= -1"},
  };
  for (const BlockCase& c : cases)
    EXPECT_THAT(Table1Run(c.before + body + kData).lines, Contains(c.line)) << c.before;
  EXPECT_THAT(Table1Run("Flanks=2\nCenter=1Z,2z\n" + body + kData).lines,
              Not(Contains(StartsWith("Non-centered"))));
}

std::string Statements(int count) {
  std::string text = "Flanks=2\nModels=\n";
  for (int i = 1; i <= count; ++i) text += std::to_string(i) + ",?,R\n";
  return text + "*\n" + kBase.substr(kBase.find("Labels=")) + kData;
}

TEST(Table1, CutsLongListsOfStatements) {
  const Table1Run twelve(Statements(12));
  EXPECT_EQ(std::count_if(twelve.lines.begin(), twelve.lines.end(),
                          [](const std::string& line) { return line.starts_with("Model = "); }),
            11);
  const Lines rest = twelve.From("Model = 11,?,R,1");
  ASSERT_GE(rest.size(), 3u);
  EXPECT_EQ(rest[1], "....");
  EXPECT_EQ(rest[2], "*");
  EXPECT_THAT(Table1Run(Statements(11)).lines, Not(Contains("....")));
}

TEST(Table1, WithoutStatementsShowsTheOneThatHolds) {
  const Table1Run test("Flanks=2\n" + kBase.substr(kBase.find("Labels=")) + kData);
  EXPECT_THAT(test.lines, Contains("Model = ?$,?$,D,1"));
}

// Scales named c1 to c`count`; the statement names the first.
std::string Scales(int count) {
  std::string text = "Flanks=2\n";
  for (int i = 1; i <= count; ++i)
    text += "Rating scale=c" + std::to_string(i) + ",R4,General,Ordinal\n1=low\n*\n";
  return text + "Models=?,?,c1\n*\n" + kBase.substr(kBase.find("Labels=")) + kData;
}

TEST(Table1, ShowsScalesAndWarnsOfThoseThatNobodyNames) {
  const Table1Run test(Scales(2));
  EXPECT_THAT(test.lines,
              AllOf(Contains("Rating (or other) scale = c1,R4,General,Ordinal"),
                    Contains("Rating (or other) scale = c2,R4,General,Ordinal ; Warning (3)! This "
                             "is NOT referenced by a Model= specification")));
}

TEST(Table1, CutsScalesOneRowEarlierThanStatements) {
  EXPECT_THAT(Table1Run(Scales(10)).lines, Not(Contains("....")));
  const Table1Run eleven(Scales(11));
  EXPECT_THAT(eleven.lines, Contains(StartsWith("Rating (or other) scale = c11,")));
  EXPECT_THAT(eleven.lines, Contains("...."));
}

TEST(Table1, NamesMarksOfOutputFiles) {
  Settings settings;
  settings.OutputSeparator = "\t";
  settings.OutputQuote = "\"";
  settings.InterRaterSetting = {3, 1, 2};
  settings.Zscore = {0.5f, 2.0f};
  settings.Vertical = "1*";
  EXPECT_THAT(OutputBlock(settings),
              IsSupersetOf({"CSValues = Tabs", "QM quote marks around labels = Double-quotes",
                            "Inter-rater coefficients reported for flank = 3,1,2 ; matching flanks",
                            "Zscore (Bias size/significance) not less than = .5,2 ; bias size, "
                            "t-score",
                            "Vertical ruler definitions = 1*"}));
  settings.OutputSeparator = "|";
  EXPECT_THAT(OutputBlock(settings), Contains("CSValues = |"));
}

TEST(Table1, ShowsValuesOfDataPositions) {
  Settings settings;
  DvalueEntry fixed;
  fixed.position = 2;
  fixed.text = fixed.asWritten = "1-4";
  DvalueEntry cut;
  cut.position = 3;
  cut.fromPosition = 2;
  cut.asWritten = "2,6,2";
  settings.Dvalues = {fixed, cut};
  EXPECT_THAT(DataBlock(settings, Design()),
              IsSupersetOf({"Dvalues =  ; values for data flanks",
                            "2 = 1-4 ; fixed values for data flanks", "3 = 2,6,2", "*"}));
}

TEST(Table1, IsLeftOutWhenItsFlagIsOff) {
  EXPECT_TRUE(Table1Run("Tables=01\n" + kBase + kData).lines.empty());
}

}  // namespace
}  // namespace flanks
