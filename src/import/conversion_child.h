// A conversion in a process of its own, so that a damaged file can do no harm: what crashes, runs
// away or takes all memory there ends as a conversion that failed.
//
// The child is a fork of this process with limits on its memory and on the time that it may compute
// without getting on.  It tells its progress through a pipe.  The parent gives the user a turn
// meanwhile, and ends the child when it is to stop.  The text and what is unpacked stand in files
// that the parent owns, so that nothing is left of a child that was ended.
//
// Tested by tests/unit/import/import_data_test.cpp and tests/damage/import_damage_test.cpp.
#ifndef FLANKS_IMPORT_CONVERSION_CHILD_H
#define FLANKS_IMPORT_CONVERSION_CHILD_H

#include <cstdint>
#include <functional>
#include <string>

#include "import/conversion.h"

namespace flanks {

struct ChildLimits {
  std::int64_t memory = std::int64_t{1} << 31;  // bytes beyond what the process has now
  int secondsWithoutRows = 60;                  // of computing
};

// Waits for the child; calls `pump` several times a second and ends the child when it gives true
// (the end is then a failure without a reason).
ConversionEnd RunInChild(const std::function<ConversionEnd(const ConversionWatch&)>& conversion,
                         const ConversionWatch& watch, const std::function<bool()>& pump,
                         const ChildLimits& limits);

}  // namespace flanks

#endif  // FLANKS_IMPORT_CONVERSION_CHILD_H
