// Shell: what is the same in every shell.  Pause, keys and the request to stop are run logic.
#include <algorithm>

#include "run/shell_interface.h"

namespace flanks {
namespace {

constexpr int kPauseWaitMilliseconds = 100;
constexpr char kKeyCtrlF = '\x06';
constexpr char kKeyCtrlG = '\x07';

void Faster(IterationControl& steering) {
  if (steering.NewtonValue == 0.0f)
    steering.SpeedFactor *= 1.5f;
  else
    steering.NewtonValue = std::min(steering.NewtonValue * 1.1f, kLargestNewton);
}

void Slower(IterationControl& steering) {
  if (steering.NewtonValue == 0.0f)
    steering.SpeedFactor *= 0.75f;
  else
    steering.NewtonValue *= 0.9f;
}

}  // namespace

void Shell::Pump() {
  if (pumping_) return;
  pumping_ = true;
  DoDeliverEvents();
  while (control_.PauseRequested && !IsStopping(control_) && !control_.CancelRequested) {
    DoWait(kPauseWaitMilliseconds);
    DoDeliverEvents();
  }
  TakeKeys();
  pumping_ = false;
}

void Shell::TakeKeys() {
  if (control_.KeyBuffer.empty()) return;
  std::string keys;
  keys.swap(control_.KeyBuffer);
  for (const char key : keys) {
    if (key == kKeyCtrlF) control_.FinishRequested = true;
    if (control_.steering == nullptr) continue;
    if (key == kKeyCtrlG) {
      control_.steering->IterationLimit = 0;
      DoShowStatus(" Iter=0", Emphasis::normal);
    }
    if (!control_.steering->iterating) continue;
    if (key == '+') Faster(*control_.steering);
    if (key == '-') Slower(*control_.steering);
  }
}

void Shell::ShowStatus(std::string_view text, Emphasis emphasis) {
  Pump();
  DoShowStatus(text, emphasis);
}

void Shell::AppendOutput(std::string_view line) {
  DoAppendOutput(line);
}

void Shell::ShowProgress(std::string_view piece) {
  DoShowProgress(piece);
}

void Shell::EditFile(const std::string& name, ViewAt position, std::string_view caption) {
  DoEditFile(name, position, caption);
}

void Shell::SetCaption(std::string_view caption) {
  DoSetCaption(caption);
}

std::string Dialogs::AskFileName(std::string_view, std::string_view, const std::string&) {
  return {};
}

// Nobody is there: as if the box had been left with OK and no text.
bool Dialogs::AskExtraSpecifications(std::string&) {
  return true;
}

void Dialogs::MessageBox(std::string_view, std::string_view) {}

bool Launcher::Open(const std::string&) {
  return false;
}

}  // namespace flanks
