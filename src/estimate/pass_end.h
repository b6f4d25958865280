// The end of a pass: its 64-bit sums are looked at and cut to the width of their fields.
//
// Tested by tests/unit/estimate/jmle_pass_test.cpp.
#ifndef FLANKS_ESTIMATE_PASS_END_H
#define FLANKS_ESTIMATE_PASS_END_H

#include "run/estimates.h"

namespace flanks {

// Cuts each element's Information to 32 bits; the expected scores stay 64-bit.  Throws
// std::overflow_error when a sum is not finite, which no measure and no threshold of ours can
// cause.
void CutPassSums(Estimates& estimates);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_PASS_END_H
