// docs/synonyms.md says which of several names the code has: each name of its first column stands
// in the code, and no identifier of its second column does.

#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <string>

#include "support/source_tree.h"

namespace flanks {
namespace {

std::set<std::string> WordsOfTheCode() {
  static const std::regex word("[A-Za-z_][A-Za-z_0-9]*");
  std::set<std::string> words;
  for (const auto& [file, text] : ReadSourceTree("src", {".h", ".cpp"})) {
    const std::string code = WithoutCommentsAndLiterals(text);
    for (std::sregex_iterator at(code.begin(), code.end(), word), end; at != end; ++at)
      words.insert(at->str());
  }
  return words;
}

// The names in backticks of one cell; keywords, which end in "=", are not identifiers.
std::set<std::string> NamesIn(const std::string& cell) {
  static const std::regex name("`([A-Za-z0-9]+)`");
  std::set<std::string> names;
  for (std::sregex_iterator at(cell.begin(), cell.end(), name), end; at != end; ++at)
    names.insert((*at)[1].str());
  return names;
}

TEST(Synonyms, OfEachThingTheCodeHasOneName) {
  const std::set<std::string> words = WordsOfTheCode();
  const std::string page = ReadSourceTree("docs", {"synonyms.md"}).at("docs/synonyms.md");
  int rows = 0;
  for (const std::string& line : LinesOf(page)) {
    if (!line.starts_with("| `")) continue;
    ++rows;
    const std::size_t second = line.find(" | "), third = line.find(" | ", second + 3);
    for (const std::string& name : NamesIn(line.substr(0, second)))
      EXPECT_TRUE(words.contains(name)) << name << " is not in the code";
    for (const std::string& name : NamesIn(line.substr(second, third - second)))
      EXPECT_FALSE(words.contains(name)) << name << " is another name in: " << line;
  }
  EXPECT_GT(rows, 10);
}

}  // namespace
}  // namespace flanks
