// Element numbers as the user writes them: "7", "3-9", "3_9".
//
// Tested by tests/unit/spec/element_range_test.cpp.
#ifndef FLANKS_SPEC_ELEMENT_RANGE_H
#define FLANKS_SPEC_ELEMENT_RANGE_H

#include <cstdint>
#include <string_view>

#include "run/faults.h"

namespace flanks {

// An element number, or a range of them.
struct ElementRange {
  std::int32_t low = 0;
  std::int32_t high = 0;
  bool isRange = false;  // written with "-"
  Fault fault = Fault::none;
};

// Reads "n", "n-m" or "n_m"; a reversed range is put in order.  Fault: invalidElementNumber.
[[nodiscard]] ElementRange ParseElementRange(std::string_view text);

}  // namespace flanks

#endif  // FLANKS_SPEC_ELEMENT_RANGE_H
