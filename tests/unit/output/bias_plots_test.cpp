#include "output/bias_plots.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "support/bias_run.h"

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

std::string Specification(int raters, int tasks, const std::string& more = "") {
  std::string data;
  for (int person = 1; person <= 4; ++person)
    for (int rater = 1; rater <= raters; ++rater)
      for (int task = 1; task <= tasks; ++task)
        data += std::to_string(person) + "," + std::to_string(rater) + "," + std::to_string(task) +
                "," + std::to_string((person * 5 + rater * 3 + task + person * rater) % 4) + "\n";
  return "Output=report.txt\nFlanks=3\nPositive=1\nModels=?,?B,?B,R3\nLabels=\n1,Persons\n1-4=p\n*"
         "\n"
         "2,Raters\n1-" +
         std::to_string(raters) + "=r\n*\n3,Tasks\n1-" + std::to_string(tasks) + "=t\n*\n" + more +
         "\nData=\n" + data;
}

// ---- What is asked for

TEST(BiasPlots, AnXInThePlacesOfTables13And14AsksForThem) {
  Settings settings;
  const auto asked = [&](const std::string& tables) {
    settings.Tables = tables;
    const BiasPlotChoice choice = BiasPlotsAsked(settings);
    return std::string(choice.terms ? "T" : "") + (choice.pairs ? "P" : "");
  };
  EXPECT_EQ(asked("111111111111XX"), "TP");
  EXPECT_EQ(asked("000000000000X0"), "T");
  EXPECT_EQ(asked("0000000000000x"), "P");
  EXPECT_EQ(asked("11111111111111"), "");
  EXPECT_EQ(asked("XXXXXXXXXXXXXX"), "");  // no string of flags
  EXPECT_EQ(asked("Y"), "");
}

// ---- The sheets

// Behind the rows of other elements.
std::vector<std::optional<double>> Present(std::vector<std::optional<double>> values) {
  const auto first = std::find_if(values.begin(), values.end(),
                                  [](const auto& value) { return value.has_value(); });
  values.erase(values.begin(), first);
  return values;
}

std::vector<std::optional<double>> Values(const ChartSheet& sheet, const std::string& name) {
  for (const ChartSeries& series : sheet.series)
    if (series.name == name) return Present(series.values);
  ADD_FAILURE() << "no series " << name;
  return {};
}

struct SheetTest : ::testing::Test {
  BiasRun run;

  // Raters 1 and 2 (slots 5 and 6), tasks 1 and 2; rater 2 has no estimate in task 1.
  void Prepare() {
    run.Prepare(Specification(2, 2));
    Set(1, 1, 0.5f, 0.25f, 4.0f, 9.0f);
    Set(1, 2, -0.25f, 0.5f, 4.0f, 6.0f);
    Set(2, 2, 1.0f, 0.0f, 2.0f, 5.0f);
    Term(2, 1).standing = BiasStanding::none;
    run.analysis.estimates.elements[ElementSlot(5)].ElementMeasure = 0.125f;
    run.analysis.estimates.elements[ElementSlot(6)].ElementMeasure = -0.125f;
    Settings& settings = run.analysis.settings;
    settings.Umean = 10.0f;
    settings.Uscale = 2.0f;
    settings.Udecimals = 1;
    settings.Bias = -1;
  }
  BiasTerm& Term(int rater, int task) { return run.results->terms[run.TermOf({rater, task})]; }
  void Set(int rater, int task, float Bias, float error, float count, float score) {
    BiasTerm& term = Term(rater, task);
    term.Bias = Bias;
    term.StandardError = error;
    term.t = error > 0.0f ? Bias / error : 0.0f;
    term.Count = count;
    term.RawScore = score;
    term.standing = BiasStanding::estimable;
  }
  BiasPlots Plots(std::size_t target) {
    return MakeBiasPlots(run.analysis, *run.results, target, {.terms = true, .pairs = true});
  }
};

TEST_F(SheetTest, AreNamedAndTitled) {
  Prepare();
  const BiasPlots plots = Plots(0);
  std::vector<std::string> names;
  for (const ChartSheet& sheet : plots.sheets) {
    names.push_back(sheet.name);
    EXPECT_EQ(sheet.title, "Bias/Interaction: Raters x Tasks");
  }
  EXPECT_THAT(names, ElementsAre("AM", "RM", "TV", "AO", "PM", "PT"));
  EXPECT_FALSE(plots.pruned);
  std::vector<std::string> series;
  for (const ChartSeries& one : plots.sheets[0].series) series.push_back(one.name);
  EXPECT_THAT(series, ElementsAre("1 r: Absolute Measure", "1 r: Absolute Measure (+)",
                                  "1 r: Absolute Measure (-)", "2 r: Absolute Measure",
                                  "2 r: Absolute Measure (+)", "2 r: Absolute Measure (-)"));
}

// Raters are negative: measure 10 + 2 x .125 - 2 x .5 with the first bias; S.E. 2 x .25.
TEST_F(SheetTest, OfTermsHaveMeasuresTheirErrorsTAndAverages) {
  Prepare();
  const std::vector<ChartSheet> sheets = Plots(0).sheets;
  EXPECT_THAT(sheets[0].categories, ElementsAre("1 r x 1 t", "1 r x 2 t", "2 r x 2 t"));
  EXPECT_THAT(sheets[0].series[3].values, ElementsAre(std::nullopt, std::nullopt, 7.75));
  EXPECT_THAT(Values(sheets[0], "1 r: Absolute Measure"), ElementsAre(9.25, 10.75));
  EXPECT_THAT(Values(sheets[0], "1 r: Absolute Measure (+)"), ElementsAre(9.75, 11.75));
  EXPECT_THAT(Values(sheets[0], "1 r: Absolute Measure (-)"), ElementsAre(8.75, 9.75));
  EXPECT_THAT(Values(sheets[0], "2 r: Absolute Measure"), ElementsAre(7.75));
  EXPECT_THAT(Values(sheets[1], "1 r: Relative-to-overall Measure"), ElementsAre(-1.0, 0.5));
  EXPECT_THAT(Values(sheets[1], "1 r: Relative-to-overall Measure (+)"), ElementsAre(-0.5, 1.5));
  EXPECT_THAT(Values(sheets[2], "1 r: t-value relative-to-overall"), ElementsAre(-2.0, 0.5));
  EXPECT_THAT(Values(sheets[3], "1 r: Average Observation"), ElementsAre(2.25, 1.5));
  EXPECT_THAT(Values(sheets[3], "2 r: Average Observation"), ElementsAre(2.5));
  EXPECT_EQ(sheets[2].series.size(), 2u);  // no lines of errors
  EXPECT_EQ(sheets[0].decimals, 1);
  EXPECT_EQ(sheets[2].decimals, 2);
}

// Contrasts as Table 14 has them: by the direction, minus 2 x (-.25 - 1).  One side without S.E.:
// no t.
TEST_F(SheetTest, OfPairsHaveContrastsAndTheirT) {
  Prepare();
  std::vector<ChartSheet> sheets = Plots(0).sheets;
  EXPECT_THAT(sheets[4].categories, ElementsAre("1 r - 2 r x 2 t"));
  EXPECT_THAT(Values(sheets[4], "1 r: Pairwise Relative Measure"), ElementsAre(2.5));
  EXPECT_THAT(Values(sheets[4], "1 r: Pairwise Relative Measure (+)"), ElementsAre(3.5));
  EXPECT_THAT(Values(sheets[4], "1 r: Pairwise Relative Measure (-)"), ElementsAre(1.5));
  EXPECT_THAT(Values(sheets[5], "1 r: Pairwise t-statistic"), ElementsAre());
  Term(2, 2).StandardError = 1.2f;  // joint 1.3
  sheets = Plots(0).sheets;
  ASSERT_EQ(Values(sheets[5], "1 r: Pairwise t-statistic").size(), 1u);
  EXPECT_NEAR(*Values(sheets[5], "1 r: Pairwise t-statistic")[0], 1.25 / 1.3, 1E-6);
  // The other workbook: tasks 1 and 2 of rater 1.
  EXPECT_THAT(Plots(1).sheets[4].categories, ElementsAre("1 t - 2 t x 1 r"));
}

TEST(BiasPlots, RowsAreInTheOrderOfTheElementsAndTheirContexts) {
  BiasRun run;
  run.Prepare(Specification(3, 2));
  const BiasPlots plots =
      MakeBiasPlots(run.analysis, *run.results, 1, {.terms = true, .pairs = true});
  EXPECT_THAT(plots.sheets[0].categories, ElementsAre("1 t x 1 r", "1 t x 2 r", "1 t x 3 r",
                                                      "2 t x 1 r", "2 t x 2 r", "2 t x 3 r"));
  const BiasPlots others =
      MakeBiasPlots(run.analysis, *run.results, 0, {.terms = false, .pairs = true});
  ASSERT_EQ(others.sheets.size(), 2u);
  EXPECT_THAT(others.sheets[0].categories,
              ElementsAre("1 r - 2 r x 1 t", "1 r - 3 r x 1 t", "1 r - 2 r x 2 t",
                          "1 r - 3 r x 2 t", "2 r - 3 r x 1 t", "2 r - 3 r x 2 t"));
}

TEST(BiasPlots, OfMoreThan85ElementsThereAreNoLinesOfErrors) {
  for (const int raters : {85, 86}) {
    BiasRun run;
    run.Prepare(Specification(raters, 1));
    const BiasPlots plots = MakeBiasPlots(run.analysis, *run.results, 0, {.terms = true});
    EXPECT_EQ(plots.sheets[0].series.size(), raters == 85 ? 255u : 86u);
  }
}

// ---- Files

TEST(BiasPlots, FilesAreNamedForTheReportTheInteractionAndTheFlank) {
  Analysis analysis;
  const auto name = [&](const std::string& report) {
    analysis.settings.OutputFile = report;
    analysis.design.maps.ModelFlank.assign(3, FlankNo(1));
    analysis.design.maps.ModelFlank[Position(2)] = FlankNo(3);
    BiasInteraction interaction;
    interaction.number = 2;
    interaction.positions = {Position(1), Position(2), Position(3)};
    return BiasPlotName(analysis, interaction, 1) + " " + BiasPlotName(analysis, interaction, 2);
  };
  EXPECT_EQ(name("a/speaking.out.txt"), "a/speaking.bias2.3.xlsx a/speaking.bias2.1-2.xlsx");
  EXPECT_EQ(name("Test.TXT"), "Test.bias2.3.xlsx Test.bias2.1-2.xlsx");
  EXPECT_EQ(name("may.doc"), "may.doc.bias2.3.xlsx may.doc.bias2.1-2.xlsx");
}

struct FileTest : ::testing::Test {
  BiasRun run;
  bool warned = false;

  std::string Write() {
    run.shell.statuses.clear();
    return run.ReportOf([&](auto& step) { WriteBiasPlots(step, *run.results, warned); });
  }
  std::vector<std::string> Workbooks() const {
    std::vector<std::string> names;
    for (const std::string& name : run.folder.names())
      if (name.find(".bias") != std::string::npos) names.push_back(name);
    return names;
  }
};

constexpr const char* kWarning =
    "Warning (11)! Plotted interactions pruned to first 250 per Excel plot\n";

TEST_F(FileTest, OneForEachFlankOfTheInteraction) {
  run.Prepare(Specification(3, 2), "Tables=00000000000000");
  Write();
  EXPECT_TRUE(Workbooks().empty());
  run.analysis.settings.Tables = "000000000000XX";
  EXPECT_EQ(Write(), "");
  EXPECT_THAT(Workbooks(),
              testing::UnorderedElementsAre("report.bias1.2.xlsx", "report.bias1.3.xlsx"));
  EXPECT_THAT(run.Screen(), HasSubstr("report.bias1.3.xlsx"));
  EXPECT_EQ(run.folder.read("report.bias1.2.xlsx").substr(0, 2), "PK");
}

TEST_F(FileTest, ThePlotsOf250TermsAreWhole) {
  run.Prepare(Specification(250, 1), "Tables=000000000000X0");
  EXPECT_EQ(run.results->terms.rows(), 250);
  const BiasPlots plots = MakeBiasPlots(run.analysis, *run.results, 0, {.terms = true});
  EXPECT_EQ(plots.sheets[0].categories.size(), 250u);
  EXPECT_FALSE(plots.pruned);
}

TEST_F(FileTest, ThePlotsOf251TermsLoseOneAndTheRunSaysSoOnce) {
  run.Prepare(Specification(251, 1), "Tables=000000000000X0");
  EXPECT_EQ(Write(), kWarning);  // not for each of the two workbooks
  EXPECT_TRUE(warned);
  const BiasPlots plots =
      MakeBiasPlots(run.analysis, *run.results, 0, {.terms = true, .pairs = true});
  ASSERT_EQ(plots.sheets[0].categories.size(), 250u);
  EXPECT_EQ(plots.sheets[0].categories.back(), "250 r x 1 t");
  EXPECT_EQ(plots.sheets[4].categories.size(), 250u);
  EXPECT_EQ(plots.sheets[4].categories.back(), "1 r - 251 r x 1 t");
}

TEST_F(FileTest, AFileOfAnotherKindIsLeftAlone) {
  run.Prepare(Specification(3, 2), "Tables=000000000000X0");
  run.Write("report.bias1.2.xlsx", "my own notes\n");
  EXPECT_THAT(Write(), HasSubstr("Failure opening output file: "));
  EXPECT_EQ(run.folder.read("report.bias1.2.xlsx"), "my own notes\n");
  EXPECT_THAT(Workbooks(), testing::SizeIs(2));  // the other Flank has its own
  run.Write("report.bias1.2.xlsx", "");          // an empty file is nobody's
  EXPECT_EQ(Write(), "");
  EXPECT_NE(run.folder.read("report.bias1.2.xlsx"), "");
}

TEST_F(FileTest, TheDataAreNotReplaced) {
  run.Prepare(Specification(3, 2), "Tables=000000000000X0");
  run.Write("report.bias1.2.xlsx", "PK: data in a workbook");
  run.analysis.settings.dataSource = DataSource::file;
  run.analysis.settings.dataFile = run.folder.file("report.bias1.2.xlsx");
  EXPECT_THAT(Write(), HasSubstr("(the data of this run stand in it)"));
  EXPECT_EQ(run.folder.read("report.bias1.2.xlsx"), "PK: data in a workbook");
}

TEST_F(FileTest, AFolderThatIsNotThereIsToldAndTheRunGoesOn) {
  run.Prepare(Specification(3, 2), "Tables=000000000000X0");
  run.analysis.settings.OutputFile = run.folder.file("nowhere/report.txt");
  EXPECT_THAT(Write(), HasSubstr("Failure opening output file: "));
  EXPECT_FALSE(run.console.stopping());
}

}  // namespace
}  // namespace flanks
