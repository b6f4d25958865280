#include "import/workbook.h"

namespace flanks {

std::string WorkbookSheets::Choose(const ImportName& name) {
  if (names.empty()) return "it has no sheets";
  return ChooseSheets(name.sheets, names, hidden, chosen);
}

ConversionEnd ConvertSheets(const ImportName& name, const WorkbookSheets& sheets,
                            const ReadSheet& read, ImportText& text) {
  for (const std::size_t sheet : sheets.chosen) {
    text.BeginSheet(sheets.names[sheet]);
    if (name.sheets.empty()) text.TellSheets(sheets.names.size());
    if (const std::string reason = read(sheet, text); !reason.empty())
      return ConversionFailed("sheet \"" + sheets.names[sheet] + "\": " + reason);
    text.EndSheet();
    if (text.broken()) break;
  }
  return {};
}

}  // namespace flanks
