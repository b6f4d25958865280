#include "base/running_moments.h"

#include <cmath>
#include <gtest/gtest.h>

#include "base/block_moments.h"

namespace flanks {
namespace {

TEST(WelfordCounter, KeepsMeanAndDeviationsOfAPlainList) {
  WelfordCounter counter;
  for (const double value : {2.0, 3.0, 5.0, 4.0}) counter.Add(value);
  EXPECT_DOUBLE_EQ(counter.Count, 4.0);
  EXPECT_DOUBLE_EQ(counter.Mean, 3.5);
  EXPECT_DOUBLE_EQ(counter.SumOfSquares, 5.0);
  EXPECT_NEAR(counter.PopulationDeviation(), 1.118034, 1E-6);
  EXPECT_EQ(WelfordCounter{}.PopulationDeviation(), 0.0);
}

TEST(WelfordCounter, LosesNoDigitsToALargeMean) {
  WelfordCounter counter;
  for (const double value : {2.0, 3.0, 5.0, 4.0}) counter.Add(1E9 + value);
  EXPECT_NEAR(counter.SumOfSquares, 5.0, 1E-6);
}

TEST(WelfordCounter, TakesAValueSeveralTimesAtOnce) {
  WelfordCounter one, several;
  for (const double value : {2.0, 2.0, 2.0, 5.0, 7.0, 7.0}) one.Add(value);
  several.Add(2.0, 3.0);
  several.Add(4.0, 0.0);
  several.Add(5.0, 1.0);
  several.Add(7.0, 2.0);
  EXPECT_DOUBLE_EQ(several.Count, 6.0);
  EXPECT_NEAR(several.Mean, one.Mean, 1E-14);
  EXPECT_NEAR(several.SumOfSquares, one.SumOfSquares, 1E-13);
}

TEST(RunningSummary, AgreesWithTheTwoPassFormulas) {
  RunningSummary<2> summary;
  for (const double value : {2.0, 3.0, 5.0, 4.0}) summary.Add({value, -10.0 * value});
  EXPECT_DOUBLE_EQ(summary.Count, 4.0);
  EXPECT_NEAR(summary.slots[0].Mean, 3.5, 1E-12);
  EXPECT_NEAR(summary.slots[0].SumOfSquares, 5.0, 1E-12);
  EXPECT_NEAR(summary.slots[1].Mean, -35.0, 1E-12);
  EXPECT_NEAR(summary.slots[1].SumOfSquares, 500.0, 1E-9);
  const double deviation = summary.slots[0].PopulationDeviation(summary.Count);
  EXPECT_NEAR(deviation, 1.118034, 1E-6);
  EXPECT_NEAR(SampleDeviation(deviation, summary.Count), 1.290994, 1E-6);
  EXPECT_FALSE(summary.weighted);
}

// Weights 1, 2, .5 of 2, 3, 5: mean 10.5 / 3.5, variance (1 + 0 + 2) / 3.5.
TEST(RunningSummary, WeighsRows) {
  RunningSummary<1> summary;
  summary.AddWeighted({2.0}, 1.0);
  EXPECT_FALSE(summary.weighted);
  summary.AddWeighted({3.0}, 2.0);
  summary.AddWeighted({5.0}, 0.5);
  EXPECT_TRUE(summary.weighted);
  EXPECT_DOUBLE_EQ(summary.Count, 3.5);
  EXPECT_NEAR(summary.slots[0].Mean, 3.0, 1E-12);
  EXPECT_NEAR(summary.slots[0].SumOfSquares / summary.Count, 0.857143, 1E-6);
}

TEST(RunningSummary, IgnoresRowsWithoutWeight) {
  RunningSummary<1> summary;
  summary.AddWeighted({7.0}, 0.0);
  EXPECT_EQ(summary.Count, 0.0);
  EXPECT_EQ(summary.slots[0].Mean, 0.0);
  EXPECT_TRUE(summary.weighted);
}

TEST(RunningMoments, HaveASmallestVariance) {
  RunningSummary<1> summary;
  summary.Add({3.0});
  EXPECT_NEAR(summary.slots[0].PopulationDeviation(summary.Count), std::sqrt(1E-9), 1E-15);
  EXPECT_EQ(SampleDeviation(2.0, 1.0), 2.0);
}

// Blocks of two, one and no values; a large mean costs no digits.  Weights 1, 2, .5 of 2, 3, 5 as
// above.
TEST(BlockSums, JoinTheMomentsOfBlocks) {
  BlockSums<2> sums(2);
  sums.Add({2.0, 1E9 + 2.0}, 1.0);
  EXPECT_FALSE(sums.summary().weighted);
  sums.Add({3.0, 1E9 + 3.0}, 2.0);
  sums.EndBlock();
  EXPECT_TRUE(sums.summary().weighted);
  sums.Add({5.0, 1E9 + 5.0}, 0.5);
  sums.EndBlock();
  sums.EndBlock();
  const BlockSummary<2>& summary = sums.summary();
  EXPECT_DOUBLE_EQ(summary.Count, 3.5);
  EXPECT_NEAR(summary.of(0).Mean, 3.0, 1E-12);
  EXPECT_NEAR(summary.of(0).SumOfSquares, 3.0, 1E-12);
  EXPECT_NEAR(summary.of(1).Mean - 1E9, 3.0, 1E-6);
  EXPECT_NEAR(summary.PopulationVariance(1), 3.0 / 3.5, 1E-6);
  sums.Clear();
  EXPECT_EQ(sums.summary().Count, 0.0);
  EXPECT_EQ(sums.summary().PopulationVariance(0), 0.0);
}

}  // namespace
}  // namespace flanks
