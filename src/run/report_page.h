// The page of the report: lines, Table headings, heading rows and rules.
//
// `WriteReportLine` converts the box codes of a line to the mode in force (text, drawing
// characters, webpage) and appends it to the report file, which is flushed after each line: what
// was written survives a crash, and a report file that cannot be written costs no run (said once
// on the screen).  While no report file is open, lines go to the screen.
//
// Tested by tests/unit/run/console_test.cpp.
#ifndef FLANKS_RUN_REPORT_PAGE_H
#define FLANKS_RUN_REPORT_PAGE_H

#include <array>
#include <string>
#include <string_view>

#include "run/console.h"

namespace flanks {

// Opens the report file, replacing an existing one; false with the system's words in `reason`.
[[nodiscard]] bool OpenReport(Console& console, const std::string& name, std::string& reason);
void CloseReport(Console& console);

void WriteReportLine(Console& console, std::string_view line);

// Sets the output switch for Table `number` (1 to 14) from `Tables=`.
void SelectTable(Console& console, int number);

// The block above each Table: empty line, run heading, title and ".", empty line.
void TableHeading(Console& console, std::string_view title);

// The top of a box: its heading rows (row 0 is the repeat marker, `inUse` of the others count) and
// its rule become those of the Table at work; then the rule, the rows and the mid rule.
void BeginBox(Console& console, const std::array<std::string, 4>& headingRows,
              std::string_view rulePattern, int inUse = 2);

// Rule lines of the Table at work (`rulePattern`, `ruleTag`), and the heading rows with their
// rules.
void TopRule(Console& console);
void MidRule(Console& console);
void BottomRule(Console& console);
void HeadingRows(Console& console);  // the rows in use that are not blank, then the mid rule
void Juxtapose(Console& console);    // before each row; never repeats the heading

}  // namespace flanks

#endif  // FLANKS_RUN_REPORT_PAGE_H
