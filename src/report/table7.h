// Table 7: the measurement report, the main result of a run.
//
// For each Flank one box for each order of `Arrange=` that applies to it: a row for each element,
// the foot block of means and S.D.s, separation statistics and chi-squared tests.  A Flank with
// element groups has such boxes for all of its elements (L in `T7LGS=`) and for each group (G), and
// behind them one that sums the groups up (S).
//
// Tested by tests/unit/report/table7_test.cpp and the golden reports.
#ifndef FLANKS_REPORT_TABLE7_H
#define FLANKS_REPORT_TABLE7_H

#include "run/run.h"

namespace flanks {

// A step of the run.
void WriteTable7(Run& run);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE7_H
