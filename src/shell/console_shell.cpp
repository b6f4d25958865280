#include "shell/console_shell.h"

#include <csignal>
#include <string>
#include <thread>

#include "report/format/box.h"

namespace flanks {
namespace {

volatile std::sig_atomic_t interrupted = 0;

// A closed terminal breaks a run off as Ctrl+C does.
constexpr int kInterrupts[] = {SIGINT, SIGTERM,
#ifdef SIGHUP
                               SIGHUP
#endif
};

// The second signal finds the default action: who presses Ctrl+C twice wants out.
extern "C" void OnInterrupt(int) {
  interrupted = 1;
  ReleaseTerminal();
  for (const int each : kInterrupts) std::signal(each, SIG_DFL);
}

constexpr std::string_view kFlaggedColour = "\x1b[33m";
constexpr std::string_view kPlainColour = "\x1b[0m";
constexpr std::string_view kBell = "\a";
constexpr std::string_view kOverwriteLine = "\r\x1b[K";

bool OverwritesInPlace(std::string_view text) {
  return !text.empty() && text[0] == kBoxColumn;
}

}  // namespace

ConsoleShell::ConsoleShell(RunControl& control, std::FILE* out, bool terminal)
    : Shell(control), out_(out), terminal_(terminal) {}

void ConsoleShell::CatchInterrupts() {
  interrupted = 0;
  for (const int each : kInterrupts) std::signal(each, OnInterrupt);
#ifdef SIGPIPE
  // A reader that has gone away must not end a run whose report goes to a file.
  std::signal(SIGPIPE, SIG_IGN);
#endif
#ifdef SIGXFSZ
  // A file that may not grow further is a write that fails, and is told as such.
  std::signal(SIGXFSZ, SIG_IGN);
#endif
}

void ConsoleShell::DoDeliverEvents() {
  if (interrupted != 0) control_.CancelRequested = true;
  estimating_ = estimating_ || control_.steering != nullptr;
  if (keys_ && estimating_) control_.KeyBuffer += keys_->Take();
}

void ConsoleShell::DoWait(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void ConsoleShell::Print(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), out_);
}

void ConsoleShell::EndOpenLine() {
  if (lineOpen_) Print("\n");
  lineOpen_ = false;
}

void ConsoleShell::DoShowStatus(std::string_view text, Emphasis emphasis) {
  const std::string shown = terminal_ ? BoxToUtf8(text) : BoxToAscii(text);
  if (terminal_ && OverwritesInPlace(text)) {
    Print(kOverwriteLine);
    Print(shown);
    lineOpen_ = true;
  } else {
    EndOpenLine();
    const bool coloured = terminal_ && emphasis == Emphasis::flagged;
    if (coloured) Print(kFlaggedColour);
    Print(shown);
    if (coloured) Print(kPlainColour);
    Print("\n");
  }
  std::fflush(out_);
}

void ConsoleShell::DoAppendOutput(std::string_view line) {
  EndOpenLine();
  Print(terminal_ ? BoxToUtf8(line) : BoxToAscii(line));
  Print("\n");
}

void ConsoleShell::DoShowProgress(std::string_view piece) {
  Print(piece);
  if (piece != kBell) {  // which takes no place
    lineOpen_ = piece.empty() ? lineOpen_ : piece.back() != '<';
    if (!lineOpen_) Print("\n");
  }
  std::fflush(out_);
}

// A terminal shows no editor.
void ConsoleShell::DoEditFile(const std::string&, ViewAt, std::string_view) {}

std::int64_t ConsoleShell::DoMilliseconds() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                               start_)
      .count();
}

void ConsoleDialogs::MessageBox(std::string_view text, std::string_view title) {
  shell_.ShowStatus(
      title.empty() ? std::string(text) : std::string(title) + ": " + std::string(text),
      Emphasis::flagged);
}

}  // namespace flanks
