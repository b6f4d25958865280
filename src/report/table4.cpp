#include "report/table4.h"

#include <algorithm>
#include <string>
#include <vector>

#include "report/format/fixed_field.h"
#include "report/format/join_number.h"
#include "report/table4_columns.h"
#include "report/table4_sort.h"
#include "run/analysis.h"
#include "run/console.h"
#include "run/messages.h"
#include "run/report_page.h"
#include "stats/residual_pass.h"

namespace flanks {
namespace {

constexpr int kCategoryWidth = 3;
constexpr int kFigureWidth = 5;
constexpr int kFigureDecimals = 1;
constexpr std::size_t kSequenceWidth = 9;  // of its heading

void RenewResiduals(Run& run) {
  const UnexpectedResponses& kept = run.analysis.unexpected;
  const Settings& settings = run.analysis.settings;
  const bool current =
      kept.filled && kept.Unexpected == settings.Unexpected && kept.T4maximum == settings.T4maximum;
  if (current) return;
  if (kept.filled) run.console.ShowLine(" recomputing residuals ....");
  ComputeResiduals(run);
}

FigureTexts FiguresOf(const KeptResponse& row) {
  const auto figure = [](float value) { return FixedField(value, kFigureWidth, kFigureDecimals); };
  return {FixedFieldInteger(row.category, kCategoryWidth, 0),
          FixedFieldInteger(row.score, kCategoryWidth, 0), figure(row.expected),
          figure(row.residual), figure(row.StRes)};
}

// Behind the box, under its heading.
std::string SequenceText(std::int64_t sequence) {
  const std::string number = " " + std::to_string(sequence);
  return std::string(kSequenceWidth - std::min(kSequenceWidth, number.size()), ' ') + number;
}

// The headings once more, below the last row.
void EndBox(Console& console, const Table4Layout& layout) {
  MidRule(console);
  WriteReportLine(console, layout.headingRows[1]);
  BottomRule(console);
}

void WriteRows(Run& run, const Table4Layout& layout, std::string_view order) {
  Console& console = run.console;
  const UnexpectedResponses& kept = run.analysis.unexpected;
  const ElementTable& elements = run.analysis.design.elements;
  for (const std::uint32_t row : SortResponses(kept, elements, order)) {
    if (console.YieldToWindow()) return;
    Juxtapose(console);
    const KeptResponse& response = kept.rows[row];
    WriteReportLine(console,
                    ResponseLine(layout, elements, FiguresOf(response), kept.ElementsOf(row)) +
                        SequenceText(response.sequence));
  }
  EndBox(console, layout);
}

// A full list does not show that more responses may be as unexpected.
void TellFullList(Console& console, const UnexpectedResponses& kept) {
  if (static_cast<std::int64_t>(kept.rows.size()) < kept.T4maximum) return;
  console.ShowLine("Table 4 has the " + std::to_string(kept.T4maximum) +
                   " most unexpected responses; a larger T4MAX= may list more.");
}

// What stands in place of the Table, apart from the one before it.
void WriteNoTable4(Console& console) {
  console.WriteOutput("");
  console.ShowAndWrite("Table 4 not output. T4maximum = 0");
}

}  // namespace

void WriteTable4(Run& run) {
  Console& console = run.console;
  const Settings& settings = run.analysis.settings;
  SelectTable(console, 4);
  if (console.report().switchedOff) return;
  if (settings.T4maximum <= 0) return WriteNoTable4(console);
  RenewResiduals(run);
  if (console.stopping()) return;
  TellFullList(console, run.analysis.unexpected);
  const UnexpectedResponses& kept = run.analysis.unexpected;
  if (kept.elements.size() != kept.rows.size() * static_cast<std::size_t>(kept.width))
    return console.FailureStop(message::kTable4SortLength);
  const std::string none =
      JoinNumber(" *** No unexpected observation with StRes >=", settings.Unexpected);
  const Table4Layout layout = LayOutTable4(run.analysis, kept.rows.empty() ? none : "");
  int subtable = 0;
  for (const std::string& order : ReadUsort(settings.Usort)) {
    const std::string title = "Table 4." + std::to_string(++subtable) + " Unexpected Responses (" +
                              std::to_string(kept.rows.size()) + " residuals sorted by " +
                              OrderText(order, kept.width) + ")";
    TableHeading(console, title);
    BeginBox(console, layout.headingRows, layout.rulePattern);
    if (kept.rows.empty()) {
      WriteReportLine(console, LineAcross(layout, none));
      BottomRule(console);
    } else {
      WriteRows(run, layout, order);
    }
    if (console.stopping()) return;
  }
}

}  // namespace flanks
