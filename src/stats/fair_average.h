// Fair averages: the score that an element would have had against an average set of the other
// Flanks' elements (`Fair=M`), or against elements at zero (`Fair=Z`).
//
// An observed average depends on whom the element happened to meet.  The fair average puts all
// elements of a Flank on one footing, in the score units of the scale: for each observation of the
// element the expected score is taken at the element's own measure plus the means of the other
// Flanks, and the fair average is the weighted mean of these over the element's observations.
//
// FlankMeans is called once before the fit pass; the pass (stats/fit_pass.h) takes the expected
// scores and sums them; FairAverage reads the finished sum.
//
// Tested by tests/unit/stats/fair_average_test.cpp.
#ifndef FLANKS_STATS_FAIR_AVERAGE_H
#define FLANKS_STATS_FAIR_AVERAGE_H

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

// One position of an observation, with an element.
struct FairPosition {
  float SlotMeasure = 0.0f;  // signed: as it stands in the measure sum
  float FlankMean = 0.0f;    // of the position's Flank, not signed
  bool adds = true;          // the position adds its element to the measure sum
};

// The measure at which each position's fair score is expected, in the order of `positions`; all of
// an observation's positions that enter its measure sum, the last first.
void FairMeasures(std::span<const FairPosition> positions, FairKind kind,
                  std::span<float> measures);

// The fair average of an element, in scored categories; 0 without observations.
[[nodiscard]] double FairAverage(const Estimates& estimates, ElementSlot slot);

}  // namespace flanks

#endif  // FLANKS_STATS_FAIR_AVERAGE_H
