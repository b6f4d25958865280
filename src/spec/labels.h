// Flanks and their elements: the handler of `Labels=`.
//
// While the Specification is read, the list is only copied into the labels file, each line with its
// number; the step `LoadLabels` (spec/label_loader.h) makes the tables from it.
//
//   Labels = Nobuild            N: elements that only the data know are not listed
//   1,Persons,A,2               number of the Flank, its name, options, weight
//   1 = Ann, 0.5, 2, 1, 4       number or range, label, measure, group, weight, target
//   2-9 = Guest
//   *                           ends the Flank; the next line begins another
//
// The list ends at the first line that begins with neither a digit nor "*", which is the next
// specification.
//
// Tested by tests/unit/spec/labels_test.cpp.
#ifndef FLANKS_SPEC_LABELS_H
#define FLANKS_SPEC_LABELS_H

#include "spec/element_finder.h"
#include "spec/element_range.h"
#include "spec/label_loader.h"
#include "spec/spec_context.h"

namespace flanks {

// Faults: extraInvalid among the Extra specifications, flanksFirst, labelsTwice.
void CopyLabels(SpecContext& context);

}  // namespace flanks

#endif  // FLANKS_SPEC_LABELS_H
