#include "import/import_name.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "base/text.h"
#include "spec/file_names.h"

namespace flanks {
namespace {

struct Ending {
  std::string_view text;
  DataKind kind;
};
constexpr std::array kEndings = {
    Ending{".XLSX", DataKind::xlsx},    Ending{".XLS", DataKind::xls},
    Ending{".DTA", DataKind::stata},    Ending{".SAV", DataKind::spss},
    Ending{".SAS7BDAT", DataKind::sas}, Ending{".RDA", DataKind::rdata},
    Ending{".RDATA", DataKind::rdata},
};

// Kinds that are not read, and what their programs can save instead.
struct OtherEnding {
  std::string_view text;
  std::string_view saved;
};
constexpr std::array kOtherEndings = {
    OtherEnding{".XLSM", ".xlsx"}, OtherEnding{".XLSB", ".xlsx"}, OtherEnding{".ODS", ".xlsx"},
    OtherEnding{".ZSAV", ".sav"},  OtherEnding{".RDS", ".rda"},
};

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// The row of the sheet that an item names.
std::size_t FindSheet(std::string_view item, const std::vector<std::string>& names) {
  for (std::size_t i = 0; i < names.size(); ++i)
    if (names[i] == item) return i;
  for (std::size_t i = 0; i < names.size(); ++i)
    if (UpperCase(names[i]) == UpperCase(item)) return i;
  std::size_t number = 0;
  for (const char c : item) {
    if (!IsDigit(c) || number > names.size()) return kNone;
    number = number * 10 + static_cast<std::size_t>(c - '0');
  }
  return number >= 1 && number <= names.size() ? number - 1 : kNone;
}

// The first names in quotes.
std::string ListOf(const std::vector<std::string>& names) {
  constexpr std::size_t kMostNames = 10;
  std::string list;
  for (std::size_t i = 0; i < names.size() && i < kMostNames; ++i)
    list += (i == 0 ? "" : ", ") + InQuotes(names[i]);
  return names.size() > kMostNames ? list + " and others" : list;
}

std::string_view WithoutQuoteMarks(std::string_view item) {
  const bool quoted = item.size() > 1 && item.front() == item.back() &&
                      (item.front() == '"' || item.front() == '\'');
  return quoted ? Trim(item.substr(1, item.size() - 2)) : item;
}

}  // namespace

ImportName ReadImportName(std::string_view name) {
  ImportName read;
  read.file = std::string(WithoutSheetList(name));
  const std::string upper = UpperCase(read.file);
  for (const Ending& ending : kEndings) {
    if (!upper.ends_with(ending.text)) continue;
    read.kind = ending.kind;
    break;
  }
  if (read.file.size() == name.size()) return read;
  std::string_view list = name.substr(read.file.size() + 1);
  if (const std::size_t end = list.rfind(')'); end != std::string_view::npos)
    list = list.substr(0, end);
  if (Trim(list).empty()) return read;
  for (const std::string_view item : CommaFields(list))
    read.sheets.emplace_back(WithoutQuoteMarks(item));
  return read;
}

std::string_view EndingToSaveAs(std::string_view name) {
  const std::string upper = UpperCase(name);
  for (const OtherEnding& ending : kOtherEndings)
    if (upper.ends_with(ending.text)) return ending.saved;
  return {};
}

std::string_view KindWord(DataKind kind) {
  switch (kind) {
    case DataKind::xlsx:
    case DataKind::xls:
      return "Excel";
    case DataKind::stata:
      return "STATA";
    case DataKind::spss:
      return "SPSS";
    case DataKind::sas:
      return "SAS";
    case DataKind::rdata:
      return "R data";
    case DataKind::text:
      break;
  }
  return "text";
}

std::string ChooseSheets(const std::vector<std::string>& wanted,
                         const std::vector<std::string>& names, const std::vector<bool>& hidden,
                         std::vector<std::size_t>& chosen) {
  chosen.clear();
  if (wanted.empty()) {
    const auto shown = std::find(hidden.begin(), hidden.end(), false);
    chosen.push_back(shown == hidden.end() ? 0 : static_cast<std::size_t>(shown - hidden.begin()));
    return {};
  }
  for (const std::string& item : wanted) {
    const std::size_t row = FindSheet(item, names);
    if (row == kNone) return "there is no sheet \"" + item + "\" in it, only " + ListOf(names);
    chosen.push_back(row);
  }
  return {};
}

}  // namespace flanks
