// The console services: every text that a run shows or writes goes through here and nothing else.
//
//   ShowLine      a progress line, screen only
//   ShowFlagged   the same, in the colour of messages that need attention
//   WarnLine      a message that must not be lost: ShowFlagged, then WriteOutput; while the report
//                 file is not yet open it is kept for Table 1's " Messages:" block
//   WriteOutput   one line of the report (run/report_page.h does the conversion)
//   ticker        throttles the screen output of long passes to once in five seconds
//
// Tested by tests/unit/run/console_test.cpp.
#ifndef FLANKS_RUN_CONSOLE_H
#define FLANKS_RUN_CONSOLE_H

#include <cstdint>
#include <string>
#include <string_view>

#include "run/process.h"
#include "run/report_state.h"
#include "run/settings.h"
#include "run/shell_interface.h"

namespace flanks {

class Console {
 public:
  // References stay valid for the console's life; `analysis = Analysis{}` resets what they refer
  // to.
  Console(Shell& shell, Dialogs& dialogs, RunControl& control, const Settings& settings,
          ReportState& report)
      : shell_(shell), dialogs_(dialogs), control_(control), settings_(settings), report_(report) {}

  void ShowLine(std::string_view text);
  void ShowFlagged(std::string_view text);
  void WarnLine(std::string_view text);
  void WriteOutput(std::string_view text);   // the same service as WriteReportLine
  void ShowAndWrite(std::string_view text);  // ShowLine, then WriteOutput
  void ShowPart(std::string_view text);      // without ending the screen line
  void ShowMore(std::string_view text);      // appended to the screen line

  void TickStart();
  void Tick(std::int64_t count);
  void TickEnd();

  // The run's call of Pump.  True when the run is to stop (StopState, or broken off by the user).
  bool YieldToWindow();
  bool stopping() const { return IsStopping(control_) || control_.CancelRequested; }
  bool finishRequested() const { return control_.FinishRequested; }
  void clearFinishRequest() { control_.FinishRequested = false; }

  // Shows `message` and the contact sentence in a box titled " Problem ...", sets the finished flag
  // and StopState 2.
  void FailureStop(std::string_view message);

  Shell& shell() { return shell_; }
  ReportState& report() { return report_; }
  const Settings& settings() const { return settings_; }

 private:
  Shell& shell_;
  Dialogs& dialogs_;
  RunControl& control_;
  const Settings& settings_;
  ReportState& report_;
  std::int64_t lastTick_ = 0;
  int dotsOnLine_ = 0;
  bool ticking_ = false;
};

// The sentence that ends every Failure.
extern const std::string_view kContactSentence;

// Ends the process at once: a malformed number, a text file that changes under the reader.  Thrown
// through every guard; only the main functions and the tests catch it.
struct ProcessEnd {
  int exitCode;
};
[[noreturn]] void EndProcess(int exitCode);

}  // namespace flanks

#endif  // FLANKS_RUN_CONSOLE_H
