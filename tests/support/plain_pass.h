// The pass of JMLE as its formulas stand: one observation at a time through one probability array,
// each rule tested for each observation, nothing looked up beforehand.  It judges the bits of the
// program's pass.
#ifndef FLANKS_TESTS_SUPPORT_PLAIN_PASS_H
#define FLANKS_TESTS_SUPPORT_PLAIN_PASS_H

#include "support/pass_design.h"

namespace flanks {

// Adds to the elements' and the scales' sums, which the caller has cleared, and cuts Information.
void PlainJmlePass(PassDesign& d, float newtonStep);

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_PLAIN_PASS_H
