// Rating scales by name: categories, their labels and anchors, and the recoding of responses.
//
// `Rating (or partial credit) scale=` may come any number of times.  Its handler checks the lines
// of a definition and keeps it as one line of the scale file: six texts, each followed by its code,
// 1 to 6.  The step `LoadScales` makes the table of definitions from that file.
//
//   Rating scale = Quality,R3,General,Ordinal
//   0 = poor
//   1 = fair,,,9+8         ; the responses 9 and 8 count as 1
//   2 = good,1.2,A,4-6     ; anchored at 1.2 user units; 4 to 6 count as 2
//   *
//
// A category line whose first field holds "-" recodes responses to that text: "-1" makes them
// negative, and a negative response is dropped.
//
// Tested by tests/unit/spec/scales_test.cpp.
#ifndef FLANKS_SPEC_SCALES_H
#define FLANKS_SPEC_SCALES_H

#include <string>
#include <string_view>
#include <vector>

#include "run/design.h"
#include "run/faults.h"
#include "run/run.h"
#include "spec/spec_context.h"

namespace flanks {

// One item of a recoding list.
struct RecodeText {
  RecodeItem item;  // its category is left empty
  Fault fault = Fault::none;
};

// Reads one item: a text, or two numbers joined by "-", which are put into ascending order.
// Fault: recodeRange, when what is joined is not two numbers.
[[nodiscard]] RecodeText ParseRecodeItem(std::string_view text);

// A definition as a line of the scale file, and back.
std::string ScaleRecord(const ScaleDefinition& scale);
ScaleDefinition ScaleFromRecord(std::string_view record);

// Handler of `Rating (or partial credit) scale=`.
void ReadRatingScale(SpecContext& context);

// Step: the scale file becomes the table of definitions.
void LoadScales(Run& run);

}  // namespace flanks

#endif  // FLANKS_SPEC_SCALES_H
