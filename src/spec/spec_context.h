// What the handlers of keywords work on: the parts of the analysis that a Specification sets.
#ifndef FLANKS_SPEC_SPEC_CONTEXT_H
#define FLANKS_SPEC_SPEC_CONTEXT_H

#include "run/analysis.h"
#include "run/console.h"

namespace flanks {

struct SpecContext {
  Settings& settings;
  SpecificationState& state;
  ReadState& reading;
  Design& design;
  WorkFiles& work;
  FormerRun& former;
  Console& console;
};

inline SpecContext SpecContextOf(Analysis& analysis, Process& process, Console& console) {
  return {analysis.settings, analysis.specification, analysis.reading, analysis.design,
          analysis.work,     process.former,         console};
}

// A keyword's handler.  The fields of its line are in reading.Fields[1..FieldCount]; a fault goes
// to SetFault.  A handler of a list reads on with FetchLine (spec/specification_reader.h) and may
// leave the line that ended its list in reading.Fields: `state.lineLeft` tells the main loop.
using KeywordHandler = void (*)(SpecContext&);

}  // namespace flanks

#endif  // FLANKS_SPEC_SPEC_CONTEXT_H
