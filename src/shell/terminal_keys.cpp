#include "shell/terminal_keys.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <termios.h>
#include <unistd.h>

namespace flanks {
namespace {

// What a signal handler must reach: which terminal is ours (-1: none) and how it was before.
// `formerMode` is complete before `modeIsOurs` says so.
volatile std::sig_atomic_t ourTerminal = -1;
volatile std::sig_atomic_t modeIsOurs = 0;
termios formerMode;

constexpr int kEndings[] = {SIGQUIT, SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL};

bool InFront(int terminal) {
  return tcgetpgrp(terminal) == getpgrp();
}

// A shell that has taken the terminal back has also set it as it likes.
void RestoreMode() {
  if (ourTerminal < 0 || modeIsOurs == 0) return;
  modeIsOurs = 0;
  if (InFront(ourTerminal)) tcsetattr(ourTerminal, TCSANOW, &formerMode);
}

void TakeMode(int terminal) {
  if (tcgetattr(terminal, &formerMode) != 0) return;
  termios mode = formerMode;
  mode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  mode.c_cc[VMIN] = 0;
  mode.c_cc[VTIME] = 0;
  modeIsOurs = tcsetattr(terminal, TCSANOW, &mode) == 0 ? 1 : 0;
}

void Install(int signal, void (*handler)(int), int flags) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

// The default action has come back with SA_RESETHAND, and is taken when the handler returns.
extern "C" void OnEnding(int signal) {
  RestoreMode();
  raise(signal);
}

// Ctrl+Z: stops here, with the terminal as it was; behind `raise` the run has been continued.
extern "C" void OnStop(int signal) {
  const int error = errno;
  RestoreMode();
  Install(signal, SIG_DFL, 0);
  sigset_t alone;
  sigemptyset(&alone);
  sigaddset(&alone, signal);
  raise(signal);
  sigprocmask(SIG_UNBLOCK, &alone, nullptr);
  Install(signal, OnStop, SA_RESTART);
  errno = error;
}

// Handlers of others, and signals that whoever started the program wants ignored, stay.
void InstallIfUnused(int signal, void (*handler)(int), int flags) {
  struct sigaction former = {};
  sigaction(signal, nullptr, &former);
  if (former.sa_handler == SIG_DFL) Install(signal, handler, flags);
}

void GiveBack(int signal, void (*handler)(int)) {
  struct sigaction former = {};
  sigaction(signal, nullptr, &former);
  if (former.sa_handler == handler) Install(signal, SIG_DFL, 0);
}

}  // namespace

void ReleaseTerminal() {
  RestoreMode();
  ourTerminal = -1;
}

TerminalKeys::TerminalKeys(int descriptor) : descriptor_(descriptor) {
  if (isatty(descriptor) == 0) return;
  ourTerminal = descriptor;
  for (const int each : kEndings) InstallIfUnused(each, OnEnding, static_cast<int>(SA_RESETHAND));
  InstallIfUnused(SIGTSTP, OnStop, SA_RESTART);
  std::atexit(ReleaseTerminal);
}

TerminalKeys::~TerminalKeys() {
  ReleaseTerminal();
  for (const int each : kEndings) GiveBack(each, OnEnding);
  GiveBack(SIGTSTP, OnStop);
}

bool TerminalKeys::HasKeys() {
  if (ourTerminal < 0 || ourTerminal != descriptor_ || !InFront(descriptor_)) return false;
  if (modeIsOurs == 0) TakeMode(descriptor_);
  return modeIsOurs != 0;
}

std::string TerminalKeys::Take() {
  std::array<char, 64> keys;
  if (!HasKeys()) return {};
  const ssize_t count = read(descriptor_, keys.data(), keys.size());
  return count > 0 ? std::string(keys.data(), static_cast<std::size_t>(count)) : std::string();
}

}  // namespace flanks
