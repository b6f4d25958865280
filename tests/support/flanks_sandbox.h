// A fresh folder in which one run of the console program reads and writes, and nothing else:
//
//   run/        the current folder of the run: Specification, data, report
//   temporary/  TMPDIR: where the work files go, and empty again behind every run
//   home/       HOME; FLANKS_INI names an empty file beside it
//
// The sanitizers of the checked program end with exit status 99, which the program itself never
// uses.  All is removed when the sandbox goes.

#ifndef FLANKS_TESTS_SUPPORT_FLANKS_SANDBOX_H
#define FLANKS_TESTS_SUPPORT_FLANKS_SANDBOX_H

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "support/program_runner.h"

namespace flanks {

constexpr int kSanitizerExitStatus = 99;

class FlanksSandbox {
 public:
  FlanksSandbox();
  ~FlanksSandbox();
  FlanksSandbox(const FlanksSandbox&) = delete;
  FlanksSandbox& operator=(const FlanksSandbox&) = delete;

  // Files of the current folder, named from there.
  void Write(const std::string& name, std::string_view contents) const;
  void CopyIn(const std::filesystem::path& file) const;
  std::string Read(const std::string& name) const;  // empty when there is none
  std::vector<std::string> Files() const;           // sorted
  std::vector<std::string> TemporaryFiles() const;  // what is left in TMPDIR

  const std::filesystem::path& Top() const { return top_; }

  // A call of `program` (FLANKS_PROGRAM or FLANKS_CHECKED_PROGRAM) in here, to be changed at will.
  ProgramCall Call(const std::string& program, std::vector<std::string> arguments) const;

 private:
  std::filesystem::path top_;
};

// The whole file as it stands; throws std::runtime_error when it cannot be read.
std::string ReadWholeFile(const std::filesystem::path& file);
void WriteWholeFile(const std::filesystem::path& file, std::string_view contents);

// The ordinary files below `folder`, named from there, sorted.
std::vector<std::string> FilesBelow(const std::filesystem::path& folder);

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_FLANKS_SANDBOX_H
