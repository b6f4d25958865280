// The order of a run and how it ends.  What the steps do is tested with each of them.
#include "run/pipeline.h"

#include <gtest/gtest.h>
#include <string>

#include "support/analysis_run.h"
#include "support/spec_run.h"

namespace flanks {
namespace {

constexpr const char* kSpecification =
    "Title=Check\nFlanks=2\nModels=?,?,R5\nLabels=\n1,Persons\n1=Ann\n2=Bob\n3=Cy\n*\n2,Items\n"
    "1=i1\n2=i2\n*\nData=\n1,1,3\n1,2,4\n2,1,1\n2,2,2\n3,1,2\n3,2,4\n";

bool Holds(const std::string& text, const std::string& piece) {
  return text.find(piece) != std::string::npos;
}

TEST(Pipeline, ACompletedRunHasItsTablesInOrder) {
  AnalysisRun run;
  ASSERT_EQ(run.Analyze(kSpecification), 0) << run.Screen();
  const std::string report = run.Report();
  EXPECT_EQ(report.rfind("Flanks (Many-Flank Rasch Measurement) Version ", 0), 0u);
  std::size_t at = 0;
  for (const char* title : {"Table 1. Specifications from file ", "Table 2. Data Summary Report.",
                            "Table 3. Iteration Report.", "Table 7.1.1  Persons Measurement Report",
                            "Table 7.2.1  Items Measurement Report"}) {
    const std::size_t next = report.find(title);
    ASSERT_NE(next, std::string::npos) << title;
    EXPECT_GT(next, at) << title;
    at = next;
  }
  EXPECT_TRUE(Holds(run.Screen(), "Analyzed in time of "));
  EXPECT_TRUE(Holds(run.Screen(), "Output to " + run.folder.file("report.txt")));
  EXPECT_TRUE(Holds(report, "Subset connection O.K.\n"));
}

TEST(Pipeline, TheSameProcessRunsASecondAnalysis) {
  AnalysisRun run;
  ASSERT_EQ(run.Analyze(kSpecification), 0);
  const std::string first = run.Report();
  ASSERT_EQ(run.Analyze(kSpecification), 0);
  EXPECT_EQ(run.Report().substr(run.Report().find('\n')), first.substr(first.find('\n')));
}

TEST(Pipeline, AFaultBeforeTheReportIsOpenWritesNone) {
  AnalysisRun run;
  EXPECT_EQ(run.Analyze("Title=x\nLabels=\n1,Persons\n1=Ann\n*\n"), 1);
  EXPECT_TRUE(Holds(run.Screen(),
                    "Please specify Flanks= before this specification: 2 in line "
                    "Error F34"))
      << run.Screen();
  EXPECT_TRUE(Holds(run.Screen(), "Execution halted"));
  EXPECT_EQ(run.Report(), "");
  EXPECT_FALSE(IsStopping(run.process.control)) << "the process lives on";
}

TEST(Pipeline, MissingDataSpeakBeforeMissingFlanks) {
  AnalysisRun run;
  EXPECT_EQ(run.Analyze("Title=x\n"), 1);
  EXPECT_TRUE(Holds(run.Screen(), "Data= not specified: Error F40")) << run.Screen();
}

TEST(Pipeline, WithoutAFileItEndsAtOnce) {
  AnalysisRun run;
  EXPECT_EQ(run.RunCommandLine(""), 0);
  EXPECT_FALSE(Holds(run.Screen(), "Execution halted"));
  EXPECT_TRUE(run.folder.empty());
}

TEST(Pipeline, ATableThatIsSwitchedOffIsNotWritten) {
  AnalysisRun run;
  ASSERT_EQ(run.Analyze(kSpecification, "Tables=01000010000000"), 0) << run.Screen();
  const std::string report = run.Report();
  EXPECT_FALSE(Holds(report, "Table 1."));
  EXPECT_TRUE(Holds(report, "Table 2."));
  EXPECT_FALSE(Holds(report, "Table 3."));
  EXPECT_TRUE(Holds(report, "Table 7.1.1"));
}

TEST(Pipeline, TheCureOfAMissingFlanksIsWhereTheKeywordStands) {
  AnalysisRun extra;
  extra.Analyze(kSpecification, "Entered=2,1");
  EXPECT_TRUE(Holds(extra.Screen(), "Error F34"));
  EXPECT_TRUE(Holds(extra.Screen(), "  To mend it: Put Flanks= and the number in front of it among "
                                    "the Extra specifications"));
  AnalysisRun mended;
  EXPECT_EQ(mended.Analyze(kSpecification, "Flanks=2 Entered=1,2"), 0) << mended.Screen();
  AnalysisRun file;
  file.Analyze("Entered=2,1\n" + std::string(kSpecification));
  EXPECT_TRUE(Holds(file.Screen(), "Error F34"));
  EXPECT_FALSE(Holds(file.Screen(), "among the Extra specifications"));
}

TEST(Pipeline, TheTimeIsInTheReportWithIterationDetails) {
  AnalysisRun run;
  run.shell.clockStep = 3725 * 1000;
  ASSERT_EQ(run.Analyze(kSpecification, "Write=Y"), 0);
  EXPECT_TRUE(Holds(run.Report(), "Analyzed in time of "));
  AnalysisRun without;
  ASSERT_EQ(without.Analyze(kSpecification), 0);
  EXPECT_FALSE(Holds(without.Report(), "Analyzed in time of "));
}

TEST(Pipeline, WarnsOfAFormerAnalysisOnly) {
  AnalysisRun run;
  run.process.former.groupAnchoredFlankWithoutGroup = 2;
  ASSERT_EQ(run.Analyze(kSpecification), 0);
  const std::string warning =
      "Warning (13)! Measure values specified for elements in group-anchored flank 2 without a "
      "group number";
  EXPECT_TRUE(Holds(run.Screen(), warning));
  EXPECT_TRUE(Holds(run.Report(), warning)) << "under \" Messages:\"";
  AnalysisRun next;
  ASSERT_EQ(next.Analyze(kSpecification), 0);
  EXPECT_FALSE(Holds(next.Screen(), "Warning (13)"));
}

TEST(Pipeline, ABrokenOffRunSaysSo) {
  AnalysisRun run;
  run.shell.ActionAtPump(5, [&run] { run.process.control.CancelRequested = true; });
  EXPECT_EQ(run.Analyze(kSpecification), 51);
  EXPECT_TRUE(Holds(run.Screen(), "Execution cancelled at user request: Error F51"))
      << run.Screen();
  EXPECT_TRUE(Holds(run.Screen(), "Execution halted"));
}

TEST(Pipeline, TheEndIsHeardWithBeep) {
  AnalysisRun run;
  ASSERT_EQ(run.Analyze(kSpecification, "Beep=Y"), 0);
  EXPECT_EQ(run.shell.progress.back(), '\a');
  AnalysisRun halted;
  ASSERT_EQ(halted.Analyze("Beep=Y\nFlanks=2\n"), 1);
  EXPECT_EQ(halted.shell.progress.back(), '\a');
  AnalysisRun silent;
  ASSERT_EQ(silent.Analyze(kSpecification), 0);
  EXPECT_EQ(silent.shell.progress.find('\a'), std::string::npos);
}

TEST(CheckFault, MakesAFailureOfAPendingFaultUnlessInBatchMode) {
  SpecRun quiet;
  CheckFault(quiet.run);
  EXPECT_EQ(quiet.shell.Screen(), "");
  for (const bool batch : {false, true}) {
    SpecRun test;
    test.analysis.settings.Batch = batch;
    test.analysis.reading.CurrentLine = "Flanks=x";
    SetFault(test.analysis.reading, Fault::notNumeric);
    CheckFault(test.run);
    EXPECT_EQ(test.shell.Screen(),
              "Non-numeric datum treated as missing: Error F22\n  To mend it: Give a number.\n");
    EXPECT_EQ(IsStopping(test.process.control), !batch);
    EXPECT_EQ(test.dialogs.boxes.empty(), batch);
    if (test.dialogs.boxes.empty()) continue;
    EXPECT_TRUE(Holds(test.dialogs.boxes.front(), "Problem ...: Flanks=x"));
  }
}

TEST(Pipeline, AMalformedNumberEndsTheProcess) {
  AnalysisRun run;
  EXPECT_EQ(run.Analyze("Uscale=1E2\n"), 1);
  EXPECT_TRUE(run.processEnded);
  EXPECT_TRUE(Holds(run.Screen(), "VLCOMPUTE: 1E2")) << run.Screen();
  EXPECT_FALSE(Holds(run.Screen(), "Execution halted"));
}

}  // namespace
}  // namespace flanks
