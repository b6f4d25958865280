#include "stats/separation.h"

#include <cmath>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace flanks {
namespace {

const float kTiny = static_cast<float>(std::exp(-80.0));

using Pairs = std::vector<std::pair<double, double>>;  // measure, standard error

MeasureSummary SummaryOf(const Pairs& pairs) {
  MeasureSummary summary;
  for (const auto& [measure, standardError] : pairs) {
    MeasureRow row;
    row.measure = measure;
    row.standardError = standardError;
    AddRow(summary, row);
  }
  return summary;
}

std::vector<MeasuredElement> ElementsOf(const Pairs& pairs) {
  std::vector<MeasuredElement> elements;
  for (const auto& [measure, standardError] : pairs) elements.push_back({measure, standardError});
  return elements;
}

const Pairs kFive = {{-1.0, 0.30}, {-0.4, 0.28}, {0.1, 0.27}, {0.5, 0.28}, {1.3, 0.33}};

struct SeparationCase {
  Spread spread;
  double rmse, deviation, separation, strata, reliability;
};

TEST(SeparationOf, FiveMeasuresWorkedApart) {
  const SeparationCase cases[] = {
      {Spread::population, 0.2928, 0.7255, 2.4778, 3.6371, 0.8599},
      {Spread::sample, 0.2928, 0.8242, 2.8150, 4.0867, 0.8879},
  };
  for (const SeparationCase& c : cases) {
    const SeparationStatistics statistics = SeparationOf(SummaryOf(kFive), c.spread, kTiny);
    EXPECT_NEAR(statistics.RMSE, c.rmse, 5E-5);
    EXPECT_NEAR(statistics.AdjustedDeviation, c.deviation, 5E-5);
    EXPECT_NEAR(statistics.Separation, c.separation, 5E-5);
    EXPECT_NEAR(statistics.Strata, c.strata, 5E-5);
    EXPECT_NEAR(statistics.Reliability, c.reliability, 5E-5);
  }
}

TEST(SeparationOf, IsTheSameInAnyUnitButForTheErrors) {
  Pairs tens;
  for (const auto& [measure, error] : kFive) tens.push_back({50 + 10 * measure, 10 * error});
  const SeparationStatistics statistics = SeparationOf(SummaryOf(tens), Spread::population, kTiny);
  EXPECT_NEAR(statistics.RMSE, 2.928, 5E-4);
  EXPECT_NEAR(statistics.AdjustedDeviation, 7.255, 5E-4);
  EXPECT_NEAR(statistics.Separation, 2.4778, 5E-5);
  EXPECT_NEAR(statistics.Reliability, 0.8599, 5E-5);
}

TEST(SeparationOf, ErrorsLargerThanTheSpreadSeparateNothing) {
  const SeparationStatistics statistics =
      SeparationOf(SummaryOf({{-0.1, 0.5}, {0.1, 0.5}}), Spread::sample, kTiny);
  EXPECT_EQ(statistics.AdjustedDeviation, 0.0);
  EXPECT_EQ(statistics.Separation, 0.0);
  EXPECT_NEAR(statistics.Strata, 1.0 / 3.0, 1E-12);
  EXPECT_EQ(statistics.Reliability, 0.0);
  EXPECT_NEAR(statistics.RMSE, 0.5, 1E-12);
}

TEST(SeparationOf, ErrorsOfNothingAreFloored) {
  const SeparationStatistics statistics =
      SeparationOf(SummaryOf({{-1.0, 0.0}, {1.0, 0.0}}), Spread::population, kTiny);
  EXPECT_NEAR(statistics.RMSE, std::sqrt(1E-9), 1E-9);
  EXPECT_NEAR(statistics.Reliability, 1.0, 1E-12);
  EXPECT_NEAR(statistics.Separation, 1.0 / std::sqrt(1E-9), 1E-3);
}

TEST(FixedChiSquare, FiveMeasuresWorkedApart) {
  const auto test = FixedChiSquare(SummaryOf(kFive), kTiny);
  ASSERT_TRUE(test);
  EXPECT_NEAR(test->chiSquared, 31.793975, 1E-5);
  EXPECT_EQ(test->degreesOfFreedom, 4.0);
  EXPECT_NEAR(test->probability, 0.000002, 1E-6);
}

TEST(RandomChiSquare, FiveMeasuresWorkedApart) {
  const auto test = RandomChiSquare(SummaryOf(kFive), ElementsOf(kFive), kTiny);
  ASSERT_TRUE(test);
  EXPECT_NEAR(test->chiSquared, 3.579452, 1E-6);
  EXPECT_EQ(test->degreesOfFreedom, 3.0);
  EXPECT_NEAR(test->probability, 0.309394, 1E-6);
}

// Variance .02, mean S.E.² .25: sqrt(.02) is below .25, so nothing is taken off.
// w = 1 / (.25 + .02), chi = w (.01 + .01).
TEST(RandomChiSquare, KeepsTheVarianceWhenErrorsAreLarger) {
  const Pairs pairs = {{-0.1, 0.5}, {0.1, 0.5}};
  const auto test = RandomChiSquare(SummaryOf(pairs), ElementsOf(pairs), kTiny);
  ASSERT_TRUE(test);
  EXPECT_NEAR(test->chiSquared, 0.02 / 0.27, 1E-12);
  EXPECT_EQ(test->degreesOfFreedom, 0.0);
  EXPECT_EQ(test->probability, 1.0);
}

TEST(ChiSquareTests, NeedTwoRows) {
  const Pairs one = {{0.3, 0.2}};
  EXPECT_FALSE(FixedChiSquare(SummaryOf(one), kTiny));
  EXPECT_FALSE(RandomChiSquare(SummaryOf(one), ElementsOf(one), kTiny));
  EXPECT_FALSE(FixedChiSquare(MeasureSummary{}, kTiny));
  EXPECT_FALSE(RandomChiSquare(MeasureSummary{}, {}, kTiny));
}

TEST(ChiSquareTests, EqualMeasuresAreNotBelowZero) {
  Pairs pairs;
  for (int i = 0; i < 7; ++i) pairs.push_back({500.1, 0.1 + 0.07 * i});
  const auto fixed = FixedChiSquare(SummaryOf(pairs), kTiny);
  ASSERT_TRUE(fixed);
  EXPECT_GE(fixed->chiSquared, 0.0);
  EXPECT_LT(fixed->chiSquared, 1E-6);
  EXPECT_NEAR(fixed->probability, 1.0, 1E-6);
}

TEST(AddRow, FillsTheDerivedColumns) {
  MeasureSummary summary;
  MeasureRow row;
  row.measure = 2.0;
  row.standardError = 0.5;
  row.score = 30.0;
  row.weight = 3.0;
  row.isFitted = true;
  row.correlation = 0.4;
  row.expectedCorrelation = 0.5;
  row.displacement = -0.1;
  AddRow(summary, row);
  EXPECT_DOUBLE_EQ(MeanOf(summary, SummarySlot::errorVariance), 0.25);
  EXPECT_DOUBLE_EQ(MeanOf(summary, SummarySlot::precision), 4.0);
  EXPECT_DOUBLE_EQ(MeanOf(summary, SummarySlot::weightedMeasure), 8.0);
  EXPECT_DOUBLE_EQ(MeanOf(summary, SummarySlot::weightedMeasureSquared), 16.0);
  EXPECT_DOUBLE_EQ(MeanOf(summary, SummarySlot::score), 30.0);
  EXPECT_DOUBLE_EQ(MeanOf(summary, SummarySlot::weight), 3.0);
  EXPECT_DOUBLE_EQ(summary.fitted.slots[0].Mean, 0.4);
  EXPECT_DOUBLE_EQ(summary.fitted.slots[1].Mean, 0.5);
  EXPECT_DOUBLE_EQ(summary.fitted.slots[2].Mean, -0.1);
  EXPECT_DOUBLE_EQ(MeanOf(summary, SummarySlot::infitMeanSquare), 1.0);
  EXPECT_DOUBLE_EQ(summary.Count, 1.0);
}

TEST(AddRow, RowsWithoutFitHaveNoPartInTheCorrelations) {
  MeasureSummary summary;
  MeasureRow row;
  row.isFitted = true;
  row.correlation = 0.4;
  AddRow(summary, row);
  AddRow(summary, {});
  EXPECT_DOUBLE_EQ(summary.Count, 2.0);
  EXPECT_DOUBLE_EQ(summary.fitted.Count, 1.0);
  EXPECT_DOUBLE_EQ(summary.fitted.slots[0].Mean, 0.4);
}

// The floor of the S.D. is not a spread.
TEST(RandomChiSquare, EqualMeasuresHaveNone) {
  const Pairs pairs = {{0.1, 0.5}, {0.1, 0.7}, {0.1, 0.6}};
  EXPECT_FALSE(RandomChiSquare(SummaryOf(pairs), ElementsOf(pairs), kTiny));
  EXPECT_TRUE(FixedChiSquare(SummaryOf(pairs), kTiny));
}

TEST(AddRow, AnErrorOfNothingHasAFinitePrecision) {
  MeasureSummary summary;
  AddRow(summary, {});
  EXPECT_DOUBLE_EQ(MeanOf(summary, SummarySlot::precision), 1E9);
}

}  // namespace
}  // namespace flanks
