// The step of the thresholds of one rating scale.
//
// Each Andrich threshold moves by the log of the ratio of observed to expected frequencies of the
// two categories that it divides (Wright and Masters, Rating Scale Analysis, 1982, chapter 4, in
// proportional form).  Across a run of categories without observations the one jump from the last
// observed category below to the first observed one above is shared out.
//
// Tested by tests/unit/estimate/threshold_step_test.cpp.
#ifndef FLANKS_ESTIMATE_THRESHOLD_STEP_H
#define FLANKS_ESTIMATE_THRESHOLD_STEP_H

#include "run/estimates.h"
#include "run/scale_tables.h"

namespace flanks {

// One JMLE step of the free thresholds of a rating scale with a top category of at least 2.
// Thresholds of an unanchored scale stay centered on zero; with anchored ones the free thresholds
// move by the mean move that the anchors would have made.  Skipped and anchored categories keep
// their values.  Competes for the largest threshold change and category residual.
void ThresholdStep(ScaleRow scale, float speedFactor, float tinyValue, ScaleTables& scales,
                   LargestChanges& changes);

// Before JMLE thresholds stand still: only PreviousThreshold takes their values.
void HoldThresholds(ScaleRow scale, ScaleTables& scales);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_THRESHOLD_STEP_H
