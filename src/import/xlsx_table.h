// The sheets of an .xlsx workbook: a zip of XML parts.  This file sees the zip, xlsx_table_parts
// the XML.
//
// Sheets and shared strings are unpacked piece by piece; the small parts are bounded in size.  A
// file that unpacks to far more than a workbook does is refused before it is unpacked.
//
// Tested by tests/unit/import/tables_test.cpp and tests/damage/import_damage_test.cpp.
#ifndef FLANKS_IMPORT_XLSX_TABLE_H
#define FLANKS_IMPORT_XLSX_TABLE_H

#include <string>

#include "import/conversion.h"
#include "import/import_text.h"

namespace flanks {

// Puts the rows of the chosen sheets into `text`.
ConversionEnd ConvertXlsx(const ImportName& name, ImportText& text);

// The name of the first chosen sheet; empty when the file cannot be read.
std::string FirstXlsxSheet(const ImportName& name);

}  // namespace flanks

#endif  // FLANKS_IMPORT_XLSX_TABLE_H
