// The horizontal measure axis of the plots: the barchart and the curves of a scale, and the
// summary barcharts.
//
// An axis is 68 columns wide.  Its two ends are measures in user units, and column c stands for the
// measure c / 67 of the way from the one to the other.  Ticks stand at multiples of a step that is
// 1, 2 or 5 times a power of ten.  A label takes its length, at least 3, and 3 columns of space; as
// many labels as so fit the 68 columns, a started one counted, divide the range into parts: the
// ideal step, to which the nearest is taken (of two the smaller), with a larger one where labels
// would touch.
//
// A plot is framed on both sides, so its rules and labels are 70 columns wide:
//
//   AxisRule      a rule with a junction at each tick, "+----+----+" in ASCII
//   AxisLabels    the labels, each centred on its tick; one that would stand out is moved inside
//   MeasureLine   "Measr: " and the labels
//
// Tested by tests/unit/report/measure_axis_test.cpp.
#ifndef FLANKS_REPORT_MEASURE_AXIS_H
#define FLANKS_REPORT_MEASURE_AXIS_H

#include <string>
#include <vector>

#include "report/format/box.h"

namespace flanks {

constexpr int kAxisColumns = 68;

struct AxisTick {
  int column = 0;     // 0 to 67
  std::string label;  // ".5", "-2": no zero before the point, none but zeros behind it
};

struct MeasureAxis {
  double low = 0.0, high = 1.0;  // user units, of columns 0 and 67
  std::vector<AxisTick> ticks;   // ascending
};

// The axis from one measure to another, in either order; two equal ones become the middle of an
// axis of two units.
MeasureAxis LayOutAxis(double oneEnd, double otherEnd);

// The column nearest to a measure, 0 to 67; a measure beyond an end stands at the end.
int ColumnOf(const MeasureAxis& axis, double userMeasure);
double MeasureAt(const MeasureAxis& axis, double column);

std::string AxisRule(const MeasureAxis& axis, BoxPosition position, bool ascii);
std::string AxisLabels(const MeasureAxis& axis);
std::string MeasureLine(const MeasureAxis& axis);

// What stands in front of each row of a plot, as wide as "Measr: ".
constexpr int kAxisMargin = 7;

}  // namespace flanks

#endif  // FLANKS_REPORT_MEASURE_AXIS_H
