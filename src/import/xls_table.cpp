#include "import/xls_table.h"

#ifdef FLANKS_HAS_FREEXL

#include <algorithm>
#include <cstdint>
#include <freexl.h>
#include <fstream>
#include <iterator>
#include <vector>

#include "import/xls_formulas.h"

namespace flanks {
namespace {

std::string Reason(int code) {
  switch (code) {
    case FREEXL_FILE_NOT_FOUND:
      return "it cannot be opened";
    case FREEXL_INSUFFICIENT_MEMORY:
      return "there is not enough memory for it";
    case FREEXL_INVALID_CFBF_HEADER:
    case FREEXL_CFBF_INVALID_SIGNATURE:
    case FREEXL_CFBF_READ_ERROR:
    case FREEXL_BIFF_WORKBOOK_NOT_FOUND:
      return "it is no .xls file, or is damaged";
    case FREEXL_UNSUPPORTED_CHARSET:
      return "it is in characters that are not known here";
    default:
      return "it is damaged (code " + std::to_string(code) + " of FreeXL)";
  }
}

class XlsFile {
 public:
  XlsFile() = default;
  XlsFile(const XlsFile&) = delete;
  XlsFile& operator=(const XlsFile&) = delete;
  ~XlsFile() {
    if (handle_ != nullptr) freexl_close(handle_);
  }

  // Each gives the reason why it cannot go on, or nothing.
  std::string Open(const ImportName& name);
  std::string ReadSheet(std::size_t sheet, ImportText& text);

  std::size_t sheets() const { return names_.size(); }
  const std::vector<std::size_t>& chosen() const { return chosen_; }
  const std::string& sheetName(std::size_t sheet) const { return names_[sheet]; }

 private:
  bool ReadFormulas(const std::string& file);
  void AddValue(const XlsValue& value, int column, ImportText& text) const;

  const void* handle_ = nullptr;
  std::vector<std::string> names_;
  std::vector<std::size_t> chosen_;
  XlsFormulas formulas_;
};

std::string XlsFile::Open(const ImportName& name) {
  if (const int code = freexl_open(name.file.c_str(), &handle_); code != FREEXL_OK) {
    handle_ = nullptr;
    return Reason(code);
  }
  unsigned int value = 0;
  if (freexl_get_info(handle_, FREEXL_BIFF_PASSWORD, &value) == FREEXL_OK &&
      value == FREEXL_BIFF_OBFUSCATED)
    return "it is locked with a password";
  if (freexl_get_info(handle_, FREEXL_BIFF_SHEET_COUNT, &value) != FREEXL_OK || value == 0)
    return "it has no sheets";
  for (unsigned int i = 0; i < value; ++i) {
    const char* sheet = nullptr;
    freexl_get_worksheet_name(handle_, static_cast<unsigned short>(i), &sheet);
    names_.emplace_back(sheet == nullptr ? "" : sheet);
  }
  if (!ReadFormulas(name.file)) return "it is broken off";
  std::vector<bool> hidden;
  for (const XlsSheet& sheet : formulas_.sheets) hidden.push_back(sheet.hidden);
  return ChooseSheets(name.sheets, names_, hidden, chosen_);
}

// FreeXL passes over the values of formulas, and does not see that a file ends too soon.
bool XlsFile::ReadFormulas(const std::string& file) {
  std::string stream;
  {
    std::ifstream input(file, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(input), {});
    if (IsBrokenOff(bytes)) return false;
    stream = WorkbookStream(bytes);
  }
  formulas_ = ReadXlsFormulas(stream);
  formulas_.sheets.resize(names_.size());
  return true;
}

// False when it is no value of a cell.
bool AddCell(const FreeXL_CellValue& cell, int column, ImportText& text) {
  switch (cell.type) {
    case FREEXL_CELL_NULL:
      return true;
    case FREEXL_CELL_INT:
      text.AddNumber(column, static_cast<double>(cell.value.int_value));
      return true;
    case FREEXL_CELL_DOUBLE:
      text.AddNumber(column, cell.value.double_value);
      return true;
    case FREEXL_CELL_TEXT:
    case FREEXL_CELL_SST_TEXT:
    case FREEXL_CELL_DATE:
    case FREEXL_CELL_DATETIME:
    case FREEXL_CELL_TIME:
      if (cell.value.text_value == nullptr) return false;
      text.AddText(column, cell.value.text_value);
      return true;
    default:
      return false;
  }
}

void XlsFile::AddValue(const XlsValue& value, int column, ImportText& text) const {
  switch (value.kind) {
    case XlsValue::Kind::empty:
      break;
    case XlsValue::Kind::number:
      text.AddNumber(column, value.number);
      break;
    case XlsValue::Kind::date:
    case XlsValue::Kind::text:
      text.AddText(column, formulas_.texts[value.text]);
      break;
    case XlsValue::Kind::error:
      if (formulas_.texts[value.text] != "#N/A") text.Refuse(column, formulas_.texts[value.text]);
  }
}

std::string XlsFile::ReadSheet(std::size_t sheet, ImportText& text) {
  unsigned int rows = 0;
  unsigned short columns = 0;
  int code = freexl_select_active_worksheet(handle_, static_cast<unsigned short>(sheet));
  if (code == FREEXL_OK) code = freexl_worksheet_dimensions(handle_, &rows, &columns);
  if (code != FREEXL_OK) return Reason(code);
  const std::vector<XlsValue>& values = formulas_.sheets[sheet].values;
  unsigned int lastRow = rows, lastColumn = columns;
  for (const XlsValue& value : values) {
    lastRow = std::max(lastRow, value.row + 1);
    lastColumn = std::max(lastColumn, value.column + 1);
  }
  auto next = values.begin();
  for (unsigned int row = 0; row < lastRow && !text.broken(); ++row) {
    text.BeginRow(row + 1);
    for (unsigned int column = 0; column < lastColumn; ++column) {
      const int number = static_cast<int>(column) + 1;
      if (next != values.end() && next->row == row && next->column == column) {
        AddValue(*next, number, text);
        while (next != values.end() && next->row == row && next->column == column) ++next;
        continue;
      }
      if (row >= rows || column >= columns) continue;
      FreeXL_CellValue cell;
      code = freexl_get_cell_value(handle_, row, static_cast<unsigned short>(column), &cell);
      if (code != FREEXL_OK) return Reason(code);
      if (!AddCell(cell, number, text))
        return "a cell of row " + std::to_string(row + 1) + " is damaged";
    }
    text.EndRow();
  }
  return {};
}

}  // namespace

ConversionEnd ConvertXls(const ImportName& name, ImportText& text) {
  XlsFile file;
  if (std::string reason = file.Open(name); !reason.empty()) return ConversionFailed(reason);
  for (const std::size_t sheet : file.chosen()) {
    text.BeginSheet(file.sheetName(sheet));
    if (name.sheets.empty()) text.TellSheets(file.sheets());
    if (const std::string reason = file.ReadSheet(sheet, text); !reason.empty())
      return ConversionFailed("sheet \"" + file.sheetName(sheet) + "\": " + reason);
    text.EndSheet();
    if (text.broken()) break;
  }
  return {};
}

std::string FirstXlsSheet(const ImportName& name) {
  XlsFile file;
  if (!file.Open(name).empty() || file.chosen().empty()) return {};
  return file.sheetName(file.chosen().front());
}

}  // namespace flanks

#else

namespace flanks {

ConversionEnd ConvertXls(const ImportName&, ImportText&) {
  return WithoutModule("FreeXL");
}
std::string FirstXlsSheet(const ImportName&) {
  return {};
}

}  // namespace flanks

#endif
