// What a step or a writer is given, with nobody there: a process, an empty analysis, and doubles of
// the world that keep what they were told.
//
//   RunBench bench;
//   WriteOutputFile(bench.run, "WriteThree", bench.folder.file("a.txt"), ...);
//   EXPECT_EQ(bench.shell.Screen(), "");
#ifndef FLANKS_TESTS_SUPPORT_RUN_BENCH_H
#define FLANKS_TESTS_SUPPORT_RUN_BENCH_H

#include <string>
#include <vector>

#include "run/analysis.h"
#include "run/console.h"
#include "run/process.h"
#include "run/run.h"
#include "support/recording_shell.h"
#include "support/scratch_folder.h"

namespace flanks {

// Keeps the names that it was to open; `works` says whether a program opens them.
class RecordingLauncher : public Launcher {
 public:
  bool works = false;
  std::vector<std::string> asked;
  bool Open(const std::string& name) override;
};

struct RunBench {
  RunBench();
  ~RunBench();

  ScratchFolder folder;  // first, so that the work files vanish before it
  Process process;
  Analysis analysis;
  RecordingShell shell{process.control};
  RecordingDialogs dialogs;
  RecordingLauncher launcher;
  Console console{shell, dialogs, process.control, analysis.settings, analysis.report};
  Run run{process, analysis, console, dialogs, launcher};
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_RUN_BENCH_H
