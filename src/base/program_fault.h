// A fault of the program itself, found by a routine that knows no run.
//
// The formatter and the sorters know neither console nor state, so what cannot go on there (an edit
// word without a field for a value, sort keys of different length) is thrown with its whole text,
// the "Failure (n)!" included and the contact sentence not.  Guarded, at the head of a step,
// catches it and stops the run with this text; nothing else does.
//
// Tested where the faults arise: tests/unit/report/format/.
#ifndef FLANKS_BASE_PROGRAM_FAULT_H
#define FLANKS_BASE_PROGRAM_FAULT_H

#include <string>
#include <utility>

namespace flanks {

class ProgramFault {
 public:
  explicit ProgramFault(std::string text) : text_(std::move(text)) {}
  const std::string& what() const { return text_; }

 private:
  std::string text_;
};

}  // namespace flanks

#endif  // FLANKS_BASE_PROGRAM_FAULT_H
