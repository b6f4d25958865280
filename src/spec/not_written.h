// What a Specification asks for and this version does not write.
//
// Every keyword is read, checked, stored and shown in Table 1.  Where the writer of an output file
// or of a Table does not exist yet, or a Table lacks what a keyword adds to it, the user is told so
// on the screen; the run goes on, and the report says nothing.  Each such thing is one row of
// `kNotWritten` (not_written.cpp): who builds it takes its row away.
//
// Tested by tests/unit/spec/not_written_test.cpp.
#ifndef FLANKS_SPEC_NOT_WRITTEN_H
#define FLANKS_SPEC_NOT_WRITTEN_H

#include <string>
#include <vector>

#include "run/run.h"

namespace flanks {

// The lines to be shown, in the order in which a run would write the things; empty when all that
// was asked for is written.  A Table counts as asked for when its flag of `Tables=` is 1, or when
// one of its keywords, or what the Specification has for it alone, was given and its flag is not 0.
std::vector<std::string> NotWritten(const Analysis& analysis);

// Step, before the output files and the Tables: shows them.
void TellWhatIsNotWritten(Run& run);

}  // namespace flanks

#endif  // FLANKS_SPEC_NOT_WRITTEN_H
