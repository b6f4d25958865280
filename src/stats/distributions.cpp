#include "stats/distributions.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace flanks {
namespace {

// The error function of u >= 0.  Abramowitz and Stegun 7.1.26.
double ErrorFunction(double u) {
  const double t = 1.0 / (1.0 + 0.3275911 * u);
  const double polynomial =
      ((((1.061405429 * t - 1.453152027) * t + 1.421413741) * t - 0.284496736) * t + 0.254829592) *
      t;
  return 1.0 - polynomial * std::exp(-u * u);
}

// One tail of the normal distribution beyond x >= 0.  Abramowitz and Stegun 7.1.28.
double UpperTail(double x) {
  constexpr double kFarthest = 14.14;  // beyond it the tail is 0 to any shown digit
  constexpr double kRootHalf = 0.7071067812;
  const double t = x <= kFarthest ? x * kRootHalf : 10.0;
  const double polynomial =
      1.0 +
      t * (0.0705230784 +
           t * (0.0422820123 +
                t * (0.0092705272 + t * (0.0001520143 + t * (0.0002765672 + t * 0.0000430638)))));
  double power = polynomial;
  for (int doubling = 0; doubling < 4; ++doubling) power *= power;  // to the power 16
  return 0.5 / power;
}

// Relative distance from chi = n below which the quotient of two vanishing numbers is replaced by
// its limit.  The limit is then good to eight digits, the quotient no longer.
constexpr double kNearlyEqual = 1E-8;

// The normal deviate of a chi-squared value with at least two degrees of freedom.  Peizer-Pratt.
double PeizerPrattDeviate(double chiSquared, double degreesOfFreedom) {
  const double n = degreesOfFreedom - 1.0;
  const double correction = 0.08 / degreesOfFreedom;
  const double excess = (chiSquared - n) / n;
  if (std::abs(excess) < kNearlyEqual) {  // the limit of the formula below
    return -(correction + 1.0 / 3.0) / std::sqrt(2.0 * degreesOfFreedom - 2.0);
  }
  // n ln(n / chi) + chi - n, without the loss of digits near n.
  const double distance = std::sqrt(n * (excess - std::log1p(excess)));
  return (chiSquared - degreesOfFreedom + 2.0 / 3.0 - correction) * distance /
         std::abs(chiSquared - n);
}

// The sum of the series in powers of c, the squared cosine of the angle, behind its first term.
// Abramowitz and Stegun 26.7.3 (odd) and 26.7.4 (even degrees of freedom).
double SeriesOf(double first, double c, double from, double degreesOfFreedom) {
  double term = first, sum = first;
  for (double k = from; k <= degreesOfFreedom - 2.0; k += 2.0) {
    term *= c * (k - 1.0) / k;
    if (sum + term == sum) break;  // what follows is smaller still
    sum += term;
  }
  return sum;
}

}  // namespace

double StudentTProbability(double t, double degreesOfFreedom) {
  if (!(degreesOfFreedom >= 1.0)) return 0.0;
  constexpr double kOneOverPi = 0.3183098862;
  constexpr double kLongestSeries = 10000.0;
  const double df = std::floor(degreesOfFreedom);
  if (df > kLongestSeries) {  // as good as normal; Abramowitz and Stegun 26.7.8
    return NormalTail(t * (1.0 - 1.0 / (4.0 * df)) / std::sqrt(1.0 + t * t / (2.0 * df)));
  }
  const double angle = std::atan(std::abs(t) / std::sqrt(df));
  const double sine = std::sin(angle), cosine = std::cos(angle);
  double inside = 0.0;  // the probability of a value nearer to 0
  if (std::fmod(df, 2.0) == 0.0) {
    inside = sine * SeriesOf(1.0, cosine * cosine, 2.0, df);
  } else {
    const double sum = df > 1.0 ? sine * SeriesOf(cosine, cosine * cosine, 3.0, df) : 0.0;
    inside = 2.0 * kOneOverPi * (angle + sum);
  }
  return std::clamp(1.0 - inside, 0.0, 1.0);
}

double NormalTail(double x) {
  const double error = ErrorFunction(std::abs(x) / std::numbers::sqrt2);
  const double cumulative = (1.0 + (x < 0.0 ? -error : error)) / 2.0;
  return 1.0 - 2.0 * std::abs(0.5 - std::abs(cumulative));
}

double ChiSquareProbability(double chiSquared, double degreesOfFreedom) {
  if (degreesOfFreedom < 1.0) return 1.0;
  const double chi = std::max(chiSquared, 0.0);
  const bool oneDegree = degreesOfFreedom == 1.0;
  if (chi == 0.0 && !oneDegree) return 1.0;  // the logarithm of n / chi has no value

  const double deviate = oneDegree ? std::sqrt(chi) : PeizerPrattDeviate(chi, degreesOfFreedom);
  const double tail = UpperTail(std::abs(deviate));
  const double probability = deviate < 0.0 ? 1.0 - tail : tail;
  return oneDegree ? probability + probability : probability;
}

}  // namespace flanks
