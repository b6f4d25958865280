// The loop itself: phases, limits, warnings and commands.  Numbers are in tests/checks/.
#include "estimate/iteration.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

#include "support/analysis_run.h"

namespace flanks {
namespace {

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
  const std::size_t rule = report.rfind("+-----", report.find("Table 7.1.1"));
  EXPECT_LT(rule, report.find("'Iterations=5' reached."));
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

TEST(Iterate, PlusAndMinusSteerTheSpeed) {
  AnalysisRun run;
  run.Write("data.txt", kData);
  float speed = 0.0f;
  for (int pump = 1; pump < 2000; ++pump)
    run.shell.ActionAtPump(pump, [&run, &speed] {
      const IterationState& state = run.analysis.estimates.iteration;
      if (state.IterationNumber == 3 && speed == 0.0f) {
        run.process.control.KeyBuffer += '+';
        speed = 1.0f;
      } else if (state.IterationNumber == 4 && speed == 1.0f) {
        speed = run.analysis.estimates.control.SpeedFactor;
      }
    });
  run.Analyze(Specification("Convergence=.0000001,.0000001\nIterations=6"));
  EXPECT_FLOAT_EQ(speed, 1.5f);
}

}  // namespace
}  // namespace flanks
