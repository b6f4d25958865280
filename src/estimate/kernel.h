// The measurement kernel: from one linear measure to the probability of each category.
//
// For an observation whose elements' measures sum to B, on a scale with top category m and
// thresholds T(1) .. T(m), the Rasch model gives category k the probability
//     p(k) = exp(r(k)) / sum over j of exp(r(j)),   r(0) = 0,  r(k) = r(k-1) + B - T(k)
// (G. Rasch 1960 for m = 1; D. Andrich, Psychometrika 43, 1978, for m above 1; a binomial-trials
// scale has c ln(k / (m - k + 1)) and a Poisson scale c ln(k) in place of T(k), with c the
// discrimination of the scale).  The kernel returns the expected score, and if wanted the variance
// that the iterations use; estimate/moments derives the rest from the probabilities.
//
// Every pass over the data calls it once or twice for each observation, so it takes a batch: the
// measures of observations on one scale go in, arrays of results come out, p as one row for each
// category (p[k * stride + i] for category k of observation i).  One observation is a batch of one
// through the same code.  It holds no state, allocates nothing and reports nothing.
//
// Arithmetic: 64-bit, with a cut to 32 bits wherever a probability or the expected score is stored
// (docs/numbers.md); categories are summed from the last to the first.  The exponents are shifted
// so that the largest is exactly the exponent limit: none overflows, and no total is zero.  Only a
// limit above 83 can make a total infinite; the pass finds that in its sums.
//
// Order of calls: SetUpKernelScale when thresholds or limit have changed (it takes the logarithms),
// then CategoryProbabilities any number of times.
//
// Tested by tests/unit/estimate/kernel_test.cpp and tests/properties/estimate/kernel_test.cpp;
// timed by bench/bench_kernel.cpp.
#ifndef FLANKS_ESTIMATE_KERNEL_H
#define FLANKS_ESTIMATE_KERNEL_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/vector_width.h"
#include "run/scale_tables.h"

namespace flanks {

// The observations that a pass evaluates at a time: their rows stay in the processor's own memory.
constexpr std::size_t kKernelBlock = 1024;
// A good distance between the rows of a block: rows 4,096 bytes apart would fight for their place.
constexpr std::size_t kKernelStride = kKernelBlock + 16;

// A scale as the kernel wants it.
struct KernelScale {
  ScaleType type = ScaleType::rating;
  int top = 1;            // m, at least 1
  int filled = 1;         // n: the call fills categories 0 to n (m but for a Poisson scale)
  int varianceBound = 1;  // the variance is summed over categories 1 to this
  float exponentLimit = 80.0f;
  bool closedForm = false;            // c is exactly 1: the expected score is not summed
  std::vector<double> step;           // by category: T(k), c ln(k / (m - k + 1)) or c ln(k)
  std::vector<std::uint8_t> skipped;  // by category: 1 for a probability of zero (step 0)
};

// `thresholds` and `flags` are the scale's rows of ThresholdTable and CategoryFlag, cells 0 to m
// (at least 0 to 1).  The vectors of `scale` are used again, so that a later call for a scale of
// the same size allocates nothing.
void SetUpKernelScale(ScaleType type, int top, std::span<const float> thresholds,
                      std::span<const std::int16_t> flags, float exponentLimit, KernelScale& scale);

// Where the results of a batch go; the caller's arrays, apart from each other and from the
// measures.
struct KernelRows {
  float* expected = nullptr;  // one for each observation
  float* variance = nullptr;  // likewise; null: not wanted
  float* probability =
      nullptr;             // rows 0 to `filled` of the scale, and to its varianceBound to read
  std::size_t stride = 0;  // from one row of `probability` to the next
};

// Steps of each observation's own scale, where scales differ in nothing else: all of type rating or
// with two categories, with the same top category and none skipped.
struct LaneSteps {
  const double* steps = nullptr;  // steps[k * stride + i] for category k of observation i
  std::size_t stride = 0;
};

// Fills `rows` for observations on one scale.
// Kept: a Poisson scale's variance reads entries beyond those that this call filled: whatever
// earlier calls left in them (docs/quirks.md).
void CategoryProbabilities(const KernelScale& scale, std::span<const float> measures,
                           const KernelRows& rows, VectorWidth width = ChosenVectorWidth());

// The same for observations on scales that differ in their steps alone; `scale` is any of them.
void CategoryProbabilities(const KernelScale& scale, const LaneSteps& steps,
                           std::span<const float> measures, const KernelRows& rows,
                           VectorWidth width = ChosenVectorWidth());

// What one observation gets, beside the probabilities.
struct KernelResult {
  float expected = 0.0f;
  float variance = 0.0f;  // floored at 0
};

// One observation: fills entries 0 to `filled` of the array.
KernelResult CategoryProbabilities(const KernelScale& scale, float measure,
                                   ProbabilityArray& CategoryProbability,
                                   VectorWidth width = ChosenVectorWidth());

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_KERNEL_H
