#include "spec/not_written.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "spec/label_loader.h"
#include "spec/models.h"
#include "support/analysis_run.h"
#include "support/spec_run.h"

namespace flanks {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

std::vector<std::string> NotWrittenBy(const std::string& lines) {
  SpecRun test;
  test.Read("Flanks=2\n" + lines + "\n");
  EXPECT_EQ(test.fault(), Fault::none) << test.FaultText();
  return NotWritten(test.analysis);
}

struct AskedCase {
  std::string lines;
  std::string what;
};

TEST(NotWritten, IsToldByName) {
  const AskedCase cases[] = {
      {"Zscore=1", "The set of bias Tables, 9 to 14 (B in Models=, Zscore=),"},
      {"Tables=00000000000001", "The set of bias Tables, 9 to 14 (B in Models=, Zscore=),"},
  };
  for (const AskedCase& c : cases)
    EXPECT_THAT(NotWrittenBy(c.lines),
                ElementsAre(c.what + " is not written by this version of Flanks."))
        << c.lines;
}

TEST(NotWritten, SaysNothingOfWhatNobodyAskedFor) {
  for (const std::string lines :
       {"", "Tables=Y", "Tables=1", "Tables=0", "Anchorfile=", "Output=o.txt", "Inter-rater=2",
        "Subsets=N", "Subsets=List", "Vertical=1*", "Pt-biserial=Y", "Vertical=N",
        "Tables=1110\nT4MAX=5", "CSV=T\nQM=D\nHL=N",
        "Scorefile=s.xls\nGraphfile=g.txt\nResidualfile=r.txt"})
    EXPECT_THAT(NotWrittenBy(lines), IsEmpty()) << lines;
  EXPECT_THAT(NotWrittenBy("Tables=11111111111111"), SizeIs(1));
}

TEST(NotWritten, IsAskedByTheDesignAsWell) {
  const std::string labels = "Labels=\n1,A\n1=a\n*\n2,B\n1=b\n*\n";
  for (const std::string tables : {"", "Tables=1\n"}) {
    SpecRun test;
    test.Read("Flanks=2\n" + tables + "Models=?B,?B,R\n*\n" + labels);
    test.Do({BuildModelTable, LoadLabels});
    std::vector<std::string> expected;
    if (tables.empty())
      expected = {
          "The set of bias Tables, 9 to 14 (B in Models=, Zscore=), is not written by this version "
          "of Flanks."};
    EXPECT_EQ(NotWritten(test.analysis), expected);
  }
}

TEST(NotWritten, IsOnTheScreenAndNotInTheReport) {
  AnalysisRun run;
  ASSERT_EQ(run.Analyze("Flanks=2\nModels=?,?,R5\nLabels=\n1,Persons\n1=Ann\n2=Bob\n3=Cy\n*\n"
                        "2,Items\n1=i1\n2=i2\n*\nData=\n1,1,3\n1,2,4\n2,1,1\n2,2,2\n3,1,2\n3,2,4\n",
                        "Zscore=1"),
            0)
      << run.Screen();
  EXPECT_THAT(run.Screen(),
              HasSubstr("bias Tables, 9 to 14 (B in Models=, Zscore=), is not written by this "
                        "version of Flanks.\nTable 6.0"));
  EXPECT_THAT(run.Report(), AllOf(HasSubstr("Table 7.1.1"), Not(HasSubstr("not written"))));
}

}  // namespace
}  // namespace flanks
