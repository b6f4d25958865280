// What the check of connectivity found: which elements stand in which disjoint subset.
//
// Measures of two elements of a Flank can be compared when the data connect them.  Where the data
// fall into subsets that nothing connects, each element that they join has the numbers of its
// subsets here: as a rule one, and more for an element that several subsets share without being
// connected by it (common items of raters who have no examinee in common).  Elements that stand at
// given measures, and those that the data tie to them, are in no subset.
//
// Empty as long as the check has not found two subsets: connected data, a check that was bypassed
// or skipped, data not yet looked at.
//
// Filled by estimate/subsets; read by every report and file that names subsets.
// Tested by tests/unit/estimate/subsets_test.cpp.
#ifndef FLANKS_RUN_DISJOINT_SUBSETS_H
#define FLANKS_RUN_DISJOINT_SUBSETS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/column.h"
#include "run/design.h"

namespace flanks {

struct DisjointSubsets {
  std::int32_t SubsetCount = 0;  // subsets are numbered 1 to SubsetCount, by their first elements
  // The numbers of slot e: numbers[begin[e]] to numbers[begin[e + 1] - 1], ascending.
  Column<ElementSlot, std::uint32_t> begin;  // one row more than there are elements
  std::vector<std::int32_t> numbers;

  bool several() const { return SubsetCount >= 2; }
  // The subsets of an element, ascending; none where there are not several.
  std::span<const std::int32_t> Of(ElementSlot slot) const {
    if (!several()) return {};
    return std::span(numbers).subspan(begin[slot], begin[slot + 1] - begin[slot]);
  }
};

}  // namespace flanks

#endif  // FLANKS_RUN_DISJOINT_SUBSETS_H
