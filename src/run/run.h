// What a step of the run is given.  Workers take parts of it, never the whole.
#ifndef FLANKS_RUN_RUN_H
#define FLANKS_RUN_RUN_H

#include "run/analysis.h"
#include "run/console.h"
#include "run/process.h"
#include "run/shell_interface.h"

namespace flanks {

struct Run {
  Process& process;
  Analysis& analysis;
  Console& console;
  Dialogs& dialogs;
  Launcher& launcher;
  const char* at = "";  // a short word for the place, kept current by long steps, for FailureStop
};

// A pending fault, a stop, or a run broken off: the step loop ends.
inline bool Halted(const Run& run) {
  return run.analysis.reading.faulty() || run.console.stopping();
}

}  // namespace flanks

#endif  // FLANKS_RUN_RUN_H
