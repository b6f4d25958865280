// Table 4: the responses that the model expects least, one row each.
//
// A subtable for each order of `Usort=`: figures of the response, the elements of its positions,
// and its place among the responses of the data.  The rows are those that the residual pass kept
// (run/unexpected_responses.h); it is made again when `Unexpected=` or `T4MAX=` have changed since.
//
// Tested by tests/unit/report/table4_test.cpp and the golden reports.
#ifndef FLANKS_REPORT_TABLE4_H
#define FLANKS_REPORT_TABLE4_H

#include "run/run.h"

namespace flanks {

// A step of the run.
void WriteTable4(Run& run);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE4_H
