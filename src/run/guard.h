// Guarded: turns an unexpected exception of a step into FailureStop, at the head of the step and
// nowhere else.  ProcessEnd passes through.
#ifndef FLANKS_RUN_GUARD_H
#define FLANKS_RUN_GUARD_H

#include <exception>
#include <new>
#include <string>

#include "run/run.h"

namespace flanks {

// Runs `procedure(run)`.  A ProgramFault's text is shown as it is; any other exception becomes
// "NAME failed at PLACE: WORDS".
void Guarded(const char* name, Run& run, void (*procedure)(Run&));

}  // namespace flanks

#endif  // FLANKS_RUN_GUARD_H
