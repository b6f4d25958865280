// Which program and run a report or a text file comes from.
//
// Tested by tests/unit/output/anchor_file_test.cpp and tests/unit/output/simulate_test.cpp.
#ifndef FLANKS_RUN_PROGRAM_MARK_H
#define FLANKS_RUN_PROGRAM_MARK_H

#include <string>

namespace flanks {

// "Flanks (Many-Flank Rasch Measurement) Version 1.2.3  2025-01-31 12:00", by the local clock.
std::string ProgramAndDate();

}  // namespace flanks

#endif  // FLANKS_RUN_PROGRAM_MARK_H
