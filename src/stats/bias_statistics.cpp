#include "stats/bias_statistics.h"

#include <algorithm>
#include <cmath>

#include "base/held_single.h"
#include "base/single.h"
#include "stats/distributions.h"

namespace flanks {
namespace {

constexpr float kLargestT = 99.99f;

double Square(double value) {
  return value * value;
}

std::int32_t WholeDegrees(double degrees) {
  return static_cast<std::int32_t>(std::clamp(degrees, 0.0, static_cast<double>(INT32_MAX)));
}

float HeldT(double bias, double error) {
  if (!(error > 0.0)) return 0.0f;
  const double largest = kLargestT;
  return Single(std::clamp(bias / error, -largest, largest));
}

// Satterthwaite's: of two variances, with so many responses each.  Taken from the ratio of the
// variances: where it is 1, or another number that has few binary digits, nothing is rounded before
// the last division, and a whole number of degrees comes out whole.
double WelchDegrees(double v1, double n1, double v2, double n2) {
  if (v1 > v2) return WelchDegrees(v2, n2, v1, n1);  // the same in either order of the terms
  if (n1 < 1.0 || n2 < 1.0 || !(v2 > 0.0)) return 0.0;
  const double r = v1 / v2;
  const double divisor = n1 - 1.0 + Square(r) * (n2 - 1.0);
  if (!(divisor > 0.0)) return 0.0;
  return Square(1.0 + r) * ((n1 - 1.0) * (n2 - 1.0)) / divisor;
}

}  // namespace

BiasStanding StandingOf(std::int16_t BiasStatus) {
  if (BiasStatus == kBiasMinimum) return BiasStanding::minimum;
  if (BiasStatus == kBiasMaximum) return BiasStanding::maximum;
  return BiasStatus > 0 ? BiasStanding::estimable : BiasStanding::none;
}

float BiasTerm::ResidualAverage() const {
  if (!(Count > 0.0f)) return 0.0f;
  return HeldSingle((static_cast<double>(RawScore) - ExpectedRaw) / Count);
}

BiasTerm FinishBiasTerm(const BiasState& state, const BiasScores& scores, const BiasFitSums& sums,
                        WilsonHilferty form, float tinyValue) {
  BiasTerm term;
  term.ObservedScore = scores.ObservedScore;
  term.MaxScore = scores.MaxScore;
  term.RawScore = scores.RawScore;
  term.ExpectedRaw = scores.ExpectedRaw;
  term.Count = scores.Count;
  term.standing = StandingOf(state.BiasStatus);
  if (term.standing == BiasStanding::none) return term;
  term.Bias = state.Bias;
  term.ExpectedSum = HeldSingle(sums.ExpectedSum);
  const float information = HeldSingle(sums.Information);
  const FitValue infit = ZStdOf(information, HeldSingle(sums.InfitVarianceSum),
                                HeldSingle(sums.InfitSum), form, tinyValue);
  const double kurtosis = HeldSingle(sums.KurtosisSum);
  const FitValue outfit =
      ZStdOf(term.Count, kurtosis - term.Count, HeldSingle(sums.OutfitSum), form, tinyValue);
  term.InfitMeanSquare = infit.MeanSquare;
  term.InfitZStd = infit.ZStd;
  term.OutfitMeanSquare = outfit.MeanSquare;
  term.OutfitZStd = outfit.ZStd;
  term.StandardError = StandardErrorOf(information, 1.0f, ErrorKind::model, tinyValue);
  term.t = HeldT(term.Bias, term.StandardError);
  term.DegreesOfFreedom = WholeDegrees(std::floor(static_cast<double>(term.Count)) - 1.0);
  term.Probability = Single(StudentTProbability(term.t, term.DegreesOfFreedom));
  return term;
}

BiasContrast ContrastOf(const BiasTerm& p, const BiasTerm& q) {
  const double v1 = Square(p.StandardError), v2 = Square(q.StandardError);
  BiasContrast result;
  result.contrast = Single(static_cast<double>(p.Bias) - q.Bias);
  const double jointError = std::sqrt(v1 + v2);
  result.jointError = Single(jointError);
  result.DegreesOfFreedom = WholeDegrees(WelchDegrees(v1, p.Count, v2, q.Count));
  if (!(p.StandardError > 0.0f) || !(q.StandardError > 0.0f)) return result;
  result.tested = true;
  result.t = Single((static_cast<double>(p.Bias) - q.Bias) / jointError);
  result.Probability = Single(StudentTProbability(result.t, result.DegreesOfFreedom));
  return result;
}

}  // namespace flanks
