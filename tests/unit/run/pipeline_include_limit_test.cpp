// What a run says to a "%" line behind the limit of include files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "run/pipeline.h"
#include "support/analysis_run.h"

namespace flanks {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kCure =
    "  To mend it: Include files nest more than 20 deep here (or are more than 10,000), so that "
    "this line includes nothing: see whether a file includes itself.\n";

// The top file and twenty levels of it have a line each.
TEST(IncludeLimit, OfTheSpecificationHasItsOwnCure) {
  AnalysisRun run;
  EXPECT_EQ(run.Analyze("%spec.txt\n"), 1);
  EXPECT_THAT(run.Screen(), HasSubstr("21 in line Error F1\n"));
  EXPECT_THAT(run.Screen(), HasSubstr(kCure));
  EXPECT_THAT(run.Screen(), Not(HasSubstr("Write keyword=value")));
}

// The line of the data's own file is 15, each of the twenty files below has one more.
TEST(IncludeLimit, OfTheDataHasItsOwnCure) {
  AnalysisRun run;
  run.Write("d.txt", "% d.txt\n");
  const std::string specification =
      "Title=Check\nFlanks=2\nModels=?,?,R5\nLabels=\n1,Persons\n1=Ann\n2=Bob\n*\n2,Items\n"
      "1=i1\n2=i2\n*\nData=\n1,1,3\n";
  EXPECT_EQ(run.Analyze(specification + "% d.txt\n"), 1);
  EXPECT_THAT(run.Screen(), HasSubstr("35 in line Error F27\n"));
  EXPECT_THAT(run.Screen(), HasSubstr(kCure));
  EXPECT_EQ(run.Analyze(specification + "1,1\n"), 1);
  EXPECT_THAT(run.Screen(), HasSubstr("15 in line Error F27\n"));
  EXPECT_THAT(run.Screen(), HasSubstr("To mend it: Give the element of each Flank"));
}

}  // namespace
}  // namespace flanks
