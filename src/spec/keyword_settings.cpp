#include "spec/keyword_settings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

#include "base/parse_integer.h"
#include "base/text.h"
#include "base/utf8.h"
#include "report/format/join_number.h"
#include "run/messages.h"
#include "spec/file_names.h"
#include "spec/flank_maps.h"
#include "spec/given_value.h"
#include "spec/keyword_table.h"
#include "spec/list_reading.h"
#include "spec/specification_reader.h"
#include "spec/values.h"

namespace flanks {
namespace {

constexpr std::size_t kTableFlags = 14;
constexpr std::int32_t kMostDecimals = 9;
constexpr float kNewtonOfYes = 0.5f;
constexpr std::string_view kArrangeLetters = "AFMNPafmnp";
constexpr std::size_t kMostFlankDigits = 3;

const std::string& Value(const SpecContext& context, std::size_t field = 1) {
  return context.reading.Fields[field];
}

// The first letter of the value in upper case; code 0 when there is no value.
char Letter(const SpecContext& context) {
  const std::string& value = Value(context);
  return value.empty() ? '\0' : UpperCase(value.front());
}

bool IsYes(const SpecContext& context) {
  return Letter(context) == 'Y';
}

bool IsOneOf(char letter, std::string_view letters) {
  return letter != '\0' && letters.find(letter) != std::string_view::npos;
}

std::string JoinFields(const SpecContext& context, std::string_view separator) {
  std::string text;
  for (int field = 1; field <= context.reading.FieldCount; ++field) {
    if (field > 1) text += separator;
    text += Value(context, static_cast<std::size_t>(field));
  }
  return text;
}

// What became of a value that is not taken as it stands.
void TellValue(SpecContext& context, std::string_view value, std::string_view became) {
  context.console.ShowFlagged("The value " + std::string(value) + " " + std::string(became) + " " +
                              std::string(ShownPart(context.reading.SourceLine)));
}

// The evaluator takes a word for 0: most often a slip.
void TellWord(SpecContext& context, std::string_view value) {
  if (!BeginsLikeNumber(value)) TellValue(context, value, "is no number and taken as 0:");
}

// Real numbers, each taken when it is there.
void TakeNumber(SpecContext& context, std::size_t field, float& number) {
  const std::string& text = Value(context, field);
  if (text.empty()) return;
  number = EvaluateValue(context.console, text);
  TellWord(context, text);
}
void TakeWhole(SpecContext& context, std::size_t field, std::int32_t& number) {
  const std::string& text = Value(context, field);
  if (text.empty()) return;
  number = EvaluateWhole(context.console, text);
  TellWord(context, text);
}

// A value out of its range leaves the setting as it is, and the user is told.
void TellNotTaken(SpecContext& context, const std::string& value) {
  TellValue(context, value, "is out of range and not taken:");
}

// Takes a number within a range.
template <class InRange>
void TakeInRange(SpecContext& context, std::size_t field, float& number, InRange inRange) {
  const std::string& text = Value(context, field);
  if (text.empty()) return;
  const float value = EvaluateValue(context.console, text);
  if (inRange(value))
    number = value;
  else
    TellNotTaken(context, text);
}

// A number of units; one so small that it shows as 0 is none.
void TakeNonZero(SpecContext& context, std::size_t field, float& number) {
  TakeInRange(context, field, number, [](float value) { return FreeNumber(value) != "0"; });
}

void TakeDecimals(SpecContext& context, std::size_t field, std::int32_t& decimals) {
  TakeWhole(context, field, decimals);
  const std::int32_t taken = std::clamp(decimals, 0, kMostDecimals);
  if (taken != decimals)
    TellValue(context, Value(context, field),
              JoinNumber("is out of range and taken as", taken) + ":");
  decimals = taken;
}

// A text that is kept when there is none.
void TakeUpperText(SpecContext& context, std::string& text) {
  if (context.reading.FieldCount > 0) text = UpperCase(JoinFields(context, ","));
}

// A file name, unless the file has one already.
void TakeName(SpecContext& context, std::size_t field, std::string& name) {
  const std::string& value = Value(context, field);
  if (value.empty() || !name.empty()) return;
  if (const Fault fault = CheckFileName(value); fault != Fault::none)
    return SetFault(context.reading, fault, TextAtFault(value));
  name = value;
}

bool UnitsAreLocked(SpecContext& context) {
  if (context.state.labelsLine == 0 && context.design.ScaleLast < 0) return false;
  SetFault(context.reading, Fault::unitsTooLate);
  return true;
}

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

// ---- Files

void SetData(SpecContext& context) {
  Settings& settings = context.settings;
  if (Value(context).empty()) {
    // The mark goes, so that an empty one among the Extra specifications says nothing.
    ForgetSeen(context.state, keyword_code::kData);
    if (context.state.ReadingExtras) return;
    settings.dataSource = DataSource::inlineData;
    context.state.InlineData = true;
    return;
  }
  TakeName(context, 1, settings.dataFile);
  settings.dataSource = DataSource::file;
}

void SetOutput(SpecContext& context) {
  TakeName(context, 1, context.settings.OutputFile);
  TakeName(context, 2, context.settings.AnchorFile);
  TakeName(context, 3, context.settings.ResidualFile);
  TakeName(context, 4, context.settings.GraphFile);
}

void SetAnchorfile(SpecContext& context) {
  TakeName(context, 1, context.settings.AnchorFile);
}
void SetGraphfile(SpecContext& context) {
  TakeName(context, 1, context.settings.GraphFile);
}
void SetResidualfile(SpecContext& context) {
  TakeName(context, 1, context.settings.ResidualFile);
}
void SetScorefile(SpecContext& context) {
  TakeName(context, 1, context.settings.ScoreFile);
}
void SetSimulated(SpecContext& context) {
  TakeName(context, 1, context.settings.SimulatedFile);
}

// ---- Estimation

void SetConvergence(SpecContext& context) {
  for (std::size_t i = 0; i < context.settings.Convergence.size(); ++i)
    TakeNumber(context, i + 1, context.settings.Convergence[i]);
}

void SetHardware(SpecContext& context) {
  TakeInRange(context, 1, context.settings.Hardware, [](float value) { return value > 0.0f; });
}

void SetIterations(SpecContext& context) {
  TakeWhole(context, 1, context.settings.Iterations);
}

void SetNewton(SpecContext& context) {
  if (IsYes(context))
    context.settings.Newton = kNewtonOfYes;
  else if (Letter(context) == 'N')
    context.settings.Newton = 0.0f;
  else
    TakeNumber(context, 1, context.settings.Newton);
}

void SetSubsets(SpecContext& context) {
  const char letter = Letter(context);
  context.settings.Subsets = IsOneOf(letter, "YRL") ? letter : 'N';
  if (context.settings.Subsets != 'N') return;
  std::vector<std::string>& notes = context.console.report().closingNotes;
  std::erase(notes, message::kSubsetsNotVerified);
  notes.emplace_back(message::kSubsetsBypassed);
}

void SetWhexact(SpecContext& context) {
  context.settings.Whexact = IsYes(context) ? 'Y' : 'N';
}

void SetXtreme(SpecContext& context) {
  for (std::size_t i = 0; i < context.settings.Xtreme.size(); ++i)
    TakeInRange(context, i + 1, context.settings.Xtreme[i],
                [](float value) { return value > 0.0f && value < 1.0f; });
}

// ---- Data

void SetMissing(SpecContext& context) {
  std::string codes;
  for (int field = 1; field <= context.reading.FieldCount; ++field) {
    // Every code, not the last one alone: those of the data lose their quotes too.
    const std::string_view code = WithoutQuotes(Value(context, static_cast<std::size_t>(field)));
    if (!code.empty()) codes += "," + std::string(code);
  }
  if (!codes.empty()) context.settings.Missing = codes + ",";
}

// The one whole number with a sign: -1 is no null element.
void SetNull(SpecContext& context) {
  const std::string& text = Value(context);
  if (text.empty()) return;
  const NumericPrefix number = ReadNumericPrefix(text);
  const bool inRange =
      number.value >= -1.0 && number.value <= static_cast<double>(kLargestElementNumber);
  if (number.length == 0 || !inRange || number.value != std::floor(number.value))
    return SetFault(context.reading, Fault::nullElementRange, TextAtFault(text));
  context.settings.NullElement = static_cast<std::int64_t>(number.value);
}

void SetQuery(SpecContext& context) {
  context.settings.Query = IsYes(context);
}

void SetReplication(SpecContext& context) {
  const std::string text = UpperCase(Value(context));
  context.settings.Replication = text.empty() ? "R" : text;
}

// ---- User units

void SetUmean(SpecContext& context) {
  if (UnitsAreLocked(context)) return;
  TakeNumber(context, 1, context.settings.Umean);
  TakeNonZero(context, 2, context.settings.Uscale);
  TakeDecimals(context, 3, context.settings.Udecimals);
}

void SetUscale(SpecContext& context) {
  if (!UnitsAreLocked(context)) TakeNonZero(context, 1, context.settings.Uscale);
}

void SetUdecimals(SpecContext& context) {
  TakeDecimals(context, 1, context.settings.Udecimals);
}

// ---- What the report shows

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

// ---- The run and its output files

// As on the command line, where it is asked for before anything else: a Y anywhere in the value.
void SetBatch(SpecContext& context) {
  context.settings.Batch = UpperCase(JoinFields(context, ",")).find('Y') != std::string::npos;
}

void SetBeep(SpecContext& context) {
  context.settings.Beep = IsYes(context);
}

void SetCsv(SpecContext& context) {
  const char letter = Letter(context);
  std::string& separator = context.settings.OutputSeparator;
  if (letter == 'T')
    separator = "\t";
  else if (IsOneOf(letter, "YC"))
    separator = ",";
  else if (letter == 'S')
    separator = ";";
  else if (letter == '\0' || IsOneOf(letter, "NBF"))
    separator = " ";
  else
    separator = Value(context);
}

void SetHeadingLines(SpecContext& context) {
  context.settings.IncludeHeadings = IsYes(context);
}

void SetQuoteMarks(SpecContext& context) {
  struct Mark {
    char letter;
    std::string_view mark;
  };
  constexpr std::array kMarks = {Mark{'D', "\""}, Mark{'Q', "\""}, Mark{'A', "'"}, Mark{'C', ","},
                                 Mark{'S', ";"},  Mark{'B', " "},  Mark{'N', ""}};
  const char letter = Letter(context);
  if (letter == '\0') return;
  const auto* known = std::find_if(kMarks.begin(), kMarks.end(),
                                   [letter](const Mark& mark) { return mark.letter == letter; });
  context.settings.OutputQuote = known == kMarks.end() ? Value(context) : std::string(known->mark);
}

}  // namespace flanks
