#include "spec/report_settings.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "base/utf8.h"
#include "spec/flank_maps.h"
#include "spec/given_value.h"
#include "spec/list_reading.h"
#include "spec/setting_values.h"
#include "spec/specification_reader.h"

namespace flanks {
namespace {

constexpr std::size_t kTableFlags = 14;
constexpr std::string_view kArrangeLetters = "AFMNPafmnp";
constexpr std::size_t kMostFlankDigits = 3;

// An optional Flank number and letters: "mN", "2fN".
bool IsArrangement(std::string_view item) {
  const std::size_t letters = item.find_first_not_of("0123456789");
  return letters != std::string_view::npos && letters <= kMostFlankDigits &&
         item.find_first_not_of(kArrangeLetters, letters) == std::string_view::npos;
}

// Whether the line, without its comment, ends in a quote mark.
bool EndsInQuote(std::string_view line) {
  line = TrimRight(line.substr(0, line.find(';')));
  return !line.empty() && (line.back() == '"' || line.back() == '\'');
}

// The first character of a text that may be UTF-8.
std::string_view FirstCharacter(std::string_view text) {
  std::size_t length = 1;
  if (IsUtf8(text))
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0u) == 0x80u)
      ++length;
  return text.substr(0, length);
}

}  // namespace

void SetArrange(SpecContext& context) {
  const std::string list = JoinFields(context, ",");
  for (int field = 1; field <= context.reading.FieldCount; ++field) {
    const std::string& item = Value(context, static_cast<std::size_t>(field));
    if (!list.empty() && !IsArrangement(item))
      return SetFault(context.reading, Fault::invalidArrange, TextAtFault(item));
  }
  context.settings.Arrange = list;
  context.settings.arrangeGiven = true;
}

void SetAscii(SpecContext& context) {
  context.settings.Ascii = IsOneOf(Letter(context), "NW") ? Letter(context) : 'Y';
}

void SetBarchart(SpecContext& context) {
  const char letter = Letter(context);
  context.settings.Barchart = letter == 'Y' ? 1 : letter == 'A' ? 2 : 0;
}

void SetBias(SpecContext& context) {
  const char letter = Letter(context);
  if (letter == '\0') return;
  context.settings.Bias = IsOneOf(letter, "-NDMS") ? -1 : IsOneOf(letter, "+PALE") ? 1 : 0;
}

void SetBox(SpecContext& context) {
  context.settings.BoxShow = IsYes(context) ? 'Y' : 'N';
}

void SetFair(SpecContext& context) {
  context.settings.FairAverageKind = Letter(context) == 'Z' ? 'Z' : 'M';
}

// The raters' Flank and the data positions that a pair of ratings must match on, each once.
void SetInterRater(SpecContext& context) {
  if (Value(context).empty()) return;
  std::vector<int> setting;
  for (int field = 1; field <= context.reading.FieldCount; ++field) {
    const int number =
        ParseWhole(context, Value(context, static_cast<std::size_t>(field)), kLargestFlankCount);
    if (context.reading.faulty()) return;
    const bool isMatch = !setting.empty();
    if (!isMatch || std::find(setting.begin() + 1, setting.end(), number) == setting.end())
      setting.push_back(number);
  }
  if (setting.front() == 0) setting.resize(1);
  context.settings.InterRaterSetting = setting;
}

void SetJuxtapose(SpecContext& context) {
  std::int32_t lines = context.settings.Juxtapose;
  TakeWhole(context, 1, lines);
  context.settings.Juxtapose = std::abs(std::max(lines, -std::numeric_limits<std::int32_t>::max()));
}

void SetLeftHand(SpecContext& context) {
  context.settings.LeftHand = IsYes(context);
}

void SetOmitUnobserved(SpecContext& context) {
  context.settings.OmitUnobserved = IsYes(context);
}

void SetShowUnobserved(SpecContext& context) {
  context.settings.OmitUnobserved = !IsYes(context);
}

void SetPtBiserial(SpecContext& context) {
  const char letter = Letter(context);
  char& kind = context.settings.PointCorrelationKind;
  if (IsOneOf(letter, "YBPO"))
    kind = 'Y';
  else if (IsOneOf(letter, "IA"))
    kind = 'I';
  else
    kind = letter == 'M' ? 'M' : 'N';
}

void SetReversed(SpecContext& context) {
  context.settings.Reversed = IsYes(context);
}

void SetStandardErrors(SpecContext& context) {
  context.settings.RealStandardErrors = IsOneOf(Letter(context), "ER");
}

void SetT3onscreen(SpecContext& context) {
  context.settings.T3onscreen = Letter(context) == 'N' ? "N" : "Y";
}

void SetT4MAX(SpecContext& context) {
  TakeWhole(context, 1, context.settings.T4maximum);
}

void SetT7LGS(SpecContext& context) {
  TakeUpperText(context, context.settings.T7LGS);
}

void SetT8NBC(SpecContext& context) {
  TakeUpperText(context, context.settings.T8NBC);
}

// Flags may be separated by commas or not.
void SetTables(SpecContext& context) {
  std::string value = JoinFields(context, "");
  if (IsOneOf(Letter(context), "01"))
    value.resize(kTableFlags, '0');
  else
    value = Letter(context) == 'N' ? "N" : "Y";
  context.settings.Tables = value;
}

// Quotes around a title with a comma stand in two fields: the last one has lost its own.
void SetTitle(SpecContext& context) {
  constexpr std::string_view kQuotes = "\"'";
  const std::string& first = Value(context);
  std::string title = JoinFields(context, ", ");
  const bool opens = context.reading.FieldCount > 1 && first.size() > 1 &&
                     kQuotes.find(first.front()) != std::string_view::npos &&
                     kQuotes.find(first.back()) == std::string_view::npos;
  if (opens && EndsInQuote(context.reading.SourceLine)) title.erase(0, 1);
  context.settings.Title = title;
}

void SetTotalscore(SpecContext& context) {
  context.settings.TotalScoreMode = IsYes(context);
}

void SetUnexpected(SpecContext& context) {
  TakeNumber(context, 1, context.settings.Unexpected);
}

void SetUsort(SpecContext& context) {
  if (context.reading.FieldCount == 0) return;
  context.settings.Usort = JoinFields(context, ",");
  context.settings.usortGiven = true;
}

void SetUtf8(SpecContext& context) {
  const std::string& value = Value(context);
  if (context.reading.CurrentLine.starts_with("UTF8E"))
    context.settings.UTF8enc =
        IsOneOf(Letter(context), "YN") ? std::string(1, Letter(context)) : "";
  else if (!value.empty())
    context.settings.UTF8sub = FirstCharacter(value);
}

void SetVertical(SpecContext& context) {
  const std::string list = JoinFields(context, ",");
  context.settings.verticalOff = UpperCase(list) == "N";
  context.settings.Vertical = context.settings.verticalOff ? "" : list;
}

void SetWrite(SpecContext& context) {
  context.settings.Write = IsYes(context);
}

void SetYardstick(SpecContext& context) {
  context.settings.Yardstick = JoinFields(context, ",");
}

void SetZscore(SpecContext& context) {
  TakeNumber(context, 1, context.settings.Zscore[0]);
  TakeNumber(context, 2, context.settings.Zscore[1]);
}

}  // namespace flanks
