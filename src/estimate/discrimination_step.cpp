#include "estimate/discrimination_step.h"

#include <cmath>

#include "base/single.h"

namespace flanks {
namespace {

constexpr double kLongestStep = 0.1;
constexpr double kShorter = 0.9;

// The Newton step, shortened.  Without curvature, as with observations that are all certain, there
// is none.
double ShortenedStep(double residual, double curvature, double tiny) {
  if (!(curvature > tiny)) return 0.0;
  double step = residual / curvature;
  if (!std::isfinite(step)) return 0.0;
  while (std::abs(step) > kLongestStep) step *= kShorter;
  return step;
}

}  // namespace

bool EstimatesDiscrimination(const ScaleTables& scales, ScaleRow scale) {
  const ScaleType type = scales.scaleType[scale];
  return (type == ScaleType::binomial || type == ScaleType::poisson) &&
         scales.ScaleTopCategory[scale] >= 2 &&
         scales.CategoryFlag.at(scale, 0) != kCategoryAnchored;
}

void DiscriminationStep(ScaleRow scale, float tinyValue, ScaleTables& scales,
                        LargestChanges& changes) {
  const double residual =
      scales.DiscriminationSums.at(scale, 0) - scales.ExpectedCount.at(scale, 0);
  const double step = ShortenedStep(residual, scales.DiscriminationSums.at(scale, 1), tinyValue);
  float& discrimination = scales.ThresholdTable.at(scale, 0);
  scales.PreviousThreshold.at(scale, 0) = discrimination;
  discrimination = Single(discrimination - step);
  if (std::abs(step) > std::abs(changes.MaxLogitChange)) {
    changes.MaxLogitChange = Single(step);
    changes.logitPlace = scales.scaleType[scale] == ScaleType::binomial ? "Bin Disc:" : "Poi Disc:";
  }
  if (std::abs(residual) > std::abs(changes.MaxCategoryResidual)) {
    changes.MaxCategoryResidual = residual;
    changes.categoryScale = scale;
    changes.residualCategory = 0;
  }
}

}  // namespace flanks
