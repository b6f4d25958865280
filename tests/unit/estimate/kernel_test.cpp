#include "estimate/kernel.h"

#include <bit>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include "support/plain_kernel.h"

namespace flanks {
namespace {

// Expected numbers are those of exact arithmetic.  Exponents near 80 are held in 32 bits, where
// they stand 7.6E-6 apart: a probability can be off by 4E-6 of itself.
constexpr double kNear = 1E-5;

// A scale given by its thresholds T(1) .. T(m); cell 0 is the discrimination.
struct TestScale {
  ScaleType type = ScaleType::rating;
  std::vector<float> thresholds;  // cells 0 to m
  std::vector<std::int16_t> flags;
  float limit = 80.0f;

  int top() const { return static_cast<int>(thresholds.size()) - 1; }
  KernelScale kernel() const {
    KernelScale scale;
    SetUpKernelScale(type, top(), thresholds, flags, limit, scale);
    return scale;
  }
  PlainScale plain() const { return {type, top(), thresholds.data(), flags.data(), limit}; }
};

TestScale Rating(std::vector<float> thresholds) {
  TestScale scale;
  scale.thresholds = std::move(thresholds);
  scale.thresholds.insert(scale.thresholds.begin(), 1.0f);
  scale.flags.assign(scale.thresholds.size(), kCategoryFree);
  return scale;
}

TestScale Counts(ScaleType type, int top, float discrimination) {
  TestScale scale;
  scale.type = type;
  scale.thresholds.assign(static_cast<std::size_t>(top) + 1, 0.0f);
  scale.thresholds[0] = discrimination;
  scale.flags.assign(scale.thresholds.size(), kCategoryFree);
  return scale;
}

struct Evaluated {
  float expected, variance;
  std::vector<float> p;
};

Evaluated Evaluate(const TestScale& scale, float measure) {
  ProbabilityArray probability{};
  const KernelScale kernel = scale.kernel();
  const KernelResult result = CategoryProbabilities(kernel, measure, probability);
  return {result.expected, result.variance,
          std::vector<float>(probability.begin(), probability.begin() + kernel.filled + 1)};
}

void ExpectNear(const std::vector<float>& values, const std::vector<double>& expected) {
  ASSERT_EQ(values.size(), expected.size());
  for (std::size_t k = 0; k < values.size(); ++k) EXPECT_NEAR(values[k], expected[k], kNear);
}

TEST(Kernel, GivesTheProbabilitiesOfADichotomy) {
  const Evaluated half = Evaluate(Rating({.5f}), 1.0f);
  ExpectNear(half.p, {.377541, .622459});
  EXPECT_EQ(half.expected, half.p[1]);
  EXPECT_NEAR(half.variance, .235004, kNear);
  EXPECT_NEAR(Evaluate(Rating({0.0f}), -1.0f).expected, .268941, kNear);
}

TEST(Kernel, TakesEveryScaleWithTwoCategoriesAsADichotomy) {
  for (const ScaleType type : {ScaleType::rating, ScaleType::binomial, ScaleType::poisson}) {
    TestScale scale = Counts(type, 1, 0.5f);
    scale.thresholds[1] = .5f;
    const Evaluated result = Evaluate(scale, 1.0f);
    ExpectNear(result.p, {.377541, .622459});
  }
}

TEST(Kernel, GivesTheProbabilitiesOfRatingScales) {
  const Evaluated four = Evaluate(Rating({-1.0f, 0.0f, 1.0f}), .5f);
  ExpectNear(four.p, {.057629, .258274, .425822, .258274});
  EXPECT_NEAR(four.expected, 1.884742, kNear);
  EXPECT_NEAR(four.variance, .733780, kNear);

  const TestScale five = Rating({-1.5f, -.5f, .5f, 1.5f});
  const Evaluated middle = Evaluate(five, 0.0f);
  ExpectNear(middle.p, {.054489, .244201, .402620, .244201, .054489});
  EXPECT_NEAR(middle.expected, 2.0, kNear);
  EXPECT_NEAR(middle.variance, .924312, kNear);
  const Evaluated higher = Evaluate(five, .7f);
  EXPECT_NEAR(higher.expected, 2.628413, kNear);
  EXPECT_NEAR(higher.variance, .845550, kNear);
}

TEST(Kernel, GivesASkippedCategoryTheProbabilityZero) {
  TestScale scale = Rating({-1.0f, 0.0f, .5f, 1.5f});
  scale.flags[2] = kCategorySkipped;
  const Evaluated result = Evaluate(scale, 1.0f);
  ExpectNear(result.p, {.016236, .119972, 0.0, .537675, .326117});
  EXPECT_EQ(result.p[2], 0.0f);
  EXPECT_NEAR(result.expected, 3.037464, kNear);
  EXPECT_NEAR(result.variance, .950727, kNear);
}

TEST(Kernel, ShiftsExponentsSoThatTheLargestIsTheLimit) {
  const Evaluated result = Evaluate(Rating({0.0f, 0.0f, 0.0f, 0.0f}), 100.0f);
  EXPECT_EQ(result.p[4], 1.0f);
  EXPECT_EQ(result.expected, 4.0f);
  EXPECT_EQ(result.p[0], 0.0f);  // exp(80 - 400)
  EXPECT_EQ(result.variance, 0.0f);
}

TEST(Kernel, HoldsTheExponentOfADichotomyAtTheLimit) {
  const Evaluated result = Evaluate(Rating({0.0f}), -200.0f);
  EXPECT_GT(result.p[1], 0.0f);  // exp(-80), not exp(-200)
  EXPECT_NEAR(std::log(result.p[1]), -80.0, 1E-5);
}

TEST(Kernel, TakesTheClosedFormOfABinomialScaleWhoseDiscriminationIsOne) {
  const Evaluated closed = Evaluate(Counts(ScaleType::binomial, 5, 1.0f), .4f);
  EXPECT_EQ(closed.expected, Single(5.0 / (1.0 + std::exp(-static_cast<double>(.4f)))));
  EXPECT_NEAR(closed.expected, 2.993438, kNear);
  ExpectNear(closed.p, {.010409, .077643, .231658, .345594, .257783, .076913});

  const Evaluated summed = Evaluate(Counts(ScaleType::binomial, 5, .5f), .4f);
  EXPECT_NEAR(summed.expected, 3.226690, kNear);
  ExpectNear(summed.p, {.024791, .082699, .174474, .260285, .274569, .183183});
}

TEST(Kernel, CutsThePoissonSumsAtTenOrTwiceTheTop) {
  const Evaluated closed = Evaluate(Counts(ScaleType::poisson, 3, 1.0f), .7f);
  ASSERT_EQ(closed.p.size(), 11U);
  EXPECT_NEAR(closed.expected, 2.013753, kNear);
  EXPECT_NEAR(closed.p[0], .133488, kNear);
  EXPECT_NEAR(closed.p[10], .000040, kNear);
  double sum = 0.0;
  for (std::size_t k = 0; k < closed.p.size(); ++k) sum += static_cast<double>(k) * closed.p[k];
  EXPECT_NEAR(sum, 2.013671, kNear);  // the array's own sum is not the closed form
  EXPECT_NEAR(closed.variance, 2.012696, kNear);

  const Evaluated summed = Evaluate(Counts(ScaleType::poisson, 3, .5f), .7f);
  EXPECT_NEAR(summed.expected, 4.347373, kNear);

  const Evaluated eight = Evaluate(Counts(ScaleType::poisson, 8, 1.0f), 1.2f);
  EXPECT_EQ(eight.p.size(), 17U);
  EXPECT_NEAR(eight.expected, 3.320117, kNear);
  EXPECT_NEAR(eight.variance, 3.320092, kNear);
}

TEST(Kernel, HoldsAPoissonScoreAtTheLargestCategory) {
  EXPECT_EQ(Evaluate(Counts(ScaleType::poisson, 3, 1.0f), 6.0f).expected, 255.0f);
}

TEST(Kernel, ReadsAPoissonVarianceBeyondWhatItFilled) {
  // A wide rating scale leaves its upper categories behind; the Poisson call fills 0 to 10 and
  // sums to 20.
  ProbabilityArray probability{};
  const KernelScale wide = Rating(std::vector<float>(20, 0.0f)).kernel();
  const KernelScale poisson = Counts(ScaleType::poisson, 3, 1.0f).kernel();
  const float alone = CategoryProbabilities(poisson, .7f, probability).variance;
  CategoryProbabilities(wide, 0.0f, probability);
  const ProbabilityArray left = probability;
  const float after = CategoryProbabilities(poisson, .7f, probability).variance;
  double added = 0.0;
  for (std::size_t k = 11; k <= 20; ++k) added += static_cast<double>(k * k) * left[k];
  EXPECT_GT(added, 100.0);
  EXPECT_NEAR(after, alone + added, 1E-4);
}

TEST(Kernel, NeedsNoRoomBeyondThePoissonBoundsOfTheLargestCategory) {
  const KernelScale scale = Counts(ScaleType::poisson, kLargestCategory, 1.0f).kernel();
  EXPECT_EQ(scale.filled, 510);
  EXPECT_EQ(scale.varianceBound, 1020);
  EXPECT_LT(scale.varianceBound, kProbabilityEntries);
}

TEST(Kernel, AcceptsExponentLimitsWhoseTotalLeavesThirtyTwoBits) {
  TestScale scale = Rating(std::vector<float>(20, 0.0f));
  scale.limit = 88.0f;  // 21 times exp(88) is above the largest float
  const Evaluated result = Evaluate(scale, 0.0f);
  for (const float p : result.p) EXPECT_NEAR(p, 1.0 / 21, 1E-7);
  EXPECT_NEAR(result.expected, 10.0, 1E-5);
}

TEST(Kernel, TakesALargerLimitAsTheLargestThatThirtyTwoBitsHold) {
  TestScale scale = Rating({-1.0f, 1.0f});
  scale.limit = 88.0f;
  const Evaluated largest = Evaluate(scale, .5f);
  scale.limit = 200.0f;
  const Evaluated beyond = Evaluate(scale, .5f);
  EXPECT_EQ(beyond.expected, largest.expected);
  EXPECT_EQ(beyond.p, largest.p);
}

// Scales of every kind for the comparison of bits.
std::vector<TestScale> ManyScales() {
  std::vector<TestScale> scales = {Rating({.3f}),
                                   Rating({-1.0f, 1.0f}),
                                   Rating({-1.5f, -.5f, .5f, 1.5f}),
                                   Counts(ScaleType::binomial, 5, 1.0f),
                                   Counts(ScaleType::binomial, 12, .83f),
                                   Counts(ScaleType::poisson, 3, 1.0f),
                                   Counts(ScaleType::poisson, 9, 1.21f)};
  std::vector<float> wide(20);
  for (std::size_t k = 0; k < wide.size(); ++k) wide[k] = .21f * static_cast<float>(k) - 2.0f;
  scales.push_back(Rating(wide));
  scales.back().flags[7] = kCategorySkipped;
  scales.back().flags[20] = kCategorySkipped;
  scales.push_back(Rating(std::vector<float>(kLargestCategory, .01f)));
  return scales;
}

std::vector<float> ManyMeasures(std::size_t count) {
  std::vector<float> measures(count);
  for (std::size_t i = 0; i < count; ++i)
    measures[i] = 6.0f * std::sin(1.3f * static_cast<float>(i)) + (i % 97 == 0 ? 150.0f : 0.0f);
  return measures;
}

std::vector<std::uint32_t> Bits(const std::vector<float>& values) {
  std::vector<std::uint32_t> bits;
  for (const float value : values) bits.push_back(std::bit_cast<std::uint32_t>(value));
  return bits;
}

struct BatchResult {
  std::vector<float> expected, variance, probability;
};

BatchResult EvaluateBatch(const KernelScale& scale, const std::vector<float>& measures,
                          VectorWidth width) {
  const std::size_t stride = measures.size() + 3;
  BatchResult result{
      std::vector<float>(measures.size()), std::vector<float>(measures.size()),
      std::vector<float>(stride * static_cast<std::size_t>(scale.varianceBound + 1))};
  const KernelRows rows{result.expected.data(), result.variance.data(), result.probability.data(),
                        stride};
  CategoryProbabilities(scale, measures, rows, width);
  return result;
}

TEST(Kernel, HasTheSameBitsForEveryVectorWidth) {
  for (const TestScale& scale : ManyScales()) {
    const KernelScale kernel = scale.kernel();
    const std::vector<float> measures = ManyMeasures(531);
    const BatchResult narrow = EvaluateBatch(kernel, measures, VectorWidth::narrow);
    for (const VectorWidth width : UsableVectorWidths()) {
      const BatchResult other = EvaluateBatch(kernel, measures, width);
      EXPECT_EQ(Bits(other.expected), Bits(narrow.expected)) << NameOf(width);
      EXPECT_EQ(Bits(other.variance), Bits(narrow.variance)) << NameOf(width);
      EXPECT_EQ(Bits(other.probability), Bits(narrow.probability)) << NameOf(width);
    }
  }
}

TEST(Kernel, GivesABatchTheBitsOfItsObservationsOneByOne) {
  for (const TestScale& scale : ManyScales()) {
    const KernelScale kernel = scale.kernel();
    const std::vector<float> measures = ManyMeasures(301);
    const BatchResult batch = EvaluateBatch(kernel, measures, ChosenVectorWidth());
    for (std::size_t i = 0; i < measures.size(); ++i) {
      ProbabilityArray probability{};
      const KernelResult one = CategoryProbabilities(kernel, measures[i], probability);
      ASSERT_EQ(one.expected, batch.expected[i]);
      ASSERT_EQ(one.variance, batch.variance[i]);
      for (int k = 0; k <= kernel.filled; ++k) {
        const auto cell = static_cast<std::size_t>(k);
        ASSERT_EQ(probability[cell], batch.probability[cell * (measures.size() + 3) + i]);
      }
    }
  }
}

TEST(Kernel, HasTheBitsOfItsFormulasTakenPlainly) {
  for (const TestScale& scale : ManyScales()) {
    const KernelScale kernel = scale.kernel();
    for (const float measure : ManyMeasures(301)) {
      ProbabilityArray batch{}, plain{};
      const KernelResult result = CategoryProbabilities(kernel, measure, batch);
      const float expected = PlainProbabilities(scale.plain(), measure, plain.data());
      ASSERT_EQ(result.expected, expected) << measure;
      ASSERT_EQ(result.variance, PlainVariance(scale.plain(), expected, plain.data())) << measure;
      ASSERT_THAT(batch, testing::ElementsAreArray(plain)) << measure;
    }
  }
}

TEST(Kernel, LeavesTheVarianceOutWhenItIsNotWanted) {
  const KernelScale scale = Rating({-1.0f, 1.0f}).kernel();
  const std::vector<float> measures = ManyMeasures(20);
  const BatchResult both = EvaluateBatch(scale, measures, ChosenVectorWidth());
  std::vector<float> expected(20), probability(60);
  const KernelRows rows{expected.data(), nullptr, probability.data(), 20};
  CategoryProbabilities(scale, measures, rows);
  EXPECT_EQ(Bits(expected), Bits(both.expected));
}

TEST(Kernel, TakesAnEmptyBatch) {
  const KernelScale scale = Rating({-1.0f, 1.0f}).kernel();
  CategoryProbabilities(scale, std::span<const float>(), KernelRows{});
}

}  // namespace
}  // namespace flanks
