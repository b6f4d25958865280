// Keys on a terminal: the program runs as a job of its own on a pseudo-terminal, with a parent
// that lives on, as below a shell.  The terminal's mode is read from the other end.
#include <chrono>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <poll.h>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include "support/flanks_sandbox.h"

namespace flanks {
namespace {

// 600 persons give 20 items 179,700 pairs each: Table 14 lasts until somebody ends it.
constexpr const char* kLongTable =
    "Flanks=2\nModels=?B,?B,R4\nTables=00000000000001\nSubsets=No\nLabels=\n1,Persons\n"
    "1-600=p\n*\n2,Items\n1-20=i\n*\nData=";
std::string Responses() {
  std::string text;
  for (int person = 1; person <= 600; ++person)
    for (int item = 1; item <= 20; ++item)
      text += std::to_string(person) + "," + std::to_string(item) + "," +
              std::to_string((person * 7 + item * 5 + person * item % 11) % 5) + "\n";
  return text;
}
std::string LongTable() {
  return kLongTable + ("\n" + Responses());
}

// The report in a pipe, whose reader shows it on the terminal.
enum class Output : std::uint8_t { onTerminal, piped };

class Job {
 public:
  // In front on a terminal of its own, with `sandbox` for its files.
  Job(const FlanksSandbox& sandbox, const std::string& specification,
      Output output = Output::onTerminal) {
    sandbox.Write("spec.txt", specification);
    Start(sandbox, "spec.txt", output);
  }
  // The Specification is typed.
  explicit Job(const FlanksSandbox& sandbox) { Start(sandbox, "/dev/stdin", Output::onTerminal); }
  ~Job() {
    if (!ended_) kill(-tcgetpgrp(terminal_), SIGKILL);
    WaitFor([this] { return ended_; });
    close(terminal_);
  }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  void Press(const std::string& keys) {
    EXPECT_EQ(write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }
  void Continue() { kill(-tcgetpgrp(terminal_), SIGCONT); }
  bool WaitForText(const std::string& text) {
    return WaitFor([&] { return shown_.find(text) != std::string::npos; });
  }
  bool WaitForMode(bool ofLines) {
    return WaitFor([&] { return OfLines() == ofLines; });
  }
  bool WaitForEnd() {
    return WaitFor([this] { return ended_; });
  }
  bool OfLines() const {
    termios mode = {};
    tcgetattr(terminal_, &mode);
    return (mode.c_lflag & ICANON) != 0 && (mode.c_lflag & ECHO) != 0;
  }
  const std::string& Shown() const { return shown_; }
  int exitStatus() const { return exitStatus_; }

 private:
  void Start(const FlanksSandbox& sandbox, const char* name, Output output) {
    const std::string folder = (sandbox.Top() / "run").string();
    const std::string temporary = (sandbox.Top() / "temporary").string();
    parent_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
    if (parent_ == 0) BeParent(folder, temporary, name, output);
    EXPECT_GT(parent_, 0);
  }
  // The parent waits and passes the job's exit status on: 128 and the signal, when one ended it.
  [[noreturn]] static void BeParent(const std::string& folder, const std::string& temporary,
                                    const char* name, Output output) {
    signal(SIGTTOU, SIG_IGN);
    const pid_t job = fork();
    if (job == 0) {
      setpgid(0, 0);
      tcsetpgrp(STDIN_FILENO, getpgrp());
      signal(SIGTTOU, SIG_DFL);
      setenv("TMPDIR", temporary.c_str(), 1);
      if (output == Output::piped) TakeOutputFromTerminal();
      if (chdir(folder.c_str()) == 0)
        execl(FLANKS_PROGRAM, FLANKS_PROGRAM, name, "report.txt", nullptr);
      _exit(127);
    }
    int status = 0;
    waitpid(job, &status, 0);
    _exit(WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
  }

  static void TakeOutputFromTerminal() {
    int ends[2];
    if (pipe(ends) != 0) _exit(126);
    const bool isReader = fork() == 0;
    dup2(ends[isReader ? 0 : 1], isReader ? STDIN_FILENO : STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
    if (isReader) execlp("cat", "cat", nullptr);
  }

  void Read() {
    pollfd wait = {terminal_, POLLIN, 0};
    char text[4096];
    if (poll(&wait, 1, 5) <= 0) return;
    const ssize_t count = read(terminal_, text, sizeof text);
    if (count > 0) shown_.append(text, static_cast<std::size_t>(count));
  }
  bool WaitFor(const std::function<bool()>& happened) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < end) {
      Read();
      if (happened()) return true;
      int status = 0;
      if (ended_ || waitpid(parent_, &status, WNOHANG) != parent_) continue;
      ended_ = true;
      exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      for (int rest = 0; rest < 20; ++rest) Read();
      if (happened()) return true;
    }
    return false;
  }

  int terminal_ = -1;
  pid_t parent_ = -1;
  std::string shown_;
  bool ended_ = false;
  int exitStatus_ = -1;
};

constexpr const char* kInTable14 = "Press Ctrl+F to exit from Table 14";

TEST(TerminalKeys, CtrlFEndsTable14AndTheTerminalIsAsBefore) {
  FlanksSandbox sandbox;
  Job job(sandbox, LongTable());
  EXPECT_TRUE(job.OfLines());
  ASSERT_TRUE(job.WaitForText(kInTable14)) << job.Shown();
  EXPECT_FALSE(job.OfLines());
  job.Press("\x06");
  ASSERT_TRUE(job.WaitForText("< Cancelled")) << job.Shown();
  ASSERT_TRUE(job.WaitForEnd());
  EXPECT_EQ(job.exitStatus(), 0) << job.Shown();
  EXPECT_NE(job.Shown().find("Analyzed in time of "), std::string::npos) << "the run goes on";
  EXPECT_EQ(job.Shown().find("^F"), std::string::npos) << "keys are not shown";
  EXPECT_TRUE(job.OfLines());
}

TEST(TerminalKeys, WhileARunIsStoppedTheTerminalIsAsBefore) {
  FlanksSandbox sandbox;
  Job job(sandbox, LongTable());
  ASSERT_TRUE(job.WaitForText(kInTable14)) << job.Shown();
  job.Press("\x1a");
  ASSERT_TRUE(job.WaitForMode(true));
  job.Continue();
  ASSERT_TRUE(job.WaitForMode(false));
  job.Press("\x06");
  EXPECT_TRUE(job.WaitForText("< Cancelled")) << job.Shown();
  ASSERT_TRUE(job.WaitForEnd());
  EXPECT_TRUE(job.OfLines());
}

TEST(TerminalKeys, HoweverARunEndsTheTerminalIsAsBefore) {
  const std::string keys[] = {"\x03", "\x1c"};  // Ctrl+C, and Ctrl+\ which ends without a word
  const int status[] = {51, 128 + SIGQUIT};
  for (int i = 0; i < 2; ++i) {
    FlanksSandbox sandbox;
    Job job(sandbox, LongTable());
    ASSERT_TRUE(job.WaitForText(kInTable14)) << job.Shown();
    EXPECT_FALSE(job.OfLines());
    job.Press(keys[i]);
    ASSERT_TRUE(job.WaitForEnd());
    EXPECT_EQ(job.exitStatus(), status[i]) << job.Shown();
    EXPECT_TRUE(job.OfLines());
  }
}

TEST(TerminalKeys, WithAReportInAPipeTheTerminalIsLeftAlone) {
  FlanksSandbox sandbox;
  Job job(sandbox, LongTable(), Output::piped);
  ASSERT_TRUE(job.WaitForText("Table 14")) << job.Shown();
  EXPECT_TRUE(job.OfLines());
  job.Press("\x03");
  ASSERT_TRUE(job.WaitForEnd());
  EXPECT_EQ(job.exitStatus(), 51) << job.Shown();
}

// Until the iterations begin the terminal collects and shows lines; then it has keys.
TEST(TerminalKeys, ASpecificationMayBeTyped) {
  FlanksSandbox sandbox;
  sandbox.Write("data.txt", Responses());
  Job job(sandbox);
  job.Press(kLongTable + std::string("data.txt\n\x04"));
  ASSERT_TRUE(job.WaitForText(kInTable14)) << job.Shown();
  EXPECT_NE(job.Shown().find("\n1-600=p\r\n"), std::string::npos) << job.Shown();
  EXPECT_FALSE(job.OfLines());
  job.Press("\x06");
  ASSERT_TRUE(job.WaitForText("< Cancelled")) << job.Shown();
  ASSERT_TRUE(job.WaitForEnd());
  EXPECT_EQ(job.exitStatus(), 0) << job.Shown();
}

constexpr const char* kTwoItems =
    "Flanks=2\nModels=?,?,R3\nLabels=\n1,Persons\n1-4=p\n*\n2,Items\n1-2=i\n*\nData=";
constexpr const char* kEightResponses = "1,1-2,0,1\n2,1-2,1,2\n3,1-2,2,2\n4,1-2,1,3\n";

// Behind the Specification itself, and in a file of their own.
TEST(TerminalKeys, DataMayBeTyped) {
  for (const bool inOne : {true, false}) {
    FlanksSandbox sandbox;
    const std::unique_ptr<Job> job =
        inOne ? std::make_unique<Job>(sandbox)
              : std::make_unique<Job>(sandbox, kTwoItems + std::string("/dev/tty\n"));
    if (inOne) job->Press(kTwoItems + std::string("\n"));
    job->Press(kEightResponses + std::string("\x04"));
    ASSERT_TRUE(job->WaitForEnd()) << job->Shown();
    EXPECT_EQ(job->exitStatus(), 0) << job->Shown();
    EXPECT_NE(sandbox.Read("report.txt").find("Estimable observations"), std::string::npos);
    EXPECT_NE(job->Shown().find("4,1-2,1,3\r\n"), std::string::npos) << job->Shown();
    EXPECT_TRUE(job->OfLines());
  }
}

}  // namespace
}  // namespace flanks
