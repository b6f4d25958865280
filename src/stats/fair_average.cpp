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

double FairAverage(const Estimates& estimates, ElementSlot slot) {
  const FinishedStatistics statistics(estimates, slot);
  const double count = static_cast<double>(estimates.scores[slot].Count);
  return count > 0.0 ? statistics->FairSum / count : 0.0;
}

}  // namespace flanks
