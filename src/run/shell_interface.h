// What a run needs of the world: a Shell to show things, Dialogs to ask, a Launcher to start
// programs.  These three are the only virtual functions of the program.
//
// The public operations of Shell are not virtual: what happens in `Pump` beside delivering events
// (holding a paused run, taking the keys, noticing a closed window or a Ctrl+C) is run logic and
// the same for every shell (run/run_control.cpp).  A shell overrides only the small `Do...`
// operations.
//
// Tested by tests/unit/run/run_control_test.cpp through tests/support/recording_shell.h.
#ifndef FLANKS_RUN_SHELL_INTERFACE_H
#define FLANKS_RUN_SHELL_INTERFACE_H

#include <cstdint>
#include <string>
#include <string_view>

#include "run/process.h"

namespace flanks {

enum class Emphasis : std::uint8_t { normal, flagged };
enum class ViewAt : std::uint8_t { start, end };

class Shell {
 public:
  explicit Shell(RunControl& control) : control_(control) {}
  virtual ~Shell() = default;
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;

  // Gives the user a turn: delivers events, holds the run while it is paused, takes the waiting
  // keys ("+", "-", Ctrl+F, Ctrl+G), and notices a request to stop.  Cheap when nothing waits.
  // A call made during a call returns at once.
  void Pump();
  void ShowStatus(std::string_view text, Emphasis emphasis = Emphasis::normal);  // pumps first
  void AppendOutput(std::string_view line);   // report text; box codes still in it
  void ShowProgress(std::string_view piece);  // no line end; ">" starts a bar, "<" ends it
  void EditFile(const std::string& name, ViewAt position, std::string_view caption);
  void SetCaption(std::string_view caption);
  std::int64_t Milliseconds() { return DoMilliseconds(); }

  bool IsFinishRequested() const { return control_.FinishRequested; }
  bool IsQueryMode() const { return control_.QueryMode; }

 protected:
  virtual void DoDeliverEvents() = 0;
  virtual void DoWait(int milliseconds) = 0;
  virtual void DoShowStatus(std::string_view text, Emphasis emphasis) = 0;
  virtual void DoAppendOutput(std::string_view line) = 0;
  virtual void DoShowProgress(std::string_view piece) = 0;
  virtual void DoEditFile(const std::string& name, ViewAt position, std::string_view caption) = 0;
  virtual void DoSetCaption(std::string_view) {}
  virtual std::int64_t DoMilliseconds() = 0;

  RunControl& control_;

 private:
  void TakeKeys();

  bool pumping_ = false;
};

// Questions.  The defaults are those of a run with nobody there: every question is cancelled.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual std::string AskFileName(std::string_view title, std::string_view filter,
                                  const std::string& name);
  virtual bool AskExtraSpecifications(std::string& text);  // false: cancelled
  virtual void MessageBox(std::string_view text, std::string_view title);
  virtual void WaitForKey() {}
};

class Launcher {
 public:
  virtual ~Launcher() = default;
  virtual bool Open(const std::string& name);  // with its registered program; false: not started
};

}  // namespace flanks

#endif  // FLANKS_RUN_SHELL_INTERFACE_H
