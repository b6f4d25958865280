// Compares two texts to the byte and shows the first difference in its context.
//
// Tested by tests/reports/harness_test.cpp.

#ifndef FLANKS_TESTS_SUPPORT_TEXT_COMPARE_H
#define FLANKS_TESTS_SUPPORT_TEXT_COMPARE_H

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "support/source_tree.h"

namespace flanks {

// One line with its number; "-" stands before what was expected and "+" before what came.
inline void ShowLineOf(const std::vector<std::string>& lines, std::size_t index, char mark,
                       std::string& text) {
  text += std::string(1, mark) + " " + std::to_string(index + 1) + " |";
  text += index < lines.size() ? lines[index] + "|\n" : std::string(" (end of text)\n");
}

// Empty when the texts are equal.  Otherwise up to three equal lines, the first line that differs
// as expected and as it came, and a mark below the first column that differs.
inline std::string FirstDifference(std::string_view expected, std::string_view actual) {
  if (expected == actual) return {};
  const std::vector<std::string> wanted = LinesOf(expected), got = LinesOf(actual);
  const auto [wantedAt, gotAt] = std::ranges::mismatch(wanted, got);
  const auto line = static_cast<std::size_t>(wantedAt - wanted.begin());
  if (line == wanted.size() && line == got.size()) return "only the last line's end differs\n";

  std::string text =
      "first difference in line " + std::to_string(line + 1) + " (- expected, + came):\n";
  for (std::size_t before = line < 3 ? 0 : line - 3; before < line; ++before)
    ShowLineOf(wanted, before, ' ', text);
  ShowLineOf(wanted, line, '-', text);
  ShowLineOf(got, line, '+', text);
  if (line < wanted.size() && line < got.size()) {
    const auto column = std::ranges::mismatch(wanted[line], got[line]).in1 - wanted[line].begin();
    const std::string head = "+ " + std::to_string(line + 1) + " |";
    text += std::string(head.size() + static_cast<std::size_t>(column), ' ') + "^ column " +
            std::to_string(column + 1) + "\n";
  }
  return text;
}

}  // namespace flanks

#endif  // FLANKS_TESTS_SUPPORT_TEXT_COMPARE_H
