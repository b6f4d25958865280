// Agreement of raters keeps all ratings in memory.  Where there is not enough of it, the run says
// so and goes on without.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/program_runner.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr int kPersons = 1000, kRaters = 500;  // 500,000 ratings, 32 bytes each
constexpr std::uint64_t kMegabyte = 1 << 20;

std::string Specification() {
  return "Flanks=2\nModels=?,?,R2\nIterations=1\nArrange=2N\nLabels=\n1,Persons\n1-1000\n*\n"
         "2,Raters\n1-500\n*\nData=data.txt\n";
}

std::string Data() {
  std::string lines;
  for (int person = 1; person <= kPersons; ++person) {
    lines += std::to_string(person) + ",1-500";
    for (int rater = 1; rater <= kRaters; ++rater)
      lines += "," + std::to_string((person * 7 + rater * 5) % 3);
    lines += "\n";
  }
  return lines;
}

TEST(AgreementMemory, ARunThatCannotHoldTheRatingsGoesOnWithoutAgreement) {
  const ScratchFolder folder;
  folder.write("data.txt", Data());
  folder.write("spec.txt", Specification());
  ProgramCall call;
  call.program = FLANKS_PROGRAM;
  call.arguments = {"spec.txt", "report.txt"};
  call.folder = folder.file("");
  // The least memory, to four megabytes, in which the run comes through without agreement.
  ProgramResult result;
  std::uint64_t megabytes = 4;
  do {
    megabytes += 4;
    call.memoryLimit = megabytes * kMegabyte;
    result = RunProgram(call);
  } while (result.exitStatus != 0 && megabytes < 400);
  ASSERT_EQ(result.exitStatus, 0) << result.output;

  call.arguments.emplace_back("Inter-rater=2");
  result = RunProgram(call);
  EXPECT_EQ(result.exitStatus, 0) << result.output;
  const std::string words = "Interrater=0 ; not enough allocatable memory available for 500000";
  EXPECT_THAT(result.output, HasSubstr(words));
  const std::string report = folder.read("report.txt");
  EXPECT_THAT(report, HasSubstr(words));
  EXPECT_THAT(report, HasSubstr("Table 7.2.1"));
  EXPECT_THAT(report, Not(HasSubstr("Exact Agree.")));
  EXPECT_THAT(report, Not(HasSubstr("(not inter-rater)")));
}

}  // namespace
}  // namespace flanks
