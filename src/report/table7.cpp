#include "report/table7.h"

#include <algorithm>
#include <string>
#include <vector>

#include "report/format/key_sort.h"
#include "report/table7_columns.h"
#include "report/table7_foot.h"
#include "report/table7_rows.h"
#include "report/table7_sort.h"
#include "run/messages.h"
#include "run/report_page.h"

namespace flanks {
namespace {

// The elements of a Flank that have a row.
std::vector<ElementSlot> ListedElements(const Analysis& analysis, FlankNo flank) {
  std::vector<ElementSlot> listed;
  const SlotRange range = SlotsOf(analysis.design.flanks, flank);
  for (ElementSlot e : Upward(range.low, range.high))
    if (RowKindOf(analysis, e) != RowKind::none) listed.push_back(e);
  return listed;
}

std::vector<ElementSlot> InOrder(Run& run, const std::vector<ElementSlot>& listed, FlankNo flank,
                                 const std::string& letters) {
  KeyArray keys(message::kTable7SortLength);
  const int labelLength = LongestLabel(run.analysis.design, flank);
  for (const ElementSlot e : listed) keys.Add(Table7Key(run.analysis, e, letters, labelLength));
  keys.Sort([&run] { return run.console.stopping(); });
  std::vector<ElementSlot> ordered;
  ordered.reserve(listed.size());
  for (const std::string& key : keys) ordered.push_back(SlotOfKey(key));
  return ordered;
}

std::string Title(const Analysis& analysis, FlankNo flank, int subtable, std::size_t elements,
                  const std::string& letters) {
  std::string title = "Table 7." + std::to_string(flank.number()) + "." + std::to_string(subtable) +
                      "  " + analysis.design.flanks.FlankName[flank] + " Measurement Report";
  if (elements >= 2) title += "  (arranged by " + letters + ")";
  return title;
}

void WriteBox(Run& run, const Table7Layout& layout, const std::vector<ElementSlot>& ordered,
              const std::string& title) {
  Console& console = run.console;
  ReportState& report = console.report();
  TableHeading(console, title);
  report.headingRows = layout.headingRows;
  report.headingRowsInUse = 2;
  report.rulePattern = layout.rulePattern;
  report.ruleTag = 0;
  TopRule(console);
  HeadingRows(console);
  Table7Sets sets;
  for (const ElementSlot e : ordered) {
    if (console.YieldToWindow()) return;
    Juxtapose(console);
    WriteReportLine(console, ElementLine(run.analysis, layout, e));
    AddToSets(run.analysis, e, sets);
  }
  WriteTable7Foot(console, run.analysis, layout, sets);
}

void WriteFlank(Run& run, FlankNo flank, const std::vector<ArrangeItem>& arrange) {
  const std::vector<ElementSlot> listed = ListedElements(run.analysis, flank);
  if (listed.empty()) return;
  const Table7Layout layout = LayOutTable7(run.analysis, flank);
  int subtable = 0;
  for (const ArrangeItem& item : arrange) {
    if (item.flank != 0 && item.flank != flank.number()) continue;
    if (run.console.YieldToWindow()) return;
    ++subtable;
    WriteBox(run, layout, InOrder(run, listed, flank, item.letters),
             Title(run.analysis, flank, subtable, listed.size(), item.letters));
    if (listed.size() == 1) return;  // all orders are equal
  }
}

// An order for a Flank that is not there gives no box, for which a user would look.
void TellFlanksNotThere(Run& run, const std::vector<ArrangeItem>& arrange) {
  for (const ArrangeItem& item : arrange) {
    if (item.flank <= run.analysis.design.FlankCount) continue;
    run.console.WarnLine("Arrange=" + std::to_string(item.flank) + item.letters +
                         " gives no Table: there is no Flank " + std::to_string(item.flank) + ".");
  }
}

}  // namespace

void WriteTable7(Run& run) {
  SelectTable(run.console, 7);
  const std::vector<ArrangeItem> arrange = ReadArrange(run.analysis.settings.Arrange);
  // "L" asks for the list of all elements, the only kind that there is without groups.
  if (run.analysis.settings.T7LGS.find('L') == std::string::npos) return;
  TellFlanksNotThere(run, arrange);
  for (FlankNo flank : Upward(run.analysis.design.flanks.FlankElementCount)) {
    run.at = "Flank";
    if (run.analysis.design.flanks.FlankElementCount[flank] > 0) WriteFlank(run, flank, arrange);
    if (run.console.stopping()) return;
  }
}

}  // namespace flanks
