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
constexpr double kLargestPlain = 1e15;  // written in digits, without an exponent
constexpr double kSmallestPlain = 1e-5;
constexpr char kIncludeMark = '%';
constexpr char kCommentMark = ';';
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
  return ShortestText(value);
}

std::string ImportedNumber(float value) {
  return ShortestText(value);
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
  heading_ = Heading::first;
}

void ImportText::EndSheet() {
  if (heading_ == Heading::second) WriteLine(firstLine_);
  heading_ = Heading::settled;
}

void ImportText::BeginTable(const std::vector<std::string>& names) {
  isSheet_ = false;
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
  if (heading_ == Heading::settled) return;
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
  std::string_view shown = Trim(clean_);
  const bool comment = first && !shown.empty() && Trim(text).front() == kCommentMark;
  // Nothing in a cell may name a file to be read in its place.
  if (first && !shown.empty() && shown.front() == kIncludeMark) shown = TrimLeft(shown.substr(1));
  if (shown.empty()) return;
  if (comment) line_ += kCommentMark;
  CellKind kind = CellKind::word;
  if (heading_ != Heading::settled) {
    if (ReadsAsNumber(shown))
      kind = CellKind::number;
    else if (IsMissingCode(shown))
      kind = CellKind::missing;
  }
  StartCell(column, kind);
  line_ += shown;
}

bool ImportText::IsMissingCode(std::string_view text) const {
  return rule_.missing.find("," + std::string(text) + ",") != std::string::npos;
}

void ImportText::EndRow() {
  if (broken() || line_.empty()) return;
  widest_ = std::max(widest_, lastColumn_);
  // A cell alone on its line would be split at its blanks.
  if (lastColumn_ == 1 && widest_ > 1 && line_.find(' ') != std::string::npos &&
      line_.front() != kCommentMark)
    line_ += '\t';
  if (isSheet_) {
    if (heading_ == Heading::second) SettleHeading();
    for (; lastRow_ + 1 < row_; ++lastRow_) WriteLine("");
    lastRow_ = row_;
  }
  if (heading_ == Heading::first && line_.front() != kCommentMark) {
    firstLine_ = line_;
    firstKinds_ = kinds_;
    firstRow_ = row_;
    heading_ = Heading::second;
  } else {
    WriteLine(line_);
  }
  if (++rows_ % kRowsBetweenTicks == 0) watch_.rows(rows_);
}

void ImportText::SettleHeading() {
  if (IsHeading()) {
    watch_.tell("Row " + std::to_string(firstRow_) + " of sheet \"" + sheet_ +
                "\" is taken as the heading and skipped: " + firstLine_);
    firstLine_.insert(0, "; ");
  }
  heading_ = Heading::settled;
  WriteLine(firstLine_);
}

bool ImportText::IsHeading() const {
  const auto elements = static_cast<std::size_t>(std::max(rule_.elementColumns, 0));
  bool numberBelow = false;
  for (std::size_t i = 0; i < firstKinds_.size(); ++i) {
    if (firstKinds_[i] == CellKind::number) return false;
    if (i < elements || firstKinds_[i] == CellKind::empty) continue;
    if (firstKinds_[i] == CellKind::missing) return false;
    numberBelow |= i < kinds_.size() && kinds_[i] == CellKind::number;
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
