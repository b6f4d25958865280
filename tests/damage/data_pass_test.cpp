// The data pass on a disk that fills up: told in a sentence with the file's name, nothing left
// behind.
#include "data/data_pass.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "data/table2.h"
#include "run/guard.h"
#include "support/data_design.h"

namespace flanks {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr int kLines = 30000;  // several blocks of either work file

std::string ManyLines() {
  std::string lines;
  for (int i = 0; i < kLines; ++i) lines += "1,2,3\n";
  return lines;
}

void PrepareRun(DataRun& run) {
  run.Flank({{1, "Ann"}, {2, "Bob"}});
  run.Flank({{1, "i1"}, {2, "i2"}});
  run.Model("?,?,R5");
  run.settings().dataSource = DataSource::file;
  run.settings().dataFile = run.folder.write("d.txt", ManyLines());
  Guarded("WriteTable2Head", run.run, WriteTable2Head);
}

// The names in the folder that are work files.
int WorkFilesIn(const DataRun& run) {
  int count = 0;
  for (const std::string& name : run.folder.names()) count += name.ends_with(".wrk");
  return count;
}

TEST(DataPassDamage, AFullDiskIsToldWithTheNameOfTheFile) {
  // In the first block of one file, of the other, in a later block, in the last flush.
  for (const std::int64_t bytes : {0, 10000, 60000, 130000, 200000, 340000, 359999}) {
    FileFaultPlan plan;
    plan.bytesThatFit = bytes;
    DataRun run;
    run.analysis.work.plan = &plan;
    PrepareRun(run);
    Guarded("ReadData", run.run, ReadData);
    ASSERT_EQ(run.process.control.StopState, kStopProcess) << bytes;
    EXPECT_THAT(run.dialogs.boxes,
                ElementsAre(AllOf(HasSubstr("ReadData failed at "), HasSubstr("File write failure"),
                                  HasSubstr(".wrk: No space left on device"))))
        << bytes;
    EXPECT_EQ(WorkFilesIn(run), 2) << bytes;
    run.analysis.work = WorkFiles{};
    EXPECT_EQ(WorkFilesIn(run), 0) << bytes;
  }
}

TEST(DataPassDamage, ADiskThatHoldsEverythingIsEnough) {
  FileFaultPlan plan;
  plan.bytesThatFit = 30000 * 12;  // ten bytes for a response, one for each element
  DataRun run;
  run.analysis.work.plan = &plan;
  PrepareRun(run);
  Guarded("ReadData", run.run, ReadData);
  EXPECT_EQ(run.process.control.StopState, 0);
  EXPECT_EQ(run.analysis.work.records, kLines);
  EXPECT_EQ(plan.bytesThatFit, 0);
}

}  // namespace
}  // namespace flanks
