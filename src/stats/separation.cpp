#include "stats/separation.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/single.h"
#include "stats/distributions.h"

namespace flanks {
namespace {

constexpr std::size_t Index(SummarySlot slot) {
  return static_cast<std::size_t>(slot);
}

double Square(double value) {
  return value * value;
}

// The weighted sum of squares about the weighted mean, from means of w, w B and w B².  Of equal
// measures it is 0, which rounding can miss to either side.
double WeightedSumOfSquares(double meanW, double meanWB, double meanWBB, double count) {
  return std::max((meanWBB - Square(meanWB) / meanW) * count, 0.0);
}

ChiSquareTest TestOf(double chiSquared, double degreesOfFreedom) {
  return {chiSquared, degreesOfFreedom, ChiSquareProbability(chiSquared, degreesOfFreedom)};
}

}  // namespace

void AddRow(MeasureSummary& summary, const MeasureRow& row) {
  const double errorVariance = Square(row.standardError);
  const double precision = 1.0 / FloorMin(errorVariance);
  std::array<double, kSummarySlots> values{};
  values[Index(SummarySlot::measure)] = row.measure;
  values[Index(SummarySlot::standardError)] = row.standardError;
  values[Index(SummarySlot::infitMeanSquare)] = row.infitMeanSquare;
  values[Index(SummarySlot::infitZStd)] = row.infitZStd;
  values[Index(SummarySlot::outfitMeanSquare)] = row.outfitMeanSquare;
  values[Index(SummarySlot::outfitZStd)] = row.outfitZStd;
  values[Index(SummarySlot::precision)] = precision;
  values[Index(SummarySlot::weightedMeasure)] = precision * row.measure;
  values[Index(SummarySlot::weightedMeasureSquared)] = precision * row.measure * row.measure;
  values[Index(SummarySlot::errorVariance)] = errorVariance;
  values[Index(SummarySlot::score)] = row.score;
  values[Index(SummarySlot::count)] = row.count;
  values[Index(SummarySlot::observedAverage)] = row.observedAverage;
  values[Index(SummarySlot::fairAverage)] = row.fairAverage;
  values[Index(SummarySlot::weight)] = row.weight;
  summary.Add(values);
  if (row.isFitted) {
    summary.fitted.Add({row.correlation, row.expectedCorrelation, row.displacement});
  }
  if (row.hasAgreement) summary.agreement.Add({row.agreementObserved, row.agreementExpected});
}

double MeanOf(const MeasureSummary& summary, SummarySlot slot) {
  return summary.slots[Index(slot)].Mean;
}

double PopulationDeviationOf(const MeasureSummary& summary, SummarySlot slot) {
  return summary.slots[Index(slot)].PopulationDeviation(summary.Count);
}

SeparationStatistics SeparationOf(const MeasureSummary& summary, Spread spread, float tinyValue) {
  const double population = PopulationDeviationOf(summary, SummarySlot::measure);
  const double deviation =
      spread == Spread::sample ? SampleDeviation(population, summary.Count) : population;
  const double observedVariance = Square(deviation);
  const double errorVariance = MeanOf(summary, SummarySlot::errorVariance);
  const double trueVariance = std::max(observedVariance - errorVariance, 0.0);
  const double flooredError = std::max(errorVariance, static_cast<double>(kSingleFloor));

  SeparationStatistics statistics;
  if (observedVariance > static_cast<double>(tinyValue)) {
    statistics.Reliability = trueVariance / observedVariance;
  }
  statistics.RMSE = std::sqrt(flooredError);
  statistics.AdjustedDeviation = std::sqrt(trueVariance);
  statistics.Separation = std::sqrt(trueVariance / flooredError);
  statistics.Strata = (4.0 * statistics.Separation + 1.0) / 3.0;
  return statistics;
}

std::optional<ChiSquareTest> FixedChiSquare(const MeasureSummary& summary, float tinyValue) {
  const double meanPrecision = MeanOf(summary, SummarySlot::precision);
  if (summary.Count < 2.0 || meanPrecision <= static_cast<double>(tinyValue)) return std::nullopt;
  const double chiSquared =
      WeightedSumOfSquares(meanPrecision, MeanOf(summary, SummarySlot::weightedMeasure),
                           MeanOf(summary, SummarySlot::weightedMeasureSquared), summary.Count);
  return TestOf(chiSquared, summary.Count - 1.0);
}

std::optional<ChiSquareTest> RandomChiSquare(const MeasureSummary& summary,
                                             std::span<const MeasuredElement> elements,
                                             float tinyValue) {
  const double count = summary.Count;
  // Measures that are all equal have no spread to test; the floor of the S.D. is none.
  const RunningMoments& measures = summary.slots[Index(SummarySlot::measure)];
  if (count < 2.0 || measures.SumOfSquares <= 0.0) return std::nullopt;
  double variance =
      Square(PopulationDeviationOf(summary, SummarySlot::measure)) * count / (count - 1.0);
  const double errorVariance = MeanOf(summary, SummarySlot::errorVariance);
  // Kept: the mean squared error is squared once more, as if it were the RMSE.
  if (variance > 0.0 && std::sqrt(variance) > errorVariance) variance -= Square(errorVariance);

  RunningSummary<3> sums;
  for (const MeasuredElement& element : elements) {
    const double w = 1.0 / FloorMin(Square(element.standardError) + variance);
    sums.Add({w, w * element.measure, w * element.measure * element.measure});
  }
  double chiSquared = 0.0;
  if (sums.slots[0].Mean > static_cast<double>(tinyValue)) {
    chiSquared =
        WeightedSumOfSquares(sums.slots[0].Mean, sums.slots[1].Mean, sums.slots[2].Mean, count);
  }
  return TestOf(chiSquared, count - 2.0);
}

}  // namespace flanks
