// The sheets of an .xls workbook, by FreeXL.
//
// FreeXL has the workbook in memory, which is small: a sheet of this form has 65,536 rows.  It
// gives dates as text ("2024-03-01"), TRUE and FALSE as 1 and 0.  What it passes over, values of
// formulas, error values and which sheets are hidden, comes from import/xls_records; so does all of
// a workbook that it does not open.
//
// Tested by tests/unit/import/tables_test.cpp and tests/damage/import_damage_test.cpp.
#ifndef FLANKS_IMPORT_XLS_TABLE_H
#define FLANKS_IMPORT_XLS_TABLE_H

#include <string>

#include "import/conversion.h"
#include "import/import_text.h"

namespace flanks {

// Puts the rows of the chosen sheets into `text`.
ConversionEnd ConvertXls(const ImportName& name, ImportText& text);

// The name of the first chosen sheet; empty when the file cannot be read.
std::string FirstXlsSheet(const ImportName& name);

}  // namespace flanks

#endif  // FLANKS_IMPORT_XLS_TABLE_H
