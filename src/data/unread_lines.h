// Lines that stand behind the "*" that ends the data, which nothing reads.
//
// Tested by tests/unit/data/unread_lines_test.cpp.
#ifndef FLANKS_DATA_UNREAD_LINES_H
#define FLANKS_DATA_UNREAD_LINES_H

#include "run/console.h"
#include "spec/specification_reader.h"

namespace flanks {

// `source` has just read a line "*".  Says on the screen when a line with more than a comment or
// another "*" stands behind it in its file or, when that is an include file, behind the "%" line of
// the top file.  The files are opened anew, up to the first such line; those without a length of
// their own (pipes) are left alone.
void TellUnreadLines(const SpecificationSource& source, Console& console);

}  // namespace flanks

#endif  // FLANKS_DATA_UNREAD_LINES_H
