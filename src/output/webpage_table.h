// The page around the rows of an output file in webpage form: a table that sorts by a column on a
// click on its heading, both ways.
//
// The rows come from RowWriter in page layout; the page is complete in itself, with a style and a
// script of its own.  The script serves any table of the class `sortable`.
//
// Tested by tests/unit/output/webpage_table_test.cpp, where node is there also the script.
#ifndef FLANKS_OUTPUT_WEBPAGE_TABLE_H
#define FLANKS_OUTPUT_WEBPAGE_TABLE_H

#include <string>
#include <string_view>

#include "run/settings.h"

namespace flanks {

// What a page shows, as its title says.
constexpr std::string_view kScorePage = "Scores: ";
constexpr std::string_view kResponsePage = "Observations: ";
constexpr std::string_view kGraphPage = "Graphs: ";

// All in front of the first row.  `cells` of the heading row each begin with the tags of
// row_writer.h; the first loses that which would close a cell before it.
std::string WebpageHead(std::string_view what, const Settings& settings, std::string_view cells);
// All behind the last row.
std::string WebpageEnd();

}  // namespace flanks

#endif  // FLANKS_OUTPUT_WEBPAGE_TABLE_H
