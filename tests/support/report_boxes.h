// The boxes of a report, read back line by line.
//
// The report is read in its webpage form: there, and nowhere else, a separator cannot be confused
// with what a label holds.  The lines come back as they were before they were converted: blanks,
// and the codes of report/format/box.h.
//
//   for (const ReportBox& box : BoxesOf(ReportLines(run.Report()))) ...
#ifndef FLANKS_TESTS_SUPPORT_REPORT_BOXES_H
#define FLANKS_TESTS_SUPPORT_REPORT_BOXES_H

#include <string>
#include <string_view>
#include <vector>

namespace flanks {

// The lines of a report written with ASCII=Webpage, with box codes in them.
std::vector<std::string> ReportLines(std::string_view webpage);

// The cells between the separators, codes of any kind, of a line; also what stands in front of the
// first and behind the last.
std::vector<std::string> CellsOf(std::string_view line);

struct ReportBox {
  std::string title;               // "Table 7.1.1  ...", with its full stop
  std::vector<std::string> lines;  // from the top rule to the bottom rule
  std::vector<int> separators;     // columns of the junctions in the top rule, its ends included;
                                   // the first is 0 but for plots, which have words in front
  bool closed = false;             // there is a bottom rule

  int table() const;  // 7
  int width() const { return separators.empty() ? 0 : separators.back() + 1; }
  bool indented() const { return !separators.empty() && separators.front() > 0; }
};

// A box begins with a top left corner, as a rule in the first place, and ends with its bottom rule.
std::vector<ReportBox> BoxesOf(const std::vector<std::string>& lines);

// Columns of the separators of a line, by the display widths of its cells.
std::vector<int> SeparatorsOf(std::string_view line);

bool IsSeparator(char c);  // any code that stands where columns meet

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_REPORT_BOXES_H
