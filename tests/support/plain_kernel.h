// The kernel as its formulas stand: one observation at a time, the library's exponential in 64
// bits, no blocks.  It judges the bits of the batch form, and it is what the benchmarks compare
// with.  The library's exponential, cut to 32 bits, is the correctly rounded one but for about one
// argument in a thousand million, so equal bits are to be expected.
#ifndef FLANKS_TESTS_SUPPORT_PLAIN_KERNEL_H
#define FLANKS_TESTS_SUPPORT_PLAIN_KERNEL_H

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "base/single.h"
#include "run/scale_tables.h"

namespace flanks {

inline float PlainExponential(float argument) {
  return Single(std::exp(static_cast<double>(argument)));
}

// A scale as its tables have it.
struct PlainScale {
  ScaleType type;
  int m;
  const float* threshold;     // T(k); cell 0 is the discrimination of a count scale
  const std::int16_t* flags;  // by category
  float X = 80.0f;            // the exponent limit
};

// Fills p[0 .. ] and returns the expected score.
inline float PlainDichotomy(const PlainScale& s, float B, float* p) {
  const float t = Single(static_cast<double>(s.threshold[1]) - B);
  p[1] = Single(1.0 / (static_cast<double>(PlainExponential(std::min(t, s.X))) + 1.0));
  p[0] = Single(1.0 - static_cast<double>(p[1]));
  return p[1];
}

// From exponents in p[1 .. n] to probabilities; their expected score.
inline float PlainShares(const PlainScale& s, int n, float top, float* p) {
  const float shift = Single(static_cast<double>(s.X) - top);
  p[0] = PlainExponential(shift);
  double total = p[0];
  for (int k = n; k >= 1; --k) {
    const bool skipped = s.type == ScaleType::rating && s.flags[k] == kCategorySkipped;
    p[k] = skipped ? 0.0f : PlainExponential(Single(static_cast<double>(shift) + p[k]));
    total += p[k];
  }
  const double inv = 1.0 / total;
  float expected = 0.0f;
  for (int k = n; k >= 0; --k) {
    p[k] = Single(p[k] * inv);
    expected = Single(expected + static_cast<double>(k) * p[k]);
  }
  return expected;
}

inline float PlainRating(const PlainScale& s, float B, float* p) {
  double run = 0.0;
  float top = 0.0f;
  for (int k = 1; k <= s.m; ++k) {
    if (s.flags[k] == kCategorySkipped) {
      run += B;
      continue;
    }
    run += static_cast<double>(B) - s.threshold[k];
    p[k] = Single(run);
    top = std::max(top, p[k]);
  }
  return PlainShares(s, s.m, top, p);
}

inline float PlainCount(const PlainScale& s, float B, float* p) {
  const double c = s.threshold[0];
  const bool binomial = s.type == ScaleType::binomial;
  const int n = binomial ? s.m : s.m < 5 ? 10 : std::min(2 * s.m, 1023);
  double run = 0.0;
  float top = 0.0f;
  for (int k = 1; k <= n; ++k) {
    run += B - c * std::log(binomial ? static_cast<double>(k) / (s.m - k + 1) : k);
    p[k] = Single(run);
    top = std::max(top, p[k]);
  }
  const float summed = PlainShares(s, n, top, p);
  if (s.threshold[0] != 1.0f) return summed;
  if (!binomial) return std::min(PlainExponential(std::min(B, s.X)), 255.0f);
  return Single(s.m / (static_cast<double>(PlainExponential(std::min(-B, s.X))) + 1.0));
}

inline float PlainProbabilities(const PlainScale& s, float B, float* p) {
  if (s.m < 2) return PlainDichotomy(s, B, p);
  return s.type == ScaleType::rating ? PlainRating(s, B, p) : PlainCount(s, B, p);
}

// The variance that the iterations use.
inline float PlainVariance(const PlainScale& s, float expected, const float* p) {
  const double E = expected;
  if (s.m < 2) return Single(E - E * E);
  const bool poisson = s.type == ScaleType::poisson;
  const int bound = !poisson ? s.m : s.m < 5 ? 20 : std::min(4 * s.m, 1023);
  double sum = 0.0;
  for (int k = bound; k >= 1; --k) sum += static_cast<double>(k) * k * p[k];
  return std::max(Single(sum - E * E), 0.0f);
}

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_PLAIN_KERNEL_H
