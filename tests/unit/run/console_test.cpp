#include "run/console.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

#include "report/format/box.h"
#include "run/report_page.h"
#include "support/recording_shell.h"

namespace flanks {
namespace {

struct Bench {
  RunControl control;
  RecordingShell shell{control};
  RecordingDialogs dialogs;
  Settings settings;
  ReportState report;
  Console console{shell, dialogs, control, settings, report};
  std::string file;

  ~Bench() {
    if (!file.empty()) std::filesystem::remove(file);
  }
  void Open() {
    file = (std::filesystem::temp_directory_path() /
            ("flanks_console_test_" + std::to_string(reinterpret_cast<std::uintptr_t>(this))))
               .string();
    std::string reason;
    ASSERT_TRUE(OpenReport(console, file, reason)) << reason;
  }
  std::string Written() {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
  }
};

TEST(WarnLine, IsKeptUntilTheReportIsOpenAndWrittenAfterwards) {
  Bench bench;
  bench.console.WarnLine("early");
  EXPECT_EQ(bench.report.deferredMessages, std::vector<std::string>{"early"});
  bench.Open();
  bench.console.WarnLine("late");
  EXPECT_EQ(bench.Written(), "late\n");
  ASSERT_EQ(bench.shell.statuses.size(), 2u);
  EXPECT_EQ(bench.shell.statuses[1].emphasis, Emphasis::flagged);
}

TEST(WarnLine, IsOnTheScreenAloneWhileTheTableIsOff) {
  Bench bench;
  bench.Open();
  bench.report.switchedOff = true;
  bench.console.WarnLine("unseen");
  EXPECT_EQ(bench.Written(), "");
  EXPECT_EQ(bench.shell.statuses.size(), 1u);
}

TEST(ShowAndWrite, GoesToScreenAndReport) {
  Bench bench;
  bench.Open();
  bench.console.ShowAndWrite("both");
  EXPECT_EQ(bench.Written(), "both\n");
  EXPECT_EQ(bench.shell.Screen(), "both\n");
  EXPECT_TRUE(bench.shell.output.empty());
}

TEST(WriteOutput, WithoutAReportFileGoesToTheScreen) {
  Bench bench;
  bench.console.WriteOutput("a line");
  EXPECT_EQ(bench.shell.output, std::vector<std::string>{"a line"});
}

TEST(WriteOutput, ASilentRequestEchoesToTheScreen) {
  Bench bench;
  bench.Open();
  bench.report.RunSilent = true;
  bench.console.WriteOutput("a line");
  EXPECT_EQ(bench.Written(), "a line\n");
  EXPECT_EQ(bench.shell.output.size(), 1u);
}

TEST(WriteOutput, StopsWithTheRun) {
  Bench bench;
  bench.Open();
  bench.control.StopState = kStopProcess;
  bench.console.WriteOutput("after the stop");
  EXPECT_EQ(bench.Written(), "");
}

TEST(Ticker, PrintsADotOnceInFiveSeconds) {
  Bench bench;
  bench.console.TickStart();
  EXPECT_EQ(bench.shell.progress, ">.");
  for (int i = 1; i <= 12; ++i) {
    bench.shell.clock = 1000 * i;
    bench.console.Tick(i);
  }
  bench.console.TickEnd();
  EXPECT_EQ(bench.shell.progress, ">...<");
}

TEST(Ticker, AfterEightyDotsShowsTheCountOnAFreshLine) {
  Bench bench;
  for (int i = 1; i <= 81; ++i) {
    bench.shell.clock += 5000;
    bench.console.Tick(i);
  }
  EXPECT_EQ(bench.shell.progress, ">" + std::string(80, '.') + "\n81.");
}

TEST(Ticker, NotRunningItHasNoEnd) {
  Bench bench;
  bench.console.TickEnd();
  EXPECT_EQ(bench.shell.progress, "");
}

TEST(FailureStop, ShowsTheContactSentenceAndStopsTheProcess) {
  Bench bench;
  bench.console.FailureStop("Failure (1)! Swapl$ not 8 bytes: 7.");
  ASSERT_EQ(bench.dialogs.boxes.size(), 1u);
  EXPECT_EQ(bench.dialogs.boxes[0],
            "Flanks Problem ...: Failure (1)! Swapl$ not 8 bytes: 7. Please report this failure "
            "with your Specification and data files.");
  EXPECT_TRUE(bench.console.stopping());
}

TEST(ReportPage, ConvertsTheBoxByMode) {
  struct Case {
    char mode;
    char box;
    std::string expected;
  };
  const std::string line = std::string(1, kBoxColumn) + " 12 " + kBoxColumn + "  ";
  const Case cases[] = {{'Y', 'Y', "| 12 |\n"},
                        {'N', 'Y', "\xB3 12 \xB3  \n"},
                        {'Y', 'N', "  12\n"},
                        {'N', 'N', "  12    \n"}};
  for (const Case& c : cases) {
    Bench bench;
    bench.settings.Ascii = c.mode;
    bench.settings.BoxShow = c.box;
    bench.Open();
    WriteReportLine(bench.console, line);
    EXPECT_EQ(bench.Written(), c.expected) << c.mode << c.box;
  }
}

TEST(ReportPage, AHiddenBoxHasNoRules) {
  Bench bench;
  bench.settings.BoxShow = 'N';
  bench.Open();
  bench.report.rulePattern = "x---x";
  TopRule(bench.console);
  EXPECT_EQ(bench.Written(), "");
}

TEST(ReportPage, AWebpageBeginsWithItsBody) {
  Bench bench;
  bench.settings.Ascii = 'W';
  bench.Open();
  WriteReportLine(bench.console, "a  b");
  WriteReportLine(bench.console, "");
  EXPECT_EQ(bench.Written(),
            "<BODY><FONT FACE='Lucida Console, Andale Mono, Courier New'>a &nbsp;b<br>\n<br>\n");
}

// The style stands behind the report: its lines are those of any report.
TEST(ReportPage, AWebpageEndsWithItsStyle) {
  Bench bench;
  bench.settings.Ascii = 'W';
  bench.settings.Webpagefonts = "Some Mono";
  bench.Open();
  CloseReport(bench.console);
  EXPECT_EQ(bench.Written(),
            "<STYLE>@media screen{BODY{white-space:nowrap}}FONT{font-family:Some "
            "Mono,monospace}</STYLE><br>\n");
  bench.settings.Webpagefonts = "a}<b";
  bench.Open();
  CloseReport(bench.console);
  EXPECT_EQ(bench.Written(), "<STYLE>@media screen{BODY{white-space:nowrap}}</STYLE><br>\n");
  bench.settings.Ascii = 'Y';
  bench.Open();
  CloseReport(bench.console);
  EXPECT_EQ(bench.Written(), "");
}

TEST(TableHeading, HasFourLinesAndShowsItsTitle) {
  Bench bench;
  bench.Open();
  bench.report.runHeading = "Check ";
  TableHeading(bench.console, "Table 2. Data Summary Report");
  EXPECT_EQ(bench.Written(), "\nCheck\nTable 2. Data Summary Report.\n\n");
  EXPECT_EQ(bench.shell.Screen(), "Table 2. Data Summary Report\n");
}

TEST(TableHeading, ACaretBreaksThePage) {
  Bench bench;
  bench.Open();
  bench.report.runHeading = "^Check ";
  TableHeading(bench.console, "Table 2. Data Summary Report");
  EXPECT_EQ(bench.Written(), "\n\fCheck\nTable 2. Data Summary Report.\n\n");
}

TEST(SelectTable, FollowsTheFlags) {
  struct Case {
    const char* flags;
    int table;
    bool off;
  };
  const Case cases[] = {{"Y", 7, false},
                        {"N", 7, false},
                        {"01111111111111", 1, true},
                        {"0111111", 2, false},
                        {"10000000000000", 7, true},
                        {"1", 2, false},
                        {"", 3, false}};
  for (const Case& c : cases) {
    Bench bench;
    bench.settings.Tables = c.flags;
    SelectTable(bench.console, c.table);
    EXPECT_EQ(bench.report.switchedOff, c.off) << c.flags << " " << c.table;
  }
}

TEST(HeadingRows, LeavesOutBlankRowsAndEndsInTheMidRule) {
  Bench bench;
  bench.Open();
  bench.report.headingRows = {"", "   ", std::string(1, kBoxColumn) + "ab" + kBoxColumn, ""};
  bench.report.rulePattern = "x--x";
  HeadingRows(bench.console);
  EXPECT_EQ(bench.Written(), "|ab|\n|--|\n");
}

TEST(Juxtapose, NeverRepeatsTheHeading) {
  Bench bench;
  bench.settings.Juxtapose = 1;
  bench.Open();
  bench.report.headingRows = {"again", "head", "", ""};
  for (int row = 0; row < 5; ++row) Juxtapose(bench.console);
  EXPECT_EQ(bench.Written(), "");
}

TEST(OpenReport, AFolderThatIsNotThereIsTold) {
  Bench bench;
  std::string reason;
  EXPECT_FALSE(OpenReport(bench.console, "/no/such/folder/report.txt", reason));
  EXPECT_EQ(reason, "No such file or directory");
}

TEST(OpenReport, AFullDiskIsToldOnceAndTheRunGoesOn) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no device that is always full";
  Bench bench;
  std::string reason;
  ASSERT_TRUE(OpenReport(bench.console, "/dev/full", reason));
  WriteReportLine(bench.console, "one");
  WriteReportLine(bench.console, "two");
  ASSERT_EQ(bench.shell.statuses.size(), 1u);
  EXPECT_NE(bench.shell.statuses[0].text.find("/dev/full"), std::string::npos);
  EXPECT_NE(bench.shell.statuses[0].text.find("No space left on device"), std::string::npos);
  EXPECT_FALSE(bench.console.stopping());
}

}  // namespace
}  // namespace flanks
