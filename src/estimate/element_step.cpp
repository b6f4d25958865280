#include "estimate/element_step.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "base/held_single.h"
#include "run/design.h"

namespace flanks {
namespace {

constexpr float kLongestStep = 1.0f;  // logits
constexpr float kShortening = 0.9f;

// The fixed divisor's floor of a Newton step.
constexpr double kSmallestNewtonDivisor = 1.0;

double NewtonStepOf(double residual, double information, float newtonStep) {
  return newtonStep * residual / std::max(information, kSmallestNewtonDivisor);
}

// `observed` is R', the adjusted score; `maximum` is M.
double SecantStepOf(double observed, double maximum, const ElementSums& sums,
                    const StepControl& control) {
  const float tiny = control.TinyValue;
  const double expected = sums.ExpectedSum;
  const double shifted = sums.ShiftedExpected;
  const double expectedOdds = FlooredLog(maximum - expected, tiny) - FlooredLog(expected, tiny);
  const double change =
      -expectedOdds + FlooredLog(maximum - shifted, tiny) - FlooredLog(shifted, tiny);
  if (std::abs(change) <= tiny) return 0.0;
  const double distance =
      FlooredLog(observed, tiny) - FlooredLog(maximum - observed, tiny) + expectedOdds;
  const double slope = std::min(1.0, std::abs(control.SecantDelta / change));
  return distance * 0.5 * control.SpeedFactor * slope;
}

}  // namespace

double FlooredLog(double value, float tinyValue) {
  return std::log(std::max(value, static_cast<double>(std::max(tinyValue, FLT_MIN))));
}

StepResult ElementStep(const ElementSums& sums, const StepControl& control,
                       std::int16_t orientation) {
  const double maximum = std::abs(sums.MaxScore);
  if (maximum == 0.0) return {};
  const float distance = HeldSingle(static_cast<double>(control.XtremeAdjustment) *
                                    static_cast<double>(sums.SmallestWeight));
  const double observed = std::min(std::max(sums.ObservedScore, static_cast<double>(distance)),
                                   maximum - static_cast<double>(distance));
  StepResult result;
  result.residual = observed - sums.ExpectedSum;
  result.fraction = HeldSingle(result.residual / maximum);
  double step = control.NewtonStep != 0.0f
                    ? NewtonStepOf(result.residual, sums.Information, control.NewtonStep)
                    : SecantStepOf(observed, maximum, sums, control);
  if (orientation != kPositiveOrientation) step = -step;
  result.step = std::isfinite(step) ? HeldSingle(step) : 0.0f;
  // Shortened gently, not cut at one logit: many elements with long steps keep their order.
  while (std::abs(result.step) > kLongestStep) result.step *= kShortening;
  return result;
}

}  // namespace flanks
