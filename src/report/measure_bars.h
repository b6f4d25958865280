// A barchart along the measure: how many of a set stand at each of the 68 columns of an axis.
//
// A column is a stack of digits.  A digit counts 1 to 9 members, so a stack of 9s below another
// digit counts on: 9 and 4 above it are 13.  Stacks are 20 lines high at most; where one would be
// higher, a count stands for a group of members, which a line below tells.  Under the stacks "M"
// marks the mean of the members that stand at their measures, "S" one population S.D. and "Q" two
// from it.
//
// Tested by tests/unit/report/measure_bars_test.cpp.
#ifndef FLANKS_REPORT_MEASURE_BARS_H
#define FLANKS_REPORT_MEASURE_BARS_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/running_moments.h"
#include "report/measure_axis.h"

namespace flanks {

class MeasureBars {
 public:
  explicit MeasureBars(const MeasureAxis& axis) : axis_(axis) {}

  void AddAtMeasure(double userMeasure);  // counts in mean and S.D.
  void AddAtLowEnd() { ++counts_.front(); }
  void AddAtHighEnd() { ++counts_.back(); }

  // `members`: what the set consists of, "elements".
  std::vector<std::string> Lines(bool ascii, const std::string& members) const;

 private:
  std::string MarksLine() const;

  MeasureAxis axis_;
  std::array<std::int64_t, kAxisColumns> counts_{};
  WelfordCounter measures_;
};

}  // namespace flanks

#endif  // FLANKS_REPORT_MEASURE_BARS_H
