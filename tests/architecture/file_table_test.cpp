// docs/architecture.md says what each file under src/ owns; here it is held to the truth.
//
// A section "### src/FOLDER/ ..." has a table whose first column names files in backticks, without
// their endings when header and source go together.  Every file of the folder stands in its table,
// and every file that a row names is there, unless the row says *later*.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "support/source_tree.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// "src/base/text.cpp" is "src/base/text".
std::string WithoutEnding(const std::string& file) {
  return file.substr(0, file.rfind('.'));
}

struct FileTable {
  std::set<std::string> present, later;  // "src/base/text"
};

FileTable ReadFileTable(const std::string& page) {
  static const std::regex heading("^### (src/[a-z_/]*/)( .*)?$"), name("`([a-z0-9_/.*]+)`");
  FileTable table;
  std::string folder;
  for (const std::string& line : LinesOf(page)) {
    std::smatch match;
    if (line.starts_with("#"))
      folder = std::regex_match(line, match, heading) ? match[1].str() : std::string();
    if (folder.empty() || !line.starts_with("| `")) continue;
    const std::string cell = line.substr(0, line.find(" | "));
    std::set<std::string>& into =
        line.find("*later*") == std::string::npos ? table.present : table.later;
    for (std::sregex_iterator at(cell.begin(), cell.end(), name), end; at != end; ++at) {
      const std::string file = folder + (*at)[1].str();
      into.insert(file.ends_with(".h") ? WithoutEnding(file) : file);
    }
  }
  return table;
}

std::vector<std::string> FaultsOf(const std::string& page, const SourceTree& sources) {
  const FileTable table = ReadFileTable(page);
  std::set<std::string> files;
  for (const auto& [file, text] : sources) files.insert(WithoutEnding(file));
  std::vector<std::string> faults;
  for (const std::string& file : files)
    if (!table.present.contains(file)) faults.push_back(file + " stands in no row");
  for (const std::string& file : table.present)
    if (!files.contains(file)) faults.push_back(file + " is named and is not there");
  return faults;
}

TEST(FileTable, NamesEachSourceFileAndNoOther) {
  const std::string name = "docs/architecture.md";
  const std::string page = ReadSourceTree("docs", {"architecture.md"}).at(name);
  for (const std::string& fault : FaultsOf(page, ReadSourceTree("src", {".h", ".cpp"})))
    ADD_FAILURE() << name << ": " << fault;
}

TEST(FileTable, SeesWhatIsMissingOnEitherSide) {
  const std::string page =
      "### src/base/ — no state\n"
      "| File | Owns |\n"
      "|---|---|\n"
      "| `text`, `grid.h` | see `other` |\n"
      "| `utf8` | *later*: widths |\n"
      "## next\n"
      "| `elsewhere` | not in a folder |\n";
  EXPECT_THAT(
      FaultsOf(page, {{"src/base/text.h", ""}, {"src/base/text.cpp", ""}, {"src/base/grid.h", ""}}),
      IsEmpty());
  EXPECT_THAT(
      FaultsOf(page, {{"src/base/text.h", ""}, {"src/base/utf8.h", ""}}),
      ElementsAre("src/base/utf8 stands in no row", "src/base/grid is named and is not there"));
}

}  // namespace
}  // namespace flanks
