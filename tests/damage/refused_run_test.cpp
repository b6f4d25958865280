// Whole runs on a disk that refuses: every work file of a run follows one plan, from the labels
// list of the Specification to the last pass over the observations.  Wherever the disk gives up,
// the run says so with the file's name, ends with status 1, and leaves no file behind.
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/analysis_run.h"

namespace flanks {
namespace {

constexpr const char* kSpecification =
    "Flanks=2\nModels=\n?,1,RS\n?,?,R2\n*\nRating scale=RS,R2\n0=low\n1=\n2=high\n*\nLabels=\n"
    "1,Persons\n1=Ann\n2=Bob\n3=Cy\n*\n2,Items\n1=i1\n2=i2\n3=i3\n*\nIterations=2\nData=data.txt\n";
constexpr const char* kData = "1,1-3,0,1,1\n2,1-3,1,1,2\n3,1-3,2,1,0\n";

class RefusedRun : public AnalysisRun {
 public:
  // At each look at the clock six seconds have passed, so that the run yields while the
  // Specification is read, and the plan is there before the first work file is.
  explicit RefusedRun(FileFaultPlan& plan) {
    shell.clockStep = 6000;
    shell.ActionAtPump(1, [this, &plan] { analysis.work.plan = &plan; });
    Write("data.txt", kData);
    Analyze(kSpecification);
  }
  // What is wrong with a run that has to say `words`; "" for nothing.
  std::string Complaint(const std::string& words) {
    const std::string screen = Screen();
    analysis = Analysis{};
    for (const std::string& name : folder.names())
      if (name.starts_with("flanks-")) return "left behind: " + name;
    if (exitCode != 1) return "exit status " + std::to_string(exitCode) + "\n" + screen;
    if (screen.find(words) == std::string::npos) return "not told: " + screen;
    return "";
  }
};

// The bytes that a whole run writes into its work files.
std::int64_t BytesOfAWholeRun() {
  FileFaultPlan plan;
  plan.bytesThatFit = 1'000'000;
  const RefusedRun run(plan);
  EXPECT_EQ(run.exitCode, 0) << run.Screen();
  return 1'000'000 - plan.bytesThatFit;
}

TEST(RefusedRun, AFullDiskIsToldAtEveryByte) {
  const std::int64_t bytes = BytesOfAWholeRun();
  // Nine records of 2 and 10 bytes, and the lists of labels, statements and scales.
  ASSERT_GT(bytes, 9 * 12 + 100);
  ASSERT_LT(bytes, 1000);
  for (std::int64_t room = 0; room < bytes; ++room) {
    FileFaultPlan plan;
    plan.bytesThatFit = room;
    RefusedRun run(plan);
    ASSERT_EQ(run.Complaint("File write failure for " + run.folder.folder()), "") << room;
  }
}

TEST(RefusedRun, AFailingReadIsToldWhicheverItIs) {
  int reads = 0;
  for (;; ++reads) {
    FileFaultPlan plan;
    plan.readsThatWork = reads;
    RefusedRun run(plan);
    if (run.exitCode == 0) break;
    ASSERT_EQ(run.Complaint("File read failure for " + run.folder.folder()), "") << reads;
    ASSERT_LT(reads, 1000);
  }
  // Each list once, the labels twice, a block of either file of records.
  EXPECT_GE(reads, 6);
}

// A file that is cut after so many bytes looks so to every reader.
TEST(RefusedRun, FilesThatAreCutAreToldAtEveryByte) {
  int cut = 0;
  for (;; ++cut) {
    FileFaultPlan plan;
    plan.cutAt = cut;
    RefusedRun run(plan);
    if (run.exitCode == 0) break;
    const std::string screen = run.Screen();
    const bool list = screen.find("File read failure for ") != std::string::npos;
    ASSERT_EQ(run.Complaint(list ? "File read failure for " : "Work file problem: "), "") << cut;
    ASSERT_LT(cut, 1000);
  }
  EXPECT_GE(cut, 90) << "nine records of ten bytes are the longest of the binary files";
}

// The first record of a file, made one that was never written, as soon as the data pass has ended.
void ExpectFlippedFileIsTold(BlockedFile WorkFiles::*file) {
  AnalysisRun run;
  bool flipped = false;
  const auto flip = [&] {
    if (flipped || run.Screen().find("Valid responses used") == std::string::npos) return;
    flipped = true;
    (run.analysis.work.*file).file.WriteAt(1, std::vector<std::uint8_t>{0x7F});
  };
  for (int pump = 1; pump < 200; ++pump) run.shell.ActionAtPump(pump, flip);
  run.shell.clockStep = 6000;
  run.Write("data.txt", kData);
  run.Analyze(kSpecification);
  ASSERT_TRUE(flipped);
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_NE(
      run.Screen().find("Work file problem: " + (run.analysis.work.*file).temp.name() + " holds "),
      std::string::npos)
      << run.Screen();
  run.analysis = Analysis{};
  EXPECT_TRUE(run.Leftovers().empty());
}

TEST(RefusedRun, AnAlteredElementFileIsTold) {
  ExpectFlippedFileIsTold(&WorkFiles::elementFile);
}

TEST(RefusedRun, AnAlteredResponseFileIsTold) {
  ExpectFlippedFileIsTold(&WorkFiles::responseFile);
}

}  // namespace
}  // namespace flanks
