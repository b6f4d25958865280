// docs/messages.md is held to the truth: a row for each fault with its words and its cure, for each
// Warning, Check and Failure, and no row for what the program does not say.

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "run/fault_cures.h"
#include "run/faults.h"
#include "support/source_tree.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Rows = std::vector<std::vector<std::string>>;  // of cells

std::vector<std::string> CellsOf(const std::string& line) {
  std::vector<std::string> cells;
  std::size_t from = 2;
  for (std::size_t to = line.find(" |", from); to != std::string::npos;
       from = to + 3, to = line.find(" |", from))
    cells.push_back(line.substr(from, to - from));
  return cells;
}

// The rows of the table below "## `heading`", without the two that are its head.
Rows TableOf(const std::string& page, const std::string& heading) {
  Rows rows;
  bool inside = false;
  for (const std::string& line : LinesOf(page)) {
    if (line.starts_with("## ")) inside = line == "## " + heading;
    if (inside && line.starts_with("| ")) rows.push_back(CellsOf(line));
  }
  if (!rows.empty()) rows.erase(rows.begin());
  return rows;
}

const std::string& Page() {
  static const std::string page = ReadSourceTree("docs", {"messages.md"}).at("docs/messages.md");
  return page;
}

// Without the backticks around it and the blanks at its ends.
std::string Words(const std::string& cell) {
  const std::size_t from = cell.find_first_not_of("` "), to = cell.find_last_not_of("` ");
  return from == std::string::npos ? "" : cell.substr(from, to + 1 - from);
}

// The words of a fault as the page shows them: N for the number, TEXT for a text.
std::string ShownWords(Fault fault) {
  constexpr std::int64_t kSomeNumber = 987654;
  FaultParticulars particulars;
  particulars.number = fault == Fault::nonNumericWeight ? 0 : kSomeNumber;
  for (const Fault withText : {Fault::incompatibleFileUse, Fault::nonNumericWeight})
    if (fault == withText) particulars.value = "TEXT";
  return std::regex_replace(FaultWords(fault, particulars), std::regex("987654"), "N");
}

std::string CodeOf(Fault fault) {
  return "F" + std::to_string(static_cast<int>(fault));
}

// "tooManyFields" by code.
const std::map<std::string, std::string>& NamesOfFaults() {
  static const std::map<std::string, std::string> names = [] {
    std::map<std::string, std::string> found;
    const std::string text = ReadSourceTree("src/run", {"faults.h"}).at("src/run/faults.h");
    const std::regex row("\n  (\\w+) = ([0-9]+),");
    for (std::sregex_iterator at(text.begin(), text.end(), row), end; at != end; ++at)
      found["F" + (*at)[2].str()] = (*at)[1].str();
    return found;
  }();
  return names;
}

// Whether a source file other than the tables of the faults names it.
bool IsRaised(const std::string& code) {
  static const SourceTree sources = ReadSourceTree("src", {".cpp", ".h"});
  const std::string use = "Fault::" + NamesOfFaults().at(code);
  return std::any_of(sources.begin(), sources.end(), [&](const auto& source) {
    return source.first.find("src/run/fault") == std::string::npos &&
           std::regex_search(source.second, std::regex(use + "\\b"));
  });
}

// What the page says otherwise than the program.
std::vector<std::string> DifferencesOfFaults(const Rows& rows) {
  std::vector<std::string> found;
  std::map<std::string, std::vector<std::string>> byCode;
  for (const std::vector<std::string>& row : rows)
    if (row.size() != 4 || !byCode.emplace(row[0], row).second)
      found.push_back(row.front() + " stands twice or has not four cells");
  for (const Fault fault : AllFaults()) {
    const std::string code = CodeOf(fault);
    if (!byCode.contains(code)) {
      found.push_back(code + " has no row");
      continue;
    }
    const std::vector<std::string>& row = byCode[code];
    if (Words(row[1]) != Words(ShownWords(fault))) found.push_back(code + " has other words");
    if (row[3].find(FaultCure(fault)) == std::string::npos)
      found.push_back(code + " has another cure");
    if ((row[2].find("nothing raises it") == std::string::npos) != IsRaised(code))
      found.push_back(code + " is raised, or is not, otherwise than told");
    byCode.erase(code);
  }
  for (const auto& [code, row] : byCode) found.push_back(code + " is no fault");
  return found;
}

TEST(MessagesPage, HasEachFaultWithItsWordsAndItsCure) {
  for (const std::string& difference : DifferencesOfFaults(TableOf(Page(), "Faults")))
    ADD_FAILURE() << "docs/messages.md: " << difference;
}

TEST(MessagesPage, DifferencesAreSeen) {
  Rows rows = TableOf(Page(), "Faults");
  ASSERT_EQ(rows[0][0], "F1");
  rows[0][1] += "!";
  rows[1][3] = "Nothing.";
  rows[2][2] = "nothing raises it";
  rows[3][0] = "F4";
  EXPECT_THAT(DifferencesOfFaults(rows), ElementsAre("F1 has other words", "F2 has another cure",
                                                     "F3 is raised, or is not, otherwise than told",
                                                     "F5 has no row", "F4 is no fault"));
}

// A source text with its string literals joined over line ends and without escapes of quotes.
std::string JoinedLiterals(const std::string& text) {
  std::string joined = std::regex_replace(text, std::regex("\"\\s*\n\\s*\""), "");
  return std::regex_replace(joined, std::regex("\\\\\""), "\"");
}

// The words of all messages of a kind in the source: literals that begin with "Failure (" and such.
std::vector<std::string> WordsInSource(const std::string& kind) {
  std::vector<std::string> words;
  const std::regex literal("\"( ?;? ?" + kind + " \\([0-9]+\\)[!?][^\"]*)\"");
  for (const auto& [name, text] : ReadSourceTree("src", {".cpp", ".h"})) {
    const std::string code = std::regex_replace(text, std::regex("//[^\n]*"), "");
    const std::string joined = std::regex_replace(code, std::regex("\"\\s*\n\\s*\""), "");
    for (std::sregex_iterator at(joined.begin(), joined.end(), literal), end; at != end; ++at)
      words.push_back(Words((*at)[1].str()));
  }
  std::sort(words.begin(), words.end());
  return words;
}

std::vector<std::string> WordsOnPage(const std::string& heading, const std::string& kind) {
  std::vector<std::string> words;
  for (const std::vector<std::string>& row : TableOf(Page(), heading))
    if (row.front().find(kind + " (") != std::string::npos) words.push_back(Words(row.front()));
  std::sort(words.begin(), words.end());
  return words;
}

TEST(MessagesPage, HasEachWarningCheckAndFailure) {
  EXPECT_EQ(WordsOnPage("Warnings and Checks", "Warning"), WordsInSource("Warning"));
  EXPECT_EQ(WordsOnPage("Warnings and Checks", "Check"), WordsInSource("Check"));
  EXPECT_EQ(WordsOnPage("Failures", "Failure"), WordsInSource("Failure"));
  EXPECT_GT(WordsInSource("Warning").size(), 10u);
  EXPECT_EQ(TableOf(Page(), "Warnings and Checks").size(),
            WordsInSource("Warning").size() + WordsInSource("Check").size());
}

// The pieces between "..." that no source file has.
std::vector<std::string> PiecesNotInSource(const std::string& words) {
  static const std::string all = [] {
    std::string joined;
    for (const auto& [name, text] : ReadSourceTree("src", {".cpp", ".h"}))
      joined += JoinedLiterals(text);
    return joined;
  }();
  std::vector<std::string> missing;
  for (std::size_t from = 0; from < words.size();) {
    const std::size_t to = std::min(words.find("...", from), words.size());
    // Quote marks around a name are put there by a function.
    const std::string piece =
        Words(std::regex_replace(words.substr(from, to - from), std::regex("^\"|\"$"), ""));
    if (all.find(piece) == std::string::npos) missing.push_back(piece);
    from = to + 3;
  }
  return missing;
}

TEST(MessagesPage, OtherMessagesAreSaidSomewhere) {
  const Rows rows = TableOf(Page(), "Other messages");
  EXPECT_GT(rows.size(), 15u);
  for (const std::vector<std::string>& row : rows)
    EXPECT_THAT(PiecesNotInSource(Words(row.front())), IsEmpty()) << row.front();
  EXPECT_THAT(PiecesNotInSource("Execution halted ... nonsense that is not said"),
              ElementsAre("nonsense that is not said"));
}

}  // namespace
}  // namespace flanks
