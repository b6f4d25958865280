// The statements and scales of an anchor file: which lines stand in "Models =", and which scale
// each of them names.
//
// Each set of thresholds that was estimated becomes a scale with a name of its own, and each
// statement names the scale of its observations:
//   - a named scale keeps its name where one set of thresholds bears it, as a General scale does;
//   - a scale without a name is "RS" and the number of its statement;
//   - a statement with "#" becomes one statement for each element (or set of elements) that had
//     observations, with the element's number in the place of "#"; the scale's name is the
//     statement's, a point, and that number: "RS1.5";
//   - where a name is taken it gets a further number.
// A statement without observations stays as it was, and so does a statement with "#", behind the
// others, where some of its elements had none: their scales are as the Specification defines them.
//
// Tested by tests/unit/output/anchor_file_test.cpp.
#ifndef FLANKS_OUTPUT_ANCHOR_MODELS_H
#define FLANKS_OUTPUT_ANCHOR_MODELS_H

#include <string>
#include <vector>

#include "output/specification_lines.h"
#include "run/design.h"
#include "run/scale_tables.h"

namespace flanks {

// A scale of the anchor file.
struct AnchorScale {
  std::string name;
  ModelRow model;                 // a statement that names it
  ScaleRow scale;                 // its thresholds; row -1: none were estimated
  ScaleDefinitionRow definition;  // its labels and recodes; row -1: none
  bool ofElements = false;        // of one "#" element
};

struct AnchorModels {
  std::vector<std::string> statements;  // in the order of the search for a match
  std::vector<AnchorScale> scales;      // in the order in which the statements name them first
};

AnchorModels PlanAnchorModels(const Design& design, const StructureTable& structures,
                              const ScaleTables& scales);

// The block "Models =".
void WriteAnchorModels(const AnchorModels& models, SpecificationLines& lines);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_ANCHOR_MODELS_H
