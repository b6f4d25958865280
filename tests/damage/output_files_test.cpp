// Output files on a disk that is full or a folder that cannot be written: told with the file's
// name, what stood there stays, nothing half-written is left, and the run goes on.
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <thread>

#include "support/flanks_sandbox.h"
#include "support/program_runner.h"

namespace flanks {
namespace {

using testing::HasSubstr;
using testing::Not;

// 4,000 observations: work files of 60,000 bytes, a Residual file of 800,000.
void WriteInput(const FlanksSandbox& sandbox) {
  sandbox.Write(
      "spec.txt",
      "Flanks=2\nTables=00000000000000\nIterations=2\nSubsets=N\nModels=?,?,R4\n*\nLabels=\n"
      "1,Persons\n1-100=person\n*\n2,Items\n1-40=i\n*\nData=data.txt\n");
  std::string data;
  for (int person = 1; person <= 100; ++person) {
    data += std::to_string(person) + ",1-40";
    for (int item = 0; item < 40; ++item)
      data += "," + std::to_string((person * 7 + item * 3 + person * item / 11) % 5);
    data += "\n";
  }
  sandbox.Write("data.txt", data);
}

TEST(OutputFiles, AFullDiskLeavesTheFormerFile) {
  for (const std::string program : {FLANKS_PROGRAM, FLANKS_CHECKED_PROGRAM}) {
    const FlanksSandbox sandbox;
    WriteInput(sandbox);
    sandbox.Write("residuals.txt", "former\n");
    ProgramCall call = sandbox.Call(
        program, {"spec.txt", "report.txt", "Scorefile=scores.txt", "Residualfile=residuals.txt"});
    call.fileSizeLimit = 300'000;
    const ProgramResult result = RunProgram(call);
    EXPECT_EQ(result.signal, 0) << result.output;
    EXPECT_EQ(result.exitStatus, 1) << result.output;
    EXPECT_THAT(result.output, HasSubstr("<\nWriteResidualFile failed: File write failure for "));
    EXPECT_THAT(result.output, HasSubstr("residuals.txt: File too large.\n"));
    EXPECT_THAT(result.output, HasSubstr("Output to report.txt"));
    EXPECT_EQ(sandbox.Read("residuals.txt"), "former\n");
    EXPECT_THAT(sandbox.Files(),
                testing::UnorderedElementsAre("data.txt", "report.txt", "residuals.txt",
                                              "scores.1.txt", "scores.2.txt", "spec.txt"));
    EXPECT_TRUE(sandbox.TemporaryFiles().empty());
  }
}

TEST(OutputFiles, AFolderThatIsNotThereIsToldAndTheRunGoesOn) {
  const FlanksSandbox sandbox;
  WriteInput(sandbox);
  const ProgramResult result = RunProgram(sandbox.Call(
      FLANKS_CHECKED_PROGRAM, {"spec.txt", "report.txt", "Scorefile=missing/scores.txt",
                               "Graphfile=missing/curves.txt", "Residualfile=residuals.csv"}));
  EXPECT_EQ(result.exitStatus, 1) << result.output;
  for (const char* name : {"missing/curves.txt", "missing/scores.1.txt"}) {
    const std::size_t told = result.output.find(
        "Failure opening output file: \"" + std::string(name) + "\" (No such file or directory)\n");
    EXPECT_LT(told, result.output.find("Table 3")) << name << ": before the long work";
  }
  EXPECT_THAT(result.output, Not(HasSubstr("Writing Scorefile")));
  EXPECT_THAT(result.output, Not(HasSubstr("Writing graph output file")));
  EXPECT_THAT(sandbox.Files(), testing::Contains("residuals.csv"));
}

// Who reads the pipe gets the whole file, and a pipe that nobody reads holds up no run.
TEST(OutputFiles, APipeIsWritten) {
  const FlanksSandbox sandbox;
  WriteInput(sandbox);
  const std::string pipe = sandbox.Top() / "run/pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const ProgramCall call =
      sandbox.Call(FLANKS_PROGRAM, {"spec.txt", "report.txt", "Residualfile=pipe", "CSV=Tab"});
  const ProgramResult unread = RunProgram(call);
  EXPECT_FALSE(unread.timedOut);
  EXPECT_EQ(unread.exitStatus, 1);
  EXPECT_THAT(unread.output, HasSubstr("Failure opening output file: \""));
  std::size_t lines = 0;
  std::thread reader([&] {
    std::ifstream rows(pipe);
    for (std::string row; std::getline(rows, row);) ++lines;
  });
  EXPECT_EQ(RunProgram(call).exitStatus, 0);
  reader.join();
  EXPECT_EQ(lines, 4001u);
}

}  // namespace
}  // namespace flanks
