// What estimation and fit need of one observation, beyond its probabilities.
//
// From the probabilities p(k) that the kernel left, with E the expected score and x the observed
// category: the model variance V, the fourth central moment C4, the residual x - E and its square,
// the standardized residual, and the variance of the squared residual C4 - V squared, which carries
// the kurtosis into the standardized fit statistics (B. D. Wright and G. N. Masters, Rating Scale
// Analysis, 1982, chapter 5).  Like the kernel it takes a batch and gives the same bits for a
// batch of one and for every vector width.
//
// Raw moments are summed from the last category to the first and cut to 32 bits at each step; the
// central moments are 64-bit expressions of them, cut once.
//
// Order of calls: CategoryProbabilities, then ObservationMoments on its rows.
// Tested by tests/unit/estimate/moments_test.cpp.
#ifndef FLANKS_ESTIMATE_MOMENTS_H
#define FLANKS_ESTIMATE_MOMENTS_H

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/vector_width.h"
#include "estimate/kernel.h"

namespace flanks {

// The floor of a divisor and of a numerator in the standardized square and the kurtosis ratio.
// A squared standardized residual of more than 81 is shown as 9.
constexpr float kLargestStandardizedResidual = 9.0f;
constexpr float kLargestStandardizedSquare = 81.0f;

// The moments of a batch, one number for each observation in each array; all are filled.
struct MomentRows {
  float* ModelVariance = nullptr;                // V, at least 0
  float* FourthMoment = nullptr;                 // C4, at least 0
  float* ResidualVarianceTerm = nullptr;         // C4 - V squared, at least 0
  float* ScoreResidual = nullptr;                // x - E
  float* SquaredResidual = nullptr;              // its square
  float* SquaredStandardizedResidual = nullptr;  // over V, both floored at 1E-9
  float* KurtosisRatio = nullptr;                // C4 / V squared, both floored at 1E-9
};

// What CategoryProbabilities has filled for these observations; as KernelRows, to read.
struct EvaluatedRows {
  const float* expected = nullptr;
  const float* probability = nullptr;
  std::size_t stride = 0;
};

// `evaluated` are results on `scale`; `categories` are the observations' ordered categories.
void ObservationMoments(const KernelScale& scale, const EvaluatedRows& evaluated,
                        std::span<const std::int16_t> categories, const MomentRows& rows,
                        VectorWidth width = ChosenVectorWidth());

// The same of one observation.
struct Moments {
  float ModelVariance = 0.0f;
  float FourthMoment = 0.0f;
  float ResidualVarianceTerm = 0.0f;
  float ScoreResidual = 0.0f;
  float SquaredResidual = 0.0f;
  float SquaredStandardizedResidual = 0.0f;
  float KurtosisRatio = 0.0f;
};
Moments ObservationMoments(const KernelScale& scale, float expected, std::int16_t category,
                           const ProbabilityArray& CategoryProbability,
                           VectorWidth width = ChosenVectorWidth());

// The square root of the square with the sign of the residual; 9 when the square is above 81.
inline float StandardizedResidualOf(float squaredStandardizedResidual, float scoreResidual) {
  const float size = squaredStandardizedResidual <= kLargestStandardizedSquare
                         ? std::sqrt(squaredStandardizedResidual)
                         : kLargestStandardizedResidual;
  return std::copysign(size, scoreResidual);
}

// Adds one observation's expected counts to the scale's rows, which are 64-bit sums: w p(k) to
// `expectedCount`, categories m to 1 (of a dichotomy both categories), and for a rating scale with
// more than two categories cum (1 - cum) to `discriminationSums`, with cum the probability of
// category k or above, without weight.  Only for observations with all elements in play.
// `probability` points at category 0, the next category stands `stride` further on.
void AddExpectedCounts(const KernelScale& scale, const float* probability, std::size_t stride,
                       double weight, std::span<double> expectedCount,
                       std::span<double> discriminationSums);

// The exponents' moments under the model and the exponent at the observed category: the slope of
// the log-likelihood.  Zeros when m is at most 1.
struct LogitMoments {
  float first = 0.0f;     // L1: sum of run times p
  float second = 0.0f;    // L2: sum of run squared times p
  float observed = 0.0f;  // the run at the observed category
};
// The same for a batch, one number for each observation in each array.
struct LogitRows {
  float* first = nullptr;
  float* second = nullptr;
  float* observed = nullptr;
};
// `evaluated.probability` is what the kernel filled on `scale` for `measures`.
void CategoryLogitMoments(const KernelScale& scale, std::span<const float> measures,
                          const EvaluatedRows& evaluated, std::span<const std::int16_t> categories,
                          const LogitRows& rows, VectorWidth width = ChosenVectorWidth());
// The same for observations on scales that differ in their steps alone; `scale` is any of them.
void CategoryLogitMoments(const KernelScale& scale, const LaneSteps& steps,
                          std::span<const float> measures, const EvaluatedRows& evaluated,
                          std::span<const std::int16_t> categories, const LogitRows& rows,
                          VectorWidth width = ChosenVectorWidth());
// `probability` as for AddExpectedCounts.
LogitMoments CategoryLogitMoments(const KernelScale& scale, float measure, const float* probability,
                                  std::size_t stride, std::int16_t observed);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_MOMENTS_H
