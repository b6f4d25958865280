#include "output/tab_text.h"

#include <algorithm>
#include <charconv>
#include <ctime>
#include <stdexcept>
#include <system_error>

#include "base/date_text.h"
#include "base/text.h"
#include "base/utf8.h"
#include "base/utf8_text.h"

namespace flanks {
namespace {

constexpr std::int64_t kRowsBetweenLooks = 1024;  // at whether the work is stopped

int DecimalsOf(std::string_view number) {
  const std::size_t point = number.find('.');
  if (point == std::string_view::npos) return 0;
  const std::size_t end = number.find_first_not_of("0123456789", point + 1);
  return static_cast<int>(std::min(end, number.size()) - point - 1);
}

void MeasureCell(std::string_view cell, ColumnShape& column) {
  if (cell.empty()) return;
  column.hasValue = true;
  column.bytes = std::max(column.bytes, cell.size());
  column.columns = std::max(column.columns, DisplayWidth(cell));
  if (cell == kTooLargeMark) return;
  if (CellNumber(cell))
    column.decimals = std::max(column.decimals, DecimalsOf(cell));
  else
    column.isNumber = false;
}

}  // namespace

std::optional<double> CellNumber(std::string_view cell) {
  const char* begin = cell.data();
  const char* const end = begin + cell.size();
  if (begin == end) return {};
  if (*begin == '+') ++begin;
  const char* first = begin;
  if (first != end && first != cell.data() && *first == '-') return {};  // "+-1"
  if (first != end && *first == '-') ++first;
  // No "inf" and "nan", which from_chars would take.
  if (first == end || !(IsDigit(*first) || *first == '.')) return {};
  double value = 0.0;
  const auto [stop, error] = std::from_chars(begin, end, value);
  if (stop != end || error != std::errc()) return {};
  return value;
}

FileStamp MakeFileStamp(const std::string& title) {
  FileStamp stamp;
  std::string kept;
  stamp.title = Utf8Text(title, kept);
  stamp.program = "Flanks " FLANKS_VERSION;
  stamp.time = std::time(nullptr);
  return stamp;
}

std::string StampDate(const FileStamp& stamp) {
  return DateAndTime(stamp.time);
}

TabText::TabText(const TableSource& source) : isStopped_(source.isStopped) {
  if (const std::error_code error = file_.Open(source.name))
    ThrowFileFailure("read", source.name, error);
}

bool TabText::ReadRow() {
  cells_.clear();
  repaired_.clear();
  std::string_view line;
  if (!file_.ReadLine(line)) {
    if (file_.fault() != TextFileFault::none) throw std::runtime_error(file_.FaultText());
    return false;
  }
  ++rows_;
  std::string kept;
  for (std::size_t from = 0, end = 0; end != std::string_view::npos; from = end + 1) {
    end = line.find('\t', from);
    std::string_view cell = Utf8Text(line.substr(from, end - from), kept);
    // What was made anew must outlive the next cell.
    if (cell.data() == kept.data()) cell = repaired_.emplace_back(cell);
    cells_.push_back(cell);
  }
  return true;
}

bool TabText::IsStopped() const {
  return rows_ % kRowsBetweenLooks == 0 && isStopped_();
}

TableShape MeasureTable(const TableSource& source, int headingLines) {
  TableShape shape;
  TabText text(source);
  while (text.ReadRow()) {
    if (text.cells().size() > shape.columns.size()) shape.columns.resize(text.cells().size());
    const bool isHeading = text.rows() <= headingLines;
    for (std::size_t i = 0; i < text.cells().size(); ++i) {
      if (isHeading)
        shape.columns[i].heading = text.cells()[i];
      else
        MeasureCell(text.cells()[i], shape.columns[i]);
    }
    if (!isHeading) ++shape.rows;
    if (text.IsStopped()) {
      shape.stopped = true;
      break;
    }
  }
  return shape;
}

}  // namespace flanks
