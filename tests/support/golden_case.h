// A golden case: a folder below tests/reports/ with an input, a command line and all that the
// program must answer, to the byte.
//
//   case.txt      what the case shows, its command line, its exit status (below)
//   *             every other file is copied into the current folder of the run
//   expected/     screen.txt: standard output; every other file: the file of that name that the
//                 run leaves.  A file that the run leaves and that is not expected is a fault,
//                 and so is a work file left behind or a word on standard error.
//
// Lines of case.txt, each "word: value"; ";" begins a comment line:
//
//   use: PATH     a file of the project, copied as well: examples/painters/painters.txt
//   run: ARGUMENTS   separated by blanks; "double quotes" hold blanks together
//   exit: NUMBER  the exit status; 0 when there is no such line
//   mask: REGEX => TEXT   what changes from run to run, beside the masks that hold for all cases:
//                 the version, the date, the time, the run's length and its folders
//   cut: FROM => TO   of each file all between the first FROM and the next TO: fixed texts of the
//                 program that tests of their own look at, and that several files would repeat
//
// The expected files are the developers' word, not the program's: they are rewritten by the
// target `rewrite_golden` alone, and the commit says why the new ones are right.

#ifndef FLANKS_TESTS_SUPPORT_GOLDEN_CASE_H
#define FLANKS_TESTS_SUPPORT_GOLDEN_CASE_H

#include <filesystem>
#include <map>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "support/flanks_sandbox.h"

namespace flanks {

struct GoldenCase {
  std::filesystem::path folder;
  std::vector<std::filesystem::path> inputs;
  std::vector<std::string> arguments;
  int exitStatus = 0;
  std::vector<std::pair<std::regex, std::string>> masks;
  std::vector<std::pair<std::string, std::string>> cuts;  // from, to
};

// File name and contents, masked.
using GoldenFiles = std::map<std::string, std::string>;

// What a run of a case did.
struct GoldenAnswer {
  ProgramResult result;
  GoldenFiles files;  // screen.txt and what the run left in its folder
  std::vector<std::string> temporaryFiles;
};

// The names of the folders below `folder` that hold a case.txt, sorted.
std::vector<std::string> GoldenCaseNames(const std::filesystem::path& folder);

// Throws std::runtime_error with file and line when case.txt cannot be understood.
GoldenCase ReadGoldenCase(const std::filesystem::path& folder);

GoldenAnswer RunGoldenCase(const GoldenCase& golden, const std::string& program);

// Every way in which the answer is not the expected one, each in words; none when it is.
std::vector<std::string> FaultsOf(const GoldenCase& golden, const GoldenAnswer& answer);

// Puts the answer's files in place of the expected ones.
void RewriteExpected(const GoldenCase& golden, const GoldenAnswer& answer);

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_GOLDEN_CASE_H
