// The run: one ordered table of steps from the command line to the last line of the report.
//
// Each step is a procedure of the folder it belongs to; the loop runs them in order and stops at
// the first pending fault, stop or request to break off.  A fault is reported once and ends the run
// with "Execution halted"; StopState 2 unwinds without further output.
//
// Tested by tests/unit/run/pipeline_test.cpp and by every golden report.
#ifndef FLANKS_RUN_PIPELINE_H
#define FLANKS_RUN_PIPELINE_H

#include <string>

#include "run/analysis.h"
#include "run/process.h"
#include "run/run.h"
#include "run/shell_interface.h"

namespace flanks {

// What the world gives to a run.
struct World {
  Shell& shell;
  Dialogs& dialogs;
  Launcher& launcher;
};

// Runs one analysis and returns the exit status: 0, 1 (kExitFault) or 51 (kExitCancelled).
// `analysis` is reset first and holds the finished analysis afterwards.  May be called again in the
// same process.  ProcessEnd passes through.
int RunAnalysis(Process& process, Analysis& analysis, World world, const std::string& commandLine);

// Step, before the report is opened: reports a pending fault, which without batch mode is a
// Failure, and yields to the window.
void CheckFault(Run& run);

}  // namespace flanks

#endif  // FLANKS_RUN_PIPELINE_H
