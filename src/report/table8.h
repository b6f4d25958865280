// Table 8: the categories of each rating scale.
//
// For each scale a block: its models and its definition; the box with a line for each category
// (counts, averages, thresholds, landmarks); for counts the discrimination below it; and by T8NBC=
// the plots.  The figures come from a pass over the observations (stats/category_pass.h) that is
// made when the Table is asked for.
//
// Tested by tests/unit/report/table8_test.cpp and the golden reports.
#ifndef FLANKS_REPORT_TABLE8_H
#define FLANKS_REPORT_TABLE8_H

#include "run/run.h"

namespace flanks {

void WriteTable8(Run& run);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE8_H
