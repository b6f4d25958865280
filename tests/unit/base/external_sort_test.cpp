#include "base/external_sort.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <system_error>
#include <vector>

#include "support/scratch_folder.h"

namespace flanks {
namespace {

std::unique_ptr<TextWorkFile> FileOf(const std::vector<std::string>& lines) {
  auto file = std::make_unique<TextWorkFile>();
  EXPECT_FALSE(file->Create("lines", "txt"));
  for (const std::string& line : lines) file->WriteLine(line);
  return file;
}

std::vector<std::string> LinesOf(TextWorkFile& file) {
  std::vector<std::string> lines;
  std::string_view line;
  while (file.ReadLine(line)) lines.emplace_back(line);
  return lines;
}

std::vector<std::string> Sorted(const std::vector<std::string>& lines, const SortOptions& options) {
  std::unique_ptr<TextWorkFile> file = FileOf(lines);
  EXPECT_TRUE(ExternalSort(options, file));
  return LinesOf(*file);
}

// Short keys from few bytes, so that many are equal; a mark behind them tells equal ones apart.
std::vector<std::string> RandomLines(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < count; ++i) {
    std::string key;
    for (std::size_t length = random() % 4; length-- > 0;) key += "Aa\x7F\xE9 "[random() % 5];
    lines.push_back(std::to_string(1000000 + i) + key);
  }
  return lines;
}

// The same by the standard library, in memory.
std::vector<std::string> StableSorted(std::vector<std::string> lines, std::size_t from) {
  std::stable_sort(lines.begin(), lines.end(), [from](const std::string& a, const std::string& b) {
    return std::string_view(a).substr(std::min(from, a.size())) <
           std::string_view(b).substr(std::min(from, b.size()));
  });
  return lines;
}

// One block; several blocks and one merge; levels of merges.
TEST(ExternalSort, IsTheStableSortOfTheLinesInMemory) {
  const ScratchFolder folder;
  const std::vector<std::string> lines = RandomLines(5000, 1);
  for (const std::size_t blockBytes : {std::size_t{1} << 30, std::size_t{9000}, std::size_t{300}}) {
    for (const std::size_t runsAtOnce : {2, 3, 64}) {
      SortOptions options{.column = 8, .blockBytes = blockBytes, .runsAtOnce = runsAtOnce};
      EXPECT_EQ(Sorted(lines, options), StableSorted(lines, 7)) << blockBytes << " " << runsAtOnce;
    }
  }
  EXPECT_TRUE(folder.empty());
}

TEST(ExternalSort, ComparesWholeLinesFromColumnNoughtAndOne) {
  const ScratchFolder folder;
  const std::vector<std::string> lines{"b", "", "a2", "\xC3", "A", "a", "a1"};
  const std::vector<std::string> sorted{"", "A", "a", "a1", "a2", "b", "\xC3"};
  EXPECT_EQ(Sorted(lines, {.column = 0}), sorted);
  EXPECT_EQ(Sorted(lines, {.column = 1, .blockBytes = 1}), sorted);
}

TEST(ExternalSort, LinesThatEndBeforeTheColumnComeFirstInTheirOrder) {
  const ScratchFolder folder;
  EXPECT_EQ(Sorted({"9x", "5", "1x", "3", "2a"}, {.column = 2, .blockBytes = 2}),
            (std::vector<std::string>{"5", "3", "2a", "9x", "1x"}));
}

TEST(ExternalSort, NoLineAndOneLine) {
  const ScratchFolder folder;
  EXPECT_TRUE(Sorted({}, {}).empty());
  EXPECT_EQ(Sorted({"only"}, {.blockBytes = 1}), std::vector<std::string>{"only"});
}

TEST(ExternalSort, TellsHowFarItIsAndEndsWhenAsked) {
  const ScratchFolder folder;
  const std::vector<std::string> lines = RandomLines(30000, 2);
  std::vector<std::int64_t> told;
  SortOptions options{.column = 8, .blockBytes = 50000};
  options.isStopped = [&](std::int64_t done) {
    told.push_back(done);
    return false;
  };
  Sorted(lines, options);
  EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
  EXPECT_EQ(told.front(), 4096);
  EXPECT_EQ(told.back(), 30000 + 28672);
  for (std::size_t last = 0; last < told.size(); ++last) {  // reading and merging
    std::size_t looks = 0;
    options.isStopped = [&](std::int64_t) { return looks++ == last; };
    std::unique_ptr<TextWorkFile> file = FileOf(lines);
    EXPECT_FALSE(ExternalSort(options, file));
    EXPECT_EQ(file, nullptr);
    EXPECT_TRUE(folder.empty());
  }
}

TEST(ExternalSort, AFullDiskIsThrownAndLeavesNothing) {
  const ScratchFolder folder;
  const std::vector<std::string> lines = RandomLines(20000, 3);
  for (const std::int64_t room : {1000, 250000}) {  // in a run, in the merge
    FileFaultPlan plan;
    plan.bytesThatFit = room;
    SortOptions options{.column = 8, .blockBytes = 50000};
    options.plan = &plan;
    std::unique_ptr<TextWorkFile> file = FileOf(lines);
    EXPECT_THROW(static_cast<void>(ExternalSort(options, file)), std::system_error) << room;
    file.reset();
    EXPECT_TRUE(folder.empty());
  }
}

}  // namespace
}  // namespace flanks
