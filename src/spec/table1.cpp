#include "spec/table1.h"

#include <optional>
#include <string_view>

#include "report/format/join_number.h"
#include "run/messages.h"
#include "run/report_page.h"
#include "spec/file_names.h"
#include "spec/models.h"

namespace flanks {
namespace {

constexpr int kLastShownRow = 10;  // of the statements and scales, from 0
constexpr std::string_view kCutOff = "....";
constexpr std::string_view kListEnd = "*";

using Lines = std::vector<std::string>;

// Adds an item to a list with commas between.
void AddItem(std::string& list, std::string_view item) {
  if (!list.empty()) list += ',';
  list += item;
}

// ---- Data

std::string FlankCounts(const Design& design) {
  std::string counts = std::to_string(design.FlankCount);
  if (design.DataFlankCount != design.FlankCount)
    AddItem(counts, std::to_string(design.DataFlankCount));
  return counts;
}

std::string EnteredList(const EntryMaps& maps) {
  std::string list;
  for (const DataPosition place : Upward(maps.EntryMap)) {
    const int flank = maps.EntryMap[place].number();
    AddItem(list, flank == 0 ? "0(unused)" : std::to_string(flank));
  }
  return list;
}

void AddDvalues(const Settings& settings, Lines& lines) {
  if (settings.Dvalues.empty()) return;
  lines.emplace_back("Dvalues =  ; values for data flanks");
  for (const DvalueEntry& entry : settings.Dvalues) {
    const bool fixed = entry.fromPosition == 0;
    lines.push_back(std::to_string(entry.position) + " = " + entry.asWritten +
                    (fixed ? " ; fixed values for data flanks" : ""));
  }
  lines.emplace_back(kListEnd);
}

void AddFlankLists(const FlankTable& flanks, Lines& lines) {
  std::string floating, zero, positive;
  for (const FlankNo flank : Upward(flanks.FlankCenter)) {
    const std::string number = std::to_string(flank.number());
    if (flanks.FlankCenter[flank] == kNonCentered) AddItem(floating, number);
    if (flanks.FlankCenter[flank] == kCenteredWithExtremes) AddItem(zero, number + "Z");
    if (IsPositive(flanks, flank)) AddItem(positive, number);
  }
  if (!floating.empty()) lines.push_back("Non-centered = " + floating);
  if (!zero.empty()) lines.push_back("Centered = " + zero);
  lines.push_back("Positive = " + (positive.empty() ? "none" : positive));
}

void AddLabels(const Settings& settings, const FlankTable& flanks, Lines& lines) {
  lines.emplace_back("Labels =");
  if (settings.NullElement != 0)
    lines.push_back(JoinNumber("Null (Keepzero) element=", settings.NullElement));
  for (const FlankNo flank : Upward(flanks.FlankName)) {
    std::string_view options = flanks.FlankOptions[flank];
    if (options.starts_with(' ')) options.remove_prefix(1);
    std::string line = JoinNumber("Flank", flank.number()) + "," + flanks.FlankName[flank] + ", ";
    line += std::string(options) + ", ";
    line += JoinNumber("; (elements =", flanks.FlankElementCount[flank]);
    line += JoinNumber(", highest group =", flanks.FlankHighestGroup[flank]) + ")";
    lines.push_back(std::move(line));
  }
}

// ---- Output

using Value = std::optional<std::string>;
constexpr std::nullopt_t kAbsent = std::nullopt;

Value When(bool condition, std::string_view text) {
  return condition ? Value(text) : kAbsent;
}

std::string FreeNumbers(std::initializer_list<float> numbers) {
  std::string list;
  for (const float number : numbers) AddItem(list, FreeNumber(number));
  return list;
}

Value AsciiValue(const Settings& s) {
  if (s.Ascii == 'N') return "N ; PC drawing characters: Letter Gothic";
  return When(s.Ascii == 'W', "W ; HTML code: display as webpage");
}

Value BiasValue(const Settings& s) {
  if (s.Bias > 0) return "plus ; ability, easiness, leniency: higher score = positive logit";
  if (s.Bias < 0) return "minus ;difficulty, severity: lower score = positive logit";
  return "omit ; suppress bias estimation";
}

Value PtBiserialValue(const Settings& s) {
  switch (s.PointCorrelationKind) {
    case 'Y':
      return "Yes";
    case 'I':
      return "Include";
    case 'M':
      return "Measure";
    default:
      return "No";
  }
}

Value InterRaterValue(const Settings& s) {
  if (s.InterRaterSetting.front() == 0) return kAbsent;
  std::string list;
  for (const int number : s.InterRaterSetting) AddItem(list, std::to_string(number));
  return list + (s.InterRaterSetting.size() > 1 ? " ; matching flanks" : "");
}

// A mark between fields or around labels, by name; another text as it is.
struct MarkName {
  std::string_view mark;
  std::string_view name;
};
template <std::size_t kCount>
std::string NameOfMark(const MarkName (&names)[kCount], const std::string& mark) {
  for (const MarkName& row : names)
    if (row.mark == mark) return std::string(row.name);
  return mark;
}

Value QuoteValue(const Settings& s) {
  constexpr MarkName kNames[] = {{"\"", "Double-quotes"},
                                 {"'", "Apostrophes"},
                                 {",", "Commas"},
                                 {";", "Semicolons"},
                                 {" ", "Blanks"}};
  return s.OutputQuote.empty() ? kAbsent : Value(NameOfMark(kNames, s.OutputQuote));
}

Value SeparatorValue(const Settings& s) {
  constexpr MarkName kNames[] = {
      {"\t", "Tabs"}, {",", "Commas"}, {";", "Semicolons"}, {" ", "Fixed"}};
  return NameOfMark(kNames, s.OutputSeparator);
}

Value BarchartValue(const Settings& s) {
  return s.Barchart == 0 ? "No" : s.Barchart == 1 ? "Yes" : "All";
}

Value UnitsValue(const Settings& s) {
  const Settings defaults;
  if (s.Uscale == defaults.Uscale && s.Umean == defaults.Umean && s.Udecimals == defaults.Udecimals)
    return kAbsent;
  return FreeNumbers({s.Umean, s.Uscale}) + "," + std::to_string(s.Udecimals) +
         " ; Umean, Uscale, Udecimals";
}

Value ZscoreValue(const Settings& s) {
  if (s.Zscore[0] == 0.0f && s.Zscore[1] == 0.0f) return kAbsent;
  return FreeNumbers({s.Zscore[0], s.Zscore[1]}) + " ; bias size, t-score";
}

// A line of the output block: what stands in front, and the value, if the line stands at all.
struct OutputRow {
  std::string_view head;
  Value (*value)(const Settings&);
};
using S = const Settings&;

constexpr OutputRow kOutputRows[] = {
    {"Arrange tables in order = ", [](S s) { return When(s.arrangeGiven, s.Arrange); }},
    {"ASCII table format = ", AsciiValue},
    {"Box show around Tables = ",
     [](S s) { return When(s.BoxShow == 'N', "N ; hide box-drawing characters"); }},
    {"Bias/Interaction direction = ", BiasValue},
    {"Fair score = ", [](S s) { return Value(s.FairAverageKind == 'Z' ? "Zero" : "Mean"); }},
    {"Pt-biserial = ", PtBiserialValue},
    {"Hardware maximum exponent =",
     [](S s) { return When(s.Hardware != Settings().Hardware, FreeNumber(s.Hardware)); }},
    {"Heading lines in output data files = ", [](S s) { return When(!s.IncludeHeadings, "N"); }},
    {"Inter-rater coefficients reported for flank =", InterRaterValue},
    {"Juxtaposition heading every lines =",
     [](S s) { return When(s.Juxtapose > 0, std::to_string(s.Juxtapose)); }},
    {"Omit unobserved elements = ", [](S s) { return When(!s.OmitUnobserved, "No"); }},
    {"QM quote marks around labels = ", QuoteValue},
    {"Scorefile = ", [](S s) { return When(!s.ScoreFile.empty(), s.ScoreFile); }},
    {"CSValues = ", SeparatorValue},
    {"Barchart = ", BarchartValue},
    {"Standard error = ",
     [](S s) { return When(s.RealStandardErrors, "Real ; enlarged by mean square infit"); }},
    {"Subset detection = ", [](S s) { return When(s.Subsets != 'Y', std::string(1, s.Subsets)); }},
    {"Total score for elements = ", [](S s) { return When(s.TotalScoreMode, "Yes"); }},
    {"T3onscreen show only one line on screen iteration report = ",
     [](S s) { return Value(s.T3onscreen); }},
    {"T4MAX maximum number of unexpected observations reported in Table 4 =",
     [](S s) { return Value(std::to_string(s.T4maximum)); }},
    {"T7LGS show table 7 element list, group details, group summary = ",
     [](S s) { return Value(s.T7LGS); }},
    {"T8NBC show table 8 numbers-barcharts-curves = ", [](S s) { return Value(s.T8NBC); }},
    {"Umean =", UnitsValue},
    {"Unexpected observations reported if standardized residual >=",
     [](S s) { return Value(FreeNumber(s.Unexpected)); }},
    {"Usort unexpected observations sort order = ",
     [](S s) { return When(s.usortGiven, s.Usort); }},
    {"UTF8encoded = ", [](S s) { return When(!s.UTF8enc.empty(), s.UTF8enc); }},
    {"UTF8sub substitute code = ",
     [](S s) { return When(s.UTF8sub != Settings().UTF8sub, s.UTF8sub); }},
    {"Vertical ruler definitions = ",
     [](S s) { return s.verticalOff ? Value("N") : When(!s.Vertical.empty(), s.Vertical); }},
    {"WHexact - Wilson-Hilferty standardization = ",
     [](S s) { return Value(std::string(1, s.Whexact)); }},
    {"Yardstick: dimensions in rulers = ",
     [](S s) { return When(!s.Yardstick.empty(), s.Yardstick); }},
    {"Write iteration residuals in output file = ", [](S s) { return When(s.Write, "yes"); }},
    {"Zscore (Bias size/significance) not less than = ", ZscoreValue},
};

// ---- The head block

std::string DataFileName(const Settings& settings) {
  if (settings.dataSource == DataSource::file) return settings.dataFile;
  return "(" + settings.specificationFile + ")";
}

Lines TitleLines(const Analysis& analysis) {
  Lines lines;
  if (!analysis.report.deferredMessages.empty()) {
    lines.emplace_back(" Messages:");
    for (const std::string& message : analysis.report.deferredMessages) lines.push_back(message);
  }
  lines.push_back("Title = " + analysis.settings.Title);
  return lines;
}

// One by one: there may be millions.
void WriteComments(Console& console, KeptLines& comments) {
  if (comments.empty()) return;
  console.WriteOutput(";; Comments =");
  std::string comment;
  for (comments.Rewind(); comments.Next(comment);) console.WriteOutput("  " + comment);
}

Lines FileLines(const Settings& settings) {
  Lines lines;
  lines.push_back("Data file = " + DataFileName(settings));
  lines.push_back("Output file = " + settings.OutputFile);
  const auto addNamed = [&lines](std::string_view head, const std::string& name) {
    if (!name.empty()) lines.push_back(std::string(head) + name);
  };
  addNamed("Anchor output file = ", settings.AnchorFile);
  addNamed("Graph output file = ", settings.GraphFile);
  addNamed("Residual output file = ", settings.ResidualFile);
  addNamed("Simulated data output file = ", settings.SimulatedFile);
  lines.emplace_back();
  return lines;
}

std::string ScaleLine(const ScaleDefinition& scale) {
  std::string line = "Rating (or other) scale = " + scale.name + "," + scale.type;
  line += scale.specific ? ",Specific" : ",General";
  line += scale.keep ? ",Keep" : ",Ordinal";
  if (!scale.tail.empty()) line += "," + scale.tail;
  if (!scale.referenced) line += message::kScaleNotReferenced;
  return line;
}

void AddCut(Lines& lines) {
  lines.emplace_back(kCutOff);
  lines.emplace_back(kListEnd);
}

void WriteLines(Console& console, const Lines& lines) {
  for (const std::string& line : lines) console.WriteOutput(line);
}

}  // namespace

std::vector<std::string> DataBlock(const Settings& settings, const Design& design) {
  Lines lines;
  lines.emplace_back("; Data specification");
  lines.push_back("Flanks = " + FlankCounts(design));
  if (settings.enteredInDataGiven) lines.push_back("Entered-in-data = " + EnteredList(design.maps));
  lines.push_back("Delements = " + settings.Delements +
                  (settings.Delements == Settings().Delements
                       ? "  ; element identifiers are element numbers"
                       : ""));
  AddDvalues(settings, lines);
  AddFlankLists(design.flanks, lines);
  AddLabels(settings, design.flanks, lines);
  return lines;
}

// Every row is walked, because the walk marks the scales; few are shown.
// Kept: scales are cut at row 10 although it is then shown, statements behind it (docs/quirks.md).
std::vector<std::string> ModelsBlock(Design& design) {
  Lines lines;
  for (const ModelRow model : Upward(design.models.ModelText)) {
    const ScaleDefinitionRow scale = design.models.ModelScale[model];
    if (design.scales.has(scale)) design.scales[scale].referenced = true;
    if (model.number() <= kLastShownRow)
      lines.push_back("Model = " + StatementText(design.models, model));
  }
  if (design.ModelLast > kLastShownRow) AddCut(lines);
  for (const ScaleDefinitionRow scale : Upward(design.scales))
    if (scale.number() <= kLastShownRow) lines.push_back(ScaleLine(design.scales[scale]));
  if (design.ScaleLast >= kLastShownRow) AddCut(lines);
  return lines;
}

std::vector<std::string> OutputBlock(const Settings& settings) {
  Lines lines;
  lines.emplace_back("; Output description");
  for (const OutputRow& row : kOutputRows)
    if (const Value value = row.value(settings)) lines.push_back(JoinNumber(row.head, *value));
  return lines;
}

std::vector<std::string> ConvergenceBlock(const Settings& settings) {
  const auto& limits = settings.Convergence;
  Lines lines;
  lines.emplace_back("; Convergence control");
  lines.push_back("Convergence = " + FreeNumbers({limits[0], limits[1], limits[2], limits[3]}));
  lines.push_back(JoinNumber("Iterations (maximum) =", settings.Iterations) +
                  (settings.Iterations < 1 ? " ; unlimited" : ""));
  if (settings.Newton != 0.0f) lines.push_back(JoinNumber("Newton-Raphson = ", settings.Newton));
  lines.push_back("Xtreme scores adjusted by = " +
                  FreeNumbers({settings.Xtreme[0], settings.Xtreme[1]}) + "  ;(estimation, bias)");
  return lines;
}

void WriteTable1(Run& run) {
  Analysis& analysis = run.analysis;
  Console& console = run.console;
  SelectTable(console, 1);
  TableHeading(console, "Table 1. Specifications from file " +
                            InQuotes(analysis.settings.specificationFile));
  WriteLines(console, TitleLines(analysis));
  WriteComments(console, analysis.specification.IgnoredLines);
  WriteLines(console, FileLines(analysis.settings));
  WriteLines(console, DataBlock(analysis.settings, analysis.design));
  WriteLines(console, ModelsBlock(analysis.design));
  WriteLines(console, OutputBlock(analysis.settings));
  console.WriteOutput("");
  WriteLines(console, ConvergenceBlock(analysis.settings));
  analysis.report.deferredMessages.clear();
}

}  // namespace flanks
