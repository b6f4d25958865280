// Separation and reliability of the measures of one Flank, and the tests of their homogeneity.
//
// A measurement Table sums its rows into two sets, without and with extreme elements.  From a set
// come the means and S.D.s of its columns and
//
//   RMSE         root of the mean squared standard error: the error of a typical measure
//   Adj (True) S.D.  the spread of the measures with the error taken out
//   Separation   G = true S.D. / RMSE
//   Strata       (4 G + 1) / 3: levels that can be told apart
//   Reliability  true variance / observed variance
//
// and two chi-squared tests: that all elements have the same measure (fixed), and that they are a
// sample of a normal population (random).
//
// Everything here is in the units of the report: measures are user measures, errors are
// multiplied by the absolute value of `Uscale=`.  Nothing is to be multiplied a second time.
//
// Separation, strata and reliability: Wright and Masters, Rating Scale Analysis (1982), chapter 5.
// The fixed test is the weighted between-groups sum of squares of Hedges and Olkin, Statistical
// Methods for Meta-Analysis (1985), chapter 6.  Tested by tests/unit/stats/separation_test.cpp.
#ifndef FLANKS_STATS_SEPARATION_H
#define FLANKS_STATS_SEPARATION_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "base/running_moments.h"

namespace flanks {

// The columns of a measurement set.
enum class SummarySlot : std::uint8_t {
  measure,        // user units
  standardError,  // user units
  infitMeanSquare,
  infitZStd,
  outfitMeanSquare,
  outfitZStd,
  precision,               // w = 1 / max(S.E.², 1E-9)
  weightedMeasure,         // w times measure
  weightedMeasureSquared,  // w times measure²
  errorVariance,           // S.E.²
  score,
  count,
  observedAverage,
  fairAverage,
  weight,
  slots,  // how many there are
};
constexpr std::size_t kSummarySlots = static_cast<std::size_t>(SummarySlot::slots);

struct MeasureSummary : RunningSummary<kSummarySlots> {
  RunningSummary<3> fitted;     // correlation, its expectation, displacement: of rows with fit
  RunningSummary<2> agreement;  // per cent, observed and expected, of raters that have a pair
};

// What a row of a measurement Table gives to the sets.
struct MeasureRow {
  double measure = 0.0;        // user units
  double standardError = 0.0;  // user units, not negative
  double infitMeanSquare = 1.0, infitZStd = 0.0;
  double outfitMeanSquare = 1.0, outfitZStd = 0.0;
  double score = 0.0, count = 0.0;
  double observedAverage = 0.0, fairAverage = 0.0;
  double weight = 1.0;
  bool isFitted = false;  // in play, with data: has correlations and a displacement
  double correlation = 0.0, expectedCorrelation = 0.0;
  double displacement = 0.0;  // user units
  bool hasAgreement = false;  // a rater of the inter-rater Flank that has a pair
  double agreementObserved = 0.0, agreementExpected = 0.0;  // per cent
};

void AddRow(MeasureSummary& summary, const MeasureRow& row);

[[nodiscard]] double MeanOf(const MeasureSummary& summary, SummarySlot slot);
[[nodiscard]] double PopulationDeviationOf(const MeasureSummary& summary, SummarySlot slot);

// The elements as the whole population, or as a sample of it.
enum class Spread : std::uint8_t { population, sample };

struct SeparationStatistics {
  double RMSE = 0.0;               // report units
  double AdjustedDeviation = 0.0;  // report units
  double Separation = 0.0;
  double Strata = 0.0;
  double Reliability = 0.0;
};

// For a set of at least two rows; smaller sets have no such line.
[[nodiscard]] SeparationStatistics SeparationOf(const MeasureSummary& summary, Spread spread,
                                                float tinyValue);

struct ChiSquareTest {
  double chiSquared = 0.0;
  double degreesOfFreedom = 0.0;
  double probability = 1.0;
};

// "Fixed (all same)".  None for less than two rows or without precision.
[[nodiscard]] std::optional<ChiSquareTest> FixedChiSquare(const MeasureSummary& summary,
                                                          float tinyValue);

// A measure and its standard error, report units.
struct MeasuredElement {
  double measure = 0.0;
  double standardError = 0.0;
};

// "Random (normal)".  `elements` are the rows of the set.  None for less than two rows, and for
// equal measures.
[[nodiscard]] std::optional<ChiSquareTest> RandomChiSquare(
    const MeasureSummary& summary, std::span<const MeasuredElement> elements, float tinyValue);

}  // namespace flanks

#endif  // FLANKS_STATS_SEPARATION_H
