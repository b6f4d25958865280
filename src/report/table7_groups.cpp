#include "report/table7_groups.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "base/utf8.h"
#include "report/format/box.h"
#include "report/format/clip_field.h"
#include "report/format/fixed_field.h"
#include "report/format/join_number.h"
#include "report/table7_foot.h"
#include "report/table7_rows.h"
#include "run/report_page.h"

namespace flanks {
namespace {

constexpr std::size_t kNamePlace = 3;  // of the group's name in its rule
constexpr int kGroupCellWidth = 6;

// The group numbers of a Flank's measured elements, ascending, each with its place.
std::map<std::int32_t, std::size_t> PlacesOfGroups(const Analysis& analysis, FlankNo flank) {
  std::map<std::int32_t, std::size_t> places;
  for (const std::int16_t number : MeasuredGroups(analysis, flank)) {
    const std::size_t place = places.size();
    places.emplace(number, place);
  }
  return places;
}

// "Group 3 Novices" in the rule above the group's means.  The words cover the junctions that they
// meet; the end of the rule stays.
std::string NamedRule(const Table7Layout& layout, const ElementGroup& group, bool ascii) {
  std::string rule = BoxLine(layout.rulePattern, BoxPosition::mid, 0, ascii);
  std::string name = JoinNumber("Group", group.number);
  if (!group.label.empty()) name += " " + group.label;
  const std::size_t room = rule.size() - kNamePlace;  // all but the last place, from the third on
  const int width = std::min(static_cast<int>(room), DisplayWidth(name, layout.label.encoding));
  name = ClipField(name, width, layout.label.encoding);
  return rule.replace(kNamePlace - 1, static_cast<std::size_t>(width), name);
}

}  // namespace

FlankGroups GroupsOf(const Analysis& analysis, FlankNo flank) {
  FlankGroups found;
  const std::map<std::int32_t, std::size_t> places = PlacesOfGroups(analysis, flank);
  found.groups.resize(places.size());
  for (const auto& [number, place] : places) found.groups[place].number = number;
  for (const GroupLabel& label : analysis.design.groupLabels) {
    const auto place = places.find(label.group);
    if (label.flank == flank && place != places.end())
      found.groups[place->second].label = label.label;
  }
  const SlotRange range = SlotsOf(analysis.design.flanks, flank);
  for (ElementSlot e : Upward(range.low, range.high)) {
    if (RowKindOf(analysis, e) == RowKind::none) continue;
    found.listed.push_back(e);
    const auto place = places.find(analysis.design.elements.ElementGroup[e]);
    if (place != places.end()) found.groups[place->second].elements.push_back(e);
  }
  return found;
}

std::string GroupTitle(const ElementGroup& group) {
  const std::string title = "." + std::to_string(group.number);
  return group.label.empty() ? title : title + " [" + group.label + "]";
}

std::string GroupCell(const ElementGroup& group) {
  return group.label.empty()
             ? FixedFieldInteger(static_cast<std::int16_t>(group.number), kGroupCellWidth, 0)
             : group.label;
}

void WriteGroupSummary(Console& console, const Analysis& analysis, const Table7Layout& layout,
                       const std::vector<ElementGroup>& groups) {
  const bool ascii = console.settings().Ascii == 'Y';
  for (const ElementGroup& group : groups) {
    if (console.YieldToWindow()) return;
    WriteReportLine(console, NamedRule(layout, group, ascii));
    Table7Sets sets;
    for (const ElementSlot e : group.elements) AddToSets(analysis, e, sets);
    WriteFootRows(console, layout, sets, GroupCell(group));
  }
  BottomRule(console);
}

}  // namespace flanks
