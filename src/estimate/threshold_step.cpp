#include "estimate/threshold_step.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/held_single.h"
#include "estimate/element_step.h"

namespace flanks {
namespace {

// Observed and expected weighted counts of one category.
struct CategoryCounts {
  double observed = 0.0;
  double expected = 0.0;
};

using Projected = std::array<float, kCategories>;

// ln of the observed ratio below : above less ln of the expected one.
double Jump(const CategoryCounts& below, const CategoryCounts& above, float tiny) {
  return FlooredLog(below.observed, tiny) - FlooredLog(above.observed, tiny) +
         FlooredLog(above.expected, tiny) - FlooredLog(below.expected, tiny);
}

// T(k) for k from 1 to the top category: where each threshold would move.
Projected ProjectThresholds(ScaleRow scale, float speedFactor, float tiny,
                            const ScaleTables& scales) {
  Projected projected{};
  const int top = scales.ScaleTopCategory[scale];
  CategoryCounts previous{scales.ObservedCount.at(scale, 0), scales.ExpectedCount.at(scale, 0)};
  CategoryCounts base = previous;
  int gap = 0;
  for (int k = 1; k <= top; ++k) {
    const CategoryCounts here{scales.ObservedCount.at(scale, k), scales.ExpectedCount.at(scale, k)};
    const double threshold = scales.ThresholdTable.at(scale, k);
    double moved = threshold;
    if (previous.observed > 0.0 && here.observed > 0.0) {
      moved = threshold + speedFactor * Jump(previous, here, tiny);
    } else if (previous.observed > 0.0) {
      gap = 1;
      base = previous;
    } else if (here.observed > 0.0) {
      // An anchored category keeps its place without observations.  Where such stand lowest, a gap
      // has no base below it, and the threshold holds.
      if (base.observed > 0.0)
        moved = threshold + speedFactor * Jump(base, here, tiny) / std::max(gap, 1);
    } else {
      ++gap;
    }
    projected[static_cast<std::size_t>(k)] = Single(moved);
    previous = here;
  }
  return projected;
}

bool HasAnchor(ScaleRow scale, const ScaleTables& scales) {
  for (int k = 1; k <= scales.ScaleTopCategory[scale]; ++k)
    if (scales.CategoryFlag.at(scale, k) == kCategoryAnchored) return true;
  return false;
}

// What is taken off every free threshold: the mean of the projected ones, or the mean move of the
// anchored ones.
double CenteringMean(ScaleRow scale, const Projected& projected, const ScaleTables& scales) {
  const bool anchored = HasAnchor(scale, scales);
  double sum = 0.0;
  int count = 0;
  for (int k = 1; k <= scales.ScaleTopCategory[scale]; ++k) {
    if (anchored && scales.CategoryFlag.at(scale, k) != kCategoryAnchored) continue;
    sum += projected[static_cast<std::size_t>(k)];
    if (anchored) sum -= scales.ThresholdTable.at(scale, k);
    ++count;
  }
  return count > 0 ? sum / count : 0.0;
}

// Category k's change and residual compete; the first largest stays.
void Compete(ScaleRow scale, int k, const ScaleTables& scales, LargestChanges& changes) {
  if (k >= 1 && scales.CategoryFlag.at(scale, k) == kCategoryFree) {
    const float change = Single(static_cast<double>(scales.ThresholdTable.at(scale, k)) -
                                scales.PreviousThreshold.at(scale, k));
    if (std::abs(change) > std::abs(changes.MaxThresholdChange)) {
      changes.MaxThresholdChange = change;
      changes.thresholdScale = scale;
      changes.thresholdCategory = k;
    }
  }
  const double observed = scales.ObservedCount.at(scale, k);
  const double residual = observed - scales.ExpectedCount.at(scale, k);
  if (std::abs(residual) > std::abs(changes.MaxCategoryResidual)) {
    changes.MaxCategoryResidual = residual;
    changes.categoryScale = scale;
    changes.residualCategory = k;
  }
  const float fraction = observed > 0.0 ? HeldSingle(residual / observed) : 0.0f;
  if (std::abs(fraction) > std::abs(changes.MaxCategoryFraction))
    changes.MaxCategoryFraction = fraction;
}

}  // namespace

void ThresholdStep(ScaleRow scale, float speedFactor, float tinyValue, ScaleTables& scales,
                   LargestChanges& changes) {
  const Projected projected = ProjectThresholds(scale, speedFactor, tinyValue, scales);
  const double mean = CenteringMean(scale, projected, scales);
  const int top = scales.ScaleTopCategory[scale];
  for (int k = 1; k <= top; ++k) {
    float& threshold = scales.ThresholdTable.at(scale, k);
    scales.PreviousThreshold.at(scale, k) = threshold;
    if (scales.CategoryFlag.at(scale, k) == kCategoryFree)
      threshold = Single(projected[static_cast<std::size_t>(k)] - mean);
  }
  for (int k = 0; k <= top; ++k) Compete(scale, k, scales, changes);
}

void HoldThresholds(ScaleRow scale, ScaleTables& scales) {
  for (int k = 0; k <= scales.ScaleTopCategory[scale]; ++k)
    scales.PreviousThreshold.at(scale, k) = scales.ThresholdTable.at(scale, k);
}

}  // namespace flanks
