#include "base/kept_lines.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/scratch_folder.h"

namespace flanks {
namespace {

std::vector<std::string> All(KeptLines& kept) {
  std::vector<std::string> lines;
  std::string line;
  for (kept.Rewind(); kept.Next(line);) lines.push_back(line);
  return lines;
}

TEST(KeptLines, AFewStayInMemory) {
  const ScratchFolder folder;
  KeptLines kept;
  EXPECT_TRUE(kept.empty());
  EXPECT_TRUE(All(kept).empty());
  kept.Add(";; one");
  kept.Add("");
  kept.Add(";; three");
  EXPECT_EQ(kept.size(), 3);
  const std::vector<std::string> expected = {";; one", "", ";; three"};
  EXPECT_EQ(All(kept), expected);
  EXPECT_EQ(All(kept), expected) << "a second time";
  EXPECT_TRUE(folder.empty());
}

TEST(KeptLines, ManyComeBackInOrderAndTheirFileGoesWithThem) {
  const ScratchFolder folder;
  {
    KeptLines kept;
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < 3 * KeptLines::kInMemory; ++i) {
      expected.push_back("line " + std::to_string(i));
      kept.Add(expected.back());
    }
    EXPECT_EQ(kept.size(), static_cast<std::int64_t>(expected.size()));
    EXPECT_EQ(All(kept), expected);
    EXPECT_EQ(All(kept), expected) << "a second time";
    EXPECT_EQ(folder.names().size(), 1u);
  }
  EXPECT_TRUE(folder.empty());
}

TEST(KeptLines, LinesAreKeptToTheByteWhereverTheyStand) {
  const ScratchFolder folder;
  KeptLines kept;
  const std::vector<std::string> lines = {std::string(KeptLines::kBytesInMemory + 1, 'x'),
                                          "\xEF\xBB\xBF;; a byte order mark",
                                          "",
                                          "  blanks  ",
                                          "\t;; a tab",
                                          std::string("a\0b", 3)};
  for (const std::string& line : lines) kept.Add(line);
  EXPECT_EQ(folder.names().size(), 1u) << "a long first line fills the memory";
  EXPECT_EQ(All(kept), lines);
}

}  // namespace
}  // namespace flanks
