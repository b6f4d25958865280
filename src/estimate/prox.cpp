#include "estimate/prox.h"

#include <algorithm>
#include <cmath>

#include "base/held_single.h"

namespace flanks {
namespace {

constexpr double kLogisticOverNormal = 2.89;  // 1.7 squared
constexpr double kHalfScore = 0.5;            // stands in for zero and perfect scores

}  // namespace

float ProxMeasure(const ElementState& sums, double observedScore, double maxScore,
                  std::int16_t orientation) {
  const double S = sums.ExpectedSum, Q = sums.Information, W = sums.ShiftedExpected;
  const double v = (Q - S * S / W) / (kLogisticOverNormal * W);
  const double f = v <= -1.0 ? 0.0 : std::sqrt(1.0 + v);
  const double high = std::max(maxScore - observedScore, kHalfScore);
  const double low = std::max(observedScore, kHalfScore);
  // Kept: S / W is added whatever the orientation.
  const double measure = S / W + f * std::log(low / high);
  return HeldSingle(orientation == kPositiveOrientation ? measure : -measure);
}

}  // namespace flanks
