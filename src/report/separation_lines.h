// The statistic lines below a list of measures: how well they are separated, and chi-squared tests.
//
// Shared by Table 7 and Table 13.  Tested by tests/unit/report/table7_foot_test.cpp.
#ifndef FLANKS_REPORT_SEPARATION_LINES_H
#define FLANKS_REPORT_SEPARATION_LINES_H

#include <string>
#include <string_view>
#include <vector>

#include "run/settings.h"
#include "stats/separation.h"

namespace flanks {

// "Model" or "Real".
std::string_view ErrorWord(const Settings& settings);

// The lines of one set, for the population and the sample; none for less than two rows.  `prefix`
// ends in the word for the errors, `reliabilityNote` stands before the value of Reliability.
std::vector<std::string> SeparationLines(const Settings& settings, const MeasureSummary& summary,
                                         float tinyValue, std::string_view prefix,
                                         std::string_view reliabilityNote = "");

// " chi-squared: 12.3  d.f.: 4  significance (probability): .02".
std::string ChiSquareText(const ChiSquareTest& test);

}  // namespace flanks

#endif  // FLANKS_REPORT_SEPARATION_LINES_H
