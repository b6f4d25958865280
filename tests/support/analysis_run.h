// A whole run in the test's own process: text in, report, screen and finished analysis out.
//
//   AnalysisRun run;
//   run.Write("data.txt", "1,1,3\n");
//   run.Analyze("Flanks=2\n...");            // the Specification's text
//   EXPECT_EQ(run.exitCode, 0) << run.Screen();
//   run.analysis.estimates.elements[...]
//
// Files stand in a scratch folder that is also the folder of temporary files.
#ifndef FLANKS_TESTS_SUPPORT_ANALYSIS_RUN_H
#define FLANKS_TESTS_SUPPORT_ANALYSIS_RUN_H

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "run/analysis.h"
#include "run/process.h"
#include "support/recording_shell.h"
#include "support/scratch_folder.h"

namespace flanks {

class AnalysisRun {
 public:
  AnalysisRun();
  ~AnalysisRun();

  ScratchFolder folder;
  Process process;
  Analysis analysis;
  RecordingShell shell{process.control};
  RecordingDialogs dialogs;
  Launcher launcher;
  int exitCode = -1;
  bool processEnded = false;  // ProcessEnd: a malformed number, a text file that changed

  // Runs the Specification, written as spec.txt; `extras` follow on the command line.
  int Analyze(std::string_view specification, const std::string& extras = "");
  // Runs again with the same files and a fresh state.
  int RunCommandLine(const std::string& commandLine);

  void Write(const std::string& name, std::string_view text);
  std::string Report() const;
  std::string Screen() const;

  // The names in the folder beside the ones of the test's own making: work files left behind.
  std::vector<std::string> Leftovers() const;
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_ANALYSIS_RUN_H
