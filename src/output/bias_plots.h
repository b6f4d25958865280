// The plots of bias terms: a workbook of charts for each position of an interaction.
//
// An X in place 13 of `Tables=` asks for the sheets of terms, one in place 14 for those of pairs:
//
//   AM  Absolute Measure             an element's measure with its bias in each context
//   RM  Relative-to-overall Measure  the bias alone, by the Flank's sign
//   TV  t-value relative-to-overall  its t
//   AO  Average Observation
//   PM  Pairwise Relative Measure    the contrasts of Table 14
//   PT  Pairwise t-statistic         their t
//
// Elements of the workbook's position are series, their terms or pairs the points along them, as
// many as a plot takes.  Measures have their S.E. above and below as lines of their own, where the
// elements are not too many for that.
//
// Tested by tests/unit/output/bias_plots_test.cpp and tests/checks/read_back_test.cpp.
#ifndef FLANKS_OUTPUT_BIAS_PLOTS_H
#define FLANKS_OUTPUT_BIAS_PLOTS_H

#include <cstddef>
#include <string>
#include <vector>

#include "output/xlsx_charts.h"
#include "run/run.h"
#include "stats/bias_statistics.h"

namespace flanks {

struct BiasPlotChoice {
  bool terms = false;  // Table 13: AM, RM, TV, AO
  bool pairs = false;  // Table 14: PM, PT
  bool any() const { return terms || pairs; }
};
// From `Tables=`.
BiasPlotChoice BiasPlotsAsked(const Settings& settings);

struct BiasPlots {
  std::vector<ChartSheet> sheets;
  bool pruned = false;  // there are more rows than a sheet takes
};
// `target`: which position of the interaction, from 0 on.
BiasPlots MakeBiasPlots(const Analysis& analysis, const BiasResults& results, std::size_t target,
                        BiasPlotChoice choice);

// "speaking.bias1.2.xlsx", of the report "speaking.out.txt", the first interaction and Flank 2; the
// second position of a Flank in an interaction has "2-2".
std::string BiasPlotName(const Analysis& analysis, const BiasInteraction& interaction,
                         std::size_t target);

// Writes the workbooks that are asked for.  What goes wrong is told, and the run goes on. `warned`:
// the run has said that plots are pruned.
void WriteBiasPlots(Run& run, const BiasResults& results, bool& warned);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_BIAS_PLOTS_H
