// The columns of Table 7: heads and edit words as rows of data.
//
// A row of figures is assembled from one edit word for each kind of row.  All kinds share the
// column separators, so that figures stand under their heads: the fixed columns first (scores,
// measure, fit, discrimination), then the optional ones that the Flank's Table shows
// (report/table7_optional.h), then the label.  With Left-hand placement the label stands in front
// of everything.
//
// Tested by tests/unit/report/table7_columns_test.cpp.
#ifndef FLANKS_REPORT_TABLE7_COLUMNS_H
#define FLANKS_REPORT_TABLE7_COLUMNS_H

#include <array>
#include <string>
#include <vector>

#include "report/label_column.h"
#include "report/table7_optional.h"
#include "run/analysis.h"

namespace flanks {

// What one Flank's Table 7 looks like.  Built once for each Flank.
struct Table7Layout {
  FlankNo flank;
  int numberWidth = 3;  // places of the element number in a label
  LabelColumn label;
  std::vector<Table7Column> optional;  // those that show
  std::array<std::string, 4> headingRows;
  std::string rulePattern;
  std::string fullRow, extremeRow, statusRow, footRow;  // edit words
};

// " in subset: 2" behind the label of an element of a design whose data are not connected; empty
// otherwise.  Of many subsets the first twenty are named.
std::string SubsetNote(const Analysis& analysis, ElementSlot slot);

Table7Layout LayOutTable7(const Analysis& analysis, FlankNo flank);

// "  7 Ann": the number right-aligned, a blank, the label.
std::string NumberedLabel(const Table7Layout& layout, const ElementTable& elements,
                          ElementSlot slot);

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE7_COLUMNS_H
