#include "import/import_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "base/positioned_file.h"
#include "base/text.h"
#include "base/text_file.h"

namespace flanks {
namespace {

constexpr std::size_t kBufferBytes = std::size_t{1} << 18;
constexpr std::int64_t kRowsBetweenTicks = 4096;
constexpr double kLargestPlain = 1e21;  // written in digits, without an exponent
constexpr double kSmallestPlain = 1e-5;
constexpr int kDigits = 15;                // that spreadsheets and R show of a number
constexpr std::size_t kRowsLookedAt = 50;  // below a heading
constexpr char kIncludeMark = '%';
constexpr char kCommentMark = ';';
constexpr char kEndMark = '*';
constexpr std::string_view kSheetMark = "; Sheet \"";  // no cell has a quote mark

template <typename Number>
std::string ShortestText(Number value) {
  if (!std::isfinite(value)) return {};
  if (value == 0) return "0";
  char text[64];
  const double size = std::fabs(static_cast<double>(value));
  const bool plain = size < kLargestPlain && size >= kSmallestPlain;
  const auto result = std::to_chars(text, text + sizeof text, value,
                                    plain ? std::chars_format::fixed : std::chars_format::general);
  return {text, result.ptr};
}

// Without the noise of binary arithmetic: (1.1-1)*10 is 1.  Whole numbers stay as they are.
double InFifteenDigits(double value) {
  if (!std::isfinite(value) || std::trunc(value) == value) return value;
  char text[64];
  const auto end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::general, kDigits);
  double shown = value;
  std::from_chars(text, end.ptr, shown);
  return shown;
}

// What separates fields of a data line, ends it, or is no character at all.
constexpr bool IsSeparator(char c) {
  return static_cast<unsigned char>(c) < ' ' || c == ',' || c == kCommentMark || c == '"' ||
         c == '\'' || c == '=';
}

// "12", "-3", "2.5" and ranges "1-4".
bool ReadsAsNumber(std::string_view text) {
  bool digit = false;
  for (const char c : text) {
    digit |= IsDigit(c);
    if (!IsDigit(c) && c != '.' && c != '-' && c != '+' && c != '_' && c != ' ') return false;
  }
  return digit;
}

// The data pass looks at the first bytes of a file to see what kind of file it is.
bool LooksLikeAnotherKind(char first) {
  return first == '{' || static_cast<unsigned char>(first) >= 0xEF;
}

}  // namespace

std::string ImportedNumber(double value) {
  return ShortestText(InFifteenDigits(value));
}

std::string ImportedNumber(float value) {
  return ShortestText(value);
}

bool ImportText::Row::isComment() const {
  return line.front() == kCommentMark;
}

bool BeginsWithReplication(std::string_view line, std::string_view replication) {
  return !replication.empty() && line.size() > replication.size() &&
         UpperCase(line.substr(0, replication.size())) == replication &&
         IsDigit(line[replication.size()]);
}

std::string ColumnLetters(int column) {
  constexpr int kLetters = 26;
  std::string letters;
  for (; column > 0; column = (column - 1) / kLetters)
    letters.insert(letters.begin(), static_cast<char>('A' + (column - 1) % kLetters));
  return letters;
}

TextPlace FindTextPlace(const std::string& file, TextRows rows, std::int64_t lineNumber) {
  TextPlace place;
  TextFile text;
  if (text.Open(file)) return place;
  std::int64_t linesBefore = rows == TextRows::ofTable ? 1 : 0;
  std::string_view line;
  for (std::int64_t number = 1; number <= lineNumber; ++number) {
    if (!text.ReadLine(line)) return {};
    if (rows == TextRows::ofTable || !line.starts_with(kSheetMark)) continue;
    linesBefore = number;
    place.sheet = line.substr(kSheetMark.size(), line.size() - kSheetMark.size() - 1);
  }
  place.row = lineNumber - linesBefore;
  place.line = line;
  return place;
}

ImportText::ImportText(HeadingRule rule, const ConversionWatch& watch, Put put)
    : rule_(std::move(rule)),
      watch_(watch),
      put_(std::move(put)),
      mostBytes_(std::numeric_limits<std::int64_t>::max()) {}

void ImportText::BeginSheet(std::string_view name) {
  sheet_ = name;
  isSheet_ = true;
  if (sheets_++ > 0) {
    std::string shown(name);
    std::replace_if(shown.begin(), shown.end(), IsSeparator, ' ');
    WriteLine(std::string(kSheetMark) + shown + '"');
  }
  lastRow_ = 0;
  widest_ = 0;
  looking_ = true;
}

void ImportText::EndSheet() {
  if (looking_) SettleHeading();
}

void ImportText::TellSheets(std::size_t sheets) {
  if (sheets < 2) return;
  watch_.tell("Sheet \"" + sheet_ + "\" is read.  The file has " + std::to_string(sheets - 1) +
              " more.");
}

void ImportText::BeginTable(const std::vector<std::string>& names) {
  isSheet_ = false;
  widest_ = static_cast<int>(names.size());
  std::string line(1, kCommentMark);
  for (const std::string& name : names) {
    line += line.size() > 1 ? '\t' : ' ';
    for (const char c : name) line += IsSeparator(c) ? ' ' : c;
  }
  WriteLine(line);
}

void ImportText::BeginRow(std::int64_t row) {
  row_ = row;
  line_.clear();
  kinds_.clear();
  lastColumn_ = 0;
}

void ImportText::StartCell(int column, CellKind kind) {
  line_.append(static_cast<std::size_t>(column - std::max(lastColumn_, 1)), '\t');
  lastColumn_ = column;
  if (!looking_) return;
  kinds_.resize(static_cast<std::size_t>(column), CellKind::empty);
  kinds_.back() = kind;
}

void ImportText::AddPlain(int column, std::string_view text) {
  if (text.empty()) return;
  StartCell(column, CellKind::number);
  line_ += text;
}

void ImportText::AddText(int column, std::string_view text) {
  const bool first = lastColumn_ == 0 && column == 1;
  clean_ = text;
  std::replace_if(clean_.begin(), clean_.end(), IsSeparator, ' ');
  const auto bothBlank = [](char a, char b) { return a == ' ' && b == ' '; };
  clean_.erase(std::unique(clean_.begin(), clean_.end(), bothBlank), clean_.end());
  std::string_view shown = Trim(clean_);
  const bool comment = first && !shown.empty() && Trim(text).front() == kCommentMark;
  // Nothing in a cell may name a file to be read in its place.
  if (first && !shown.empty() && shown.front() == kIncludeMark) shown = TrimLeft(shown.substr(1));
  if (shown.empty()) return;
  if (comment) line_ += kCommentMark;
  CellKind kind = CellKind::word;
  if (looking_) {
    if (ReadsAsNumber(shown))
      kind = CellKind::number;
    else if (IsCode(shown))
      kind = CellKind::code;
  }
  StartCell(column, kind);
  line_ += shown;
}

bool ImportText::IsCode(std::string_view text) const {
  return rule_.codes.find("," + std::string(text) + ",") != std::string::npos;
}

void ImportText::EndRow() {
  if (broken() || line_.empty()) return;
  widest_ = std::max(widest_, lastColumn_);
  Row row{row_, lastColumn_, line_, kinds_};
  if (looking_) {
    held_.push_back(std::move(row));
    if (held_.size() > kRowsLookedAt) SettleHeading();
  } else {
    WriteRow(row);
  }
  if (++rows_ % kRowsBetweenTicks == 0) watch_.rows(rows_);
}

void ImportText::WriteRow(Row& row) {
  for (; lastRow_ + 1 < row.number; ++lastRow_) WriteLine("");
  lastRow_ = row.number;
  // An empty cell is a response that is missing; a table of one column has lines in its cells.
  const int needed =
      rule_.elementColumns + (BeginsWithReplication(row.line, rule_.replication) ? 2 : 1);
  const int width = widest_ > 1 ? std::max(widest_, needed) : 0;
  if (width > row.columns && !row.isComment() && row.line.front() != kEndMark)
    row.line.append(static_cast<std::size_t>(width - row.columns), '\t');
  WriteLine(row.line);
}

void ImportText::SettleHeading() {
  looking_ = false;
  for (auto row = held_.begin(); row != held_.end(); ++row) {
    if (row->isComment()) continue;
    if (IsHeading(row - held_.begin())) {
      watch_.tell("Row " + std::to_string(row->number) + " of sheet \"" + sheet_ +
                  "\" is taken as the heading and skipped: " + row->line);
      row->line.insert(0, "; ");
    }
    break;
  }
  for (Row& row : held_) WriteRow(row);
  held_.clear();
}

bool ImportText::IsHeading(std::ptrdiff_t first) const {
  const auto heading = held_.begin() + first;
  const auto elements = static_cast<std::size_t>(std::max(rule_.elementColumns, 0));
  bool numberBelow = false;
  for (std::size_t i = 0; i < heading->kinds.size(); ++i) {
    const CellKind kind = heading->kinds[i];
    if (kind == CellKind::number) return false;
    if (i < elements || kind == CellKind::empty) continue;
    if (kind == CellKind::code) return false;
    numberBelow |= std::any_of(heading + 1, held_.end(), [i](const Row& row) {
      return !row.isComment() && i < row.kinds.size() && row.kinds[i] == CellKind::number;
    });
  }
  return numberBelow;
}

std::string ImportText::Place(std::int64_t row) const {
  return isSheet_ ? "sheet \"" + sheet_ + "\", row " + std::to_string(row)
                  : "row " + std::to_string(row);
}

void ImportText::Refuse(int column, std::string_view words) {
  if (broken()) return;
  end_ = {ConversionEnd::Kind::badCell,
          Place(row_) + ", column " + ColumnLetters(column) + ": " + std::string(words)};
}

void ImportText::WriteLine(std::string_view line) {
  if (bytes_ == 0 && buffer_.empty() && !line.empty() && LooksLikeAnotherKind(line.front()))
    buffer_ += ' ';
  buffer_ += line;
  buffer_ += '\n';
  if (buffer_.size() >= kBufferBytes) Flush();
}

void ImportText::Flush() {
  if (broken()) return;
  bytes_ += static_cast<std::int64_t>(buffer_.size());
  if (bytes_ > mostBytes_)
    end_ = ConversionFailed("its text is out of all proportion to its size");
  else if (!put_(buffer_))
    end_ = ConversionFailed("its text cannot be written: " + LastFileError().message());
  buffer_.clear();
}

ConversionEnd ImportText::Finish() {
  if (!broken() && rows_ == 0) end_ = ConversionFailed("there are no data in it");
  Flush();
  watch_.rows(rows_);
  return end_;
}

}  // namespace flanks
