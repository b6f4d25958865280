// The iteration loop: PROX, then JMLE, until the convergence rule holds.
//
// One iteration is a pass over all observations followed by the steps of the thresholds and of each
// Flank.  A change of any element's status asks for a recount: the next pass rebuilds raw scores,
// counts and category counts, and the sequence PROX, JMLE begins again without resetting the
// iteration number.  Ctrl+F ends the loop at the next clean state, the limit of `Iterations=` and
// the convergence rule likewise; the last values stand.
//
// Tested by tests/unit/estimate/iteration_test.cpp and, for the numbers, tests/checks/.
#ifndef FLANKS_ESTIMATE_ITERATION_H
#define FLANKS_ESTIMATE_ITERATION_H

#include "run/run.h"

namespace flanks {

// Steps of the run.  The first sets all elements and scales to their start.
void PrepareEstimates(Run& run);

// Iterates to the end.  Writes Table 3.  Faults: allExtreme.
void Iterate(Run& run);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_ITERATION_H
