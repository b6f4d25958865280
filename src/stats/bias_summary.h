// The terms of an interaction, summed up as reports show them: in user units and in the direction
// of `Bias=`.
//
// Tested by tests/unit/report/bias_tables_test.cpp.
#ifndef FLANKS_STATS_BIAS_SUMMARY_H
#define FLANKS_STATS_BIAS_SUMMARY_H

#include <optional>

#include "run/settings.h"
#include "stats/bias_statistics.h"
#include "stats/separation.h"

namespace flanks {

// What a report shows of a term.
struct BiasFigures {
  double score = 0.0, expected = 0.0, count = 0.0;
  double residualAverage = 0.0;  // score points
  double size = 0.0;             // user units, by the direction
  double standardError = 0.0;    // user units
  double t = 0.0;                // with the sign of the size
  double infitMeanSquare = 1.0, outfitMeanSquare = 1.0;
};
BiasFigures FiguresOf(const Settings& settings, const BiasTerm& term);

// Rows of terms: the figures of elements that terms have as well, and their own.
struct BiasSummary {
  MeasureSummary measures;  // size, S.E., mean-squares, score, count
  RunningSummary<4> terms;  // expected score, average residual, t, t squared
};
void AddRow(BiasSummary& summary, const BiasFigures& figures);

struct BiasSets {
  BiasSummary without, with;  // extreme terms
  bool hasExtremes() const { return with.measures.Count > without.measures.Count; }
};
// Terms that are not estimable are left out.
BiasSets SumUpBias(const Settings& settings, const BiasResults& results);

// "Fixed (all = 0)": that no term differs from zero, by the sum of squared t.  None for less than
// two terms.
std::optional<ChiSquareTest> ZeroChiSquare(const BiasSummary& summary);

}  // namespace flanks

#endif  // FLANKS_STATS_BIAS_SUMMARY_H
