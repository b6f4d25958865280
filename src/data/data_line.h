// One data line taken apart: replication and fields.
//
// A line is split in place, in a buffer that lives as long as the DataLine: fields are views into
// it, the array of views only grows, and a pass over millions of lines allocates nothing once its
// longest line has been seen.
//
// How a line is split, after its comment has been cut:
//   "=" counts as a comma.
//   A line with a comma is split at commas; tabs and quote marks in it are blanks.
//   A line without a comma but with a tab is split at tabs; blanks stay inside the fields.
//   A line with neither is split at blanks; a quoted text keeps its blanks, and a quote mark that
//   has no partner separates.
//   Fields are trimmed.  A line that begins with "*" is the one field "*".
// A first item made of the replication text and a number is the line's weight and no field.
//
// Tested by tests/unit/data/data_line_test.cpp.
#ifndef FLANKS_DATA_DATA_LINE_H
#define FLANKS_DATA_DATA_LINE_H

#include <string>
#include <string_view>
#include <vector>

#include "run/design.h"
#include "run/faults.h"
#include "run/settings.h"

namespace flanks {

constexpr int kMostFields = 32000;

// What of the settings decides how a line is split.
struct SplitRules {
  int DataFlankCount = 0;
  std::string Replication = "R";  // upper case
  // By data position less 1: the entry that gives the position its value, null when the line does.
  // Empty without `Dvalues=`.
  std::vector<const DvalueEntry*> dvalues;

  const DvalueEntry* dvalue(int position) const {
    return dvalues.empty() ? nullptr : dvalues[static_cast<std::size_t>(position - 1)];
  }
};

// The settings must outlive the rules.
SplitRules SplitRulesOf(const Design& design, const Settings& settings);

struct DataLine {
  std::string text;                      // the line as it was split
  std::vector<std::string_view> Fields;  // views into `text`; field n is Fields[n - 1]
  std::string_view replicationField;     // as written, "" when the line has none
  float Replication = 1.0f;

  int FieldCount() const { return static_cast<int>(Fields.size()); }
  std::string_view Field(int number) const { return Fields[static_cast<std::size_t>(number - 1)]; }
  // The fields joined by commas: the line as it was understood.
  std::string Processed() const;
};

// Splits `line` (without comment, trimmed, no control characters but tabs) into `out`.  "_" becomes
// "-" in the fields of the element positions.  A position with a Dvalue takes no item of the line:
// its field is left empty.  Fault: tooManyFields.
[[nodiscard]] Fault SplitDataLine(std::string_view line, const SplitRules& rules, DataLine& out);

// The number behind the replication text in `item`; false when `item` is an ordinary field.
[[nodiscard]] bool ReadReplication(std::string_view item, std::string_view replicationText,
                                   float& value);

}  // namespace flanks

#endif  // FLANKS_DATA_DATA_LINE_H
