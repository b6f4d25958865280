// Fit of an element from its sums: mean-squares, ZStd, standard error, displacement,
// discrimination.
//
// The pass after convergence (stats/fit_pass.h) fills one FitSums for each element; the sweep
// FinishStatistics turns them into the ElementFinal that reports show, after which the stage is
// `finished`.  What it is made of are functions of numbers, which know no run and stand in
// ZStdOf to DiscriminationOf.
//
// An element in play gets all statistics.  An extreme one gets a standard error, a fair average and
// correlations, and the defaults otherwise: mean-squares 1, ZStd 0, displacement 0, discrimination
// 1.  So does one without data.
//
// An infit mean-square is the sum of squared residuals over the sum of their model variances; an
// outfit mean-square is the mean of squared standardized residuals.  Both have the expectation 1.
// ZStd makes a unit normal deviate of either with the cube-root transformation of Wilson and
// Hilferty, The Distribution of Chi-square, Proceedings of the National Academy of Sciences 17
// (1931), 684-688.  With q the standard deviation of the mean-square under the model,
//
//   ZStd = (MS to the power 1/3 - 1) (3 / q) + q / 3
//
// of which the last term can be switched off (`Whexact=N`).
//
// Statistics are cut, not rejected: see docs/numbers.md.  Tested by
// tests/unit/stats/fit_statistics_test.cpp.
#ifndef FLANKS_STATS_FIT_STATISTICS_H
#define FLANKS_STATS_FIT_STATISTICS_H

#include <cstdint>

#include "base/column.h"
#include "run/design.h"
#include "run/estimates.h"
#include "run/fit_sums.h"
#include "run/settings.h"

namespace flanks {

enum class WilsonHilferty : std::uint8_t {
  exact,        // with the term q / 3
  approximate,  // without it
};

// The kind of standard error.
enum class ErrorKind : std::uint8_t {
  model,  // from the information alone
  real,   // enlarged by misfit: the information is divided by an infit mean-square above 1
};

// Which point correlation is shown.  The point-biserial forms come from a pass of their own, made
// before the estimation; the fit sums leave them alone.
enum class PointCorrelation : std::uint8_t { measure, pointBiserial };

// What the statistics depend on beside the sums.
struct FitSettings {
  WilsonHilferty form = WilsonHilferty::exact;
  ErrorKind errorKind = ErrorKind::model;
  PointCorrelation pointCorrelation = PointCorrelation::measure;
};
[[nodiscard]] FitSettings FitSettingsOf(const Settings& settings);

struct FitValue {
  float MeanSquare = 1.0f;
  float ZStd = 0.0f;
  float DegreesOfFreedom = 0.0f;
};

// The fit of the ratio numerator / denominator, whose denominator is its expectation and whose
// numerator has the model variance `variance`.
//   infit:  sum of variances, sum of (fourth moment - variance²), sum of squared residuals
//   outfit: count, sum of kurtosis ratios - count, sum of squared standardized residuals
// Without a denominator the mean-square is 1, without a variance ZStd is 0.  Mean-square and ZStd
// are cut at 9; ZStd is computed from the uncut ratio.
[[nodiscard]] FitValue ZStdOf(double denominator, double variance, double numerator,
                              WilsonHilferty form, float tinyValue);

// Logits.  0 when the information is at or below `tinyValue`.
[[nodiscard]] float StandardErrorOf(double information, float infitMeanSquare, ErrorKind kind,
                                    float tinyValue);

// The change of the signed measure that would remove the score residual, in logits: a measure of
// a negative Flank changes the other way about.  Finite whatever the information.
[[nodiscard]] float DisplacementOf(double observedScore, double expectedScore, double information,
                                   float tinyValue);

// The slope that the data give the element, 1 under the model: one Newton step from 1.  The
// statistic is the sum of w times the cumulative logit at the observed category; its expectation
// and its variance under the model are sums of the moments of the same logits.  Held in -10 to 10;
// 1 without a variance.
[[nodiscard]] float DiscriminationOf(double logLikelihoodSum, double expectation, double variance);

// One element.  `former` is its record so far, of which a point-biserial correlation is kept.  The
// sums are cut to 32 bits where a record of this width held them.
[[nodiscard]] ElementFinal FinishElement(const FitSums& sums, const ElementScores& scores,
                                         std::int16_t status, const ElementFinal& former,
                                         const FitSettings& settings, float tinyValue);

// The sweep over all elements: fills `estimates.finals` from `estimates.fitSums` and lets these go;
// the stage is `finished` then.
void FinishStatistics(const FitSettings& settings, Estimates& estimates);

}  // namespace flanks

#endif  // FLANKS_STATS_FIT_STATISTICS_H
