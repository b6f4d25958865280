// Which blocks and which parts of them Table 8 has.  What stands in them is tested with its
// columns, rows, scales and plots.
#include "report/table8.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "support/analysis_run.h"

namespace flanks {
namespace {

constexpr const char* kSpecification =
    "Flanks=2\nModels=?,?,Quality\nRating scale=Quality,R2\n0=poor\n1=fair\n2=good\n*\nLabels=\n"
    "1,Persons\n1-5=p\n*\n2,Items\n1-3=i\n*\nData=\n1,1-3,0,1,1\n2,1-3,1,2,0\n3,1-3,2,1,1\n"
    "4,1-3,1,0,2\n5,1-3,2,2,1\n";

std::string Table8Of(const std::string& extras, const char* specification = kSpecification) {
  AnalysisRun run;
  EXPECT_EQ(run.Analyze(specification, extras), 0) << run.Screen();
  const std::string report = run.Report();
  const std::size_t at = report.find("Table 8.");
  return at == std::string::npos ? "" : report.substr(at);
}

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(Table8, HasItsTitleModelAndScaleAboveTheBox) {
  const std::string table = Table8Of("");
  EXPECT_TRUE(
      table.starts_with("Table 8.1  Category Statistics.\n\n Model = ?,?,R2\n"
                        " Rating (or partial credit) scale = Quality,R2,G,O\n+----"))
      << table;
  EXPECT_TRUE(Holds(table, "-(Mean)---------(Modal)--(Median)-"));
}

TEST(Table8, ShowsWhatT8NBCAsksFor) {
  const char* box = "QUALITY CONTROL";
  const char* bars = "\nScale structure: Quality,R2,G,O\n";
  const char* curves = "\nProbability Curves\n";
  const char* ogive = "\nExpected Score Ogive (Model ICC)\n";
  struct Case {
    const char* extras;
    bool box, bars, curves;
  };
  const Case cases[] = {{"", true, true, true},
                        {"T8NBC=N", true, false, false},
                        {"T8NBC=B", false, true, false},
                        {"T8NBC=C", false, false, true},
                        {"T8NBC=nc", true, false, true},
                        {"Barchart=No", true, false, true},
                        {"Barchart=All", true, true, true}};
  for (const Case& c : cases) {
    const std::string table = Table8Of(c.extras);
    EXPECT_EQ(Holds(table, box), c.box) << c.extras;
    EXPECT_EQ(Holds(table, bars), c.bars) << c.extras;
    EXPECT_EQ(Holds(table, curves), c.curves) << c.extras;
    EXPECT_EQ(Holds(table, ogive), c.curves) << c.extras;
  }
}

TEST(Table8, WithoutAPartTheHeadingsStandAloneAndTheScreenTells) {
  const std::string told =
      "T8NBC=X has none of the letters N, B, C: Table 8 has its headings alone.";
  AnalysisRun none, off, some;
  ASSERT_EQ(none.Analyze(kSpecification, "T8NBC=X"), 0);
  EXPECT_TRUE(Holds(none.Screen(), told)) << none.Screen();
  EXPECT_TRUE(Holds(none.Report(), "\n Rating (or partial credit) scale = Quality,R2,G,O\n"));
  EXPECT_FALSE(Holds(none.Report(), "QUALITY CONTROL"));
  ASSERT_EQ(off.Analyze(kSpecification, "T8NBC=X Tables=11111110"), 0);
  EXPECT_FALSE(Holds(off.Screen(), "none of the letters"));
  ASSERT_EQ(some.Analyze(kSpecification, "T8NBC=C"), 0);
  EXPECT_FALSE(Holds(some.Screen(), "none of the letters"));
}

TEST(Table8, IsLeftOutWithItsFlag) {
  EXPECT_EQ(Table8Of("Tables=11111110"), "");
  EXPECT_NE(Table8Of("Tables=00000001"), "");
}

// Person 5 has the highest score and takes category 2 along: one category is left.
TEST(Table8, OfOneCategoryHasNoThresholdsAndNoPlots) {
  const std::string table = Table8Of(
      "",
      "Flanks=2\nModels=\n?,1,R2\n?,2-4,R1\n*\nLabels=\n1,Persons\n1-4=p\n*\n2,Items\n1-4=i\n*\n"
      "Data=\n1,1-4,1,0,1,1\n2,1-4,1,1,0,1\n3,1-4,1,1,1,0\n4,1-4,1,0,0,1\n");
  EXPECT_TRUE(
      Holds(table, "\n|  1        4                    |                   |        |\n+--"))
      << table;
  const std::size_t second = table.find("Table 8.2");
  ASSERT_NE(second, std::string::npos);
  EXPECT_FALSE(Holds(table.substr(0, second), "Probability Curves"));
  EXPECT_TRUE(Holds(table.substr(second), "Probability Curves"));
}

TEST(Table8, LeftHandPutsTheNamesInFront) {
  const std::string table = Table8Of("Left-hand=Yes");
  EXPECT_TRUE(Holds(table, "\n| Response|           DATA  "));
  EXPECT_TRUE(Holds(table, "\n|   Name  |      Category Counts"));
  EXPECT_TRUE(Holds(table, "\n| poor    |  0        3         3 "));
}

// Four hundred scales of ten categories, each with its landmarks and plots.
TEST(Table8, OfHundredsOfScalesIsWrittenForEach) {
  std::string text =
      "Flanks=2\nModels=?,#,R9\nT8NBC=NBC\nIterations=3\nLabels=\n1,Persons\n1-20=p\n*\n"
      "2,Items\n1-400=i\n*\nData=\n";
  for (int p = 1; p <= 20; ++p) {
    text += std::to_string(p) + ",1-400";
    for (int i = 0; i < 400; ++i) text += "," + std::to_string((p / 2 + i * (p % 2) + p % 3) % 10);
    text += "\n";
  }
  const std::string table = Table8Of("", text.c_str());
  EXPECT_TRUE(Holds(table, "Table 8.1.1  Category Statistics.\n"));
  EXPECT_TRUE(Holds(table, "Table 8.1.400  Category Statistics.\n"));
}

}  // namespace
}  // namespace flanks
