// The importer: data of spreadsheets and statistics packages as text that the data pass reads.
//
// The text is a temporary file of the run; messages go on naming the user's file.
//
// Tested by tests/unit/import/import_data_test.cpp and tests/damage/import_damage_test.cpp.
#ifndef FLANKS_IMPORT_IMPORT_DATA_H
#define FLANKS_IMPORT_IMPORT_DATA_H

#include <cstdint>
#include <string>

#include "import/conversion.h"
#include "run/run.h"

namespace flanks {

// Step: when `Data=` names a file that is no text, makes `importedData` of it.  Faults:
// fileNotFound when the conversion failed, invalidResponse for a cell with an error,
// requiredFileNotFound when this program was built without the library that reads such files,
// badFileFormat for a spreadsheet or package file of a kind that is not read.
void ImportData(Run& run);

// Turns `sourceName` into text in the file `targetName`, which is there.  Tells how it goes; false
// on a fault, and when the user ends the run.
bool ConvertWithImporter(Run& run, const std::string& sourceName, const std::string& targetName);

// Tells how a conversion ended, and sets the fault of one that gave no text: false then.
bool TellConversionEnd(Run& run, const std::string& sourceName, const ConversionEnd& end);

// Where a line of the imported text came from: `row 12 of sheet "Marks"`, or "row 12" of a file
// that has no sheets; with the number of a field, which 0 is not, `row 12, column B of sheet
// "Marks"`.  Empty when the data were not imported.
std::string ImportedPlace(Run& run, std::int64_t lineNumber, int field);

}  // namespace flanks

#endif  // FLANKS_IMPORT_IMPORT_DATA_H
