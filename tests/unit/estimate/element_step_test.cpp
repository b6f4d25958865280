#include "estimate/element_step.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "run/design.h"

namespace flanks {
namespace {

ElementSums Sums(double observed, double maximum, double expected, double shifted) {
  ElementSums sums;
  sums.ObservedScore = observed;
  sums.MaxScore = maximum;
  sums.ExpectedSum = expected;
  sums.ShiftedExpected = shifted;
  sums.SmallestWeight = 1.0f;
  return sums;
}

StepControl Control(float secantDelta) {
  StepControl control;
  control.SecantDelta = secantDelta;
  control.TinyValue = static_cast<float>(std::exp(-80.0));
  return control;
}

TEST(ElementStep, SecantOnLogOdds) {
  const StepResult step = ElementStep(Sums(14, 24, 12, 10.5), Control(0.3f), kPositiveOrientation);
  EXPECT_NEAR(step.step, .168236, 1e-6);
  EXPECT_DOUBLE_EQ(step.residual, 2.0);
  EXPECT_NEAR(step.fraction, .083333, 1e-6);
}

TEST(ElementStep, ANegativeFlankStepsTheOtherWay) {
  const StepResult step = ElementStep(Sums(14, 24, 12, 10.5), Control(0.3f), kNegativeOrientation);
  EXPECT_NEAR(step.step, -.168236, 1e-6);
  EXPECT_DOUBLE_EQ(step.residual, 2.0);
}

TEST(ElementStep, APerfectScoreIsKeptAtTheAdjustmentsDistance) {
  // Raw step 1.005699, shortened once.
  const StepResult step = ElementStep(Sums(24, 24, 20, 19), Control(0.2f), kPositiveOrientation);
  EXPECT_NEAR(step.residual, 3.7, 1e-6);
  EXPECT_NEAR(step.step, .905130, 1e-6);
}

TEST(ElementStep, AZeroScoreIsKeptAtTheAdjustmentsDistance) {
  // Raw step -1.407467, shortened four times.
  const StepResult step = ElementStep(Sums(0, 24, 5, 4.2), Control(0.2f), kPositiveOrientation);
  EXPECT_NEAR(step.residual, -4.7, 1e-6);
  EXPECT_NEAR(step.step, -.923439, 1e-6);
}

TEST(ElementStep, NewtonDividesByTheInformation) {
  ElementSums sums = Sums(14, 24, 12, 0);
  sums.Information = 5.0;
  StepControl control = Control(0.1f);
  control.NewtonStep = 0.5f;
  EXPECT_NEAR(ElementStep(sums, control, kPositiveOrientation).step, .2, 1e-7);
}

TEST(ElementStep, NewtonsDivisorIsAtLeastOne) {
  ElementSums sums = Sums(14, 24, 12, 0);
  sums.Information = 0.4;
  StepControl control = Control(0.1f);
  control.NewtonStep = 0.5f;
  EXPECT_NEAR(ElementStep(sums, control, kPositiveOrientation).step, 1.0, 1e-7);
}

TEST(ElementStep, ALongStepIsShortenedByNineTenthsUntilItIsAtMostOneLogit) {
  ElementSums sums = Sums(14.0, 24, 12.1, 0);  // residual 1.9
  StepControl control = Control(0.1f);
  control.NewtonStep = 1.0f;
  EXPECT_NEAR(ElementStep(sums, control, kPositiveOrientation).step, .908764, 1e-6);
}

TEST(ElementStep, WithoutDataThereIsNoStep) {
  const StepResult step = ElementStep(Sums(0, 0, 0, 0), Control(0.1f), kPositiveOrientation);
  EXPECT_EQ(step.step, 0.0f);
  EXPECT_EQ(step.residual, 0.0);
}

TEST(ElementStep, AShiftThatChangesNothingGivesNoStep) {
  const StepResult step = ElementStep(Sums(14, 24, 12, 12), Control(0.1f), kPositiveOrientation);
  EXPECT_EQ(step.step, 0.0f);
  EXPECT_DOUBLE_EQ(step.residual, 2.0);
}

TEST(ElementStep, AHeldElementsNegativeMaximumIsTakenAbsolute) {
  const StepResult held = ElementStep(Sums(14, -24, 12, 10.5), Control(0.3f), kPositiveOrientation);
  EXPECT_NEAR(held.step, .168236, 1e-6);
}

TEST(ElementStep, AStepBeyondThirtyTwoBitsIsShortenedLikeAnyOther) {
  StepControl control = Control(0.1f);
  control.NewtonStep = 1.0f;
  const ElementSums sums = Sums(2E+60, 3E+60, 1E+60, 0);
  const float step = ElementStep(sums, control, kPositiveOrientation).step;
  EXPECT_GT(step, .9f);
  EXPECT_LE(step, 1.0f);
}

TEST(ElementStep, AStepThatIsNotFiniteIsZero) {
  ElementSums sums = Sums(14, 24, 12, 10.5);
  sums.ExpectedSum = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(ElementStep(sums, Control(0.1f), kPositiveOrientation).step, 0.0f);
}

}  // namespace
}  // namespace flanks
