// Handlers of the keywords that set one value of reading, estimation and output files; those of
// what the report shows are in spec/report_settings.h.
//
// Each takes the fields of its line and writes one field of Settings.  A switch is judged by the
// first letter of its value: Y is yes, anything else and an empty value is no.  Real numbers may be
// expressions; whole ones are cut.  Other keywords with an empty value keep what they have, unless
// it says otherwise here; a number out of its range does so too, and the screen tells.
//
// Tested by tests/unit/spec/keyword_settings_test.cpp.
#ifndef FLANKS_SPEC_KEYWORD_SETTINGS_H
#define FLANKS_SPEC_KEYWORD_SETTINGS_H

#include "spec/spec_context.h"

namespace flanks {

// Files.  A name that is set already (command line, `Output=`) stays.  Fault: badFileName.
void SetData(SpecContext& context);    // without a value the following lines are the data
void SetOutput(SpecContext& context);  // up to four names: output, anchor, residual, graph
void SetAnchorfile(SpecContext& context);
void SetGraphfile(SpecContext& context);
void SetResidualfile(SpecContext& context);
void SetScorefile(SpecContext& context);
void SetSimulated(SpecContext& context);

// Estimation.
void SetConvergence(SpecContext& context);
void SetHardware(SpecContext& context);
void SetIterations(SpecContext& context);
void SetNewton(SpecContext& context);  // Y is 0.5
void SetSubsets(SpecContext& context);
void SetWhexact(SpecContext& context);
void SetXtreme(SpecContext& context);  // values from 0 to 1, both excluded

// Data.
void SetMissing(SpecContext& context);
void SetNull(SpecContext& context);  // fault nullElementRange
void SetQuery(SpecContext& context);
void SetReplication(SpecContext& context);

// User units.  Fault unitsTooLate behind `Labels=` or a scale.
void SetUmean(SpecContext& context);
void SetUscale(SpecContext& context);
void SetUdecimals(SpecContext& context);

// The run and its output files.
void SetBatch(SpecContext& context);  // a Y anywhere in the value
void SetBeep(SpecContext& context);
void SetCsv(SpecContext& context);
void SetHeadingLines(SpecContext& context);
void SetQuoteMarks(SpecContext& context);

}  // namespace flanks

#endif  // FLANKS_SPEC_KEYWORD_SETTINGS_H
