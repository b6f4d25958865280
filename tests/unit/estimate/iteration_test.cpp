// The loop itself: phases, limits, warnings and commands.  Numbers are in tests/checks/.
#include "estimate/iteration.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "support/analysis_run.h"

namespace flanks {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// Six persons by four items, ratings 0 to 2, nobody extreme.
constexpr const char* kData =
    "1,1-4,0,0,1,0\n2,1-4,1,0,1,0\n3,1-4,1,1,1,0\n4,1-4,2,1,1,0\n5,1-4,2,1,2,1\n6,1-4,2,2,1,2\n";

std::string Specification(const std::string& settings) {
  return "Flanks=2\nModels=?,?,R2\n" + settings +
         "\nLabels=\n1,Persons\n1-6=p\n*\n2,Items\n1-4=i\n*\nData=data.txt\n";
}

struct Loop : AnalysisRun {
  explicit Loop(const std::string& settings, const char* data = kData) {
    Write("data.txt", data);
    Analyze(Specification(settings));
  }
  const IterationState& state() const { return analysis.estimates.iteration; }
  bool Shown(const std::string& text) const { return Screen().find(text) != std::string::npos; }
};

std::size_t Occurrences(const std::string& text, const std::string& piece) {
  std::size_t count = 0;
  for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1))
    ++count;
  return count;
}

TEST(Iterate, EndsFinishedAndConverged) {
  const Loop loop("");
  EXPECT_EQ(loop.exitCode, 0) << loop.Screen();
  EXPECT_EQ(loop.state().EstimationPhase, kPhaseFinished);
  EXPECT_TRUE(loop.state().converged);
  EXPECT_FALSE(loop.Shown("Warning (7)"));
  EXPECT_FALSE(loop.Shown("Warning (8)"));
}

TEST(Iterate, BeginsWithAtMostTwoProxIterations) {
  const Loop loop("Write=Y");
  const std::string report = loop.Report();
  EXPECT_EQ(Occurrences(report, "  PROX "), Occurrences(report, "| PROX"));
  EXPECT_GE(Occurrences(report, "| PROX"), 1u);
  EXPECT_LE(Occurrences(report, "| PROX"), 2u);
  EXPECT_GE(Occurrences(report, "| JMLE"), 2u);
}

// Persons far apart, so that a second PROX iteration is wanted.
constexpr const char* kFarApart =
    "1,1-4,0,0,0,1\n2,1-4,0,1,0,0\n3,1-4,1,0,1,2\n4,1-4,1,2,1,0\n5,1-4,2,2,1,2\n6,1-4,2,1,2,2\n";

TEST(Iterate, APoissonScaleEndsProxAfterOneIteration) {
  const Loop rating("Write=Y", kFarApart);
  EXPECT_EQ(Occurrences(rating.Report(), "| PROX"), 2u);
  Loop counts("");
  counts.Write("data.txt", kFarApart);
  counts.Analyze(
      "Flanks=2\nWrite=Y\nModels=\n?,1-3,R2\n?,4,P\n*\nLabels=\n1,Persons\n1-6=p\n*\n"
      "2,Items\n1-4=i\n*\nData=data.txt\n");
  EXPECT_EQ(counts.exitCode, 0) << counts.Screen();
  EXPECT_EQ(Occurrences(counts.Report(), "| PROX"), 1u);
}

TEST(Iterate, AnEstimatedDiscriminationIsAFreeParameterWithALineOfItsOwn) {
  const std::string rest = "\nLabels=\n1,Persons\n1-6=p\n*\n2,Items\n1-4=i\n*\nData=data.txt\n";
  Loop free("");
  free.Analyze("Flanks=2\nWrite=Y\nModels=?,?,B3" + rest);
  EXPECT_EQ(free.exitCode, 0) << free.Screen();
  EXPECT_GE(Occurrences(free.Report(), "Bin Disc: 1 "), 1u) << free.Report();
  EXPECT_NE(free.analysis.scales.ThresholdTable.at(ScaleRow(0), 0), 1.0f);
  EXPECT_EQ(free.state().FreeParameterCount, 6 + 4 - 1 + 1);
  Loop anchored("");
  anchored.Analyze("Flanks=2\nWrite=Y\nModels=?,?,T\nRating scale=T,B3\n0=none,1,A\n*" + rest);
  EXPECT_EQ(anchored.exitCode, 0) << anchored.Screen();
  EXPECT_EQ(Occurrences(anchored.Report(), "Disc:"), 0u);
  EXPECT_EQ(anchored.analysis.scales.ThresholdTable.at(ScaleRow(0), 0), 1.0f);
  EXPECT_EQ(anchored.state().FreeParameterCount, 6 + 4 - 1);
}

TEST(Iterate, TheLimitIsSaidOnce) {
  const Loop loop("Iterations=5\nConvergence=.0000001,.0000001");
  EXPECT_EQ(loop.state().IterationNumber, 5);
  EXPECT_EQ(Occurrences(loop.Screen(), "'Iterations=5' reached.  'Iterations=0' removes limit"),
            1u);
  EXPECT_EQ(Occurrences(loop.Report(), "'Iterations=5' reached.  'Iterations=0' removes limit"),
            1u);
}

TEST(Iterate, AConvergedStopSaysNothingOfTheLimit) {
  const Loop loop("Iterations=500");
  EXPECT_FALSE(loop.Shown("' reached."));
}

TEST(Iterate, WithoutAFloatingFlankItWarnsOnce) {
  const Loop loop("Noncenter=0");
  EXPECT_EQ(Occurrences(loop.Screen(), "Warning (7)! Over-constrained?  Noncenter= not in effect"),
            1u);
}

TEST(Iterate, WithTwoFloatingFlanksItWarnsOnce) {
  const Loop loop("Noncenter=1,2");
  EXPECT_EQ(Occurrences(loop.Screen(),
                        "Warning (8)! Under-constrained?  Noncenter= for two or more flanks"),
            1u);
}

TEST(Iterate, AMeasureBeyondTheExponentLimitIsHeldAndWarnedOfOnceAnIteration) {
  const Loop loop("Hardware=1\nIterations=4");
  EXPECT_EQ(loop.exitCode, 0) << loop.Screen();
  EXPECT_TRUE(loop.Shown("Warning (1)! Estimate out of range!  Flank 1 Element ")) << loop.Screen();
  EXPECT_LE(Occurrences(loop.Screen(), "Warning (1)!"),
            static_cast<std::size_t>(loop.state().IterationNumber));
  for (ElementSlot e : Upward(loop.analysis.estimates.elements))
    EXPECT_LE(std::abs(loop.analysis.estimates.elements[e].ElementMeasure), 1.0f);
}

TEST(Iterate, WithNothingButExtremesItIsAFault) {
  const Loop loop("", "1,1-4,2,2,2,2\n2,1-4,0,0,0,0\n");
  EXPECT_EQ(loop.exitCode, 1);
  EXPECT_TRUE(loop.Shown("All data eliminated as extreme.")) << loop.Screen();
  EXPECT_TRUE(loop.Shown("Error F36"));
  EXPECT_EQ(Occurrences(loop.Report(), "| PROX"), 2u) << "the iteration without data is reported";
}

TEST(Iterate, APerfectScoreIsMeasuredAndRecountedWithoutIt) {
  const Loop loop("",
                  "1,1-4,0,0,1,0\n2,1-4,1,0,1,0\n3,1-4,1,1,1,0\n4,1-4,2,1,1,0\n"
                  "5,1-4,2,1,2,1\n6,1-4,2,2,2,2\n");
  EXPECT_EQ(loop.exitCode, 0) << loop.Screen();
  EXPECT_NE(loop.Report().find("Recount required"), std::string::npos);
  EXPECT_NE(loop.Report().find("Maximum"), std::string::npos);
  const ElementSlot six(6);
  EXPECT_EQ(loop.analysis.estimates.elements[six].ElementStatus, kStatusMaximum);
  EXPECT_FLOAT_EQ(loop.analysis.estimates.scores[ElementSlot(7)].Count, 5.0f)
      << "items count the other five";
}

// Each of the two is within .001 logit of the maximum likelihood (tests/checks/).
TEST(Iterate, NewtonRaphsonReachesTheSameMeasures) {
  const Loop secant("Convergence=.0005,.000005");
  const Loop newton("Newton=.5\nConvergence=.0005,.000005");
  for (ElementSlot e : Upward(secant.analysis.estimates.elements))
    EXPECT_NEAR(secant.analysis.estimates.elements[e].ElementMeasure,
                newton.analysis.estimates.elements[e].ElementMeasure, .002);
}

TEST(Iterate, LongerThanWholeNewtonStepsAreWholeOnes) {
  const Loop loop("Newton=3\nIterations=2000");
  EXPECT_EQ(loop.analysis.estimates.control.NewtonValue, 1.0f);
  EXPECT_TRUE(loop.state().converged) << "after " << loop.state().IterationNumber;
}

TEST(Iterate, AnExponentLimitBeyondThirtyTwoBitsGivesTheSameMeasures) {
  const Loop usual("Iterations=30");
  const Loop beyond("Iterations=30\nHardware=100");
  ASSERT_EQ(beyond.exitCode, 0) << beyond.Screen();
  for (ElementSlot e : Upward(usual.analysis.estimates.elements))
    EXPECT_NEAR(usual.analysis.estimates.elements[e].ElementMeasure,
                beyond.analysis.estimates.elements[e].ElementMeasure, 1e-3);
}

TEST(Iterate, TheLimitIsSaidBelowTheBox) {
  const std::string report = Loop("Iterations=5\nConvergence=.0000001,.0000001").Report();
  const std::size_t rule = report.rfind("+-----", report.find("Table 4."));
  EXPECT_LT(rule, report.find("'Iterations=5' reached."));
}

// One anchored person holds the floating Flank and the items are centered, so that nothing gives
// way: the others leave for the limit and stay there.
TEST(Iterate, ContradictionsEndItWhenThereIsNoProgress) {
  constexpr const char* kOverConstrained =
      "Flanks=2\nModels=?,?,R5\nLabels=\n1,Persons,A\n1=Ann,.5\n2=Bob\n3=Cy\n*\n2,Items\n1-2=i\n*\n"
      "Data=\n1,1,3\n1,2,4\n2,1,1\n2,2,3\n3,1,2\n3,2,5\n";
  AnalysisRun run;
  EXPECT_EQ(run.Analyze(kOverConstrained), 0);
  EXPECT_FALSE(run.analysis.estimates.iteration.converged);
  const std::string report = run.Report();
  EXPECT_THAT(report, HasSubstr("\nIterations ended: no progress in the last 1000\n"));
  EXPECT_LT(run.analysis.estimates.iteration.IterationNumber, 3000);
  EXPECT_THAT(report, HasSubstr("Table 7.1.1"));
  EXPECT_THAT(report, Not(HasSubstr("nan")));
  AnalysisRun patient;  // without limits it waits
  patient.Analyze(kOverConstrained, "Convergence=0,0 Iterations=4000");
  EXPECT_EQ(patient.analysis.estimates.iteration.IterationNumber, 4000);
}

// The persons take no part, so that no Flank floats and the two items have no origin.
TEST(Iterate, ManyIterationsAreToldOnTheScreen) {
  constexpr const char* kNoOrigin =
      "Flanks=2\nModels=X,?,R5\nLabels=\n1,Persons\n1-3=p\n*\n2,Items\n1-2=i\n*\n"
      "Data=\n1,1,3\n1,2,4\n2,1,1\n2,2,4\n3,1,2\n3,2,5\n";
  const std::string told = "No convergence after 1000 iterations. Iterations= limits their number";
  AnalysisRun few;
  few.Analyze(kNoOrigin, "Iterations=1000");
  EXPECT_THAT(few.Screen(), Not(HasSubstr(told)));
  AnalysisRun many;
  many.Analyze(kNoOrigin, "Iterations=1100");
  EXPECT_EQ(Occurrences(many.Screen(), "No convergence after"), 1u);
  EXPECT_THAT(many.Screen(), HasSubstr(told));
  EXPECT_THAT(many.Report(), Not(HasSubstr(told)));
}

TEST(Iterate, CtrlFEndsItAtTheNextCleanStateAndTheRunGoesOn) {
  AnalysisRun run;
  run.Write("data.txt", kData);
  bool pressed = false;
  for (int pump = 1; pump < 2000; ++pump)
    run.shell.ActionAtPump(pump, [&run, &pressed] {
      if (!pressed && run.analysis.estimates.iteration.IterationNumber == 3) {
        run.process.control.KeyBuffer += '\x06';
        pressed = true;
      }
    });
  EXPECT_EQ(run.Analyze(Specification("Convergence=.0000001,.0000001")), 0);
  EXPECT_TRUE(pressed);
  EXPECT_LE(run.analysis.estimates.iteration.IterationNumber, 4);
  EXPECT_EQ(run.analysis.estimates.iteration.EstimationPhase, kPhaseFinished);
  EXPECT_NE(run.Report().find("Table 7.1.1"), std::string::npos);
}

// A run in which the keys arrive once, when the iteration number is first seen in a pause of the
// run.
struct Steered : AnalysisRun {
  Steered(const std::string& settings, int iteration, const std::string& keys) {
    Write("data.txt", kData);
    for (int pump = 1; pump < 4000; ++pump)
      shell.ActionAtPump(pump, [this, iteration, keys] {
        const int now = analysis.estimates.iteration.IterationNumber;
        if (now >= iteration && !pressed_) {
          process.control.KeyBuffer += keys;
          pressed_ = true;
        } else if (now == iteration + 1 && !seen_) {
          speedAfter = analysis.estimates.control.SpeedFactor;
          newtonAfter = analysis.estimates.control.NewtonValue;
          seen_ = true;
        }
      });
    EXPECT_EQ(Analyze(Specification(settings)), 0) << Screen();
    EXPECT_TRUE(pressed_ && seen_);
  }
  const IterationState& state() const { return analysis.estimates.iteration; }
  float speedAfter = 0.0f, newtonAfter = 0.0f;  // in the iteration after the keys

 private:
  bool pressed_ = false, seen_ = false;
};

constexpr const char* kLong = "Convergence=.0000001,.0000001\n";

TEST(Iterate, PlusAndMinusSteerTheSpeed) {
  EXPECT_FLOAT_EQ(Steered(std::string(kLong) + "Iterations=6", 3, "+").speedAfter, 1.5f);
  EXPECT_FLOAT_EQ(Steered(std::string(kLong) + "Iterations=6", 3, "-").speedAfter, .75f);
  EXPECT_FLOAT_EQ(Steered(std::string(kLong) + "Iterations=6", 3, "++-").speedAfter, 1.6875f);
}

TEST(Iterate, PlusAndMinusSteerTheNewtonStep) {
  const std::string settings = std::string(kLong) + "Iterations=6\nNewton=";
  EXPECT_FLOAT_EQ(Steered(settings + ".5", 3, "-").newtonAfter, .45f);
  EXPECT_FLOAT_EQ(Steered(settings + ".5", 3, "+").newtonAfter, .55f);
  EXPECT_FLOAT_EQ(Steered(settings + ".95", 3, "+").newtonAfter, 1.0f);
  EXPECT_FLOAT_EQ(Steered(settings + ".95", 3, "+").speedAfter, 1.0f);
}

// The measures of iteration 3 are those of an undisturbed run, the ones of iteration 4 are not.
TEST(Iterate, AKeyActsAtTheNextIteration) {
  const auto measure = [](const AnalysisRun& run) {
    return run.analysis.estimates.elements[ElementSlot(1)].ElementMeasure;
  };
  const std::string settings = std::string(kLong) + "Iterations=";
  const Loop third(settings + "3"), fourth(settings + "4");
  AnalysisRun pressed;
  pressed.Write("data.txt", kData);
  bool done = false;
  for (int pump = 1; pump < 4000; ++pump)
    pressed.shell.ActionAtPump(pump, [&] {
      if (!done && pressed.analysis.estimates.iteration.IterationNumber == 3) {
        pressed.process.control.KeyBuffer += "+";
        done = true;
      }
    });
  pressed.Analyze(Specification(settings + "3"));
  EXPECT_TRUE(done);
  EXPECT_EQ(measure(pressed), measure(third));
  EXPECT_NE(measure(Steered(settings + "4", 3, "+")), measure(fourth));
}

TEST(Iterate, CtrlGTakesTheLimitAway) {
  const Steered run(std::string(kLong) + "Iterations=6", 3, "\x07");
  EXPECT_GT(run.state().IterationNumber, 6);
  EXPECT_EQ(run.analysis.estimates.control.IterationLimit, 0);
  EXPECT_NE(run.Screen().find(" Iter=0"), std::string::npos);
  EXPECT_EQ(run.Screen().find("' reached."), std::string::npos);
  EXPECT_TRUE(run.state().converged);
}

TEST(Iterate, WithoutLimitsItEndsWhenNothingMoves) {
  const Loop loop("Convergence=0,0");
  EXPECT_TRUE(loop.state().converged);
  EXPECT_LT(std::abs(loop.state().changes.MaxLogitChange), 1E-6f);
  EXPECT_LT(std::abs(loop.state().changes.MaxThresholdChange), 1E-6f);
  EXPECT_GT(loop.state().IterationNumber, Loop("").state().IterationNumber);
}

}  // namespace
}  // namespace flanks
