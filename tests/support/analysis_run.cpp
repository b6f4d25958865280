#include "support/analysis_run.h"

#include "run/console.h"
#include "run/pipeline.h"

namespace flanks {

AnalysisRun::AnalysisRun() = default;
AnalysisRun::~AnalysisRun() = default;

void AnalysisRun::Write(const std::string& name, std::string_view text) {
  folder.write(name, text);
}

std::string AnalysisRun::Report() const {
  return folder.read("report.txt");
}

int AnalysisRun::Analyze(std::string_view specification, const std::string& extras) {
  folder.write("spec.txt", specification);
  return RunCommandLine(folder.file("spec.txt") + " " + folder.file("report.txt") + " " + extras);
}

int AnalysisRun::RunCommandLine(const std::string& commandLine) {
  processEnded = false;
  try {
    exitCode = RunAnalysis(process, analysis, {shell, dialogs, launcher}, commandLine);
  } catch (const ProcessEnd& end) {
    processEnded = true;
    exitCode = end.exitCode;
  }
  return exitCode;
}

std::string AnalysisRun::Screen() const {
  std::string all = shell.Screen();
  for (const std::string& box : dialogs.boxes) all += box + "\n";
  return all;
}

std::vector<std::string> AnalysisRun::Leftovers() const {
  std::vector<std::string> left;
  for (const std::string& name : folder.names())
    if (!name.ends_with(".txt")) left.push_back(name);
  return left;
}

}  // namespace flanks
