// Handlers of the keywords that say what the report shows and how.
//
// Values are taken as in spec/keyword_settings.h.
//
// Tested by tests/unit/spec/keyword_settings_test.cpp.
#ifndef FLANKS_SPEC_REPORT_SETTINGS_H
#define FLANKS_SPEC_REPORT_SETTINGS_H

#include "spec/spec_context.h"

namespace flanks {

void SetArrange(SpecContext& context);  // fault invalidArrange; an empty value clears it
void SetAscii(SpecContext& context);
void SetBarchart(SpecContext& context);
void SetBias(SpecContext& context);
void SetBox(SpecContext& context);
void SetFair(SpecContext& context);
void SetInterRater(SpecContext& context);
void SetJuxtapose(SpecContext& context);
void SetLeftHand(SpecContext& context);
void SetOmitUnobserved(SpecContext& context);
void SetShowUnobserved(SpecContext& context);  // the same with the sense reversed
void SetPtBiserial(SpecContext& context);
void SetReversed(SpecContext& context);
void SetStandardErrors(SpecContext& context);
void SetT3onscreen(SpecContext& context);
void SetT4MAX(SpecContext& context);
void SetT7LGS(SpecContext& context);
void SetT8NBC(SpecContext& context);
void SetTables(SpecContext& context);
void SetTitle(SpecContext& context);
void SetTotalscore(SpecContext& context);
void SetUnexpected(SpecContext& context);
void SetUsort(SpecContext& context);
void SetUtf8(SpecContext& context);  // `UTF8encoded=` and `UTF8sub=`, told apart by the keyword
void SetVertical(SpecContext& context);
void SetWrite(SpecContext& context);
void SetYardstick(SpecContext& context);
void SetZscore(SpecContext& context);

}  // namespace flanks

#endif  // FLANKS_SPEC_REPORT_SETTINGS_H
