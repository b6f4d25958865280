// What a user can do about a fault: the line that follows the fault's own.
//
// Faults whose words tell it already, and those that nothing raises, have no cure here.
// docs/messages.md has the same sentences, which tests/architecture/messages_page_test.cpp
// compares.
#ifndef FLANKS_RUN_FAULT_CURES_H
#define FLANKS_RUN_FAULT_CURES_H

#include <string_view>

#include "run/faults.h"

namespace flanks {

// One sentence; empty when there is none.
std::string_view FaultCure(Fault fault);

}  // namespace flanks

#endif  // FLANKS_RUN_FAULT_CURES_H
