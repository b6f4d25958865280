// The names of the output files, settled once the Specification has been read.
//
// Nobody named the report: it is the Specification's name with ".out.txt" in place of its last
// extension.  An output file may replace neither the Specification with its include files nor the
// data with theirs nor another output file; what counts is the file that is written, s.xlsx where
// s.xls was asked for.
//
// The Residual, Anchor and Graph files are opened for a moment, so that a user hears at once of one
// that cannot be written.  Nothing changes on disk: what stands in a file stays, and a file that
// was not there is removed again, so that no empty file is left by a run that ends early.
//
// Tested by tests/unit/spec/output_names_test.cpp.
#ifndef FLANKS_SPEC_OUTPUT_NAMES_H
#define FLANKS_SPEC_OUTPUT_NAMES_H

#include "run/run.h"

namespace flanks {

// Step, before the report is opened.  Fault: incompatibleFileUse, with the name.
void SettleOutputNames(Run& run);

// Step, behind the report.  The name of a file that cannot be opened is cleared, and the run goes
// on; its exit status will be 1.  The same holds for a Graph file in the form of SPSS, which there
// is not.
void OpenFurtherOutputFiles(Run& run);

}  // namespace flanks

#endif  // FLANKS_SPEC_OUTPUT_NAMES_H
