// Table 6: the vertical rulers, the map of a run on one page.
//
//   WriteTable6        Table 6.0, then Table 6.0.0 and a ruler for each disjoint subset, where
//                      `Subsets=` asks for them, then the Flank summaries
//   TellSubsets        the line that stands in their place
//
// The step also finds the range of the measures, which the graphs start from.
//
// Tested by tests/unit/report/table6_test.cpp, tests/properties/report/table6_test.cpp and the
// golden reports.
#ifndef FLANKS_REPORT_TABLE6_H
#define FLANKS_REPORT_TABLE6_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "report/table6_layout.h"
#include "run/run.h"

namespace flanks {

// Writes one ruler.  `subset` 0: all elements, Table 6.0; otherwise the number of a disjoint
// subset, whose elements `members` holds, ascending.
void VerticalRulers(Run& run, std::string_view vertical, std::string_view yardstick,
                    std::int32_t subset = 0, const std::vector<ElementSlot>& members = {});

void WriteTable6(Run& run);

// "There are 2 disconnected subsets identified in Table 7.", unless Table 6 has a ruler for each.
void TellSubsets(Run& run);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE6_H
