#include "estimate/table3.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "report/format/box.h"
#include "support/recording_shell.h"

namespace flanks {
namespace {

IterationState Jmle() {
  IterationState iteration;
  iteration.EstimationPhase = kPhaseJmle;
  iteration.IterationNumber = 3;
  iteration.RecountRequired = false;
  iteration.changes.MaxScoreResidual = 12.34564;
  iteration.changes.MaxScoreFraction = .05f;
  iteration.changes.MaxCategoryResidual = 2.5;
  iteration.changes.MaxLogitChange = -.1234f;
  iteration.changes.MaxThresholdChange = .05f;
  return iteration;
}

IterationState Prox(bool recount) {
  IterationState iteration;
  iteration.EstimationPhase = kPhaseProx;
  iteration.IterationNumber = 1;
  iteration.RecountRequired = recount;
  iteration.changes.MaxLogitChange = 2.5f;
  return iteration;
}

std::string Framed(const std::string& text) {
  return "\x0F" + text + "\x0F";
}

TEST(IterationDetail, ShowsTheLargestChangesOfAJmleIteration) {
  EXPECT_EQ(IterationDetail(Jmle()),
            Framed(" JMLE   3     12.3456   5.0     2.5000     -.1234    .0500 "));
}

TEST(IterationDetail, WithNothingMovedShowsZeros) {
  IterationState iteration = Jmle();
  iteration.changes = {};
  EXPECT_EQ(IterationDetail(iteration),
            Framed(" JMLE   3       .0000                       .0000          "));
}

TEST(IterationDetail, OfProxShowsTheLogitChangeAlone) {
  EXPECT_EQ(IterationDetail(Prox(false)),
            Framed(" PROX   1" + std::string(34, ' ') + "2.5000          "));
}

TEST(IterationDetail, OfProxSaysThatARecountIsRequired) {
  EXPECT_EQ(IterationDetail(Prox(true)),
            Framed(" PROX   1     Recount required" + std::string(13, ' ') + "2.5000          "));
}

TEST(IterationDetail, OfProxShowsAThresholdChangeWhenThereIsOne) {
  IterationState iteration = Prox(false);
  iteration.changes.MaxThresholdChange = -.25f;
  EXPECT_EQ(IterationDetail(iteration),
            Framed(" PROX   1" + std::string(34, ' ') + "2.5000   -.2500 "));
}

TEST(IterationHeader, NamesIterationPhaseAndLargestChanges) {
  EXPECT_EQ(IterationHeader(Jmle()),
            "Iteration    3  JMLE                       max.=    12.3   5.0     max.=  -.123");
  EXPECT_EQ(IterationHeader(Prox(true)),
            "Iteration    1  PROX  Recount required                             max.=  2.500");
}

struct Page {
  RunControl control;
  RecordingShell shell{control};
  RecordingDialogs dialogs;
  Settings settings;
  ReportState report;
  Console console{shell, dialogs, control, settings, report};
};

TEST(Table3, TheHeadIsABoxOfFiftyNineColumns) {
  Page page;
  WriteTable3Head(page.console);
  ASSERT_EQ(page.shell.output.size(), 8u);
  EXPECT_EQ(page.shell.output[2], "Table 3. Iteration Report.");
  EXPECT_EQ(BoxToAscii(page.shell.output[4]), "+" + std::string(59, '-') + "+");
  EXPECT_EQ(BoxToAscii(page.shell.output[5]),
            "| Iteration      Max. Score Residual      Max. Logit Change |");
  EXPECT_EQ(BoxToAscii(page.shell.output[6]),
            "|             Elements    %  Categories   Elements          |");
  EXPECT_EQ(BoxToAscii(page.shell.output[7]), "|" + std::string(59, '-') + "|");
}

TEST(Table3, AFlanksSummaryIsInUserUnitsAndForTheLongFormOnly) {
  Page page;
  page.settings.Umean = 50.0f;
  page.settings.Uscale = -10.0f;
  FlankSummary summary;
  summary.add(1.0);
  summary.add(3.0);
  ReportFlankSummary(page.console, "Raters", summary);
  EXPECT_TRUE(page.shell.output.empty());
  page.settings.Write = true;
  ReportFlankSummary(page.console, "Raters", summary);
  EXPECT_EQ(page.shell.output,
            std::vector<std::string>{"Raters          Mean=  30.00 S.D.=  10.00 Count=     2"});
}

// The sum of the terms is 7.5 and 5.1 is expected; the discrimination has gone from 1.003 to .91.
TEST(Table3, TheLineOfADiscriminationHasItsSumsValueAndChange) {
  Page page;
  page.settings.Write = true;
  Design design;
  Estimates estimates;
  estimates.iteration = Jmle();
  estimates.iteration.changes.MaxCategoryResidual = 2.4;
  estimates.iteration.changes.categoryScale = ScaleRow(1);
  ScaleTables scales;
  scales.scaleType.assign(2, ScaleType::binomial);
  scales.DiscriminationSums.assign(2, 6, 7.5);
  scales.ExpectedCount.assign(2, 6, 5.1);
  scales.PreviousThreshold.assign(2, 6, 1.003f);
  scales.ThresholdTable.assign(2, 6, .91f);
  ReportIteration(page.console, {design, estimates, scales, {}});
  EXPECT_THAT(
      page.shell.output,
      ::testing::Contains("Bin Disc: 2           7.5      5.10     2.40  32.0    .91    -.0930"));
  scales.scaleType.assign(2, ScaleType::poisson);
  page.shell.output.clear();
  ReportIteration(page.console, {design, estimates, scales, {}});
  EXPECT_THAT(page.shell.output, ::testing::Contains(::testing::StartsWith("Poi Disc: 2 ")));
}

}  // namespace
}  // namespace flanks
