// The keys that are pressed on a terminal while a run lasts, without waiting for Enter.
//
// From the first Take on the terminal neither collects lines nor shows what is typed; Ctrl+C,
// Ctrl+Z and Ctrl+S keep their meaning.  The terminal's own mode comes back at the end, at the
// first Ctrl+C, while the run is stopped with Ctrl+Z, and when a fault ends the program.  A run in
// the background leaves the terminal alone until it comes to the front.
//
// Tested by tests/damage/terminal_keys_test.cpp.
#ifndef FLANKS_SHELL_TERMINAL_KEYS_H
#define FLANKS_SHELL_TERMINAL_KEYS_H

#include <string>

namespace flanks {

// One at a time, as there is one terminal.
class TerminalKeys {
 public:
  // A `descriptor` that is no terminal has no keys, and nothing is changed.
  explicit TerminalKeys(int descriptor);
  ~TerminalKeys();
  TerminalKeys(const TerminalKeys&) = delete;
  TerminalKeys& operator=(const TerminalKeys&) = delete;

  // What was pressed since the last call; never waits.
  std::string Take();

 private:
  bool HasKeys();

  int descriptor_;
};

// The terminal as it was before, for good: the run is being broken off.  Safe in signal handlers.
void ReleaseTerminal();

}  // namespace flanks

#endif  // FLANKS_SHELL_TERMINAL_KEYS_H
