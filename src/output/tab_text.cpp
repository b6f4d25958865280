#include "output/tab_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <ctime>
#include <stdexcept>
#include <system_error>

#include "base/text.h"
#include "base/utf8.h"

namespace flanks {
namespace {

constexpr std::int64_t kRowsBetweenLooks = 1024;  // at whether the work is stopped

// Windows-1252 from 0x80 to 0x9F; 0 where the code page has no character.
constexpr std::array<char32_t, 32> kUpperControls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void AppendUtf8(std::string& text, char32_t code) {
  const auto put = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x80) return put(code);
  if (code < 0x800) {
    put(0xC0 | (code >> 6));
    return put(0x80 | (code & 0x3F));
  }
  put(0xE0 | (code >> 12));
  put(0x80 | ((code >> 6) & 0x3F));
  put(0x80 | (code & 0x3F));
}

unsigned char ByteAt(std::string_view text, std::size_t at) {
  return at < text.size() ? static_cast<unsigned char>(text[at]) : 0;
}

// The length of the well-formed character at `at` (The Unicode Standard, table 3-7), 0 for none.
// U+FFFE and U+FFFF, which XML refuses, are none either.
std::size_t CharacterLength(std::string_view text, std::size_t at) {
  const unsigned char lead = ByteAt(text, at), second = ByteAt(text, at + 1);
  const auto follows = [&](std::size_t i) { return (ByteAt(text, at + i) & 0xC0) == 0x80; };
  if (lead < 0x80) return 1;
  if (lead < 0xC2 || lead > 0xF4 || !follows(1)) return 0;
  if (lead < 0xE0) return 2;
  if (!follows(2)) return 0;
  if (lead < 0xF0) {
    const bool overlong = lead == 0xE0 && second < 0xA0, surrogate = lead == 0xED && second > 0x9F;
    const bool nonCharacter = lead == 0xEF && second == 0xBF && ByteAt(text, at + 2) > 0xBD;
    return overlong || surrogate || nonCharacter ? 0 : 3;
  }
  const bool overlong = lead == 0xF0 && second < 0x90, tooLarge = lead == 0xF4 && second > 0x8F;
  return overlong || tooLarge || !follows(3) ? 0 : 4;
}

bool IsWellFormed(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = text[at] == '\0' ? 0 : CharacterLength(text, at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

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

std::string_view Utf8Cell(std::string_view cell, std::string& kept) {
  if (IsWellFormed(cell)) return cell;
  kept.clear();
  for (const char c : cell) {
    const auto byte = static_cast<unsigned char>(c);
    char32_t code = byte;
    if (byte >= 0x80 && byte < 0xA0) code = kUpperControls[byte - 0x80U];
    AppendUtf8(kept, code == 0 ? U'?' : code);
  }
  return kept;
}

FileStamp MakeFileStamp(const std::string& title) {
  FileStamp stamp;
  std::string kept;
  stamp.title = Utf8Cell(title, kept);
  stamp.program = "Flanks " FLANKS_VERSION;
  stamp.time = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  return stamp;
}

std::string StampDate(const FileStamp& stamp) {
  const std::time_t time = stamp.time;
  std::tm local{};
  localtime_r(&time, &local);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &local);
  return text;
}

TabText::TabText(const TableSource& source) {
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
    std::string_view cell = Utf8Cell(line.substr(from, end - from), kept);
    // What was made anew must outlive the next cell.
    if (cell.data() == kept.data()) cell = repaired_.emplace_back(cell);
    cells_.push_back(cell);
  }
  return true;
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
    if (text.rows() % kRowsBetweenLooks == 0 && source.isStopped()) {
      shape.stopped = true;
      break;
    }
  }
  return shape;
}

}  // namespace flanks
