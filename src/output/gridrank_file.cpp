#include "output/gridrank_file.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <set>
#include <string_view>

#include "base/text.h"
#include "base/utf8.h"
#include "estimate/observation.h"
#include "output/anchor_models.h"
#include "output/gridrank_table.h"
#include "report/format/delimited.h"
#include "report/format/join_number.h"
#include "run/program_mark.h"
#include "run/progress_bar.h"

namespace flanks {
namespace {

constexpr int kAnchorDecimals = 2;
// Codes from 0 to the largest value are listed up to this one, beyond it those that occur.
constexpr std::int64_t kLargestListedCode = 9999;

std::string RightAligned(std::string_view text, std::size_t width) {
  std::string field(width > text.size() ? width - text.size() : 0, ' ');
  return field.append(text);
}

// Texts with `between` between them.
std::string Joined(const std::vector<std::string>& texts, std::string_view between) {
  std::string joined;
  for (const std::string& text : texts) {
    if (!joined.empty()) joined += between;
    joined += text;
  }
  return joined;
}

CellRule RuleOf(const GridrankOptions& options) {
  if (options.letters.find('T') != std::string::npos) return CellRule::sum;
  return options.letters.find('L') != std::string::npos ? CellRule::last : CellRule::first;
}

class GridrankWriter {
 public:
  GridrankWriter(Run& run, const GridrankOptions& options, const GridrankTable& table,
                 Destination& out)
      : run_(run), analysis_(run.analysis), options_(options), table_(table), out_(out) {}

  void Write();

 private:
  using Flanks = std::vector<FlankNo>;

  bool Has(char letter) const { return options_.letters.find(letter) != std::string::npos; }
  void Line(std::string_view text) { out_.Line(TrimRight(text)); }
  void WriteHead();
  void WriteCodes();
  void WritePlaces(const Flanks& flanks, std::string_view mark);
  void WriteRowPlaces();
  void WriteCategories();
  void WriteThresholds();
  void WriteAnchors(std::string_view head, const std::vector<GridrankLine>& lines);
  void WriteColumnLabels();
  void WriteRows();

  std::vector<std::string> Names(const Flanks& flanks) const;
  std::size_t NumberWidth(FlankNo flank) const;
  std::string Numbers(const Flanks& flanks, const GridrankLine& line) const;
  std::string Label(const Flanks& flanks, const GridrankLine& line, std::string_view between) const;
  std::string Combination(const GridrankLine& line) const;
  std::string CategoryLabel(ScaleRow scale, int k) const;

  Run& run_;
  const Analysis& analysis_;
  const GridrankOptions& options_;
  const GridrankTable& table_;
  Destination& out_;
  std::vector<AnchorScale> scales_;  // with thresholds or discriminations, by name
  std::size_t xwide_ = 1;
};

void GridrankWriter::Write() {
  xwide_ = std::to_string(table_.largest).size();
  for (const AnchorScale& scale :
       PlanAnchorModels(analysis_.design, analysis_.structures, analysis_.scales).scales)
    if (analysis_.scales.scaleType.has(scale.scale)) scales_.push_back(scale);
  WriteHead();
  WriteCategories();
  if (Has('S')) WriteThresholds();
  if (Has('C')) WriteAnchors("iafile = *  ; item-column anchor values", table_.ColumnTable);
  if (Has('R')) WriteAnchors("pafile = *  ; person-row anchor values", table_.RowTable);
  WriteColumnLabels();
  if (!Has('N')) WriteRows();
}

// ---- The head

std::vector<std::string> GridrankWriter::Names(const Flanks& flanks) const {
  std::vector<std::string> names;
  for (const FlankNo flank : flanks) names.push_back(analysis_.design.flanks.FlankName[flank]);
  return names;
}

void GridrankWriter::WriteHead() {
  const Settings& settings = analysis_.settings;
  Line("Title = " + settings.Title);
  Line("item = " + Joined(Names(options_.columnFlanks), "/") + "  ; column identification");
  Line("person = " + Joined(Names(options_.rowFlanks), "/") + "  ; row identification");
  Line(JoinNumber("xwide =", static_cast<std::int64_t>(xwide_)) + "  ; width of datapoint");
  WriteCodes();
  const CellRule rule = RuleOf(options_);
  Line(rule == CellRule::sum    ? "; sum of data points in cell used"
       : rule == CellRule::last ? "; last data point in cell used"
                                : "; first data point in cell used");
  Line("; by " + ProgramAndDate());
  const std::size_t columns = table_.ColumnTable.size();
  Line(JoinNumber("ni =", static_cast<std::int64_t>(columns)) + "  ; number of data columns");
  Line("item1 = 1  ; starting column of data");
  const std::size_t labelColumn = columns * xwide_ + 2;  // behind the cells and a blank
  Line(JoinNumber("name1 =", static_cast<std::int64_t>(labelColumn)) + "  ; start of row labels");
  WriteRowPlaces();
  Line(JoinNumber("umean =", settings.Umean) + "  ; user mean measure");
  Line(JoinNumber("uscale =", settings.Uscale) + "  ; user logit scaling conversion");
  Line(JoinNumber("udecim =", settings.Udecimals) + "  ; user logit decimal places");
  Line("groups = 0  ; allow each item to define its own rating scale");
}

void GridrankWriter::WriteCodes() {
  std::string codes;
  const auto add = [&](std::int64_t code) { codes += RightAligned(std::to_string(code), xwide_); };
  if (table_.largest <= kLargestListedCode) {
    for (std::int64_t code = 0; code <= table_.largest; ++code) add(code);
  } else {
    std::set<std::int64_t> values;
    for (const GridrankCell& cell : table_.CellTable) values.insert(cell.value);
    for (const std::int64_t value : values) add(value);
  }
  Line("codes = \"" + codes + "\"  ; valid data codes");
}

void GridrankWriter::WriteRowPlaces() {
  WritePlaces(options_.rowFlanks, "@pf");
  std::size_t longest = 0;
  for (const GridrankLine& row : table_.RowTable) {
    const std::string label = Label(options_.rowFlanks, row, " - ");
    const int width = DisplayWidth(label, EncodingOf(analysis_.settings));
    longest = std::max(longest, static_cast<std::size_t>(width));
  }
  Line(JoinNumber("namelen =", static_cast<std::int64_t>(longest)) + " ; row label length");
}

// Where in a label the number of each Flank's element stands.
void GridrankWriter::WritePlaces(const Flanks& flanks, std::string_view mark) {
  const bool ofRows = mark == "@pf";
  std::size_t start = 1;
  for (const FlankNo flank : flanks) {
    const std::size_t width = NumberWidth(flank);
    if (width == 0) continue;
    const std::string number = std::to_string(flank.number());
    std::string line = analysis_.design.flanks.FlankName[flank] + " " + std::string(mark) + number +
                       "=$S" + std::to_string(start) + "W" + std::to_string(width) + " ; " + number;
    if (ofRows) {
      const EntryMaps& maps = analysis_.design.maps;
      for (const DataPosition p : Upward(maps.EntryMap))
        if (maps.EntryMap[p] == flank) {
          line += " " + std::to_string(p.number());
          break;
        }
    }
    Line(line);
    start += width + 1;
  }
}

// ---- Scales

std::string GridrankWriter::CategoryLabel(ScaleRow scale, int k) const {
  const ScaleDefinitionRow definition = analysis_.scales.scaleDefinition[scale];
  if (!analysis_.design.scales.has(definition)) return {};
  const int raw = analysis_.scales.rawCategory.at(scale, k);
  for (const ScaleCategory& category : analysis_.design.scales[definition].categories)
    if (category.number == raw) return category.label;
  return {};
}

void GridrankWriter::WriteCategories() {
  Line("clfile = *  ; category labels");
  for (const AnchorScale& scale : scales_) {
    const std::string name = scales_.size() > 1 ? " (" + scale.name + ")" : "";
    for (int k = 0; k <= analysis_.scales.ScaleTopCategory[scale.scale]; ++k)
      Line(std::to_string(k) + " " + CategoryLabel(scale.scale, k) + name);
  }
  Line("*");
}

void GridrankWriter::WriteThresholds() {
  Line("safile = *  ; rating structure anchor values");
  const ScaleTables& scales = analysis_.scales;
  for (const AnchorScale& scale : scales_) {
    const bool counts =
        scales.scaleType[scale.scale] != ScaleType::rating && scales.scaleMaximum[scale.scale] > 1;
    for (int k = 1; k <= scales.ScaleTopCategory[scale.scale] && !counts; ++k) {
      if (scales.CategoryFlag.at(scale.scale, k) == kCategorySkipped) continue;
      const double threshold = scales.ThresholdTable.at(scale.scale, k);
      const double userThreshold = threshold * static_cast<double>(analysis_.settings.Uscale);
      Line(std::to_string(k) + " " + DelimitedDecimals(userThreshold, kAnchorDecimals) +
           (scales_.size() > 1 ? "  ; " + scale.name : ""));
    }
  }
  Line("*");
}

// ---- Rows and columns

// Digits of the longest element number; 0 when the Flank has no element.
std::size_t GridrankWriter::NumberWidth(FlankNo flank) const {
  const FlankTable& flanks = analysis_.design.flanks;
  if (flanks.FlankElementCount[flank] == 0) return 0;
  return std::to_string(flanks.FlankHigh[flank]).size();
}

std::string GridrankWriter::Numbers(const Flanks& flanks, const GridrankLine& line) const {
  std::string numbers;
  for (std::size_t n = 0; n < flanks.size(); ++n) {
    const std::size_t width = NumberWidth(flanks[n]);
    if (width == 0) continue;
    const ElementSlot slot = line.elements[n];
    const std::string number =
        slot.number() > 0 ? std::to_string(analysis_.design.elements.ElementNumber[slot]) : "";
    if (!numbers.empty()) numbers += ' ';
    numbers += RightAligned(number, width);
  }
  return numbers;
}

std::string GridrankWriter::Label(const Flanks& flanks, const GridrankLine& line,
                                  std::string_view between) const {
  std::vector<std::string> labels;
  for (const ElementSlot slot : line.elements)
    if (slot.number() > 0) labels.push_back(analysis_.design.elements.ElementLabel[slot]);
  return Numbers(flanks, line) + " " + Joined(labels, between);
}

std::string GridrankWriter::Combination(const GridrankLine& line) const {
  const ElementTable& elements = analysis_.design.elements;
  std::vector<std::string> texts;
  for (const ElementSlot slot : line.elements)
    if (slot.number() > 0)
      texts.push_back(std::to_string(elements.ElementNumber[slot]) + " " +
                      elements.ElementLabel[slot]);
  return Joined(texts, " + ");
}

// A sum of measures stands in user units as one measure does.
void GridrankWriter::WriteAnchors(std::string_view head, const std::vector<GridrankLine>& lines) {
  Line(head);
  const std::size_t width = std::to_string(lines.size()).size();
  for (std::size_t n = 0; n < lines.size(); ++n) {
    double logits = 0.0;
    for (const ElementSlot slot : lines[n].elements)
      if (slot.number() > 0) logits += analysis_.estimates.elements[slot].ElementMeasure;
    const Settings& settings = analysis_.settings;
    const double measure = settings.Umean + static_cast<double>(settings.Uscale) * logits;
    Line(RightAligned(std::to_string(n + 1), width) + " " +
         DelimitedDecimals(measure, kAnchorDecimals) + " ; " + Combination(lines[n]));
  }
  Line("*");
}

void GridrankWriter::WriteColumnLabels() {
  WritePlaces(options_.columnFlanks, "@if");
  Line(Joined(Names(options_.columnFlanks), " - "));
  Line("&End");
  for (std::size_t n = 0; n < table_.ColumnTable.size(); ++n)
    Line(Label(options_.columnFlanks, table_.ColumnTable[n], " ") +
         (n == 0 ? "  ; item-column labels" : ""));
  Line("END LABELS");
}

void GridrankWriter::WriteRows() {
  constexpr std::size_t kRowsBetweenTurns = 256;
  ProgressBar bar(run_.console, static_cast<std::int64_t>(table_.RowTable.size()));
  std::string line;
  std::size_t next = 0;  // cell
  for (std::size_t row = 0; row < table_.RowTable.size(); ++row) {
    if (row % kRowsBetweenTurns == 0 && run_.console.YieldToWindow()) return bar.Break();
    line.assign(table_.ColumnTable.size() * xwide_, ' ');
    for (; next < table_.CellTable.size() && table_.CellTable[next].row == row; ++next) {
      const GridrankCell& cell = table_.CellTable[next];
      line.replace(cell.column * xwide_, xwide_, RightAligned(std::to_string(cell.value), xwide_));
    }
    line += " " + Label(options_.rowFlanks, table_.RowTable[row], " - ");
    Line(line + (row == 0 ? "  ; row data + label" : ""));
    bar.Advance(static_cast<std::int64_t>(row) + 1);
  }
  bar.End();
}

}  // namespace

bool CollectGridrankTable(Run& run, const GridrankOptions& options, GridrankTable& table) {
  for (const std::vector<FlankNo>* flanks : {&options.rowFlanks, &options.columnFlanks})
    for (const FlankNo flank : *flanks)
      if (!run.analysis.design.flanks.FlankName.has(flank)) {
        run.console.ShowFlagged(JoinNumber("There is no Flank", flank.number()));
        return false;
      }
  if (options.rowFlanks.empty() || options.columnFlanks.empty()) {
    run.console.ShowFlagged(options.rowFlanks.empty() ? "Please check a Flank in upper list"
                                                      : "Please check a Flank in lower list");
    return false;
  }
  try {
    table = BuildGridrankTable(PassPartsOf(run.analysis, run.console), options.rowFlanks,
                               options.columnFlanks, RuleOf(options));
  } catch (const std::bad_alloc&) {
    run.console.WarnLine(
        "Not enough available memory for constructing this Gridrank control and data file");
    return false;
  }
  const CellRule rule = RuleOf(options);
  if (table.MultipleInCell && rule != CellRule::sum)
    run.console.ShowFlagged(
        rule == CellRule::last ? "Some cells have several observations: of each the last is used"
                               : "Some cells have several observations: of each the first is used");
  return !run.console.stopping();
}

void WriteGridrankLines(Run& run, const GridrankOptions& options, const GridrankTable& table,
                        Destination& out) {
  GridrankWriter(run, options, table, out).Write();
}

bool WriteGridrankFile(Run& run, const std::string& name, const GridrankOptions& options) {
  GridrankTable table;
  if (!CollectGridrankTable(run, options, table)) return false;
  return WriteOutputFile(run, "WriteGridrankFile", name,
                         [&](Destination& out) { WriteGridrankLines(run, options, table, out); });
}

}  // namespace flanks
