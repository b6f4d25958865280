#include "spec/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/spec_run.h"

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct LineCase {
  std::string text;
  std::vector<std::string> fileNames;
  std::string extras;
  bool batch;
};

class CommandLineOf : public testing::TestWithParam<LineCase> {};

TEST_P(CommandLineOf, IsCutIntoTokens) {
  const CommandLine line = ParseCommandLine(GetParam().text);
  EXPECT_EQ(line.fault, Fault::none);
  EXPECT_EQ(line.fileNames, GetParam().fileNames);
  EXPECT_EQ(line.ExtraSpecifications, GetParam().extras);
  EXPECT_EQ(line.batch, GetParam().batch);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CommandLineOf,
    testing::Values(
        LineCase{"", {}, "", false},
        LineCase{"  s.txt   out.txt ", {"s.txt", "out.txt"}, "", false},
        LineCase{"\"s.txt\" Batch=Y", {"s.txt"}, "Batch=Y", true},
        LineCase{"s.txt batch=yes x=1", {"s.txt"}, "batch=yes x=1", true},
        LineCase{"s.txt Batch=N", {"s.txt"}, "Batch=N", false},
        LineCase{"s.txt Baty=N", {"s.txt"}, "Baty=N", false},
        LineCase{"s.txt \"Title=My test\" Umean=5", {"s.txt"}, "Title=My test Umean=5", false},
        LineCase{"s.txt \"\" a.txt", {"s.txt", "", "a.txt"}, "", false},
        LineCase{"it\"s.txt", {"it\"s.txt"}, "", false}));

TEST(CommandLine, RefusesAnOpenQuoteAndANameWithABlank) {
  const CommandLine open = ParseCommandLine("\"myfile.txt");
  EXPECT_EQ(open.fault, Fault::missingQuote);
  const CommandLine blank = ParseCommandLine("\"my file.txt\"");
  EXPECT_EQ(blank.fault, Fault::extraNotSpecification);
  EXPECT_EQ(blank.faultText, "my file.txt");
}

struct ExtraCase {
  std::string text;
  std::vector<std::string> specifications;
};

TEST(ExtraSpecifications, TakeTheWordsBehindThem) {
  const ExtraCase cases[] = {
      {"", {}},
      {"Title=My test Umean=5", {"Title=My test", "Umean=5"}},
      {"  Title= My  test ", {"Title= My test"}},
      {"Flanks=2 Data=d.txt", {"Flanks=2", "Data=d.txt"}},
  };
  for (const ExtraCase& c : cases)
    EXPECT_EQ(CutExtraSpecifications(c.text).specifications, c.specifications) << c.text;
  const ExtraList wrong = CutExtraSpecifications("word Title=x");
  EXPECT_EQ(wrong.fault, Fault::extraNotSpecification);
  EXPECT_EQ(wrong.faultText, "word");
}

// ---- Steps

struct StepRun : SpecRun {
  // `$` in the line is the name of an empty Specification.
  explicit StepRun(std::string line) {
    const std::string name = folder.write("s.txt", "");
    if (const std::size_t mark = line.find('$'); mark != std::string::npos)
      line.replace(mark, 1, name);
    process.commandLine = line;
    Do({ReadCommandLine, ApplyExtraSpecifications});
  }
};

TEST(ReadCommandLine, NamesTheFilesAndShowsTheSpecification) {
  StepRun test("$ out.txt anchors.txt residuals.txt graphs.txt");
  EXPECT_EQ(test.fault(), Fault::none);
  EXPECT_EQ(test.analysis.settings.OutputFile, "out.txt");
  EXPECT_EQ(test.analysis.settings.AnchorFile, "anchors.txt");
  EXPECT_EQ(test.analysis.settings.ResidualFile, "residuals.txt");
  EXPECT_EQ(test.analysis.settings.GraphFile, "graphs.txt");
  EXPECT_EQ(test.shell.Screen(),
            "Processing specifications from \"" + test.folder.file("s.txt") + "\"\n");
}

TEST(ReadCommandLine, WithoutAFileSetsNothing) {
  StepRun test("");
  EXPECT_EQ(test.fault(), Fault::none);
  EXPECT_EQ(test.analysis.settings.specificationFile, "");
  EXPECT_THAT(test.shell.statuses, IsEmpty());
}

struct CommandFaultCase {
  std::string line;
  std::string report;
};

TEST(ReadCommandLine, ReportsItsFaultsByItsName) {
  const CommandFaultCase cases[] = {
      {"\"myfile.txt",
       "\"myfile.txt Command line is: Missing quote (+chr$(34)+) in command line: Error F49"},
      {"\"my file.txt\"",
       "my file.txt Command line is: Extra specification should be: specification=value: "
       "Error F17"},
      {"nowhere.txt", "\"nowhere.txt\" Command line is: File not found: Error F43"},
      {"nowhere.txt Batch=Y",
       "\"nowhere.txt\" Command line is: File not found in batch mode: Error F52"},
      {"a*.txt",
       "\"a*.txt\" Command line is: File name contains * or ?, or ends with \\ / or : Error F42"},
      {"$ out.txt anchors.txt a?.txt",
       "\"a?.txt\" Command line is: File name contains * or ?, or ends with \\ / or : Error F42"},
  };
  for (const CommandFaultCase& c : cases) EXPECT_EQ(StepRun(c.line).FaultText(), c.report);
}

TEST(ReadCommandLine, AnOutputNameGoesBeforeTheOneInTheFile) {
  SpecRun test;
  test.folder.write("s.txt", "Output=other.txt\n");
  test.process.commandLine = test.folder.file("s.txt") + " mine.txt";
  test.Do({ReadCommandLine, ApplyExtraSpecifications, ReadSpecification});
  EXPECT_EQ(test.analysis.settings.OutputFile, "mine.txt");
  EXPECT_THAT(test.IgnoredLines(),
              ElementsAre("Duplicate specification ignored: Output=other.txt"));
}

TEST(ReadCommandLine, FurtherNamesAreDropped) {
  StepRun test("$ out.txt \"\" \"\" \"\" sixth.txt");
  EXPECT_EQ(test.fault(), Fault::none);
}

TEST(ApplyExtraSpecifications, ShowsAndAppliesThem) {
  StepRun test("$ Title=My \"Umean=2*25,20/2,1\"");
  EXPECT_EQ(test.analysis.settings.Title, "My");
  EXPECT_EQ(test.analysis.settings.Umean, 50.0f);
  EXPECT_EQ(test.analysis.settings.Udecimals, 1);
  EXPECT_THAT(test.shell.Screen(), HasSubstr("Extra specifications: Title=My Umean=2*25,20/2,1\n"));
}

TEST(ApplyExtraSpecifications, HaveTheirFaults) {
  const CommandFaultCase cases[] = {
      {"$ =5", "=5 Extra specifications is: \"Specification=value\" expected: Error F1"},
      {"$ Arrange=Q",
       "Arrange=Q Extra specifications is: Valid arrangements are flank number (optional) then "
       "A,F,M,N,P,a,m,f,n,p: Error F32"},
      {"$ Entered-in-data=1,2",
       "Entered-in-data=1,2 Extra specifications is: Please specify Flanks= before this "
       "specification: Error F34"},
  };
  for (const CommandFaultCase& c : cases) EXPECT_EQ(StepRun(c.line).FaultText(), c.report);
}

TEST(ApplyExtraSpecifications, RefuseLists) {
  for (const std::string list : {"Labels=1,A", "Models=?,R", "Rating=a,R3"}) {
    StepRun test("$ Flanks=1 " + list);
    EXPECT_EQ(test.fault(), Fault::extraInvalid) << list;
  }
}

TEST(ApplyExtraSpecifications, ARepeatedOneIsIgnored) {
  StepRun test("$ Title=a Title=b");
  EXPECT_EQ(test.analysis.settings.Title, "a");
  EXPECT_THAT(test.IgnoredLines(), ElementsAre("Duplicate specification ignored: Title=b"));
}

}  // namespace
}  // namespace flanks
