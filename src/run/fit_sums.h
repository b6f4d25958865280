// What the pass after convergence sums: for each element, and for the run.
//
// stats/fit_pass fills them in record order, 64 bits, weighted with the observation's weight w;
// stats/fit_statistics makes the finished statistics of them.  In the comments E is the expected
// score, x the ordered category, m the scale's top category, V the model variance, C4 the fourth
// central moment, z the standardized residual, B the measure sum.
#ifndef FLANKS_RUN_FIT_SUMS_H
#define FLANKS_RUN_FIT_SUMS_H

#include <array>
#include <cstddef>

#include "base/running_moments.h"
#include "run/scale_tables.h"

namespace flanks {

// From the observations in which the element takes part: those with all elements in play, and for
// an extreme element those in which it is the only one.
struct FitTerms {
  double ResidualSum = 0.0;          // w E; w (m - E) in a reversed position
  double Information = 0.0;          // w V
  double InfitSum = 0.0;             // w (x - E)²
  double InfitVarianceSum = 0.0;     // w (C4 - V²)
  double OutfitSum = 0.0;            // w z²
  double ExpectedSum = 0.0;          // w C4 / V²
  double LogLikelihoodSum = 0.0;     // w times the cumulative logit at x
  double LogLikelihoodMean = 0.0;    // w times its expectation
  double LogLikelihoodSpread = 0.0;  // w times its variance
  double FairSum = 0.0;              // w times the fair score, in scored categories
};

// From all observations of the element with at most one extreme element.  Here x is the ordered
// category over m, r is E / m and v is V / m².
struct CorrelationSums {
  double W = 0.0;                      // w
  double B = 0.0, BB = 0.0;            // w B, w B²
  double x = 0.0, xx = 0.0, Bx = 0.0;  // w x, w x², w B x
  double r = 0.0, rr = 0.0, Br = 0.0;  // w r, w r², w B r
  double v = 0.0;                      // w v
};

struct alignas(64) FitSums {
  FitTerms terms;
  CorrelationSums correlation;
  ScaleRow ElementScale;       // the first scale it was seen on; no row before
  bool severalScales = false;  // a second one was seen
};

// States of observations run from -5 to 5; each has a counter of the raw observations.
constexpr int kLargestState = 5;
constexpr std::size_t kStates = 2 * kLargestState + 1;

struct FitTotals {
  double TotalWeightedCount = 0.0;      // w, all elements in play
  double SquaredStandardizedSum = 0.0;  // w z², likewise
  std::array<WelfordCounter, kStates> states;

  const WelfordCounter& ofState(int state) const {
    return states[static_cast<std::size_t>(state + kLargestState)];
  }
};

}  // namespace flanks

#endif  // FLANKS_RUN_FIT_SUMS_H
