// What FreeXL does not tell of an .xls workbook: the values of formulas, error values, and which
// sheets are hidden.
//
// An .xls file is a compound file, a small file system of sectors; its stream "Workbook" is a row
// of records, each with a type and a length.  Formulas keep the value that they had when the
// workbook was saved.  The layout is published: Microsoft's [MS-CFB] and [MS-XLS].
//
// A file of another layout (workbooks before 1993 are no compound files), or a damaged one, gives
// what was found up to there.  Tested by tests/unit/import/tables_test.cpp and
// fuzz/import_files_fuzz.cpp.
#ifndef FLANKS_IMPORT_XLS_FORMULAS_H
#define FLANKS_IMPORT_XLS_FORMULAS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace flanks {

struct XlsValue {
  enum class Kind : std::uint8_t { empty, number, date, text, error };
  std::uint32_t row = 0;  // from 0 on
  std::uint32_t column = 0;
  Kind kind = Kind::empty;
  double number = 0.0;
  std::size_t text = 0;  // of texts, dates and errors: row of XlsFormulas::texts
};

struct XlsSheet {
  bool hidden = false;
  std::vector<XlsValue> values;  // by row and column, ascending
};

struct XlsFormulas {
  std::vector<XlsSheet> sheets;  // in the order of the workbook
  std::vector<std::string> texts;
};

// The stream "Workbook" of the compound file with these bytes; empty when there is none.
std::string WorkbookStream(std::string_view file);

// Whether sectors that are in use lie behind the end of the compound file with these bytes.
bool IsBrokenOff(std::string_view file);

XlsFormulas ReadXlsFormulas(std::string_view stream);

}  // namespace flanks

#endif  // FLANKS_IMPORT_XLS_FORMULAS_H
