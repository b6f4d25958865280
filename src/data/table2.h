// Table 2: what became of the data.
//
// Every line and every response is accounted for: the responses that are not blank are those that
// matched a statement, that were unspecified and that were unmatched; of the matched, some are
// invalid, negative or of a statement that is not to be used, and the rest is valid.  Counts that
// are 0 are left out, but for the totals.
//
// The head is written before the data pass and opens the work files; the body after it.
//
// Tested by tests/unit/data/table2_test.cpp.
#ifndef FLANKS_DATA_TABLE2_H
#define FLANKS_DATA_TABLE2_H

#include <cstdint>

#include "run/run.h"

namespace flanks {

// Steps.
void OpenWorkFiles(Run& run);
void WriteTable2Head(Run& run);
void WriteTable2Body(Run& run);  // fault: noUsableData

// Writes the list of elements that are not in `Labels=`, as a piece of a Specification.
void WriteUnspecifiedList(Console& console, const DataCounts& counts, const FlankTable& flanks,
                          std::int64_t nullElement);

}  // namespace flanks

#endif  // FLANKS_DATA_TABLE2_H
