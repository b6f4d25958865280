// The labels of an anchor file: every Flank and element, with its measure.
//
//   Labels =
//   1,Persons,A
//   3=Ann,63,2
//   *
//
// Measures are in user units.  An element without an estimate (unobserved, or dropped) has none, so
// that a further run can estimate it; an anchor of the Specification stays.
//
// Tested by tests/unit/output/anchor_file_test.cpp.
#ifndef FLANKS_OUTPUT_ANCHOR_LABELS_H
#define FLANKS_OUTPUT_ANCHOR_LABELS_H

#include <string>

#include "output/specification_lines.h"
#include "run/design.h"
#include "run/disjoint_subsets.h"
#include "run/estimates.h"
#include "run/settings.h"

namespace flanks {

struct AnchorLabelParts {
  const Design& design;
  const Settings& settings;
  const Estimates& estimates;
  const DisjointSubsets& subsets;
};

// `mark`: 'A' anchors the elements; otherwise the Flanks keep their options.
void WriteAnchorLabels(const AnchorLabelParts& parts, char mark, SpecificationLines& lines);

// The measure of an element as the file has it; empty when it has none.
std::string AnchorMeasure(const AnchorLabelParts& parts, ElementSlot slot);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_ANCHOR_LABELS_H
