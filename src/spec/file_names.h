// File names as users write them: what is refused, where a file is looked for, what the report is
// called when nobody named it.
//
// "/" and "\" both end a folder.  Names of files to be written are relative to the current folder;
// a file to be read that is not there is looked for in the Specification's folder as well.
//
// Tested by tests/unit/spec/file_names_test.cpp.
#ifndef FLANKS_SPEC_FILE_NAMES_H
#define FLANKS_SPEC_FILE_NAMES_H

#include <string>
#include <string_view>

#include "run/faults.h"

namespace flanks {

// Faults: noFileName; badFileName, for a name that holds * or ? or ends with \ / or :.
[[nodiscard]] Fault CheckFileName(std::string_view name);

// `name` when there is such a file or nowhere else; otherwise the file of that name in the folder
// of `specificationFile`.
std::string FindFileToRead(const std::string& name, const std::string& specificationFile);

// The report of a Specification: its name with ".out.txt" in place of its last extension.
std::string DefaultOutputName(std::string_view specificationFile);

// The name of the output file of one Flank: its number, and the last dot once more, in front of the
// last extension of `name`; without one that is ".txt".  "scores" becomes "scores.2.txt".
std::string MakeOutputFileName(std::string_view name, int flank);

// Whether two names lead to one file; names of files that are not there are compared as written.
bool SameFile(const std::string& a, const std::string& b);

// The name of a spreadsheet without the list of its sheets, "marks.xlsx" of "marks.xlsx(Monday,3)";
// any other name as it is.
std::string_view WithoutSheetList(std::string_view name);

// The name under which a workbook is written: the older form, .xls, is not written and becomes
// .xlsx
// (.XLSX).  Any other name as it is.
std::string WorkbookName(const std::string& name);

// "\"name\"".
std::string InQuotes(std::string_view name);

}  // namespace flanks

#endif  // FLANKS_SPEC_FILE_NAMES_H
