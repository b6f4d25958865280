#include "stats/bias_summary.h"

#include <cmath>

#include "stats/distributions.h"

namespace flanks {

BiasFigures FiguresOf(const Settings& settings, const BiasTerm& term) {
  const double direction = static_cast<double>(settings.Bias) * settings.Uscale;
  BiasFigures figures;
  figures.score = term.RawScore;
  figures.expected = term.ExpectedRaw;
  figures.count = term.Count;
  figures.residualAverage = term.ResidualAverage();
  figures.size = direction * term.Bias;
  figures.standardError = std::abs(direction) * term.StandardError;
  figures.t = direction < 0.0 ? -static_cast<double>(term.t) : term.t;
  figures.infitMeanSquare = term.InfitMeanSquare;
  figures.outfitMeanSquare = term.OutfitMeanSquare;
  return figures;
}

void AddRow(BiasSummary& summary, const BiasFigures& figures) {
  MeasureRow row;
  row.measure = figures.size;
  row.standardError = figures.standardError;
  row.infitMeanSquare = figures.infitMeanSquare;
  row.outfitMeanSquare = figures.outfitMeanSquare;
  row.score = figures.score;
  row.count = figures.count;
  AddRow(summary.measures, row);
  summary.terms.Add({figures.expected, figures.residualAverage, figures.t, figures.t * figures.t});
}

BiasSets SumUpBias(const Settings& settings, const BiasResults& results) {
  BiasSets sets;
  for (const BiasTerm& term : results.terms) {
    if (term.standing == BiasStanding::none) continue;
    const BiasFigures figures = FiguresOf(settings, term);
    AddRow(sets.with, figures);
    if (term.standing == BiasStanding::estimable) AddRow(sets.without, figures);
  }
  return sets;
}

std::optional<ChiSquareTest> ZeroChiSquare(const BiasSummary& summary) {
  const double count = summary.terms.Count;
  if (count < 2.0) return std::nullopt;
  const double chiSquared = count * summary.terms.slots[3].Mean;
  return ChiSquareTest{chiSquared, count, ChiSquareProbability(chiSquared, count)};
}

}  // namespace flanks
