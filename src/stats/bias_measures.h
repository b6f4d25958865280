// What a bias makes of an element's measure, and the contrast of two biases, as reports and plots
// show them.
//
// Tested by tests/unit/report/table14_test.cpp and tests/unit/output/bias_plots_test.cpp.
#ifndef FLANKS_STATS_BIAS_MEASURES_H
#define FLANKS_STATS_BIAS_MEASURES_H

#include "run/design.h"
#include "run/estimates.h"
#include "run/settings.h"
#include "stats/bias_statistics.h"

namespace flanks {

// An element in the context of a term.  User units; the sign is that of the Flank: in a negative
// Flank a bias that adds to the ratings lowers the measure.
struct BiasMeasure {
  double absolute = 0.0;  // the element's measure with the bias
  double relative = 0.0;  // the bias alone
  double standardError = 0.0;
  double t = 0.0;  // with the sign of `relative`
};
BiasMeasure MeasureWithBias(const Settings& settings, const Design& design,
                            const Estimates& estimates, ElementSlot slot, const BiasTerm& term);

// A contrast in user units and in the direction of `Bias=`, as the sizes of Table 13.
struct PairFigures {
  double size = 0.0;
  double standardError = 0.0;
  double t = 0.0;
};
PairFigures FiguresOf(const Settings& settings, const BiasContrast& contrast);

}  // namespace flanks

#endif  // FLANKS_STATS_BIAS_MEASURES_H
