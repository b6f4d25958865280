#include "spec/output_names.h"

#include <gmock/gmock.h>
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

TEST(SettleOutputNames, ReplacesNoIncludeFileOfTheData) {
  const auto faultOf = [](const char* former, const char* specification, const char* keyword) {
    SpecRun test;
    const std::string lost = test.folder.write("d2.txt", former);
    test.folder.write("d1.txt", "1,1,3\n % more.txt ; the rest\n");
    test.folder.write("more.txt", "% \"d2.txt\"\n");
    test.Read(keyword + ("=" + lost) + "\n" + specification);
    SettleOutputNames(test.run);
    EXPECT_EQ(test.folder.read("d2.txt"), former);
    return test.fault();
  };
  for (const char* keyword : {"Output", "Anchorfile", "Residualfile", "Graphfile", "Simulated"})
    EXPECT_EQ(faultOf("2,1,3\n", "Data=d1.txt\n", keyword), Fault::incompatibleFileUse) << keyword;
  EXPECT_EQ(faultOf("2,1,3\n", "Data=\n1,1,3\n%d2.txt\n", "Output"), Fault::incompatibleFileUse);
  EXPECT_EQ(faultOf("2,1,3\n", "Data=\n1,1,3\n1,2,3 %d2.txt\n", "Output"), Fault::none);
  EXPECT_EQ(faultOf("", "Data=d1.txt\n", "Output"), Fault::none) << "nothing to lose";
  EXPECT_EQ(faultOf("Flanks (Many-Flank Rasch Measurement) Version 1\n", "Data=d1.txt\n", "Output"),
            Fault::none)
      << "a former report";
}

TEST(SettleOutputNames, FurtherFilesReplaceNoOtherEither) {
  const char* const faulty[] = {"Anchorfile=$",
                                "Residualfile=$",
                                "Graphfile=$",
                                "Simulated=$",
                                "Output=a.txt,a.txt",
                                "Output=,,r.txt,r.txt",
                                "Simulated=g.txt\nGraphfile=g.txt"};
  for (std::string lines : faulty) {
    SpecRun test;
    if (const std::size_t mark = lines.find('$'); mark != std::string::npos)
      lines.replace(mark, 1, test.folder.file("s.txt"));
    test.Read(lines + "\nData=\n");
    SettleOutputNames(test.run);
    EXPECT_EQ(test.fault(), Fault::incompatibleFileUse) << lines;
  }
}

// Each of its files has the number of a Flank in its name: w.1.txt, w.2.txt.
TEST(SettleOutputNames, TheScoreFilesReplaceNoOtherFileEither) {
  for (const auto& [report, fault] : {std::pair{"w.txt", Fault::none},
                                      {"w.3.txt", Fault::none},
                                      {"w.2.txt", Fault::incompatibleFileUse}}) {
    SpecRun test;
    test.Read("Flanks=2\nScorefile=" + test.folder.file("w.txt") +
              "\nOutput=" + test.folder.file(report) + "\n");
    SettleOutputNames(test.run);
    EXPECT_EQ(test.fault(), fault) << report;
  }
}

// A workbook s.xls is written as s.xlsx, and of a Score file each Flank has one: s.2.xlsx.
TEST(SettleOutputNames, ComparesTheFilesThatAreReallyWritten) {
  const std::pair<const char*, Fault> cases[] = {
      {"Residualfile=s.xls\nGraphfile=s.xlsx", Fault::incompatibleFileUse},
      {"Residualfile=S.XLS\nGraphfile=S.XLSX", Fault::incompatibleFileUse},
      {"Output=out.xlsx\nResidualfile=out.xls", Fault::incompatibleFileUse},
      {"Scorefile=s.xls\nResidualfile=s.2.xlsx", Fault::incompatibleFileUse},
      {"Data=$marks.xlsx\nResidualfile=$marks.xls", Fault::incompatibleFileUse},
      {"Data=$marks.xlsx\nGraphfile=$marks.xls", Fault::incompatibleFileUse},
      {"Data=$old.xls\nResidualfile=$old.xls", Fault::incompatibleFileUse},
      {"Data=$marks.xlsx(1,2)\nResidualfile=$marks.xlsx", Fault::incompatibleFileUse},
      {"Anchorfile=s.xls\nGraphfile=s.xlsx", Fault::none},  // anchors are text
      {"Residualfile=r.xls\nGraphfile=s.xlsx", Fault::none},
      {"Scorefile=s.xls\nResidualfile=s.3.xlsx", Fault::none}};
  for (const auto& [lines, fault] : cases) {
    SpecRun test;
    test.folder.write("marks.xlsx", "marks");
    test.folder.write("old.xls", "marks");
    std::string text = std::string("Flanks=2\n") + lines + "\n";
    for (std::size_t at = 0; (at = text.find('$')) != std::string::npos;)
      text.replace(at, 1, test.folder.file(""));
    test.Read(text);
    SettleOutputNames(test.run);
    EXPECT_EQ(test.fault(), fault) << lines;
  }
}

TEST(OpenFurtherOutputFiles, TellsEachAndLeavesNothingBehind) {
  SpecRun test;
  const std::string there = test.folder.write("there.txt", "kept\n");
  const std::string anchors = test.folder.file("anchors.txt");
  const std::string graphs = test.folder.file("graphs.txt");
  test.Read("Output=o.txt," + anchors + "," + there + "," + graphs + "\n");
  OpenFurtherOutputFiles(test.run);
  EXPECT_THAT(test.shell.Screen(),
              testing::EndsWith("Opening residual output file: \"" + there +
                                "\"\nOpening anchor output file: \"" + anchors +
                                "\"\nValidating graphing output file=\"" + graphs + "\"\n"));
  EXPECT_EQ(test.folder.read("there.txt"), "kept\n");
  EXPECT_THAT(test.folder.names(), testing::UnorderedElementsAre("s.txt", "there.txt"));
  EXPECT_EQ(test.analysis.settings.AnchorFile, anchors);
}

TEST(OpenFurtherOutputFiles, ANameThatCannotBeOpenedIsCleared) {
  SpecRun test;
  const std::string nowhere = test.folder.file("no/folder.txt");
  test.Read("Anchorfile=" + nowhere + "\nResidualfile=" + test.folder.file("r.txt") + "\n");
  OpenFurtherOutputFiles(test.run);
  const std::string words =
      "Failure opening output file: \"" + nowhere + "\" (No such file or directory)";
  EXPECT_THAT(test.shell.Screen(), testing::HasSubstr(words + "\n"));
  EXPECT_THAT(test.analysis.report.deferredMessages, testing::ElementsAre(words))
      << "in Table 1, for the name is not there";
  EXPECT_EQ(test.fault(), Fault::none);
  EXPECT_EQ(test.analysis.settings.AnchorFile, "");
  EXPECT_NE(test.analysis.settings.ResidualFile, "");
  EXPECT_EQ(test.run.process.control.ExitCode, kExitFault);
}

// Score and simulated files have no line of their own here.
TEST(OpenFurtherOutputFiles, ScoreAndSimulatedFilesAreTriedInSilence) {
  SpecRun test;
  test.Read("Flanks=2\nScorefile=" + test.folder.file("s.xls") +
            "\nSimulated=" + test.folder.file("new.txt") + "\n");
  OpenFurtherOutputFiles(test.run);
  EXPECT_THAT(test.analysis.report.deferredMessages, testing::IsEmpty());
  EXPECT_THAT(test.folder.names(), testing::ElementsAre("s.txt"));
  SpecRun nowhere;
  nowhere.Read("Flanks=2\nScorefile=" + nowhere.folder.file("no/s.xls") +
               "\nSimulated=" + nowhere.folder.file("no/new.txt") + "\n");
  OpenFurtherOutputFiles(nowhere.run);
  EXPECT_THAT(
      nowhere.analysis.report.deferredMessages,
      testing::ElementsAre("Failure opening output file: \"" + nowhere.folder.file("no/s.1.xlsx") +
                               "\" (No such file or directory)",
                           "Failure opening output file: \"" + nowhere.folder.file("no/new.txt") +
                               "\" (No such file or directory)"));
  EXPECT_EQ(nowhere.analysis.settings.ScoreFile, "");
  EXPECT_EQ(nowhere.analysis.settings.SimulatedFile, "");
}

TEST(OpenFurtherOutputFiles, AGraphFileHasNoSpssForm) {
  SpecRun test;
  const std::string name = test.folder.file("g.Sav");
  test.Read("Graphfile=" + name + "\nResidualfile=" + test.folder.file("r.sav") + "\n");
  OpenFurtherOutputFiles(test.run);
  const std::string words = "There is no SPSS form of this file: \"" + name + "\" is not written.";
  EXPECT_THAT(test.shell.Screen(), testing::EndsWith("\"" + name + "\"\n" + words + "\n"));
  EXPECT_THAT(test.analysis.report.deferredMessages, testing::ElementsAre(words));
  EXPECT_EQ(test.analysis.settings.GraphFile, "");
  EXPECT_NE(test.analysis.settings.ResidualFile, "");
  EXPECT_EQ(test.run.process.control.ExitCode, kExitFault);
}

}  // namespace
}  // namespace flanks
