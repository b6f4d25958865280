// A shell for tests: plays a script of keys, keeps everything shown, and has a false clock.
#ifndef FLANKS_TESTS_SUPPORT_RECORDING_SHELL_H
#define FLANKS_TESTS_SUPPORT_RECORDING_SHELL_H

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "run/shell_interface.h"

namespace flanks {

class RecordingShell : public Shell {
 public:
  explicit RecordingShell(RunControl& control);
  ~RecordingShell() override;

  struct Status {
    std::string text;
    Emphasis emphasis;
  };
  std::vector<Status> statuses;
  std::vector<std::string> output;  // AppendOutput
  std::string progress;             // the pieces, joined
  int pumps = 0;
  std::int64_t clock = 0;      // milliseconds; waiting advances it
  std::int64_t clockStep = 0;  // added at each look at the clock

  // At pump `number` (from 1) the keys arrive, or the action is taken.
  void KeysAtPump(int number, const std::string& keys);
  void ActionAtPump(int number, std::function<void()> action);

  // All status texts, one to a line.
  std::string Screen() const;

 protected:
  void DoDeliverEvents() override;
  void DoWait(int milliseconds) override;
  void DoShowStatus(std::string_view text, Emphasis emphasis) override;
  void DoAppendOutput(std::string_view line) override;
  void DoShowProgress(std::string_view piece) override;
  void DoEditFile(const std::string&, ViewAt, std::string_view) override;
  std::int64_t DoMilliseconds() override;

 private:
  std::multimap<int, std::function<void()>> actions_;
};

// Keeps message boxes; every question is cancelled.
class RecordingDialogs : public Dialogs {
 public:
  std::vector<std::string> boxes;  // "title: text"
  RecordingDialogs();
  ~RecordingDialogs() override;
  void MessageBox(std::string_view text, std::string_view title) override;
};

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_RECORDING_SHELL_H
