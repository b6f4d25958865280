#include "estimate/moments.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>

#include "base/single.h"

namespace flanks {
namespace {

constexpr std::size_t kStrip = 256;

// Raw moments about zero of a strip: the sums of k squared, cubed and to the fourth times p.
struct RawMoments {
  alignas(64) std::array<float, kStrip> second;
  alignas(64) std::array<float, kStrip> third;
  alignas(64) std::array<float, kStrip> fourth;
};

[[gnu::always_inline]] inline void FillRawMoments(const KernelScale& scale,
                                                  const EvaluatedRows& evaluated, std::size_t count,
                                                  RawMoments& raw) {
  if (scale.top < 2) {
    // 0 and 1 are their own powers.
    for (std::size_t i = 0; i < count; ++i)
      raw.second[i] = raw.third[i] = raw.fourth[i] = evaluated.expected[i];
    return;
  }
  for (std::size_t i = 0; i < count; ++i) raw.second[i] = raw.third[i] = raw.fourth[i] = 0.0f;
  for (int k = scale.varianceBound; k >= 1; --k) {
    const float* __restrict p =
        evaluated.probability + static_cast<std::size_t>(k) * evaluated.stride;
    const double square = static_cast<double>(k) * k;
    const double cube = square * k;
    const double fourth = cube * k;
    for (std::size_t i = 0; i < count; ++i) {
      raw.second[i] = Single(raw.second[i] + square * p[i]);
      raw.third[i] = Single(raw.third[i] + cube * p[i]);
      raw.fourth[i] = Single(raw.fourth[i] + fourth * p[i]);
    }
  }
}

// Rounding can take a difference of moments a little below 0 when one category has nearly all the
// probability; it is then 0, and the divisor's floor takes over.
[[gnu::always_inline]] inline float NotNegative(double value) {
  const float cut = Single(value);
  return cut < 0.0f ? 0.0f : cut;
}

[[gnu::always_inline]] inline float Floored(float value) {
  return value < kSingleFloor ? kSingleFloor : value;
}

[[gnu::always_inline]] inline void FillCentralMoments(const float* __restrict expected,
                                                      std::size_t count, const RawMoments& raw,
                                                      const MomentRows& rows) {
  for (std::size_t i = 0; i < count; ++i) {
    const double E = expected[i];
    const double S2 = raw.second[i], S3 = raw.third[i], S4 = raw.fourth[i];
    const float C4 = NotNegative(S4 - E * (4.0 * S3 - 3.0 * E * (2.0 * S2 - E * E)));
    const float V = NotNegative(S2 - E * E);
    rows.FourthMoment[i] = C4;
    rows.ModelVariance[i] = V;
    const double square = static_cast<double>(V) * V;
    rows.ResidualVarianceTerm[i] = NotNegative(C4 - square);
    rows.KurtosisRatio[i] = Single(static_cast<double>(Floored(C4)) / Floored(Single(square)));
  }
}

[[gnu::always_inline]] inline void FillResiduals(const float* __restrict expected,
                                                 const std::int16_t* __restrict categories,
                                                 std::size_t count, const MomentRows& rows) {
  for (std::size_t i = 0; i < count; ++i) {
    const float residual = Single(static_cast<double>(categories[i]) - expected[i]);
    const float square = Single(static_cast<double>(residual) * residual);
    rows.ScoreResidual[i] = residual;
    rows.SquaredResidual[i] = square;
    rows.SquaredStandardizedResidual[i] =
        Single(static_cast<double>(Floored(square)) / Floored(rows.ModelVariance[i]));
  }
}

[[gnu::always_inline]] inline void MomentsBatch(const KernelScale& scale,
                                                const EvaluatedRows& evaluated,
                                                std::span<const std::int16_t> categories,
                                                const MomentRows& rows) {
  RawMoments raw;
  for (std::size_t first = 0; first < categories.size(); first += kStrip) {
    const std::size_t count = std::min(kStrip, categories.size() - first);
    const EvaluatedRows here{evaluated.expected + first, evaluated.probability + first,
                             evaluated.stride};
    const MomentRows into{
        rows.ModelVariance + first,        rows.FourthMoment + first,
        rows.ResidualVarianceTerm + first, rows.ScoreResidual + first,
        rows.SquaredResidual + first,      rows.SquaredStandardizedResidual + first,
        rows.KurtosisRatio + first};
    FillRawMoments(scale, here, count, raw);
    FillCentralMoments(here.expected, count, raw, into);
    FillResiduals(here.expected, categories.data() + first, count, into);
  }
}

// The exponents of a strip as they run up, and their sums.
struct LogitWork {
  alignas(64) std::array<double, kStrip> run;
  alignas(64) std::array<double, kStrip> first;
  alignas(64) std::array<double, kStrip> second;
};

// What goes into the logit moments of a batch.
struct LogitInput {
  const KernelScale& scale;
  LaneSteps laneSteps;  // none: the steps are those of the scale
  const float* measures;
  const float* probability;
  std::size_t stride;
  const std::int16_t* categories;
};

// One category of a strip that begins at lane `at`.
template <bool kOwnSteps>
[[gnu::always_inline]] inline void AddLogit(const LogitInput& input, int k, std::size_t at,
                                            std::size_t count, float* __restrict observed,
                                            LogitWork& work) {
  const auto cell = static_cast<std::size_t>(k);
  const float* __restrict measures = input.measures + at;
  const std::int16_t* __restrict categories = input.categories + at;
  const float* __restrict p = input.probability + cell * input.stride + at;
  // The step of a skipped category is 0: it adds the measure alone.
  const double* __restrict steps = kOwnSteps
                                       ? input.laneSteps.steps + cell * input.laneSteps.stride + at
                                       : input.scale.step.data() + cell;
  for (std::size_t i = 0; i < count; ++i) {
    work.run[i] += static_cast<double>(measures[i]) - steps[kOwnSteps ? i : 0];
    work.first[i] += work.run[i] * p[i];
    work.second[i] += work.run[i] * work.run[i] * p[i];
    observed[i] = categories[i] == k ? Single(work.run[i]) : observed[i];
  }
}

[[gnu::always_inline]] inline void LogitBatch(const LogitInput& input, std::size_t lanes,
                                              const LogitRows& rows) {
  LogitWork work;
  for (std::size_t at = 0; at < lanes; at += kStrip) {
    const std::size_t count = std::min(kStrip, lanes - at);
    for (std::size_t i = 0; i < count; ++i) {
      work.run[i] = work.first[i] = work.second[i] = 0.0;
      rows.observed[at + i] = 0.0f;
    }
    for (int k = 1; k <= input.scale.top && input.scale.top >= 2; ++k) {
      if (input.laneSteps.steps != nullptr) {
        AddLogit<true>(input, k, at, count, rows.observed + at, work);
      } else {
        AddLogit<false>(input, k, at, count, rows.observed + at, work);
      }
    }
    for (std::size_t i = 0; i < count; ++i) {
      rows.first[at + i] = Single(work.first[i]);
      rows.second[at + i] = Single(work.second[i]);
    }
  }
}

void MomentsNarrow(const KernelScale& scale, const EvaluatedRows& evaluated,
                   std::span<const std::int16_t> categories, const MomentRows& rows) {
  MomentsBatch(scale, evaluated, categories, rows);
}
#if defined(__x86_64__)
[[gnu::target("avx2")]] void MomentsAvx2(const KernelScale& scale, const EvaluatedRows& evaluated,
                                         std::span<const std::int16_t> categories,
                                         const MomentRows& rows) {
  MomentsBatch(scale, evaluated, categories, rows);
}
[[gnu::target("avx512f,avx512dq,avx512bw,avx512vl,prefer-vector-width=512")]] void MomentsAvx512(
    const KernelScale& scale, const EvaluatedRows& evaluated,
    std::span<const std::int16_t> categories, const MomentRows& rows) {
  MomentsBatch(scale, evaluated, categories, rows);
}
#endif

void LogitsNarrow(const LogitInput& input, std::size_t lanes, const LogitRows& rows) {
  LogitBatch(input, lanes, rows);
}
#if defined(__x86_64__)
[[gnu::target("avx2")]] void LogitsAvx2(const LogitInput& input, std::size_t lanes,
                                        const LogitRows& rows) {
  LogitBatch(input, lanes, rows);
}
[[gnu::target("avx512f,avx512dq,avx512bw,avx512vl,prefer-vector-width=512")]] void LogitsAvx512(
    const LogitInput& input, std::size_t lanes, const LogitRows& rows) {
  LogitBatch(input, lanes, rows);
}
#endif

}  // namespace

void ObservationMoments(const KernelScale& scale, const EvaluatedRows& evaluated,
                        std::span<const std::int16_t> categories, const MomentRows& rows,
                        VectorWidth width) {
#if defined(__x86_64__)
  switch (width) {
    case VectorWidth::avx512:
      return MomentsAvx512(scale, evaluated, categories, rows);
    case VectorWidth::avx2:
      return MomentsAvx2(scale, evaluated, categories, rows);
    case VectorWidth::narrow:
      break;
  }
#else
  static_cast<void>(width);
#endif
  MomentsNarrow(scale, evaluated, categories, rows);
}

Moments ObservationMoments(const KernelScale& scale, float expected, std::int16_t category,
                           const ProbabilityArray& CategoryProbability, VectorWidth width) {
  Moments result;
  const EvaluatedRows evaluated{&expected, CategoryProbability.data(), 1};
  const MomentRows rows{&result.ModelVariance,        &result.FourthMoment,
                        &result.ResidualVarianceTerm, &result.ScoreResidual,
                        &result.SquaredResidual,      &result.SquaredStandardizedResidual,
                        &result.KurtosisRatio};
  ObservationMoments(scale, evaluated, std::span(&category, 1), rows, width);
  return result;
}

void AddExpectedCounts(const KernelScale& scale, const float* probability, std::size_t stride,
                       double weight, std::span<double> expectedCount,
                       std::span<double> discriminationSums) {
  const auto m = static_cast<std::size_t>(scale.top);
  if (m < 2) {
    expectedCount[1] += weight * probability[stride];
    expectedCount[0] += weight * probability[0];
    return;
  }
  const bool rating = scale.type == ScaleType::rating;
  double cum = 0.0;
  for (std::size_t k = m; k >= 1; --k) {
    const double p = probability[k * stride];
    expectedCount[k] += weight * p;
    if (!rating) continue;
    cum += p;
    discriminationSums[k] += cum * (1.0 - cum);
  }
}

void CategoryLogitMoments(const KernelScale& scale, std::span<const float> measures,
                          const EvaluatedRows& evaluated, std::span<const std::int16_t> categories,
                          const LogitRows& rows, VectorWidth width) {
  CategoryLogitMoments(scale, LaneSteps{}, measures, evaluated, categories, rows, width);
}

void CategoryLogitMoments(const KernelScale& scale, const LaneSteps& steps,
                          std::span<const float> measures, const EvaluatedRows& evaluated,
                          std::span<const std::int16_t> categories, const LogitRows& rows,
                          VectorWidth width) {
  const LogitInput input{
      scale, steps, measures.data(), evaluated.probability, evaluated.stride, categories.data()};
#if defined(__x86_64__)
  switch (width) {
    case VectorWidth::avx512:
      return LogitsAvx512(input, measures.size(), rows);
    case VectorWidth::avx2:
      return LogitsAvx2(input, measures.size(), rows);
    case VectorWidth::narrow:
      break;
  }
#else
  static_cast<void>(width);
#endif
  LogitsNarrow(input, measures.size(), rows);
}

LogitMoments CategoryLogitMoments(const KernelScale& scale, float measure, const float* probability,
                                  std::size_t stride, std::int16_t observed) {
  LogitMoments result;
  CategoryLogitMoments(scale, std::span(&measure, 1), {nullptr, probability, stride},
                       std::span(&observed, 1), {&result.first, &result.second, &result.observed});
  return result;
}

}  // namespace flanks
