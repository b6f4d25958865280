// The rows of Table 7: elements, and the means and S.D.s below them.
//
// Tested by tests/unit/report/table7_rows_test.cpp.
#ifndef FLANKS_REPORT_TABLE7_ROWS_H
#define FLANKS_REPORT_TABLE7_ROWS_H

#include <string>
#include <string_view>

#include "report/table7_columns.h"
#include "run/analysis.h"
#include "stats/separation.h"

namespace flanks {

// Full: in play, with data.  Extreme: minimum or maximum score.  Status: no measure of its own.
// None: left out of the report.
enum class RowKind { none, full, extreme, status };

RowKind RowKindOf(const Analysis& analysis, ElementSlot slot);

// "Anchored", "Minimum", "Maximum", "Unmeasurable", "One datum", "Unknown".
std::string_view StatusWord(std::int16_t status);

// What the row shows, in user units, and what it gives to the sets of the foot block.
MeasureRow FiguresOf(const Analysis& analysis, ElementSlot slot);

std::string ElementLine(const Analysis& analysis, const Table7Layout& layout, ElementSlot slot);

// A row of the foot block: `figures` under the columns, `words` in the label column, `group` in the
// Group column.
std::string FootLine(const Settings& settings, const Table7Layout& layout,
                     const MeasureRow& figures, const std::string& words,
                     const std::string& group = "");

}  // namespace flanks

#endif  // FLANKS_REPORT_TABLE7_ROWS_H
