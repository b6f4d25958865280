// docs/keywords.md is held to the truth: a row for each keyword of the table in the source, with
// what the keyword begins with and its default, and examples that a Specification takes.

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "base/text.h"
#include "report/format/join_number.h"
#include "spec/keyword_table.h"
#include "support/source_tree.h"
#include "support/spec_run.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;

struct PageRow {
  std::string keyword;                // "Arrange="
  std::set<std::string> beginsWith;   // "A"
  std::string defaultValue;           // the text of the cell without its quotes
  std::vector<std::string> examples;  // lines
};

// The texts between backticks.
std::vector<std::string> Quoted(const std::string& cell) {
  static const std::regex quoted("`([^`]*)`");
  std::vector<std::string> texts;
  for (std::sregex_iterator at(cell.begin(), cell.end(), quoted), end; at != end; ++at)
    texts.push_back((*at)[1].str());
  return texts;
}

std::vector<std::string> CellsOf(const std::string& line) {
  std::vector<std::string> cells;
  std::size_t from = line.find("| ") + 2;
  for (std::size_t to = line.find(" |", from); to != std::string::npos;
       from = to + 3, to = line.find(" |", from))
    cells.push_back(line.substr(from, to - from));
  return cells;
}

std::vector<PageRow> ReadPage(const std::string& page) {
  constexpr std::size_t kColumns = 6;
  std::vector<PageRow> rows;
  for (const std::string& line : LinesOf(page)) {
    const std::vector<std::string> cells = CellsOf(line);
    if (!line.starts_with("| `") || cells.size() != kColumns) continue;
    PageRow row;
    row.keyword = Quoted(cells[0]).front();
    for (const std::string& prefix : Quoted(cells[1])) row.beginsWith.insert(prefix);
    row.defaultValue = std::regex_replace(cells[3], std::regex("`"), "");
    row.examples = Quoted(cells[5]);
    rows.push_back(row);
  }
  return rows;
}

const std::vector<PageRow>& Page() {
  static const std::vector<PageRow> rows =
      ReadPage(ReadSourceTree("docs", {"keywords.md"}).at("docs/keywords.md"));
  return rows;
}

std::vector<std::string> FaultsOf(const std::vector<PageRow>& page) {
  std::map<std::string, std::set<std::string>> source;
  for (const KeywordRow& row : KeywordRows())
    source[std::string(row.keyword)].insert(std::string(row.prefix));
  std::vector<std::string> faults;
  std::set<std::string> onPage;
  for (const PageRow& row : page) {
    if (!onPage.insert(row.keyword).second) faults.push_back(row.keyword + " stands twice");
    if (!source.contains(row.keyword))
      faults.push_back(row.keyword + " is no keyword");
    else if (source[row.keyword] != row.beginsWith)
      faults.push_back(row.keyword + " begins otherwise");
    if (row.examples.empty()) faults.push_back(row.keyword + " has no example");
  }
  for (const auto& [keyword, prefixes] : source)
    if (!onPage.contains(keyword)) faults.push_back(keyword + " has no row");
  return faults;
}

TEST(KeywordsPage, HasEachKeywordWithItsBeginnings) {
  for (const std::string& fault : FaultsOf(Page())) ADD_FAILURE() << "docs/keywords.md: " << fault;
}

TEST(KeywordsPage, DifferencesAreSeen) {
  std::vector<PageRow> page = Page();
  page[0].beginsWith.insert("ZZ");
  page[1].keyword = "Nonsense=";
  page[2].examples.clear();
  page.push_back(page[3]);
  EXPECT_THAT(FaultsOf(page),
              ElementsAre(Page()[0].keyword + " begins otherwise", "Nonsense= is no keyword",
                          Page()[2].keyword + " has no example",
                          Page()[3].keyword + " stands twice", Page()[1].keyword + " has no row"));
}

// ---- Defaults

std::string Numbers(std::initializer_list<float> numbers) {
  std::string list;
  for (const float number : numbers) list += (list.empty() ? "" : ",") + FreeNumber(number);
  return list;
}

std::string Switch(bool on) {
  return on ? "Y" : "N";
}

std::string Named(const std::string& value) {
  return value.empty() ? "none" : value;
}

// The Flanks with the trait after `Flanks=3`.
std::string FlanksWith(const std::function<bool(const FlankTable&, FlankNo)>& has) {
  SpecRun test;
  test.Read("Flanks=3\n");
  const FlankTable& flanks = test.analysis.design.flanks;
  std::string list;
  for (const FlankNo flank : Upward(flanks.FlankCenter))
    if (has(flanks, flank)) list += (list.empty() ? "" : ",") + std::to_string(flank.number());
  return Named(list);
}

// What the page calls the default of each keyword, made from the settings as they are at the start.
using Defaults = std::map<std::string, std::string>;
Defaults DefaultsInSource() {
  const Settings s;
  const std::string floating =
      FlanksWith([](const FlankTable& f, FlankNo n) { return f.FlankCenter[n] == kNonCentered; });
  const std::string positive = FlanksWith(IsPositive);
  return {
      {"Anchorfile=", Named(s.AnchorFile)},
      {"Arrange=", s.Arrange},
      {"ASCII=", std::string(1, s.Ascii)},
      {"Barchart=", s.Barchart == 1 ? "Yes" : "?"},
      {"Batch=", Switch(s.Batch)},
      {"Beep=", Switch(s.Beep)},
      {"Bias=", s.Bias == 1 ? "plus" : "?"},
      {"Box=", std::string(1, s.BoxShow)},
      {"Center=", "none"},
      {"Convergence=",
       Numbers({s.Convergence[0], s.Convergence[1], s.Convergence[2], s.Convergence[3]})},
      {"CSV=", s.OutputSeparator == " " ? "Fixed" : "?"},
      {"Data=", s.dataSource == DataSource::none ? "none" : "?"},
      {"Delements=", s.Delements},
      {"Dvalues=", s.Dvalues.empty() ? "none" : "?"},
      {"Entered-in-data=", s.enteredInDataGiven ? "?" : "each Flank in order"},
      {"Fair=", s.FairAverageKind == 'M' ? "Mean" : "?"},
      {"Flanks=", Design().FlankCount == 0 ? "none" : "?"},
      {"Glabel=", Design().groupLabels.empty() ? "none" : "?"},
      {"Graphfile=", Named(s.GraphFile)},
      {"Hardware=", FreeNumber(s.Hardware)},
      {"Heading lines=", Switch(s.IncludeHeadings)},
      {"HS=", "none"},
      {"Inter-rater=", std::to_string(s.InterRaterSetting.front())},
      {"Iterations=", std::to_string(s.Iterations)},
      {"Juxtapose=", std::to_string(s.Juxtapose)},
      {"Keepzero=", std::to_string(s.NullElement)},
      {"Labels=", s.labelsNobuild ? "?" : "none"},
      {"Left-hand=", Switch(s.LeftHand)},
      {"Missing=", Named(s.Missing)},
      {"Models=", Design().ModelLast < 0 ? "any element of every Flank, type D" : "?"},
      {"Negative=", "none"},
      {"Newton=", FreeNumber(s.Newton)},
      {"Noncenter=", floating},
      {"Null=", std::to_string(s.NullElement)},
      {"Omit-unobserved=", Switch(s.OmitUnobserved)},
      {"Output=", s.OutputFile.empty() ? "the Specification's name with .out.txt" : "?"},
      {"PE=", "none"},
      {"Positive=", positive},
      {"Pt-biserial=", s.PointCorrelationKind == 'M' ? "Measure" : "?"},
      {"QM=", Named(s.OutputQuote)},
      {"Query=", Switch(s.Query)},
      {"Rating (or partial credit) scale=", Design().ScaleLast < 0 ? "none" : "?"},
      {"Replication=", s.Replication},
      {"Residualfile=", Named(s.ResidualFile)},
      {"Reversed=", Switch(s.Reversed)},
      {"Scorefile=", Named(s.ScoreFile)},
      {"Show-unobserved=", "none"},
      {"Simulated=", Named(s.SimulatedFile)},
      {"Standard errors=", s.RealStandardErrors ? "?" : "Model"},
      {"Subsets=", std::string(1, s.Subsets)},
      {"T3onscreen=", s.T3onscreen},
      {"T4MAX=", std::to_string(s.T4maximum)},
      {"T7LGS=", s.T7LGS},
      {"T8NBC=", s.T8NBC},
      {"Tables=", s.Tables},
      {"Title=", Named(s.Title)},
      {"Totalscore=", Switch(s.TotalScoreMode)},
      {"Udecimals=", std::to_string(s.Udecimals)},
      {"Umean=", FreeNumber(s.Umean)},
      {"Unexpected=", FreeNumber(s.Unexpected)},
      {"Uscale=", FreeNumber(s.Uscale)},
      {"Usort=", s.Usort},
      {"UTF8sub=", s.UTF8sub},
      {"Vertical=", s.verticalOff || !s.Vertical.empty() ? "?" : "the standard rulers"},
      {"Whexact=", std::string(1, s.Whexact)},
      {"Write=", Switch(s.Write)},
      {"Xtreme=", Numbers({s.Xtreme[0], s.Xtreme[1]})},
      {"Yardstick=", Named(s.Yardstick)},
      {"Zscore=", Numbers({s.Zscore[0], s.Zscore[1]})},
  };
}

TEST(KeywordsPage, HasEachDefault) {
  Defaults onPage;
  for (const PageRow& row : Page()) onPage[row.keyword] = row.defaultValue;
  const Defaults inSource = DefaultsInSource();
  for (const auto& [keyword, value] : onPage) {
    ASSERT_TRUE(inSource.contains(keyword)) << keyword;
    EXPECT_EQ(value, inSource.at(keyword)) << "docs/keywords.md: default of " << keyword;
  }
}

// ---- Examples

// The example in a small Specification, with a line behind it that must be reached.
std::string SpecificationWith(const PageRow& row) {
  std::string lines;
  for (const std::string& example : row.examples) lines += example + "\n";
  return (row.keyword == "Flanks=" ? "" : "Flanks=2\n") + lines + "*\nBeep=Yes\n";
}

int CodeOf(const std::string& keyword) {
  std::string upper = keyword;
  for (char& c : upper) c = UpperCase(c);
  return ResolveKeyword(upper)->code;
}

TEST(KeywordsPage, ExamplesAreTaken) {
  for (const PageRow& row : Page()) {
    SpecRun test;
    test.Read(SpecificationWith(row));
    EXPECT_EQ(test.fault(), Fault::none) << row.keyword << ": " << test.FaultText();
    for (const RecordingShell::Status& status : test.shell.statuses)
      EXPECT_EQ(status.emphasis, Emphasis::normal) << row.keyword << ": " << status.text;
    EXPECT_EQ(CodeOf(row.examples.front()), CodeOf(row.keyword)) << row.keyword;
    EXPECT_TRUE(test.analysis.settings.Beep) << "behind " << row.keyword;
    const int ignored = row.keyword == "Beep=" ? 1 : 0;  // the line behind repeats it
    EXPECT_EQ(test.analysis.specification.IgnoredLines.size(), ignored) << row.keyword;
  }
}

}  // namespace
}  // namespace flanks
