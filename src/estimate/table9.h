// Table 9: the report of the iterations of a bias analysis.
//
// One line for each iteration, in the frame of Table 3: the largest score residual of a term, what
// part of the term's largest score it is, the largest change of a bias, and how many terms still
// move.  `Write=Yes` and T3onscreen= act as in Table 3.
//
// Tested by tests/unit/estimate/bias_test.cpp.
#ifndef FLANKS_ESTIMATE_TABLE9_H
#define FLANKS_ESTIMATE_TABLE9_H

#include <string>

#include "run/console.h"
#include "run/estimates.h"

namespace flanks {

// EstimationPhase of a bias analysis.
constexpr std::int32_t kPhaseBias = 4;

// `number`: of the interaction, from 1 on.
void WriteTable9Head(Console& console, int number);
void ReportBiasIteration(Console& console, const IterationState& iteration,
                         std::int32_t BiasMoving);
void WriteTable9Foot(Console& console);

// The line itself, for the tests.
std::string BiasIterationDetail(const IterationState& iteration, std::int32_t BiasMoving);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_TABLE9_H
