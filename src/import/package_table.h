// The data of statistics packages: Stata's .dta, SPSS's .sav, SAS's .sas7bdat, by ReadStat.
//
// A case is a row, a variable a column; the variables' names are a comment line.  A value that is
// missing, by the system's word or by the user's, is an empty cell.  Value labels and formats are
// not used: a date is the number that is stored.
//
// ReadStat reads case by case, so memory does not grow with the file.  Tested by
// tests/unit/import/tables_test.cpp and tests/damage/import_damage_test.cpp.
#ifndef FLANKS_IMPORT_PACKAGE_TABLE_H
#define FLANKS_IMPORT_PACKAGE_TABLE_H

#include "import/conversion.h"
#include "import/import_text.h"

namespace flanks {

ConversionEnd ConvertPackage(const ImportName& name, ImportText& text);

}  // namespace flanks

#endif  // FLANKS_IMPORT_PACKAGE_TABLE_H
