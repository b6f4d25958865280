// Each message, fault and keyword of the program occurs in some test.  What nobody can reach from
// outside is listed here with its reason.
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "support/file_bytes.h"

namespace flanks {
namespace {

// All tests and golden cases but this file, with string literals that run over lines joined.
const std::string& TestTexts() {
  static const std::string texts = [] {
    std::string all;
    const std::filesystem::path tests = std::string(FLANKS_SOURCE_DIR) + "/tests";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(tests)) {
      const std::string extension = entry.path().extension().string();
      const bool isText = extension == ".cpp" || extension == ".h" || extension == ".txt";
      if (isText && entry.path().filename() != "words_tested_test.cpp")
        all += BytesOfFile(entry.path());
    }
    return std::regex_replace(all, std::regex("\"\\s*\n\\s*\""), "");
  }();
  return texts;
}

bool InSomeTest(const std::string& words) {
  return TestTexts().find(words) != std::string::npos;
}

// The first group of each match in a source file.
std::vector<std::string> Matches(const std::string& file, const std::string& pattern) {
  const std::string text = BytesOfFile(std::string(FLANKS_SOURCE_DIR) + "/src/" + file);
  const std::regex expression(pattern);
  std::vector<std::string> found;
  for (std::sregex_iterator it(text.begin(), text.end(), expression), end; it != end; ++it)
    found.push_back((*it)[1].str());
  return found;
}

TEST(WordsTested, EveryMessage) {
  // States that our own tables would have to contradict themselves to reach.
  const std::set<std::string> unreachable = {"Failure (14)! Fair score computation failure.",
                                             "Failure (18)! Lsort sequence error (1).",
                                             "Failure (18)! Lsort sequence error (2)."};
  const std::vector<std::string> messages =
      Matches("run/messages.h", "string_view \\w+ =\\s*\"([^\"]*)\"");
  ASSERT_GT(messages.size(), 15u);
  for (const std::string& message : messages) {
    if (unreachable.count(message) == 0) {
      EXPECT_TRUE(InSomeTest(message)) << message;
    }
  }
}

// By name, or by the code that the reported line ends in.
TEST(WordsTested, EveryFault) {
  const std::string pattern = "\n  (\\w+ = [0-9]+),";
  const std::vector<std::string> faults = Matches("run/faults.h", pattern);
  ASSERT_GT(faults.size(), 60u);
  for (const std::string& fault : faults) {
    const std::string name = fault.substr(0, fault.find(' '));
    const std::string code = fault.substr(fault.rfind(' ') + 1);
    EXPECT_TRUE(name == "none" || InSomeTest("Fault::" + name) || InSomeTest("Error F" + code))
        << fault;
  }
}

TEST(WordsTested, EveryKeyword) {
  const std::vector<std::string> keywords =
      Matches("spec/keyword_table.cpp", "\\{\"\\w+\", [0-9]+, \"([^\"]+=)\"");
  ASSERT_GT(keywords.size(), 50u);
  for (const std::string& keyword : keywords) {
    // Prefixes that are taken and ignored have no name of their own.
    const bool hasName = keyword.size() > 3;
    EXPECT_TRUE(!hasName || InSomeTest(keyword)) << keyword;
  }
}

// A header's comment names the test that exercises it: that file is there, and so is each page.
TEST(WordsTested, EveryFileThatACommentNames) {
  const std::filesystem::path top = FLANKS_SOURCE_DIR;
  const std::regex named("\\b(?:tests|bench|docs)/[a-zA-Z0-9_/.-]+\\.(?:cpp|h|md|txt)\\b");
  int found = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(top / "src")) {
    if (entry.is_directory()) continue;
    const std::string text = BytesOfFile(entry.path());
    for (std::sregex_iterator it(text.begin(), text.end(), named), end; it != end; ++it) {
      EXPECT_TRUE(std::filesystem::exists(top / it->str())) << entry.path() << " " << it->str();
      ++found;
    }
  }
  EXPECT_GT(found, 80);
}

}  // namespace
}  // namespace flanks
