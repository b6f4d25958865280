#include "spec/output_names.h"

#include <gtest/gtest.h>
#include <string>

#include "support/spec_run.h"

namespace flanks {
namespace {

TEST(SettleOutputNames, NamesTheReportAfterTheSpecification) {
  SpecRun test;
  test.Read("Data=\n");
  SettleOutputNames(test.run);
  EXPECT_EQ(test.analysis.settings.OutputFile, test.folder.file("s.out.txt"));
}

TEST(SettleOutputNames, KeepsAName) {
  SpecRun test;
  test.Read("Output=r.txt\n");
  SettleOutputNames(test.run);
  EXPECT_EQ(test.fault(), Fault::none);
  EXPECT_EQ(test.analysis.settings.OutputFile, "r.txt");
}

TEST(SettleOutputNames, ReplacesNeitherSpecificationNorData) {
  SpecRun specification;
  specification.Read("Output=" + specification.folder.file("./s.txt") + "\n");
  SettleOutputNames(specification.run);
  EXPECT_EQ(specification.FaultText(), "Specification is: Incompatible file usage: \"" +
                                           specification.folder.file("./s.txt") + "\": Error F37");

  SpecRun data;
  const std::string name = data.folder.write("d.txt", "1,1\n");
  data.Read("Data=d.txt\nOutput=" + name + "\n");  // found beside the Specification
  SettleOutputNames(data.run);
  EXPECT_EQ(data.fault(), Fault::incompatibleFileUse);

  SpecRun included;
  const std::string labels = included.folder.write("labels.txt", "Umean=1\n");
  included.Read("Data=d.txt\nOutput=" + labels + "\n%" + labels + "\n");
  SettleOutputNames(included.run);
  EXPECT_EQ(included.fault(), Fault::incompatibleFileUse);
}

}  // namespace
}  // namespace flanks
