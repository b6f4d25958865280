#include "estimate/kernel.h"

#include <algorithm>
#include <cassert>
#include <cmath>

#include "base/exponential.h"
#include "base/single.h"

namespace flanks {
namespace {

constexpr float kLargestPoissonScore = 255.0f;

// The Poisson scale's sums are cut short: where the filled probabilities and the variance end.
// Kept: the two bounds differ (docs/quirks.md).
int PoissonFilled(int top) {
  return top < 5 ? 10 : std::min(2 * top, kProbabilityEntries - 1);
}
int PoissonVarianceBound(int top) {
  return top < 5 ? 20 : std::min(4 * top, kProbabilityEntries - 1);
}

// Observations that are worked on at a time: their working values stay in the first-level cache.
constexpr std::size_t kStrip = 256;

// The working values of a strip, one for each observation.
struct StripWork {
  alignas(64) std::array<double, kStrip> measure;
  alignas(64) std::array<double, kStrip> run;    // the exponent of the category at hand
  alignas(64) std::array<double, kStrip> total;  // of the exponentials, then 1 / total
  alignas(64) std::array<float, kStrip> top;     // the largest exponent, then the shift
};

// Some observations of a batch, and where their results go.
struct Strip {
  std::size_t count;
  const float* measures;
  KernelRows rows;
  LaneSteps lanes;  // steps of its own for each observation; null: those of the scale

  const double* steps(int k) const {
    return lanes.steps + static_cast<std::size_t>(k) * lanes.stride;
  }
  float* category(int k) const {
    return rows.probability + static_cast<std::size_t>(k) * rows.stride;
  }
};

// The functions from here to EvaluateBatch are one body, inlined into a function for each vector
// width.  Their loops run over the observations of a strip and hold nothing but arithmetic.

// The probability of the upper one of two categories; `t` is the threshold less the measure.
[[gnu::always_inline]] inline float UpperProbability(float t, float limit) {
  return Single(1.0 / (static_cast<double>(Exponential(t < limit ? t : limit)) + 1.0));
}

[[gnu::always_inline]] inline void DichotomyStrip(const KernelScale& scale, const Strip& strip) {
  const float limit = scale.exponentLimit;
  const float* __restrict measures = strip.measures;
  float* __restrict expected = strip.rows.expected;
  float* __restrict zero = strip.category(0);
  float* __restrict one = strip.category(1);
  if (strip.lanes.steps == nullptr) {
    const double threshold = scale.step[1];
    for (std::size_t i = 0; i < strip.count; ++i)
      expected[i] = UpperProbability(Single(threshold - measures[i]), limit);
  } else {
    const double* __restrict thresholds = strip.steps(1);
    for (std::size_t i = 0; i < strip.count; ++i)
      expected[i] = UpperProbability(Single(thresholds[i] - measures[i]), limit);
  }
  for (std::size_t i = 0; i < strip.count; ++i) {
    one[i] = expected[i];
    zero[i] = Single(1.0 - static_cast<double>(expected[i]));
  }
  if (strip.rows.variance == nullptr) return;
  float* __restrict variance = strip.rows.variance;
  for (std::size_t i = 0; i < strip.count; ++i) {
    const double E = expected[i];
    variance[i] = Single(E - E * E);
  }
}

// The exponent of each category, and the shift that makes the largest of them the limit.  The
// exponent of category 0 is 0, so the largest is never below 0.
[[gnu::always_inline]] inline void FillExponents(const KernelScale& scale, const Strip& strip,
                                                 StripWork& work) {
  for (std::size_t i = 0; i < strip.count; ++i) {
    work.measure[i] = strip.measures[i];
    work.run[i] = 0.0;
    work.top[i] = 0.0f;
  }
  for (int k = 1; k <= scale.filled; ++k) {
    if (scale.skipped[static_cast<std::size_t>(k)] != 0) {  // runs on, but nothing is stored
      for (std::size_t i = 0; i < strip.count; ++i) work.run[i] += work.measure[i];
      continue;
    }
    if (strip.lanes.steps == nullptr) {
      const double step = scale.step[static_cast<std::size_t>(k)];
      for (std::size_t i = 0; i < strip.count; ++i) work.run[i] += work.measure[i] - step;
    } else {
      const double* __restrict steps = strip.steps(k);
      for (std::size_t i = 0; i < strip.count; ++i) work.run[i] += work.measure[i] - steps[i];
    }
    float* __restrict exponent = strip.category(k);
    for (std::size_t i = 0; i < strip.count; ++i) {
      exponent[i] = Single(work.run[i]);
      work.top[i] = work.top[i] < exponent[i] ? exponent[i] : work.top[i];
    }
  }
  for (std::size_t i = 0; i < strip.count; ++i) work.top[i] = scale.exponentLimit - work.top[i];
}

// From exponents to exponentials, and 1 / total of them.
[[gnu::always_inline]] inline void FillExponentials(const KernelScale& scale, const Strip& strip,
                                                    StripWork& work) {
  const std::size_t count = strip.count;
  float* __restrict zero = strip.category(0);
  for (std::size_t i = 0; i < count; ++i) zero[i] = Exponential(work.top[i]);
  for (std::size_t i = 0; i < count; ++i) work.total[i] = zero[i];
  for (int k = scale.filled; k >= 1; --k) {
    float* __restrict cell = strip.category(k);
    if (scale.skipped[static_cast<std::size_t>(k)] != 0) {
      for (std::size_t i = 0; i < count; ++i) cell[i] = 0.0f;
      continue;
    }
    // The sum of two floats, taken in 32 bits, is their sum in 64 bits cut to 32.
    for (std::size_t i = 0; i < count; ++i) cell[i] = Exponential(work.top[i] + cell[i]);
    for (std::size_t i = 0; i < count; ++i) work.total[i] += cell[i];
  }
  for (std::size_t i = 0; i < count; ++i) work.total[i] = 1.0 / work.total[i];
}

// From exponentials to probabilities, without sums.
[[gnu::always_inline]] inline void Normalise(const KernelScale& scale, const Strip& strip,
                                             const StripWork& work) {
  for (int k = scale.filled; k >= 0; --k) {
    float* __restrict cell = strip.category(k);
    for (std::size_t i = 0; i < strip.count; ++i) cell[i] = Single(cell[i] * work.total[i]);
  }
}

// The same, with the expected score.
[[gnu::always_inline]] inline void NormaliseWithScore(const KernelScale& scale, const Strip& strip,
                                                      const StripWork& work) {
  float* __restrict expected = strip.rows.expected;
  for (std::size_t i = 0; i < strip.count; ++i) expected[i] = 0.0f;
  for (int k = scale.filled; k >= 0; --k) {
    float* __restrict cell = strip.category(k);
    const double score = k;
    for (std::size_t i = 0; i < strip.count; ++i) {
      cell[i] = Single(cell[i] * work.total[i]);
      expected[i] = Single(expected[i] + score * cell[i]);
    }
  }
}

// The same, with the sum of squared categories times probabilities left in work.run: one loop over
// the categories for what most passes want.
[[gnu::always_inline]] inline void NormaliseWithSquares(const KernelScale& scale,
                                                        const Strip& strip, StripWork& work) {
  float* __restrict expected = strip.rows.expected;
  for (std::size_t i = 0; i < strip.count; ++i) expected[i] = 0.0f;
  for (std::size_t i = 0; i < strip.count; ++i) work.run[i] = 0.0;
  for (int k = scale.filled; k >= 0; --k) {
    float* __restrict cell = strip.category(k);
    const double score = k;
    for (std::size_t i = 0; i < strip.count; ++i) {
      cell[i] = Single(cell[i] * work.total[i]);
      expected[i] = Single(expected[i] + score * cell[i]);
      work.run[i] += score * score * cell[i];
    }
  }
}

// The sum of squares alone, over a bound that may differ from the filled categories.
[[gnu::always_inline]] inline void SumSquares(const KernelScale& scale, const Strip& strip,
                                              StripWork& work) {
  for (std::size_t i = 0; i < strip.count; ++i) work.run[i] = 0.0;
  for (int k = scale.varianceBound; k >= 1; --k) {
    const float* __restrict cell = strip.category(k);
    const double square = static_cast<double>(k) * k;
    for (std::size_t i = 0; i < strip.count; ++i) work.run[i] += square * cell[i];
  }
}

// With a discrimination of exactly 1 the expected score is known without the truncated sum.
[[gnu::always_inline]] inline void ClosedFormScore(const KernelScale& scale, const Strip& strip) {
  const float* __restrict measures = strip.measures;
  float* __restrict expected = strip.rows.expected;
  const float limit = scale.exponentLimit;
  if (scale.type == ScaleType::binomial) {
    const double trials = scale.top;
    for (std::size_t i = 0; i < strip.count; ++i) {
      const float negative = -measures[i];
      const float power = Exponential(negative < limit ? negative : limit);
      expected[i] = Single(trials / (static_cast<double>(power) + 1.0));
    }
    return;
  }
  for (std::size_t i = 0; i < strip.count; ++i) {
    const float rate = Exponential(measures[i] < limit ? measures[i] : limit);
    expected[i] = rate < kLargestPoissonScore ? rate : kLargestPoissonScore;
  }
}

[[gnu::always_inline]] inline void FillVariance(const Strip& strip, const StripWork& work) {
  const float* __restrict expected = strip.rows.expected;
  float* __restrict variance = strip.rows.variance;
  for (std::size_t i = 0; i < strip.count; ++i) {
    const double E = expected[i];
    const float cut = Single(work.run[i] - E * E);
    variance[i] = cut < 0.0f ? 0.0f : cut;
  }
}

[[gnu::always_inline]] inline void PolytomyStrip(const KernelScale& scale, const Strip& strip,
                                                 StripWork& work) {
  FillExponents(scale, strip, work);
  FillExponentials(scale, strip, work);
  const bool variance = strip.rows.variance != nullptr;
  const bool together = !scale.closedForm && scale.varianceBound == scale.filled;
  if (together && variance) {
    NormaliseWithSquares(scale, strip, work);
  } else if (scale.closedForm) {
    ClosedFormScore(scale, strip);
    Normalise(scale, strip, work);
  } else {
    NormaliseWithScore(scale, strip, work);
  }
  if (!variance) return;
  if (!together) SumSquares(scale, strip, work);
  FillVariance(strip, work);
}

// What is evaluated at a call, beside the scale.
struct Batch {
  std::span<const float> measures;
  KernelRows rows;
  LaneSteps lanes;
};

[[gnu::always_inline]] inline void EvaluateBatch(const KernelScale& scale, const Batch& batch) {
  StripWork work;
  for (std::size_t first = 0; first < batch.measures.size(); first += kStrip) {
    Strip strip{std::min(kStrip, batch.measures.size() - first), batch.measures.data() + first,
                batch.rows, batch.lanes};
    strip.rows.expected += first;
    strip.rows.probability += first;
    if (strip.rows.variance != nullptr) strip.rows.variance += first;
    if (strip.lanes.steps != nullptr) strip.lanes.steps += first;
    if (scale.top < 2) {
      DichotomyStrip(scale, strip);
    } else {
      PolytomyStrip(scale, strip, work);
    }
  }
}

void EvaluateNarrow(const KernelScale& scale, const Batch& batch) {
  EvaluateBatch(scale, batch);
}
#if defined(__x86_64__)
[[gnu::target("avx2")]] void EvaluateAvx2(const KernelScale& scale, const Batch& batch) {
  EvaluateBatch(scale, batch);
}
[[gnu::target("avx512f,avx512dq,avx512bw,avx512vl,prefer-vector-width=512")]] void EvaluateAvx512(
    const KernelScale& scale, const Batch& batch) {
  EvaluateBatch(scale, batch);
}
#endif

void Evaluate(const KernelScale& scale, const Batch& batch, VectorWidth width) {
#if defined(__x86_64__)
  switch (width) {
    case VectorWidth::avx512:
      return EvaluateAvx512(scale, batch);
    case VectorWidth::avx2:
      return EvaluateAvx2(scale, batch);
    case VectorWidth::narrow:
      break;
  }
#else
  static_cast<void>(width);
#endif
  EvaluateNarrow(scale, batch);
}

// c ln(k / (m - k + 1)) or c ln(k) for the categories 1 to n.
void FillDiscriminatedSteps(double discrimination, KernelScale& scale) {
  for (int k = 1; k <= scale.filled; ++k) {
    const double ratio = scale.type == ScaleType::binomial
                             ? static_cast<double>(k) / (scale.top - k + 1)
                             : static_cast<double>(k);
    scale.step[static_cast<std::size_t>(k)] = discrimination * std::log(ratio);
  }
}

}  // namespace

// The shift of the exponents does not show in the probabilities, so a larger limit of the user's
// need not overflow the 32-bit exponential: exp(88) is the largest power below its end.
constexpr float kLargestExponent = 88.0f;

void SetUpKernelScale(ScaleType type, int top, std::span<const float> thresholds,
                      std::span<const std::int16_t> flags, float exponentLimit,
                      KernelScale& scale) {
  assert(top >= 1 && thresholds.size() > static_cast<std::size_t>(top));
  const bool rating = type == ScaleType::rating || top < 2;  // two categories: whatever the type
  const bool poisson = type == ScaleType::poisson && top >= 2;
  scale.type = type;
  scale.top = top;
  scale.filled = poisson ? PoissonFilled(top) : top;
  scale.varianceBound = poisson ? PoissonVarianceBound(top) : top;
  scale.exponentLimit = std::min(exponentLimit, kLargestExponent);
  scale.closedForm = !rating && thresholds[0] == 1.0f;  // exactly
  const auto cells = static_cast<std::size_t>(scale.filled) + 1;
  scale.step.assign(cells, 0.0);
  scale.skipped.assign(cells, 0);
  if (!rating) return FillDiscriminatedSteps(thresholds[0], scale);
  for (std::size_t k = 1; k < cells; ++k) {
    if (top >= 2 && flags[k] == kCategorySkipped) {
      scale.skipped[k] = 1;  // its step adds the measure alone
    } else {
      scale.step[k] = thresholds[k];
    }
  }
}

void CategoryProbabilities(const KernelScale& scale, std::span<const float> measures,
                           const KernelRows& rows, VectorWidth width) {
  Evaluate(scale, {measures, rows, {}}, width);
}

void CategoryProbabilities(const KernelScale& scale, const LaneSteps& steps,
                           std::span<const float> measures, const KernelRows& rows,
                           VectorWidth width) {
  assert(scale.type == ScaleType::rating || scale.top < 2);
  Evaluate(scale, {measures, rows, steps}, width);
}

KernelResult CategoryProbabilities(const KernelScale& scale, float measure,
                                   ProbabilityArray& CategoryProbability, VectorWidth width) {
  KernelResult result;
  const KernelRows rows{&result.expected, &result.variance, CategoryProbability.data(), 1};
  CategoryProbabilities(scale, std::span(&measure, 1), rows, width);
  return result;
}

}  // namespace flanks
