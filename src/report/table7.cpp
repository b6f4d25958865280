#include "report/table7.h"

#include <algorithm>
#include <string>
#include <vector>

#include "report/format/key_sort.h"
#include "report/table7_columns.h"
#include "report/table7_foot.h"
#include "report/table7_groups.h"
#include "report/table7_rows.h"
#include "report/table7_sort.h"
#include "run/messages.h"
#include "run/report_page.h"

namespace flanks {
namespace {

// What the boxes of a Flank share.
struct FlankBoxes {
  FlankNo flank;
  Table7Layout layout;
  FlankGroups groups;
  std::vector<std::string> orders;  // sort letters of the Arrange= items that apply
  int labelLength = 0;              // of the longest label, bytes
  int subtable = 0;                 // the number of the last box
};

// One list of elements: of the whole Flank, or of a group.
struct ElementList {
  const std::vector<ElementSlot>& elements;
  std::string title;  // behind the number of the Table
  bool ofAll = true;  // the list to which the line of the raters' agreement belongs
};

std::vector<ElementSlot> InOrder(Run& run, const std::vector<ElementSlot>& listed, int labelLength,
                                 const std::string& letters) {
  KeyArray keys(message::kTable7SortLength);
  for (const ElementSlot e : listed) keys.Add(Table7Key(run.analysis, e, letters, labelLength));
  keys.Sort([&run] { return run.console.stopping(); });
  std::vector<ElementSlot> ordered;
  ordered.reserve(listed.size());
  for (const std::string& key : keys) ordered.push_back(SlotOfKey(key));
  return ordered;
}

// "Table 7.2.4.1 [Novices]  Raters Measurement Report".
std::string Title(const Analysis& analysis, FlankBoxes& boxes, const std::string& groupTitle) {
  ++boxes.subtable;
  return "Table 7." + std::to_string(boxes.flank.number()) + "." + std::to_string(boxes.subtable) +
         groupTitle + "  " + analysis.design.flanks.FlankName[boxes.flank] + " Measurement Report";
}

std::string ArrangedBy(const std::string& key) {
  return "  (arranged by " + key + ")";
}

void WriteRows(Run& run, const Table7Layout& layout, const std::vector<ElementSlot>& ordered) {
  Console& console = run.console;
  Table7Sets sets;
  for (const ElementSlot e : ordered) {
    if (console.YieldToWindow()) return;
    Juxtapose(console);
    WriteReportLine(console, ElementLine(run.analysis, layout, e));
    AddToSets(run.analysis, e, sets);
  }
  WriteTable7Foot(console, run.analysis, layout, sets);
}

// A box for each order.
void WriteList(Run& run, FlankBoxes& boxes, const ElementList& list) {
  for (const std::string& letters : boxes.orders) {
    if (run.console.YieldToWindow()) return;
    std::string title = Title(run.analysis, boxes, list.title);
    if (list.elements.size() >= 2) title += ArrangedBy(letters);
    TableHeading(run.console, title);
    BeginBox(run.console, boxes.layout.headingRows, boxes.layout.rulePattern);
    WriteRows(run, boxes.layout, InOrder(run, list.elements, boxes.labelLength, letters));
    if (list.ofAll) WriteAgreement(run.console, run.analysis, boxes.flank);
    if (list.elements.size() == 1) return;  // all orders are equal
  }
}

// A list that was asked for is not there: all elements have the number of one group, and T7LGS=
// has no lists of groups.
void TellOnlyGroup(Run& run, FlankNo flank, std::int32_t group) {
  const std::string number = std::to_string(flank.number());
  run.console.WarnLine("T7LGS=" + run.analysis.settings.T7LGS + " gives no list of Flank " +
                       number + ": all of its elements are in group " + std::to_string(group) +
                       ", and the list of a group needs G.");
}

bool IsAsked(const Analysis& analysis, char part) {
  return analysis.settings.T7LGS.find(part) != std::string::npos;
}

// The lists of a Flank whose measured elements have one group number.  Group 0 is no group.
void WriteOnlyList(Run& run, FlankBoxes& boxes) {
  const ElementGroup& group = boxes.groups.groups.front();
  const bool isGroup = group.number != 0;
  if (IsAsked(run.analysis, isGroup ? 'G' : 'L')) {
    WriteList(run, boxes, {boxes.groups.listed, isGroup ? GroupTitle(group) : "", true});
  } else if (isGroup && IsAsked(run.analysis, 'L')) {
    TellOnlyGroup(run, boxes.flank, group.number);
  }
}

void WriteGroups(Run& run, FlankBoxes& boxes) {
  if (IsAsked(run.analysis, 'L')) WriteList(run, boxes, {boxes.groups.listed, "", true});
  const std::string& options = run.analysis.design.flanks.FlankOptions[boxes.flank];
  if (options.find('N') != std::string::npos) return;
  if (IsAsked(run.analysis, 'G'))
    for (const ElementGroup& group : boxes.groups.groups)
      if (group.number != 0) WriteList(run, boxes, {group.elements, GroupTitle(group), false});
  if (!IsAsked(run.analysis, 'S') || run.console.stopping()) return;
  TableHeading(run.console, Title(run.analysis, boxes, "") + ArrangedBy("Group"));
  BeginBox(run.console, boxes.layout.headingRows, boxes.layout.rulePattern);
  WriteGroupSummary(run.console, run.analysis, boxes.layout, boxes.groups.groups);
}

std::vector<std::string> OrdersOf(const std::vector<ArrangeItem>& arrange, FlankNo flank) {
  std::vector<std::string> orders;
  for (const ArrangeItem& item : arrange)
    if (!item.numbered || item.flank == flank.number()) orders.push_back(item.letters);
  return orders;
}

void WriteFlank(Run& run, FlankNo flank, const std::vector<ArrangeItem>& arrange) {
  FlankBoxes boxes;
  boxes.flank = flank;
  boxes.orders = OrdersOf(arrange, flank);
  if (boxes.orders.empty()) return;
  boxes.groups = GroupsOf(run.analysis, flank);
  if (boxes.groups.groups.empty() || boxes.groups.listed.empty()) return;  // nothing is measured
  boxes.layout = LayOutTable7(run.analysis, flank);
  boxes.labelLength = LongestLabel(run.analysis.design, flank);
  if (boxes.groups.groups.size() == 1)
    WriteOnlyList(run, boxes);
  else
    WriteGroups(run, boxes);
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
  if (run.console.report().switchedOff) return;  // sorting and formatting take their time
  const std::vector<ArrangeItem> arrange = ReadArrange(run.analysis.settings.Arrange);
  TellFlanksNotThere(run, arrange);
  for (FlankNo flank : Upward(run.analysis.design.flanks.FlankElementCount)) {
    run.at = "Flank";
    if (run.analysis.design.flanks.FlankElementCount[flank] > 0) WriteFlank(run, flank, arrange);
    if (run.console.stopping()) return;
  }
}

}  // namespace flanks
