// What a Specification can ask for that this version cannot do yet.
//
// Everything that `Labels=`, `Models=` and scale definitions can say is read, checked and stored in
// full; what estimation does not have is refused here, by name, once the design is complete, and
// never silently ignored.  Each feature is one row of `kNotBuilt` (not_built.cpp): to lift a
// refusal is to take its row away.
//
// Tested by tests/unit/spec/not_built_test.cpp.
#ifndef FLANKS_SPEC_NOT_BUILT_H
#define FLANKS_SPEC_NOT_BUILT_H

#include <string>

#include "run/design.h"
#include "run/faults.h"

namespace flanks {

// The first feature in use that is not built, with its place: "anchored elements (Flank 2, element
// 3): ..."; empty when there is none.
std::string FeatureNotBuilt(const Design& design);

// Makes it the pending fault, notBuiltYet.
void RefuseWhatIsNotBuilt(const Design& design, ReadState& reading);

}  // namespace flanks

#endif  // FLANKS_SPEC_NOT_BUILT_H
