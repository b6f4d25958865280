// The element groups of a Flank, as Table 7 lists and sums them up.
//
// A group is a number that measured elements of the Flank have, extreme ones among them; 0 is the
// number of elements that were given none.  Elements without a measure stand in the group of their
// number, but make none.
//
// Tested by tests/unit/report/table7_groups_test.cpp.
#ifndef FLANKS_REPORT_TABLE7_GROUPS_H
#define FLANKS_REPORT_TABLE7_GROUPS_H

#include <cstdint>
#include <string>
#include <vector>

#include "report/table7_columns.h"
#include "run/analysis.h"
#include "run/console.h"

namespace flanks {

struct ElementGroup {
  std::int32_t number = 0;
  std::string label;                  // of Glabel=; empty when there is none
  std::vector<ElementSlot> elements;  // those that have a row, in the order of their slots
};

struct FlankGroups {
  std::vector<ElementSlot> listed;   // of the whole Flank, those that have a row
  std::vector<ElementGroup> groups;  // numbers ascending
};

FlankGroups GroupsOf(const Analysis& analysis, FlankNo flank);

// ".3 [Novices]" behind the number of a group's own Table; without a label ".3".
std::string GroupTitle(const ElementGroup& group);

// What stands for a group in the Group column of its means: its label, or its number.
std::string GroupCell(const ElementGroup& group);

// The box that sums up the groups: a rule with the group's name and its means, for each of them.
// Heading and title are the caller's.
void WriteGroupSummary(Console& console, const Analysis& analysis, const Table7Layout& layout,
                       const std::vector<ElementGroup>& groups);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE7_GROUPS_H
