// Runs every case below tests/reports/ on the console program and on the checked one (sanitizers),
// and compares the answer to the byte.  support/golden_case.h tells what a case holds.
//
// With FLANKS_REWRITE_GOLDEN set (target rewrite_golden), the answers of the console program take
// the place of the expected files, and the test passes; the commit is to say why they are right.

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <tuple>

#include "support/golden_case.h"

namespace flanks {
namespace {

const std::filesystem::path kCases = std::filesystem::path(FLANKS_SOURCE_DIR) / "tests/reports";

struct Program {
  const char* name;
  const char* path;
};
// The word for a program in the names of the tests.
[[maybe_unused]] void PrintTo(const Program& program, std::ostream* out) {
  *out << program.name;
}

constexpr Program kPlain{"plain", FLANKS_PROGRAM}, kChecked{"checked", FLANKS_CHECKED_PROGRAM};

class Golden : public ::testing::TestWithParam<std::tuple<std::string, Program>> {};

TEST_P(Golden, AnswersAsExpected) {
  const auto& [name, program] = GetParam();
  const GoldenCase golden = ReadGoldenCase(kCases / name);
  const GoldenAnswer answer = RunGoldenCase(golden, program.path);
  if (std::getenv("FLANKS_REWRITE_GOLDEN") != nullptr && program.path == kPlain.path)
    RewriteExpected(golden, answer);
  for (const std::string& fault : FaultsOf(golden, answer)) ADD_FAILURE() << name << ": " << fault;
}

INSTANTIATE_TEST_SUITE_P(Reports, Golden,
                         ::testing::Combine(::testing::ValuesIn(GoldenCaseNames(kCases)),
                                            ::testing::Values(kPlain, kChecked)),
                         [](const auto& tested) {
                           std::string name = std::get<0>(tested.param);
                           for (char& c : name)
                             if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
                           return name + "_" + std::get<1>(tested.param).name;
                         });

}  // namespace
}  // namespace flanks
