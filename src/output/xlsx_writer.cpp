#include "output/xlsx_writer.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "base/shown_text.h"
#include "base/text.h"
#include "base/utf8.h"
#include "base/utf8_text.h"
#include "output/xlsx_book.h"

namespace flanks {

std::string SheetName(const std::string& name) {
  constexpr std::size_t kLongest = 31;
  std::string kept;
  std::string sheet(Utf8Text(name, kept));
  for (char& c : sheet)
    if (std::string_view("[]:*?/\\").find(c) != std::string_view::npos) c = '_';
  // Bytes, of which there are never fewer than characters.
  sheet = CutBetweenCharacters(sheet, kLongest);
  while (!sheet.empty() && sheet.back() == '\'') sheet.pop_back();
  sheet.erase(0, std::min(sheet.find_first_not_of('\''), sheet.size()));
  return sheet.empty() ? "Data" : sheet;
}

#ifndef FLANKS_HAS_XLSXWRITER

XlsxEnd WriteXlsx(const TableSource&, const FileStamp&, const XlsxOptions&, ReplacedFile&) {
  return {WriteEnd::missing};
}

#else

namespace {

constexpr int kWidestColumn = 60, kNarrowestColumn = 6;
constexpr int kFilterButton = 3;  // columns that the button of a filter covers

int WidthOf(const ColumnShape& column, bool hasHeading) {
  const int heading = hasHeading ? DisplayWidth(column.heading) + kFilterButton : 0;
  return std::clamp(std::max(heading, column.columns) + 1, kNarrowestColumn, kWidestColumn);
}

// Whether a sheet may have more than 4 GB before it is packed.
bool IsVast(const TableShape& shape) {
  constexpr double kFourGigabytes = 4e9, kBytesOfMarks = 60.0;  // around a cell, at most
  double bytesOfRow = 0.0;
  for (const ColumnShape& column : shape.columns)
    bytesOfRow += kBytesOfMarks + static_cast<double>(column.bytes);
  const auto rows = static_cast<double>(std::min(shape.rows, kSheetRows));
  return rows * bytesOfRow > kFourGigabytes;
}

// Cut behind so many UTF-16 units, by which a spreadsheet counts.
std::string_view CutToUnits(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  std::size_t units = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if ((byte & 0xC0) == 0x80) continue;  // within a character
    units += byte >= 0xF0 ? 2 : 1;
    if (units > most) return text.substr(0, at);
  }
  return text;
}

// The rows of one table over as many sheets as they need.
class SheetRows {
 public:
  SheetRows(XlsxBook& book, const TableShape& shape, const XlsxOptions& options)
      : book_(book), shape_(shape), options_(options), left_(shape.rows) {
    for (const ColumnShape& column : shape.columns) formats_.push_back(FormatOf(column));
  }

  void WriteRow(const TabText& row) {
    if (sheet_ == nullptr || row_ == options_.sheetRows) BeginSheet();
    for (std::size_t i = 0; i < row.cells().size(); ++i) WriteCell(i, row.cells()[i]);
    ++row_;
    --left_;
  }
  void BeginSheet() {
    sheet_ = book_.AddSheet(options_.sheetName);
    ++end_.sheets;
    row_ = 0;
    for (std::size_t i = 0; i < shape_.columns.size(); ++i) {
      const auto column = static_cast<lxw_col_t>(i);
      const int width = WidthOf(shape_.columns[i], options_.hasHeading);
      XlsxBook::Check(worksheet_set_column(sheet_, column, column, width, formats_[i]));
    }
    if (options_.hasHeading) WriteHeading();
  }
  const XlsxEnd& end() const { return end_; }

 private:
  // Numbers show as many decimals as the text has.
  lxw_format* FormatOf(const ColumnShape& column) {
    if (column.decimals == 0) return nullptr;
    lxw_format* format = workbook_add_format(book_.book());
    const std::string picture = "0." + std::string(static_cast<std::size_t>(column.decimals), '0');
    format_set_num_format(format, picture.c_str());
    return format;
  }

  void WriteHeading() {
    for (std::size_t i = 0; i < shape_.columns.size(); ++i) {
      const bool isNumber = shape_.columns[i].isNumber && shape_.columns[i].hasValue;
      WriteText(i, shape_.columns[i].heading, isNumber ? book_.boldRight() : book_.bold());
    }
    worksheet_freeze_panes(sheet_, 1, 0);
    worksheet_set_landscape(sheet_);
    worksheet_repeat_rows(sheet_, 0, 0);  // on each page of a print
    const std::int64_t rows = std::min(left_, options_.sheetRows - 1);
    if (!shape_.columns.empty())
      XlsxBook::Check(worksheet_autofilter(sheet_, 0, 0, static_cast<lxw_row_t>(rows),
                                           static_cast<lxw_col_t>(shape_.columns.size() - 1)));
    row_ = 1;
  }

  void WriteCell(std::size_t column, std::string_view cell) {
    if (cell.empty()) return;
    const std::optional<double> number = CellNumber(cell);
    if (!number) return WriteText(column, cell, nullptr);
    XlsxBook::Check(worksheet_write_number(sheet_, static_cast<lxw_row_t>(row_),
                                           static_cast<lxw_col_t>(column), *number, nullptr));
  }

  void WriteText(std::size_t column, std::string_view cell, lxw_format* format) {
    text_ = CutToUnits(cell, kCellCharacters);
    if (text_.size() < cell.size()) ++end_.cutCells;
    XlsxBook::Check(worksheet_write_string(sheet_, static_cast<lxw_row_t>(row_),
                                           static_cast<lxw_col_t>(column), text_.c_str(), format));
  }

  XlsxBook& book_;
  const TableShape& shape_;
  const XlsxOptions& options_;
  std::vector<lxw_format*> formats_;  // by column
  lxw_worksheet* sheet_ = nullptr;
  std::int64_t row_ = 0;   // next, of the sheet
  std::int64_t left_ = 0;  // rows not yet written
  std::string text_;
  XlsxEnd end_;
};

}  // namespace

XlsxEnd WriteXlsx(const TableSource& source, const FileStamp& stamp, const XlsxOptions& options,
                  ReplacedFile& target) {
  const TableShape shape = MeasureTable(source, options.hasHeading ? 1 : 0);
  if (shape.stopped) return {WriteEnd::stopped};
  if (shape.columns.size() > kSheetColumns)
    throw std::runtime_error(std::to_string(shape.columns.size()) + " columns, and a sheet takes " +
                             std::to_string(kSheetColumns));
  XlsxBook book(target, stamp, {.isVast = IsVast(shape)});
  SheetRows rows(book, shape, options);
  TabText text(source);
  if (options.hasHeading) text.ReadRow();
  if (shape.rows == 0) rows.BeginSheet();
  while (text.ReadRow()) {
    rows.WriteRow(text);
    if (text.IsStopped()) return {WriteEnd::stopped};
  }
  book.Close();
  return rows.end();
}

#endif  // FLANKS_HAS_XLSXWRITER

}  // namespace flanks
