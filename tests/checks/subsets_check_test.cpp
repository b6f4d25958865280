// Connectivity in whole runs: what the report and the screen say of it, and how it is passed by.
#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "support/analysis_run.h"

namespace flanks {
namespace {

constexpr char kConnected[] = "Subset connection O.K.";
constexpr char kTwoSubsets[] = "Warning (6)! There may be 2 disjoint subsets";
constexpr char kNotVerified[] = "Warning (5)! Subset connection not verified";
constexpr char kThereAre[] = "There are 2 disconnected subsets identified in Table 7.";
constexpr char kValidating[] =
    "Validating subset connection... Subsets=No to bypass, Ctrl+F to skip";

// Persons 1 and 2 with items 1 and 2, persons 3 and 4 with items 3 and 4; nobody is extreme.
constexpr char kBlocks[] = "1,1,1\n1,2,2\n2,1,0\n2,2,1\n3,3,1\n3,4,2\n4,3,0\n4,4,1\n";

std::string TwoFlanks(const std::string& more = "", const std::string& anchoredItems = "",
                      const std::string& itemOptions = "") {
  return "Flanks=2\nPositive=1\nNoncenter=1\nArrange=N\n" + more +
         "Models=?,?,R2\n*\nLabels=\n1,Persons\n1=Ann\n2=Bob\n3=Cid\n4=Dot\n*\n2,Items" +
         itemOptions + "\n" +
         (anchoredItems.empty() ? "1=one\n2=two\n3=three\n4=four\n" : anchoredItems) +
         "*\nData=data.txt\n";
}

std::size_t Times(const std::string& text, std::string_view part) {
  std::size_t times = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++times;
  return times;
}

// The lines of the report behind the last Table.
std::string LastLine(const std::string& report) {
  const std::size_t end = report.find_last_not_of('\n');
  return report.substr(report.rfind('\n', end) + 1, end - report.rfind('\n', end));
}

struct Checked : AnalysisRun {
  Checked(const std::string& specification, const std::string& data) {
    Write("data.txt", data);
    Analyze(specification);
  }
};

TEST(Subsets, TwoBlocksAreNamedInTable3AndInTable7) {
  const Checked run(TwoFlanks(), kBlocks);
  ASSERT_EQ(run.exitCode, 0) << run.Screen();
  const std::string report = run.Report();
  EXPECT_EQ(Times(report, kTwoSubsets), 2u);  // in Table 3 and as the last line
  EXPECT_LT(report.find("PROX   1"), report.find(kTwoSubsets));
  EXPECT_LT(report.find(kTwoSubsets), report.find("PROX   2"));
  EXPECT_EQ(LastLine(report), kTwoSubsets);
  EXPECT_LT(report.find(kThereAre), report.find("Table 7.1.1"));
  for (const char* row :
       {"1 Ann in subset: 1", "2 Bob in subset: 1", "3 Cid in subset: 2", "4 Dot in subset: 2",
        "1 one in subset: 1", "3 three in subset: 2"})
    EXPECT_NE(report.find(row), std::string::npos) << row;
  const std::string screen = run.Screen();
  EXPECT_LT(screen.find(kValidating), screen.find("PROX   1"));
  EXPECT_NE(screen.find("Consolidating 2 subsets\n"), std::string::npos);
  EXPECT_EQ(Times(screen, kValidating), 1u);
  EXPECT_EQ(Times(report, "Validating"), 0u);  // a line of progress
}

TEST(Subsets, OneDatumConnectsTheBlocks) {
  const Checked run(TwoFlanks(), std::string(kBlocks) + "2,3,1\n");
  const std::string report = run.Report();
  EXPECT_EQ(Times(report, kConnected), 2u);
  EXPECT_EQ(LastLine(report), kConnected);
  EXPECT_EQ(report.find("subset:"), std::string::npos);
  EXPECT_EQ(report.find("There are"), std::string::npos);
  EXPECT_EQ(run.Screen().find("Consolidating"), std::string::npos);
}

TEST(Subsets, AnAnchorInEachBlockConnectsThem) {
  const Checked run(TwoFlanks("", "1=one,-.5\n2=two\n3=three,.5\n4=four\n", ",A"), kBlocks);
  ASSERT_EQ(run.exitCode, 0) << run.Screen();
  EXPECT_EQ(LastLine(run.Report()), kConnected);
}

// The items are two groups, each at a given mean, as the advice for such designs has it.
TEST(Subsets, GroupAnchorsConnectTheBlocks) {
  const Checked run(TwoFlanks("", "1=one,0,1\n2=two,0,1\n3=three,0,2\n4=four,0,2\n", ",G"),
                    kBlocks);
  ASSERT_EQ(run.exitCode, 0) << run.Screen();
  EXPECT_EQ(LastLine(run.Report()), kConnected);
}

// All items stand at the same place, so that the persons are compared by their ratings alone.
TEST(Subsets, ADummyFlankConnectsTheBlocks) {
  const Checked run(TwoFlanks("", "", ",D"), kBlocks);
  ASSERT_EQ(run.exitCode, 0) << run.Screen();
  EXPECT_EQ(LastLine(run.Report()), kConnected);
}

// Persons 1 to 5 with rater 1 and 6 to 10 with rater 2, all on the same three items.
std::string NestedRatings() {
  std::string data;
  for (int person = 1; person <= 10; ++person)
    for (int item = 1; item <= 3; ++item)
      data += std::to_string(person) + (person <= 5 ? ",1," : ",2,") + std::to_string(item) + "," +
              std::to_string((person * item + person) % 3) + "\n";
  return data;
}

constexpr char kNestedSpecification[] =
    "Flanks=3\nPositive=1\nNoncenter=1\nArrange=N\nModels=?,?,?,R2\n*\nLabels=\n1,Persons\n1-10=\n"
    "*\n2,Raters\n1=Eva\n2=Fay\n*\n3,Items\n1-3=\n*\nData=data.txt\n";

TEST(Subsets, RatersWhoShareOnlyItemsAreDisjoint) {
  const Checked run(kNestedSpecification, NestedRatings());
  ASSERT_EQ(run.exitCode, 0) << run.Screen();
  const std::string report = run.Report();
  EXPECT_EQ(LastLine(report), kTwoSubsets);
  EXPECT_NE(report.find("Eva in subset: 1"), std::string::npos);
  EXPECT_NE(report.find("Fay in subset: 2"), std::string::npos);
  EXPECT_EQ(Times(report, "in subset: 1 2"), 3u);  // the items are in both
}

TEST(Subsets, OnePersonWhomBothRateConnectsThem) {
  const Checked run(kNestedSpecification, NestedRatings() + "3,2,1,2\n");
  EXPECT_EQ(LastLine(run.Report()), kConnected);
}

TEST(Subsets, TheLineBeforeTable7FollowsItsFlag) {
  const Checked only3(TwoFlanks("Tables=001\n"), kBlocks);
  EXPECT_EQ(only3.Report().find("There are"), std::string::npos);
  EXPECT_EQ(Times(only3.Report(), kTwoSubsets), 2u);
  const Checked only7(TwoFlanks("Tables=0000001\n"), kBlocks);
  EXPECT_NE(only7.Report().find(kThereAre), std::string::npos);
}

TEST(Subsets, NoLeavesTheCheckOut) {
  const Checked run(TwoFlanks("Subsets=No\n"), kBlocks);
  const std::string report = run.Report();
  EXPECT_NE(report.find("Subset detection = N\n"), std::string::npos);
  EXPECT_EQ(LastLine(report), "Warning (2)! Subset checking bypassed");
  EXPECT_EQ(run.Screen().find("Validating"), std::string::npos);
  EXPECT_EQ(report.find("in subset:"), std::string::npos);
  EXPECT_EQ(Times(report, "Subset "), 2u);  // Table 1 and the note
}

TEST(Subsets, ReportAndListCheckAsWell) {
  for (const char letter : {'R', 'L'}) {
    const Checked run(TwoFlanks(std::string("Subsets=") + letter + "\n"), kBlocks);
    const std::string report = run.Report();
    EXPECT_NE(report.find(std::string("Subset detection = ") + letter + "\n"), std::string::npos);
    EXPECT_NE(report.find("4 Dot in subset: 2"), std::string::npos) << letter;
  }
}

// The check changes nothing in the measures.
TEST(Subsets, MeasuresAreTheSameWithAndWithoutTheCheck) {
  const Checked with(TwoFlanks(), kBlocks), without(TwoFlanks("Subsets=No\n"), kBlocks);
  const auto& a = with.analysis.estimates.elements;
  const auto& b = without.analysis.estimates.elements;
  for (ElementSlot e : Upward(a)) EXPECT_EQ(a[e].ElementMeasure, b[e].ElementMeasure);
}

// Ctrl+F at the first moment of the first iteration that satisfies `when`.
struct Skipped : AnalysisRun {
  template <class When>
  Skipped(const std::string& specification, const std::string& data, const When& when) {
    Write("data.txt", data);
    bool pressed = false;
    for (int pump = 1; pump < 500; ++pump)
      shell.ActionAtPump(pump, [this, &pressed, &when] {
        if (pressed || analysis.estimates.iteration.IterationNumber != 1 || !when(*this)) return;
        process.control.KeyBuffer += '\x06';
        pressed = true;
      });
    Analyze(specification);
    EXPECT_TRUE(pressed);
  }
};

void ExpectSkipped(const AnalysisRun& run) {
  EXPECT_EQ(run.exitCode, 0) << run.Screen();
  EXPECT_EQ(Times(run.shell.progress, "#"), 1u);
  const std::string report = run.Report();
  EXPECT_EQ(LastLine(report), kNotVerified);
  EXPECT_EQ(report.find("in subset:"), std::string::npos);
  EXPECT_EQ(report.find("There are"), std::string::npos);
  // The key ended the check and not the iterations.
  EXPECT_TRUE(run.analysis.estimates.iteration.converged);
  EXPECT_GT(run.analysis.estimates.iteration.IterationNumber, 5);
  EXPECT_FALSE(run.analysis.subsets.several());
}

TEST(Subsets, CtrlFSkipsTheCheckInThePass) {
  const Skipped run(TwoFlanks(), kBlocks, [](const AnalysisRun&) { return true; });
  ExpectSkipped(run);
  EXPECT_NE(run.shell.progress.find(">.#<"), std::string::npos);
  EXPECT_EQ(run.Screen().find("Consolidating"), std::string::npos);
}

TEST(Subsets, CtrlFSkipsTheCheckInItsConsolidation) {
  const Skipped run(TwoFlanks(), kBlocks, [](const AnalysisRun& at) {
    return at.shell.Screen().find("PROX   1") != std::string::npos;
  });
  ExpectSkipped(run);
  EXPECT_NE(run.Screen().find("Consolidating 2 subsets"), std::string::npos);
  EXPECT_EQ(run.Screen().find("Warning (6)!"), std::string::npos);
}

// What the first iteration found is said there; the notes of a run that a fault ends are not given.
TEST(Subsets, ARunThatAFaultEndsHasNoClosingNote) {
  const Checked run("Flanks=2\nModels=?,?,R2\nLabels=\n1,A\n1-2=\n*\n2,B\n1=b\n*\nData=data.txt\n",
                    "1,1,0\n2,1,2\n");
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(Times(run.Report(), kConnected), 1u);
  EXPECT_EQ(Times(run.Report(), "Subset "), 1u);
}

}  // namespace
}  // namespace flanks
