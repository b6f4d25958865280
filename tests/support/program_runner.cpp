#include "support/program_runner.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace flanks {
namespace {

using Clock = std::chrono::steady_clock;

[[noreturn]] void ThrowErrno(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

struct Pipe {
  int readEnd = -1, writeEnd = -1;

  Pipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) ThrowErrno("pipe2");
    readEnd = ends[0];
    writeEnd = ends[1];
  }
  ~Pipe() {
    close(readEnd);
    CloseWriteEnd();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  void CloseWriteEnd() {
    if (writeEnd >= 0) close(writeEnd);
    writeEnd = -1;
  }
};

// The texts of a call in the form that exec wants; made before the fork, for behind it nothing
// may allocate.
struct ExecTexts {
  std::vector<std::string> texts;
  std::vector<char*> pointers;

  void Finish() {
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
  }
};

ExecTexts ArgumentsOf(const ProgramCall& call) {
  ExecTexts list;
  list.texts.push_back(call.program);
  list.texts.insert(list.texts.end(), call.arguments.begin(), call.arguments.end());
  list.Finish();
  return list;
}

ExecTexts EnvironmentOf(const ProgramCall& call) {
  ExecTexts list;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string text = *entry;
    if (!call.environment.contains(text.substr(0, text.find('=')))) list.texts.push_back(text);
  }
  for (const auto& [name, value] : call.environment) list.texts.push_back(name + "=" + value);
  list.Finish();
  return list;
}

[[noreturn]] void BecomeProgram(const ProgramCall& call, const ExecTexts& arguments,
                                const ExecTexts& environment, int output, int errors) {
  setpgid(0, 0);
  const int input = open("/dev/null", O_RDONLY);
  dup2(input, STDIN_FILENO);
  dup2(output, STDOUT_FILENO);
  dup2(errors, STDERR_FILENO);
  if (call.fileSizeLimit) {
    const rlimit limit{*call.fileSizeLimit, *call.fileSizeLimit};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);  // a write beyond the limit fails instead of killing
  }
  if (call.memoryLimit) {
    const rlimit limit{*call.memoryLimit, *call.memoryLimit};
    setrlimit(RLIMIT_AS, &limit);
  }
  if (chdir(call.folder.c_str()) == 0)
    execve(call.program.c_str(), arguments.pointers.data(), environment.pointers.data());
  _exit(127);
}

// Appends what waits in the pipe; false at its end.
bool TakeFrom(int readEnd, std::string& text) {
  std::array<char, 65536> buffer;
  const ssize_t count = read(readEnd, buffer.data(), buffer.size());
  if (count > 0) text.append(buffer.data(), static_cast<std::size_t>(count));
  return count > 0 || (count < 0 && errno == EINTR);
}

// Listens to the child until it closes both pipes; kills it when the time is over.
void Listen(const ProgramCall& call, pid_t child, std::array<int, 2> ends, ProgramResult& result) {
  const Clock::time_point deadline = Clock::now() + call.timeLimit;
  bool interrupted = call.interruptAt.empty(), killed = call.killAt.empty();
  while (ends[0] >= 0 || ends[1] >= 0) {
    std::array<pollfd, 2> waits{pollfd{ends[0], POLLIN, 0}, pollfd{ends[1], POLLIN, 0}};
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    const int ready = left <= 0 ? 0 : poll(waits.data(), waits.size(), static_cast<int>(left));
    if (ready < 0 && errno == EINTR) continue;
    if (ready <= 0) {
      result.timedOut = true;
      kill(-child, SIGKILL);
      return;
    }
    if (waits[0].revents != 0 && !TakeFrom(ends[0], result.output)) ends[0] = -1;
    if (waits[1].revents != 0 && !TakeFrom(ends[1], result.errors)) ends[1] = -1;
    if (!interrupted && result.output.find(call.interruptAt) != std::string::npos) {
      interrupted = true;
      kill(child, SIGINT);
    }
    if (!killed && result.output.find(call.killAt) != std::string::npos) {
      killed = true;
      kill(child, SIGKILL);
    }
  }
}

}  // namespace

ProgramResult RunProgram(const ProgramCall& call) {
  const ExecTexts arguments = ArgumentsOf(call), environment = EnvironmentOf(call);
  Pipe output, errors;
  const pid_t child = fork();
  if (child < 0) ThrowErrno("fork");
  if (child == 0) BecomeProgram(call, arguments, environment, output.writeEnd, errors.writeEnd);
  setpgid(child, child);  // in both, so that the group is there whoever comes first
  output.CloseWriteEnd();
  errors.CloseWriteEnd();

  ProgramResult result;
  Listen(call, child, {output.readEnd, errors.readEnd}, result);
  int status = 0;
  rusage usage{};
  while (wait4(child, &status, 0, &usage) < 0)
    if (errno != EINTR) ThrowErrno("wait4");
  if (WIFEXITED(status)) result.exitStatus = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
  result.peakKilobytes = usage.ru_maxrss;
  return result;
}

}  // namespace flanks
