// The programs that the files for other programs are read back with: LibreOffice, PSPP, R.
//
// Each gives all cells as texts.  None is started when it is not installed: HasProgram says so.
#ifndef FLANKS_TESTS_SUPPORT_OTHER_PROGRAMS_H
#define FLANKS_TESTS_SUPPORT_OTHER_PROGRAMS_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support/scratch_folder.h"

namespace flanks {

using TableCells = std::vector<std::vector<std::string>>;  // rows of cells

// Whether a program of this name is on PATH.
bool HasProgram(const std::string& name);

// The rows and cells of comma-separated text with double quotes.
TableCells ReadCommaSeparated(std::string_view text);

// Every sheet of the workbooks (names in the folder, "a.xlsx"), by "a-SHEET", in LibreOffice.
// Cells are as a user sees them.  The files "a-SHEET.csv" stay: in them texts have quotes around
// them, and numbers none.
std::map<std::string, TableCells> SheetsInLibreOffice(const ScratchFolder& folder,
                                                      const std::vector<std::string>& names);

// The workbook with its charts as one XML text (.fods), as LibreOffice understands it.
std::string FlatFormInLibreOffice(const ScratchFolder& folder, const std::string& name);

// The variables' names and the cases of an SPSS file, in PSPP.
TableCells CasesInPspp(const ScratchFolder& folder, const std::string& name);
// What PSPP prints for a syntax.
std::string OutputOfPspp(const ScratchFolder& folder, const std::string& syntax);

// The data frame of a workspace in R: names, then for each column its class, then the rows; numbers
// with 17 digits, NA as "NA".
TableCells FrameInR(const ScratchFolder& folder, const std::string& name,
                    const std::string& objectName);
// What R prints for a script.
std::string OutputOfR(const ScratchFolder& folder, const std::string& script);

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_OTHER_PROGRAMS_H
