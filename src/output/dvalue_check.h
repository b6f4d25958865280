// Whether lines of simulated data give back their elements where `Dvalues=` fills positions.
//
// A position with a Dvalue has no item on a data line, so its element depends on what the reader
// finds: the line's number, or a piece of a text that the new line may not have.  Each line is read
// as the data pass would, and compared with the record that it was made from.
//
// Tested by tests/unit/output/simulate_test.cpp.
#ifndef FLANKS_OUTPUT_DVALUE_CHECK_H
#define FLANKS_OUTPUT_DVALUE_CHECK_H

#include <cstdint>
#include <string_view>

#include "data/data_line.h"
#include "data/line_elements.h"
#include "data/resolve_elements.h"
#include "run/data_counts.h"
#include "run/design.h"
#include "run/settings.h"
#include "spec/delements.h"
#include "spec/element_finder.h"

namespace flanks {

class DvalueCheck {
 public:
  // The references must outlive the check.
  DvalueCheck(const Design& design, const Settings& settings, const SplitRules& rules,
              LabelFinder& labels);

  // Reads `line` (without its comment), which is line `lineNumber` of the file.  False when it
  // cannot be read.
  bool Read(std::string_view line, std::int64_t lineNumber);
  // The slot that the line just read has in an active position; 0 for no element.
  std::int32_t SlotAt(Position position) const;

 private:
  const SplitRules& rules_;
  ElementFinder finder_;
  DataCounts counts_;  // of the lines read here
  ElementResolver resolver_;
  LineElements elements_;
  DataLine line_;
};

}  // namespace flanks

#endif  // FLANKS_OUTPUT_DVALUE_CHECK_H
