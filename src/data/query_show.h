// Query=Yes: what became of each datum, shown line by line.
//
// Each message has a code and its words; some take a text of the caller's in front or behind.  A
// line of the data ends with the prompt and, where there is a window, a wait for a key.
//
// Tested by tests/unit/data/query_show_test.cpp.
#ifndef FLANKS_DATA_QUERY_SHOW_H
#define FLANKS_DATA_QUERY_SHOW_H

#include <string>
#include <string_view>

#include "run/console.h"
#include "run/shell_interface.h"

namespace flanks {

enum class QueryCode : int {
  header = 1,
  blank = 2,
  r0 = 3,
  datum = 4,
  noDatum = 5,
  unspecified = 6,
  noMatch = 7,
  matched = 8,
  text = 9,
  missing = 10,
  model = 11,
  recoded = 12,
  negative = 13,
  nonNumeric = 14,
  invalidModel = 15,
};

// The words of a code with the caller's text in its place.
std::string QueryText(QueryCode code, std::string_view text);

// Shows one message.
void QueryShow(Console& console, QueryCode code, std::string_view text);

// The end of a data line: the prompt and the wait.
void QueryWait(Console& console, Dialogs& dialogs);

}  // namespace flanks

#endif  // FLANKS_DATA_QUERY_SHOW_H
