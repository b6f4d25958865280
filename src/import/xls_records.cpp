#include "import/xls_records.h"

#include <algorithm>
#include <bit>
#include <map>
#include <utility>

#include "base/utf8_text.h"
#include "import/cell_format.h"
#include "import/compound_file.h"
#include "import/xls_strings.h"

namespace flanks {
namespace {

constexpr std::uint32_t kColumns = 256;     // of an .xls sheet
constexpr std::uint16_t kNoStyle = 0xFFFF;  // of no workbook

enum Record : std::uint16_t {
  kFormula = 0x0006,
  kEndOfPart = 0x000A,
  kDateMode = 0x0022,
  kFilePassword = 0x002F,
  kContinued = 0x003C,
  kSheetEntry = 0x0085,
  kShortNumbers = 0x00BD,
  kFormattedText = 0x00D6,
  kCellStyle = 0x00E0,
  kSharedStrings = 0x00FC,
  kSharedText = 0x00FD,
  kNumber = 0x0203,
  kCellText = 0x0204,
  kBoolOrError = 0x0205,
  kFormulaText = 0x0207,
  kShortNumber = 0x027E,
  kFormat = 0x041E,
  kStartOfPart = 0x0809,
};

std::string_view ErrorWord(std::uint8_t code) {
  switch (code) {
    case 0x00:
      return "#NULL!";
    case 0x07:
      return "#DIV/0!";
    case 0x0F:
      return "#VALUE!";
    case 0x17:
      return "#REF!";
    case 0x1D:
      return "#NAME?";
    case 0x24:
      return "#NUM!";
    case 0x2A:
      return "#N/A";
    default:
      return "an error";
  }
}

// A number in 30 bits: whole, or the upper half of a 64-bit one; perhaps in hundredths.
double ShortNumber(std::uint32_t bits) {
  const bool hundredths = bits & 1, whole = bits & 2;
  const double number = whole ? static_cast<double>(static_cast<std::int32_t>(bits) >> 2)
                              : std::bit_cast<double>(std::uint64_t{bits & ~3U} << 32);
  return hundredths ? number / 100 : number;
}

class RecordReader {
 public:
  RecordReader(std::string_view stream, XlsCells cells) : stream_(stream), cells_(cells) {}
  XlsContents Read();

 private:
  // The record at `at_`; false at the end.
  bool Next();
  void ReadGlobals(std::vector<std::uint32_t>& starts);
  void ReadStrings();
  void ReadSheet(XlsSheet& sheet);
  void ReadFormula(XlsSheet& sheet);
  void ReadBoolOrError(XlsSheet& sheet);
  void ReadOtherCell(XlsSheet& sheet);
  // A value in the cell that the record begins with, so many columns to the right.
  XlsValue& AddValue(XlsSheet& sheet, std::uint32_t right = 0);
  void SetNumber(XlsValue& value, double number, std::uint16_t style);
  void SetText(XlsValue& value, XlsValue::Kind kind, std::string text);
  // The text at this byte of the record, its length in `lengthBytes` in front.
  std::string TextAt(std::size_t at, std::size_t lengthBytes = 2) const;
  bool IsDateStyle(std::uint16_t style) const;

  std::string_view stream_;
  XlsCells cells_;
  std::size_t at_ = 0;
  std::uint16_t type_ = 0;
  std::string_view data_;
  bool wide_ = true;  // the version of 1997 and later, with texts in Unicode
  std::map<std::uint16_t, bool> formats_;
  std::vector<std::uint16_t> styles_;  // the format of each
  DateStart dates_ = DateStart::year1900;
  std::size_t sharedStrings_ = 0;  // the first of `texts`
  XlsContents found_;
};

bool RecordReader::Next() {
  if (at_ > stream_.size() || stream_.size() - at_ < 4) return false;
  type_ = ShortAt(stream_, at_);
  const std::size_t length = ShortAt(stream_, at_ + 2);
  data_ = stream_.substr(at_ + 4, length);
  at_ += 4 + length;
  return data_.size() == length;
}

std::string RecordReader::TextAt(std::size_t at, std::size_t lengthBytes) const {
  if (data_.size() <= at + lengthBytes) return {};
  std::string_view bytes = data_.substr(at);
  const std::size_t length =
      lengthBytes == 1 ? static_cast<unsigned char>(bytes.front()) : ShortAt(bytes, 0);
  bytes.remove_prefix(lengthBytes);
  if (wide_)
    return LettersText(bytes.substr(1), length,
                       bytes.front() & 1 ? LetterWidth::two : LetterWidth::one);
  std::string kept;
  return std::string(Utf8Text(bytes.substr(0, length), kept));
}

bool RecordReader::IsDateStyle(std::uint16_t style) const {
  if (style >= styles_.size()) return false;
  const std::uint16_t format = styles_[style];
  const auto own = formats_.find(format);
  return own != formats_.end() ? own->second : IsDateFormat(format);
}

void RecordReader::ReadGlobals(std::vector<std::uint32_t>& starts) {
  constexpr std::uint16_t kVersion1997 = 0x0600;
  while (Next() && type_ != kEndOfPart) {
    if (type_ == kFilePassword) {
      found_.locked = true;
      break;
    }
    if (type_ == kStartOfPart) wide_ = ShortAt(data_, 0) == kVersion1997;
    if (type_ == kDateMode && ShortAt(data_, 0) == 1) dates_ = DateStart::year1904;
    if (type_ == kCellStyle) styles_.push_back(ShortAt(data_, 2));
    if (type_ == kFormat) formats_[ShortAt(data_, 0)] = IsDateFormat(TextAt(2, wide_ ? 2 : 1));
    if (type_ == kSharedStrings && cells_ == XlsCells::all) {
      ReadStrings();
      continue;
    }
    if (type_ != kSheetEntry || data_.size() < 6) continue;
    starts.push_back(WordAt(data_, 0));
    XlsSheet& sheet = found_.sheets.emplace_back();
    sheet.hidden = (data_[4] & 3) != 0;
    sheet.name = TextAt(6, 1);
  }
}

// Behind two counts: of the cells that have one, and of the strings.  Looks at the record behind.
void RecordReader::ReadStrings() {
  constexpr std::size_t kCountBytes = 8;
  if (data_.size() < kCountBytes || !found_.texts.empty()) return;
  const std::size_t count = WordAt(data_, 4);
  std::vector<std::string_view> pieces{data_.substr(kCountBytes)};
  std::size_t behind = at_;
  for (; Next() && type_ == kContinued; behind = at_) pieces.push_back(data_);
  at_ = behind;
  found_.texts = ReadSharedStrings(pieces, count);
  sharedStrings_ = found_.texts.size();
}

XlsValue& RecordReader::AddValue(XlsSheet& sheet, std::uint32_t right) {
  XlsValue& value = sheet.values.emplace_back();
  value.row = ShortAt(data_, 0);
  value.column = ShortAt(data_, 2) + right;
  return value;
}

void RecordReader::SetNumber(XlsValue& value, double number, std::uint16_t style) {
  value.kind = XlsValue::Kind::number;
  value.number = number;
  if (!IsDateStyle(style)) return;
  if (std::string date = DateText(number, dates_); !date.empty())
    SetText(value, XlsValue::Kind::date, std::move(date));
}

void RecordReader::SetText(XlsValue& value, XlsValue::Kind kind, std::string text) {
  value.kind = kind;
  value.text = found_.texts.size();
  found_.texts.push_back(std::move(text));
}

// Row, column, style, and 8 bytes: a number, or behind FF FF at their end something else.
void RecordReader::ReadFormula(XlsSheet& sheet) {
  constexpr std::size_t kFormulaBytes = 14;
  if (data_.size() < kFormulaBytes) return;
  const std::uint8_t special = static_cast<std::uint8_t>(data_[6]);
  const std::uint8_t code = static_cast<std::uint8_t>(data_[8]);
  XlsValue& value = AddValue(sheet);  // the text of one that is a text follows
  if (ShortAt(data_, 12) != 0xFFFF)
    SetNumber(value, NumberAt<double>(data_, 6), ShortAt(data_, 4));
  else if (special == 1)
    SetNumber(value, code, kNoStyle);
  else if (special == 2)
    SetText(value, XlsValue::Kind::error, std::string(ErrorWord(code)));
}

void RecordReader::ReadBoolOrError(XlsSheet& sheet) {
  constexpr std::size_t kBoolOrErrorBytes = 8;
  if (data_.size() < kBoolOrErrorBytes) return;
  const std::uint8_t code = static_cast<std::uint8_t>(data_[6]);
  if (data_[7] != 0)
    SetText(AddValue(sheet), XlsValue::Kind::error, std::string(ErrorWord(code)));
  else if (cells_ == XlsCells::all)
    SetNumber(AddValue(sheet), code, kNoStyle);
}

// Row, column, style and value.
void RecordReader::ReadOtherCell(XlsSheet& sheet) {
  constexpr std::size_t kValueAt = 6;
  const std::uint16_t style = ShortAt(data_, 4);
  if (type_ == kNumber) SetNumber(AddValue(sheet), NumberAt<double>(data_, kValueAt), style);
  if (type_ == kShortNumber)
    SetNumber(AddValue(sheet), ShortNumber(WordAt(data_, kValueAt)), style);
  if (type_ == kCellText || type_ == kFormattedText)
    SetText(AddValue(sheet), XlsValue::Kind::text, TextAt(kValueAt));
  if (type_ == kSharedText && WordAt(data_, kValueAt) < sharedStrings_) {
    XlsValue& value = AddValue(sheet);
    value.kind = XlsValue::Kind::text;
    value.text = WordAt(data_, kValueAt);
  }
  if (type_ != kShortNumbers) return;
  // Style and number of each column, and behind them the number of the last one.
  constexpr std::size_t kPairBytes = 6, kLastBytes = 2;
  std::uint32_t right = 0;
  for (std::size_t at = 4; at + kPairBytes + kLastBytes <= data_.size(); at += kPairBytes)
    SetNumber(AddValue(sheet, right++), ShortNumber(WordAt(data_, at + 2)), ShortAt(data_, at));
}

void RecordReader::ReadSheet(XlsSheet& sheet) {
  int depth = 0;  // charts within the sheet are parts of their own
  while (Next()) {
    if (type_ == kStartOfPart) ++depth;
    if (type_ == kEndOfPart && --depth <= 0) break;
    if (depth != 1) continue;
    if (type_ == kFormula) ReadFormula(sheet);
    if (type_ == kFormulaText && !sheet.values.empty())
      SetText(sheet.values.back(), XlsValue::Kind::text, TextAt(0));
    if (type_ == kBoolOrError) ReadBoolOrError(sheet);
    if (cells_ == XlsCells::all) ReadOtherCell(sheet);
  }
  std::erase_if(sheet.values, [](const XlsValue& value) { return value.column >= kColumns; });
  std::stable_sort(sheet.values.begin(), sheet.values.end(), [](const auto& a, const auto& b) {
    return std::pair(a.row, a.column) < std::pair(b.row, b.column);
  });
}

XlsContents RecordReader::Read() {
  std::vector<std::uint32_t> starts;
  ReadGlobals(starts);
  std::size_t taken = 0;
  for (std::size_t i = 0; i < starts.size() && !found_.locked; ++i) {
    at_ = starts[i];
    ReadSheet(found_.sheets[i]);
    // Sheets share their records only in a file that was made to take long.
    taken += at_ > starts[i] ? at_ - starts[i] : 0;
    if (taken > stream_.size()) break;
  }
  return std::move(found_);
}

}  // namespace

XlsContents ReadXlsRecords(std::string_view stream, XlsCells cells) {
  return RecordReader(stream, cells).Read();
}

}  // namespace flanks
