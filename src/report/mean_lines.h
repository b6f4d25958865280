// The lines of means and S.D.s below a list of measures: which there are, and their words.
//
// Shared by Table 7 and Table 13.  Tested by tests/unit/report/table7_foot_test.cpp and
// tests/unit/report/bias_tables_test.cpp.
#ifndef FLANKS_REPORT_MEAN_LINES_H
#define FLANKS_REPORT_MEAN_LINES_H

#include <string>
#include <vector>

#include "base/running_moments.h"

namespace flanks {

struct MeanLine {
  std::string words;
  // The figure of the line in one column, over `count` rows.
  double (*figure)(const RunningMoments& column, double count);
};

// The mean, the S.D. of the population and, of more than one row, that of the sample.  The words of
// the mean are shorter where those with "Count" are wider than `labelWidth`.
std::vector<MeanLine> MeanLines(double count, int labelWidth);

}  // namespace flanks

#endif  // FLANKS_REPORT_MEAN_LINES_H
