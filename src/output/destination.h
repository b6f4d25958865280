// Where the lines of an output file go: a file under its final name, or the text pane.
//
//   WriteOutputFile(run, "WriteAnchorFile", name, [&](Destination& out) { ... out.Line(text); });
//
// A file takes the place of a former one only when it is complete (base/replaced_file).  When it
// cannot be opened or written, that is told and the run goes on.
//
// Tested by tests/unit/output/destination_test.cpp.
#ifndef FLANKS_OUTPUT_DESTINATION_H
#define FLANKS_OUTPUT_DESTINATION_H

#include <functional>
#include <string>
#include <string_view>

#include "base/replaced_file.h"
#include "run/run.h"

namespace flanks {

class Destination {
 public:
  explicit Destination(ReplacedFile& file) : file_(&file) {}
  explicit Destination(Console& pane) : pane_(&pane) {}

  // One line, without its end.
  void Line(std::string_view text);
  // Whole lines with their ends.  A writer of many rows hands over many at once.
  void Lines(std::string_view text);

 private:
  ReplacedFile* file_ = nullptr;
  Console* pane_ = nullptr;
};

using WriteLines = std::function<void(Destination&)>;

// Writes the file `name` by `write`.  False when it could not be opened ("Failure opening output
// file: " with the name and the reason) or not be written (with the routine's name and the reason);
// nothing changes on disk then.  When the user breaks the run off, what was written stays
// beside it, in "NAME.part", which is told.
bool WriteOutputFile(Run& run, const char* routine, const std::string& name,
                     const WriteLines& write);

// The two words of failure; the run goes on, and its exit status will be 1.  A reason that speaks
// of another file, such as a temporary one, follows the name.
void TellOpenFailure(Run& run, const std::string& name, const std::string& reason);
void TellWriteFailure(Run& run, const char* routine, const std::string& name,
                      const std::string& reason);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_DESTINATION_H
