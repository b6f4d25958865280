// PROX: starting values by the normal approximation.
//
// In the one or two passes before JMLE each element sums, over its observations, the measure of
// everything else in the observation (the rest measure) and its square; from their mean and spread
// and from the element's score comes a measure in one step (L. Cohen, British Journal of
// Mathematical and Statistical Psychology 32, 1979; the constant is the squared 1.7 by which the
// logistic curve is laid on the normal one).
//
// Kept: the mean rest measure is added, also for a positive Flank, and the squares are of the
// weighted rest measure (docs/quirks.md).
//
// Tested by tests/unit/estimate/prox_test.cpp.
#ifndef FLANKS_ESTIMATE_PROX_H
#define FLANKS_ESTIMATE_PROX_H

#include <cstdint>

#include "run/estimates.h"

namespace flanks {

// One observation's part in the sums of an element: `restMeasure` in logits is the measure sum less
// the element's own part.  The element's record holds other sums in JMLE: ExpectedSum is the sum of
// weighted rest measures here, Information that of their squares, ShiftedExpected that of weights.
inline void AddProx(double restMeasure, double weight, ElementState& element) {
  const double weighted = restMeasure * weight;
  element.ExpectedSum += weighted;
  element.Information += weighted * weighted;
  element.ShiftedExpected += weight;
}

// The measure of an element from its sums, its observed score and its largest possible score, for
// a Flank with orientation kPositiveOrientation or kNegativeOrientation.  The element has weight.
float ProxMeasure(const ElementState& sums, double observedScore, double maxScore,
                  std::int16_t orientation);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_PROX_H
