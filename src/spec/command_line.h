// The command line: file names, Extra specifications, batch mode.
//
// It is one text.  A token with "=" is an Extra specification, the others are file names, in the
// order Specification, Output, Anchor output, Residual output, Graph output.  A token in double
// quotes may hold blanks; a file name may not.
//
//   ratings.txt report.txt "Title=Second rating" Batch=Y
//
// Extra specifications come before the Specification file and take the place of the same keyword
// there, since a keyword counts only once.
//
// Tested by tests/unit/spec/command_line_test.cpp.
#ifndef FLANKS_SPEC_COMMAND_LINE_H
#define FLANKS_SPEC_COMMAND_LINE_H

#include <string>
#include <string_view>
#include <vector>

#include "run/faults.h"
#include "run/run.h"

namespace flanks {

struct CommandLine {
  std::vector<std::string> fileNames;  // in order; an empty token is a file without a name
  std::string ExtraSpecifications;     // joined by blanks
  bool batch = false;
  Fault fault = Fault::none;  // missingQuote, extraNotSpecification
  std::string faultText;
};

CommandLine ParseCommandLine(std::string_view text);

// The specifications of a text of Extra specifications, in order.  A word with "=" begins one, the
// words behind it belong to its value.  Fault: extraNotSpecification, when the first word has none.
struct ExtraList {
  std::vector<std::string> specifications;
  Fault fault = Fault::none;
  std::string faultText;
};
ExtraList CutExtraSpecifications(std::string_view text);

// Step: reads the command line and looks for the Specification file.  No file named: nothing is
// set, and the run is to end.  Faults, named "Command line": those above, badFileName,
// fileNotFound, fileNotFoundInBatch.
void ReadCommandLine(Run& run);

// Step: applies the Extra specifications.  Faults: those of their handlers.
void ApplyExtraSpecifications(Run& run);

}  // namespace flanks

#endif  // FLANKS_SPEC_COMMAND_LINE_H
