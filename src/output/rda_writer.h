// Tables as R workspaces (.rda) with one data frame.
//
// Columns of numbers are numbers, with NA for an empty cell and for what is too large for the form;
// all others are texts.  Names are those of the heading line.  The file holds whole columns, so the
// text is read once for as many columns as fit into a fixed room; memory does not grow with the
// number of columns.
//
// Uses librdata; a build without it writes nothing and says so.
//
// Tested by tests/unit/output/hand_offs_test.cpp and, read back by R, by
// tests/checks/read_back_test.cpp.
#ifndef FLANKS_OUTPUT_RDA_WRITER_H
#define FLANKS_OUTPUT_RDA_WRITER_H

#include <cstddef>
#include <string>
#include <vector>

#include "base/replaced_file.h"
#include "output/tab_text.h"

namespace flanks {

struct RdaOptions {
  std::string objectName;                         // of the data frame
  std::vector<bool> isLabel = {};                 // by column: text, whatever stands in it
  std::size_t roomBytes = std::size_t{64} << 20;  // for columns of numbers; less in tests
};

// Writes the table of `source`, whose first line is the heading, to `target`; the caller commits.
// Of columns with one heading the second is named "Status.1", as R does it.  Throws a
// std::runtime_error or std::system_error with the reason.
WriteEnd WriteRda(const TableSource& source, const FileStamp& stamp, const RdaOptions& options,
                  ReplacedFile& target);

// The names, the second and further of equal ones with ".1", ".2" and so on behind them, less those
// that are there already: R's make.unique.
std::vector<std::string> DistinctNames(std::vector<std::string> names);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_RDA_WRITER_H
