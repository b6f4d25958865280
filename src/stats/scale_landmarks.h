// The landmarks of a rating scale along the measure: where it is expected to give each category,
// where each category becomes the most probable one, where it is passed by half of the responses.
//
// All are found by halving the interval from minus to plus the exponent limit on the probabilities
// of the measurement kernel: the expected score, the most probable category and the probability of
// a category or above all rise with the measure.  A landmark that is not within these limits is not
// there.
//
// Published as category measures and as Thurstone thresholds: B. D. Wright and G. N. Masters,
// Rating Scale Analysis, 1982, chapter 3.
//
// Tested by tests/unit/stats/scale_landmarks_test.cpp.
#ifndef FLANKS_STATS_SCALE_LANDMARKS_H
#define FLANKS_STATS_SCALE_LANDMARKS_H

#include <optional>
#include <span>
#include <vector>

#include "estimate/kernel.h"
#include "run/scale_tables.h"

namespace flanks {

// Of one ordered category k, logits.  The lowest category has an expectation only.
struct CategoryLandmarks {
  // Where the expected score is k; at the two ends, where no measure reaches it, a quarter of a
  // score short of it.
  std::optional<double> expectation;
  std::optional<double> half;          // where the expected score is k - 1/2
  std::optional<double> mostProbable;  // from here on up k is the most probable; none: it never is
  std::optional<double> thurstone;     // where k or above has the probability 1/2
  double peak = 0.0;  // the highest probability that k reaches: at `expectation`, 1 at the two ends
};

// Categories 0 to m of a scale that SetUpKernelScale has made.
std::vector<CategoryLandmarks> FindLandmarks(const KernelScale& scale);

// The lowest and the highest of them, logits; false when there is none.
bool RangeOfLandmarks(std::span<const CategoryLandmarks> landmarks, double& low, double& high);

// The kernel's scale of a row of the scale tables; its top category must be at least 1.
KernelScale KernelScaleOf(const ScaleTables& scales, ScaleRow scale, float exponentLimit);

}  // namespace flanks

#endif  // FLANKS_STATS_SCALE_LANDMARKS_H
