// A design that has only what the work files look at: Flanks with so many elements each, one
// active position for each Flank, in order.
#ifndef FLANKS_TESTS_SUPPORT_WORK_FILE_DESIGN_H
#define FLANKS_TESTS_SUPPORT_WORK_FILE_DESIGN_H

#include <cstdint>
#include <vector>

#include "run/design.h"

namespace flanks {

inline Design WorkFileDesign(const std::vector<std::int32_t>& elementCounts) {
  const auto count = static_cast<std::int32_t>(elementCounts.size());
  Design design;
  design.FlankCount = design.ModelFlankCount = count;
  design.flanks.FlankElementCount = Column<FlankNo, std::int32_t>(count);
  design.flanks.FlankFirstSlot = Column<FlankNo, ElementSlot>(count);
  design.maps.ModelFlank = Column<Position, FlankNo>(count);
  std::int32_t slot = 1;
  for (std::int32_t f = 1; f <= count; ++f) {
    const std::int32_t elements = elementCounts[static_cast<std::size_t>(f - 1)];
    design.flanks.FlankElementCount[FlankNo(f)] = elements;
    design.flanks.FlankFirstSlot[FlankNo(f)] = ElementSlot(slot);
    design.maps.ModelFlank[Position(f)] = FlankNo(f);
    slot += elements;
  }
  design.ElementTotal = slot - 1;
  return design;
}

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_WORK_FILE_DESIGN_H
