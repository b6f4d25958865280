// The step of the discrimination of a binomial-trials or Poisson scale.
//
// The slope of the log-likelihood over the discrimination c is the expected less the observed sum
// of the terms of estimate/count_terms.h, and its curvature is the variance of the terms, so a
// Newton step is r / variance with r = observed less expected, taken off c.  An estimated
// discrimination is one free parameter.
//
// Tested by tests/unit/estimate/discrimination_step_test.cpp.
#ifndef FLANKS_ESTIMATE_DISCRIMINATION_STEP_H
#define FLANKS_ESTIMATE_DISCRIMINATION_STEP_H

#include "run/estimates.h"
#include "run/scale_tables.h"

namespace flanks {

// Whether the scale has a discrimination that is estimated: binomial or Poisson, a top category of
// at least 2, and not anchored (a flag at category 0).
bool EstimatesDiscrimination(const ScaleTables& scales, ScaleRow scale);

// One JMLE step of such a scale, made shorter by tenths until it is at most 0.1.  Competes for the
// largest logit change, with the step, and for the largest category residual, with r.
void DiscriminationStep(ScaleRow scale, float tinyValue, ScaleTables& scales,
                        LargestChanges& changes);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_DISCRIMINATION_STEP_H
