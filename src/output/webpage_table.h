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

// All up to the cells of the heading row, without the end of its last line.
std::string WebpageStart(std::string_view what, const Settings& settings);
// From the end of the heading row to the first row.
extern const std::string_view kWebpageRows;
// Behind the last row.
std::string WebpageEnd();

// The heading row: cells that each begin with the tags of row_writer.h.  The first closes a cell
// that is not there and loses that tag.
std::string WebpageHeadings(std::string_view cells);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_WEBPAGE_TABLE_H
