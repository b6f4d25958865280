// The rating scales of an anchor file, with their thresholds.
//
//   Rating (or partial credit) scale = Marks,R4,G,O
//    -1= absent,,,9
//   0=nothing,0,A
//   1=single words,-20.25,A,x
//   2=with help,-5.52,A
//    ; Rasch-Andrich Thresholds = -20.25, -5.52
//   *
//
// Categories are those of the Specification, not the ordered ones.  Thresholds are in user units,
// Uscale= of them to a logit.  The lowest category has none: a 0 stands there, which gives it its
// place.  A binomial or Poisson scale has its discrimination in category 0.  A category without
// observations has its label and recodes alone, and no line when it has neither.
//
// Tested by tests/unit/output/anchor_file_test.cpp.
#ifndef FLANKS_OUTPUT_ANCHOR_SCALES_H
#define FLANKS_OUTPUT_ANCHOR_SCALES_H

#include "output/anchor_models.h"
#include "output/specification_lines.h"
#include "run/design.h"
#include "run/scale_tables.h"

namespace flanks {

// `mark`: 'A' anchors the thresholds; with ' ' they are values to start with.
void WriteAnchorScales(const AnchorModels& models, const Design& design, const ScaleTables& scales,
                       float uscale, char mark, SpecificationLines& lines);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_ANCHOR_SCALES_H
