// What the project says can be looked up in the project: no file points at numbered chapters of
// writings that are not here, at folders of one machine, or at the tools somebody wrote it with.
//
// The patterns are put together from pieces so that this file does not match them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

#include "support/source_tree.h"

namespace flanks {
namespace {

using ::testing::IsEmpty;

std::string Joined(std::initializer_list<const char*> pieces) {
  std::string joined;
  for (const char* piece : pieces) joined += piece;
  return joined;
}

const std::vector<std::regex>& Forbidden() {
  static const std::vector<std::regex> patterns = [] {
    std::vector<std::regex> made;
    for (const std::string& pattern : {
             Joined({"\\bPar", "ts? [1-8]\\.[1-8]\\b"}),
             Joined({"\\bspe", "c\\.md\\b"}),
             Joined({"\\bshar", "ed/(sp", "ec|da", "ta|archi", "tecture|ho", "oks)"}),
             Joined({"\\b[Tt]he s", "pec says\\b"}),
             Joined({"\\b[Ss]pecifi", "cation says\\b"}),
             Joined({"/(wo", "rk|ro", "ot|fa", "rm)/"}),
             Joined({"\\b[Rr]ul", "ing [A-Z]?[0-9]"}),
             Joined({"\\b[Ii]ss", "ue [A-K]\\b"}),
             Joined({"\\bL", "LM\\b"}),
             Joined({"\\bA", "I (agent|assistant)"}),
             Joined({"Co-Auth", "ored-By"}),
         })
      made.emplace_back(pattern, std::regex::optimize);
    return made;
  }();
  return patterns;
}

// "name:line: text" of each line that matches a pattern.
std::vector<std::string> LinesAgainst(const SourceTree& tree) {
  std::vector<std::string> found;
  for (const auto& [name, text] : tree) {
    if (text.find('\0') != std::string::npos) continue;  // not a text
    int number = 0;
    for (const std::string& line : LinesOf(text)) {
      ++number;
      for (const std::regex& pattern : Forbidden())
        if (std::regex_search(line, pattern))
          found.push_back(name + ":" + std::to_string(number) + ": " + line);
    }
  }
  return found;
}

TEST(SelfContained, NoFilePointsAtWhatIsNotHere) {
  const SourceTree tree = ReadSourceTree("", {});
  ASSERT_TRUE(tree.contains("tests/architecture/self_contained_test.cpp"));
  for (const std::string& line : LinesAgainst(tree)) ADD_FAILURE() << line;
}

TEST(SelfContained, EachPatternIsSeen) {
  const std::vector<std::string> lines = {
      Joined({"as Par", "t 3.1 has it"}), Joined({"Par", "ts 1.2 and 1.3"}),
      Joined({"see spe", "c.md"}),        Joined({"the s", "pec says so"}),
      Joined({"in /ro", "ot/x"}),         Joined({"by Rul", "ing A5"}),
      Joined({"of iss", "ue B"}),         Joined({"../shar", "ed/da", "ta/x.csv"}),
  };
  for (const std::string& line : lines)
    EXPECT_EQ(LinesAgainst({{"a.txt", "\n" + line + "\n"}}),
              std::vector<std::string>{"a.txt:2: " + line});
  EXPECT_THAT(LinesAgainst({{"a.txt", "a Specification, part 9.9, networks/rooted"}}), IsEmpty());
}

}  // namespace
}  // namespace flanks
