// Values of data positions that do not come from their own field: `Dvalues=`.
//
//   Dvalues = 3,1-4         position 3 holds 1-4 on every line
//             2,$L          the line number; $C: the count of data lines
//             3,2,6,2       two characters from column 6 of the text in position 2
//             3,2,$G        the group number of the element in position 2
//             *
//
// The handler keeps the entries, one for each position; the last one told holds.  `PrepareDvalues`
// looks at them again when all positions are known.
//
// Tested by tests/unit/spec/dvalues_test.cpp.
#ifndef FLANKS_SPEC_DVALUES_H
#define FLANKS_SPEC_DVALUES_H

#include "run/run.h"
#include "spec/spec_context.h"

namespace flanks {

// Handler of `Dvalues=`.  Faults: flanksFirst, extraInvalid, dvaluesForm, dvaluesField.
void SetDvalues(SpecContext& context);

// Step: looks at the entries.  Faults: dvaluesField, for a position that the data line does not
// have; dvaluesUndefinedFlank, for a source that it does not have; dvaluesCircular, for a position
// that leads to itself.
void PrepareDvalues(Run& run);

}  // namespace flanks

#endif  // FLANKS_SPEC_DVALUES_H
