// What the terms of a bias analysis are worth: standard error, t, probability and fit of each, and
// the contrast of two.
//
// A term's bias is estimated with everything else held, so that its standard error is that of one
// parameter, the inverse root of the information, and t = bias / S.E. tests that it is zero.
// Two terms are compared by Welch's t with Satterthwaite's degrees of freedom (B. L. Welch, The
// Generalization of 'Student's' Problem when Several Different Population Variances are Involved,
// Biometrika 34, 1947, 28-35).
//
// Biases here have the sign that adds to the measure sum; `Bias=` decides the reported one.
// Tested by tests/unit/stats/bias_statistics_test.cpp.
#ifndef FLANKS_STATS_BIAS_STATISTICS_H
#define FLANKS_STATS_BIAS_STATISTICS_H

#include <cstdint>

#include "estimate/bias.h"
#include "stats/fit_statistics.h"
#include "stats/residual_summary.h"

namespace flanks {

// The status of a term as the reports have it.
enum class BiasStanding : std::uint8_t { estimable = 1, minimum = 2, maximum = 3, none = 4 };
BiasStanding StandingOf(std::int16_t BiasStatus);

// The sums of the pass at the final biases, 64 bits.
struct alignas(64) BiasFitSums {
  double ExpectedSum = 0.0;       // of w E
  double Information = 0.0;       // of w V
  double OutfitSum = 0.0;         // of w z squared
  double InfitSum = 0.0;          // of w residual squared
  double KurtosisSum = 0.0;       // of w kurtosis ratio
  double InfitVarianceSum = 0.0;  // of w (C4 - V squared)
};

// A finished term.
struct BiasTerm {
  float Bias = 0.0f;           // logits
  float StandardError = 0.0f;  // logits; 0 without information
  float t = 0.0f;              // held in -99.99 to 99.99
  float InfitMeanSquare = 1.0f, InfitZStd = 0.0f;
  float OutfitMeanSquare = 1.0f, OutfitZStd = 0.0f;
  float ObservedScore = 0.0f;  // sum of w category; moved inside where it is extreme
  float MaxScore = 0.0f;       // sum of w m
  float ExpectedSum = 0.0f;    // of w E with the bias
  float RawScore = 0.0f;       // sum of w raw observation
  float ExpectedRaw = 0.0f;    // the same expected without bias
  float Count = 0.0f;          // sum of w
  std::int32_t DegreesOfFreedom = 0;
  float Probability = 0.0f;  // two-sided, of t
  BiasStanding standing = BiasStanding::none;

  float ResidualAverage() const;  // observed less expected score, for each response
};

BiasTerm FinishBiasTerm(const BiasState& state, const BiasScores& scores, const BiasFitSums& sums,
                        WilsonHilferty form, float tinyValue);

// All that Tables show of one interaction.
struct BiasResults {
  BiasInteraction interaction;
  BiasTermList list;
  Column<BiasTermRow, BiasTerm> terms;
  // Of the responses that belong to a term: with the biases all columns, without them residuals.
  ResidualSummary withBias;
  BlockSummary<1> residualsWithoutBias;

  explicit BiasResults(const BiasEstimates& estimates)
      : interaction(estimates.interaction),
        list(estimates.terms),
        residualsWithoutBias(estimates.residualsWithoutBias) {}
};

// The contrast of two terms: the first bias less the second.
struct BiasContrast {
  float contrast = 0.0f;    // logits
  float jointError = 0.0f;  // logits
  bool tested = false;      // both have a standard error; t means something
  float t = 0.0f;
  std::int32_t DegreesOfFreedom = 0;
  float Probability = 0.0f;  // two-sided; 0 below one degree of freedom
};
BiasContrast ContrastOf(const BiasTerm& p, const BiasTerm& q);

}  // namespace flanks

#endif  // FLANKS_STATS_BIAS_STATISTICS_H
