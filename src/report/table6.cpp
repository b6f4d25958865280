#include "report/table6.h"

#include <algorithm>
#include <optional>
#include <tuple>
#include <utility>

#include "base/single.h"
#include "base/text.h"
#include "report/format/box.h"
#include "report/format/clip_field.h"
#include "report/format/fixed_field.h"
#include "report/format/join_number.h"
#include "report/table6_categories.h"
#include "report/table6_summary.h"
#include "run/report_page.h"

namespace flanks {
namespace {

constexpr int kTable = 6;
constexpr int kMeasureWidth = 5;
constexpr std::string_view kSubsetVertical = "(N,#S)";

// One ruler, laid out.
struct Ruler {
  RulerList list;
  RulerScale scale;
  std::vector<RulerColumn> columns;
  std::vector<RulerScaleColumn> scaleColumns;
};

// Left edge, inner separators and right edge of a row.
struct Separators {
  char left, inner, right;
};
constexpr Separators kPlainRow{kBoxColumn, kBoxColumn, kBoxColumn};
constexpr Separators kTickRow{kBoxLeftTee, kBoxCross, kBoxRightTee};
constexpr Separators kZeroRow{kBoxDoubleLeftTee, kBoxDoubleCross, kBoxDoubleRightTee};
constexpr Separators kFurtherLine{':', ':', ':'};

std::string Title(std::int32_t subset) {
  if (subset == 0) return "Table 6.0  All Flank Vertical \"Rulers\"";
  const std::string number = std::to_string(subset);
  return "Table 6.0." + number + "  Disjoint Subset " + number + " Vertical Summary";
}

// A user measure in as many of its decimals as it needs: "-2", ".25".
std::string MeasureText(double userMeasure, int decimals) {
  constexpr int kWidestMeasure = 20;
  std::string text(Trim(FixedField(userMeasure, kWidestMeasure, decimals)));
  if (text.find('.') == std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text.empty() ? "0" : text;
}

// Below a tenth one decimal would tell nothing.
std::string LinesText(double lines) {
  return lines < 0.1 ? MeasureText(lines, 4) : NumberText(lines);
}

std::string EchoLine(const RulerList& list, const Yardstick& yardstick, const RulerScale& scale,
                     int decimals) {
  return "Vertical = (" + RulerListText(list) +
         ") Yardstick (columns lines low high extreme)=" + std::to_string(yardstick.columns) + "," +
         LinesText(scale.lines) + "," + MeasureText(scale.low, decimals) + "," +
         MeasureText(scale.high, decimals) + "," +
         (yardstick.extremesAtMeasures ? "Measure" : "End");
}

// The cells of a line between their separators, Flank columns and scale columns in their order.
template <class FlankCell, class ScaleCell>
std::string JoinCells(const Ruler& ruler, Separators separators, std::string line,
                      FlankCell flankCell, ScaleCell scaleCell) {
  const auto add = [&](const std::string& cell) { line += separators.inner + cell; };
  for (std::size_t at = 0; at <= ruler.columns.size(); ++at) {
    if (at == ruler.list.scalesAt)
      for (const RulerScaleColumn& column : ruler.scaleColumns) add(scaleCell(column));
    if (at < ruler.columns.size()) add(flankCell(ruler.columns[at]));
  }
  return line + separators.right;
}

std::string HeadingLine(const Ruler& ruler, Utf8Encoded encoding) {
  const auto clipped = [encoding](const auto& column) {
    return ClipField(column.head, column.width, encoding);
  };
  return JoinCells(ruler, kPlainRow, std::string(1, kBoxColumn) + "Measr", clipped, clipped);
}

std::string RulePatternOf(const Ruler& ruler) {
  const auto dashes = [](const auto& column) {
    return std::string(static_cast<std::size_t>(column.width), '-');
  };
  const Separators joints{'x', 'x', 'x'};
  return JoinCells(ruler, joints, "x" + std::string(kMeasureWidth, '-'), dashes, dashes);
}

// Line `line` of a row of the grid: its first has tick and categories.
std::string RulerLine(const Analysis& analysis, const Ruler& ruler, int row, std::int32_t line) {
  const auto at = static_cast<std::size_t>(row);
  const auto flankCell = [&](const RulerColumn& column) {
    return RulerCell(analysis, column, row, line);
  };
  const auto scaleCell = [&](const RulerScaleColumn& column) {
    return line == 0 ? column.cells[at] : std::string(static_cast<std::size_t>(column.width), ' ');
  };
  const std::optional<double> tick = ruler.scale.TickOf(row);
  if (line > 0)
    return JoinCells(ruler, kFurtherLine, ":" + std::string(kMeasureWidth, ' '), flankCell,
                     scaleCell);
  const Separators separators = !tick ? kPlainRow : *tick == 0.0 ? kZeroRow : kTickRow;
  const std::string measure =
      tick ? FixedField(*tick, kMeasureWidth, *tick == 0.0 ? 0 : ruler.scale.tickDecimals)
           : std::string(kMeasureWidth, ' ');
  return JoinCells(ruler, separators, separators.left + measure, flankCell, scaleCell);
}

// False when the run is to stop.  `expanded`: a row took more than one line.
bool WriteRows(Run& run, const Ruler& ruler, bool& expanded) {
  for (int row = 0; row < ruler.scale.rows(); ++row) {
    std::int32_t lines = 1;
    for (const RulerColumn& column : ruler.columns) lines = std::max(lines, column.LinesOf(row));
    for (std::int32_t line = 0; line < lines; ++line) {
      if (run.console.YieldToWindow()) return false;
      Juxtapose(run.console);
      WriteReportLine(run.console, RulerLine(run.analysis, ruler, row, line));
    }
    expanded = expanded || lines > 1;
  }
  return true;
}

void TellOmittedFlanks(Console& console, const RulerList& list) {
  if (list.omitted.empty()) return;
  std::string numbers;
  for (const int flank : list.omitted)
    numbers += (numbers.empty() ? "" : ",") + std::to_string(flank);
  WriteReportLine(console, JoinNumber("Flank omitted because all elements have the same measure. "
                                      "Use Vertical= to force display:",
                                      numbers));
}

void WriteFoot(Run& run, const Ruler& ruler, bool expanded) {
  Console& console = run.console;
  if (expanded)
    WriteReportLine(console, "Metric maintained by + or " + std::string(1, kBoxColumn) +
                                 ".  Spacing expanded with : to show all elements.");
  TellOmittedFlanks(console, ruler.list);
  // What a column has no room for stands here in whole.
  const Utf8Encoded encoding = EncodingOf(run.analysis.settings);
  for (const RulerColumn& column : ruler.columns)
    if (DisplayWidth(column.head, encoding) > column.width) WriteReportLine(console, column.head);
  for (const RulerScaleColumn& column : ruler.scaleColumns)
    for (const std::string& model : column.models) WriteReportLine(console, model);
  const std::size_t scales = ScalesOfRulers(run.analysis.scales).size();
  if (!ruler.scaleColumns.empty() && scales > ruler.scaleColumns.size())
    WriteReportLine(
        console, JoinNumber("Rating scales without a column:", scales - ruler.scaleColumns.size()));
}

void WriteRuler(Run& run, const Ruler& ruler) {
  Console& console = run.console;
  BeginBox(console, {"", HeadingLine(ruler, EncodingOf(run.analysis.settings)), "", ""},
           RulePatternOf(ruler), 1);
  bool expanded = false;
  if (!WriteRows(run, ruler, expanded)) return;
  BottomRule(console);
  WriteFoot(run, ruler, expanded);
}

// An item of a Flank that is not there shows nothing, for which a user would look; one with more
// letters than a form has most often lacks a comma.
void TellOddItems(Console& console, const RulerList& list) {
  for (const std::string& item : list.notThere)
    console.ShowFlagged("Vertical=" + item + " shows nothing: there is no Flank of this number.");
  for (const std::string& item : list.misread)
    console.ShowFlagged("Vertical=" + item +
                        " is no Flank number with one of the letters A, N, *, C, "
                        "and no S, SL or #S: it is taken for the part of it that is.");
}

// The range of the rulers is that of the graphs.
void SetGraphRange(const Settings& settings, const RulerScale& scale, ReportState& report) {
  const auto logits = [&settings](double userValue) {
    return Single((userValue - settings.Umean) / settings.Uscale);
  };
  std::tie(report.GraphLow, report.GraphHigh) =
      std::minmax({logits(scale.low), logits(scale.high)});
}

Ruler LayOutRuler(Run& run, std::string_view vertical, const Yardstick& yardstick,
                  const RulerElements& elements) {
  const Analysis& analysis = run.analysis;
  const Column<FlankNo, RulerFlank> shown = SumUpElements(analysis, elements);
  Ruler ruler;
  ruler.list = BuildRulerList(vertical, analysis.design.flanks, shown);
  ruler.scale = ScaleOfRuler(analysis.settings, ruler.list, shown, yardstick);
  for (const RulerItem& item : ruler.list.items) {
    if (run.console.YieldToWindow()) return ruler;
    RulerColumn column;
    column.item = item;
    column.placed = PlaceElements(analysis, elements[item.flank], item.form, ruler.scale, yardstick,
                                  [&run] { return run.console.stopping(); });
    ruler.columns.push_back(std::move(column));
  }
  FitColumns(analysis, yardstick, ruler.columns);
  ruler.scaleColumns = BuildScaleColumns(analysis, ruler.list, ruler.scale);
  return ruler;
}

// The elements of each subset, ascending: row k - 1 is subset k.
std::vector<std::vector<ElementSlot>> MembersOfSubsets(const Analysis& analysis) {
  std::vector<std::vector<ElementSlot>> members(
      static_cast<std::size_t>(analysis.subsets.SubsetCount));
  for (const ElementSlot slot : Upward(analysis.estimates.elements))
    for (const std::int32_t subset : analysis.subsets.Of(slot))
      members[static_cast<std::size_t>(subset - 1)].push_back(slot);
  return members;
}

void WriteSubsetRulers(Run& run) {
  TableHeading(run.console, "Table 6.0.0  Disjoint Subset Element Listing");
  const std::vector<std::vector<ElementSlot>> members = MembersOfSubsets(run.analysis);
  for (std::size_t at = 0; at < members.size(); ++at) {
    run.at = "Subset";
    VerticalRulers(run, kSubsetVertical, run.analysis.settings.Yardstick,
                   static_cast<std::int32_t>(at + 1), members[at]);
    if (run.console.stopping()) return;
  }
}

bool AreSubsetsAsked(const Settings& settings) {
  return settings.Subsets == 'R' || settings.Subsets == 'L';
}

bool IsTable6On(Run& run) {
  const Settings& settings = run.analysis.settings;
  SelectTable(run.console, kTable);
  return !run.analysis.report.switchedOff && !settings.verticalOff &&
         !AreRulersOff(settings.Vertical);
}

}  // namespace

void VerticalRulers(Run& run, std::string_view vertical, std::string_view yardstick,
                    std::int32_t subset, const std::vector<ElementSlot>& members) {
  Console& console = run.console;
  TableHeading(console, Title(subset));
  const Yardstick stick = ReadYardstick(yardstick);
  const Ruler ruler = LayOutRuler(
      run, vertical, stick,
      subset == 0 ? ElementsOfRuler(run.analysis) : ElementsOfRuler(run.analysis, members));
  if (console.stopping()) return;
  TellOddItems(console, ruler.list);
  WriteReportLine(console,
                  EchoLine(ruler.list, stick, ruler.scale, run.analysis.settings.Udecimals));
  if (ruler.columns.empty() && ruler.scaleColumns.empty())
    return TellOmittedFlanks(console, ruler.list);
  WriteRuler(run, ruler);
}

void WriteTable6(Run& run) {
  const Settings& settings = run.analysis.settings;
  const bool on = IsTable6On(run);
  const RulerElements elements = ElementsOfRuler(run.analysis);
  const Column<FlankNo, RulerFlank> shown = SumUpElements(run.analysis, elements);
  const RulerList list =
      BuildRulerList(on ? settings.Vertical : "", run.analysis.design.flanks, shown);
  SetGraphRange(settings, ScaleOfRuler(settings, list, shown, ReadYardstick(settings.Yardstick)),
                run.analysis.report);
  if (!on) return;
  VerticalRulers(run, settings.Vertical, settings.Yardstick);
  if (run.analysis.subsets.several() && AreSubsetsAsked(settings)) WriteSubsetRulers(run);
  WriteFlankSummaries(run, elements);
}

// Table 7 has the number of each element's subset.
void TellSubsets(Run& run) {
  if (!run.analysis.subsets.several()) return;
  if (IsTable6On(run) && AreSubsetsAsked(run.analysis.settings)) return;
  SelectTable(run.console, 7);
  run.console.ShowAndWrite(JoinNumber("There are", run.analysis.subsets.SubsetCount) +
                           " disconnected subsets identified in Table 7.");
}

}  // namespace flanks
