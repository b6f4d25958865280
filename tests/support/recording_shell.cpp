#include "support/recording_shell.h"

#include <utility>

namespace flanks {

RecordingShell::RecordingShell(RunControl& control) : Shell(control) {}
RecordingShell::~RecordingShell() = default;

void RecordingShell::KeysAtPump(int number, const std::string& keys) {
  ActionAtPump(number, [this, keys] { control_.KeyBuffer += keys; });
}

void RecordingShell::ActionAtPump(int number, std::function<void()> action) {
  actions_.emplace(number, std::move(action));
}

std::string RecordingShell::Screen() const {
  std::string all;
  for (const Status& status : statuses) all += status.text + "\n";
  return all;
}

void RecordingShell::DoDeliverEvents() {
  ++pumps;
  const auto range = actions_.equal_range(pumps);
  for (auto it = range.first; it != range.second; ++it) it->second();
}

void RecordingShell::DoWait(int milliseconds) {
  clock += milliseconds;
}

void RecordingShell::DoShowStatus(std::string_view text, Emphasis emphasis) {
  statuses.push_back({std::string(text), emphasis});
}

void RecordingShell::DoAppendOutput(std::string_view line) {
  output.emplace_back(line);
}

void RecordingShell::DoShowProgress(std::string_view piece) {
  progress += piece;
}

void RecordingShell::DoEditFile(const std::string&, ViewAt, std::string_view) {}

std::int64_t RecordingShell::DoMilliseconds() {
  return clock += clockStep;
}

RecordingDialogs::RecordingDialogs() = default;
RecordingDialogs::~RecordingDialogs() = default;

void RecordingDialogs::MessageBox(std::string_view text, std::string_view title) {
  boxes.push_back(std::string(title) + ": " + std::string(text));
}

}  // namespace flanks
