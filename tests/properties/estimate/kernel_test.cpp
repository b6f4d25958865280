// Laws of the kernel that hold for every scale and measure.
#include "estimate/kernel.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace flanks {
namespace {

struct RandomScale {
  ScaleType type;
  int top;
  std::vector<float> thresholds;
  std::vector<std::int16_t> flags;

  KernelScale kernel() const {
    KernelScale scale;
    SetUpKernelScale(type, top, thresholds, flags, 80.0f, scale);
    return scale;
  }
};

class KernelLaws : public ::testing::TestWithParam<std::uint32_t> {
 protected:
  KernelLaws() : random_(GetParam()) {}

  float Uniform(float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random_);
  }
  int Whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

  RandomScale AnyScale() {
    RandomScale scale;
    scale.type = static_cast<ScaleType>(Whole(0, 2));
    scale.top = Whole(0, 4) == 0 ? Whole(1, 255) : Whole(1, 12);
    const auto cells = static_cast<std::size_t>(scale.top) + 1;
    scale.thresholds.resize(cells);
    scale.flags.assign(cells, kCategoryFree);
    for (float& threshold : scale.thresholds) threshold = Uniform(-4.0f, 4.0f);
    scale.thresholds[0] = Whole(0, 1) == 0 ? 1.0f : Uniform(.2f, 2.0f);
    if (scale.type == ScaleType::rating)
      for (std::size_t k = 1; k < cells; ++k)
        if (Whole(0, 9) == 0) scale.flags[k] = kCategorySkipped;
    return scale;
  }

  std::mt19937 random_;
};

TEST_P(KernelLaws, ProbabilitiesSumToOneAndNoneIsBelowZero) {
  for (int round = 0; round < 60; ++round) {
    const KernelScale scale = AnyScale().kernel();
    ProbabilityArray probability{};
    const KernelResult result = CategoryProbabilities(scale, Uniform(-30.0f, 30.0f), probability);
    double sum = 0.0;
    for (int k = 0; k <= scale.filled; ++k) {
      const float p = probability[static_cast<std::size_t>(k)];
      ASSERT_GE(p, 0.0f);
      sum += p;
    }
    EXPECT_NEAR(sum, 1.0, 1E-6) << "seed " << GetParam() << " round " << round;
    EXPECT_GE(result.variance, 0.0f);
    EXPECT_GE(result.expected, 0.0f);
    EXPECT_LE(result.expected, scale.type == ScaleType::poisson
                                   ? 2.0f * static_cast<float>(scale.top) + 255.0f
                                   : static_cast<float>(scale.top) * 1.000001f);
  }
}

TEST_P(KernelLaws, TheExpectedScoreRisesWithTheMeasure) {
  for (int round = 0; round < 20; ++round) {
    const KernelScale scale = AnyScale().kernel();
    std::vector<float> measures, expected(60);
    for (int i = 0; i < 60; ++i) measures.push_back(-9.0f + 0.3f * static_cast<float>(i));
    std::vector<float> probability(60 * static_cast<std::size_t>(scale.varianceBound + 1));
    CategoryProbabilities(scale, measures, {expected.data(), nullptr, probability.data(), 60});
    for (std::size_t i = 1; i < expected.size(); ++i) {
      // A step of .3 logits is far above the rounding of exponents near 80.
      EXPECT_GE(expected[i], expected[i - 1] * (1.0f - 1E-5f))
          << "seed " << GetParam() << " round " << round;
    }
    EXPECT_GT(expected.back(), expected.front());
  }
}

TEST_P(KernelLaws, ShiftingMeasureAndThresholdsTogetherChangesNothing) {
  for (int round = 0; round < 40; ++round) {
    RandomScale scale = AnyScale();
    scale.type = ScaleType::rating;
    scale.top = std::min(scale.top, 12);
    // A skipped category has no threshold to shift.
    scale.flags.assign(scale.flags.size(), kCategoryFree);
    RandomScale shifted = scale;
    const float by = Uniform(-3.0f, 3.0f);
    for (float& threshold : shifted.thresholds) threshold += by;
    const float measure = Uniform(-5.0f, 5.0f);
    ProbabilityArray first{}, second{};
    const KernelResult one = CategoryProbabilities(scale.kernel(), measure, first);
    const KernelResult other = CategoryProbabilities(shifted.kernel(), measure + by, second);
    for (std::size_t k = 0; k <= static_cast<std::size_t>(scale.top); ++k)
      EXPECT_NEAR(first[k], second[k], 3E-5) << "seed " << GetParam() << " round " << round;
    EXPECT_NEAR(one.expected, other.expected, 3E-5 * scale.top);
  }
}

TEST_P(KernelLaws, TheVarianceIsTheSlopeOfTheExpectedScore) {
  for (int round = 0; round < 40; ++round) {
    RandomScale random = AnyScale();
    random.type = ScaleType::rating;
    random.top = std::min(random.top, 5);
    const KernelScale scale = random.kernel();
    const float measure = Uniform(-3.0f, 3.0f);
    ProbabilityArray probability{};
    const float below = CategoryProbabilities(scale, measure - .05f, probability).expected;
    const float above = CategoryProbabilities(scale, measure + .05f, probability).expected;
    const float variance = CategoryProbabilities(scale, measure, probability).variance;
    // The difference quotient is off by .05 squared / 6 times the fourth cumulant, whose size is at
    // most m^4 / 8; the rounding of the scores, over .1, is at most 1E-3.
    const double room = 1E-3 + .0025 / 6 / 8 * std::pow(scale.top, 4);
    EXPECT_NEAR((above - below) / .1f, variance, room) << "seed " << GetParam();
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, KernelLaws, ::testing::Range(1U, 11U));

}  // namespace
}  // namespace flanks
