#include "import/rdata_table.h"

#ifdef FLANKS_HAS_RDATA

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <limits>
#include <memory>
#include <optional>
#include <rdata/rdata.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/utf8_text.h"
#include "import/cell_format.h"

namespace flanks {
namespace {

constexpr std::int32_t kMissingWhole = std::numeric_limits<std::int32_t>::min();
constexpr double kSecondsOfDay = 86400.0;
constexpr double kDaysTo1970 = 25569.0;  // of the day numbers that DateText takes

struct RColumn {
  rdata_type_t type = RDATA_TYPE_REAL;
  std::vector<double> numbers;      // not a number where missing
  std::vector<std::string> labels;  // of a factor
  std::vector<std::string> texts;   // of a column of texts
  std::size_t rows = 0;
};

struct RFrame {
  std::string name;
  std::vector<RColumn> columns;
  std::vector<std::string> names;

  bool isFrame() const { return !names.empty() && names.size() == columns.size(); }
};

// Texts come as they were saved: in UTF-8, or in the code page of the machine.
std::string TextOf(const char* text) {
  std::string kept;
  return std::string(Utf8Text(text == nullptr ? "" : text, kept));
}

// What the library's calls work on.
class RReading {
 public:
  void BeginObject(const char* name) {
    Settle();
    at_ = RFrame{};
    at_.name = TextOf(name);
  }
  void AddLabel(const char* text) { labels_.push_back(TextOf(text)); }
  bool AddColumn(rdata_type_t type, const void* data, long count);
  void AddText(const char* text, int row);
  void AddName(const char* text) { at_.names.push_back(TextOf(text)); }
  // Ends the object at work.
  void Settle();

  const std::optional<RFrame>& frame() const { return frame_; }
  int furtherFrames() const { return further_; }

 private:
  RFrame at_;
  std::vector<std::string> labels_;  // of the column that comes next
  std::optional<RFrame> frame_;      // the first
  int further_ = 0;
};

bool RReading::AddColumn(rdata_type_t type, const void* data, long count) {
  RColumn column;
  column.type = type;
  column.labels = std::exchange(labels_, {});
  if (count < 0) return false;
  column.rows = static_cast<std::size_t>(count);
  const bool kept = !frame_;  // of later objects only the names count
  if (kept && data != nullptr) {
    column.numbers.reserve(column.rows);
    for (std::size_t i = 0; i < column.rows; ++i) {
      if (type == RDATA_TYPE_INT32 || type == RDATA_TYPE_LOGICAL) {
        const std::int32_t value = static_cast<const std::int32_t*>(data)[i];
        column.numbers.push_back(value == kMissingWhole ? std::nan("") : value);
      } else {
        column.numbers.push_back(static_cast<const double*>(data)[i]);
      }
    }
  }
  at_.columns.push_back(std::move(column));
  return true;
}

void RReading::AddText(const char* text, int row) {
  if (frame_ || at_.columns.empty() || text == nullptr || row < 0) return;
  RColumn& column = at_.columns.back();
  const auto place = static_cast<std::size_t>(row);
  if (place >= column.rows) return;
  if (column.texts.size() <= place) column.texts.resize(place + 1);
  column.texts[place] = TextOf(text);
}

void RReading::Settle() {
  if (!at_.isFrame()) return;
  if (frame_)
    ++further_;
  else
    frame_ = std::move(at_);
  at_ = RFrame{};
}

RReading& ReadingOf(void* context) {
  return *static_cast<RReading*>(context);
}

int TakeObject(const char* name, void* context) {
  ReadingOf(context).BeginObject(name);
  return 0;
}
int TakeColumn(const char*, rdata_type_t type, void* data, long count, void* context) {
  return ReadingOf(context).AddColumn(type, data, count) ? 0 : 1;
}
int TakeColumnName(const char* name, int, void* context) {
  ReadingOf(context).AddName(name);
  return 0;
}
int TakeText(const char* text, int row, void* context) {
  ReadingOf(context).AddText(text, row);
  return 0;
}
int TakeLabel(const char* text, int, void* context) {
  ReadingOf(context).AddLabel(text);
  return 0;
}
int PassOver(const char*, int, void*) {
  return 0;
}

void AddCell(const RColumn& column, std::size_t row, int number, ImportText& text) {
  if (row < column.texts.size()) return text.AddText(number, column.texts[row]);
  if (row >= column.numbers.size() || !std::isfinite(column.numbers[row])) return;
  const double value = column.numbers[row];
  if (!column.labels.empty()) {
    const bool known = value >= 1 && value <= static_cast<double>(column.labels.size());
    if (known) text.AddText(number, column.labels[static_cast<std::size_t>(value) - 1]);
    return;
  }
  std::string date;
  if (column.type == RDATA_TYPE_DATE)
    date = DateText(std::floor(value) + kDaysTo1970, DateStart::year1900);
  if (column.type == RDATA_TYPE_TIMESTAMP)
    date = DateText(value / kSecondsOfDay + kDaysTo1970, DateStart::year1900);
  if (date.empty())
    text.AddNumber(number, value);
  else
    text.AddText(number, date);
}

ConversionEnd WriteFrame(const RReading& reading, const ConversionWatch& watch, ImportText& text) {
  const RFrame& frame = *reading.frame();
  const std::size_t rows = frame.columns.front().rows;
  for (const RColumn& column : frame.columns)
    if (column.rows != rows) return ConversionFailed("its columns are of different lengths");
  if (reading.furtherFrames() > 0)
    watch.tell("The first data frame is read: " + frame.name + ".  The file has " +
               std::to_string(reading.furtherFrames()) + " more.");
  text.BeginTable(frame.names);
  for (std::size_t row = 0; row < rows && !text.broken(); ++row) {
    text.BeginRow(static_cast<std::int64_t>(row) + 1);
    int number = 0;
    for (const RColumn& column : frame.columns) AddCell(column, row, ++number, text);
    text.EndRow();
  }
  return {};
}

// Files that save(ascii = TRUE) has made begin with "RDA3", a line end and "A".
bool IsSavedAsText(const std::string& file) {
  char start[7] = {};
  std::ifstream(file, std::ios::binary).read(start, sizeof start - 1);
  return std::string_view(start, 3) == "RDA" && start[4] == '\n' && start[5] == 'A';
}

std::string Words(rdata_error_t code) {
  if (code == RDATA_ERROR_UNSUPPORTED_S_EXPRESSION)
    return "it holds an object that cannot be read: save the data frame alone";
  const char* const words = rdata_error_message(code);
  return words == nullptr ? "it is damaged" : words;
}

}  // namespace

ConversionEnd ConvertRdata(const std::string& file, const ConversionWatch& watch,
                           ImportText& text) {
  if (IsSavedAsText(file))
    return ConversionFailed("it was saved as text: save it in R without ascii = TRUE");
  const std::unique_ptr<rdata_parser_t, decltype(&rdata_parser_free)> parser(rdata_parser_init(),
                                                                             rdata_parser_free);
  rdata_set_table_handler(parser.get(), TakeObject);
  rdata_set_column_handler(parser.get(), TakeColumn);
  rdata_set_column_name_handler(parser.get(), TakeColumnName);
  rdata_set_row_name_handler(parser.get(), PassOver);
  rdata_set_text_value_handler(parser.get(), TakeText);
  rdata_set_value_label_handler(parser.get(), TakeLabel);
  RReading reading;
  const rdata_error_t code = rdata_parse(parser.get(), file.c_str(), &reading);
  reading.Settle();
  if (code != RDATA_OK) return ConversionFailed(Words(code));
  if (!reading.frame()) return ConversionFailed("there is no data frame in it");
  return WriteFrame(reading, watch, text);
}

}  // namespace flanks

#else

namespace flanks {

ConversionEnd ConvertRdata(const std::string&, const ConversionWatch&, ImportText&) {
  return WithoutModule("librdata");
}

}  // namespace flanks

#endif
