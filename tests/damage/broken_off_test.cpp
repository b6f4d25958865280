// Runs that the world breaks: Ctrl+C, a full disk, a folder that cannot be written, a file that is
// not there.  Each is told in a sentence with the file's name, and nothing is left behind.
#include <gtest/gtest.h>
#include <string>

#include "support/flanks_sandbox.h"
#include "support/program_runner.h"

namespace flanks {
namespace {

// Many ratings and no limit of convergence: a run that lasts until it is broken off.
constexpr const char* kLongSpecification =
    "Flanks=2\nModels=?,?,R4\nConvergence=0,0\nLabels=\n1,Persons\n1-500=p\n*\n2,Items\n1-40=i\n*\n"
    "Data=data.txt\n";

std::string ManyRatings() {
  std::string text;
  for (int line = 0; line < 200'000; ++line)
    text += std::to_string(line * 7 % 500 + 1) + "," + std::to_string(line % 40 + 1) + "," +
            std::to_string((line * 31 % 97 + line % 500 / 6) % 5) + "\n";
  return text;
}

ProgramCall LongCall(const FlanksSandbox& sandbox) {
  sandbox.Write("spec.txt", kLongSpecification);
  sandbox.Write("data.txt", ManyRatings());
  return sandbox.Call(FLANKS_PROGRAM, {"spec.txt", "report.txt"});
}

void ExpectHalted(const ProgramResult& result, const FlanksSandbox& sandbox) {
  EXPECT_EQ(result.signal, 0);
  EXPECT_FALSE(result.timedOut);
  EXPECT_NE(result.output.find("Execution halted"), std::string::npos) << result.output;
  EXPECT_TRUE(sandbox.TemporaryFiles().empty()) << sandbox.TemporaryFiles().front();
}

TEST(CtrlC, DuringTheIterationsEndsTheRunWithStatus51) {
  FlanksSandbox sandbox;
  ProgramCall call = LongCall(sandbox);
  call.interruptAt = "JMLE";
  const ProgramResult result = RunProgram(call);
  EXPECT_EQ(result.exitStatus, 51);
  EXPECT_NE(result.output.find("Execution cancelled at user request: Error F51"), std::string::npos)
      << result.output;
  ExpectHalted(result, sandbox);
}

TEST(CtrlC, DuringTheDataPassEndsTheRunWithStatus51) {
  FlanksSandbox sandbox;
  ProgramCall call = LongCall(sandbox);
  call.interruptAt = "Assigning models to Data= ";
  const ProgramResult result = RunProgram(call);
  EXPECT_EQ(result.exitStatus, 51);
  ExpectHalted(result, sandbox);
}

TEST(FullDisk, DuringTheDataPassIsToldWithTheFilesName) {
  FlanksSandbox sandbox;
  ProgramCall call = LongCall(sandbox);
  call.fileSizeLimit = 400'000;  // the work files need 2 million bytes
  const ProgramResult result = RunProgram(call);
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_EQ(result.signal, 0);
  EXPECT_NE(result.output.find("ReadData failed at "), std::string::npos) << result.output;
  EXPECT_NE(result.output.find("File write failure for "), std::string::npos) << result.output;
  EXPECT_TRUE(sandbox.TemporaryFiles().empty());
}

TEST(FullDisk, UnderTheReportIsToldAndShowsInTheStatus) {
  FlanksSandbox sandbox;
  sandbox.Write("spec.txt",
                "Flanks=2\nTables=11111011\nModels=?,?,R2\nLabels=\n1,Persons\n1-3=p\n*\n2,"
                "Items\n1-3=i\n*\nData=\n"
                "1,1-3,0,1,1\n2,1-3,1,1,2\n3,1-3,2,1,0\n");
  ProgramCall call = sandbox.Call(FLANKS_PROGRAM, {"spec.txt", "report.txt"});
  call.fileSizeLimit = 4096;
  const ProgramResult result = RunProgram(call);
  EXPECT_EQ(result.exitStatus, 1) << result.output;
  const std::string told =
      "The report file \"report.txt\" cannot be written any more (File too large): it ends in "
      "Table 7.";
  const std::size_t place = result.output.find(told);
  EXPECT_NE(place, std::string::npos) << result.output;
  EXPECT_EQ(result.output.find("cannot be written any more", place + told.size()),
            std::string::npos)
      << "once";
  EXPECT_NE(result.output.find("The report \"report.txt\" is not complete."), std::string::npos);
  EXPECT_NE(result.output.find("Analyzed in time of "), std::string::npos) << "the run goes on";
  EXPECT_TRUE(sandbox.TemporaryFiles().empty());
}

TEST(Options, ThatAreUnknownAreRefusedAndMakeNoReport) {
  FlanksSandbox sandbox;
  const ProgramResult result = RunProgram(sandbox.Call(FLANKS_PROGRAM, {"--foo"}));
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_NE(result.output.find("\"--foo\" is no option of flanks."), std::string::npos);
  const ProgramResult help = RunProgram(sandbox.Call(FLANKS_PROGRAM, {"spec.txt", "--help"}));
  EXPECT_EQ(help.exitStatus, 0);
  EXPECT_TRUE(sandbox.Files().empty());
}

TEST(OutputFolder, ThatIsNotThereIsToldWithTheFilesName) {
  FlanksSandbox sandbox;
  sandbox.Write("spec.txt", kLongSpecification);
  sandbox.Write("data.txt", "1,1,1\n");
  const ProgramResult result =
      RunProgram(sandbox.Call(FLANKS_PROGRAM, {"spec.txt", "nowhere/report.txt"}));
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_NE(
      result.output.find("\"nowhere/report.txt\" cannot be written: No such file or directory"),
      std::string::npos)
      << result.output;
  ExpectHalted(result, sandbox);
}

TEST(DataFile, ThatIsNotThereIsToldWithItsName) {
  FlanksSandbox sandbox;
  sandbox.Write("spec.txt", kLongSpecification);
  const ProgramResult result = RunProgram(sandbox.Call(FLANKS_PROGRAM, {"spec.txt", "report.txt"}));
  EXPECT_EQ(result.exitStatus, 1);
  EXPECT_NE(result.output.find("data.txt"), std::string::npos);
  EXPECT_NE(result.output.find("File not found"), std::string::npos) << result.output;
  EXPECT_NE(result.output.find("Error F43"), std::string::npos) << result.output;
  ExpectHalted(result, sandbox);
}

TEST(SpecificationFile, ThatIsNotThereIsToldWithItsName) {
  for (const bool batch : {false, true}) {
    FlanksSandbox sandbox;
    std::vector<std::string> arguments{"missing.txt"};
    if (batch) arguments.push_back("Batch=Y");
    const ProgramResult result = RunProgram(sandbox.Call(FLANKS_PROGRAM, arguments));
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_NE(result.output.find("\"missing.txt\""), std::string::npos) << result.output;
    EXPECT_NE(result.output.find(batch ? "Error F52" : "Error F43"), std::string::npos)
        << result.output;
    EXPECT_TRUE(sandbox.Files().empty()) << "no report is made";
    ExpectHalted(result, sandbox);
  }
}

TEST(NoArguments, EndAtOnceWithNothingWritten) {
  FlanksSandbox sandbox;
  const ProgramResult result = RunProgram(sandbox.Call(FLANKS_PROGRAM, {}));
  EXPECT_EQ(result.exitStatus, 0);
  EXPECT_TRUE(sandbox.Files().empty());
}

TEST(Help, AndVersionAreAnswered) {
  FlanksSandbox sandbox;
  const ProgramResult help = RunProgram(sandbox.Call(FLANKS_PROGRAM, {"--help"}));
  EXPECT_EQ(help.exitStatus, 0);
  EXPECT_NE(help.output.find("Usage: flanks SPECIFICATION"), std::string::npos);
  const ProgramResult version = RunProgram(sandbox.Call(FLANKS_PROGRAM, {"--version"}));
  EXPECT_EQ(version.exitStatus, 0);
  EXPECT_EQ(version.output.rfind("flanks ", 0), 0u);
}

}  // namespace
}  // namespace flanks
