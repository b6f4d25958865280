// Files of other programs for the tests of the importer, made by the libraries that write them.
//
// A table is rows of cells; a cell is a number, a text or nothing.
#ifndef FLANKS_TESTS_SUPPORT_IMPORT_FILES_H
#define FLANKS_TESTS_SUPPORT_IMPORT_FILES_H

#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace flanks {

using TestCell = std::variant<std::monostate, double, std::string>;
using TestRow = std::vector<TestCell>;
using TestTable = std::vector<TestRow>;

// The lines "1,2,abc" as rows: a field that is a number becomes one, an empty field nothing.
// Comments behind ";" are left out, and lines with nothing else.
TestTable TableOf(std::string_view lines);

// The bytes of a zip file with these parts.
std::string ZipBytes(const std::vector<std::pair<std::string, std::string>>& parts);

// A workbook: name and XML of each sheet ("<sheetData>...</sheetData>"), and the shared strings.
struct TestSheet {
  std::string name;
  std::string data;
  bool hidden = false;
};
struct TestWorkbook {
  std::vector<TestSheet> sheets;
  std::string strings;  // "<si><t>a</t></si>"
  std::string styles;   // "<cellXfs>...</cellXfs>"
  std::string properties;
};
std::vector<std::pair<std::string, std::string>> XlsxParts(const TestWorkbook& workbook);
std::string XlsxBytes(const TestWorkbook& workbook);
// The sheet of a table: numbers, and texts as inline strings.
std::string SheetData(const TestTable& table);

// Variables v1, v2, ... ; a column that holds a text is one of texts.  `kind` is "dta", "sav" or
// "sas7bdat".
std::string PackageBytes(const std::string& kind, const TestTable& table);
// A .sav with user-missing values: 9 of the first variable, 90 to 99 of the second.
std::string SavWithUserMissing(const TestTable& table);

// A data frame of that name, unpacked.
std::string RdataBytes(const std::string& name, const TestTable& table);

std::string GzipBytes(std::string_view bytes);
std::string Bzip2Bytes(std::string_view bytes);
std::string XzBytes(std::string_view bytes);

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_IMPORT_FILES_H
