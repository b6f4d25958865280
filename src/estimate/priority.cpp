#include "estimate/priority.h"

#include <algorithm>

namespace flanks {

std::int32_t NextPriority(std::int32_t level, const Column<FlankNo, std::int32_t>& priorities,
                          const Column<FlankNo, std::int32_t>& elementCounts) {
  const bool first = level == kBeforeFirstLevel;
  const std::int32_t above = std::max(level, std::int32_t{0});
  std::int32_t next = kNoMoreLevels;
  for (FlankNo flank : Upward(priorities)) {
    const std::int32_t priority = priorities[flank];
    if (elementCounts[flank] == 0 || priority <= above) continue;
    if (next == kNoMoreLevels || priority < next) next = priority;
  }
  return next == kNoMoreLevels && first ? 0 : next;
}

}  // namespace flanks
