// Tables 11, 12 and 13 from whole runs, and the rows of Table 13 by hand.
#include "report/bias_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "report/bias_columns.h"
#include "report/table13.h"
#include "run/console.h"
#include "run/messages.h"
#include "run/pipeline_bias.h"
#include "stats/bias_fit.h"
#include "support/analysis_run.h"

namespace flanks {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* kHead = "Output=report.txt\nFlanks=3\nPositive=1\n";
constexpr const char* kLabels = R"(Labels=
1,Persons
1-8=p
*
2,Raters
3=Zoe
11=Al
40=Mia
*
3,Items
1=First
2=Second
*
Data=data.txt
)";

// Rater 11 gives item 2 two points too many; rater 40 gives item 1 nothing.
std::string Responses() {
  std::string lines;
  const int raters[] = {3, 11, 40};
  for (int person = 1; person <= 8; ++person) {
    for (const int rater : raters) {
      for (int item = 1; item <= 2; ++item) {
        int score = (person * 7 + rater * 3 + item * 5) % 3;
        if (rater == 11 && item == 2) score += 2;
        if (rater == 40 && item == 1) score = 0;
        lines += std::to_string(person) + "," + std::to_string(rater) + "," + std::to_string(item) +
                 "," + std::to_string(score) + "\n";
      }
    }
  }
  return lines;
}

class BiasTables : public ::testing::Test {
 protected:
  void Analyze(const std::string& statements = "Models=?,?B,?B,R4\n",
               const std::string& more = "") {
    run.Write("data.txt", Responses());
    ASSERT_EQ(run.Analyze(kHead + statements + more + kLabels), 0) << run.Screen();
  }
  const Analysis& analysis() { return run.analysis; }
  Settings& settings() { return run.analysis.settings; }
  // The results of an interaction of the finished run.
  BiasResults Results(std::size_t interaction = 0) {
    Console console(run.shell, run.dialogs, run.process.control, run.analysis.settings,
                    run.analysis.report);
    BiasEstimates bias(PassPartsOf(run.analysis, console),
                       BiasInteractionsOf(run.analysis.design).at(interaction));
    EXPECT_TRUE(FindBiasTerms(bias, console));
    EstimateBias(BiasOptionsOf(run.analysis.settings, run.analysis.estimates), bias, console);
    return FitBias(WilsonHilferty::exact, bias, console);
  }
  // The lines of the report from the title on that begins so, to the next empty line but one.
  std::vector<std::string> Table(const std::string& title) {
    const std::string report = run.Report();
    std::vector<std::string> lines;
    std::size_t from = report.find("\n" + title);
    if (from == std::string::npos) return lines;
    int empty = 0;
    for (++from; from < report.size() && empty < 2;) {
      const std::size_t to = report.find('\n', from);
      lines.push_back(report.substr(from, to - from));
      if (lines.back().empty()) ++empty;
      from = to + 1;
    }
    return lines;
  }
  std::string RowOf(const std::string& title, const std::string& label) {
    for (const std::string& line : Table(title))
      if (line.find(label) != std::string::npos) return line;
    return "no row of " + label;
  }

  AnalysisRun run;
};

// A finished term as no estimation would give it.
BiasTerm MadeTerm(float bias, BiasStanding standing = BiasStanding::estimable) {
  BiasTerm term;
  term.Bias = bias;
  term.StandardError = .25f;
  term.t = 4 * bias;
  term.RawScore = 12.0f;
  term.ExpectedRaw = 9.257f;
  term.Count = 8.0f;
  term.DegreesOfFreedom = 7;
  term.Probability = .01234f;
  term.InfitMeanSquare = 1.26f;
  term.OutfitMeanSquare = .94f;
  term.standing = standing;
  return term;
}

TEST_F(BiasTables, TermsAreListedInTheirOrders) {
  Analyze("Models=?,?B,?B,R4\n", "Arrange=N,0a,2f\n");
  const std::string report = run.Report();
  EXPECT_THAT(report, HasSubstr("Table 13.1.1  Bias/Interaction Report (arranged by N)."));
  EXPECT_THAT(report, HasSubstr("Table 13.1.2  Bias/Interaction Report (arranged by a)."));
  EXPECT_THAT(report, Not(HasSubstr("Table 13.1.3")));
  std::vector<std::string> names;
  for (const std::string& line : Table("Table 13.1.1"))
    if (line.find(" First ") != std::string::npos || line.find(" Second") != std::string::npos)
      names.push_back(line.substr(line.rfind('|', line.size() - 2) + 1, 12));
  EXPECT_THAT(names, ElementsAre("  1   3 Zoe ", "  2  11 Al  ", "  3  40 Mia ", "  4   3 Zoe ",
                                 "  5  11 Al  ", "  6  40 Mia "));
  // Labels descend, items first: Second before First, and Zoe before Mia before Al.
  names.clear();
  for (const std::string& line : Table("Table 13.1.2"))
    if (line.find(" First ") != std::string::npos || line.find(" Second") != std::string::npos)
      names.push_back(line.substr(line.rfind('|', line.size() - 2) + 1, 12));
  EXPECT_THAT(names, ElementsAre("  4   3 Zoe ", "  6  40 Mia ", "  5  11 Al  ", "  1   3 Zoe ",
                                 "  3  40 Mia ", "  2  11 Al  "));
}

TEST_F(BiasTables, HeadsAreThoseOfTheDirection) {
  Analyze("Models=?,?B,?B,R4\n", "Bias=minus\nStandard errors=Real\n");
  const std::vector<std::string> table = Table("Table 13.1.1");
  ASSERT_GT(table.size(), 6u);
  EXPECT_THAT(table[3], StartsWith("|Observd  Expctd  Observd  Obs-Exp| Bias-  Model         "));
  EXPECT_THAT(table[4], StartsWith("|  Score   Score    Count  Average|  Size   S.E.     t   d.f. "
                                   "Prob. | MnSq  MnSq | Sq Num Raters measr- Num Items  measr-"));
  EXPECT_THAT(table, Contains(HasSubstr("Model, Populn: RMSE ")));
  EXPECT_THAT(table, Not(Contains(HasSubstr("Real, Populn: RMSE "))));
}

TEST_F(BiasTables, ARowHasTheFiguresOfItsTerm) {
  Analyze();
  BiasResults results = Results();
  results.terms[BiasTermRow(2)] = MadeTerm(-.736f);
  settings().Umean = 50.0f;
  settings().Uscale = 10.0f;
  settings().Udecimals = 1;
  const Table13Layout layout = LayOutTable13(analysis(), results);
  const std::string line = TermLine(analysis(), layout, results, BiasTermRow(2));
  // 12 observed, 9.257 expected of 8: (12 - 9.257) / 8 each.
  EXPECT_THAT(line.substr(1), StartsWith("   12       9.26     8        .34"));
  EXPECT_EQ(line.substr(35, 33), "   -7.4   2.5  -2.94     7 .0123 ");
  EXPECT_EQ(line.substr(69, 12), "  1.3    .9 ");
}

TEST_F(BiasTables, ExtremeTermsAreMarked) {
  Analyze();
  EXPECT_EQ(BiasSizeText(1.25, BiasStanding::maximum, 2), "< 1.25");
  EXPECT_EQ(BiasSizeText(-1.25, BiasStanding::minimum, 2), ">-1.25");
  EXPECT_EQ(BiasSizeText(-1.25, BiasStanding::estimable, 2), " -1.25");
  // Mia has given the first item nothing.
  EXPECT_THAT(RowOf("Table 13.1.1", " 3  40 Mia"), HasSubstr("| >"));
}

TEST_F(BiasTables, ATermThatIsNotEstimableHasItsScoresAndAWord) {
  Analyze();
  BiasResults results = Results();
  results.terms[BiasTermRow(1)] = MadeTerm(0.0f, BiasStanding::none);
  const Table13Layout layout = LayOutTable13(analysis(), results);
  const std::string line = TermLine(analysis(), layout, results, BiasTermRow(1));
  EXPECT_EQ(line.substr(1, 33), "   12       9.26     8           ");
  EXPECT_EQ(line.substr(35, 46), " Unmeasurable                                 ");
  EXPECT_EQ(line.size(), TermLine(analysis(), layout, results, BiasTermRow(2)).size());
}

TEST_F(BiasTables, AnElementWithoutAMeasureHasDashes) {
  Analyze();
  const BiasCell cell = BiasCellOf(analysis(), FlankNo(2));
  const ElementSlot mia = SlotsOf(analysis().design.flanks, FlankNo(2)).high;
  EXPECT_THAT(BiasCellText(analysis(), cell, mia), StartsWith(" 40 Mia    "));
  run.analysis.estimates.elements[mia].ElementStatus = kStatusDropped;
  EXPECT_EQ(BiasCellText(analysis(), cell, mia), "--- Mia          ");
}

TEST_F(BiasTables, LeftHandPutsTheTermInFront) {
  Analyze("Models=?,?B,?B,R4\n", "Left-hand=Yes\n");
  const std::vector<std::string> table = Table("Table 13.1.1");
  ASSERT_GT(table.size(), 6u);
  EXPECT_THAT(table[4], StartsWith("| Sq Num Raters measr- Num Items  measr-"));
  EXPECT_THAT(table[4], EndsWith("| MnSq  MnSq |"));
}

TEST_F(BiasTables, OrdersOfArrange) {
  EXPECT_THAT(BiasOrders("mN,fN,N"), ElementsAre("mN", "fN", "N"));
  EXPECT_THAT(BiasOrders("1N,0Ta,2f"), ElementsAre("Ta"));
  EXPECT_THAT(BiasOrders("1N,2f"), ElementsAre("mN"));
}

TEST_F(BiasTables, KeysSortSizesAsTheyAreShown) {
  Analyze();
  BiasResults results = Results();
  const auto ordered = [&](const std::string& letters) {
    std::vector<std::pair<std::string, int>> keys;
    for (const BiasTermRow term : Upward(results.terms))
      keys.emplace_back(BiasTermKey(analysis(), results, term, letters), term.number());
    std::sort(keys.begin(), keys.end());
    std::string text;
    for (const auto& key : keys) text += std::to_string(key.second);
    return text;
  };
  results.terms[BiasTermRow(1)] = MadeTerm(.5f);
  results.terms[BiasTermRow(2)] = MadeTerm(.1f, BiasStanding::maximum);
  results.terms[BiasTermRow(3)] = MadeTerm(-2.0f);
  results.terms[BiasTermRow(4)] = MadeTerm(.3f, BiasStanding::minimum);
  results.terms[BiasTermRow(5)] = MadeTerm(0.0f, BiasStanding::none);
  results.terms[BiasTermRow(6)] = MadeTerm(.5f);
  for (const std::string letters : {"M", "F", "T", "Z"}) EXPECT_EQ(ordered(letters), "431625");
  for (const std::string letters : {"m", "f", "t", "z"}) EXPECT_EQ(ordered(letters), "216345");
  EXPECT_EQ(ordered("mn"), "261345");
  EXPECT_EQ(ordered("q"), "123456");
  EXPECT_EQ(ordered("n"), "654321");
  settings().Bias = -1;
  EXPECT_EQ(ordered("M"), "216345");
}

TEST_F(BiasTables, ZscoreLeavesOutRowsAndNothingElse) {
  const BiasTerm term = MadeTerm(.5f);  // t 2
  Settings wanted;
  EXPECT_TRUE(IsBiasShown(wanted, MadeTerm(0.0f)));
  for (const auto& [size, t, shown] :
       {std::tuple(.5f, 2.0f, true), std::tuple(.51f, 0.0f, false), std::tuple(0.0f, 2.1f, false),
        std::tuple(.2f, 0.0f, true)}) {
    wanted.Zscore = {size, t};
    EXPECT_EQ(IsBiasShown(wanted, term), shown);
    EXPECT_EQ(IsBiasShown(wanted, MadeTerm(-.5f)), shown);
  }
  wanted.Zscore = {.51f, 0.0f};
  wanted.Uscale = 2.0f;
  EXPECT_TRUE(IsBiasShown(wanted, term));

  Analyze("Models=?,?B,?B,R4\n", "Zscore=90,2\n");
  const std::vector<std::string> table = Table("Table 13.1.1");
  ASSERT_GT(table.size(), 10u);
  EXPECT_THAT(table[6], HasSubstr("----"));  // the foot follows the heads
  EXPECT_THAT(table[7], HasSubstr("Mean (Count: 5)"));
  EXPECT_THAT(table.end()[-2], StartsWith("Fixed (all = 0) chi-squared: "));
}

TEST_F(BiasTables, TheZeroTestSumsSquaredT) {
  Settings plain;
  BiasSummary summary;
  for (const float bias : {.5f, -.25f, 1.0f}) AddRow(summary, FiguresOf(plain, MadeTerm(bias)));
  const auto test = ZeroChiSquare(summary);
  ASSERT_TRUE(test.has_value());
  EXPECT_NEAR(test->chiSquared, 4.0 + 1.0 + 16.0, 1E-9);
  EXPECT_EQ(test->degreesOfFreedom, 3.0);
  EXPECT_NEAR(test->probability, .000105, .0015);
  BiasSummary one;
  AddRow(one, FiguresOf(plain, MadeTerm(1.0f)));
  EXPECT_FALSE(ZeroChiSquare(one).has_value());
}

TEST_F(BiasTables, FootRowsCountExtremeTermsApart) {
  Analyze();
  const std::vector<std::string> table = Table("Table 13.1.1");
  int five = 0, six = 0, with = 0;
  for (const std::string& line : table) {
    five += line.find("Mean (Count: 5)") != std::string::npos;
    six += line.find("Mean (Count: 6)") != std::string::npos;
    with += line.find("With extremes, Model, ") != std::string::npos;
  }
  EXPECT_EQ(five, 1);
  EXPECT_EQ(six, 1);
  EXPECT_EQ(with, 2);
  EXPECT_THAT(table.end()[-2], HasSubstr("  d.f.:5.0  "));
}

TEST_F(BiasTables, Table11SplitsTheVarianceOfTheResponsesInTerms) {
  Analyze("Models=\n?,?B,?B,R4\n*\n");
  const std::string report = run.Report();
  EXPECT_THAT(report, HasSubstr("Table 11.1  Bias/Interaction Measurement Summary."));
  const BiasResults results = Results();
  const double after = results.withBias.PopulationVariance(ResidualColumn::residual);
  EXPECT_LT(after, results.residualsWithoutBias.PopulationVariance(0));
  EXPECT_THAT(report, HasSubstr("Count of measurable responses           =          48\n"
                                "Raw-score variance of observations      = "));
  EXPECT_THAT(report, HasSubstr(" 100.00%\nVariance explained by Rasch measures    = "));
  EXPECT_THAT(report, HasSubstr("%\nVariance of residuals                   = "));
  EXPECT_THAT(report, HasSubstr("%\nVariance explained by bias/interactions = "));
  EXPECT_THAT(report, HasSubstr("%\nVariance remaining in residuals         = "));
}

TEST_F(BiasTables, WeightedResponsesAreCountedByTheirWeights) {
  Analyze("Models=?,?B,?B,R4,1.5\n");
  EXPECT_THAT(run.Report(),
              HasSubstr("Count of measurable responses (weighted)=         72.000\n"));
  EXPECT_THAT(run.Report(), HasSubstr("Mean (Weighted: 72)"));
}

TEST_F(BiasTables, Table12HasABarForEachTerm) {
  Analyze();
  const std::vector<std::string> table = Table("Table 12.1  Bias/Interaction Summary Report.");
  ASSERT_GT(table.size(), 5u);
  int digits = 0;
  for (const char c : table[3]) digits += c >= '1' && c <= '9' ? c - '0' : 0;
  EXPECT_EQ(digits, 6);
  EXPECT_THAT(table[5], StartsWith("  Mean:<"));
}

TEST_F(BiasTables, ExtremeTermsStandAtAnEndOfTable12) {
  Analyze();
  BiasResults results = Results();
  results.terms[BiasTermRow(1)] = MadeTerm(.1f, BiasStanding::maximum);
  const auto stacks = [&] { return BiasSummaryLines(settings(), results).at(1); };
  // At the high end stand this one and Al's, at the low end Mia's.
  EXPECT_EQ(stacks()[8], '1');
  EXPECT_EQ(stacks()[75], '2');
  settings().Bias = -1;
  EXPECT_EQ(stacks()[8], '2');
  EXPECT_EQ(stacks()[75], '1');
  settings().Barchart = 2;
  EXPECT_EQ(stacks()[8], '1');
}

TEST_F(BiasTables, BarchartNoLeavesOutTable12) {
  Analyze("Models=?,?B,?B,R4\n", "Barchart=No\n");
  EXPECT_THAT(run.Report(), Not(HasSubstr("Table 12.")));
  EXPECT_THAT(run.Report(), HasSubstr("Table 13.1.1"));
}

TEST_F(BiasTables, FlagsSwitchTheTablesOneByOne) {
  Analyze("Models=?,?B,?B,R4\n", "Tables=00000000001010\n");
  const std::string report = run.Report();
  EXPECT_THAT(report, Not(HasSubstr("Table 9.")));
  EXPECT_THAT(report, Not(HasSubstr("There are empirically")));
  EXPECT_THAT(report, HasSubstr("Table 11.1"));
  EXPECT_THAT(report, Not(HasSubstr("Table 12.")));
  EXPECT_THAT(report, HasSubstr("Table 13.1.1"));
  EXPECT_THAT(run.Screen(), HasSubstr("There are empirically 6 Bias terms"));
}

TEST_F(BiasTables, WithoutATableNothingIsEstimated) {
  Analyze("Models=?,?B,?B,R4\n", "Tables=11111111000000\n");
  EXPECT_THAT(run.Screen(), Not(HasSubstr("Bias terms")));
}

TEST_F(BiasTables, BiasOmitLeavesAllOfItOut) {
  Analyze("Models=?,?B,?B,R4\n", "Bias=omit\n");
  EXPECT_THAT(run.Screen(), Not(HasSubstr("Bias terms")));
  EXPECT_THAT(run.Report(), Not(HasSubstr("Table 13.")));
}

TEST_F(BiasTables, OneMarkAsksForNothing) {
  Analyze("Models=?,?B,?,R4\n");
  EXPECT_THAT(run.Screen(), Not(HasSubstr("Bias terms")));
}

TEST_F(BiasTables, EachInteractionHasItsTables) {
  Analyze("Models=\n?,3B,?B,R4\n?B,?,?B,R4\n?,3B,1B,R4\n*\n");
  const std::string report = run.Report();
  EXPECT_THAT(report, HasSubstr("There are empirically 2 Bias terms\n"));
  EXPECT_THAT(report, HasSubstr("There are empirically 16 Bias terms\n"));
  for (const std::string title : {"Table 9.1 ", "Table 11.1 ", "Table 12.1 ", "Table 13.1.1 ",
                                  "Table 9.2 ", "Table 11.2 ", "Table 12.2 ", "Table 13.2.3 "})
    EXPECT_THAT(report, HasSubstr(title + " Bias"));
  EXPECT_THAT(report, Not(HasSubstr("Table 9.3")));
}

TEST_F(BiasTables, NoTermsIsAMessageAndTheRunGoesOn) {
  Analyze("Models=\n?,?,?,R4\n?B,?B,?B,R4\n*\n");
  EXPECT_THAT(run.Report(), HasSubstr("No bias terms found\n"));
  EXPECT_THAT(run.Report(), Not(HasSubstr("Table 9.")));
  EXPECT_THAT(run.Screen(), HasSubstr("Analyzed in time of "));
}

// No data make such terms; these are made by hand.
TEST_F(BiasTables, WithoutAnEstimableTermAMessageIsLeft) {
  Analyze();
  Console console(run.shell, run.dialogs, run.process.control, run.analysis.settings,
                  run.analysis.report);
  BiasResults results = Results();
  const std::size_t before = run.Screen().size();
  EXPECT_TRUE(HasEstimableTerms(results, console));
  for (BiasTerm& term : results.terms) term.standing = BiasStanding::none;
  results.terms[BiasTermRow(2)].standing = BiasStanding::maximum;
  EXPECT_TRUE(HasEstimableTerms(results, console));
  EXPECT_EQ(run.Screen().size(), before);
  results.terms[BiasTermRow(2)].standing = BiasStanding::none;
  EXPECT_FALSE(HasEstimableTerms(results, console));
  EXPECT_EQ(run.Screen().substr(before), "No bias terms estimable\n");
}

// Replication 0, and a person of weight 0.
TEST_F(BiasTables, ResponsesWithoutWeightLeaveTheTermsAsTheyAre) {
  Analyze();
  const std::vector<std::string> terms = Table("Table 13.1.1"), summary = Table("Table 11.1");
  std::string labels = kLabels, responses = Responses();
  labels.insert(labels.find("*\n"), "9=nobody,,,0\n");
  for (int item = 1; item <= 2; ++item) {
    for (const int rater : {3, 11, 40}) {
      const std::string rest = "," + std::to_string(rater) + "," + std::to_string(item) + "," +
                               std::to_string(4 * item - 4);
      responses += "9" + rest + "\nR0,1" + rest + "\n";
    }
  }
  run.Write("data.txt", responses);
  ASSERT_EQ(run.Analyze(kHead + std::string("Models=?,?B,?B,R4\n") + labels), 0) << run.Screen();
  EXPECT_THAT(run.Screen(), HasSubstr("is weighted 0 and is ignored"));
  EXPECT_EQ(Table("Table 13.1.1"), terms);
  EXPECT_EQ(Table("Table 11.1"), summary);
}

TEST_F(BiasTables, OneTermHasNoTests) {
  run.Write("data.txt", Responses());
  ASSERT_EQ(run.Analyze(std::string(kHead) + "Models=\n?,3B,1B,R4\n?,?,?,R4\n*\n" + kLabels), 0);
  EXPECT_THAT(run.Report(), HasSubstr("There are empirically 1 Bias terms"));
  EXPECT_THAT(run.Report(), HasSubstr("Mean (Count: 1)"));
  EXPECT_THAT(run.Report(), Not(HasSubstr("Fixed (all = 0)")));
}

TEST_F(BiasTables, EveryTermOfOneResponse) {
  Analyze("Models=?B,?B,?B,R4\n", "Arrange=N\n");
  const std::string report = run.Report();
  EXPECT_THAT(report, HasSubstr("There are empirically 48 Bias terms"));
  EXPECT_THAT(RowOf("Table 13.1.1", " 1   1 p "), HasSubstr("     0 .0000 |"));
  EXPECT_THAT(report, Not(HasSubstr("nan")));
  EXPECT_THAT(report, Not(HasSubstr("inf.")));
}

TEST_F(BiasTables, CtrlCBreaksTheRunOff) {
  run.Write("data.txt", Responses());
  const std::string text = std::string(kHead) + "Models=?,?B,?B,R4\n" + kLabels;
  run.Analyze(text);
  const int pumps = run.shell.pumps;
  AnalysisRun again;
  again.Write("data.txt", Responses());
  for (int pump = pumps - 40; pump < pumps; ++pump)
    again.shell.ActionAtPump(pump, [&] {
      if (again.Screen().find("Bias terms") != std::string::npos)
        again.process.control.CancelRequested = true;
    });
  again.Analyze(text);
  EXPECT_EQ(again.exitCode, 51) << again.Screen();
  again.analysis = Analysis{};
  EXPECT_THAT(again.Leftovers(), ElementsAre());
}

TEST_F(BiasTables, ASortFailureHasItsWords) {
  EXPECT_EQ(message::kTable13SortLength, "Failure (3)! Sort length error.");
}

}  // namespace
}  // namespace flanks
