// Which analysis a text file belongs to, told in a comment of the file.
//
// Tested by tests/unit/output/anchor_file_test.cpp and tests/unit/output/simulate_test.cpp.
#ifndef FLANKS_OUTPUT_FILE_MARK_H
#define FLANKS_OUTPUT_FILE_MARK_H

#include <string>

namespace flanks {

// "Flanks (Many-Flank Rasch Measurement) Version 1.2.3  2025-01-31 12:00", by the local clock.
std::string ProgramAndDate();

}  // namespace flanks

#endif  // FLANKS_OUTPUT_FILE_MARK_H
