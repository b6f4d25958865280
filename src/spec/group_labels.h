// Labels of element groups: `Glabel=`, a list of lines "flank number, group number, label".
//
// A group that is named twice keeps its first label.
//
// Tested by tests/unit/spec/group_labels_test.cpp.
#ifndef FLANKS_SPEC_GROUP_LABELS_H
#define FLANKS_SPEC_GROUP_LABELS_H

#include "spec/spec_context.h"

namespace flanks {

// Handler of `Glabel=`.
void ReadGroupLabels(SpecContext& context);

// Once the Specification has been read: a label of a Flank beyond `Flanks=`, which stood before it.
// Fault: glabelForm.
void CheckGroupLabels(const Design& design, ReadState& reading);

}  // namespace flanks

#endif  // FLANKS_SPEC_GROUP_LABELS_H
