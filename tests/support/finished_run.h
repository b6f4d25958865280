// What a writer of an output file is given when a run has ended: the finished analysis of an
// AnalysisRun with a console of its own.
//
//   AnalysisRun run;
//   run.Analyze("Flanks=2\n...");
//   FinishedRun finished(run);
//   WriteSubsetFile(finished.run, run.folder.file("subsets.txt"));
#ifndef FLANKS_TESTS_SUPPORT_FINISHED_RUN_H
#define FLANKS_TESTS_SUPPORT_FINISHED_RUN_H

#include "run/console.h"
#include "run/run.h"
#include "support/analysis_run.h"

namespace flanks {

struct FinishedRun {
  explicit FinishedRun(AnalysisRun& test)
      : console(test.shell, test.dialogs, test.process.control, test.analysis.settings,
                test.analysis.report),
        run{test.process, test.analysis, console, test.dialogs, test.launcher} {}

  Console console;
  Run run;
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_FINISHED_RUN_H
