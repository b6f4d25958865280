#include "stats/bias_statistics.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>

namespace flanks {
namespace {

constexpr float kTiny = 1.8E-35f;

BiasTerm TermOf(float bias, float error, float count) {
  BiasTerm term;
  term.Bias = bias;
  term.StandardError = error;
  term.Count = count;
  term.standing = BiasStanding::estimable;
  return term;
}

// d.f. = .13² 9 14 / (.09² 9 + .04² 14) = 22.344; the probability from tables of t.
TEST(Contrast, IsWelchsT) {
  const BiasContrast c = ContrastOf(TermOf(.8f, .2f, 10.0f), TermOf(-.1f, .3f, 15.0f));
  EXPECT_FLOAT_EQ(c.contrast, .9f);
  EXPECT_NEAR(c.jointError, .360555, 1E-6);
  EXPECT_TRUE(c.tested);
  EXPECT_NEAR(c.t, 2.496151, 1E-5);
  EXPECT_EQ(c.DegreesOfFreedom, 22);
  EXPECT_NEAR(c.Probability, .020539, 1E-6);
}

TEST(Contrast, OfEqualTermsHasAllDegreesOfFreedom) {
  const BiasContrast c = ContrastOf(TermOf(1.0f, .5f, 6.0f), TermOf(0.0f, .5f, 6.0f));
  EXPECT_EQ(c.DegreesOfFreedom, 10);
  EXPECT_NEAR(c.t, std::sqrt(2.0), 1E-6);
}

// With equal errors the degrees are 4 a b / (a + b), a and b the counts less 1, and with the first
// error half of the second 25 a b / (16 a + b): compared in whole numbers.
TEST(Contrast, DegreesOfFreedomAreCutFromTheExactNumber) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> anyError(0.01f, 3.0f);
  std::uniform_int_distribution<int> anyCount(2, 5000);
  for (int trial = 0; trial < 100'000; ++trial) {
    const float error = anyError(random);
    const int n1 = anyCount(random), n2 = trial % 2 == 0 ? n1 : anyCount(random);
    const std::int64_t a = n1 - 1, b = n2 - 1;
    const BiasTerm p = TermOf(1.0f, error, static_cast<float>(n1));
    const BiasTerm q = TermOf(0.0f, error, static_cast<float>(n2));
    const BiasTerm wide = TermOf(0.0f, 2.0f * error, static_cast<float>(n2));
    ASSERT_EQ(ContrastOf(p, q).DegreesOfFreedom, 4 * a * b / (a + b)) << error << " " << n1;
    ASSERT_EQ(ContrastOf(p, wide).DegreesOfFreedom, 25 * a * b / (16 * a + b))
        << error << " " << n1;
    ASSERT_EQ(ContrastOf(wide, p).DegreesOfFreedom, 25 * a * b / (16 * a + b))
        << error << " " << n1;
  }
}

TEST(Contrast, WithOneResponseOnASideHasNoDegreesOfFreedom) {
  for (const float count : {1.0f, 0.5f}) {
    const BiasContrast c = ContrastOf(TermOf(1.0f, .5f, count), TermOf(0.0f, .5f, 6.0f));
    EXPECT_TRUE(c.tested);
    EXPECT_EQ(c.DegreesOfFreedom, 0);
    EXPECT_EQ(c.Probability, 0.0f);
  }
}

TEST(Contrast, WithoutAStandardErrorIsNotTested) {
  const BiasContrast c = ContrastOf(TermOf(1.0f, 0.0f, 5.0f), TermOf(0.0f, .5f, 6.0f));
  EXPECT_FALSE(c.tested);
  EXPECT_EQ(c.t, 0.0f);
  EXPECT_FLOAT_EQ(c.contrast, 1.0f);
  EXPECT_FLOAT_EQ(c.jointError, .5f);
  const BiasContrast none = ContrastOf(TermOf(1.0f, 0.0f, 5.0f), TermOf(0.0f, 0.0f, 6.0f));
  EXPECT_FALSE(none.tested);
  EXPECT_EQ(none.DegreesOfFreedom, 0);
}

TEST(Standing, FollowsTheStatus) {
  EXPECT_EQ(StandingOf(3), BiasStanding::estimable);
  EXPECT_EQ(StandingOf(kBiasMinimum), BiasStanding::minimum);
  EXPECT_EQ(StandingOf(kBiasMaximum), BiasStanding::maximum);
  EXPECT_EQ(StandingOf(kBiasNotEstimable), BiasStanding::none);
}

struct FinishTest : ::testing::Test {
  BiasState state{0.0, .5f, 1};
  BiasScores scores{7.0f, 12.0f, 11.0f, 4.0f, 1.0f, 9.5f};
  // Information 4, so that the S.E. is .5.
  BiasFitSums sums{7.0, 4.0, 6.0, 5.0, 8.0, 2.0};

  BiasTerm Finish() { return FinishBiasTerm(state, scores, sums, WilsonHilferty::exact, kTiny); }
};

TEST_F(FinishTest, StandardErrorTAndProbability) {
  const BiasTerm term = Finish();
  EXPECT_FLOAT_EQ(term.StandardError, .5f);
  EXPECT_FLOAT_EQ(term.t, 1.0f);
  EXPECT_EQ(term.DegreesOfFreedom, 3);
  EXPECT_NEAR(term.Probability, .391002, 1E-6);  // of t 1 with 3 d.f.
  EXPECT_FLOAT_EQ(term.ResidualAverage(), .375f);
}

// Infit 5 / 4, outfit 6 / 4; ZStd with q = sqrt(2) / 4 and sqrt(8 - 4) / 4.
TEST_F(FinishTest, FitIsThatOfElements) {
  const BiasTerm term = Finish();
  const auto z = [](double ratio, double q) {
    return (std::cbrt(ratio) - 1.0) * 3.0 / q + q / 3.0;
  };
  EXPECT_FLOAT_EQ(term.InfitMeanSquare, 1.25f);
  EXPECT_NEAR(term.InfitZStd, z(1.25, std::sqrt(2.0) / 4.0), 1E-5);
  EXPECT_FLOAT_EQ(term.OutfitMeanSquare, 1.5f);
  EXPECT_NEAR(term.OutfitZStd, z(1.5, .5), 1E-5);
}

TEST_F(FinishTest, TIsHeldAtItsLimits) {
  state.Bias = -60.0f;
  EXPECT_EQ(Finish().t, -99.99f);
  sums.Information = 0.0;
  const BiasTerm term = Finish();
  EXPECT_EQ(term.StandardError, 0.0f);
  EXPECT_EQ(term.t, 0.0f);
  EXPECT_EQ(term.Bias, -60.0f);
}

TEST_F(FinishTest, OneResponseHasNoDegreesOfFreedom) {
  scores.Count = 1.0f;
  const BiasTerm term = Finish();
  EXPECT_EQ(term.DegreesOfFreedom, 0);
  EXPECT_EQ(term.Probability, 0.0f);
  scores.Count = 2.9f;
  EXPECT_EQ(Finish().DegreesOfFreedom, 1);
}

TEST_F(FinishTest, WhatIsNotEstimableHasScoresAlone) {
  state.BiasStatus = kBiasNotEstimable;
  const BiasTerm term = Finish();
  EXPECT_EQ(term.standing, BiasStanding::none);
  EXPECT_EQ(term.Bias, 0.0f);
  EXPECT_EQ(term.RawScore, 11.0f);
}

}  // namespace
}  // namespace flanks
