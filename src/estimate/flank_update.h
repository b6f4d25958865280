// The update of one Flank after a pass: status changes, means, steps, the range guard.
//
// Two sweeps over the Flank's elements.  The first takes the step of each element, settles its
// status (extreme, dropped, held, in play; any change asks for a recount) and sums, for the groups,
// the pre-anchored set and the centered set, where their members would go.  From the means of these
// sets comes what is taken off each step; the second sweep applies it.  A centered Flank's free
// elements so stay centered on zero; a group keeps its mean; anchored sets take half the drift.
// At last the elements that have a target take its measure.
//
// Tested by tests/unit/estimate/flank_update_test.cpp.
#ifndef FLANKS_ESTIMATE_FLANK_UPDATE_H
#define FLANKS_ESTIMATE_FLANK_UPDATE_H

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "estimate/element_step.h"
#include "run/design.h"
#include "run/estimates.h"

namespace flanks {

// The step of each element of the Flank at work, taken once and used in both sweeps; sized once to
// the largest Flank.
using FlankSteps = std::vector<StepResult>;

// Measures of a Flank in logits, for the summary line of the iteration report.
struct FlankSummary {
  std::int64_t count = 0;
  double mean = 0.0;
  double squares = 0.0;  // sum of squared deviations from the mean

  void add(double measure) {
    ++count;
    const double deviation = measure - mean;
    mean += deviation / static_cast<double>(count);
    squares += deviation * (measure - mean);
  }
  // Population form; 0 when empty.
  double standardDeviation() const {
    return count > 0 ? std::sqrt(squares / static_cast<double>(count)) : 0.0;
  }
};

struct FlankUpdate {
  FlankSummary summary;
  bool endProx = false;    // the range guard spoke in PROX
  ElementSlot outOfRange;  // the first element that was held at the limit; slot 0 for none
};

// What the update of a Flank reads beside the estimates.
struct FlankUpdateInput {
  const Design& design;
  FlankNo flank;
  StepControl control;  // of this iteration
  bool firstPass = false;
};

// Updates measures and status of the Flank's elements; writes its letter in the Flank string, the
// free-parameter count, RecountRequired and the largest changes of `estimates.iteration`.
FlankUpdate UpdateFlank(const FlankUpdateInput& input, Estimates& estimates, FlankSteps& steps);

// Before the first iteration: "U" for each floating Flank without an anchored element.
std::string FirstFlankString(const Design& design);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_FLANK_UPDATE_H
