#include "support/message_case.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "support/flanks_sandbox.h"
#include "support/program_runner.h"
#include "support/source_tree.h"

namespace flanks {
namespace {

constexpr int kDataLine = 14;

struct Answer {
  ProgramResult result;
  std::string report;
  std::vector<std::string> files;
  std::vector<std::string> temporaryFiles;
};

Answer RunCase(const MessageCase& c, const std::string& program) {
  FlanksSandbox sandbox;
  std::string text;
  for (const std::string& line : c.lines) text += line + "\n";
  if (!c.lines.empty()) sandbox.Write("s.txt", text);
  for (const auto& [name, contents] : c.files) sandbox.Write(name, contents);
  Answer answer;
  answer.result = RunProgram(sandbox.Call(program, c.arguments));
  answer.report = sandbox.Read("out.txt");
  answer.files = sandbox.Files();
  answer.temporaryFiles = sandbox.TemporaryFiles();
  return answer;
}

void ExpectLines(const std::string& text, const std::vector<std::string>& lines,
                 const std::string& where) {
  const std::vector<std::string> all = LinesOf(text);
  for (const std::string& line : lines)
    EXPECT_TRUE(std::find(all.begin(), all.end(), line) != all.end())
        << where << " has no line\n  " << line << "\n"
        << text;
}

void ExpectText(const MessageCase& c, const Answer& answer) {
  ExpectLines(answer.result.output, c.screen, "the screen");
  ExpectLines(answer.report, c.report, "the report");
  for (const std::string& text : c.absent) {
    EXPECT_EQ(answer.result.output.find(text), std::string::npos) << text;
    EXPECT_EQ(answer.report.find(text), std::string::npos) << text;
  }
  EXPECT_EQ(answer.result.errors, "");
  EXPECT_TRUE(answer.temporaryFiles.empty());
}

}  // namespace

SpecificationLines BaseLines() {
  return {"Title=Check", "Flanks=2", "Models=?,?,R5", "Labels=", "1,Persons", "1=Ann", "2=Bob",
          "3=Cy",        "*",        "2,Items",       "1=i1",    "2=i2",      "*",     "Data=",
          "1,1,3",       "1,2,4",    "2,1,1",         "2,2,4",   "3,1,2",     "3,2,5"};
}

SpecificationLines Changed(int number, const std::string& text) {
  SpecificationLines lines = Added(number, text);
  lines.erase(lines.begin() + number - 1);
  return lines;
}

SpecificationLines Added(int number, const std::string& text) {
  SpecificationLines lines = BaseLines();
  const std::vector<std::string> added = LinesOf(text);
  lines.insert(lines.begin() + number, added.begin(), added.end());
  return lines;
}

SpecificationLines WithData(const std::string& data) {
  return WithData(BaseLines(), data);
}

SpecificationLines WithData(SpecificationLines lines, const std::string& data) {
  lines.resize(lines.size() - (BaseLines().size() - kDataLine));
  const std::vector<std::string> added = LinesOf(data);
  lines.insert(lines.end(), added.begin(), added.end());
  return lines;
}

void CheckFaultCase(const MessageCase& c, const std::string& program) {
  SCOPED_TRACE(c.name);
  const Answer answer = RunCase(c, program);
  EXPECT_EQ(answer.result.exitStatus, 1);
  ExpectText(c, answer);
  const std::vector<std::string> screen = LinesOf(answer.result.output);
  ASSERT_FALSE(screen.empty());
  EXPECT_EQ(screen.back(), "Execution halted") << answer.result.output;
  const bool hasReport =
      std::find(answer.files.begin(), answer.files.end(), "out.txt") != answer.files.end();
  EXPECT_EQ(hasReport, !c.report.empty());
}

void CheckSaidCase(const MessageCase& c, const std::string& program) {
  SCOPED_TRACE(c.name);
  ExpectText(c, RunCase(c, program));
}

void CheckEndCase(const MessageCase& c, const std::string& program) {
  SCOPED_TRACE(c.name);
  const Answer answer = RunCase(c, program);
  EXPECT_EQ(answer.result.exitStatus, 1);
  ExpectText(c, answer);
  EXPECT_EQ(answer.result.output.find("Execution halted"), std::string::npos);
}

void CheckRunCase(const MessageCase& c, const std::string& program) {
  SCOPED_TRACE(c.name);
  const Answer answer = RunCase(c, program);
  EXPECT_EQ(answer.result.exitStatus, 0) << answer.result.output;
  ExpectText(c, answer);
  EXPECT_NE(answer.report.find("Table 7.1.1"), std::string::npos);
}

}  // namespace flanks
