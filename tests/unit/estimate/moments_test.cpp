#include "estimate/moments.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

#include "base/single.h"

namespace flanks {
namespace {

// Expected numbers are those of exact arithmetic; probabilities can be off by 4E-6 of themselves
// (exponents near 80 are held in 32 bits), moments of the fourth order by a few times that.
constexpr double kNear = 1E-5;

KernelScale Rating(std::vector<float> thresholds, int skipped = 0) {
  thresholds.insert(thresholds.begin(), 1.0f);
  std::vector<std::int16_t> flags(thresholds.size(), kCategoryFree);
  if (skipped != 0) flags[static_cast<std::size_t>(skipped)] = kCategorySkipped;
  KernelScale scale;
  const int top = static_cast<int>(thresholds.size()) - 1;
  SetUpKernelScale(ScaleType::rating, top, thresholds, flags, 80.0f, scale);
  return scale;
}

KernelScale Poisson(int top, float discrimination) {
  std::vector<float> thresholds(static_cast<std::size_t>(top) + 1, 0.0f);
  thresholds[0] = discrimination;
  const std::vector<std::int16_t> flags(thresholds.size(), kCategoryFree);
  KernelScale scale;
  SetUpKernelScale(ScaleType::poisson, top, thresholds, flags, 80.0f, scale);
  return scale;
}

Moments MomentsAt(const KernelScale& scale, float measure, std::int16_t category) {
  ProbabilityArray probability{};
  const KernelResult kernel = CategoryProbabilities(scale, measure, probability);
  return ObservationMoments(scale, kernel.expected, category, probability);
}

TEST(ObservationMoments, OfADichotomy) {
  const Moments half = MomentsAt(Rating({.5f}), 1.0f, 1);
  EXPECT_NEAR(half.ModelVariance, .235004, kNear);
  EXPECT_NEAR(half.FourthMoment, .069323, kNear);
  EXPECT_NEAR(half.ResidualVarianceTerm, .014097, kNear);
  EXPECT_NEAR(half.ScoreResidual, .377541, kNear);
  EXPECT_NEAR(half.SquaredStandardizedResidual, .606531, kNear);
  EXPECT_NEAR(half.KurtosisRatio, 1.255252, kNear);

  const Moments low = MomentsAt(Rating({0.0f}), -1.0f, 1);
  EXPECT_NEAR(low.SquaredStandardizedResidual, 2.718282, kNear);
  EXPECT_NEAR(low.KurtosisRatio, 2.086161, kNear);
}

TEST(ObservationMoments, OfRatingScales) {
  const Moments four = MomentsAt(Rating({-1.0f, 0.0f, 1.0f}), .5f, 3);
  EXPECT_NEAR(four.ModelVariance, .733780, kNear);
  EXPECT_NEAR(four.FourthMoment, 1.285077, kNear);
  EXPECT_NEAR(four.ResidualVarianceTerm, .746644, kNear);
  EXPECT_NEAR(four.SquaredStandardizedResidual, 1.695059, kNear);
  EXPECT_NEAR(four.KurtosisRatio, 2.386699, kNear);

  const Moments skipped = MomentsAt(Rating({-1.0f, 0.0f, .5f, 1.5f}, 2), 1.0f, 0);
  EXPECT_NEAR(skipped.ModelVariance, .950727, kNear);
  EXPECT_NEAR(skipped.SquaredStandardizedResidual, 9.704352, 2 * kNear);

  const KernelScale five = Rating({-1.5f, -.5f, .5f, 1.5f});
  const Moments middle = MomentsAt(five, 0.0f, 1);
  EXPECT_NEAR(middle.ModelVariance, .924312, kNear);
  EXPECT_NEAR(middle.FourthMoment, 2.232041, kNear);
  EXPECT_NEAR(middle.SquaredStandardizedResidual, 1.081886, kNear);

  const Moments higher = MomentsAt(five, .7f, 0);
  EXPECT_NEAR(higher.SquaredStandardizedResidual, 8.170484, 2 * kNear);
  EXPECT_NEAR(StandardizedResidualOf(higher.SquaredStandardizedResidual, higher.ScoreResidual),
              -2.858406, kNear);
}

TEST(ObservationMoments, OfAPoissonScaleReachBeyondItsTop) {
  EXPECT_NEAR(MomentsAt(Poisson(3, 1.0f), .7f, 1).ModelVariance, 2.012696, kNear);
  EXPECT_NEAR(MomentsAt(Poisson(8, 1.0f), 1.2f, 1).ModelVariance, 3.320092, kNear);
}

TEST(ObservationMoments, OfACertainOutcomeAreFloored) {
  const KernelScale scale = Rating({0.0f, 0.0f, 0.0f, 0.0f});
  const Moments expected = MomentsAt(scale, 100.0f, 4);
  EXPECT_EQ(expected.ModelVariance, 0.0f);
  EXPECT_EQ(expected.ScoreResidual, 0.0f);
  EXPECT_EQ(expected.SquaredStandardizedResidual, 1.0f);  // both floored at 1E-9
  EXPECT_EQ(expected.KurtosisRatio, 1.0f);
  const Moments surprise = MomentsAt(scale, 100.0f, 3);
  EXPECT_EQ(surprise.SquaredStandardizedResidual, Single(1.0 / 1E-9f));
}

TEST(ObservationMoments, OfAKnownOutcomeHalfAway) {
  // Expected score 1.5 of certain categories: the rows are given by hand.
  const KernelScale scale = Rating({0.0f, 0.0f});
  const std::vector<float> probability = {0.0f, 0.0f,
                                          0.5625f};  // sum of squares 2.25 = 1.5 squared
  const float expected = 1.5f;
  const std::int16_t category = 2;
  Moments m;
  const MomentRows rows{&m.ModelVariance, &m.FourthMoment,    &m.ResidualVarianceTerm,
                        &m.ScoreResidual, &m.SquaredResidual, &m.SquaredStandardizedResidual,
                        &m.KurtosisRatio};
  ObservationMoments(scale, {&expected, probability.data(), 1}, std::span(&category, 1), rows);
  EXPECT_EQ(m.ModelVariance, 0.0f);
  EXPECT_EQ(m.SquaredResidual, 0.25f);
  EXPECT_EQ(m.SquaredStandardizedResidual, Single(.25 / 1E-9f));
}

TEST(StandardizedResidual, IsCutAtNine) {
  EXPECT_EQ(StandardizedResidualOf(81.0f, 1.0f), 9.0f);
  EXPECT_EQ(StandardizedResidualOf(81.0f, -1.0f), -9.0f);
  EXPECT_EQ(StandardizedResidualOf(81.01f, .5f), 9.0f);
  EXPECT_EQ(StandardizedResidualOf(81.01f, -.5f), -9.0f);
  EXPECT_NEAR(StandardizedResidualOf(80.99f, 1.0f), 8.999444, 1E-6);
}

TEST(ObservationMoments, HaveTheSameBitsForEveryVectorWidthAndLength) {
  const KernelScale scale = Rating({-1.2f, -.1f, .4f, .9f});
  constexpr std::size_t kCount = 531;
  std::vector<float> measures(kCount);
  std::vector<std::int16_t> categories(kCount);
  for (std::size_t i = 0; i < kCount; ++i) {
    measures[i] = 7.0f * std::sin(static_cast<float>(i));
    categories[i] = static_cast<std::int16_t>(i % 5);
  }
  std::vector<float> expected(kCount), probability(5 * kCount);
  CategoryProbabilities(scale, measures, {expected.data(), nullptr, probability.data(), kCount});
  for (const VectorWidth width : UsableVectorWidths()) {
    std::vector<std::vector<float>> columns(7, std::vector<float>(kCount));
    const MomentRows rows{columns[0].data(), columns[1].data(), columns[2].data(),
                          columns[3].data(), columns[4].data(), columns[5].data(),
                          columns[6].data()};
    ObservationMoments(scale, {expected.data(), probability.data(), kCount}, categories, rows,
                       width);
    for (std::size_t i = 0; i < kCount; ++i) {
      const Moments one = MomentsAt(scale, measures[i], categories[i]);
      ASSERT_EQ(columns[0][i], one.ModelVariance) << NameOf(width);
      ASSERT_EQ(columns[1][i], one.FourthMoment) << NameOf(width);
      ASSERT_EQ(columns[2][i], one.ResidualVarianceTerm) << NameOf(width);
      ASSERT_EQ(columns[3][i], one.ScoreResidual) << NameOf(width);
      ASSERT_EQ(columns[4][i], one.SquaredResidual) << NameOf(width);
      ASSERT_EQ(columns[5][i], one.SquaredStandardizedResidual) << NameOf(width);
      ASSERT_EQ(columns[6][i], one.KurtosisRatio) << NameOf(width);
    }
  }
}

TEST(ExpectedCounts, OfARatingScaleLeaveCategoryZeroOut) {
  const KernelScale scale = Rating({0.0f, 0.0f});
  const std::vector<float> p = {.5f, .25f, .25f};
  std::vector<double> counts(3, 1.0), discrimination(3, 0.0);
  AddExpectedCounts(scale, p.data(), 1, 2.0, counts, discrimination);
  EXPECT_EQ(counts, (std::vector<double>{1.0, 1.5, 1.5}));
  EXPECT_EQ(discrimination, (std::vector<double>{0.0, .25, .1875}));  // without weight
}

TEST(ExpectedCounts, OfADichotomyHaveBothCategories) {
  const KernelScale scale = Rating({0.0f});
  const std::vector<float> p = {.25f, .75f};
  std::vector<double> counts(2, 0.0), discrimination(2, 0.0);
  AddExpectedCounts(scale, p.data(), 1, 2.0, counts, discrimination);
  EXPECT_EQ(counts, (std::vector<double>{.5, 1.5}));
  EXPECT_EQ(discrimination, (std::vector<double>{0.0, 0.0}));
}

TEST(ExpectedCounts, OfAPoissonScaleEndAtItsTop) {
  const KernelScale scale = Poisson(3, 1.0f);
  ProbabilityArray probability{};
  CategoryProbabilities(scale, .7f, probability);
  std::vector<double> counts(4, 0.0), discrimination(4, 0.0);
  AddExpectedCounts(scale, probability.data(), 1, 1.0, counts, discrimination);
  for (std::size_t k = 1; k <= 3; ++k) EXPECT_EQ(counts[k], probability[k]);
  EXPECT_EQ(discrimination[1], 0.0);
}

TEST(CategoryLogitMoments, OfARatingScaleByHand) {
  // B = .5, T = (-1, 0, 1): runs 1.5, 2.0, 1.5.
  const KernelScale scale = Rating({-1.0f, 0.0f, 1.0f});
  ProbabilityArray probability{};
  CategoryProbabilities(scale, .5f, probability);
  const LogitMoments moments = CategoryLogitMoments(scale, .5f, probability.data(), 1, 2);
  const double first = 1.5 * .258274 + 2.0 * .425822 + 1.5 * .258274;
  const double second = 2.25 * .258274 + 4.0 * .425822 + 2.25 * .258274;
  EXPECT_NEAR(moments.first, first, kNear);
  EXPECT_NEAR(moments.second, second, 2 * kNear);
  EXPECT_EQ(moments.observed, 2.0f);
}

TEST(CategoryLogitMoments, AddTheMeasureAloneForASkippedCategory) {
  const KernelScale scale = Rating({-1.0f, 5.0f, .5f}, 2);
  ProbabilityArray probability{};
  CategoryProbabilities(scale, 1.0f, probability);
  // Runs 2, 3, 3.5.
  EXPECT_EQ(CategoryLogitMoments(scale, 1.0f, probability.data(), 1, 3).observed, 3.5f);
}

TEST(CategoryLogitMoments, OfADichotomyAreZero) {
  const KernelScale scale = Rating({.5f});
  ProbabilityArray probability{};
  CategoryProbabilities(scale, 1.0f, probability);
  const LogitMoments moments = CategoryLogitMoments(scale, 1.0f, probability.data(), 1, 1);
  EXPECT_EQ(moments.first, 0.0f);
  EXPECT_EQ(moments.second, 0.0f);
  EXPECT_EQ(moments.observed, 0.0f);
}

// Every observation of a batch, at every vector width, is that of the formula written out.
TEST(CategoryLogitMoments, HaveTheSameBitsForEveryVectorWidthAndLength) {
  const KernelScale scale = Rating({-1.2f, -.1f, .4f, .9f});
  constexpr std::size_t kCount = 531;
  std::vector<float> measures(kCount);
  std::vector<std::int16_t> categories(kCount);
  for (std::size_t i = 0; i < kCount; ++i) {
    measures[i] = 7.0f * std::sin(static_cast<float>(i));
    categories[i] = static_cast<std::int16_t>(i % 5);
  }
  std::vector<float> expected(kCount), p(5 * kCount);
  CategoryProbabilities(scale, measures, {expected.data(), nullptr, p.data(), kCount});
  for (const VectorWidth width : UsableVectorWidths()) {
    std::vector<float> first(kCount), second(kCount), observed(kCount);
    CategoryLogitMoments(scale, measures, {nullptr, p.data(), kCount}, categories,
                         {first.data(), second.data(), observed.data()}, width);
    for (std::size_t i = 0; i < kCount; ++i) {
      double run = 0.0, sum = 0.0, squares = 0.0, at = 0.0;
      for (std::size_t k = 1; k < 5; ++k) {
        run += static_cast<double>(measures[i]) - scale.step[k];
        sum += run * p[k * kCount + i];
        squares += run * run * p[k * kCount + i];
        if (static_cast<std::size_t>(categories[i]) == k) at = run;
      }
      ASSERT_EQ(first[i], Single(sum)) << NameOf(width);
      ASSERT_EQ(second[i], Single(squares)) << NameOf(width);
      ASSERT_EQ(observed[i], Single(at)) << NameOf(width);
    }
  }
}

// Lanes that bring the steps of their own scales are as if each were alone.
TEST(CategoryLogitMoments, TakeTheStepsOfEachLane) {
  const std::vector<KernelScale> scales = {Rating({-1.2f, -.1f, .4f}), Rating({.3f, .2f, -.5f})};
  constexpr std::size_t kCount = 300;
  std::vector<float> measures(kCount), p(4 * kCount);
  std::vector<std::int16_t> categories(kCount);
  std::vector<double> steps(4 * kCount);
  std::vector<LogitMoments> alone(kCount);
  for (std::size_t i = 0; i < kCount; ++i) {
    measures[i] = 3.0f * std::sin(static_cast<float>(i));
    categories[i] = static_cast<std::int16_t>(i % 4);
    const KernelScale& scale = scales[i % 3 == 0 ? 0 : 1];
    ProbabilityArray probability{};
    CategoryProbabilities(scale, measures[i], probability);
    for (std::size_t k = 0; k < 4; ++k) {
      p[k * kCount + i] = probability[k];
      steps[k * kCount + i] = scale.step[k];
    }
    alone[i] = CategoryLogitMoments(scale, measures[i], probability.data(), 1, categories[i]);
  }
  for (const VectorWidth width : UsableVectorWidths()) {
    std::vector<float> first(kCount), second(kCount), observed(kCount);
    CategoryLogitMoments(scales[0], {steps.data(), kCount}, measures, {nullptr, p.data(), kCount},
                         categories, {first.data(), second.data(), observed.data()}, width);
    for (std::size_t i = 0; i < kCount; ++i) {
      ASSERT_EQ(first[i], alone[i].first) << NameOf(width);
      ASSERT_EQ(second[i], alone[i].second) << NameOf(width);
      ASSERT_EQ(observed[i], alone[i].observed) << NameOf(width);
    }
  }
}

}  // namespace
}  // namespace flanks
