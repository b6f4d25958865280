// The records of an .xls workbook: what FreeXL does not tell of it, or all.
//
// FreeXL passes over the values of formulas, error values, and which sheets are hidden; a workbook
// with an empty text among its shared strings it does not open at all.
//
// The workbook is a row of records, each with a type and a length.  Formulas keep the value that
// they had when it was saved.  The layout is published: Microsoft's [MS-XLS].
//
// A damaged stream gives what was found up to there.  Tested by tests/unit/import/tables_test.cpp
// and fuzz/import_files_fuzz.cpp.
#ifndef FLANKS_IMPORT_XLS_RECORDS_H
#define FLANKS_IMPORT_XLS_RECORDS_H

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
  std::size_t text = 0;  // of texts, dates and errors: row of XlsContents::texts
};

struct XlsSheet {
  std::string name;
  bool hidden = false;
  std::vector<XlsValue> values;  // by row and column, ascending
};

struct XlsContents {
  std::vector<XlsSheet> sheets;  // in the order of the workbook
  std::vector<std::string> texts;
  bool locked = false;  // with a password: no values
};

// The values that a sheet's `values` get.
enum class XlsCells : std::uint8_t {
  passedOver,  // by FreeXL: of formulas, and errors
  all,
};

// `stream`: the stream "Workbook" of import/compound_file.
XlsContents ReadXlsRecords(std::string_view stream, XlsCells cells);

}  // namespace flanks

#endif  // FLANKS_IMPORT_XLS_RECORDS_H
