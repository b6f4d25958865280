// Table 5: how well the data as a whole fit, and how many responses were of each kind.
//
// Before it stands the note that Table 4 comes later.  Then a box with means and S.D.s over the
// responses that can be measured (with all elements in play, or with one extreme element); the
// chi-squared test of all of the model; a line for each kind of response; and how much of the
// variance of the scores the measures explain.
//
// Tested by tests/unit/report/table5_test.cpp and the golden reports.
#ifndef FLANKS_REPORT_TABLE5_H
#define FLANKS_REPORT_TABLE5_H

#include "run/run.h"

namespace flanks {

// A step of the run.  Makes the pass over the residuals, which also finds what Table 4 lists.
void WriteTable5(Run& run);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE5_H
