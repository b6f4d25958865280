// The plots of bias terms: a workbook of charts for each position of an interaction.
//
// An X in place 13 of `Tables=` asks for the sheets of terms, one in place 14 for those of pairs
// (output/bias_sheets.h).
//
// Tested by tests/unit/output/bias_plots_test.cpp and tests/checks/read_back_test.cpp.
#ifndef FLANKS_OUTPUT_BIAS_PLOTS_H
#define FLANKS_OUTPUT_BIAS_PLOTS_H

#include <cstddef>
#include <string>

#include "output/bias_sheets.h"
#include "run/run.h"
#include "stats/bias_statistics.h"

namespace flanks {

// From `Tables=`.
BiasPlotChoice BiasPlotsAsked(const Settings& settings);

// "speaking.bias1.2.xlsx", of the report "speaking.out.txt", the first interaction and Flank 2; the
// second position of a Flank in an interaction has "2-2".
std::string BiasPlotName(const Analysis& analysis, const BiasInteraction& interaction,
                         std::size_t target);

// Writes the workbooks that are asked for.  What goes wrong is told, and the run goes on. `warned`:
// the run has said that plots are pruned.
void WriteBiasPlots(Run& run, const BiasResults& results, bool& warned);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_BIAS_PLOTS_H
