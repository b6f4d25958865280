// Arrows point one way: reads every #include under src/ and compares it with layers.txt.

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/source_tree.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Restriction {
  std::vector<std::string> prefixes;  // of files
  std::vector<std::string> targets;   // library marks (only) or headers (pure)
};

struct Rules {
  std::map<std::string, int> rankOfPrefix;
  std::vector<Restriction> only, pure;
};

struct Include {
  std::string file;  // under src/, named from the top of the project
  int line;
  std::string target;  // as written, with its mark: <vector> or "base/column.h"
};

Rules ReadRules(const std::string& text) {
  Rules rules;
  for (const std::string& line : LinesOf(text)) {
    std::istringstream words(line.substr(0, line.find('#')));
    std::string word;
    if (!(words >> word)) continue;
    if (word != "only" && word != "pure") {
      std::string prefix;
      words >> prefix;
      rules.rankOfPrefix[prefix] = std::stoi(word);
      continue;
    }
    Restriction restriction;
    std::vector<std::string>* list = &restriction.prefixes;
    for (std::string name; words >> name;) {
      if (name == ":") {
        list = &restriction.targets;
      } else {
        list->push_back(name);
      }
    }
    (word == "only" ? rules.only : rules.pure).push_back(restriction);
  }
  return rules;
}

std::vector<Include> IncludesOf(const SourceTree& tree) {
  std::vector<Include> includes;
  for (const auto& [file, text] : tree) {
    int number = 0;
    for (const std::string& line : LinesOf(text)) {
      ++number;
      std::istringstream words(line);
      std::string directive, target;
      words >> std::ws;
      if (words.get() != '#' || !(words >> directive) || directive != "include") continue;
      words >> target;
      includes.push_back({file, number, target});
    }
  }
  return includes;
}

bool HasPrefix(const std::string& file, const std::vector<std::string>& prefixes) {
  return std::ranges::any_of(prefixes,
                             [&](const auto& prefix) { return file.starts_with(prefix); });
}

// The longest prefix of `file` that has a rank; empty when none has.
std::string HomeOf(const std::string& file, const Rules& rules) {
  std::string home;
  for (const auto& [prefix, rank] : rules.rankOfPrefix)
    if (file.starts_with(prefix) && prefix.size() > home.size()) home = prefix;
  return home;
}

std::string Arrow(const Include& include) {
  return include.file + ":" + std::to_string(include.line) + ": -> " + include.target;
}

bool IsOwn(const Include& include) {
  return include.target.starts_with('"');
}

// "base/column.h" with its quote marks, named as the tree names it.
std::string TargetFile(const Include& include) {
  return "src/" + include.target.substr(1, include.target.size() - 2);
}

void CheckRanks(const Include& include, const Rules& rules, std::vector<std::string>& faults) {
  const std::string from = HomeOf(include.file, rules);
  const std::string to = HomeOf(TargetFile(include), rules);
  if (from.empty() || to.empty() || from == to) return;
  const int fromRank = rules.rankOfPrefix.at(from), toRank = rules.rankOfPrefix.at(to);
  if (toRank < fromRank) return;
  faults.push_back(Arrow(include) + " goes from rank " + std::to_string(fromRank) + " (" + from +
                   ") to rank " + std::to_string(toRank) + " (" + to + ")");
}

void CheckOnly(const Include& include, const Rules& rules, std::vector<std::string>& faults) {
  for (const Restriction& rule : rules.only)
    for (const std::string& library : rule.targets)
      if (include.target.starts_with(library) && !HasPrefix(include.file, rule.prefixes))
        faults.push_back(Arrow(include) + " belongs to " + rule.prefixes.front() + " alone");
}

// Follows the includes of each pure file to all that it sees.
void CheckPure(const std::vector<Include>& includes, const Rules& rules,
               std::vector<std::string>& faults) {
  std::multimap<std::string, const Include*> from;
  for (const Include& include : includes)
    if (IsOwn(include)) from.emplace(include.file, &include);
  for (const Restriction& rule : rules.pure) {
    std::vector<std::pair<std::string, std::string>> open;  // file, way to it
    std::set<std::string> seen;
    for (const auto& [file, include] : from)
      if (HasPrefix(file, rule.prefixes) && seen.insert(file).second) open.emplace_back(file, "");
    while (!open.empty()) {
      const auto [file, way] = open.back();
      open.pop_back();
      for (auto [at, end] = from.equal_range(file); at != end; ++at) {
        const Include& include = *at->second;
        const std::string target = TargetFile(include), path = way + Arrow(include);
        if (std::ranges::count(rule.targets, target.substr(4)) > 0)
          faults.push_back(path + " must not be known here");
        else if (seen.insert(target).second)
          open.emplace_back(target, path + ", ");
      }
    }
  }
}

std::vector<std::string> FaultsOf(const SourceTree& tree, const Rules& rules) {
  std::vector<std::string> faults;
  for (const auto& [file, text] : tree)
    if (HomeOf(file, rules).empty()) faults.push_back(file + " has no rank");
  const std::vector<Include> includes = IncludesOf(tree);
  for (const Include& include : includes) {
    if (IsOwn(include)) {
      if (!tree.contains(TargetFile(include)))
        faults.push_back(Arrow(include) + " is no file under src/ (paths begin there)");
      CheckRanks(include, rules, faults);
    }
    CheckOnly(include, rules, faults);
  }
  CheckPure(includes, rules, faults);
  return faults;
}

TEST(IncludeGraph, HasNoArrowAgainstTheRule) {
  const std::string name = "tests/architecture/layers.txt";
  const Rules rules = ReadRules(ReadSourceTree("tests/architecture", {"layers.txt"}).at(name));
  ASSERT_FALSE(rules.rankOfPrefix.empty());
  const SourceTree tree = ReadSourceTree("src", {".h", ".cpp"});
  ASSERT_FALSE(tree.empty());
  for (const std::string& fault : FaultsOf(tree, rules)) ADD_FAILURE() << fault;
}

// The rule's test is itself tested on small made-up trees, for it is silent when all is well.
class IncludeRule : public ::testing::Test {
 protected:
  const Rules rules_ = ReadRules(
      "0 src/base/   # a comment\n"
      "2 src/run/\n"
      "3 src/spec/\n"
      "7 src/report/\n"
      "7 src/output/\n"
      "9 src/run/pipeline\n"
      "only src/output/sheet : <xlsx\n"
      "pure src/spec/plain : run/run.h\n");
};

TEST_F(IncludeRule, AllowsDownwardAndHome) {
  EXPECT_THAT(FaultsOf({{"src/base/a.h", "#include <vector>\n#include \"base/b.h\"\n"},
                        {"src/base/b.h", ""},
                        {"src/run/pipeline.cpp", "#include \"spec/s.h\"\n"},
                        {"src/spec/s.h", "#include \"base/a.h\"\n"},
                        {"src/output/sheet.cpp", "#include <xlsxwriter.h>\n"}},
                       rules_),
              IsEmpty());
}

TEST_F(IncludeRule, NamesFileLineAndArrowOfAnUpwardInclude) {
  EXPECT_THAT(
      FaultsOf({{"src/base/a.cpp", "// why\n#  include \"run/run.h\"\n"}, {"src/run/run.h", ""}},
               rules_),
      ElementsAre("src/base/a.cpp:2: -> \"run/run.h\" goes from rank 0 (src/base/) to "
                  "rank 2 (src/run/)"));
}

TEST_F(IncludeRule, KeepsTwoPrefixesOfOneRankApart) {
  EXPECT_THAT(
      FaultsOf({{"src/report/a.cpp", "#include \"output/o.h\"\n"}, {"src/output/o.h", ""}}, rules_),
      ElementsAre(HasSubstr("src/report/a.cpp:1: -> \"output/o.h\"")));
}

TEST_F(IncludeRule, LooksAtTheLongestPrefix) {
  EXPECT_THAT(
      FaultsOf({{"src/run/a.cpp", "#include \"run/pipeline.h\"\n"}, {"src/run/pipeline.h", ""}},
               rules_),
      ElementsAre(HasSubstr("to rank 9 (src/run/pipeline)")));
}

TEST_F(IncludeRule, FaultsAFileWithoutARank) {
  EXPECT_THAT(FaultsOf({{"src/misc/a.cpp", ""}}, rules_),
              ElementsAre("src/misc/a.cpp has no rank"));
}

TEST_F(IncludeRule, FaultsAPathThatDoesNotBeginAtSrc) {
  EXPECT_THAT(FaultsOf({{"src/base/a.cpp", "#include \"a.h\"\n"}, {"src/base/a.h", ""}}, rules_),
              ElementsAre(HasSubstr("is no file under src/")));
}

TEST_F(IncludeRule, KeepsALibraryToItsSoleUser) {
  EXPECT_THAT(FaultsOf({{"src/output/file.cpp", "#include <xlsxwriter.h>\n"}}, rules_),
              ElementsAre(HasSubstr("belongs to src/output/sheet alone")));
}

TEST_F(IncludeRule, SeesThatAPureFileKnowsTheRunByWayOfAnother) {
  EXPECT_THAT(FaultsOf({{"src/spec/plain.cpp", "#include \"spec/other.h\"\n"},
                        {"src/spec/other.h", "\n#include \"run/run.h\"\n"},
                        {"src/run/run.h", ""}},
                       rules_),
              ElementsAre("src/spec/plain.cpp:1: -> \"spec/other.h\", src/spec/other.h:2: -> "
                          "\"run/run.h\" must not be known here"));
}

}  // namespace
}  // namespace flanks
