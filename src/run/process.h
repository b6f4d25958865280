// What outlives a run: the stop state, the initial settings and what one run leaves to the next.
//
// The shell writes RunControl, the run reads it.  The run lends its IterationControl to
// `steering` while it lasts, so that the keys "+", "-" and Ctrl+G reach exactly three numbers.
#ifndef FLANKS_RUN_PROCESS_H
#define FLANKS_RUN_PROCESS_H

#include <cstdint>
#include <string>

namespace flanks {

constexpr int kStopProcess = 2;     // StopState: everything unwinds without output
constexpr int kExitFault = 1;       // exit status of a run that a fault ended
constexpr int kExitCancelled = 51;  // exit status of a run that the user broke off

// The ceiling of NewtonValue: whole Newton steps.  Longer ones overshoot and need never end.
constexpr float kLargestNewton = 1.0f;

// The three numbers that a key may change during a run.
struct IterationControl {
  float SpeedFactor = 1.0f;
  float NewtonValue = 0.0f;
  std::int32_t IterationLimit = 0;  // 0: no limit
  bool iterating = false;           // "+" and "-" count only now
};

struct RunControl {
  int StopState = 0;  // kStopProcess: the process is to stop
  bool PauseRequested = false;
  bool FinishRequested = false;  // Ctrl+F: finish the step at work and go on
  bool CancelRequested = false;  // the user broke the run off (Ctrl+C)
  bool QueryMode = false;
  std::string KeyBuffer;
  int ExitCode = 0;
  IterationControl* steering = nullptr;
};

inline bool IsStopping(const RunControl& control) {
  return control.StopState == kStopProcess;
}

// flanks.ini.
struct InitialSettings {};  // none is read yet

// What the run before this one in the same process left; read once.
struct FormerRun {
  int groupAnchoredFlankWithoutGroup = 0;  // Warning (13); 0 for none
};

struct Process {
  RunControl control;
  InitialSettings initial;
  std::string commandLine;    // one text, as the user gave it
  bool DecimalComma = false;  // the system's decimal mark; for the words of fault 60 only
  FormerRun former;
};

}  // namespace flanks

#endif  // FLANKS_RUN_PROCESS_H
