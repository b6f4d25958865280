// What the pages for readers show of a report is what the program writes: each line of a report
// in a block "```text" stands in an expected report of a golden case.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "support/source_tree.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;

bool IsPageForReaders(const std::string& name) {
  return name == "README.md" || name.starts_with("examples/");
}

// Report lines within the text blocks of a page.  Blocks that begin with "Flank " are what
// examples/essays/compare.py prints.
std::vector<std::string> ExcerptsOf(const std::string& page) {
  std::vector<std::string> excerpts;
  bool inside = false, first = false, report = false;
  for (const std::string& line : LinesOf(page)) {
    if (line.starts_with("```")) {
      inside = !inside && line == "```text";
      first = true;
      continue;
    }
    if (inside && first) report = !line.starts_with("Flank ");
    first = false;
    if (inside && report) excerpts.push_back(line);
  }
  return excerpts;
}

TEST(Excerpts, StandInTheReports) {
  std::set<std::string> reported;
  for (const auto& [name, text] : ReadSourceTree("tests/reports", {".out.txt"}))
    for (const std::string& line : LinesOf(text)) reported.insert(line);
  ASSERT_FALSE(reported.empty());
  int excerpts = 0;
  for (const auto& [name, page] : ReadSourceTree("", {"README.md"})) {
    if (!IsPageForReaders(name)) continue;
    for (const std::string& line : ExcerptsOf(page)) {
      ++excerpts;
      EXPECT_TRUE(reported.contains(line)) << name << " shows a line that no report has:\n" << line;
    }
  }
  EXPECT_GT(excerpts, 20);
}

TEST(Excerpts, AreTheTextBlocksOfReports) {
  EXPECT_THAT(ExcerptsOf("a\n```text\n| 1 |\n| 2 |\n```\nb\n```cpp\nint a;\n```\n"
                         "```text\nFlank  r\n1\n```\n"),
              ElementsAre("| 1 |", "| 2 |"));
}

}  // namespace
}  // namespace flanks
