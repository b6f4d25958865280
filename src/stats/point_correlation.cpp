#include "stats/point_correlation.h"

#include <algorithm>
#include <cmath>

#include "base/single.h"

namespace flanks {
namespace {

// Equal values have a sum of squared deviations of 0, which rounding can miss.  A sum this small
// beside the sum of squares is such a miss: measures are known to seven digits only, so a true
// spread is larger.
constexpr double kRoundingShare = 1E-12;

// The sum of squared deviations from the mean.
double Deviations(double sumOfSquares, double sum, double weight) {
  const double deviations = sumOfSquares - sum * sum / weight;
  return deviations > kRoundingShare * sumOfSquares ? deviations : 0.0;
}

float Correlation(double covariation, double product) {
  if (!(product > 0.0)) return 0.0f;
  return Single(std::clamp(covariation / std::sqrt(product), -1.0, 1.0));
}

}  // namespace

float MeasureCorrelation(const CorrelationSums& sums) {
  if (sums.W <= 0.0) return 0.0f;
  const double product = Deviations(sums.xx, sums.x, sums.W) * Deviations(sums.BB, sums.B, sums.W);
  return Correlation(sums.Bx - sums.B * sums.x / sums.W, product);
}

float ExpectedCorrelation(const CorrelationSums& sums) {
  if (sums.W <= 0.0) return 0.0f;
  const double spread = Deviations(sums.rr, sums.r, sums.W);
  const double uncertainty = std::max(sums.W - 2.0, 0.0) * sums.v / sums.W;
  const double product = (spread + uncertainty) * Deviations(sums.BB, sums.B, sums.W);
  return Correlation(sums.Br - sums.B * sums.r / sums.W, product);
}

}  // namespace flanks
