// The plots of Table 8: the categories along the measure, the probability of each category and the
// expected score.  All share one measure axis, which reaches a logit beyond the landmarks of the
// scale on either side; measures are in user units as in the box above them.
//
// Tested by tests/unit/report/table8_plots_test.cpp.
#ifndef FLANKS_REPORT_TABLE8_PLOTS_H
#define FLANKS_REPORT_TABLE8_PLOTS_H

#include <string>
#include <vector>

#include "report/measure_axis.h"
#include "report/table8_scale.h"

namespace flanks {

struct Table8Plot {
  const ScaleReport& report;  // with a kernel
  double uscale = 1.0;
  bool ascii = true;  // how the rules will be shown
};

MeasureAxis AxisOf(const Table8Plot& plot);

// The lines "  Mode", "Median" and "  Mean": the number of each category where it becomes the most
// probable one, where half of the responses are in it or above, where the expected score is half a
// score below it.  A number that would stand over a higher one, or run together with it, is left
// out.
std::vector<std::string> ScaleStructureLines(const Table8Plot& plot,
                                             const std::string& identification);
// Each category's last digit along its probability, in each row that it goes over; "*" where two of
// them meet.
std::vector<std::string> ProbabilityLines(const Table8Plot& plot);
// The last digit of the score nearest to the expected score.  Counts may be expected to be above
// the highest observed one: there the curve has left the plot.
std::vector<std::string> OgiveLines(const Table8Plot& plot);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE8_PLOTS_H
