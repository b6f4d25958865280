// How many parameters an analysis has estimated, for the data summary.
//
// Tested by tests/unit/estimate/free_parameters_test.cpp.
#ifndef FLANKS_ESTIMATE_FREE_PARAMETERS_H
#define FLANKS_ESTIMATE_FREE_PARAMETERS_H

#include <cstdint>

#include "run/estimates.h"
#include "run/scale_tables.h"

namespace flanks {

// FreeParameterCount of the last iteration (active elements less one for each constraint, and the
// free discriminations), and the free thresholds of each rating scale with more than two
// categories: one less where none is anchored, since their mean is 0 then.
std::int32_t FreeParametersOf(const IterationState& iteration, const ScaleTables& scales);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_FREE_PARAMETERS_H
