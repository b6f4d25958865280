// Table 14: the bias terms of an interaction compared in pairs, once with each position as target.
//
// There can be far more pairs than terms, so they are neither kept nor sorted in memory: each
// writes a record to a text work file, which is sorted (base/external_sort) and read back, a row
// each.  Ctrl+F ends the Table at the next row and the run goes on.  A disk that does not take the
// records costs the rest of the Table, which is told, and not the run.
//
// `Arrange=` gives the orders as in Table 13; `Zscore=` leaves out the rows of small or uncertain
// contrasts.
//
// Tested by tests/unit/report/table14_test.cpp; bench/RESULTS.md tells of 10 million pairs.
#ifndef FLANKS_REPORT_TABLE14_H
#define FLANKS_REPORT_TABLE14_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "run/run.h"
#include "stats/bias_statistics.h"

namespace flanks {

void WriteTable14(Run& run, const BiasResults& results);

// " There are 75 pairwise terms for 2. Raters (with 3. Criteria)".  A count of more than 32 bits is
// only a floor.
std::string PairCountLine(const Design& design, const BiasInteraction& interaction,
                          std::size_t target, std::int64_t pairs);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE14_H
