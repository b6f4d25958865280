// The Score, Residual and Graph files as files: which form a name asks for, where the rows go, and
// what is told.
//
// Text and webpage are written under their name.  The forms of other programs are made from a
// tab-separated text in a temporary file (output/hand_offs).
//
// Tested by tests/unit/output/table_file_test.cpp.
#ifndef FLANKS_OUTPUT_TABLE_FILE_H
#define FLANKS_OUTPUT_TABLE_FILE_H

#include <functional>
#include <string>
#include <string_view>

#include "output/destination.h"
#include "output/hand_offs.h"
#include "output/row_writer.h"
#include "run/run.h"

namespace flanks {

// What all tables have in common; a request may have others than the settings.
struct TableOptions {
  std::string OutputSeparator = " ";
  std::string OutputQuote;
  bool IncludeHeadings = true;
  ExcelSource source = ExcelSource::run;
  bool showInR = false;
};
TableOptions TableOptionsOf(const Settings& settings);

// How rows of a form look.  In the texts that are handed on the separator is a tab, and labels have
// no quote marks.
RowForm RowFormOf(OutputForm form, const TableOptions& options, const Settings& settings);

// One table, ready to be written in any form.
struct TableFile {
  const char* routine = "";   // for messages
  std::string_view prefix;    // of a temporary text
  std::string caption;        // of the editor's window
  std::string_view spssKind;  // empty: there is no SPSS form
  RTable rTable;
  std::function<void(OutputForm, Destination&)> write;
};

// Writes the table under the name, in the form that the name asks for.  False when that failed,
// which is told, or was broken off.
bool WriteTableFile(Run& run, const std::string& name, const TableFile& table,
                    const TableOptions& options);

// The name with the current folder in front of it when it has no folder.
std::string AbsoluteName(const std::string& name);

}  // namespace flanks

#endif  // FLANKS_OUTPUT_TABLE_FILE_H
