// Flanks and where they stand: `Flanks=`, `Entered-in-data=`, and the lists of Flanks that float
// or whose higher scores mean higher measures.
//
// A data position is a place on a data line, an active position is a field of a model statement,
// and both lead to a Flank.  Without `Entered-in-data=` every Flank is an active position, in
// order, and a data position as far as the data line has one: an active position beyond the data
// line's has no element in any observation.
//
// `Noncenter=` and `Positive=` may come before `Flanks=`.  They then set FlankCount themselves, to
// at least 2, and a later `Flanks=` may enlarge it; so the lists are kept as they were given
// (SpecificationState) and put into the tables whenever these change their size.
//
// Tested by tests/unit/spec/flank_maps_test.cpp.
#ifndef FLANKS_SPEC_FLANK_MAPS_H
#define FLANKS_SPEC_FLANK_MAPS_H

#include "run/run.h"
#include "spec/spec_context.h"

namespace flanks {

constexpr int kLargestFlankCount = 255;

// Handlers.  Faults: numberTooLarge, notNumeric, notWhole; flanksConflict, flanksFirst,
// enteredMismatch as told at each.
void SetFlanks(SpecContext& context);         // flanksConflict: smaller than a Flank in a list
void SetEnteredInData(SpecContext& context);  // flanksFirst, enteredMismatch
void SetNoncenter(SpecContext& context);
void SetCenter(SpecContext& context);
void SetPositive(SpecContext& context);
void SetNegative(SpecContext& context);

// Whether `Flanks=` (the line in Fields) disagrees with the number of Flanks that is set.
bool FlanksDisagree(SpecContext& context);

// The default maps, when there are Flanks and no maps yet.
void MakeDefaultMaps(Design& design);

// Step: the same for a run that has no model statements and no `Entered-in-data=`.
void MakeDefaultMaps(Run& run);

}  // namespace flanks

#endif  // FLANKS_SPEC_FLANK_MAPS_H
