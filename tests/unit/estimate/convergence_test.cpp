#include "estimate/convergence.h"

#include <gtest/gtest.h>

namespace flanks {
namespace {

IterationState Jmle(std::int32_t number) {
  IterationState iteration;
  iteration.EstimationPhase = kPhaseJmle;
  iteration.IterationNumber = number;
  iteration.RecountRequired = false;
  return iteration;
}

const ConvergenceLimits kDefaults;
const ConvergenceLimits kNoLimits{0.0f, 0.0f, 0.0f, 0.0f};

TEST(KeepsGoing, APendingRecountGoesOn) {
  IterationState iteration = Jmle(30);
  iteration.RecountRequired = true;
  EXPECT_TRUE(KeepsGoing(iteration, kDefaults));
}

TEST(KeepsGoing, ProxGoesOn) {
  IterationState iteration = Jmle(1);
  iteration.EstimationPhase = kPhaseProx;
  EXPECT_TRUE(KeepsGoing(iteration, kDefaults));
}

TEST(KeepsGoing, AStandstillStopsWhateverTheLimitsSay) {
  IterationState iteration = Jmle(5);
  iteration.changes.MaxLogitChange = 9E-7f;
  iteration.changes.MaxThresholdChange = -9E-7f;
  iteration.changes.MaxScoreResidual = 100.0;
  EXPECT_FALSE(KeepsGoing(iteration, kDefaults));
}

TEST(KeepsGoing, EachLimitInItsTurn) {
  struct Case {
    const char* name;
    LargestChanges changes;
    ConvergenceLimits limits;
  };
  LargestChanges logit, score, threshold, category;
  logit.MaxLogitChange = -.011f;
  score.MaxScoreResidual = -.51;
  score.MaxLogitChange = .009f;
  threshold.MaxThresholdChange = .06f;
  category.MaxCategoryResidual = -2.1;
  category.MaxLogitChange = .009f;
  const Case cases[] = {{"logit change", logit, {.5f, .01f, 0.0f, 0.0f}},
                        {"score residual", score, {.5f, .01f, 0.0f, 0.0f}},
                        {"threshold change", threshold, {.5f, .01f, 0.0f, .05f}},
                        {"category residual", category, {.5f, .01f, 2.0f, 0.0f}}};
  for (const Case& c : cases) {
    IterationState iteration = Jmle(25);
    iteration.changes = c.changes;
    EXPECT_TRUE(KeepsGoing(iteration, c.limits)) << c.name;
  }
}

TEST(KeepsGoing, ALimitOfZeroDoesNotCount) {
  IterationState iteration = Jmle(25);
  iteration.changes.MaxLogitChange = .5f;
  EXPECT_FALSE(KeepsGoing(iteration, {.5f, 0.0f, 0.0f, 0.0f}));
}

TEST(KeepsGoing, BeforeIterationTwentyTheCategoriesBorrowTheElementsLimits) {
  IterationState iteration = Jmle(12);
  iteration.changes.MaxLogitChange = .009f;
  iteration.changes.MaxScoreResidual = .4;
  iteration.changes.MaxCategoryResidual = .6;
  EXPECT_TRUE(KeepsGoing(iteration, kDefaults));
  iteration.IterationNumber = 20;
  EXPECT_FALSE(KeepsGoing(iteration, kDefaults));
}

TEST(KeepsGoing, BeforeIterationTwentyTheThresholdsBorrowTheLogitLimit) {
  IterationState iteration = Jmle(19);
  iteration.changes.MaxLogitChange = .009f;
  iteration.changes.MaxThresholdChange = .011f;
  EXPECT_TRUE(KeepsGoing(iteration, kDefaults));
  iteration.IterationNumber = 20;
  EXPECT_FALSE(KeepsGoing(iteration, kDefaults));
}

TEST(KeepsGoing, WithoutAnyLimitOnlyAStandstillStops) {
  IterationState iteration = Jmle(300);
  iteration.changes.MaxLogitChange = 2E-6f;
  EXPECT_TRUE(KeepsGoing(iteration, kNoLimits));
  iteration.changes.MaxLogitChange = 5E-7f;
  EXPECT_FALSE(KeepsGoing(iteration, kNoLimits));
}

TEST(LimitReached, AtTheLimitInJmleOnly) {
  EXPECT_TRUE(LimitReached(Jmle(5), 5));
  EXPECT_FALSE(LimitReached(Jmle(4), 5));
  EXPECT_FALSE(LimitReached(Jmle(500), 0)) << "0 is no limit";
  IterationState iteration = Jmle(5);
  iteration.RecountRequired = true;
  EXPECT_FALSE(LimitReached(iteration, 5));
  iteration.RecountRequired = false;
  iteration.EstimationPhase = kPhaseProx;
  EXPECT_FALSE(LimitReached(iteration, 5));
}

struct SpeedCase {
  const char* name;
  double residual, before;
  float logit, logitBefore;
  float speed, expected;
};

TEST(NextSpeedFactor, FollowsTheResiduals) {
  const SpeedCase cases[] = {
      {"too slow", .95, 1.0, .1f, .1f, 1.0f, 1.01f},
      {"falling well", .5, 1.0, .1f, .1f, 1.0f, 1.0f},
      {"at nine tenths", .9, 1.0, .1f, .1f, 1.0f, 1.0f},
      {"twice the former", 2.0, 1.0, .1f, .1f, 1.0f, 1.01f},
      {"more than twice", 2.1, 1.0, .1f, .1f, 1.0f, .75f},
      {"residual turned", -.5, 1.0, .1f, .1f, 1.0f, .75f},
      {"logit turned", .5, 1.0, -.1f, .1f, 1.0f, .75f},
      {"a zero is no sign", .5, 1.0, 0.0f, .1f, 1.0f, .75f},
      {"ceiling", .95, 1.0, .1f, .1f, 1.999f, 2.0f},
      {"floor", -.5, 1.0, .1f, .1f, .0011f, .001f},
  };
  for (const SpeedCase& c : cases) {
    LargestChanges now, before;
    now.MaxScoreResidual = c.residual;
    now.MaxLogitChange = c.logit;
    before.MaxScoreResidual = c.before;
    before.MaxLogitChange = c.logitBefore;
    EXPECT_FLOAT_EQ(NextSpeedFactor(c.speed, now, before), c.expected) << c.name;
  }
}

TEST(LimitsOf, TakesAbsoluteValuesInTheKeywordsOrder) {
  const ConvergenceLimits limits = LimitsOf({-.1f, .02f, -3.0f, .04f});
  EXPECT_EQ(limits.score, .1f);
  EXPECT_EQ(limits.logit, .02f);
  EXPECT_EQ(limits.category, 3.0f);
  EXPECT_EQ(limits.threshold, .04f);
}

LargestChanges Changes(double residual, float change) {
  LargestChanges changes;
  changes.MaxScoreResidual = residual;
  changes.MaxLogitChange = change;
  return changes;
}

TEST(ProgressWatch, HoldsOutAThousandIterationsWithoutProgress) {
  ProgressWatch watch;
  EXPECT_FALSE(watch.Hopeless(Changes(-5.0, .25f)));
  for (int i = 1; i < 1000; ++i) ASSERT_FALSE(watch.Hopeless(Changes(5.0, -.25f))) << i;
  EXPECT_TRUE(watch.Hopeless(Changes(5.0, .25f)));
}

TEST(ProgressWatch, AHundredthOfTheSmallestIsProgress) {
  ProgressWatch watch;
  EXPECT_FALSE(watch.Hopeless(Changes(100.0, 1.0f)));
  for (int i = 1; i < 1000; ++i) watch.Hopeless(Changes(100.0, 1.0f));
  EXPECT_FALSE(watch.Hopeless(Changes(98.9, 1.0f)));  // of either
  for (int i = 1; i < 1000; ++i) watch.Hopeless(Changes(98.0, 1.0f));
  EXPECT_FALSE(watch.Hopeless(Changes(200.0, -.9f)));
  for (int i = 1; i < 1000; ++i) ASSERT_FALSE(watch.Hopeless(Changes(97.95, .9f)));
  EXPECT_TRUE(watch.Hopeless(Changes(97.95, .9f)));  // less than a hundredth
}

TEST(ProgressWatch, BeginsAnewAfterARecount) {
  ProgressWatch watch;
  for (int i = 0; i < 1000; ++i) watch.Hopeless(Changes(1.0, .1f));
  watch.Restart();
  EXPECT_FALSE(watch.Hopeless(Changes(1.0, .1f)));
}

}  // namespace
}  // namespace flanks
