#include "report/table5.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/analysis_run.h"

namespace flanks {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string ReportOf(const std::string& specification, const std::string& extras = "") {
  AnalysisRun run;
  EXPECT_EQ(run.Analyze(specification, extras), 0) << run.Screen();
  return run.Report();
}

std::string TwoItems(const std::string& labels, const std::string& data) {
  return "Flanks=2\nModels=?,?,D\nConvergence=.00001,.000001\nLabels=\n1,Persons\n" + labels +
         "*\n2,Items\n1=easy\n2=hard\n*\nData=\n" + data;
}

// Four persons have the easy item right and the hard one wrong, Don the other way about: p = .8 and
// .2, V = .16.  Score: mean .5, S.D. .5.  Expected: S.D. .3.  Residuals are .2 eight times and .8
// twice in size: variance (8 x .04 + 2 x .64) / 10 = .16, S.D. .4; z squared is .25 eight times and
// 4 twice: 10 in all, S.D. 1.  Of a sample: times the root of 10 / 9, 1.0541.  Parameters: 5
// persons and 2 items less 1; 10 - 6 = 4 degrees of freedom.  Peizer and Pratt's deviate of 10 is
// (10 - 4 + 2/3 - .02) / 7 x sqrt(3 ln(3/10) + 7) = 1.7478, its tail .0403.
const char* const kFive = "1=Ann\n2=Bob\n3=Cy\n4=Dee\n5=Don\n";
const char* const kFiveData = "1,1-2,1,0\n2,1-2,1,0\n3,1-2,1,0\n4,1-2,1,0\n5,1-2,0,1\n";

TEST(Table5, TheBoxHasMeansAndDeviations) {
  EXPECT_THAT(ReportOf(TwoItems(kFive, kFiveData)),
              HasSubstr("\n\nTable 4. Unexpected Responses - appears after Table 8\n\n\n"
                        "Table 5. Measurable Data Summary.\n\n"
                        "+--------------------------------------------------+\n"
                        "| Cat  Score  Exp.  Resd StRes|                    |\n"
                        "|-----------------------------+--------------------|\n"
                        "|  .50   .50   .50   .00  .00 | Mean (Count: 10)   |\n"
                        "|  .50   .50   .30   .40 1.00 | S.D. (Population)  |\n"
                        "|  .53   .53   .32   .42 1.05 | S.D. (Sample)      |\n"
                        "+--------------------------------------------------+\n"
                        "Estimable observations = 10, Free parameters = 6, Degrees of freedom = 4\n"
                        "Global Pearson chi-squared = 10.00, probability = .0403\n"));
}

// v = .25, r = .16, e = .09.
TEST(Table5, TheLinesBelowCountResponsesAndExplainVariance) {
  EXPECT_THAT(ReportOf(TwoItems(kFive, kFiveData)),
              HasSubstr("\n\n                                         Count   Mean   S.D.\n"
                        "Responses non-extreme estimable    =        10   0.50   0.50\n"
                        "All Responses                      =        10   0.50   0.50\n"
                        "Count of measurable responses      =        10\n"
                        "Raw-score variance of observations   =  0.250 100.00%\n"
                        "Variance explained by Rasch measures =  0.090  36.00%\n"
                        "Variance of residuals                =  0.160  64.00%\n"));
}

// Ann stands for four persons: the same figures; parameters are 2 + 2 - 1, and 10 - 3 = 7: a
// deviate of (10 - 7 + 2/3 - .08/7) / 4 x sqrt(6 ln(6/10) + 4) = .8836, its tail .1884.
TEST(Table5, AWeightIsSoManyObservations) {
  const std::string report = ReportOf(TwoItems("1=Ann,,,4\n2=Don\n", "1,1-2,1,0\n2,1-2,0,1\n"));
  EXPECT_THAT(report, HasSubstr("|  .50   .50   .50   .00  .00 | Mean (Weighted: 10)|\n"
                                "|  .50   .50   .30   .40 1.00 | S.D. (Population)  |\n"));
  EXPECT_THAT(report, HasSubstr("\nEstimable observations = 10, Free parameters = 3, Degrees of "
                                "freedom = 7\nGlobal Pearson chi-squared = 10.00, probability = "
                                ".1884\n"));
  EXPECT_THAT(report, HasSubstr("Responses non-extreme estimable    =         4   0.50   0.50\n"));
  EXPECT_THAT(report, HasSubstr("\nCount of measurable responses (wtd)=       10.000\n"));
  EXPECT_THAT(report, HasSubstr("\nRaw-score variance of observations   =  0.250 100.00%\n"));
}

// The long form gives way when it is wider than the column: "Mean (Weighted: 8.4)" takes 20.
TEST(Table5, TheWordsOfTheMeanAreShortenedToTheColumn) {
  const std::string report = ReportOf(TwoItems("1=Ann,,,3.2\n2=Don\n", "1,1-2,1,0\n2,1-2,0,1\n"));
  EXPECT_THAT(report, HasSubstr(" | Mean (Wtd: 8.4)    |\n"));
  EXPECT_THAT(report, HasSubstr("\nEstimable observations = 8.4, Free parameters = 3, Degrees of "
                                "freedom = 5.4\n"));
  EXPECT_THAT(report, HasSubstr("\nCount of measurable responses (wtd)=        8.400\n"));
}

// Eve's score is perfect: her responses count as measurable and not as estimable.
TEST(Table5, EachTypeOfResponseHasItsLine) {
  const std::string report =
      ReportOf(TwoItems(std::string(kFive) + "6=Eve\n", std::string(kFiveData) + "6,1-2,1,1\n"));
  EXPECT_THAT(report, HasSubstr("| Mean (Count: 12)   |\n"));
  EXPECT_THAT(report, HasSubstr("\nEstimable observations = 10, "));
  EXPECT_THAT(report, HasSubstr("\nResponses non-extreme estimable    =        10   0.50   0.50\n"
                                "Responses in one extreme score     =         2   1.00   0.00\n"
                                "All Responses                      =        12   0.58   0.49\n"
                                "Count of measurable responses      =        12\n"));
}

TEST(Table5, IsLeftOutWhenItIsSwitchedOff) {
  const std::string report = ReportOf(TwoItems(kFive, kFiveData), "Tables=1111011");
  EXPECT_THAT(report, Not(HasSubstr("Table 5.")));
  EXPECT_THAT(report, Not(HasSubstr("appears after Table 8")));
}

}  // namespace
}  // namespace flanks
