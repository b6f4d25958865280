// The name of the report, settled once the Specification has been read.
//
// Nobody named it: it is the Specification's name with ".out.txt" in place of its last extension.
// A report may not replace the Specification or the data that it is made from.
//
// Tested by tests/unit/spec/output_names_test.cpp.
#ifndef FLANKS_SPEC_OUTPUT_NAMES_H
#define FLANKS_SPEC_OUTPUT_NAMES_H

#include "run/run.h"

namespace flanks {

// Step, before the report is opened.  Fault: incompatibleFileUse, with the name.
void SettleOutputNames(Run& run);

}  // namespace flanks

#endif  // FLANKS_SPEC_OUTPUT_NAMES_H
