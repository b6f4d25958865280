// The report file while it is written: what is in it survives the death of the process, and it is
// opened once.
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "support/analysis_run.h"
#include "support/flanks_sandbox.h"
#include "support/program_runner.h"

namespace flanks {
namespace {

// Table 7 in twenty orders: some hundred thousand lines.
constexpr int kPersons = 4000;
constexpr const char* kOrders = "N,n,A,a,M,m,F,f,P,p,AN,An,aN,an,MN,Mn,mN,mn,FN,Fn";

void WriteLongReportsInput(const FlanksSandbox& sandbox) {
  sandbox.Write("spec.txt",
                "Flanks=2\nModels=?,?,R4\nIterations=1\nSubsets=N\nLabels=\n1,Persons\n1-" +
                    std::to_string(kPersons) + "=p\n*\n2,Items\n1-4=i\n*\nData=data.txt\n");
  std::string data;
  for (int person = 1; person <= kPersons; ++person) {
    data += std::to_string(person) + ",1-4";
    for (int item = 0; item < 4; ++item)
      data += "," + std::to_string((person * 7 + item * 3 + person / 11) % 5);
    data += "\n";
  }
  sandbox.Write("data.txt", data);
}

// On a machine with much else to do the program may have ended before the kill came; again, then.
ProgramResult RunUntilKilled(const ProgramCall& call) {
  ProgramResult result;
  for (int attempt = 0; attempt < 10 && result.signal == 0; ++attempt) result = RunProgram(call);
  return result;
}

std::string FromTable7(const std::string& report) {
  const std::size_t place = report.find("Table 7.1.1");
  return place == std::string::npos ? "" : report.substr(place);
}

// Killed while a Table is written, the program leaves all lines of the Tables before it, and of
// this one whole lines from its first one on.
TEST(KilledRun, LeavesTheLinesThatItHasWritten) {
  const FlanksSandbox sandbox;
  WriteLongReportsInput(sandbox);
  const std::string arrange = std::string("Arrange=") + kOrders;
  const ProgramCall call =
      sandbox.Call(FLANKS_PROGRAM, {"spec.txt", "report.txt", arrange, "Tables=00000010000000"});
  ASSERT_EQ(RunProgram(call).exitStatus, 0);
  const std::string whole = FromTable7(sandbox.Read("report.txt"));
  for (const char* table : {"Table 7.1.2 ", "Table 7.1.5 "}) {
    ProgramCall killed = call;
    killed.killAt = table;
    const ProgramResult result = RunUntilKilled(killed);
    ASSERT_EQ(result.signal, SIGKILL) << result.output;
    const std::string left = FromTable7(sandbox.Read("report.txt"));
    ASSERT_LT(left.size(), whole.size());
    EXPECT_EQ(left, whole.substr(0, left.size())) << table;
    EXPECT_EQ(left.back(), '\n') << table;
    const std::size_t lastLineBefore = whole.rfind("Model,", whole.find(table));
    EXPECT_GT(left.size(), whole.find('\n', lastLineBefore)) << "the Tables before " << table;
  }
}

// A report that changes its name while it is written goes on under its new one: there is no second
// opening, for no line.
TEST(ReportFile, IsOpenedOnce) {
  const std::string specification =
      "Flanks=2\nModels=?,?,R2\nLabels=\n1,Persons\n1-3=p\n*\n2,Items\n1-3=i\n*\nData=\n"
      "1,1-3,0,1,1\n2,1-3,1,1,2\n3,1-3,2,1,0\n";
  AnalysisRun plain;
  ASSERT_EQ(plain.Analyze(specification), 0) << plain.Screen();
  AnalysisRun run;
  const std::filesystem::path report = run.folder.file("report.txt");
  const std::filesystem::path moved = run.folder.file("moved.txt");
  run.shell.ActionAtPump(plain.shell.pumps * 3 / 4,
                         [&] { std::filesystem::rename(report, moved); });
  ASSERT_EQ(run.Analyze(specification), 0) << run.Screen();
  EXPECT_FALSE(std::filesystem::exists(report));
  const std::string text = run.folder.read("moved.txt");
  EXPECT_EQ(FromTable7(text), FromTable7(plain.Report()));
  EXPECT_NE(FromTable7(text), "");
}

}  // namespace
}  // namespace flanks
