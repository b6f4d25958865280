// What Tables 5 and 11 share: the box of means and S.D.s of responses, and the lines that split the
// variance of their scores.
//
// Tested by tests/unit/report/table5_test.cpp and tests/unit/report/bias_tables_test.cpp.
#ifndef FLANKS_REPORT_SUMMARY_BOX_H
#define FLANKS_REPORT_SUMMARY_BOX_H

#include <string>
#include <string_view>

#include "run/console.h"
#include "stats/residual_summary.h"

namespace flanks {

// Mean, S.D. of the population and, of more than one response, of a sample; under the heads of
// Table 4.
void WriteResidualBox(Console& console, const ResidualSummary& summary);

// A number with a zero in front of its point, right-aligned: "   0.50".
std::string ZeroField(double value, std::size_t width, int decimals);

// `words` and the variance of the scores, all of it.
std::string VarianceLine(std::string_view words, double whole);
// `words`, a part of that variance and the per cent of it.
std::string VarianceLine(std::string_view words, double part, double whole);

}  // namespace flanks

#endif  // FLANKS_REPORT_SUMMARY_BOX_H
