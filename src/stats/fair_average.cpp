#include "stats/fair_average.h"

#include "base/single.h"

namespace flanks {

void FlankMeans(const Design& design, Estimates& estimates) {
  estimates.FlankMean.assign(design.FlankCount, 0.0f);
  for (const FlankNo flank : Downward(estimates.FlankMean)) {
    const SlotRange slots = SlotsOf(design.flanks, flank);
    double sum = 0.0;
    double count = 0.0;
    for (const ElementSlot slot : Downward(slots.low, slots.high)) {
      const ElementState& element = estimates.elements[slot];
      if (!IsInPlay(element.ElementStatus)) continue;
      sum += static_cast<double>(element.ElementMeasure);
      count += 1.0;
    }
    if (count > 0.0) estimates.FlankMean[flank] = Single(sum / count);
  }
}

void FairMeasures(std::span<const FairPosition> positions, FairKind kind,
                  std::span<float> measures) {
  // A level for all, the signed sum of the means, from which each position takes its own mean
  // again: so the last digit is the same whichever position comes first.
  float FairLevel = 0.0f;
  for (std::size_t j = 0; j < positions.size(); ++j) {
    const FairPosition& position = positions[j];
    const float mean = kind == FairKind::mean ? position.FlankMean : 0.0f;
    const float signedMean = position.adds ? mean : -mean;
    FairLevel += signedMean;
    measures[j] = position.SlotMeasure - signedMean;
  }
  for (std::size_t j = 0; j < positions.size(); ++j) measures[j] += FairLevel;
}

double FairAverage(const Estimates& estimates, ElementSlot slot) {
  const FinishedStatistics statistics(estimates, slot);
  const double count = static_cast<double>(estimates.scores[slot].Count);
  return count > 0.0 ? statistics->FairSum / count : 0.0;
}

}  // namespace flanks
