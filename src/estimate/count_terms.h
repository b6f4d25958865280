// The terms by which the discrimination of a binomial-trials or Poisson scale is estimated.
//
// The log of the probability of category k is k B - c t(k) and what does not depend on k, with
//   binomial   t(k) = sum over j from 1 to k of (ln j - ln(m - j + 1))
//   Poisson    t(k) = ln k!
// so the slope of the log-likelihood over the discrimination c is the expected less the observed
// sum of t, and its curvature is the variance of t.
//
// Tested by tests/unit/estimate/count_terms_test.cpp.
#ifndef FLANKS_ESTIMATE_COUNT_TERMS_H
#define FLANKS_ESTIMATE_COUNT_TERMS_H

#include <span>
#include <vector>

#include "run/design.h"

namespace flanks {

// ln k! for k from 0 to kProbabilityEntries - 1; made at its first use.
std::span<const double> LogFactorial();

// t(0) to t(top) of a binomial or Poisson scale; `terms` is used again.
void FillCountTerms(ScaleType type, int top, std::vector<double>& terms);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_COUNT_TERMS_H
