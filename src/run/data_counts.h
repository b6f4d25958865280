// What the data pass counted, with the line of the first event of each kind.
//
// Counters are fixed-point values with four decimals (base/fixed_count.h); line numbers are those
// of the file that was read and are set once, at the first event.  Every counter rises by 1 for a
// line or a response, whatever the replication (weights show in Tables 5 and 7).
#ifndef FLANKS_RUN_DATA_COUNTS_H
#define FLANKS_RUN_DATA_COUNTS_H

#include <cstdint>
#include <string>
#include <vector>

#include "base/column.h"
#include "base/fixed_count.h"
#include "run/design.h"

namespace flanks {

// A counter with the line of its first event.
struct CountedEvent {
  FixedCount count;
  std::int32_t firstLine = 0;

  void add(std::int32_t line) {
    if (count.isZero()) firstLine = line;
    count.increment();
  }
};

// An element met in the data that is not in `Labels=`.
struct UnspecifiedElement {
  FlankNo flank;
  std::int64_t number = 0;
  std::string text;  // as read from the data

  auto operator<=>(const UnspecifiedElement&) const = default;
};

struct DataCounts {
  FixedCount FileLines, DataLines;
  FixedCount NonBlankResponses, ValidResponses;
  CountedEvent BlankLines;
  CountedEvent MissingCodeResponses, MissingNullResponses;
  CountedEvent R0Lines;
  CountedEvent InvalidResponses, NegativeResponses, InvalidModelResponses;
  CountedEvent UnspecifiedResponses, UnmatchedResponses;
  Column<ModelRow, std::int64_t> ModelCounter;
  std::vector<UnspecifiedElement> UnspecifiedList;
  bool UnspecifiedListCut = false;  // the data hold more of them
  Column<FlankNo, std::uint8_t> flankLookedUp;  // an element of the Flank was ever looked for
};

}  // namespace flanks

#endif  // FLANKS_RUN_DATA_COUNTS_H
