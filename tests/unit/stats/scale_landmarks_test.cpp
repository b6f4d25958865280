// Landmarks of scales that have closed forms: with x = exp(B) each condition is a quadratic in x.
#include "stats/scale_landmarks.h"

#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

namespace flanks {
namespace {

// The exponents of the kernel reach 80 and are cut to 32 bits there, to 4E-6.
constexpr double kNear = 1e-5;

KernelScale Rating(std::vector<float> thresholds, std::vector<std::int16_t> flags = {}) {
  KernelScale scale;
  thresholds.insert(thresholds.begin(), 0.0f);
  flags.resize(thresholds.size(), kCategoryFree);
  SetUpKernelScale(ScaleType::rating, static_cast<int>(thresholds.size()) - 1, thresholds, flags,
                   80.0f, scale);
  return scale;
}

KernelScale Counts(ScaleType type, int top) {
  KernelScale scale;
  std::vector<float> thresholds(static_cast<std::size_t>(top) + 1, 0.0f);
  thresholds[0] = 1.0f;
  const std::vector<std::int16_t> flags(thresholds.size(), kCategoryFree);
  SetUpKernelScale(type, top, thresholds, flags, 80.0f, scale);
  return scale;
}

double PositiveRoot(double a, double b, double c) {
  return (-b + std::sqrt(b * b - 4.0 * a * c)) / (2.0 * a);
}

TEST(Landmarks, OfADichotomyStandAboutItsThreshold) {
  const std::vector<CategoryLandmarks> marks = FindLandmarks(Rating({.4f}));
  ASSERT_EQ(marks.size(), 2u);
  EXPECT_NEAR(*marks[0].expectation, .4 - std::log(3.0), kNear);  // .25 is odds of 1 to 3
  EXPECT_NEAR(*marks[1].expectation, .4 + std::log(3.0), kNear);
  EXPECT_FALSE(marks[0].half || marks[0].mostProbable || marks[0].thurstone);
  EXPECT_NEAR(*marks[1].half, .4, kNear);
  EXPECT_NEAR(*marks[1].mostProbable, .4, kNear);
  EXPECT_NEAR(*marks[1].thurstone, .4, kNear);
  EXPECT_EQ(marks[0].peak, 1.0);
  EXPECT_EQ(marks[1].peak, 1.0);
}

// Thresholds -.7 and .7: the probabilities are 1, a x and x squared over their sum, a = exp(.7).
TEST(Landmarks, OfThreeCategoriesAreRootsOfQuadratics) {
  const std::vector<CategoryLandmarks> marks = FindLandmarks(Rating({-.7f, .7f}));
  const double a = std::exp(.7);
  EXPECT_NEAR(*marks[0].expectation, std::log(PositiveRoot(1.75, .75 * a, -.25)), kNear);
  EXPECT_NEAR(*marks[1].expectation, 0.0, kNear);
  EXPECT_NEAR(*marks[2].expectation, -*marks[0].expectation, kNear);
  EXPECT_NEAR(*marks[1].half, std::log(PositiveRoot(3.0, a, -1.0)), kNear);
  EXPECT_NEAR(*marks[2].half, -*marks[1].half, kNear);
  EXPECT_NEAR(*marks[1].mostProbable, -.7, kNear);
  EXPECT_NEAR(*marks[2].mostProbable, .7, kNear);
  EXPECT_NEAR(*marks[1].thurstone, std::log(PositiveRoot(1.0, a, -1.0)), kNear);
  EXPECT_NEAR(*marks[2].thurstone, -*marks[1].thurstone, kNear);
  EXPECT_NEAR(marks[1].peak, a / (2.0 + a), kNear);
  double low = 0.0, high = 0.0;
  ASSERT_TRUE(RangeOfLandmarks(marks, low, high));
  EXPECT_EQ(low, *marks[0].expectation);
  EXPECT_EQ(high, *marks[2].expectation);
}

// Rounding in the kernel's exponents moves a start in its sixth place; a threshold is known
// exactly.
TEST(Landmarks, ACategoryStartsAtItsThresholdToTheLastDigit) {
  const std::vector<float> thresholds = {-1.0f, -.3215f, .25534f, 1.5f};
  const std::vector<CategoryLandmarks> marks = FindLandmarks(Rating(thresholds));
  for (std::size_t k = 1; k < marks.size(); ++k)
    EXPECT_EQ(*marks[k].mostProbable, static_cast<double>(thresholds[k - 1])) << k;
  // Where a category is skipped or never the most probable, the next starts elsewhere.
  EXPECT_NEAR(*FindLandmarks(Rating({.7f, -.7f}))[2].mostProbable, 0.0, kNear);
}

TEST(Landmarks, ACategoryBetweenDisorderedThresholdsIsNeverTheMostProbable) {
  const std::vector<CategoryLandmarks> marks = FindLandmarks(Rating({.7f, -.7f}));
  EXPECT_FALSE(marks[1].mostProbable);
  EXPECT_NEAR(*marks[2].mostProbable, 0.0, kNear);  // where 1 and x squared are equal
  EXPECT_NEAR(marks[1].peak, std::exp(-.7) / (2.0 + std::exp(-.7)), kNear);
}

// A skipped category: 1 and x squared exp(-T) only.
TEST(Landmarks, ASkippedCategoryHasAnExpectationAndNoMode) {
  const std::vector<CategoryLandmarks> marks =
      FindLandmarks(Rating({0.0f, .6f}, {kCategoryFree, kCategorySkipped}));
  EXPECT_FALSE(marks[1].mostProbable);
  EXPECT_NEAR(*marks[2].mostProbable, .3, kNear);
  EXPECT_NEAR(*marks[1].expectation, .3, kNear);
  EXPECT_NEAR(*marks[1].thurstone, .3, kNear);
  EXPECT_NEAR(*marks[2].thurstone, .3, kNear);
  EXPECT_EQ(marks[1].peak, 0.0);
}

TEST(Landmarks, OfCountsFollowTheirClosedForms) {
  // Four trials: the expected score is 4 / (1 + exp(-B)); k is the most probable from
  // ln(k / (5 - k)) on.
  const std::vector<CategoryLandmarks> trials = FindLandmarks(Counts(ScaleType::binomial, 4));
  for (int k = 1; k <= 3; ++k) {
    const CategoryLandmarks& marks = trials[static_cast<std::size_t>(k)];
    EXPECT_NEAR(*marks.expectation, std::log(k / (4.0 - k)), 1e-5);
    EXPECT_NEAR(*marks.half, std::log((k - .5) / (4.5 - k)), 1e-5);
    EXPECT_NEAR(*marks.mostProbable, std::log(k / (5.0 - k)), 1e-5);
  }
  // Poisson counts: exp(B), and ln k; half of them are at least 1 where exp(-exp(B)) is 1/2.
  const std::vector<CategoryLandmarks> counts = FindLandmarks(Counts(ScaleType::poisson, 6));
  for (int k = 1; k <= 5; ++k) {
    EXPECT_NEAR(*counts[static_cast<std::size_t>(k)].expectation, std::log(k), 1e-5);
    EXPECT_NEAR(*counts[static_cast<std::size_t>(k)].mostProbable, std::log(k), 1e-5);
  }
  EXPECT_NEAR(*counts[1].thurstone, std::log(std::log(2.0)), 1e-5);
}

TEST(Landmarks, BeyondTheExponentLimitAreNotThere) {
  const std::vector<CategoryLandmarks> marks = FindLandmarks(Rating({100.0f}));
  double low = 0.0, high = 0.0;
  EXPECT_FALSE(marks[1].half);
  EXPECT_FALSE(RangeOfLandmarks(marks, low, high));
}

}  // namespace
}  // namespace flanks
