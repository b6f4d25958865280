// Tables 11 and 12: what the bias terms of an interaction explain, and how they are spread.
//
// Table 11 sums up the responses that belong to terms, as Table 5 does, with the expectations that
// the biases give, and splits the variance of their scores: what the measures explain, and what the
// biases explain of the rest.  Table 12 is a barchart of the biases; `Barchart=` acts as in Table
// 6.
//
// Tested by tests/unit/report/bias_tables_test.cpp.
#ifndef FLANKS_REPORT_BIAS_TABLES_H
#define FLANKS_REPORT_BIAS_TABLES_H

#include <string>
#include <vector>

#include "run/run.h"
#include "stats/bias_statistics.h"

namespace flanks {

void WriteTable11(Run& run, const BiasResults& results);
void WriteTable12(Run& run, const BiasResults& results);

// The chart, lines with box codes in them; none without an estimated term.
std::vector<std::string> BiasSummaryLines(const Settings& settings, const BiasResults& results);

}  // namespace flanks

#endif  // FLANKS_REPORT_BIAS_TABLES_H
