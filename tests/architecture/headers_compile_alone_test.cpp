// Each header under src/ compiles alone: its own source includes it first, or, where it has none,
// the build makes a small source for it (tests/CMakeLists.txt, target headers_alone), so a header
// that leans on its includer does not build.  Here we see that this is so of all, and that each
// guard is named for its path.

#include <algorithm>
#include <cctype>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <string>

#include "support/source_tree.h"

namespace flanks {
namespace {

TEST(HeadersCompileAlone, InTheirSourceOrByThemselves) {
  std::ifstream list(FLANKS_HEADER_LIST);
  using Words = std::istream_iterator<std::string>;
  const std::set<std::string> alone(Words(list), Words{});
  const SourceTree headers = ReadSourceTree("src", {".h"}),
                   sources = ReadSourceTree("src", {".cpp"});
  ASSERT_FALSE(headers.empty());
  for (const auto& [file, text] : headers) {
    if (file.find("/qt/") != std::string::npos) continue;  // built with the window
    const std::string stem = file.substr(0, file.size() - 2);
    const auto source = sources.find(stem + ".cpp");
    if (source == sources.end()) {
      EXPECT_TRUE(alone.contains(file))
          << file << " is not among the headers that were built alone: configure again";
      continue;
    }
    const std::string first = "#include \"" + file.substr(std::string("src/").size()) + "\"\n";
    EXPECT_TRUE(source->second.starts_with(first)) << stem << ".cpp is to begin with " << first;
  }
}

// src/base/column.h is guarded by FLANKS_BASE_COLUMN_H.
std::string GuardOf(const std::string& file) {
  std::string guard = "FLANKS_" + file.substr(std::string("src/").size());
  std::ranges::transform(guard, guard.begin(), [](unsigned char c) {
    return std::isalnum(c) != 0 ? static_cast<char>(std::toupper(c)) : '_';
  });
  return guard;
}

TEST(HeaderGuards, AreNamedForTheirPath) {
  for (const auto& [file, text] : ReadSourceTree("src", {".h"})) {
    const std::string guard = GuardOf(file);
    EXPECT_NE(text.find("#ifndef " + guard + "\n#define " + guard + "\n"), std::string::npos)
        << file << " is to be guarded by " << guard;
  }
}

}  // namespace
}  // namespace flanks
