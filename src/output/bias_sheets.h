// What is on the sheets of the plots of bias terms: series, points and their words.
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
// Tested by tests/unit/output/bias_plots_test.cpp.
#ifndef FLANKS_OUTPUT_BIAS_SHEETS_H
#define FLANKS_OUTPUT_BIAS_SHEETS_H

#include <cstddef>
#include <vector>

#include "output/xlsx_charts.h"
#include "run/analysis.h"
#include "stats/bias_statistics.h"

namespace flanks {

struct BiasPlotChoice {
  bool terms = false;  // Table 13: AM, RM, TV, AO
  bool pairs = false;  // Table 14: PM, PT
  bool any() const { return terms || pairs; }
};

struct BiasPlots {
  std::vector<ChartSheet> sheets;
  bool pruned = false;  // there are more rows than a sheet takes
};
// `target`: which position of the interaction, from 0 on.
BiasPlots MakeBiasPlots(const Analysis& analysis, const BiasResults& results, std::size_t target,
                        BiasPlotChoice choice);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_BIAS_SHEETS_H
