#include "stats/fit_statistics.h"

#include <algorithm>
#include <cassert>
#include <cfloat>
#include <cmath>

#include "base/held_single.h"
#include "stats/point_correlation.h"

namespace flanks {
namespace {

constexpr double kFitLimit = 9.0;              // of mean-square and ZStd
constexpr double kDiscriminationLimit = 10.0;  // of the slope estimate
constexpr double kVarianceFloor = 1E-10f;      // of the slope's variance

}  // namespace

FitValue ZStdOf(double denominator, double variance, double numerator, WilsonHilferty form,
                float tinyValue) {
  FitValue fit;
  if (denominator <= 0.0) return fit;

  const double tinyDenominator = static_cast<double>(tinyValue) * numerator;
  const double meanSquare = numerator / std::max(denominator, tinyDenominator);
  fit.MeanSquare = Single(std::clamp(meanSquare, -kFitLimit, kFitLimit));
  if (variance <= 0.0) return fit;

  const double thirdOfDeviation = std::sqrt(variance) / (3.0 * denominator);  // q / 3
  double zStd = (std::cbrt(numerator / denominator) - 1.0) / thirdOfDeviation;
  if (form == WilsonHilferty::exact) zStd += thirdOfDeviation;
  fit.ZStd = Single(std::clamp(zStd, -kFitLimit, kFitLimit));

  const double degreesOfFreedom = 2.0 * denominator * denominator / variance;
  fit.DegreesOfFreedom = Single(std::min(degreesOfFreedom, static_cast<double>(FLT_MAX)));
  return fit;
}

float StandardErrorOf(double information, float infitMeanSquare, ErrorKind kind, float tinyValue) {
  const double enlargement =
      kind == ErrorKind::real ? static_cast<double>(MaxSingle(1.0f, infitMeanSquare)) : 1.0;
  const double usable = information / enlargement;
  if (usable <= static_cast<double>(tinyValue)) return 0.0f;
  return Single(1.0 / std::sqrt(usable));
}

float DisplacementOf(double observedScore, double expectedScore, double information,
                     float tinyValue) {
  // A large Hardware= can make tinyValue itself 0.
  const double divisor =
      std::max({information, static_cast<double>(tinyValue), static_cast<double>(FLT_MIN)});
  const double displacement = (observedScore - expectedScore) / divisor;
  constexpr double kLargest = static_cast<double>(FLT_MAX);
  return Single(std::clamp(displacement, -kLargest, kLargest));
}

float DiscriminationOf(double logLikelihoodSum, double expectation, double variance) {
  if (variance <= 0.0) return 1.0f;
  const double slope = 1.0 + (logLikelihoodSum - expectation) / std::max(variance, kVarianceFloor);
  return Single(std::clamp(slope, -kDiscriminationLimit, kDiscriminationLimit));
}

FitSettings FitSettingsOf(const Settings& settings) {
  FitSettings fit;
  if (settings.Whexact != 'Y') fit.form = WilsonHilferty::approximate;
  if (settings.RealStandardErrors) fit.errorKind = ErrorKind::real;
  if (settings.PointCorrelationKind == 'Y' || settings.PointCorrelationKind == 'I') {
    fit.pointCorrelation = PointCorrelation::pointBiserial;
  }
  return fit;
}

ElementFinal FinishElement(const FitSums& sums, const ElementScores& scores, std::int16_t status,
                           const ElementFinal& former, const FitSettings& settings,
                           float tinyValue) {
  ElementFinal final;
  const double information = HeldSingle(sums.terms.Information);
  if (std::abs(scores.MaxScore) > 0.0 && IsInPlay(status)) {
    final.Displacement = DisplacementOf(scores.ObservedScore, HeldSingle(sums.terms.ResidualSum),
                                        information, tinyValue);
    final.Discrimination =
        DiscriminationOf(HeldSingle(sums.terms.LogLikelihoodSum), HeldSingle(sums.terms.LogLikelihoodMean),
                         HeldSingle(sums.terms.LogLikelihoodSpread));
    const FitValue infit = ZStdOf(information, sums.terms.InfitVarianceSum,
                                  HeldSingle(sums.terms.InfitSum), settings.form, tinyValue);
    const double count = scores.Count;
    const FitValue outfit = ZStdOf(count, sums.terms.ExpectedSum - count,
                                   HeldSingle(sums.terms.OutfitSum), settings.form, tinyValue);
    final.InfitMeanSquare = infit.MeanSquare;
    final.InfitZStd = infit.ZStd;
    final.InfitDF = infit.DegreesOfFreedom;
    final.OutfitMeanSquare = outfit.MeanSquare;
    final.OutfitZStd = outfit.ZStd;
    final.OutfitDF = outfit.DegreesOfFreedom;
  }
  final.StandardError =
      StandardErrorOf(information, final.InfitMeanSquare, settings.errorKind, tinyValue);
  final.PointMeasure = settings.pointCorrelation == PointCorrelation::measure
                           ? MeasureCorrelation(sums.correlation)
                           : former.PointMeasure;
  final.PointResidual = ExpectedCorrelation(sums.correlation);
  final.FairSum = HeldSingle(sums.terms.FairSum);
  return final;
}

void FinishStatistics(const FitSettings& settings, Estimates& estimates) {
  assert(estimates.stage == StatisticsStage::sums);
  for (const ElementSlot slot : Downward(estimates.fitSums)) {
    const std::int16_t status = estimates.elements[slot].ElementStatus;
    estimates.finals[slot] = FinishElement(estimates.fitSums[slot], estimates.scores[slot], status,
                                           estimates.finals[slot], settings, estimates.TinyValue);
  }
  estimates.fitSums = Column<ElementSlot, FitSums>();
  estimates.stage = StatisticsStage::finished;
}

}  // namespace flanks
