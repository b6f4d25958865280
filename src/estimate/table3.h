// Table 3: the report of the iterations.
//
// The short form is one line for each iteration (on the screen it overwrites the one before); the
// long form, for `Write=Yes` in the report and T3onscreen=N on the screen, adds the largest
// residuals and each Flank's mean and S.D.
//
// Tested by tests/unit/estimate/table3_test.cpp.
#ifndef FLANKS_ESTIMATE_TABLE3_H
#define FLANKS_ESTIMATE_TABLE3_H

#include <span>
#include <string>
#include <string_view>

#include "estimate/flank_update.h"
#include "run/console.h"
#include "run/design.h"
#include "run/estimates.h"
#include "run/scale_tables.h"

namespace flanks {

// Heading and column heads; before the first iteration.
void WriteTable3Head(Console& console);

// The rule below the last iteration.
void WriteTable3Foot(Console& console);

// A Flank's measures after its update.
struct FlankLine {
  FlankNo flank;
  FlankSummary summary;
};

// What the long form shows of an iteration beside its state.
struct Table3Input {
  const Design& design;
  const Estimates& estimates;
  const ScaleTables& scales;
  std::span<const FlankLine> flanks = {};
};

// The report of the iteration just made: the detail line, and the long form where it is asked for.
void ReportIteration(Console& console, const Table3Input& input);

// "Mean=... S.D.=... Count=..." of one Flank, in user units; long form only.
void ReportFlankSummary(Console& console, const std::string& flankName,
                        const FlankSummary& summary);

// The box of iterations, which Table 9 has as well: its head, of which `secondHead` is the second
// line, and a line of it.
void BeginIterationBox(Console& console, const std::string& title, std::string_view secondHead);
std::string IterationBoxLine(std::string_view text);

// The lines themselves, for the tests.
std::string IterationHeader(const IterationState& iteration);
std::string IterationDetail(const IterationState& iteration);

}  // namespace flanks

#endif  // FLANKS_ESTIMATE_TABLE3_H
