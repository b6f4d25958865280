// The bias step: each interaction that statements mark is estimated and reported in turn.
//
// In rank 9, because its reports and files stand in folders that do not see each other.
// Tested by tests/unit/report/bias_tables_test.cpp and by golden reports.
#ifndef FLANKS_RUN_PIPELINE_BIAS_H
#define FLANKS_RUN_PIPELINE_BIAS_H

#include "run/run.h"

namespace flanks {

// The last step before the closing lines.  `Bias=` omit leaves all of it out, and so does a run
// whose `Tables=` wants none of its Tables.
void AnalyzeBias(Run& run);

}  // namespace flanks

#endif  // FLANKS_RUN_PIPELINE_BIAS_H
