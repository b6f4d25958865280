#include "stats/point_correlation.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace flanks {
namespace {

struct Pair {
  double weight, B, x, r, v;
};

CorrelationSums SumsOf(const std::vector<Pair>& pairs) {
  CorrelationSums sums;
  for (const auto& [w, B, x, r, v] : pairs) {
    sums.W += w;
    sums.B += w * B;
    sums.BB += w * B * B;
    sums.x += w * x;
    sums.xx += w * x * x;
    sums.Bx += w * B * x;
    sums.r += w * r;
    sums.rr += w * r * r;
    sums.Br += w * B * r;
    sums.v += w * v;
  }
  return sums;
}

TEST(MeasureCorrelation, IsTheProductMomentCorrelation) {
  const CorrelationSums sums = SumsOf(
      {{1, 0.2, 1.0 / 3, 0, 0}, {1, -0.5, 0, 0, 0}, {1, 1.1, 1, 0, 0}, {1, 0.7, 2.0 / 3, 0, 0}});
  EXPECT_NEAR(MeasureCorrelation(sums), 0.991911, 1E-6);
}

TEST(MeasureCorrelation, AWeightOfTwoIsTheObservationTwice) {
  const CorrelationSums once = SumsOf({{2, 0.3, 1, 0, 0}, {1, -0.5, 0.5, 0, 0}, {1, 0.9, 0, 0, 0}});
  const CorrelationSums twice =
      SumsOf({{1, 0.3, 1, 0, 0}, {1, 0.3, 1, 0, 0}, {1, -0.5, 0.5, 0, 0}, {1, 0.9, 0, 0, 0}});
  EXPECT_FLOAT_EQ(MeasureCorrelation(once), MeasureCorrelation(twice));
}

// Dichotomies at B = -1, 0, 1, twice each: r = 1 / (1 + exp(-B)), v = r (1 - r).
// W = 6, B-deviations 4; r = .268941, .5, .731059: r-deviations 4 (.231059)² = .213553;
// mean v = (2 x .196612 + .25) / 3 = .214408, times W - 2 = .857632;
// covariation 4 x .231059 = .924234.  .924234 / sqrt(1.071185 x 4) = .446499.
TEST(ExpectedCorrelation, ThreeMeasuresWorkedByHand) {
  std::vector<Pair> pairs;
  for (int repeat = 0; repeat < 2; ++repeat) {
    for (const double B : {-1.0, 0.0, 1.0}) {
      const double r = 1.0 / (1.0 + std::exp(-B));
      pairs.push_back({1, B, 0, r, r * (1 - r)});
    }
  }
  EXPECT_NEAR(ExpectedCorrelation(SumsOf(pairs)), 0.446499, 1E-6);
}

// With two observations the uncertainty does not count, and a straight line is left.
TEST(ExpectedCorrelation, TwoObservationsLieOnALine) {
  EXPECT_NEAR(ExpectedCorrelation(SumsOf({{1, -1, 0, 0.3, 0.2}, {1, 1, 0, 0.7, 0.2}})), 1.0, 1E-6);
}

TEST(Correlations, AreZeroWithoutSpreadOrWeight) {
  EXPECT_EQ(MeasureCorrelation({}), 0.0f);
  EXPECT_EQ(ExpectedCorrelation({}), 0.0f);
  for (const int count : {1, 2, 3, 10, 1000}) {
    // Neither is a dyadic fraction, so that the sums are rounded.
    std::vector<Pair> same(static_cast<std::size_t>(count), {0.7, 0.1f, 1.0 / 3, 0.4f, 0.2});
    EXPECT_EQ(MeasureCorrelation(SumsOf(same)), 0.0f) << count;
    EXPECT_EQ(ExpectedCorrelation(SumsOf(same)), 0.0f) << count;
    same.push_back({0.7, 0.1f, 2.0 / 3, 0.6f, 0.2});  // one measure still
    EXPECT_EQ(MeasureCorrelation(SumsOf(same)), 0.0f) << count;
    EXPECT_EQ(ExpectedCorrelation(SumsOf(same)), 0.0f) << count;
  }
}

TEST(Correlations, DoNotLeaveMinusOneToOne) {
  const CorrelationSums falling = SumsOf({{0.1, -3, 1, 0.9, 0}, {0.1, 4, 0, 0.1, 0}});
  EXPECT_GE(MeasureCorrelation(falling), -1.0f);
  EXPECT_NEAR(MeasureCorrelation(falling), -1.0, 1E-6);
  EXPECT_NEAR(ExpectedCorrelation(falling), -1.0, 1E-6);
}

}  // namespace
}  // namespace flanks
