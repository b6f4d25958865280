#include "output/graph_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/text_of_run.h"

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(NiceStep, IsTheNextOfOneThreeFiveTen) {
  const std::pair<double, double> cases[] = {{.0618, .1},   {.1, .1},      {.11, .3},  {.3, .3},
                                             {.31, .5},     {.51, 1.0},    {1.0, 1.0}, {23.0, 30.0},
                                             {60.0, 100.0}, {.00072, .001}};
  for (const auto& [width, step] : cases) EXPECT_NEAR(NiceStep(width), step, step * 1e-9) << width;
}

// From -2 to 3 logits and one beyond: 7 logits, 70 units of a tenth of a logit: steps of 1.
TEST(GraphAxis, GoesALogitBeyondTheMeasures) {
  const GraphAxis axis = GraphAxisOf(-2.0, 3.0, 10.0);
  EXPECT_DOUBLE_EQ(axis.low, -30.0);
  EXPECT_DOUBLE_EQ(axis.step, 1.0);
  EXPECT_EQ(axis.points, 71);
  EXPECT_EQ(axis.decimals, 1);
  const GraphAxis logits = GraphAxisOf(-2.0, 3.0, -1.0);
  EXPECT_DOUBLE_EQ(logits.low, -3.0);
  EXPECT_NEAR(logits.step, .1, 1e-12);
  EXPECT_EQ(logits.points, 71);
  EXPECT_EQ(logits.decimals, 2);
}

// 8.6 logits are 86 steps, though the sum has a bit more.
TEST(GraphAxis, RoundingMakesNoRow) {
  EXPECT_GT(.7 - -5.9 + 2.0, 8.6);
  EXPECT_EQ(GraphAxisOf(-5.9, .7, 1.0).points, 87);
}

// Steps are at most three times a hundredth of the width.
TEST(GraphAxis, HasRowsForALineAndNoMore) {
  for (double width = 1e-3; width < 1e6; width *= 1.01) {
    const GraphAxis axis = GraphAxisOf(-width / 3.0, 2.0 * width / 3.0, 7.3);
    ASSERT_GE(axis.points, 35) << width;
    ASSERT_LE(axis.points, 101) << width;
    ASSERT_GE(axis.ValueOf(axis.points - 1), 7.3 * (2.0 * width / 3.0 + 1.0) * (1.0 - 1e-8));
  }
}

// From 1 below -1 to 1 above 4.8: 7.8 logits in steps of .1 are 78, and 7.77 are 78 as well, the
// last of which ends beyond.
TEST(GraphAxis, EndsAtTheUpperEndOrBeyond) {
  for (const double high : {4.8, 4.77, 4.701, 4.7}) {
    const GraphAxis axis = GraphAxisOf(-1.0, high, 1.0);
    EXPECT_NEAR(axis.step, .1, 1e-12);
    EXPECT_EQ(axis.points, high > 4.7 ? 79 : 78) << high;
    EXPECT_GE(axis.ValueOf(axis.points - 1), high + 1.0 - 1e-9);
  }
}

TEST(GraphRange, IsThatOfTheElementsInPlay) {
  Estimates estimates;
  estimates.elements.assign(4, {});
  const auto set = [&](int slot, float measure, std::int16_t status) {
    estimates.elements[ElementSlot(slot)].ElementMeasure = measure;
    estimates.elements[ElementSlot(slot)].ElementStatus = status;
  };
  EXPECT_EQ(GraphRangeOf(estimates).GraphLow, -1.0);
  EXPECT_EQ(GraphRangeOf(estimates).GraphHigh, 1.0);
  set(1, 2.0f, kStatusFree);
  set(2, 9.0f, kStatusMaximum);
  EXPECT_EQ(GraphRangeOf(estimates).GraphLow, 1.0);
  EXPECT_EQ(GraphRangeOf(estimates).GraphHigh, 3.0);
  set(3, -1.5f, kStatusAnchored);
  EXPECT_EQ(GraphRangeOf(estimates).GraphLow, -1.5);
  EXPECT_EQ(GraphRangeOf(estimates).GraphHigh, 2.0);
}

// Two scales: one of the categories 1 to 3 with thresholds -1 and 1, and a dichotomy of 0 and 1.
// Measures go from -1 to 1 in logits, so rows from -2 to 2, in steps of .05.  At 1 the first has
// p = .063380, .468310, .468310 and E = 2.404930, the second p = .731059.
constexpr const char* kTwoScales =
    "Flanks=2\nPositive=1\nTables=00000000000000\nSubsets=N\nModels=\n?,1,Steps\n?,2,D\n*\n"
    "Rating scale=Steps,R3\n1=low\n2=middle,-1,A\n3=high,1,A\n*\n"
    "Labels=\n1,Persons,A\n1=Ann,1\n2=Bob,-1\n*\n2,Items,A\n1=one,0\n2=two,0\n*\nData=\n"
    "1,1-2,3,1\n2,1-2,1,0\n1,1,2\n";

class GraphFile : public ::testing::Test {
 protected:
  AnalysisRun done;

  std::vector<std::string> Lines(const TableOptions& options, OutputForm form = OutputForm::text) {
    TextOfRun text(done);
    return LinesOf(
        text.Of([&](auto& run, Destination& out) { WriteGraphTable(run, form, options, out); }));
  }
};

TEST_F(GraphFile, HasARowForEachScaleAndMeasure) {
  ASSERT_EQ(done.Analyze(kTwoScales), 0) << done.Screen();
  const std::vector<std::string> lines = Lines({",", "\""});
  ASSERT_EQ(lines.size(), 1u + 2u * 81u);
  EXPECT_EQ(lines[0],
            "\"Scale\",\"Measure\",\"Expected\",\"ExpCat\",\"Prob:0\",\"Prob:1\",\"Prob:2\","
            "\"Prob:3\"");
  EXPECT_THAT(lines[1], testing::StartsWith("1,-2.000,"));
  EXPECT_EQ(lines[61], "1,1.000,2.4049,2,0.0000,0.0634,0.4683,0.4683");
  EXPECT_THAT(lines[81], testing::StartsWith("1,2.000,"));
  EXPECT_EQ(lines[81 + 61], "2,1.000,0.7311,1,0.2689,0.7311,0.0000,0.0000");
}

TEST_F(GraphFile, FixedFormHasItsHeading) {
  ASSERT_EQ(done.Analyze(kTwoScales, "Umean=0,1,3"), 0) << done.Screen();
  const std::vector<std::string> lines = Lines({" ", "'"});
  EXPECT_EQ(lines[0],
            "     Scale   Measure  Expected    ExpCat    Prob:0    Prob:1    Prob:2    Prob:3");
  EXPECT_EQ(lines[61],
            "         1     1.000    2.4049         2     .0000     .0634     .4683     .4683");
  EXPECT_EQ(Lines({" ", "", false}).size(), 2u * 81u);
}

// Ten units to a logit and 50 for zero: the axis is in units, and so is the measure.
TEST_F(GraphFile, MeasuresAreUserUnits) {
  ASSERT_EQ(done.Analyze(kTwoScales), 0) << done.Screen();
  done.analysis.settings.Umean = 50.0f;
  done.analysis.settings.Uscale = 10.0f;
  done.analysis.settings.Udecimals = 0;
  const std::vector<std::string> lines = Lines({",", ""});
  EXPECT_EQ(lines[61], "1,60.00,2.4049,2,0.0000,0.0634,0.4683,0.4683");
  done.analysis.settings.Uscale = -10.0f;
  EXPECT_EQ(Lines({",", ""})[61], "1,40.00,2.4049,2,0.0000,0.0634,0.4683,0.4683");
}

TEST_F(GraphFile, ExcelHasHeadingsOfItsOwn) {
  ASSERT_EQ(done.Analyze(kTwoScales), 0) << done.Screen();
  EXPECT_EQ(
      Lines({",", "\""}, OutputForm::excel)[0],
      "Rating Scale\tRasch Measure\tExpected Score\tMean Category\tProbability of category 0\t"
      "Probability of category 1\tProbability of category 2\tProbability of category 3");
}

TEST_F(GraphFile, APageHasTheWordGraphs) {
  ASSERT_EQ(done.Analyze(kTwoScales, "Title=Curves Graphfile=" + done.folder.file("g.htm")), 0);
  EXPECT_THAT(done.Screen(),
              HasSubstr("Writing graph output file ... " + done.folder.file("g.htm") + "\n"));
  const std::string page = done.folder.read("g.htm");
  EXPECT_THAT(page, HasSubstr("<title>Graphs: Curves</title>"));
  EXPECT_THAT(page, HasSubstr("<TH ALIGN=\"RIGHT\">Prob:3</tr></thead><tbody>\n<tr></TD>"));
}

// A Poisson scale of discrimination 1: the expected score, exp(x), goes to 255 and no further.
TEST_F(GraphFile, APoissonScaleEndsAt255) {
  ASSERT_EQ(done.Analyze("Flanks=2\nPositive=1\nTables=00000000000000\nSubsets=N\nModels=?,?,P\n*\n"
                         "Labels=\n1,Persons,A\n1=Ann,6\n2=Bob,0\n*\n2,Items,A\n1=one,0\n*\nData=\n"
                         "1,1,5\n2,1,1\n2,1,2\n"),
            0)
      << done.Screen();
  done.analysis.scales.ThresholdTable.at(ScaleRow(0), 0) = 1.0f;
  const std::vector<std::string> lines = Lines({",", ""});
  EXPECT_THAT(lines.back(), HasSubstr(",255.0000,255,"));
  EXPECT_THAT(lines, testing::Contains(testing::StartsWith("1,0.00,1.0000,1,0.3679,0.3679,")));
}

TEST_F(GraphFile, ThereIsNoSpssForm) {
  const std::string name = done.folder.file("g.sav");
  ASSERT_EQ(done.Analyze(kTwoScales, "Graphfile=" + name), 1);
  EXPECT_THAT(done.Screen(),
              HasSubstr("There is no SPSS form of this file: \"" + name + "\" is not written.\n"));
  EXPECT_EQ(done.folder.read("g.sav"), "");
}

}  // namespace
}  // namespace flanks
