#include "estimate/convergence.h"

#include <algorithm>
#include <cmath>

#include "base/single.h"

namespace flanks {
namespace {

constexpr float kStandstill = 1E-6f;  // logits
constexpr std::int32_t kPatientIterations = 20;

constexpr double kProgress = 0.99;  // of the smallest value so far

constexpr float kSlowestSpeed = 0.001f;
constexpr float kFastestSpeed = 2.0f;

// A limit of 0 does not count.
bool Exceeds(double moved, double limit) {
  return limit > 0.0 && std::abs(moved) > limit;
}

bool StandsStill(const LargestChanges& changes) {
  return std::abs(changes.MaxLogitChange) < kStandstill &&
         std::abs(changes.MaxThresholdChange) < kStandstill;
}

// Early on, a category limit that is not set borrows the one for elements.
bool BorrowedLimitsExceeded(const LargestChanges& changes, const ConvergenceLimits& limits) {
  return (limits.category == 0.0f && Exceeds(changes.MaxCategoryResidual, limits.score)) ||
         (limits.threshold == 0.0f && Exceeds(changes.MaxThresholdChange, limits.logit));
}

bool SameSign(double a, double b) {
  return a * b > 0.0;
}

}  // namespace

ConvergenceLimits LimitsOf(const std::array<float, 4>& convergence) {
  return {std::abs(convergence[0]), std::abs(convergence[1]), std::abs(convergence[2]),
          std::abs(convergence[3])};
}

bool NoLimitSet(const ConvergenceLimits& limits) {
  return limits.score == 0.0f && limits.logit == 0.0f && limits.category == 0.0f &&
         limits.threshold == 0.0f;
}

bool KeepsGoing(const IterationState& iteration, const ConvergenceLimits& limits) {
  const LargestChanges& changes = iteration.changes;
  if (iteration.RecountRequired) return true;
  if (iteration.EstimationPhase < kPhaseJmle) return true;
  if (StandsStill(changes)) return false;
  if (Exceeds(changes.MaxLogitChange, limits.logit)) return true;
  if (Exceeds(changes.MaxScoreResidual, limits.score)) return true;
  if (Exceeds(changes.MaxThresholdChange, limits.threshold)) return true;
  if (Exceeds(changes.MaxCategoryResidual, limits.category)) return true;
  if (iteration.IterationNumber < kPatientIterations && BorrowedLimitsExceeded(changes, limits))
    return true;
  // Who sets no limit at all wants the tightest fit: on until nothing moves.
  return NoLimitSet(limits);
}

bool LimitReached(const IterationState& iteration, std::int32_t iterationLimit) {
  if (iteration.RecountRequired || iteration.EstimationPhase < kPhaseJmle) return false;
  return iterationLimit > 0 && iteration.IterationNumber >= iterationLimit;
}

bool ProgressWatch::Hopeless(const LargestChanges& changes) {
  const std::array<double, 4> now = {
      std::abs(changes.MaxScoreResidual), std::abs(double{changes.MaxLogitChange}),
      std::abs(double{changes.MaxThresholdChange}), std::abs(changes.MaxCategoryResidual)};
  ++sinceProgress_;
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (begun_ && now[i] >= kProgress * smallest_[i]) continue;
    smallest_[i] = now[i];
    sinceProgress_ = 0;
  }
  begun_ = true;
  return sinceProgress_ >= kPatience;
}

float NextSpeedFactor(float speedFactor, const LargestChanges& now, const LargestChanges& before) {
  const double residual = std::abs(now.MaxScoreResidual);
  const double previous = std::abs(before.MaxScoreResidual);
  const bool steady = SameSign(now.MaxLogitChange, before.MaxLogitChange) &&
                      SameSign(now.MaxScoreResidual, before.MaxScoreResidual);
  if (steady && residual <= 2.0 * previous) {
    if (residual > 0.9 * previous) speedFactor = Single(speedFactor * 1.01);
  } else {
    speedFactor = Single(speedFactor * 0.75);
  }
  return std::clamp(speedFactor, kSlowestSpeed, kFastestSpeed);
}

}  // namespace flanks
