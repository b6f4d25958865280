#include "import/xls_formulas.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/byte_order.h"
#include "import/cell_format.h"

namespace flanks {
namespace {

template <typename Number>
Number NumberAt(std::string_view bytes, std::size_t at) {
  if (at > bytes.size() || bytes.size() - at < sizeof(Number)) return {};
  return LoadLittle<Number>(reinterpret_cast<const std::uint8_t*>(bytes.data() + at));
}

std::uint32_t WordAt(std::string_view bytes, std::size_t at) {
  return NumberAt<std::uint32_t>(bytes, at);
}
std::uint16_t ShortAt(std::string_view bytes, std::size_t at) {
  return NumberAt<std::uint16_t>(bytes, at);
}

// Letters of two bytes as UTF-8; pairs for rarer characters become "?".
std::string Utf8Of(std::string_view wide) {
  std::string text;
  for (std::size_t at = 0; at + 1 < wide.size(); at += 2) AppendUtf8(ShortAt(wide, at), text);
  return text;
}

// ---- the compound file

constexpr std::uint32_t kLastSector = 0xFFFFFFFA;  // this and beyond are marks, not sectors
constexpr std::size_t kHeaderBytes = 512;
constexpr std::size_t kEntryBytes = 128;
constexpr std::size_t kListedInHeader = 109;

constexpr std::uint32_t kColumns = 256;  // of an .xls sheet

class CompoundFile {
 public:
  explicit CompoundFile(std::string_view file);
  // The stream of this name, written with two bytes to a letter.
  std::string Stream(std::string_view wideName) const;
  bool IsBrokenOff() const;

 private:
  std::string_view Sector(std::uint32_t number) const;
  void ReadSectorTable();
  std::string Chain(std::uint32_t first, std::size_t most) const;
  std::string SmallChain(std::uint32_t first, std::size_t size, std::string_view top) const;

  std::string_view file_;
  std::size_t sectorBytes_ = 512;
  std::size_t smallBytes_ = 64;
  std::size_t smallLimit_ = 4096;
  std::string next_;  // for each sector the one that follows it, 4 bytes each
};

CompoundFile::CompoundFile(std::string_view file) : file_(file) {
  const std::uint16_t shift = ShortAt(file, 30), smallShift = ShortAt(file, 32);
  if (file.size() < kHeaderBytes || (shift != 9 && shift != 12) || smallShift != 6) {
    file_ = {};
    return;
  }
  sectorBytes_ = std::size_t{1} << shift;
  smallLimit_ = WordAt(file, 56);
  ReadSectorTable();
}

std::string_view CompoundFile::Sector(std::uint32_t number) const {
  const std::size_t start = (std::size_t{number} + 1) * sectorBytes_;
  if (number >= kLastSector || start >= file_.size()) return {};
  return file_.substr(start, sectorBytes_);
}

// The sectors of the table are listed in the header, and behind it in a chain of lists.
void CompoundFile::ReadSectorTable() {
  const std::size_t most = file_.size() / sectorBytes_;
  std::vector<std::uint32_t> listed;
  for (std::size_t i = 0; i < kListedInHeader; ++i) listed.push_back(WordAt(file_, 76 + 4 * i));
  std::uint32_t list = WordAt(file_, 68);
  for (std::size_t i = 0; i < most && list < kLastSector; ++i) {
    const std::string_view sector = Sector(list);
    for (std::size_t at = 0; at + 8 <= sector.size(); at += 4) listed.push_back(WordAt(sector, at));
    list = sector.size() < sectorBytes_ ? kLastSector : WordAt(sector, sectorBytes_ - 4);
  }
  for (const std::uint32_t number : listed) {
    if (number >= kLastSector || next_.size() / 4 > most) break;
    next_ += Sector(number);
  }
}

std::string CompoundFile::Chain(std::uint32_t first, std::size_t most) const {
  std::string bytes;
  most = std::min(most, file_.size());
  for (std::uint32_t at = first; at < kLastSector && bytes.size() < most;) {
    const std::string_view sector = Sector(at);
    if (sector.empty()) break;
    bytes += sector;
    if (std::size_t{at} * 4 >= next_.size()) break;
    at = WordAt(next_, std::size_t{at} * 4);
  }
  if (bytes.size() > most) bytes.resize(most);
  return bytes;
}

// A small stream lies in pieces within the stream of the top entry.
std::string CompoundFile::SmallChain(std::uint32_t first, std::size_t size,
                                     std::string_view top) const {
  const std::string next = Chain(WordAt(file_, 60), file_.size());
  size = std::min(size, file_.size());
  std::string bytes;
  for (std::uint32_t at = first; at < kLastSector && bytes.size() < size;) {
    const std::size_t start = std::size_t{at} * smallBytes_;
    if (start >= top.size()) break;
    bytes += top.substr(start, smallBytes_);
    if (std::size_t{at} * 4 >= next.size()) break;
    at = WordAt(next, std::size_t{at} * 4);
  }
  if (bytes.size() > size) bytes.resize(size);
  return bytes;
}

std::string CompoundFile::Stream(std::string_view wideName) const {
  if (file_.empty()) return {};
  const std::string entries = Chain(WordAt(file_, 48), file_.size());
  const std::string_view all(entries);
  for (std::size_t at = 0; at + kEntryBytes <= all.size(); at += kEntryBytes) {
    const std::string_view entry = all.substr(at, kEntryBytes);
    const std::string_view name = entry.substr(0, std::min<std::size_t>(ShortAt(entry, 64), 64));
    if (name != wideName) continue;
    const std::uint32_t first = WordAt(entry, 116), size = WordAt(entry, 120);
    if (size >= smallLimit_) return Chain(first, size);
    const std::string top = Chain(WordAt(all, 116), WordAt(all, 120));
    return SmallChain(first, size, top);
  }
  return {};
}

bool CompoundFile::IsBrokenOff() const {
  constexpr std::uint32_t kFreeSector = 0xFFFFFFFF;
  for (std::size_t at = next_.size() / 4; at-- > 0;)
    if (WordAt(next_, 4 * at) != kFreeSector) return (at + 2) * sectorBytes_ > file_.size();
  return false;
}

// ---- the records

enum Record : std::uint16_t {
  kFormula = 0x0006,
  kEndOfPart = 0x000A,
  kDateMode = 0x0022,
  kFilePassword = 0x002F,
  kSheetEntry = 0x0085,
  kCellStyle = 0x00E0,
  kBoolOrError = 0x0205,
  kFormulaText = 0x0207,
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

class RecordReader {
 public:
  explicit RecordReader(std::string_view stream) : stream_(stream) {}
  XlsFormulas Read();

 private:
  // The record at `at_`; false at the end.
  bool Next();
  void ReadGlobals(std::vector<std::uint32_t>& starts);
  void ReadSheet(XlsSheet& sheet);
  void ReadFormula(XlsSheet& sheet);
  void AddText(XlsValue& value, XlsValue::Kind kind, std::string text);
  // A text of characters of one or two bytes, its length in front.
  std::string TextOf(std::string_view bytes) const;
  bool IsDateStyle(std::uint16_t style) const;

  std::string_view stream_;
  std::size_t at_ = 0;
  std::uint16_t type_ = 0;
  std::string_view data_;
  bool wide_ = true;  // the version of 1997 and later, with texts in Unicode
  std::map<std::uint16_t, bool> formats_;
  std::vector<std::uint16_t> styles_;  // the format of each
  DateStart dates_ = DateStart::year1900;
  XlsFormulas found_;
};

bool RecordReader::Next() {
  if (at_ > stream_.size() || stream_.size() - at_ < 4) return false;
  type_ = ShortAt(stream_, at_);
  const std::size_t length = ShortAt(stream_, at_ + 2);
  data_ = stream_.substr(at_ + 4, length);
  at_ += 4 + length;
  return data_.size() == length;
}

std::string RecordReader::TextOf(std::string_view bytes) const {
  const std::size_t length = ShortAt(bytes, 0);
  if (!wide_) return std::string(bytes.substr(std::min<std::size_t>(2, bytes.size()), length));
  const bool wide = bytes.size() > 2 && (bytes[2] & 1);
  const std::string_view letters = bytes.substr(std::min<std::size_t>(3, bytes.size()));
  if (wide) return Utf8Of(letters.substr(0, 2 * length));
  std::string text;
  for (const char c : letters.substr(0, length)) AppendUtf8(static_cast<unsigned char>(c), text);
  return text;
}

bool RecordReader::IsDateStyle(std::uint16_t style) const {
  if (style >= styles_.size()) return false;
  const std::uint16_t format = styles_[style];
  const auto own = formats_.find(format);
  return own != formats_.end() ? own->second : IsDateFormat(format);
}

void RecordReader::ReadGlobals(std::vector<std::uint32_t>& starts) {
  constexpr std::uint16_t kVersion1997 = 0x0600;
  while (Next() && type_ != kEndOfPart && type_ != kFilePassword) {
    if (type_ == kStartOfPart) wide_ = ShortAt(data_, 0) == kVersion1997;
    if (type_ == kDateMode && ShortAt(data_, 0) == 1) dates_ = DateStart::year1904;
    if (type_ == kCellStyle) styles_.push_back(ShortAt(data_, 2));
    if (type_ == kFormat && data_.size() > 2)
      formats_[ShortAt(data_, 0)] = IsDateFormat(TextOf(data_.substr(2)));
    if (type_ != kSheetEntry || data_.size() < 6) continue;
    starts.push_back(WordAt(data_, 0));
    found_.sheets.emplace_back().hidden = (data_[4] & 3) != 0;
  }
}

void RecordReader::AddText(XlsValue& value, XlsValue::Kind kind, std::string text) {
  value.kind = kind;
  value.text = found_.texts.size();
  found_.texts.push_back(std::move(text));
}

// Row, column, style, and 8 bytes: a number, or behind FF FF at their end something else.
void RecordReader::ReadFormula(XlsSheet& sheet) {
  XlsValue value;
  value.row = ShortAt(data_, 0);
  value.column = ShortAt(data_, 2);
  if (value.column >= kColumns) return;
  const std::uint8_t special = static_cast<std::uint8_t>(data_[6]);
  const std::uint8_t code = static_cast<std::uint8_t>(data_[8]);
  if (ShortAt(data_, 12) != 0xFFFF) {
    value.kind = XlsValue::Kind::number;
    value.number = NumberAt<double>(data_, 6);
    if (IsDateStyle(ShortAt(data_, 4)))
      if (std::string date = DateText(value.number, dates_); !date.empty())
        AddText(value, XlsValue::Kind::date, std::move(date));
  } else if (special == 1) {
    value.kind = XlsValue::Kind::number;
    value.number = code;
  } else if (special == 2) {
    AddText(value, XlsValue::Kind::error, std::string(ErrorWord(code)));
  }
  sheet.values.push_back(value);  // the text of one that is a text follows
}

void RecordReader::ReadSheet(XlsSheet& sheet) {
  constexpr std::size_t kFormulaBytes = 14, kErrorBytes = 8;
  int depth = 0;  // charts within the sheet are parts of their own
  while (Next()) {
    if (type_ == kStartOfPart) ++depth;
    if (type_ == kEndOfPart && --depth <= 0) break;
    if (depth != 1) continue;
    if (type_ == kFormula && data_.size() >= kFormulaBytes) ReadFormula(sheet);
    if (type_ == kFormulaText && !sheet.values.empty())
      AddText(sheet.values.back(), XlsValue::Kind::text, TextOf(data_));
    if (type_ != kBoolOrError || data_.size() < kErrorBytes || data_[7] == 0) continue;
    if (ShortAt(data_, 2) >= kColumns) continue;
    XlsValue& value = sheet.values.emplace_back();
    value.row = ShortAt(data_, 0);
    value.column = ShortAt(data_, 2);
    AddText(value, XlsValue::Kind::error,
            std::string(ErrorWord(static_cast<std::uint8_t>(data_[6]))));
  }
  std::stable_sort(sheet.values.begin(), sheet.values.end(), [](const auto& a, const auto& b) {
    return std::pair(a.row, a.column) < std::pair(b.row, b.column);
  });
}

XlsFormulas RecordReader::Read() {
  std::vector<std::uint32_t> starts;
  ReadGlobals(starts);
  std::size_t taken = 0;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    at_ = starts[i];
    ReadSheet(found_.sheets[i]);
    // Sheets share their records only in a file that was made to take long.
    taken += at_ > starts[i] ? at_ - starts[i] : 0;
    if (taken > stream_.size()) break;
  }
  return std::move(found_);
}

}  // namespace

std::string WorkbookStream(std::string_view file) {
  constexpr std::string_view kName("W\0o\0r\0k\0b\0o\0o\0k\0\0\0", 18);
  constexpr std::string_view kFormerName("B\0o\0o\0k\0\0\0", 10);
  const CompoundFile compound(file);
  std::string stream = compound.Stream(kName);
  return stream.empty() ? compound.Stream(kFormerName) : stream;
}

bool IsBrokenOff(std::string_view file) {
  return CompoundFile(file).IsBrokenOff();
}

XlsFormulas ReadXlsFormulas(std::string_view stream) {
  return RecordReader(stream).Read();
}

}  // namespace flanks
