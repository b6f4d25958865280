// The harness of the golden cases sees what it must see: shell commands stand in for the program.

#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/golden_case.h"
#include "support/program_runner.h"
#include "support/text_compare.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

ProgramCall Shell(const FlanksSandbox& sandbox, const std::string& script) {
  return sandbox.Call("/bin/sh", {"-c", script});
}

TEST(ProgramRunner, KeepsOutputErrorsAndExitStatus) {
  const FlanksSandbox sandbox;
  const ProgramResult result = RunProgram(Shell(sandbox, "echo out; echo err >&2; exit 7"));
  EXPECT_EQ(result.output, "out\n");
  EXPECT_EQ(result.errors, "err\n");
  EXPECT_EQ(result.exitStatus, 7);
  EXPECT_EQ(result.signal, 0);
  EXPECT_FALSE(result.timedOut);
  EXPECT_GT(result.peakKilobytes, 0);
}

TEST(ProgramRunner, HandsOverArgumentsFolderAndEnvironment) {
  const FlanksSandbox sandbox;
  ProgramCall call = sandbox.Call("/bin/sh", {"-c", "pwd; echo \"$1|$2|$WORD\"", "sh", "a b", ""});
  call.environment["WORD"] = "set here";
  EXPECT_EQ(RunProgram(call).output, (sandbox.Top() / "run").string() + "\n" + "a b||set here\n");
}

TEST(ProgramRunner, ReadsMoreThanAPipeHoldsFromBothStreams) {
  const FlanksSandbox sandbox;
  const ProgramResult result =
      RunProgram(Shell(sandbox, "head -c 300000 /dev/zero; head -c 400000 /dev/zero >&2; cat"));
  EXPECT_EQ(result.output.size(), 300000u);
  EXPECT_EQ(result.errors.size(), 400000u);
  EXPECT_EQ(result.exitStatus, 0);  // standard input is empty: cat has ended
}

TEST(ProgramRunner, KillsARunThatTakesTooLongWithItsChildren) {
  const FlanksSandbox sandbox;
  ProgramCall call = Shell(sandbox, "echo begun; sleep 60 & sleep 60");
  call.timeLimit = std::chrono::milliseconds(300);
  const ProgramResult result = RunProgram(call);
  EXPECT_TRUE(result.timedOut);
  EXPECT_EQ(result.signal, SIGKILL);
  EXPECT_EQ(result.output, "begun\n");
}

TEST(ProgramRunner, InterruptsAtAText) {
  const FlanksSandbox sandbox;
  ProgramCall call =
      Shell(sandbox, "trap 'exit 51' INT; echo reading; while :; do sleep 0.02; done");
  call.interruptAt = "reading";
  EXPECT_EQ(RunProgram(call).exitStatus, 51);
}

TEST(ProgramRunner, LetsALongWriteFail) {
  const FlanksSandbox sandbox;
  ProgramCall call = Shell(sandbox, "head -c 5000 /dev/zero > big");
  call.fileSizeLimit = 1000;
  EXPECT_NE(RunProgram(call).exitStatus, 0);
  EXPECT_EQ(sandbox.Read("big").size(), 1000u);
}

TEST(ProgramRunner, ReportsAProgramThatIsNotThere) {
  const FlanksSandbox sandbox;
  EXPECT_EQ(RunProgram(sandbox.Call("/no/such/program", {})).exitStatus, 127);
}

TEST(TextCompare, ShowsTheFirstDifferenceInItsContext) {
  EXPECT_EQ(FirstDifference("a\nb\n", "a\nb\n"), "");
  EXPECT_EQ(FirstDifference("1\n2\n3\n4\nsame x\nz\n", "1\n2\n3\n4\nsame y\nz\n"),
            "first difference in line 5 (- expected, + came):\n"
            "  2 |2|\n"
            "  3 |3|\n"
            "  4 |4|\n"
            "- 5 |same x|\n"
            "+ 5 |same y|\n"
            "          ^ column 6\n");
  EXPECT_EQ(FirstDifference("a\nb\n", "a\n"),
            "first difference in line 2 (- expected, + came):\n"
            "  1 |a|\n"
            "- 2 |b|\n"
            "+ 2 | (end of text)\n");
  EXPECT_EQ(FirstDifference("a\n", "a"), "only the last line's end differs\n");
}

// A case in a sandbox of its own, answered by a shell script as "the program".
class GoldenHarness : public ::testing::Test {
 protected:
  GoldenHarness() {
    caseFolder_.Write("spec.txt", "Title=x\n");
    caseFolder_.Write(
        "case.txt", "; shows nothing\nrun: -c \". ./answer.sh\"\nexit: 3\nmask: [0-9]+ s => N s\n");
    Answer("cat spec.txt; pwd; echo in 12 s; cp spec.txt report.txt; exit 3");
    caseFolder_.Write("expected/screen.txt", "Title=x\nFOLDER\nin N s\n");
    caseFolder_.Write("expected/report.txt", "Title=x\n");
  }
  void Answer(const std::string& script) { caseFolder_.Write("answer.sh", script + "\n"); }
  std::vector<std::string> Faults() const {
    const GoldenCase golden = ReadGoldenCase(caseFolder_.Top() / "run");
    return FaultsOf(golden, RunGoldenCase(golden, "/bin/sh"));
  }
  FlanksSandbox caseFolder_;
};

TEST_F(GoldenHarness, CutsWhatTheCaseSays) {
  caseFolder_.Write("case.txt", "run: -c \". ./answer.sh\"\ncut: <style> => </style>\n");
  caseFolder_.Write("expected/screen.txt", "1 <style>(cut)</style> 2\n");
  std::filesystem::remove(caseFolder_.Top() / "run/expected/report.txt");
  Answer("echo '1 <style>any thing'; echo '</style> 2'");
  EXPECT_THAT(Faults(), IsEmpty());
  Answer("echo '1 <style>any thing'; echo '</style> 3'");
  EXPECT_THAT(Faults(), ElementsAre(HasSubstr("screen.txt, first difference in line 1")));
}

TEST_F(GoldenHarness, IsSilentWhenAllIsAsExpected) {
  EXPECT_THAT(Faults(), IsEmpty());
}

TEST_F(GoldenHarness, SeesAnotherByte) {
  Answer("cat spec.txt; pwd; echo in 7 s; echo Title=y > report.txt; exit 3");
  EXPECT_THAT(Faults(), ElementsAre(HasSubstr("report.txt, first difference in line 1")));
}

TEST_F(GoldenHarness, SeesAnotherExitStatusAndWordsOnStandardError) {
  Answer("cat spec.txt; pwd; echo in 7 s; cp spec.txt report.txt; echo oh >&2; exit 4");
  EXPECT_THAT(Faults(), ElementsAre("exit status 4 in place of 3", "standard error: oh\n"));
}

TEST_F(GoldenHarness, SeesMissingSurplusAndLeftoverFiles) {
  Answer("cat spec.txt; pwd; echo in 7 s; : > other.txt; : > \"$TMPDIR/work\"; exit 3");
  EXPECT_THAT(Faults(),
              ElementsAre("a work file was left behind: work", "the run left no file report.txt",
                          "not expected: the file other.txt"));
}

TEST_F(GoldenHarness, RewritesTheExpectedFiles) {
  Answer("echo new; exit 3");
  caseFolder_.Write("expected/stale.txt", "");
  const GoldenCase golden = ReadGoldenCase(caseFolder_.Top() / "run");
  RewriteExpected(golden, RunGoldenCase(golden, "/bin/sh"));
  EXPECT_THAT(Faults(), IsEmpty());
  EXPECT_EQ(caseFolder_.Read("expected/screen.txt"), "new\n");
  EXPECT_THAT(FilesBelow(caseFolder_.Top() / "run/expected"), ElementsAre("screen.txt"));
}

TEST_F(GoldenHarness, NamesTheLineOfCaseThatIsNotUnderstood) {
  caseFolder_.Write("case.txt", "run: x\nruns: y\n");
  EXPECT_THAT(
      [&] { ReadGoldenCase(caseFolder_.Top() / "run"); },
      ::testing::ThrowsMessage<std::runtime_error>(HasSubstr("case.txt:2: unknown word \"runs\"")));
}

}  // namespace
}  // namespace flanks
