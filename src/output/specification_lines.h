// Lines of a Specification on their way into a file: without blanks and commas at their ends.
//
//   SpecificationLines lines(out, console);
//   lines.Line("3=Ann,,");         // "3=Ann"
//   lines.KeepLine("1,1,");        // "1,1, ;": the last field is empty, and counts
//   if (lines.stopping()) ...      // the run is given its turn from time to time
//
// Once the run is to stop, further lines are not written.
//
// Tested by tests/unit/output/anchor_file_test.cpp.
#ifndef FLANKS_OUTPUT_SPECIFICATION_LINES_H
#define FLANKS_OUTPUT_SPECIFICATION_LINES_H

#include <string>
#include <string_view>

#include "output/destination.h"
#include "run/console.h"

namespace flanks {

class SpecificationLines {
 public:
  SpecificationLines(Destination& out, Console& console) : out_(out), console_(console) {}

  void Line(std::string_view text);
  // A line whose empty fields at the end must stay: a comment stands behind them.
  void KeepLine(std::string_view text);
  bool stopping() const { return stopping_; }

 private:
  void Write(std::string_view text);

  Destination& out_;
  Console& console_;
  int linesUntilTurn_ = 0;
  bool stopping_ = false;
};

// `text` and, when it is not empty, the other one behind " ; ".
std::string WithComment(std::string text, std::string_view comment);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_SPECIFICATION_LINES_H
