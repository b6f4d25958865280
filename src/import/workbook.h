// What the readers of workbooks share: which sheets are read, one behind the other.
//
//   WorkbookSheets sheets;
//   sheets.names = ...; sheets.hidden = ...;
//   if (std::string reason = sheets.Choose(name); !reason.empty()) ...
//   return ConvertSheets(name, sheets, readSheet, text);
//
// Tested by tests/unit/import/tables_test.cpp.
#ifndef FLANKS_IMPORT_WORKBOOK_H
#define FLANKS_IMPORT_WORKBOOK_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "import/conversion.h"
#include "import/import_text.h"

namespace flanks {

struct WorkbookSheets {
  std::vector<std::string> names;   // in the order of the workbook
  std::vector<bool> hidden;         // one for each
  std::vector<std::size_t> chosen;  // rows of `names`

  // Fills `chosen` with the sheets that the user means; in words why there are none.
  std::string Choose(const ImportName& name);
  // The name of the first that is chosen.
  std::string first() const { return chosen.empty() ? "" : names[chosen.front()]; }
};

// Puts the rows of a sheet into the text; in words why it cannot be read.
using ReadSheet = std::function<std::string(std::size_t sheet, ImportText& text)>;

// Reads the chosen sheets one behind the other.
ConversionEnd ConvertSheets(const ImportName& name, const WorkbookSheets& sheets,
                            const ReadSheet& read, ImportText& text);

}  // namespace flanks

#endif  // FLANKS_IMPORT_WORKBOOK_H
