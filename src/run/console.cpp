#include "run/console.h"

#include <string>

#include "run/report_page.h"

namespace flanks {
namespace {

constexpr std::int64_t kTickMilliseconds = 5000;
constexpr int kDotsOnLine = 80;
constexpr std::string_view kProblemCaption = "Flanks Problem ...";

}  // namespace

const std::string_view kContactSentence =
    " Please report this failure with your Specification and data files.";

void EndProcess(int exitCode) {
  throw ProcessEnd{exitCode};
}

void Console::ShowLine(std::string_view text) {
  shell_.ShowStatus(text, Emphasis::normal);
}

void Console::ShowFlagged(std::string_view text) {
  shell_.ShowStatus(text, Emphasis::flagged);
}

void Console::WarnLine(std::string_view text) {
  ShowFlagged(text);
  if (report_.fileOpen)
    WriteOutput(text);
  else
    report_.deferredMessages.emplace_back(text);
}

void Console::WriteOutput(std::string_view text) {
  WriteReportLine(*this, text);
}

void Console::ShowAndWrite(std::string_view text) {
  ShowLine(text);
  WriteOutput(text);
}

void Console::ShowPart(std::string_view text) {
  shell_.ShowProgress(text);
}

void Console::ShowMore(std::string_view text) {
  shell_.ShowProgress(text);
}

void Console::TickStart() {
  shell_.ShowProgress(">.");
  lastTick_ = shell_.Milliseconds();
  dotsOnLine_ = 1;
  ticking_ = true;
}

void Console::Tick(std::int64_t count) {
  if (!ticking_) TickStart();
  const std::int64_t now = shell_.Milliseconds();
  if (now - lastTick_ < kTickMilliseconds) return;
  lastTick_ = now;
  YieldToWindow();
  if (dotsOnLine_ < kDotsOnLine) {
    shell_.ShowProgress(".");
    ++dotsOnLine_;
    return;
  }
  shell_.ShowProgress("\n" + std::to_string(count) + ".");
  dotsOnLine_ = 1;
}

void Console::TickEnd() {
  if (!ticking_) return;
  shell_.ShowProgress("<");
  ticking_ = false;
}

bool Console::YieldToWindow() {
  shell_.Pump();
  return stopping();
}

void Console::FailureStop(std::string_view message) {
  dialogs_.MessageBox(std::string(message) + std::string(kContactSentence), kProblemCaption);
  control_.FinishRequested = true;
  control_.StopState = kStopProcess;
}

}  // namespace flanks
