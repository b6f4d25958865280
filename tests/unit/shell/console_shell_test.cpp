#include "shell/console_shell.h"

#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>

#include "report/format/box.h"

namespace flanks {
namespace {

// What a shell prints, in a pipe or on a terminal.
struct Printed {
  RunControl control;
  std::FILE* out = std::tmpfile();
  ConsoleShell shell;

  explicit Printed(bool terminal) : shell(control, out, terminal) {}
  ~Printed() { std::fclose(out); }
  std::string Text() {
    std::rewind(out);
    std::string text;
    for (int c = std::fgetc(out); c != EOF; c = std::fgetc(out)) text += static_cast<char>(c);
    return text;
  }
};

const std::string kBoxed = std::string(1, kBoxColumn) + " JMLE" + kBoxColumn;

TEST(ConsoleShell, InAPipeEverythingIsPlainLines) {
  Printed printed(false);
  printed.shell.ShowStatus("one");
  printed.shell.ShowStatus("attention", Emphasis::flagged);
  printed.shell.ShowStatus(kBoxed);
  printed.shell.AppendOutput(kBoxed);
  EXPECT_EQ(printed.Text(), "one\nattention\n| JMLE|\n| JMLE|\n");
}

TEST(ConsoleShell, AProgressBarEndsItsLine) {
  Printed printed(false);
  printed.shell.ShowProgress(">.");
  printed.shell.ShowProgress(".");
  printed.shell.ShowProgress("<");
  printed.shell.ShowStatus("next");
  EXPECT_EQ(printed.Text(), ">..<\nnext\n");
}

TEST(ConsoleShell, AMessageInABarBeginsItsOwnLine) {
  Printed printed(false);
  printed.shell.ShowProgress(">.");
  printed.shell.ShowStatus("message");
  EXPECT_EQ(printed.Text(), ">.\nmessage\n");
}

TEST(ConsoleShell, OnATerminalIterationLinesOverwriteEachOther) {
  Printed printed(true);
  printed.shell.ShowStatus(kBoxed);
  printed.shell.ShowStatus(kBoxed);
  printed.shell.ShowStatus("done");
  const std::string line = "\r\x1b[K\xE2\x94\x82 JMLE\xE2\x94\x82";
  EXPECT_EQ(printed.Text(), line + line + "\ndone\n");
}

TEST(ConsoleShell, OnATerminalMessagesThatNeedAttentionAreColoured) {
  Printed printed(true);
  printed.shell.ShowStatus("attention", Emphasis::flagged);
  EXPECT_EQ(printed.Text(), "\x1b[33mattention\x1b[0m\n");
}

TEST(ConsoleShell, AnInterruptAsksTheRunToBreakOff) {
  Printed printed(false);
  ConsoleShell::CatchInterrupts();
  printed.shell.Pump();
  EXPECT_FALSE(printed.control.CancelRequested);
  std::raise(SIGINT);
  printed.shell.Pump();
  EXPECT_TRUE(printed.control.CancelRequested);
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGTERM, SIG_DFL);
}

TEST(ConsoleDialogs, AMessageBoxIsALine) {
  Printed printed(false);
  ConsoleDialogs dialogs(printed.shell);
  dialogs.MessageBox("text", "");
  dialogs.MessageBox("text", "Flanks Problem ...");
  EXPECT_EQ(printed.Text(), "text\nFlanks Problem ...: text\n");
}

}  // namespace
}  // namespace flanks
