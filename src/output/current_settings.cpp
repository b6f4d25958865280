#include "output/current_settings.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "report/format/decimal_digits.h"
#include "report/format/join_number.h"

namespace flanks {
namespace {

std::string YesNo(bool yes) {
  return yes ? "Y" : "N";
}

void AddItem(std::string& list, const std::string& item) {
  if (!list.empty()) list += ',';
  list += item;
}

// All digits, without an exponent.
std::string Exactly(float value) {
  return PlainText(ShortestDigits(value));
}

std::string Numbers(std::initializer_list<float> numbers) {
  std::string list;
  for (const float number : numbers) AddItem(list, Exactly(number));
  return list;
}

// A mark between fields or around labels by its word, another text as it is.
struct MarkWord {
  std::string_view mark;
  std::string_view word;
};
template <std::size_t kCount>
std::string WordOf(const MarkWord (&words)[kCount], const std::string& mark) {
  for (const MarkWord& row : words)
    if (row.mark == mark) return std::string(row.word);
  return mark;
}

std::string SeparatorWord(const Settings& s) {
  constexpr MarkWord kWords[] = {
      {"\t", "Tab"}, {",", "Comma"}, {";", "Semicolon"}, {" ", "Blank"}, {"", "Blank"}};
  return WordOf(kWords, s.OutputSeparator);
}

std::string QuoteWord(const Settings& s) {
  constexpr MarkWord kWords[] = {{"\"", "Double"},   {"'", "Apostrophe"}, {",", "Comma"},
                                 {";", "Semicolon"}, {" ", "Blank"},      {"", "None"}};
  return WordOf(kWords, s.OutputQuote);
}

std::string InterRaterList(const Settings& s) {
  std::string list;
  for (const int number : s.InterRaterSetting) AddItem(list, std::to_string(number));
  return list;
}

// ",9,x," as "9,x".
std::string MissingCodes(const Settings& s) {
  std::string_view codes = s.Missing;
  if (codes.starts_with(',')) codes.remove_prefix(1);
  if (codes.ends_with(',')) codes.remove_suffix(1);
  return std::string(codes);
}

// One line: the keyword as it is written, and its value.
struct SettingRow {
  std::string_view head;
  std::string (*value)(const Settings&);
};
using S = const Settings&;

constexpr SettingRow kRows[] = {
    {"Null = ", [](S s) { return std::to_string(s.NullElement); }},
    {"Missing = ", MissingCodes},
    {"Replication = ", [](S s) { return s.Replication; }},
    {"Query = ", [](S s) { return YesNo(s.Query); }},
    {"Delements = ", [](S s) { return s.Delements; }},
    {"Arrange = ", [](S s) { return s.Arrange; }},
    {"ASCII = ", [](S s) { return std::string(1, s.Ascii); }},
    {"Barchart = ",
     [](S s) {
       return std::string(s.Barchart == 0 ? "N" : s.Barchart == 1 ? "Y" : "A");
     }},
    {"Batch = ", [](S s) { return YesNo(s.Batch); }},
    {"Beep = ", [](S s) { return YesNo(s.Beep); }},
    {"Bias = ",
     [](S s) {
       return std::string(s.Bias > 0 ? "Plus" : s.Bias < 0 ? "Minus" : "Omit");
     }},
    {"Box = ", [](S s) { return std::string(1, s.BoxShow); }},
    {"Convergence = ",
     [](S s) {
       const auto& c = s.Convergence;
       return Numbers({c[0], c[1], c[2], c[3]});
     }},
    {"CSV = ", SeparatorWord},
    {"Fair = ", [](S s) { return std::string(1, s.FairAverageKind); }},
    {"Hardware = ", [](S s) { return Exactly(s.Hardware); }},
    {"Heading lines = ", [](S s) { return YesNo(s.IncludeHeadings); }},
    {"Inter-rater = ", InterRaterList},
    {"Iterations = ", [](S s) { return std::to_string(s.Iterations); }},
    {"Juxtapose = ", [](S s) { return std::to_string(s.Juxtapose); }},
    {"Left-hand = ", [](S s) { return YesNo(s.LeftHand); }},
    {"Newton = ", [](S s) { return Exactly(s.Newton); }},
    {"Omit-unobserved = ", [](S s) { return YesNo(s.OmitUnobserved); }},
    {"Pt-biserial = ", [](S s) { return std::string(1, s.PointCorrelationKind); }},
    {"QM = ", QuoteWord},
    {"Reversed = ", [](S s) { return YesNo(s.Reversed); }},
    {"Standard errors = ",
     [](S s) { return std::string(s.RealStandardErrors ? "Real" : "Model"); }},
    {"Subsets = ", [](S s) { return std::string(1, s.Subsets); }},
    {"T3onscreen = ", [](S s) { return s.T3onscreen; }},
    {"T4MAX = ", [](S s) { return std::to_string(s.T4maximum); }},
    {"T7LGS = ", [](S s) { return s.T7LGS; }},
    {"T8NBC = ", [](S s) { return s.T8NBC; }},
    {"Tables = ", [](S s) { return s.Tables; }},
    {"Totalscore = ", [](S s) { return YesNo(s.TotalScoreMode); }},
    {"Unexpected = ", [](S s) { return Exactly(s.Unexpected); }},
    {"Usort = ", [](S s) { return s.Usort; }},
    {"UTF8encoded = ", [](S s) { return s.UTF8enc; }},
    {"UTF8sub = ", [](S s) { return s.UTF8sub; }},
    {"Vertical = ", [](S s) { return s.verticalOff ? "N" : s.Vertical; }},
    {"Whexact = ", [](S s) { return std::string(1, s.Whexact); }},
    {"Write = ", [](S s) { return YesNo(s.Write); }},
    {"Xtreme = ",
     [](S s) {
       return Numbers({s.Xtreme[0], s.Xtreme[1]});
     }},
    {"Yardstick = ", [](S s) { return s.Yardstick; }},
    {"Zscore = ",
     [](S s) {
       return Numbers({s.Zscore[0], s.Zscore[1]});
     }},
};

void WriteFileNames(const Settings& settings, SpecificationLines& lines) {
  struct Name {
    std::string_view head;
    const std::string& name;
  };
  const Name names[] = {
      {"; Output = ", settings.OutputFile}, {"; Anchorfile = ", settings.AnchorFile},
      {"Scorefile = ", settings.ScoreFile}, {"Residualfile = ", settings.ResidualFile},
      {"Graphfile = ", settings.GraphFile}, {"Simulated = ", settings.SimulatedFile}};
  for (const Name& row : names)
    if (!row.name.empty()) lines.Line(std::string(row.head) + row.name);
}

// Which Flanks float.  Only the reversed form tells Flanks that are centered with their extremes.
std::string CenterLine(const FlankTable& flanks) {
  std::string floating, centered;
  bool zero = false;
  for (const FlankNo flank : Upward(flanks.FlankCenter)) {
    const std::string number = std::to_string(flank.number());
    const std::int16_t center = flanks.FlankCenter[flank];
    zero = zero || center == kCenteredWithExtremes;
    if (center == kNonCentered)
      AddItem(floating, number);
    else
      AddItem(centered, number + (center == kCenteredWithExtremes ? "Z" : ""));
  }
  if (zero) return "Center = " + centered;
  return "Noncenter = " + (floating.empty() ? "0" : floating);
}

std::string PositiveLine(const FlankTable& flanks) {
  std::string list;
  for (const FlankNo flank : Upward(flanks.FlankOrientation))
    if (IsPositive(flanks, flank)) AddItem(list, std::to_string(flank.number()));
  return "Positive = " + (list.empty() ? "N" : list);
}

std::string EnteredLine(const EntryMaps& maps) {
  std::string list;
  for (const DataPosition place : Upward(maps.EntryMap))
    AddItem(list, std::to_string(maps.EntryMap[place].number()));
  return "Entered-in-data = " + list;
}

void WriteFlanks(const Settings& settings, const Design& design, SpecificationLines& lines) {
  std::string counts = std::to_string(design.FlankCount);
  if (design.DataFlankCount != design.FlankCount)
    AddItem(counts, std::to_string(design.DataFlankCount));
  lines.Line("Flanks = " + counts);
  if (settings.enteredInDataGiven) lines.Line(EnteredLine(design.maps));
  lines.Line(CenterLine(design.flanks));
  lines.Line(PositiveLine(design.flanks));
}

void WriteGroupLabels(const std::vector<GroupLabel>& labels, SpecificationLines& lines) {
  if (labels.empty()) return;
  lines.Line("Glabel =");
  for (const GroupLabel& label : labels)
    lines.KeepLine(std::to_string(label.flank.number()) + "," + std::to_string(label.group) + "," +
                   label.label);
  lines.Line("*");
}

}  // namespace

std::string UnitsLine(const Settings& settings) {
  return "Umean = " + Exactly(settings.Umean) + ", " + Exactly(settings.Uscale) + ", " +
         std::to_string(settings.Udecimals);
}

void WriteCurrentSettings(const Settings& settings, const Design& design,
                          SpecificationLines& lines) {
  lines.Line("Title = " + settings.Title);
  WriteFileNames(settings, lines);
  if (settings.dataSource == DataSource::file) lines.Line("Data = " + settings.dataFile);
  WriteFlanks(settings, design, lines);
  for (const SettingRow& row : kRows)
    if (const std::string value = row.value(settings); !value.empty())
      lines.Line(std::string(row.head) + value);
  lines.Line(UnitsLine(settings));
  WriteGroupLabels(design.groupLabels, lines);
}

}  // namespace flanks
