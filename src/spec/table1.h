// Table 1: the Specification as the program has understood it.
//
// The lines are in the syntax of a Specification, with comments behind ";", so that a user sees
// what a short form came to mean.  Their order is fixed, and most lines stand only when their
// setting differs from its default.  Elements are not repeated; long lists of statements and scales
// are cut.
//
// The Table reads the settings and the design.  It writes one thing back: which scales are named by
// a statement.
//
// Tested by tests/unit/spec/table1_test.cpp.
#ifndef FLANKS_SPEC_TABLE1_H
#define FLANKS_SPEC_TABLE1_H

#include <string>
#include <vector>

#include "run/design.h"
#include "run/run.h"
#include "run/settings.h"

namespace flanks {

// The blocks of the Table, line by line.
std::vector<std::string> DataBlock(const Settings& settings, const Design& design);
// Also marks the scales that a statement names.
std::vector<std::string> ModelsBlock(Design& design);
std::vector<std::string> OutputBlock(const Settings& settings);
std::vector<std::string> ConvergenceBlock(const Settings& settings);

// Step: writes the Table, and in it the messages that came before the report was open.
void WriteTable1(Run& run);

}  // namespace flanks

#endif  // FLANKS_SPEC_TABLE1_H
