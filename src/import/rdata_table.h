// The first data frame of an .rda or .rdata file, by librdata.
//
// A row of the frame is a row, a column a column; the columns' names are a comment line.  Factors
// are their labels, TRUE and FALSE 1 and 0, NA an empty cell, dates "2024-03-01".  Other objects of
// the file are passed over, and the user is told which frame was read when there are several.
//
// librdata gives a column after the other, so the frame is in memory.  It reads unpacked files only
// (import/unpacked_file).  Tested by tests/unit/import/tables_test.cpp and
// tests/damage/import_damage_test.cpp.
#ifndef FLANKS_IMPORT_RDATA_TABLE_H
#define FLANKS_IMPORT_RDATA_TABLE_H

#include <string>

#include "import/conversion.h"
#include "import/import_text.h"

namespace flanks {

// `file` is unpacked.
ConversionEnd ConvertRdata(const std::string& file, const ConversionWatch& watch, ImportText& text);

}  // namespace flanks

#endif  // FLANKS_IMPORT_RDATA_TABLE_H
