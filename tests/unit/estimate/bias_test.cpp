#include "estimate/bias.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "estimate/bias_pass.h"
#include "estimate/table9.h"
#include "run/console.h"
#include "support/analysis_run.h"
#include "support/pass_design.h"

namespace flanks {
namespace {

const BiasLimits kLimits{0.01f, 0.001f, 80.0f, 1.8E-35f};

// One term at a time, for the steps.
struct StepTest : ::testing::Test {
  BiasState state;
  BiasBracket bracket;
  BiasScores scores;

  BiasTermState at() { return {state, bracket, scores}; }
  BiasStep First(const BiasFirstSums& sums, float adjustment = 0.5f) {
    return FirstBiasStep(sums, adjustment, kLimits, 1, at());
  }
  // Four dichotomous responses at measure 0, so that E(b) = 4 / (1 + exp(-b)).
  BiasFirstSums Four(double score) { return {score, 4.0, score + 4.0, 4.0, 2.0, 1.0, 1.0f}; }
  void Bracket(float low, float high) {
    bracket = {low, Single(4.0 / (1.0 + std::exp(-low))), high,
               Single(4.0 / (1.0 + std::exp(-high)))};
  }
};

TEST_F(StepTest, LimitsAreAtMostTheirDefaults) {
  const auto of = [](float score, float logit) {
    return BiasLimitsOf({score, logit, 0.0f, 0.0f}, 80.0f, 0.0f);
  };
  EXPECT_EQ(of(0.5f, 0.01f).score, 0.01f);
  EXPECT_EQ(of(0.5f, 0.01f).logit, 0.001f);
  EXPECT_EQ(of(0.005f, 0.0005f).score, 0.005f);
  EXPECT_EQ(of(0.005f, 0.0005f).logit, 0.0005f);
  EXPECT_EQ(of(0.0f, 0.0f).score, 0.01f);
  EXPECT_EQ(of(0.0f, 0.0f).logit, 0.001f);
}

TEST_F(StepTest, TheFirstStepIsNewtons) {
  const BiasStep step = First(Four(3.0));
  EXPECT_FLOAT_EQ(step.residual, 1.0f);
  EXPECT_FLOAT_EQ(step.fraction, 0.25f);
  EXPECT_FLOAT_EQ(step.step, 1.0f);
  EXPECT_TRUE(step.moving);
  EXPECT_EQ(state.BiasStatus, 1);
  EXPECT_FLOAT_EQ(state.Bias, 1.0f);
  EXPECT_FLOAT_EQ(bracket.LowExpected, 2.0f);  // below the score
  EXPECT_EQ(bracket.HighExpected, 0.0f);
  EXPECT_FLOAT_EQ(scores.ExpectedRaw, 6.0f);  // 2 and the 4 that raw scores have more
}

TEST_F(StepTest, AResidualBelowZeroMakesTheHighEnd) {
  First(Four(1.0));
  EXPECT_FLOAT_EQ(state.Bias, -1.0f);
  EXPECT_FLOAT_EQ(bracket.HighExpected, 2.0f);
  EXPECT_EQ(bracket.LowExpected, 0.0f);
}

TEST_F(StepTest, TheVarianceIsAtLeastOne) {
  BiasFirstSums one{1.0, 2.0, 1.0, 1.0, 0.25, 0.2, 1.0f};
  EXPECT_FLOAT_EQ(First(one).step, 0.75f);
}

TEST_F(StepTest, PerfectScoresAreMovedInside) {
  const BiasStep step = First(Four(4.0));
  EXPECT_EQ(state.BiasStatus, kBiasMaximum);
  EXPECT_FLOAT_EQ(scores.ObservedScore, 3.5f);
  EXPECT_FLOAT_EQ(scores.RawScore, 8.0f);
  EXPECT_FLOAT_EQ(step.step, 1.5f);
}

TEST_F(StepTest, ZeroScoresAreMovedInsideByTheSmallestWeight) {
  BiasFirstSums sums = Four(0.0);
  sums.SmallestWeight = 0.4f;
  First(sums, 0.25f);
  EXPECT_EQ(state.BiasStatus, kBiasMinimum);
  EXPECT_FLOAT_EQ(scores.ObservedScore, 0.1f);
  EXPECT_FLOAT_EQ(bracket.HighExpected, 2.0f);
}

TEST_F(StepTest, WithoutAnAdjustmentAHalfIsTaken) {
  First(Four(4.0), 0.0f);
  EXPECT_FLOAT_EQ(scores.ObservedScore, 3.5f);
}

TEST_F(StepTest, ATermWithoutScoreRangeIsNotEstimable) {
  const BiasStep step = First({});
  EXPECT_EQ(state.BiasStatus, kBiasNotEstimable);
  EXPECT_FALSE(step.moving);
  EXPECT_FALSE(NextBiasStep(kLimits, 2, at()).moving);
  EXPECT_EQ(state.Bias, 0.0f);
}

TEST_F(StepTest, AnExtremeTermKeepsItsStatus) {
  First(Four(4.0));
  state.ExpectedSum = 4.0 / (1.0 + std::exp(-1.5));
  EXPECT_TRUE(NextBiasStep(kLimits, 2, at()).moving);
  EXPECT_EQ(state.BiasStatus, kBiasMaximum);
}

// The log-odds of a score of 4 equal dichotomies are the bias itself: the first secant is exact.
TEST_F(StepTest, ASecantFromTheOnlyEndSolvesEqualResponses) {
  First(Four(3.5));
  EXPECT_FLOAT_EQ(state.Bias, 1.5f);
  state.ExpectedSum = 4.0 / (1.0 + std::exp(-1.5));
  const BiasStep step = NextBiasStep(kLimits, 2, at());
  EXPECT_TRUE(step.moving);
  EXPECT_EQ(state.BiasStatus, 2);
  EXPECT_NEAR(state.Bias, std::log(7.0), 1E-5);
  EXPECT_FLOAT_EQ(bracket.LowBias, 1.5f);
}

TEST_F(StepTest, BetweenTwoEndsFalsePositionIsExactToo) {
  First(Four(3.0));
  Bracket(-2.0f, 4.0f);
  state.Bias = 0.0f;
  state.ExpectedSum = 2.0;
  NextBiasStep(kLimits, 2, at());
  EXPECT_NEAR(state.Bias, std::log(3.0), 1E-5);
  EXPECT_EQ(bracket.LowBias, 0.0f);  // the pass was below the score
}

TEST_F(StepTest, WhatIsNotBetweenTheEndsBecomesTheirMiddle) {
  First(Four(3.0));
  Bracket(-2.0f, 0.5f);  // a high end that the score does not have
  state.Bias = 0.0f;
  state.ExpectedSum = 2.0;
  NextBiasStep(kLimits, 2, at());
  EXPECT_FLOAT_EQ(state.Bias, 0.25f);
}

TEST_F(StepTest, AStandstillAwayFromTheScoreBecomesTheMiddle) {
  First({3000.0, 4000.0, 3000.0, 4000.0, 2000.0, 1000.0, 1.0f});
  bracket = {1.0985f, 2999.91f, 3.0f, 3810.0f};
  state.Bias = 1.0986f;
  state.ExpectedSum = 2999.985;  // .015 off, .00002 logits
  NextBiasStep(kLimits, 2, at());
  EXPECT_NEAR(state.Bias, (1.0986f + 3.0f) / 2.0f, 1E-6);
}

// Expectations that differ by their last bits alone must not throw a term away that is there.
TEST_F(StepTest, ATermAtItsScoreStaysThereWhateverTheEndsSay) {
  First(Four(3.0));
  bracket = {1.0986f, 2.9999995f, 0.0f, 0.0f};
  state.Bias = 1.09861f;
  state.ExpectedSum = 2.9999995;
  NextBiasStep(kLimits, 3, at());
  EXPECT_EQ(state.Bias, 1.09861f);
  bracket = {1.0986f, 2.9999f, 3.0f, 3.8f};
  state.ExpectedSum = 2.9999998;
  NextBiasStep(kLimits, 3, at());
  EXPECT_NEAR(state.Bias, 1.09861f, 1E-4);
}

TEST_F(StepTest, ABiasIsHeldAtTheLargest) {
  First({900.0, 1000.0, 900.0, 1000.0, 1.0, 0.5, 1.0f});
  EXPECT_EQ(state.Bias, 80.0f);
}

TEST_F(StepTest, NeitherEndUsableLeavesTheBias) {
  First({3.0, 4.0, 3.0, 4.0, 0.0, 0.0, 1.0f});
  EXPECT_FLOAT_EQ(state.Bias, 3.0f);
  state.ExpectedSum = 0.0;
  EXPECT_FALSE(NextBiasStep(kLimits, 2, at()).moving);
  EXPECT_FLOAT_EQ(state.Bias, 3.0f);
}

TEST_F(StepTest, ASmallStepOrASmallResidualIsNoMove) {
  First(Four(3.0));
  state.Bias = 1.09f;
  state.ExpectedSum = 2.995;  // half the limit
  EXPECT_FALSE(NextBiasStep(kLimits, 7, at()).moving);
  EXPECT_EQ(state.BiasStatus, 1);
}

// ---- The passes

struct PassTest : ::testing::Test {
  ScratchFolder folder;
  PassDesign d;
};

// The terms of the first interaction, found, and the first pass over them.
struct FirstPass {
  const PassParts parts;
  BiasTermList terms;
  ObservationReader reader;
  BiasPass pass;
  Column<BiasTermRow, BiasFirstSums> sums;

  explicit FirstPass(PassDesign& d)
      : parts(d.parts()),
        terms(parts, BiasInteractionsOf(d.design).at(0)),
        reader(parts),
        pass(parts, terms) {
    terms.Find(reader);
    sums = Column<BiasTermRow, BiasFirstSums>(terms.count());
    pass.First(reader, sums);
  }
};

TEST_F(PassTest, TheFirstPassSumsByHand) {
  d.Flank(2, kPositiveOrientation).Flank(2, kNegativeOrientation);
  d.Structure(d.Statement({"B", "B"}), d.Rating({0.0f}));
  d.Build();
  d.SetMeasures({1.0f, 0.0f, 0.0f, 2.0f});
  d.Observe({1, 3}, 0, 1);
  d.Observe({1, 4}, 0, 0, 3.0f);
  d.Observe({1, 3}, 0, 0, 2.0f);
  d.Observe({2, 3}, 0, 1);
  FirstPass made(d);
  ASSERT_EQ(made.terms.count(), 3);
  const Column<BiasTermRow, BiasFirstSums>& sums = made.sums;
  BiasPass& pass = made.pass;
  const double P = 1.0 / (1.0 + std::exp(-1.0));
  const BiasFirstSums& first = sums[BiasTermRow(1)];
  EXPECT_EQ(first.Count, 3.0);
  EXPECT_EQ(first.ObservedScore, 1.0);
  EXPECT_EQ(first.MaxScore, 3.0);
  EXPECT_EQ(first.SmallestWeight, 1.0f);
  EXPECT_NEAR(first.ExpectedSum, 3 * P, 1E-6);
  EXPECT_NEAR(first.Information, 3 * P * (1 - P), 1E-6);
  EXPECT_EQ(sums[BiasTermRow(2)].Count, 1.0);            // 2 with 3
  EXPECT_EQ(sums[BiasTermRow(3)].SmallestWeight, 3.0f);  // 1 with 4

  // Residuals 1 - P once and -P twice, one of -1/2 and three of -S, S at measure -1.
  const double S = 1.0 - P;
  const double sum = 1.0 - 3 * P + 0.5 - 3 * S,
               squares = (1 - P) * (1 - P) + 2 * P * P + 0.25 + 3 * S * S;
  EXPECT_EQ(pass.residuals().Count, 7.0);
  EXPECT_TRUE(pass.residuals().weighted);
  EXPECT_NEAR(pass.residuals().of(0).Mean, sum / 7.0, 1E-6);
  EXPECT_NEAR(pass.residuals().PopulationVariance(0), squares / 7.0 - sum * sum / 49.0, 1E-6);

  Column<BiasTermRow, BiasState> states(3);
  states[BiasTermRow(1)].Bias = -0.5f;
  pass.Expected(made.reader, states);
  EXPECT_NEAR(states[BiasTermRow(1)].ExpectedSum, 3.0 / (1.0 + std::exp(-0.5)), 1E-6);
  EXPECT_NEAR(states[BiasTermRow(2)].ExpectedSum, 0.5, 1E-6);
  EXPECT_NEAR(states[BiasTermRow(3)].ExpectedSum, 3.0 / (1.0 + std::exp(1.0)), 1E-6);
}

// A statement and an element of weight 0: neither the sums nor the smallest weight know of them.
TEST_F(PassTest, WhatHasNoWeightAddsToNoTerm) {
  d.Flank(2, kPositiveOrientation).Flank(2, kNegativeOrientation);
  const int scale = d.Rating({0.0f});
  d.Structure(d.Statement({"B", "B"}), scale);
  d.Structure(d.Statement({"B", "B"}, 0.0f), scale);
  d.Build();
  d.SetMeasures({0.0f, 0.0f, 0.0f, 0.0f});
  d.design.elements.ElementWeight[ElementSlot(4)] = 0.0f;
  d.Observe({1, 3}, 0, 1, 2.0f);
  d.Observe({1, 3}, 1, 0);
  d.Observe({1, 4}, 0, 1);
  d.Observe({1, 3}, 0, 0, 3.0f);
  const FirstPass made(d);
  ASSERT_EQ(made.terms.count(), 1);
  const BiasFirstSums& first = made.sums[BiasTermRow(1)];
  EXPECT_EQ(first.Count, 5.0);
  EXPECT_EQ(first.ObservedScore, 2.0);
  EXPECT_EQ(first.MaxScore, 5.0);
  EXPECT_EQ(first.SmallestWeight, 2.0f);
  EXPECT_EQ(made.pass.residuals().Count, 5.0);
}

// ---- The loop, in whole runs

constexpr const char* kSpecification = R"(Flanks=3
Labels=
1,Persons
1-8=p
*
2,Items
1-4=i
*
3,Raters
1-3=r
*
Model=?B,?,?B,R4
Data=data.txt
)";

// Rater 2 likes persons 1 and 5.
std::string Responses() {
  std::string lines;
  for (int person = 1; person <= 8; ++person) {
    for (int item = 1; item <= 4; ++item) {
      for (int rater = 1; rater <= 3; ++rater) {
        const int liked = rater == 2 && person % 4 == 1 ? 2 : 0;
        const int score = (person * 7 + item * 5 + rater * 3 + person * item) % 3 + liked;
        lines += std::to_string(person) + "," + std::to_string(item) + "," + std::to_string(rater) +
                 "," + std::to_string(score) + "\n";
      }
    }
  }
  return lines;
}

struct LoopTest : ::testing::Test {
  AnalysisRun run;
  void Analyze(const std::string& more = "") {
    run.Write("data.txt", Responses());
    run.Analyze(std::string("Output=report.txt\n") + kSpecification + more);
  }
  std::string BiasEstimatesAgain(BiasEstimates& bias, const BiasOptions& options) {
    Console console(run.shell, run.dialogs, run.process.control, run.analysis.settings,
                    run.analysis.report);
    EXPECT_TRUE(FindBiasTerms(bias, console));
    EstimateBias(options, bias, console);
    return run.Screen();
  }
};

TEST_F(LoopTest, EveryTermReachesItsScore) {
  Analyze();
  ASSERT_EQ(run.exitCode, 0) << run.Screen();
  Console console(run.shell, run.dialogs, run.process.control, run.analysis.settings,
                  run.analysis.report);
  BiasEstimates bias(PassPartsOf(run.analysis, console),
                     BiasInteractionsOf(run.analysis.design).at(0));
  const BiasOptions options = BiasOptionsOf(run.analysis.settings, run.analysis.estimates);
  BiasEstimatesAgain(bias, options);
  EXPECT_EQ(bias.terms.count(), 24);
  EXPECT_EQ(bias.BiasMoving, 0);
  EXPECT_LE(bias.iteration.IterationNumber, 12);
  EXPECT_LE(std::abs(bias.iteration.changes.MaxScoreResidual), 0.02);
  // Person 1 with rater 2: by far above what the main effects say.
  bool found = false;
  for (const BiasTermRow term : Upward(bias.states)) {
    if (bias.terms.element(term, 0) != ElementSlot(1) ||
        run.analysis.design.elements.ElementNumber[bias.terms.element(term, 1)] != 2)
      continue;
    found = true;
    EXPECT_GT(bias.states[term].Bias, 0.5f);
  }
  EXPECT_TRUE(found);
}

TEST_F(LoopTest, AnIterationLimitEndsTheLoop) {
  Analyze();
  Console console(run.shell, run.dialogs, run.process.control, run.analysis.settings,
                  run.analysis.report);
  BiasEstimates bias(PassPartsOf(run.analysis, console),
                     BiasInteractionsOf(run.analysis.design).at(0));
  BiasOptions options = BiasOptionsOf(run.analysis.settings, run.analysis.estimates);
  options.iterationLimit = 2;
  BiasEstimatesAgain(bias, options);
  EXPECT_EQ(bias.iteration.IterationNumber, 2);
  EXPECT_GT(bias.BiasMoving, 0);
}

TEST_F(LoopTest, CtrlFEndsTheIterationsAndTheRunGoesOn) {
  Analyze();
  Console console(run.shell, run.dialogs, run.process.control, run.analysis.settings,
                  run.analysis.report);
  BiasEstimates bias(PassPartsOf(run.analysis, console),
                     BiasInteractionsOf(run.analysis.design).at(0));
  run.shell.ActionAtPump(run.shell.pumps + 4, [&] { run.process.control.FinishRequested = true; });
  BiasEstimatesAgain(bias, BiasOptionsOf(run.analysis.settings, run.analysis.estimates));
  EXPECT_LT(bias.iteration.IterationNumber, 4);
  EXPECT_FALSE(run.process.control.FinishRequested);
  EXPECT_FALSE(console.stopping());
}

// Weights of .0001: no residual is above the limit of .01 score points, and one pass is all there
// is.  The biases are those of the first step, a residual over a variance of 1.
TEST_F(LoopTest, TermsOfSmallWeightsStayWhereTheFirstStepLeavesThem) {
  std::string specification = std::string("Output=report.txt\n") + kSpecification;
  specification.insert(specification.find("R4") + 2, ",.0001");
  run.Write("data.txt", Responses());
  ASSERT_EQ(run.Analyze(specification), 0) << run.Screen();
  Console console(run.shell, run.dialogs, run.process.control, run.analysis.settings,
                  run.analysis.report);
  BiasEstimates bias(PassPartsOf(run.analysis, console),
                     BiasInteractionsOf(run.analysis.design).at(0));
  BiasEstimatesAgain(bias, BiasOptionsOf(run.analysis.settings, run.analysis.estimates));
  EXPECT_EQ(bias.iteration.IterationNumber, 1);
  EXPECT_EQ(bias.BiasMoving, 0);
  float largest = 0.0f;
  for (const BiasTermRow term : Upward(bias.states)) {
    const BiasScores& scores = bias.scores[term];
    EXPECT_NEAR(bias.states[term].Bias, scores.RawScore - scores.ExpectedRaw, 1E-9);
    largest = std::max(largest, std::abs(bias.states[term].Bias));
  }
  EXPECT_GT(largest, 1E-5f);
  EXPECT_LT(largest, 1E-3f);
}

TEST_F(LoopTest, TheReportHasTableNine) {
  Analyze();
  const std::string report = run.Report();
  const std::size_t found = report.find("There are empirically 24 Bias terms");
  ASSERT_NE(found, std::string::npos) << report;
  EXPECT_GT(report.find("Table 9.1  Bias Iteration Report."), found);
  EXPECT_NE(report.find("| BIAS   1 "), std::string::npos);
  EXPECT_NE(run.Screen().find("Calculating Bias fit statistics"), std::string::npos);
}

TEST(Table9, ALineHasTheLargestResidualTheChangeAndTheMovingTerms) {
  IterationState iteration;
  iteration.EstimationPhase = kPhaseBias;
  iteration.IterationNumber = 2;
  iteration.changes.MaxScoreResidual = -3.25;
  iteration.changes.MaxScoreFraction = 0.125f;
  iteration.changes.MaxLogitChange = 0.5f;
  std::string line = BiasIterationDetail(iteration, 17);
  EXPECT_EQ(line.substr(1, 59), " BIAS   2     -3.2500  12.5                 .5000       17 ");
  iteration.changes = {};
  line = BiasIterationDetail(iteration, 17);
  EXPECT_EQ(line.substr(1, 59), " BIAS   2       .0000                       .0000          ");
}

}  // namespace
}  // namespace flanks
