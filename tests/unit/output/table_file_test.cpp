#include "output/table_file.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/run_bench.h"

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(AbsoluteName, HasTheCurrentFolderWhenItHasNone) {
  const std::string here = std::filesystem::current_path().string();
  EXPECT_EQ(AbsoluteName("results.txt"), here + "/results.txt");
  for (const std::string name : {"/tmp/results.txt", "dir/results.txt", "dir\\results.txt"})
    EXPECT_EQ(AbsoluteName(name), name);
}

struct Bench : RunBench {
  std::vector<OutputForm> forms;

  bool Write(const std::string& name) {
    TableFile table;
    table.routine = "WriteWords";
    table.prefix = "Words";
    table.caption = "Words";
    table.write = [&](OutputForm form, Destination& out) {
      forms.push_back(form);
      out.Line("a word");
    };
    return WriteTableFile(run, folder.file(name), table, TableOptionsOf(analysis.settings));
  }
};

TEST(TableFile, TextAndWebpageAreWrittenUnderTheirNames) {
  Bench bench;
  for (const std::string name : {"a.txt", "a.csv", "a", "b.htm", "C.HTML"}) {
    EXPECT_TRUE(bench.Write(name));
    EXPECT_EQ(bench.folder.read(name), "a word\n") << name;
  }
  EXPECT_THAT(bench.forms, ElementsAre(OutputForm::text, OutputForm::text, OutputForm::text,
                                       OutputForm::webpage, OutputForm::webpage));
  EXPECT_EQ(bench.shell.Screen(), "");
}

// Other programs' files are made of a text that is gone afterwards.
TEST(TableFile, AFormOfAnotherProgramIsHandedOn) {
  Bench bench;
  bench.Write("a.xlsx");
  bench.Write("a.RDA");
  EXPECT_THAT(bench.forms, ElementsAre(OutputForm::excel, OutputForm::rstat));
  for (const std::string& name : bench.folder.names()) EXPECT_THAT(name, testing::StartsWith("a."));
}

TEST(TableFile, WithoutAnSpssFormSuchANameIsRefused) {
  Bench bench;
  EXPECT_FALSE(bench.Write("a.sav"));
  EXPECT_THAT(bench.shell.Screen(), HasSubstr("There is no SPSS form of this file: "));
  EXPECT_EQ(bench.process.control.ExitCode, kExitFault);
  EXPECT_TRUE(bench.folder.empty());
}

TEST(TableFile, AFolderThatIsNotThereIsTold) {
  Bench bench;
  EXPECT_FALSE(bench.Write("missing/a.txt"));
  EXPECT_EQ(bench.shell.Screen(), "Failure opening output file: \"" +
                                      bench.folder.file("missing/a.txt") +
                                      "\" (No such file or directory)\n");
}

// Broken off: no text is handed on, and none is left.
TEST(TableFile, ABrokenOffHandOverLeavesNothing) {
  Bench bench;
  bench.process.control.CancelRequested = true;
  EXPECT_FALSE(bench.Write("a.xlsx"));
  EXPECT_TRUE(bench.folder.empty());
}

TEST(RowForm, IsThatOfTheFile) {
  Settings settings;
  settings.OutputSeparator = ";";
  settings.OutputQuote = "'";
  const TableOptions options = TableOptionsOf(settings);
  const RowForm text = RowFormOf(OutputForm::text, options, settings);
  EXPECT_EQ(text.OutputSeparator + text.OutputQuote, ";'");
  EXPECT_TRUE(RowFormOf(OutputForm::webpage, options, settings).isPage());
  for (const OutputForm form : {OutputForm::excel, OutputForm::spss, OutputForm::rstat}) {
    const RowForm handed = RowFormOf(form, options, settings);
    EXPECT_EQ(handed.OutputSeparator + handed.OutputQuote, "\t");
    EXPECT_EQ(handed.protectsLabels, form == OutputForm::excel);
  }
}

}  // namespace
}  // namespace flanks
