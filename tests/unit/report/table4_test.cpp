#include "report/table4.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "run/console.h"
#include "run/messages.h"
#include "support/analysis_run.h"

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// Ann has the easy item right and the hard one wrong, so have Bob and Cy; Don the other way about.
// Persons stand at 0, items at -1.0986 and 1.0986: p = .75 and .25, V = .1875.  Don's residuals are
// -.75 and .75, z squared 3, StRes 1.7 in size; those of the others .25 and .6.
constexpr const char* kSpecification =
    "Flanks=2\nModels=?,?,D\nConvergence=.0001,.00001\nUnexpected=1\nLabels=\n1,Persons\n"
    "1=Ann\n2=Bob\n3=Cy\n4=Don\n*\n2,Items\n1=easy\n2=hard\n*\n"
    "Data=\n1,1-2,1,0\n2,1-2,1,0\n3,1-2,1,0\n4,1-2,0,1\n";

std::string ReportOf(const std::string& extras) {
  AnalysisRun run;
  EXPECT_EQ(run.Analyze(kSpecification, extras), 0) << run.Screen();
  return run.Report();
}

// The titles of Table 4, in the order of the report.
std::vector<std::string> TitlesOf(const std::string& report) {
  std::vector<std::string> titles;
  for (std::size_t at = report.find("\nTable 4."); at != std::string::npos;
       at = report.find("\nTable 4.", at + 1))
    titles.push_back(report.substr(at + 1, report.find('\n', at + 1) - at - 1));
  return titles;
}

constexpr const char* kNote = "Table 4. Unexpected Responses - appears after Table 8";

TEST(Table4, ListsTheResponsesBelowATitle) {
  const std::string report = ReportOf("");
  EXPECT_THAT(TitlesOf(report),
              ElementsAre(kNote, "Table 4.1 Unexpected Responses (2 residuals sorted by u..)."));
  const std::string rule = "+---------------------------------------------------+";
  const std::string mid = "|-----------------------------+---------------------|";
  const std::string head = "| Cat  Score  Exp.  Resd StRes| Num Persons Num Items| Sequence";
  EXPECT_THAT(report,
              HasSubstr("\n\n+----------------------------------------------------+\n" + head +
                        "\n"
                        "|-----------------------------+----------------------|\n"
                        "|  0     0      .8   -.8 -1.7 |   4 Don       1 easy |        7\n"
                        "|  1     1      .3    .8  1.7 |   4 Don       2 hard |        8\n"
                        "|-----------------------------+----------------------|\n" +
                        head +
                        "\n"
                        "+----------------------------------------------------+\n"));
}

TEST(Table4, HasASubtableForEachOrder) {
  EXPECT_THAT(TitlesOf(ReportOf("Usort=(u),(Z)")),
              ElementsAre(kNote, "Table 4.1 Unexpected Responses (2 residuals sorted by u..).",
                          "Table 4.2 Unexpected Responses (2 residuals sorted by Z..)."));
  EXPECT_THAT(
      TitlesOf(ReportOf("Usort=(),(2u),(N),(Z)")),
      ElementsAre(kNote, "Table 4.1 Unexpected Responses (2 residuals sorted by order in data).",
                  "Table 4.2 Unexpected Responses (2 residuals sorted by 2..u..)."));
}

TEST(Table4, RowsStandInTheOrderOfTheSubtable) {
  const std::string report = ReportOf("Usort=(z),(Z)");
  const std::size_t first = report.find("sorted by z..");
  const std::size_t second = report.find("sorted by Z..");
  const auto easyAfterHard = [&](std::size_t from) {
    return report.find("1 easy |", from) > report.find("2 hard |", from);
  };
  EXPECT_TRUE(easyAfterHard(first));
  EXPECT_FALSE(easyAfterHard(second));
}

TEST(Table4, WithoutRoomThereIsOnlyALine) {
  const std::string report = ReportOf("T4MAX=0");
  EXPECT_THAT(TitlesOf(report), ElementsAre(kNote));
  EXPECT_THAT(report, HasSubstr("\n\nTable 4 not output. T4maximum = 0\n"));
  EXPECT_THAT(ReportOf("T4MAX=-3"), HasSubstr("\nTable 4 not output. T4maximum = 0\n"));
}

TEST(Table4, AHugeLimitIsALimitAndNoSize) {
  EXPECT_THAT(TitlesOf(ReportOf("T4MAX=2000000000")).back(), HasSubstr("(2 residuals "));
  EXPECT_THAT(TitlesOf(ReportOf("T4MAX=1")).back(), HasSubstr("(1 residuals "));
}

TEST(Table4, SaysWhenNothingIsUnexpected) {
  const std::string report = ReportOf("Unexpected=2.5");
  EXPECT_THAT(TitlesOf(report).back(),
              testing::Eq("Table 4.1 Unexpected Responses (0 residuals sorted by u..)."));
  EXPECT_THAT(report, HasSubstr("\n|-----------------------------+----------------------|\n"
                                "|   *** No unexpected observation with StRes >= 2.5  |\n"
                                "+----------------------------------------------------+\n"));
}

// A limit with many digits does not fit a small box, which grows.
TEST(Table4, TheLimitIsShownWhole) {
  EXPECT_THAT(ReportOf("Unexpected=123456.789"),
              HasSubstr(" *** No unexpected observation with StRes >= 123456.79"));
}

TEST(Table4, IsLeftOutWhenItIsSwitchedOff) {
  EXPECT_THAT(TitlesOf(ReportOf("Tables=1110111")), ElementsAre(kNote));
  EXPECT_THAT(TitlesOf(ReportOf("Tables=1111011")),
              ElementsAre("Table 4.1 Unexpected Responses (2 residuals sorted by u..)."));
}

// A later request with other limits makes the pass again and says so; with the same it does not.
class AgainTable4 : public ::testing::Test {
 protected:
  AnalysisRun run;
  std::size_t shown = 0;

  void SetUp() override { ASSERT_EQ(run.Analyze(kSpecification), 0) << run.Screen(); }

  std::string Write() {
    shown = run.Screen().size();
    Analysis& analysis = run.analysis;
    analysis.report.fileOpen = false;  // to the screen
    Console console(run.shell, run.dialogs, run.process.control, analysis.settings,
                    analysis.report);
    flanks::Run again{run.process, analysis, console, run.dialogs, run.launcher};
    WriteTable4(again);
    return run.Screen().substr(shown);
  }
};

TEST_F(AgainTable4, TheSameLimitsNeedNoPass) {
  EXPECT_THAT(Write(), Not(HasSubstr("recomputing")));
}

TEST_F(AgainTable4, AnotherLimitMakesThePassAgain) {
  run.analysis.settings.Unexpected = 0.5f;
  EXPECT_THAT(Write(), HasSubstr(" recomputing residuals ...."));
  EXPECT_EQ(run.analysis.unexpected.rows.size(), 8u);
  EXPECT_THAT(Write(), Not(HasSubstr("recomputing")));
  run.analysis.settings.T4maximum = 3;
  EXPECT_THAT(Write(), HasSubstr(" recomputing residuals ...."));
  EXPECT_EQ(run.analysis.unexpected.rows.size(), 3u);
  // Don's two, and the first of the positive ones of .58; the third negative one found a list that
  // ended in a positive row.
  EXPECT_EQ(run.analysis.unexpected.rows[2].sequence, 1);
  EXPECT_EQ(run.analysis.unexpected.dropped, 1);
}

TEST_F(AgainTable4, AFullListIsToldOnTheScreen) {
  constexpr std::string_view kFull =
      "Table 4 has the 1 most unexpected responses; a larger T4MAX= may list more.";
  EXPECT_THAT(Write(), Not(HasSubstr("a larger T4MAX=")));
  run.analysis.settings.T4maximum = 1;
  EXPECT_THAT(Write(), HasSubstr(kFull));
}

TEST_F(AgainTable4, RowsWithoutTheirElementsAreAFailure) {
  run.analysis.unexpected.elements.pop_back();
  Write();
  EXPECT_EQ(run.process.control.StopState, 2);
  EXPECT_THAT(run.Screen(), HasSubstr("Failure (5)! Sort length error C."));
}

}  // namespace
}  // namespace flanks
