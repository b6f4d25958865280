// Table 6.1, 6.2 ...: the Flank summaries, a barchart of the elements of each Flank.
//
// All Flanks share one axis, so that their charts can be laid beside each other: over all elements
// that rulers show, or between the ends that `Yardstick=` gives.  `Barchart=Yes` puts extreme
// elements at the ends of the axis, `Barchart=All` at their measures, where they enter the mean.
//
// Tested by tests/unit/report/table6_summary_test.cpp.
#ifndef FLANKS_REPORT_TABLE6_SUMMARY_H
#define FLANKS_REPORT_TABLE6_SUMMARY_H

#include "report/measure_axis.h"
#include "report/table6_layout.h"
#include "run/run.h"

namespace flanks {

MeasureAxis SummaryAxis(const Settings& settings, const Column<FlankNo, RulerFlank>& shown,
                        const Yardstick& yardstick);

// The chart of a Flank's elements, lines with box codes in them.
std::vector<std::string> FlankSummaryLines(const Analysis& analysis,
                                           const std::vector<ElementSlot>& elements,
                                           const MeasureAxis& axis);

// A Table for each Flank with elements to show; none with `Barchart=No`.
void WriteFlankSummaries(Run& run, const RulerElements& elements);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE6_SUMMARY_H
