// The vertical scale of a ruler: how many rows there are, what each stands for, which are ticks.
//
// Rows are counted from the top, 0 to `last`; row i stands for the value low + (last - i) / lines
// in user units.  An element stands in the row nearest to its measure; beyond the ends, in the end
// row. Whole units have ticks: each one, where a unit has a line or more; otherwise every 2, 5, 10,
// 20
// ... units, so that ticks are five rows or more apart.  Where logits are worth less than a user
// unit and all elements stand within one, rows and ticks are finer: tenths, hundredths,
// thousandths.
//
// Tested by tests/unit/report/table6_scale_test.cpp.
#ifndef FLANKS_REPORT_TABLE6_SCALE_H
#define FLANKS_REPORT_TABLE6_SCALE_H

#include <optional>

#include "report/table6_settings.h"

namespace flanks {

// A ruler has at most 255 rows.
constexpr int kMostRulerRows = 255;

struct RulerScale {
  double low = -1.0, high = 1.0;  // user units, low below high
  double lines = 10.0;            // to a user unit
  int last = 20;                  // the number of the bottom row
  double tick = 1.0;              // user units from tick to tick
  int tickDecimals = 0;           // that a tick needs

  int rows() const { return last + 1; }
  double ValueOf(int row) const { return low + (last - row) / lines; }
  int RowOf(double userMeasure) const;
  // The value of the tick that stands in a row.
  std::optional<double> TickOf(int row) const;
};

// The scale of elements that stand between two user measures; `uscale` user units are a logit.
RulerScale ScaleRuler(double lowest, double highest, const Yardstick& yardstick,
                      double uscale = 1.0);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE6_SCALE_H
