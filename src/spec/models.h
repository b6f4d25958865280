// Model statements: which combinations of elements make an observation, on what scale, with what
// weight.
//
// `Models=` may come before the Flanks' elements and the scales are known, so its handler only
// checks the number of fields and keeps each statement as a line of the statements file, each field
// followed by code 1.  When the Specification has been read, `BuildModelTable` reads the references
// to elements; when the scales and labels are loaded, `MatchElementsToModels` joins statements and
// scales.  From then on an observation is matched by integer comparisons alone.
//
// The order of the statements is the order of the search for a match, so rows are never sorted.
//
// Tested by tests/unit/spec/models_test.cpp.
#ifndef FLANKS_SPEC_MODELS_H
#define FLANKS_SPEC_MODELS_H

#include <string>

#include "run/design.h"
#include "run/run.h"
#include "spec/model_grammar.h"
#include "spec/spec_context.h"

namespace flanks {

// Separates the fields of a statement in the statements file.
constexpr char kStatementSeparator = '\x01';

// The fields of row `model` joined by commas, without the commas at the end: "?,?,R5,1".
std::string StatementText(const ModelTable& models, ModelRow model);

// Handler of `Models=`.
void ReadModels(SpecContext& context);

// Step: the statements file becomes the model table.  Without any statement the table has one that
// takes everything as a dichotomy.  Does nothing when there are no Flanks.
void BuildModelTable(Run& run);

// Step: scale types, category maxima and weights of the statements, with the named scales.
void MatchElementsToModels(Run& run);

}  // namespace flanks

#endif  // FLANKS_SPEC_MODELS_H
