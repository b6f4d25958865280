// The step that makes the Flank and element tables from the labels file.
//
// The file is read twice: the first time for the numbers, from which the element table is sized and
// the slots are given out, the second time for labels, weights and targets; at last the measures
// and groups are made.  Ranges stay ranges until the slots are given out, and the list is sorted
// only when it was not in order: four million elements must load.
//
// Slots are given to the numbers that stand in the list and to no others.  They run from 1 to
// ElementTotal, Flank after Flank, with ascending numbers within a Flank.  The null element never
// has a slot.  An element that stands on several lines has what the last of them gave.
//
// Tested by tests/unit/spec/labels_test.cpp.
#ifndef FLANKS_SPEC_LABEL_LOADER_H
#define FLANKS_SPEC_LABEL_LOADER_H

#include <cstdint>

#include "run/run.h"

namespace flanks {

constexpr std::int64_t kLargestElementCount = 4000000;

// Does nothing without Flanks.  Faults: flankOutOfRange, flankTwiceInLabels, labelsFlankZero,
// notWhole, invalidElementNumber, tooManyElements, invalidTarget, circularTarget,
// invalidGroupNumber; noElementLabels with `Labels=Nobuild`.
void LoadLabels(Run& run);

}  // namespace flanks

#endif  // FLANKS_SPEC_LABEL_LOADER_H
