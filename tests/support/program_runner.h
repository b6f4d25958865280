// Runs a program as a child process and keeps all that it does: what it writes, how it ends, and
// the most memory it used.  Golden, property and damage tests and the checks of memory use it.
//
// The child reads an empty standard input, has a process group of its own, and is killed with all
// its children when the time limit is over, so that no test hangs.
//
// Tested by tests/reports/harness_test.cpp.

#ifndef FLANKS_TESTS_SUPPORT_PROGRAM_RUNNER_H
#define FLANKS_TESTS_SUPPORT_PROGRAM_RUNNER_H

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace flanks {

struct ProgramCall {
  std::string program;                             // path of the executable
  std::vector<std::string> arguments;              // without the program's own name
  std::filesystem::path folder = ".";              // the child's current folder
  std::map<std::string, std::string> environment;  // added to ours, or in place of it
  std::chrono::milliseconds timeLimit{60'000};     // for the whole run
  std::string interruptAt;  // Ctrl+C as soon as standard output holds this text; empty: never
  std::string killAt;       // the same with SIGKILL, of which the child hears nothing
  std::optional<std::uint64_t> fileSizeLimit;  // bytes; a longer write fails, as on a full disk
  // Bytes of address space: what asks for more gets none.  Not for a program under the address
  // sanitizer.  Unlike the peak it does not depend on the size of the process that calls.
  std::optional<std::uint64_t> memoryLimit;
};

struct ProgramResult {
  int exitStatus = -1;  // -1 when a signal ended the program
  int signal = 0;       // the signal that ended it, 0 for an ordinary end
  bool timedOut = false;
  std::string output, errors;  // standard output and standard error
  std::int64_t peakKilobytes = 0;
};

// Throws std::system_error when no child can be made; a program that cannot be started is
// exit status 127.
ProgramResult RunProgram(const ProgramCall& call);

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_PROGRAM_RUNNER_H
