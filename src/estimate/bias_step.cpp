#include "estimate/bias_step.h"

#include <algorithm>
#include <cmath>

#include "base/held_single.h"
#include "base/single.h"

namespace flanks {
namespace {

constexpr float kLargestScoreLimit = 0.01f;
constexpr float kLargestLogitLimit = 0.001f;
constexpr float kDefaultAdjustment = 0.5f;
constexpr double kSmallestVariance = 1.0;
constexpr float kFarthestReach = 100.0f;  // last moves
constexpr std::int32_t kLargestIteration = 32767;

float LimitOf(float given, float largest) {
  return given > 0.0f ? MinSingle(given, largest) : largest;
}

// BiasStatus has 16 bits.
std::int16_t StatusOfIteration(std::int32_t iteration) {
  return static_cast<std::int16_t>(std::min(iteration, kLargestIteration));
}

float HeldBias(double bias, const BiasLimits& limits) {
  const double largest = limits.largestBias;
  return Single(std::clamp(bias, -largest, largest));
}

// The log-odds of a score.
double LogOdds(double score, double maxScore, double tinyValue) {
  return std::log(std::max(score, tinyValue) / std::max(maxScore - score, tinyValue));
}

// Puts the place and its expected score on the side of its residual; 0 has no side.
void StoreEnd(float residual, float bias, float expected, BiasBracket& bracket) {
  if (residual > 0.0f) {
    bracket.LowBias = bias;
    bracket.LowExpected = expected;
  } else if (residual < 0.0f) {
    bracket.HighBias = bias;
    bracket.HighExpected = expected;
  }
}

bool IsMoving(float step, float residual, const BiasLimits& limits) {
  return std::abs(step) > limits.logit &&
         (std::abs(residual) > limits.score || limits.score <= 0.0f);
}

// A score without a bias of its own is moved inside; the sums tell an extreme one, for their cuts
// may be equal where they are not.
void SettleScore(const BiasFirstSums& sums, float extremeAdjustment, BiasTermState term) {
  const float weight = sums.SmallestWeight;
  float adjustment = HeldSingle(static_cast<double>(extremeAdjustment) * weight);
  if (adjustment == 0.0f) adjustment = HeldSingle(static_cast<double>(kDefaultAdjustment) * weight);
  if (sums.ObservedScore == 0.0) {
    term.scores.ObservedScore = adjustment;
    term.state.BiasStatus = kBiasMinimum;
  } else if (sums.ObservedScore == sums.MaxScore) {
    term.scores.ObservedScore = HeldSingle(sums.MaxScore - adjustment);
    term.state.BiasStatus = kBiasMaximum;
  }
}

float ResidualOf(float observed, float expected) {
  return HeldSingle(static_cast<double>(observed) - expected);
}

float FractionOf(float residual, const BiasScores& scores) {
  if (!(scores.ObservedScore > 0.0f)) return 0.0f;
  return Single(static_cast<double>(residual) / scores.MaxScore);
}

// False position from the low end, the high end, or none.
double FalsePosition(float expected, const BiasLimits& limits, const BiasTermState& term) {
  const BiasBracket& bracket = term.bracket;
  const double tiny = limits.tinyValue;
  const auto x = [&](double score) { return LogOdds(score, term.scores.MaxScore, tiny); };
  const double b = term.state.Bias;
  const double xr = x(term.scores.ObservedScore), xe = x(expected);
  const double xl = x(bracket.LowExpected), xh = x(bracket.HighExpected);
  const bool lowStands = bracket.LowExpected > 0.0f, highStands = bracket.HighExpected > 0.0f;
  if (!lowStands && !highStands) return b;
  const bool lowIsNearer = std::abs(xe - xl) <= std::abs(xh - xe);
  if (lowStands && (!highStands || lowIsNearer))
    return bracket.LowBias + (b - bracket.LowBias) * (xr - xl) / std::max(xe - xl, tiny);
  return bracket.HighBias - (bracket.HighBias - b) * (xh - xr) / std::max(xh - xe, tiny);
}

// How far the bias is from the end that false position starts from: its last move, as a rule.
float ReachOf(float bias, const BiasBracket& former) {
  const float low = former.LowExpected > 0.0f ? std::abs(bias - former.LowBias) : 0.0f;
  const float high = former.HighExpected > 0.0f ? std::abs(former.HighBias - bias) : 0.0f;
  return MaxSingle(low, high);
}

// The new bias; stores the place of the pass in the bracket.
float NextBias(float residual, float expected, const BiasLimits& limits, BiasTermState term) {
  const float b = term.state.Bias;
  if (residual == 0.0f) return b;
  BiasBracket& bracket = term.bracket;
  const float reach = ReachOf(b, bracket);
  float next = HeldBias(FalsePosition(expected, limits, term), limits);
  if (residual > 0.0f) next = MaxSingle(next, b);
  if (residual < 0.0f) next = MinSingle(next, b);
  StoreEnd(residual, b, expected, bracket);
  const bool bothStand = bracket.LowExpected > 0.0f && bracket.HighExpected > 0.0f;
  const bool isOutside = bothStand && !(bracket.LowBias < next && next < bracket.HighBias);
  if (std::abs(residual) <= limits.score) {
    // Near its score a term has expectations that differ by their last bits alone, and false
    // position may lead anywhere.
    return isOutside || std::abs(next - b) > kFarthestReach * reach ? b : next;
  }
  const bool standsStill = bothStand && std::abs(next - b) < limits.logit;
  if (!isOutside && !standsStill) return next;
  return Single((static_cast<double>(bracket.LowBias) + bracket.HighBias) / 2.0);
}

}  // namespace

BiasLimits BiasLimitsOf(const std::array<float, 4>& convergence, float exponentLimit,
                        float tinyValue) {
  return {LimitOf(convergence[0], kLargestScoreLimit), LimitOf(convergence[1], kLargestLogitLimit),
          exponentLimit, tinyValue};
}

BiasStep FirstBiasStep(const BiasFirstSums& sums, float extremeAdjustment, const BiasLimits& limits,
                       std::int32_t iteration, BiasTermState term) {
  BiasScores& scores = term.scores;
  const float expected = HeldSingle(sums.ExpectedSum);
  scores.ObservedScore = HeldSingle(sums.ObservedScore);
  scores.MaxScore = HeldSingle(sums.MaxScore);
  scores.RawScore = HeldSingle(sums.RawScore);
  scores.Count = HeldSingle(sums.Count);
  scores.SmallestWeight = sums.SmallestWeight;
  scores.ExpectedRaw = HeldSingle(sums.ExpectedSum + sums.RawScore - sums.ObservedScore);
  term.state.BiasStatus = kBiasNotEstimable;
  if (!(scores.MaxScore > 0.0f)) return {};
  term.state.BiasStatus = kBiasVisited;
  SettleScore(sums, extremeAdjustment, term);

  BiasStep step;
  step.residual = ResidualOf(scores.ObservedScore, expected);
  step.fraction = FractionOf(step.residual, scores);
  const double variance = std::max(sums.Information, kSmallestVariance);
  const float next = HeldBias(step.residual / variance, limits);
  step.step = next;
  step.moving = IsMoving(step.step, step.residual, limits);
  if (term.state.BiasStatus == kBiasVisited) term.state.BiasStatus = StatusOfIteration(iteration);
  term.bracket = {};
  StoreEnd(step.residual, 0.0f, expected, term.bracket);
  term.state.Bias = next;
  return step;
}

BiasStep NextBiasStep(const BiasLimits& limits, std::int32_t iteration, BiasTermState term) {
  if (term.state.BiasStatus == kBiasNotEstimable) return {};
  const float expected = HeldSingle(term.state.ExpectedSum);
  BiasStep step;
  step.residual = ResidualOf(term.scores.ObservedScore, expected);
  step.fraction = FractionOf(step.residual, term.scores);
  const float next = NextBias(step.residual, expected, limits, term);
  step.step = Single(static_cast<double>(next) - term.state.Bias);
  step.moving = IsMoving(step.step, step.residual, limits);
  if (step.moving && term.state.BiasStatus > 0)
    term.state.BiasStatus = StatusOfIteration(iteration);
  term.state.Bias = next;
  return step;
}

}  // namespace flanks
