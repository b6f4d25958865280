// Tables as .xlsx workbooks.
//
// Numbers are numbers, all else is text.  The heading row is bold, stays in sight and has filters;
// columns are as wide as what they hold, and numbers show the decimals of the text.  A table with
// more rows than a sheet takes goes on on further sheets, each with the heading.  Rows go to disk
// one after the other, so that memory does not grow with them.  Title, program and date are among
// the properties of the workbook.
//
// Uses libxlsxwriter; a build without it writes nothing and says so.
//
// Tested by tests/unit/output/hand_offs_test.cpp and, read back by a spreadsheet program, by
// tests/checks/read_back_test.cpp.
#ifndef FLANKS_OUTPUT_XLSX_WRITER_H
#define FLANKS_OUTPUT_XLSX_WRITER_H

#include <cstdint>
#include <string>

#include "base/replaced_file.h"
#include "output/tab_text.h"

namespace flanks {

constexpr std::int64_t kSheetRows = 1'048'576;  // that a sheet takes, with its heading
constexpr std::size_t kSheetColumns = 16'384;
constexpr std::size_t kCellCharacters = 32'767;

struct XlsxOptions {
  bool hasHeading = true;
  std::string sheetName = "Data";       // what a name may not have is replaced
  std::int64_t sheetRows = kSheetRows;  // less in tests
};

struct XlsxEnd {
  WriteEnd end = WriteEnd::complete;
  int sheets = 0;
  std::int64_t cutCells = 0;  // texts longer than a cell takes
};

// Writes the table of `source` into the target, which the caller commits.  Throws a
// std::runtime_error or std::system_error with the reason.
XlsxEnd WriteXlsx(const TableSource& source, const FileStamp& stamp, const XlsxOptions& options,
                  ReplacedFile& target);

// A name that a spreadsheet program takes for a sheet: no more than 31 characters, none of
// []:*?/\, no apostrophe at its ends; "Data" for none.
std::string SheetName(const std::string& name);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_XLSX_WRITER_H
