// Probabilities of the normal, the chi-squared and Student's t distribution, by published formulas.
//
// They are used for significance only: a probability is shown with two decimals, in a few places
// with four, and the approximations are good to more than that.  They hold no state and know
// nothing of a run.
//
//   NormalTail            Abramowitz and Stegun, Handbook of Mathematical Functions (1964), 7.1.26:
//                         the error function with an absolute error of at most 1.5E-7.
//   ChiSquareProbability  Peizer and Pratt, A Normal Approximation for Binomial, F, Beta, and Other
//                         Common, Related Tail Probabilities, I; Journal of the American
//                         Statistical Association 63 (1968), 1416-1456: the normal deviate that
//                         belongs to a chi-squared value; its tail by Abramowitz and Stegun 7.1.28,
//                         the complement of the error function with an error of at most 3E-7.
//                         Exact for one degree of freedom; off by at most .004 for two, .0015 for
//                         three, .0004 from five on.
//   StudentTProbability   Abramowitz and Stegun 26.7.3 and 26.7.4: a finite series, exact for
//                         whole degrees of freedom; beyond 10,000 of them the normal deviate of
//                         26.7.8.
//
// Tested by tests/unit/stats/distributions_test.cpp against exact values.
#ifndef FLANKS_STATS_DISTRIBUTIONS_H
#define FLANKS_STATS_DISTRIBUTIONS_H

namespace flanks {

// The two-sided probability of a standard normal deviate at least as far from 0 as x.
[[nodiscard]] double NormalTail(double x);

// The probability of a chi-squared value of at least `chiSquared` with `degreesOfFreedom`.
// A negative value counts as 0; less than one degree of freedom gives 1.
[[nodiscard]] double ChiSquareProbability(double chiSquared, double degreesOfFreedom);

// The two-sided probability of a t value at least as far from 0, with whole degrees of freedom; a
// fraction of them is cut.  Less than one gives 0.
[[nodiscard]] double StudentTProbability(double t, double degreesOfFreedom);

}  // namespace flanks

#endif  // FLANKS_STATS_DISTRIBUTIONS_H
