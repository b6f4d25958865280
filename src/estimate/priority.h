// Levels of estimation: Flanks of a lower level are estimated first, and their levels' thresholds
// stay as they are.
//
// Every Flank has priority 0, so there is one level, of all Flanks: nothing in a Specification sets
// another.
//
// Tested by tests/unit/estimate/priority_test.cpp.
#ifndef FLANKS_ESTIMATE_PRIORITY_H
#define FLANKS_ESTIMATE_PRIORITY_H

#include <cstdint>

#include "base/column.h"
#include "run/design.h"

namespace flanks {

constexpr std::int32_t kBeforeFirstLevel = -2;
constexpr std::int32_t kNoMoreLevels = -1;

// The level after `level`: the smallest priority above it (above 0 at the start) of a Flank with
// elements.  Without any, the first level is 0, and after that there are no more.
std::int32_t NextPriority(std::int32_t level, const Column<FlankNo, std::int32_t>& priorities,
                          const Column<FlankNo, std::int32_t>& elementCounts);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_PRIORITY_H
