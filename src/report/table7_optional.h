// The optional columns of Table 7: displacement, correlations, agreement, group and weight.  When
// each shows, its heads and edit word as rows of data, and what stands in its cells.
//
// Tested by tests/unit/report/table7_optional_test.cpp.
#ifndef FLANKS_REPORT_TABLE7_OPTIONAL_H
#define FLANKS_REPORT_TABLE7_OPTIONAL_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "run/analysis.h"
#include "stats/separation.h"

namespace flanks {

enum class Table7Column {
  displacement,
  biserial,            // Pt-biserial=Yes
  biserialInclude,     // Pt-biserial=Include
  correlationMeasure,  // Pt-biserial=Measure: observed and expected
  agreement,
  group,
  weight
};

struct Table7OptionalColumn {
  Table7Column column;
  std::string_view firstHead;
  std::string_view secondHead;
  std::string_view editWord;
  bool (*shows)(const Analysis& analysis, FlankNo flank);
};

// In the order in which they stand in the Table.
std::span<const Table7OptionalColumn> Table7OptionalColumns();

// The cells of one column in the three kinds of rows.  A row without fit has neither displacement
// nor correlations; a foot row has no displacement, expected correlation, group and weight.
std::vector<std::string> FullCells(const Analysis& analysis, Table7Column column, ElementSlot slot);
std::vector<std::string> UnfittedCells(const Analysis& analysis, Table7Column column,
                                       ElementSlot slot);
std::vector<std::string> FootCells(const Settings& settings, Table7Column column,
                                   const MeasureRow& figures);

// The group numbers of a Flank's measured elements, extreme ones among them, ascending; 0, no
// group, is a number like the others.
std::vector<std::int16_t> MeasuredGroups(const Analysis& analysis, FlankNo flank);

// The displacement in user units, with the sign that the measure shows.
double UserDisplacement(const Analysis& analysis, ElementSlot slot);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE7_OPTIONAL_H
