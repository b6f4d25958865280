// The subset group-anchor file: elements of disjoint subsets as groups of `Labels=`, each anchored
// at Umean=, so that measures of different subsets can be compared.
//
// The lines of a Flank are meant to be copied into `Labels=`, in the place of the Flank's own or
// behind them.
//
// Tested by tests/unit/output/subset_file_test.cpp.
#ifndef FLANKS_OUTPUT_SUBSET_FILE_H
#define FLANKS_OUTPUT_SUBSET_FILE_H

#include <string>

#include "output/destination.h"
#include "run/run.h"

namespace flanks {

// The lines of the file, from a finished analysis whose data fall into several subsets.
void WriteSubsetLines(Run& run, Destination& out);

// The file `name`.  False when it was not written: there is none where the data are connected.
bool WriteSubsetFile(Run& run, const std::string& name);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_SUBSET_FILE_H
