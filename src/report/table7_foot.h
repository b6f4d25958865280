// The foot block of Table 7: means, S.D.s, separation and chi-squared tests.
//
// Tested by tests/unit/report/table7_foot_test.cpp.
#ifndef FLANKS_REPORT_TABLE7_FOOT_H
#define FLANKS_REPORT_TABLE7_FOOT_H

#include <string>
#include <vector>

#include "report/table7_columns.h"
#include "run/analysis.h"
#include "run/console.h"
#include "stats/separation.h"

namespace flanks {

// The rows of a Table, summed: without extreme elements and with them.
struct Table7Sets {
  MeasureSummary SummaryWithout;
  MeasureSummary SummaryWith;
  std::vector<MeasuredElement> measured;  // of SummaryWith, for the random test
};

// Adds an element's row to the sets; elements that are not measured are left out.
void AddToSets(const Analysis& analysis, ElementSlot slot, Table7Sets& sets);

// Means and S.D.s of the sets: without extreme elements, and with them when there are any.
// `group` stands in the Group column.
void WriteFootRows(Console& console, const Table7Layout& layout, const Table7Sets& sets,
                   const std::string& group = "");

// The lines below the last row, from the mid rule on.
void WriteTable7Foot(Console& console, const Analysis& analysis, const Table7Layout& layout,
                     const Table7Sets& sets);

// How often the raters agreed over the whole run; nothing for a Flank that is not theirs.
void WriteAgreement(Console& console, const Analysis& analysis, FlankNo flank);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE7_FOOT_H
