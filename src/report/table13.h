// Table 13: the bias terms of an interaction, a row each, in the orders of `Arrange=`.
//
// An item of `Arrange=` applies when it has no Flank number or the number 0; without one the order
// is "mN".  `Zscore=` leaves out the rows of small or uncertain terms; the foot sums up all of
// them.
//
// Tested by tests/unit/report/bias_tables_test.cpp.
#ifndef FLANKS_REPORT_TABLE13_H
#define FLANKS_REPORT_TABLE13_H

#include <string>
#include <string_view>
#include <vector>

#include "run/run.h"
#include "stats/bias_statistics.h"

namespace flanks {

void WriteTable13(Run& run, const BiasResults& results);

// The sort letters of the items of `Arrange=` that apply to bias terms.
std::vector<std::string> BiasOrders(std::string_view arrange);

// Whether `Zscore=` lets a term be shown: its size in user units and its t are large enough.
bool IsBiasShown(const Settings& settings, const BiasTerm& term);

// The sort key of a term: a piece for each letter, and its number in hexadecimal at the end.
std::string BiasTermKey(const Analysis& analysis, const BiasResults& results, BiasTermRow term,
                        std::string_view letters);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE13_H
