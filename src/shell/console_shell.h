// The shell of a run on a terminal, in a pipe or in batch.
//
// Everything goes to standard output.  On a terminal flagged messages are coloured and iteration
// lines overwrite each other; elsewhere the text is plain.  The interrupt signal (Ctrl+C) only
// raises a flag that the run looks at in Pump; a second one ends the process at once.  Where a
// terminal is lent to ListenTo, its keys are those of the run.
//
// Tested by tests/unit/shell/console_shell_test.cpp and tests/damage/broken_off_test.cpp.
#ifndef FLANKS_SHELL_CONSOLE_SHELL_H
#define FLANKS_SHELL_CONSOLE_SHELL_H

#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "run/shell_interface.h"
#include "shell/terminal_keys.h"

namespace flanks {

class ConsoleShell : public Shell {
 public:
  // Writes to `out`; `terminal` says whether a person looks at it.
  ConsoleShell(RunControl& control, std::FILE* out, bool terminal);

  // Lets Ctrl+C and a request to terminate raise the flag, and a closed pipe pass.
  static void CatchInterrupts();

  // Takes the keys of this terminal from the first iteration on; what is no terminal has none.
  // Before, no key has a meaning, and the Specification or the data may be typed on the terminal.
  void ListenTo(int descriptor) { keys_.emplace(descriptor); }

 protected:
  void DoDeliverEvents() override;
  void DoWait(int milliseconds) override;
  void DoShowStatus(std::string_view text, Emphasis emphasis) override;
  void DoAppendOutput(std::string_view line) override;
  void DoShowProgress(std::string_view piece) override;
  void DoEditFile(const std::string& name, ViewAt position, std::string_view caption) override;
  std::int64_t DoMilliseconds() override;

 private:
  void Print(std::string_view text);
  void EndOpenLine();

  std::FILE* out_;
  std::optional<TerminalKeys> keys_;
  bool terminal_;
  bool estimating_ = false;  // the iterations have begun, or are over
  bool lineOpen_ = false;    // a progress bar or an overwritten line has no line end yet
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// Questions are cancelled; message boxes become a line.
class ConsoleDialogs : public Dialogs {
 public:
  explicit ConsoleDialogs(Shell& shell) : shell_(shell) {}
  void MessageBox(std::string_view text, std::string_view title) override;

 private:
  Shell& shell_;
};

}  // namespace flanks

#endif  // FLANKS_SHELL_CONSOLE_SHELL_H
