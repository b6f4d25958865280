// Every box of a report is a box: its lines are as wide as its rules, and its separators stand
// where the rules have their junctions.  Whole runs of random designs and settings.  The seed of a
// failing run is printed; setting FLANKS_SEED repeats it.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "base/utf8.h"
#include "report/format/box.h"
#include "support/analysis_run.h"
#include "support/random_report.h"
#include "support/report_boxes.h"

namespace flanks {
namespace {

constexpr int kTrials = 60;
constexpr int kShownFaults = 5;

std::uint64_t FirstSeed() {
  const char* const given = std::getenv("FLANKS_SEED");
  return given != nullptr ? std::strtoull(given, nullptr, 10) : std::random_device{}();
}

bool IsNamedRule(const ReportBox& box, std::string_view line) {
  return box.table() == 7 && box.title.find("(arranged by Group)") != std::string::npos &&
         !line.empty() && line.front() == kBoxLeftTee && line.find("Group ") == 2;
}

// Lines between top and bottom rule that are no part of the box.
bool StandsBetween(const ReportBox& box, std::string_view line) {
  // Tables 3 and 9 go on while messages of the iterations are written.
  return (box.table() == 3 || box.table() == 9) && (line.empty() || !IsSeparator(line.front()));
}

// Separators of the rules that a line of a Table may leave out.  `inner` counts them from 0, the
// ends of the box aside.
bool MayLeaveOut(const ReportBox& box, std::size_t inner, bool leftHand) {
  // The flag of an anchored measure stands in the place of the separator behind the averages.
  if (box.table() == 7) return inner == (leftHand ? 1u : 0u);
  return box.indented();  // the ticks of a plot
}

// Text behind the box: the place of an observation in the data, which Table 4 shows beside its row.
bool MayStandBehind(const ReportBox& box) {
  return box.table() == 4;
}

// A line of words instead of figures.
bool IsSentence(const ReportBox& box, std::string_view line) {
  if (box.table() == 13) return line.find(": RMSE ") != std::string_view::npos;
  return box.table() == 4 && line.find(" *** No unexpected observation") != std::string_view::npos;
}

// How far a separator may stand off its column.  Wide characters count 1.8 columns; each label is
// rounded to whole ones by itself, so that several labels in one cell are together up to half a
// column each off.
int SlackOf(const ReportBox& box, std::string_view line) {
  const bool wide = std::any_of(line.begin(), line.end(),
                                [](char c) { return static_cast<unsigned char>(c) >= 0xE0; });
  return wide && (box.table() == 4 || box.table() == 13) ? 2 : 0;
}

bool HasNear(const std::vector<int>& columns, int column, int slack) {
  return std::any_of(columns.begin(), columns.end(),
                     [&](int other) { return std::abs(other - column) <= slack; });
}

// Columns in which a line of the box has its separators.  Above the heads of Table 8 the words of
// the top rule run on where the lines below have one more.
std::vector<int> ColumnsOf(const ReportBox& box, const std::string& line) {
  constexpr std::string_view kRunningOn = "(Modal)--(Median)";
  std::vector<int> columns = box.separators;
  const std::string words = BoxToAscii(box.lines.front());
  const std::size_t at = words.find(kRunningOn);
  if (box.table() != 8 || at == std::string::npos || &line == &box.lines.front()) return columns;
  const int column = static_cast<int>(at + kRunningOn.find("--"));
  columns.insert(std::upper_bound(columns.begin(), columns.end(), column), column);
  return columns;
}

// A row of a ruler that goes on has ":" in place of every separator, and labels may hold ":" too.
bool IsFurtherLine(const ReportBox& box, std::string_view line) {
  return box.table() == 6 && line.starts_with(':');
}
std::string FurtherLineComplaint(const ReportBox& box, std::string_view line) {
  std::size_t from = 0;
  for (std::size_t n = 1; n < box.separators.size(); ++n) {
    const int width = box.separators[n] - box.separators[n - 1] - 1;
    std::size_t to = from;
    do to = line.find(':', to + 1);
    while (to != std::string_view::npos &&
           DisplayWidth(line.substr(from + 1, to - from - 1)) != width);
    if (to == std::string_view::npos)
      return "has no \":\" in column " + std::to_string(box.separators[n]);
    from = to;
  }
  return from + 1 == line.size() ? "" : "is too long";
}

std::string ComplaintOf(const ReportBox& box, const std::string& line, bool leftHand) {
  if (StandsBetween(box, line)) return "";
  if (IsFurtherLine(box, line)) return FurtherLineComplaint(box, line);
  const std::vector<int> columns = SeparatorsOf(line);
  const int slack = SlackOf(box, line);
  if (columns.empty() && box.indented())  // a row of a barchart
    return DisplayWidth(line) == box.width() ? "" : "is not as wide as its rules";
  if (columns.empty() || columns.front() != box.separators.front())
    return "does not begin with a separator";
  if (!HasNear({columns.back()}, box.width() - 1, slack) ||
      !(IsSeparator(line.back()) || MayStandBehind(box)))
    return "is " + std::to_string(columns.back() + 1) + " wide in place of " +
           std::to_string(box.width());
  if (IsNamedRule(box, line) || IsSentence(box, line)) return "";
  const std::vector<int> expected = ColumnsOf(box, line);
  for (const int column : columns)
    if (!HasNear(expected, column, slack))
      return "has a separator in column " + std::to_string(column);
  for (std::size_t n = 1; n + 1 < expected.size(); ++n)
    if (!HasNear(columns, expected[n], slack) && !MayLeaveOut(box, n - 1, leftHand))
      return "has no separator in column " + std::to_string(expected[n]);
  return "";
}

// What is wrong with the boxes of a report, and how many boxes there are of each Table.
std::string ComplaintOf(const std::vector<ReportBox>& boxes, bool leftHand,
                        std::map<int, int>& boxesOfTable) {
  for (const ReportBox& box : boxes) {
    ++boxesOfTable[box.table()];
    if (!box.closed) return box.title + " has no bottom rule";
    for (const std::string& line : box.lines) {
      const std::string complaint = ComplaintOf(box, line, leftHand);
      if (!complaint.empty())
        return box.title + "\n" + BoxToUtf8(box.lines.front()) + "\n" + BoxToUtf8(line) + "\n" +
               complaint;
    }
  }
  return "";
}

TEST(ReportBoxes, HoldTheirLinesToTheirRules) {
  const std::uint64_t first = FirstSeed();
  std::map<int, int> boxesOfTable;
  int completed = 0, faults = 0;
  for (std::uint64_t seed = first; seed < first + kTrials && faults < kShownFaults; ++seed) {
    RandomReport report(seed);
    const std::string specification = report.Specification();
    AnalysisRun run;
    if (run.Analyze(specification, "Ascii=Webpage") != 0) continue;  // told by other tests
    ++completed;
    const bool leftHand = specification.find("Left-hand=Y") != std::string::npos;
    const std::string complaint =
        ComplaintOf(BoxesOf(ReportLines(run.Report())), leftHand, boxesOfTable);
    if (complaint.empty()) continue;
    ++faults;
    ADD_FAILURE() << "FLANKS_SEED=" << seed << "\n" << complaint << "\n" << specification;
  }
  if (std::getenv("FLANKS_SEED") != nullptr) return;
  EXPECT_GT(completed, kTrials / 2) << "FLANKS_SEED=" << first;
  for (const int table : {3, 4, 5, 6, 7, 8})
    EXPECT_GT(boxesOfTable[table], kTrials / 2) << "Table " << table << ", FLANKS_SEED=" << first;
  for (const int table : {9, 11, 13})
    EXPECT_GT(boxesOfTable[table], kTrials / 8) << "Table " << table << ", FLANKS_SEED=" << first;
  EXPECT_GT(boxesOfTable[14], 0) << "FLANKS_SEED=" << first;
}

// The rule of a plot: it stands behind a margin.
bool IsPlotRule(std::string_view line) {
  return IsRuleLine(line) && line.front() == ' ';
}

// A plot's lines, from its upper rule to its lower one, are equally wide; they end in the frame.
TEST(ReportPlots, StandInTheirFrames) {
  const std::uint64_t first = FirstSeed();
  int plots = 0;
  for (std::uint64_t seed = first; seed < first + kTrials / 4; ++seed) {
    AnalysisRun run;
    if (run.Analyze(RandomReport(seed).Specification(), "Ascii=Webpage") != 0) continue;
    bool inside = false;
    std::size_t width = 0;
    for (const std::string& line : ReportLines(run.Report())) {
      const bool rule = IsPlotRule(line);
      if (rule && !inside) {
        ++plots;
        width = line.size();
      }
      if (rule || inside) {
        ASSERT_EQ(line.size(), width) << "FLANKS_SEED=" << seed << "\n" << BoxToUtf8(line);
        EXPECT_TRUE(IsSeparator(line.back()) || line.back() == '>') << BoxToUtf8(line);
      }
      if (rule) inside = !inside;
    }
    EXPECT_FALSE(inside) << "FLANKS_SEED=" << seed;
  }
  if (std::getenv("FLANKS_SEED") != nullptr) return;
  EXPECT_GT(plots, 0) << "FLANKS_SEED=" << first;
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The lines of a report from Table 3 on, without blanks at their ends.
std::vector<std::string> FromTable3(const std::vector<std::string>& lines) {
  std::vector<std::string> found;
  for (const std::string& line : lines)
    if (!found.empty() || line.rfind("Table 3", 0) == 0) found.emplace_back(TrimRight(line));
  return found;
}

// Without boxes a report is the same report: rules are left out, separators are blanks.
TEST(ReportBoxes, HiddenLeaveTheColumnsWhereTheyAre) {
  const std::uint64_t first = FirstSeed();
  for (std::uint64_t seed = first; seed < first + kTrials / 6; ++seed) {
    const std::string specification = RandomReport(seed).Specification();
    AnalysisRun boxed, hidden;
    if (boxed.Analyze(specification, "Ascii=Webpage") != 0) continue;
    ASSERT_EQ(hidden.Analyze(specification, "Ascii=Webpage Box=N"), 0);
    std::vector<std::string> expected;
    for (const std::string& line : FromTable3(ReportLines(boxed.Report())))
      if (!IsRuleLine(line)) expected.emplace_back(TrimRight(BoxToBlanks(line)));
    EXPECT_EQ(FromTable3(ReportLines(hidden.Report())), expected) << "FLANKS_SEED=" << seed;
  }
}

// A line in ASCII: there the rules of plots have crosses for their ticks.
std::string InAscii(std::string line) {
  if (IsPlotRule(line)) {
    std::replace(line.begin(), line.end(), kBoxTopTee, kBoxCross);
    std::replace(line.begin(), line.end(), kBoxBottomTee, kBoxCross);
  }
  return BoxToAscii(line);
}

// Text, drawing characters and webpage are one report in three forms.
TEST(ReportBoxes, AreTheSameInEveryForm) {
  const std::uint64_t first = FirstSeed();
  for (std::uint64_t seed = first; seed < first + kTrials / 6; ++seed) {
    const std::string specification = RandomReport(seed).Specification();
    AnalysisRun page, text, bytes;
    if (page.Analyze(specification, "Ascii=Webpage") != 0) continue;
    ASSERT_EQ(text.Analyze(specification, "Ascii=Y"), 0);
    ASSERT_EQ(bytes.Analyze(specification, "Ascii=N"), 0);
    std::vector<std::string> asText, asBytes;
    for (const std::string& line : FromTable3(ReportLines(page.Report()))) {
      asText.push_back(InAscii(line));
      asBytes.push_back(BoxToPcBytes(line));
    }
    EXPECT_EQ(FromTable3(LinesOf(text.Report())), asText) << "FLANKS_SEED=" << seed;
    EXPECT_EQ(FromTable3(LinesOf(bytes.Report())), asBytes) << "FLANKS_SEED=" << seed;
  }
}

}  // namespace
}  // namespace flanks
