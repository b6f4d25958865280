// Fair averages: the score that an element would have had against an average set of the other
// Flanks' elements (`Fair=M`), or against elements at zero (`Fair=Z`).
//
// An observed average depends on whom the element happened to meet.  The fair average puts all
// elements of a Flank on one footing, in the score units of the scale: for each observation of the
// element the expected score is taken at the element's own measure plus the means of the other
// Flanks, and the fair average is the weighted mean of these over the element's observations.
//
// FlankMeans is called once before the fit pass; the pass (stats/fit_pass.h) takes the expected
// scores at FairMeasures and sums them; FairAverage reads the finished sum.
//
// Tested by tests/unit/stats/fair_average_test.cpp.
#ifndef FLANKS_STATS_FAIR_AVERAGE_H
#define FLANKS_STATS_FAIR_AVERAGE_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "run/design.h"
#include "run/estimates.h"

namespace flanks {

enum class FairKind : std::uint8_t {
  mean,  // the other Flanks at the mean of their elements in play
  zero,  // the other Flanks at zero
};

// Fills `estimates.FlankMean`: the mean measure, in logits, of the elements of each Flank that are
// in play, anchored or free; 0 for a Flank without any.  Extreme elements do not count.
void FlankMeans(const Design& design, Estimates& estimates);

// One position of an observation that enters its measure sum.
struct FairPosition {
  float SlotMeasure = 0.0f;  // signed: as it stands in the measure sum
  float signedMean = 0.0f;   // the mean of the position's Flank with the same sign; 0 for Fair=Z
};

// The measures at which the fair scores of the positions are expected, in the order of `positions`:
// all positions of an observation, the last first.  In the innermost loop, so inline.
inline void FairMeasures(std::span<const FairPosition> positions, std::span<float> measures) {
  // One level for all, from which each position takes its own mean again.
  float FairLevel = 0.0f;
  for (const FairPosition& position : positions) FairLevel += position.signedMean;
  for (std::size_t j = 0; j < positions.size(); ++j) {
    const float SlotMeasure = positions[j].SlotMeasure - positions[j].signedMean;
    measures[j] = FairLevel + SlotMeasure;
  }
}

// The fair average of an element, in scored categories; 0 without observations.
[[nodiscard]] double FairAverage(const Estimates& estimates, ElementSlot slot);

}  // namespace flanks

#endif  // FLANKS_STATS_FAIR_AVERAGE_H
