// The anchor file: a Specification that repeats the analysis with every measure and every threshold
// at its estimate.
//
// It is the Specification of the run, read again with its include files, without comments and
// without the lines of `Umean=`, `Models=`, rating scales, `Labels=` and `Dvalues=`: these are
// written anew behind the rest, measures and thresholds in user units.  Data that stand in the
// Specification come last.  `Output=` and `Anchorfile=` come back behind ";", so that a run of the
// file does not write over the files of this one.
//
// The same writer makes a Specification with every setting at its present value.
//
// Tested by tests/unit/output/anchor_file_test.cpp and tests/properties/anchor_file_test.cpp.
#ifndef FLANKS_OUTPUT_ANCHOR_FILE_H
#define FLANKS_OUTPUT_ANCHOR_FILE_H

#include <string>

#include "output/destination.h"
#include "run/run.h"

namespace flanks {

struct AnchorOptions {
  char AnchorMark = 'A';       // 'A': anchored; ' ': values to start with
  char IncludeData = 'A';      // 'A': with the data of the Specification; otherwise a line "Data="
  char CurrentSettings = ' ';  // 'C': every setting with its value, no line of the Specification
};

// The lines of the file.  A Specification that cannot be read again throws a std::runtime_error.
void WriteAnchorLines(Run& run, const AnchorOptions& options, Destination& out);

// The file `name`, from a finished analysis.  False when it was not written.
bool WriteAnchorFile(Run& run, const std::string& name, const AnchorOptions& options);

// Step: the file of `Anchorfile=`.
void WriteAnchorFile(Run& run);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_ANCHOR_FILE_H
