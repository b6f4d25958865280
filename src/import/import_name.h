// What `Data=` names: a text file, or a file of another program that is turned into text first.
//
// The ending tells, in any case of letters.  A spreadsheet's name may be followed by a list of its
// sheets in parentheses, by name or by number: "marks.xlsx(Monday,3)".
//
// Tested by tests/unit/import/import_text_test.cpp and fuzz/import_text_fuzz.cpp.
#ifndef FLANKS_IMPORT_IMPORT_NAME_H
#define FLANKS_IMPORT_IMPORT_NAME_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace flanks {

enum class DataKind : std::uint8_t { text, xlsx, xls, stata, spss, sas, rdata };

struct ImportName {
  DataKind kind = DataKind::text;
  std::string file;                 // without the list
  std::vector<std::string> sheets;  // as given, trimmed; empty when there is no list
};

ImportName ReadImportName(std::string_view name);

// Whether the file is no text and has to be converted.
inline bool NeedsImporter(std::string_view name) {
  return ReadImportName(name).kind != DataKind::text;
}

// What a file of a kind that is not read can be saved as, by its name: ".xlsx" of "marks.ods".
// Empty for other names.
std::string_view EndingToSaveAs(std::string_view name);

// "Excel", "STATA", "SPSS", "SAS", "R data".
std::string_view KindWord(DataKind kind);

// Which of `names` the user means: those of the list, in its order, each by its name (in any case
// of letters when none is written just so) or else by its number from 1 on; without a list the
// first that is not hidden.  Gives rows of `names` from 0 on in `chosen`, or in words that an item
// is no sheet.
std::string ChooseSheets(const std::vector<std::string>& wanted,
                         const std::vector<std::string>& names, const std::vector<bool>& hidden,
                         std::vector<std::size_t>& chosen);

}  // namespace flanks

#endif  // FLANKS_IMPORT_IMPORT_NAME_H
