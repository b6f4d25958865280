// Fit of an element from its sums: mean-squares, ZStd, standard error, displacement,
// discrimination.
//
// The pass after convergence (stats/fit_pass.h) sums over the observations of an element; the
// functions here turn the sums into what a report shows.  They are functions of numbers and know
// no run.
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

}  // namespace flanks

#endif  // FLANKS_STATS_FIT_STATISTICS_H
