#include "report/table14.h"

#include <algorithm>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "report/format/box.h"
#include "report/table14_columns.h"
#include "report/table14_sort.h"
#include "support/bias_run.h"

namespace flanks {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// Six persons, raters Ann, Bob and Cy, tasks Talk and Read; raters and tasks have bias terms.
constexpr const char* kDesign =
    "Output=report.txt\nFlanks=3\nPositive=1\nModels=?,?B,?B,R3\nLabels=\n1,Persons\n1-6=p\n*\n"
    "2,Raters\n1=Ann\n2=Bob\n3=Cy\n*\n3,Tasks\n1=Talk\n2=Read\n*\n";

std::string Ratings() {
  std::string lines;
  for (int person = 1; person <= 6; ++person)
    for (int rater = 1; rater <= 3; ++rater)
      for (int task = 1; task <= 2; ++task)
        lines += std::to_string(person) + "," + std::to_string(rater) + "," + std::to_string(task) +
                 "," + std::to_string((person * 5 + rater * 3 + task + person * rater) % 4) + "\n";
  return lines;
}

std::string Specification(const std::string& more = "") {
  return std::string(kDesign) + more + "\nData=\n" + Ratings();
}

// The six terms with figures of our own, by rater and task.
struct PairTest : ::testing::Test {
  BiasRun run;

  void Prepare(const std::string& more = "") {
    run.Prepare(Specification(more));
    for (BiasTerm& term : run.results->terms) term = {};
  }
  BiasTerm& Term(int rater, int task) { return run.results->terms[run.TermOf({rater, task})]; }
  void Set(int rater, int task, float Bias, float error, float count,
           BiasStanding standing = BiasStanding::estimable) {
    BiasTerm& term = Term(rater, task);
    term.Bias = Bias;
    term.StandardError = error;
    term.Count = count;
    term.RawScore = count * 2.0f;
    term.ExpectedRaw = count * 2.0f - count * Bias / 2.0f;  // an average of half the bias
    term.standing = standing;
  }
  void SetMeasure(int slot, float measure) {
    run.analysis.estimates.elements[ElementSlot(slot)].ElementMeasure = measure;
  }
  // Raters have the slots 7 to 9, behind six persons.
  std::string Line(std::size_t target, BiasTermRow first, BiasTermRow second) {
    const Table14Layout layout = LayOutTable14(run.analysis, *run.results, target);
    return BoxToAscii(PairLine(run.analysis, layout, *run.results, {first, second}));
  }
  std::string Table() {
    return run.ReportOf([&](auto& step) { WriteTable14(step, *run.results); });
  }
};

// Biases .8 and -.1 with standard errors .2 and .3 of 10 and 15 responses: contrast .9, joint S.E.
// the root of .13, t 2.496151; Welch's d.f. .13^2 x 9 x 14 / (.09^2 x 9 + .04^2 x 14) = 22.344;
// two-sided probability of t on 22 d.f. .020539 (R: 2 * pt(-2.496151, 22)).
TEST_F(PairTest, ARowHasBothTargetsTheirContextAndTheContrast) {
  Prepare();
  Set(1, 2, 0.8f, 0.2f, 10.0f);
  Set(2, 2, -0.1f, 0.3f, 15.0f);
  SetMeasure(7, 1.25f);
  SetMeasure(8, -0.5f);
  // Raters are severe when they are high: a bias that adds to the ratings lowers the measure.
  EXPECT_EQ(Line(0, run.TermOf({1, 2}), run.TermOf({2, 2})),
            "|   1 Ann   |    .45   .20    .40 |   2 Bob   |   -.40   .30   -.05   2 Read |"
            "    .90   .36  2.50    22 .0205 |");
}

TEST_F(PairTest, HeadsStandAboveTheirColumns) {
  Prepare();
  const Table14Layout layout = LayOutTable14(run.analysis, *run.results, 0);
  EXPECT_EQ(BoxToAscii(layout.headingRows[1]),
            "|Target-    |  Target     Obs-Exp |Target-    |  Target     Obs-Exp Context  |"
            "         Joint    Rasch-Welch   |");
  EXPECT_EQ(BoxToAscii(layout.headingRows[2]),
            "| Num Raters| Measr  S.E. Average | Num Raters| Measr  S.E. Average Num Tasks|"
            "Contrast  S.E.   t   d.f. Prob. |");
  EXPECT_EQ(layout.rulePattern, "x" + std::string(11, '-') + "x" + std::string(21, '-') + "x" +
                                    std::string(11, '-') + "x" + std::string(30, '-') + "x" +
                                    std::string(32, '-') + "x");
  const Table14Layout other = LayOutTable14(run.analysis, *run.results, 1);
  EXPECT_THAT(BoxToAscii(other.headingRows[2]), HasSubstr("| Num Tasks| Measr"));
  EXPECT_THAT(BoxToAscii(other.headingRows[2]), HasSubstr("Average Num Raters|Contrast"));
}

TEST_F(PairTest, APositiveFlankAddsTheBias) {
  Prepare();
  run.analysis.design.flanks.FlankOrientation[FlankNo(2)] = kPositiveOrientation;
  Set(1, 1, 0.8f, 0.2f, 10.0f);
  Set(3, 1, -0.1f, 0.3f, 15.0f);
  SetMeasure(7, 1.25f);
  SetMeasure(9, -0.5f);
  EXPECT_EQ(Line(0, run.TermOf({1, 1}), run.TermOf({3, 1})),
            "|   1 Ann   |   2.05   .20    .40 |   3 Cy    |   -.60   .30   -.05   1 Talk |"
            "    .90   .36  2.50    22 .0205 |");
  const Table14Layout layout = LayOutTable14(run.analysis, *run.results, 0);
  EXPECT_THAT(BoxToAscii(layout.headingRows[1]), HasSubstr("|Target+    |"));
}

// User units are 50 and 10 for a logit.  The direction turns contrast and t and nothing else.
TEST_F(PairTest, FiguresAreInUserUnitsAndInTheDirectionOfBias) {
  Prepare();
  Settings& settings = run.analysis.settings;
  settings.Umean = 50.0f;
  settings.Uscale = 10.0f;
  settings.Udecimals = 1;
  settings.Bias = -1;
  Set(1, 2, 0.8f, 0.2f, 10.0f);
  Set(2, 2, -0.1f, 0.3f, 15.0f);
  SetMeasure(7, 1.25f);
  SetMeasure(8, -0.5f);
  EXPECT_EQ(Line(0, run.TermOf({1, 2}), run.TermOf({2, 2})),
            "|   1 Ann   |   54.5   2.0    .40 |   2 Bob   |   46.0   3.0   -.05   2 Read |"
            "   -9.0   3.6 -2.50    22 .0205 |");
}

TEST_F(PairTest, ExtremeTargetsAreMarked) {
  Prepare();
  Set(1, 2, 2.0f, 1.0f, 6.0f, BiasStanding::maximum);
  Set(2, 2, -2.0f, 1.0f, 6.0f, BiasStanding::minimum);
  SetMeasure(7, 0.0f);
  SetMeasure(8, 0.0f);
  // Variances 1 and 1 of 6 and 6 responses: 10 degrees of freedom; t = 4 / root 2.
  EXPECT_EQ(Line(0, run.TermOf({1, 2}), run.TermOf({2, 2})),
            "|   1 Ann   | <-2.00  1.00   1.00 |   2 Bob   | > 2.00  1.00  -1.00   2 Read |"
            "   4.00  1.41  2.83    10 .0179 |");
}

TEST_F(PairTest, WithoutAnErrorThereIsNoTest) {
  Prepare();
  Set(1, 2, 0.5f, 0.0f, 6.0f);
  Set(2, 2, 0.25f, 0.3f, 6.0f);
  SetMeasure(7, 0.0f);
  SetMeasure(8, 0.0f);
  EXPECT_EQ(Line(0, run.TermOf({1, 2}), run.TermOf({2, 2})),
            "|   1 Ann   |   -.50   .00    .25 |   2 Bob   |   -.25   .30    .13   2 Read |"
            "    .25   .30" +
                std::string(19, ' ') + "|");
}

TEST_F(PairTest, OneResponseOnASideLeavesNoDegreesOfFreedom) {
  Prepare();
  Set(1, 2, 0.5f, 0.4f, 1.0f);
  Set(2, 2, 0.25f, 0.3f, 6.0f);
  EXPECT_THAT(Line(0, run.TermOf({1, 2}), run.TermOf({2, 2})),
              HasSubstr("|    .25   .50   .50     0 .0000 |"));
}

// ---- The order

struct OrderTest : PairTest {
  // Raters of the rows of the first Table, in their order: "Ann-Bob Talk ...".
  std::string Order(const std::string& letters) {
    const BiasPairing pairing(*run.results, 0);
    PairRecords records(run.analysis, *run.results, 0, letters);
    std::vector<std::string> lines;
    pairing.ForEachPair([&](BiasPair pair) {
      lines.emplace_back(records.RecordOf(
          pair, FiguresOf(run.analysis.settings, ContrastOf(run.results->terms[pair.first],
                                                            run.results->terms[pair.second]))));
      return true;
    });
    std::stable_sort(lines.begin(), lines.end(), [](const std::string& a, const std::string& b) {
      EXPECT_EQ(a.size(), b.size());
      return a.substr(kPairSortColumn - 1) < b.substr(kPairSortColumn - 1);
    });
    std::string order;
    for (const std::string& line : lines) {
      const BiasPair pair = PairRecords::PairOf(line);
      order += (order.empty() ? "" : " ") + Label(pair.first, 0).substr(0, 1) +
               Label(pair.second, 0).substr(0, 1) + Label(pair.first, 1).substr(0, 1);
      EXPECT_EQ(Label(pair.first, 1), Label(pair.second, 1));
    }
    return order;
  }
  std::string Label(BiasTermRow term, std::size_t which) {
    return run.analysis.design.elements.ElementLabel[run.results->list.element(term, which)];
  }
};

// Contrasts: Talk AB .5, AC .9, BC .4; Read AB -.6, AC -.3, BC .3.  Their t, with the S.E. .1 of
// Talk and .3 of Read: 3.54, 6.36, 2.83; -1.41, -.71, .71.
TEST_F(OrderTest, ComparesByEachLetter) {
  Prepare();
  Set(1, 1, 0.6f, 0.1f, 6.0f);
  Set(2, 1, 0.1f, 0.1f, 6.0f);
  Set(3, 1, -0.3f, 0.1f, 6.0f);
  Set(1, 2, -0.3f, 0.3f, 6.0f);
  Set(2, 2, 0.3f, 0.3f, 6.0f);
  Set(3, 2, 0.0f, 0.3f, 6.0f);
  EXPECT_EQ(Order(""), "ABT ACT BCT ABR ACR BCR");
  EXPECT_EQ(Order("N"), "ABT ACT BCT ABR ACR BCR");
  EXPECT_EQ(Order("n"), "BCR ACR ABR BCT ACT ABT");
  EXPECT_EQ(Order("A"), "ABR ACR BCR ABT ACT BCT");
  EXPECT_EQ(Order("a"), "BCT ACT ABT BCR ACR ABR");
  EXPECT_EQ(Order("M"), "ABR ACR BCR BCT ABT ACT");
  EXPECT_EQ(Order("m"), "ACT ABT BCT BCR ACR ABR");
  EXPECT_EQ(Order("F"), Order("M"));
  EXPECT_EQ(Order("f"), Order("m"));
  Term(3, 1).StandardError = 0.9f;  // t of AC .99, of BC .44
  EXPECT_EQ(Order("T"), "ABR ACR BCT BCR ACT ABT");
  EXPECT_EQ(Order("z"), "ABT ACT BCR BCT ACR ABR");
  EXPECT_EQ(Order("t"), Order("z"));
  EXPECT_EQ(Order("Z"), Order("T"));
}

TEST_F(OrderTest, EqualValuesGoByTheNextLetterAndThenByThePairing) {
  Prepare();
  for (int task = 1; task <= 2; ++task)
    for (int rater = 1; rater <= 3; ++rater) Set(rater, task, 0.0f, 0.1f, 6.0f);
  EXPECT_EQ(Order("M"), "ABT ACT BCT ABR ACR BCR");
  EXPECT_EQ(Order("mA"), "ABR ACR BCR ABT ACT BCT");
}

TEST_F(OrderTest, ExtremePairsStandApartAtTheEndWhereTheyWouldBe) {
  Prepare();
  Set(1, 1, 0.1f, 0.3f, 6.0f, BiasStanding::maximum);
  Set(2, 1, 0.2f, 0.1f, 6.0f);
  Set(3, 1, 0.3f, 0.1f, 6.0f, BiasStanding::maximum);
  Set(1, 2, 0.6f, 0.3f, 6.0f);
  Set(2, 2, 0.5f, 0.3f, 6.0f, BiasStanding::minimum);
  Set(3, 2, 0.0f, 0.3f, 6.0f);
  // High: AB Talk and AB Read; low: BC Talk and BC Read; AC Talk are both at their ends.
  EXPECT_EQ(Order("MN"), "BCT BCR ACR ABT ABR ACT");
  EXPECT_EQ(Order("mN"), "ABR ABT ACR BCR BCT ACT");
}

TEST_F(OrderTest, EqualLabelsAreOneAndLabelsCompareAsBytes) {
  Prepare();
  for (int task = 1; task <= 2; ++task)
    for (int rater = 1; rater <= 3; ++rater) Set(rater, task, 0.0f, 0.1f, 6.0f);
  Column<ElementSlot, std::string>& labels = run.analysis.design.elements.ElementLabel;
  labels[ElementSlot(7)] = "\xC3\x84nn";  // behind all letters without marks
  labels[ElementSlot(8)] = "b";
  labels[ElementSlot(9)] = "B ";
  EXPECT_EQ(Order("A"),
            "bBR \xC3"
            "BR \xC3"
            "bR bBT \xC3"
            "BT \xC3"
            "bT");
  labels[ElementSlot(7)] = "b  ";
  EXPECT_EQ(Order("AN"), "bBR bBR bbR bBT bBT bbT");  // by the second label before the numbers
}

// ---- The Table

struct TableTest : PairTest {
  // The shell has its turn at each of the five lines that are shown first, and at each row.
  void AtThirdRow(std::function<void()> action) {
    run.shell.ActionAtPump(run.shell.pumps + 5 + 3, std::move(action));
  }
  static std::vector<std::string> LinesWith(const std::string& text, const std::string& part) {
    std::vector<std::string> lines;
    std::istringstream input(text);
    for (std::string line; std::getline(input, line);)
      if (line.find(part) != std::string::npos) lines.push_back(line);
    return lines;
  }
};

TEST_F(TableTest, HasASubtableForEachTargetAndOrder) {
  run.Prepare(Specification("Arrange=0mN,1A,N"));
  const std::string table = Table();
  EXPECT_THAT(LinesWith(table, "Table 14"),
              ElementsAre("Table 14.1.1.1  Bias/Interaction Pairwise Report (arranged by mN).",
                          "Table 14.1.1.2  Bias/Interaction Pairwise Report (arranged by N).",
                          "Table 14.1.2.1  Bias/Interaction Pairwise Report (arranged by mN).",
                          "Table 14.1.2.2  Bias/Interaction Pairwise Report (arranged by N)."));
  EXPECT_THAT(LinesWith(table, "There are"),
              ElementsAre(" There are 6 pairwise terms for 2. Raters (with 3. Tasks)",
                          " There are 3 pairwise terms for 3. Tasks (with 2. Raters)"));
  EXPECT_EQ(LinesWith(table, " Ann ").size(), 2u * (4 + 1));
  const std::string screen = run.Screen();
  EXPECT_THAT(screen, HasSubstr(" There are 6 pairwise terms for 2. Raters (with 3. Tasks)\n"
                                "Press Ctrl+F to exit from Table 14 bias/interaction reporting.\n"
                                "Sorting...\nSorted\n"));
  EXPECT_EQ(run.shell.progress, "");  // no bar for a handful of pairs
}

TEST_F(TableTest, WithoutAnOrderOfItsOwnItIsArrangedByMeasure) {
  run.Prepare(Specification("Arrange=1N"));
  EXPECT_THAT(LinesWith(Table(), "Table 14.1.1"),
              ElementsAre("Table 14.1.1.1  Bias/Interaction Pairwise Report (arranged by mN)."));
}

TEST_F(TableTest, RowsAreInTheOrderTold) {
  run.Prepare(Specification("Arrange=0m"));
  const std::string table = Table();
  const std::vector<std::string> rows =
      LinesWith(table.substr(0, table.find("for 3. Tasks")), " Talk |");
  double last = 1E9;
  for (const std::string& row : rows) {
    const double contrast = std::stod(row.substr(row.find("Talk |") + 6));
    EXPECT_LE(contrast, last) << row;
    last = contrast;
  }
  EXPECT_EQ(rows.size(), 3u);
}

// Only Talk's first two raters differ by 1.5 and more; nothing by 9.
TEST_F(TableTest, ZscoreLeavesOutSmallAndUncertainContrasts) {
  Prepare("Zscore=1.5,3\nArrange=0N");
  Set(1, 1, 1.5f, 0.1f, 6.0f);
  Set(2, 1, 0.0f, 0.1f, 6.0f);
  Set(3, 1, 0.1f, 0.1f, 6.0f);
  Set(1, 2, -1.0f, 0.5f, 6.0f);
  Set(2, 2, 1.0f, 0.5f, 6.0f);  // 2 logits apart, t 2.83
  Set(3, 2, 0.0f, 0.0f, 6.0f);
  std::string table = Table();
  const std::string ofRaters = table.substr(0, table.find("for 3. Tasks"));
  EXPECT_EQ(LinesWith(ofRaters, " Talk |").size(), 1u);
  EXPECT_EQ(LinesWith(ofRaters, " Read |").size(), 0u);
  run.analysis.settings.Zscore = {9.0f, 0.0f};
  table = Table();
  EXPECT_EQ(LinesWith(table, "Table 14"),
            std::vector<std::string>(2, "Table 14. Nothing to report"));
  EXPECT_THAT(table, HasSubstr(" There are 6 pairwise terms"));
}

TEST_F(TableTest, WithoutPairsTheTargetIsTold) {
  Prepare();
  Set(1, 1, 0.0f, 0.1f, 6.0f);
  Set(1, 2, 0.0f, 0.1f, 6.0f);
  const std::string table = Table();
  EXPECT_THAT(table, HasSubstr(" There are 0 pairwise terms for 2. Raters (with 3. Tasks)\n"
                               "Table 14: Raters - No pairwise terms\n"));
  EXPECT_THAT(table, HasSubstr("Table 14.1.2.1  "));
}

TEST_F(TableTest, TheFlagOfTheTableLeavesItOut) {
  run.Prepare(Specification("Tables=11111111111110"));
  EXPECT_EQ(Table(), "");
  EXPECT_THAT(run.Screen(), Not(HasSubstr("pairwise")));
}

TEST_F(TableTest, ACountBeyondThirtyTwoBitsIsAFloor) {
  Prepare();
  const auto line = [&](std::int64_t pairs) {
    return PairCountLine(run.analysis.design, run.results->interaction, 1, pairs);
  };
  EXPECT_EQ(line(2147483647), " There are 2147483647 pairwise terms for 3. Tasks (with 2. Raters)");
  EXPECT_EQ(line(2147483648),
            " There are at least 2147483647 pairwise terms for 3. Tasks (with 2. Raters)");
}

TEST(Table14, ThreeWayTermsShowBothElementsOfTheContext) {
  BiasRun run;
  std::string specification = Specification();
  specification.replace(specification.find("?,?B,?B"), 7, "?B,?B,?B");
  run.Prepare(specification, "Arrange=0N");
  const std::string table = run.ReportOf([&](auto& step) { WriteTable14(step, *run.results); });
  EXPECT_THAT(table, HasSubstr(" pairwise terms for 2. Raters (with 1. Persons 3. Tasks)\n"));
  EXPECT_THAT(table, HasSubstr("Average Num Persons Num Tasks|Contrast"));
  EXPECT_THAT(table, HasSubstr("   4 p         2 Read |"));
}

// 450 raters of one task: 101,025 pairs, none of them 99 logits apart.
std::string ManyRaters() {
  std::string specification =
      "Output=report.txt\nFlanks=3\nModels=?,?B,?B,R3\nZscore=99\nTables=00000000000001\nArrange="
      "0N\n"
      "Labels=\n1,Persons\n1-3\n*\n2,Raters\n1-450\n*\n3,Tasks\n1\n*\nData=\n";
  for (int person = 1; person <= 3; ++person)
    for (int rater = 1; rater <= 450; ++rater)
      specification += std::to_string(person) + "," + std::to_string(rater) + ",1," +
                       std::to_string((person * 5 + rater * 3 + person * rater) % 4) + "\n";
  return specification;
}

TEST_F(TableTest, ManyPairsHaveABar) {
  run.Prepare(ManyRaters());
  EXPECT_THAT(Table(), HasSubstr(" There are 101025 pairwise terms for 2. Raters (with 3. Tasks)\n"
                                 "Table 14. Nothing to report\n"));
  EXPECT_EQ(run.shell.progress, ">" + std::string(50, '=') + "<");
}

// ---- Ended early

TEST_F(TableTest, CtrlFEndsThePairingOfManyTerms) {
  run.Prepare(ManyRaters());
  // Two lines are shown, then a look at every 1,024 pairs.
  run.shell.ActionAtPump(run.shell.pumps + 2 + 3,
                         [&] { run.process.control.FinishRequested = true; });
  const std::string table = Table();
  EXPECT_THAT(table, testing::EndsWith("(with 3. Tasks)\n< Cancelled\n"));
  EXPECT_EQ(run.shell.progress, ">=<");
}

TEST_F(TableTest, CtrlFEndsTheTableAtTheNextRow) {
  run.Prepare(Specification("Arrange=0N"));
  AtThirdRow([&] { run.process.control.FinishRequested = true; });
  const std::string table = Table();
  EXPECT_EQ(LinesWith(table, " Ann ").size(), 2u);
  EXPECT_TRUE(table.ends_with("|\n< Cancelled\n")) << table;
  EXPECT_THAT(run.Screen(), HasSubstr("< Cancelled\n"));
  EXPECT_FALSE(run.process.control.FinishRequested);
  EXPECT_FALSE(run.console.stopping());
  EXPECT_THAT(run.folder.names(), Not(testing::Contains(HasSubstr("Pairs"))));
}

TEST_F(TableTest, AFormerCtrlFDoesNotEndIt) {
  run.Prepare(Specification("Arrange=0N"));
  run.process.control.FinishRequested = true;
  EXPECT_THAT(Table(), Not(HasSubstr("< Cancelled")));
}

TEST_F(TableTest, BreakingOffTheRunEndsItWithoutAWord) {
  run.Prepare(Specification("Arrange=0N"));
  AtThirdRow([&] { run.process.control.CancelRequested = true; });
  const std::string table = Table();
  EXPECT_EQ(LinesWith(table, " Ann ").size(), 2u);
  EXPECT_THAT(table, Not(HasSubstr("Cancelled")));
  EXPECT_TRUE(run.console.stopping());
}

// Six records of 32 digits do not fit, or do and cannot be written once more in order.
TEST_F(TableTest, AFullDiskCostsTheTableAndNotTheRun) {
  run.Prepare(Specification("Arrange=0N"));
  for (const std::int64_t room : {20, 220}) {
    FileFaultPlan plan;
    plan.bytesThatFit = room;
    run.analysis.work.plan = &plan;
    const std::string table = Table();
    EXPECT_THAT(LinesWith(table, "Table 14 is not complete: File write failure for "),
                testing::SizeIs(1));
    EXPECT_THAT(table, HasSubstr(room == 20 ? "-Pairs-" : "-Sort-"));
    EXPECT_THAT(table, HasSubstr("No space left on device"));
    EXPECT_FALSE(run.console.stopping());
    EXPECT_THAT(run.folder.names(),
                Not(testing::Contains(testing::AnyOf(HasSubstr("-Pairs-"), HasSubstr("-Sort-")))));
  }
  run.analysis.work.plan = nullptr;
}

// ---- Names and numbers

// The design of this file with other numbers: the raters have 5, 2 and 9 in place of 1, 2 and 3,
// the tasks 8 and 4, and the lists stand in another order.
std::string Renumbered() {
  const int raters[] = {5, 2, 9}, tasks[] = {8, 4};
  std::string lines;
  for (int person = 1; person <= 6; ++person)
    for (int rater = 1; rater <= 3; ++rater)
      for (int task = 1; task <= 2; ++task)
        lines += std::to_string(person) + "," + std::to_string(raters[rater - 1]) + "," +
                 std::to_string(tasks[task - 1]) + "," +
                 std::to_string((person * 5 + rater * 3 + task + person * rater) % 4) + "\n";
  return "Output=report.txt\nFlanks=3\nPositive=1\nModels=?,?B,?B,R3\nLabels=\n3,Tasks\n8=Talk\n"
         "4=Read\n*\n2,Raters\n9=Cy\n5=Ann\n2=Bob\n*\n1,Persons\n1-6=p\n*\nArrange=0N\nData=\n" +
         lines;
}

// The rows of Table 14 by their names, the targets in the order of the alphabet.
struct NamedRow {
  std::vector<double> first, second, contrast;
};

std::pair<int, std::string> NumberAndName(const std::string& cell) {
  std::istringstream input(cell);
  int number = 0;
  std::string name;
  input >> number >> name;
  return {number, name};
}

std::vector<double> NumbersOf(const std::string& cell, std::size_t count) {
  std::istringstream input(cell);
  std::vector<double> numbers(count);
  for (double& number : numbers) input >> number;
  return numbers;
}

std::map<std::string, NamedRow> RowsByName(const std::string& table,
                                           const std::map<std::string, int>& numberOf) {
  std::map<std::string, NamedRow> rows;
  std::istringstream input(table);
  for (std::string line; std::getline(input, line);) {
    if (line.empty() || line[0] != '|' || line.find("Tar") != std::string::npos ||
        line.find("Num") != std::string::npos || line[1] == '-')
      continue;
    std::vector<std::string> cells;
    std::istringstream parts(line.substr(1));
    for (std::string cell; std::getline(parts, cell, '|');) cells.push_back(cell);
    const auto [number1, name1] = NumberAndName(cells.at(0));
    const auto [number2, name2] = NumberAndName(cells.at(2));
    const auto [number3, name3] = NumberAndName(cells.at(3).substr(21));
    EXPECT_EQ(number1, numberOf.at(name1)) << line;
    EXPECT_EQ(number2, numberOf.at(name2)) << line;
    EXPECT_EQ(number3, numberOf.at(name3)) << line;
    NamedRow row{NumbersOf(cells[1], 3), NumbersOf(cells[3], 3), NumbersOf(cells.at(4), 5)};
    if (name2 < name1) {
      std::swap(row.first, row.second);
      row.contrast[0] = -row.contrast[0];
      row.contrast[2] = -row.contrast[2];
    }
    rows[std::min(name1, name2) + " " + std::max(name1, name2) + " " + name3] = row;
  }
  return rows;
}

TEST(Table14, NamesAndNumbersStayTogetherWhenElementsAreRenumberedAndReordered) {
  const auto rowsOf = [](const std::string& specification,
                         const std::map<std::string, int>& numberOf) {
    BiasRun run;
    run.Prepare(specification, "Convergence=.001,.0001");
    return RowsByName(run.ReportOf([&](auto& step) { WriteTable14(step, *run.results); }),
                      numberOf);
  };
  const auto rows = rowsOf(Specification("Arrange=0N"),
                           {{"Ann", 1}, {"Bob", 2}, {"Cy", 3}, {"Talk", 1}, {"Read", 2}});
  const auto others =
      rowsOf(Renumbered(), {{"Ann", 5}, {"Bob", 2}, {"Cy", 9}, {"Talk", 8}, {"Read", 4}});
  EXPECT_EQ(rows.size(), 6u + 3u);
  ASSERT_EQ(others.size(), rows.size());
  std::set<double> contrasts;
  for (const auto& [names, row] : rows) {
    ASSERT_TRUE(others.contains(names)) << names;
    const NamedRow& other = others.at(names);
    // The last digit may be rounded otherwise.
    EXPECT_THAT(other.first, testing::Pointwise(testing::DoubleNear(0.011), row.first)) << names;
    EXPECT_THAT(other.second, testing::Pointwise(testing::DoubleNear(0.011), row.second)) << names;
    EXPECT_THAT(other.contrast, testing::Pointwise(testing::DoubleNear(0.011), row.contrast))
        << names;
    contrasts.insert(row.contrast[0]);
  }
  EXPECT_GT(contrasts.size(),
            6u);  // rows that could be exchanged without notice would prove nothing
}

}  // namespace
}  // namespace flanks
