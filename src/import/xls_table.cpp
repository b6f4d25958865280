#include "import/xls_table.h"

#ifdef FLANKS_HAS_FREEXL

#include <algorithm>
#include <cstdint>
#include <freexl.h>
#include <fstream>
#include <iterator>
#include <vector>

#include "import/compound_file.h"
#include "import/workbook.h"
#include "import/xls_records.h"

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

  const WorkbookSheets& sheets() const { return sheets_; }

 private:
  std::string ReadNames();
  void ReadRecords(std::string_view file);
  void AddValue(const XlsValue& value, int column, ImportText& text) const;

  const void* handle_ = nullptr;  // null for a workbook that FreeXL cannot read
  WorkbookSheets sheets_;
  XlsContents contents_;
};

std::string XlsFile::Open(const ImportName& name) {
  const int code = freexl_open(name.file.c_str(), &handle_);
  if (code != FREEXL_OK) {
    handle_ = nullptr;
    return Reason(code);
  }
  std::ifstream input(name.file, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(input), {});
  ReadRecords(bytes);
  if (contents_.locked) return "it is locked with a password";
  if (std::string reason = ReadNames(); !reason.empty()) return reason;
  // FreeXL does not see that a file ends too soon.
  if (IsBrokenOff(bytes)) return "it is broken off";
  contents_.sheets.resize(sheets_.names.size());
  for (const XlsSheet& sheet : contents_.sheets) sheets_.hidden.push_back(sheet.hidden);
  return sheets_.Choose(name);
}

// FreeXL gives no handle, and no error either, for an empty text among the shared strings.
void XlsFile::ReadRecords(std::string_view file) {
  contents_ = ReadXlsRecords(WorkbookStream(file),
                             handle_ == nullptr ? XlsCells::all : XlsCells::passedOver);
}

std::string XlsFile::ReadNames() {
  if (handle_ == nullptr) {
    for (const XlsSheet& sheet : contents_.sheets) sheets_.names.push_back(sheet.name);
    return {};
  }
  unsigned int value = 0;
  if (freexl_get_info(handle_, FREEXL_BIFF_PASSWORD, &value) == FREEXL_OK &&
      value == FREEXL_BIFF_OBFUSCATED)
    return "it is locked with a password";
  if (freexl_get_info(handle_, FREEXL_BIFF_SHEET_COUNT, &value) != FREEXL_OK) value = 0;
  for (unsigned int i = 0; i < value; ++i) {
    const char* sheet = nullptr;
    freexl_get_worksheet_name(handle_, static_cast<unsigned short>(i), &sheet);
    sheets_.names.emplace_back(sheet == nullptr ? "" : sheet);
  }
  return {};
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
      text.AddText(column, contents_.texts[value.text]);
      break;
    case XlsValue::Kind::error:
      if (contents_.texts[value.text] != "#N/A") text.Refuse(column, contents_.texts[value.text]);
  }
}

std::string XlsFile::ReadSheet(std::size_t sheet, ImportText& text) {
  unsigned int rows = 0;
  unsigned short columns = 0;
  if (handle_ != nullptr) {
    int code = freexl_select_active_worksheet(handle_, static_cast<unsigned short>(sheet));
    if (code == FREEXL_OK) code = freexl_worksheet_dimensions(handle_, &rows, &columns);
    if (code != FREEXL_OK) return Reason(code);
  }
  const std::vector<XlsValue>& values = contents_.sheets[sheet].values;
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
      const int code =
          freexl_get_cell_value(handle_, row, static_cast<unsigned short>(column), &cell);
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
  return ConvertSheets(
      name, file.sheets(),
      [&file](std::size_t sheet, ImportText& to) { return file.ReadSheet(sheet, to); }, text);
}

std::string FirstXlsSheet(const ImportName& name) {
  XlsFile file;
  return file.Open(name).empty() ? file.sheets().first() : "";
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
