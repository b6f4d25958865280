#include "estimate/priority.h"

#include <gtest/gtest.h>
#include <vector>

namespace flanks {
namespace {

// The levels in their order.
std::vector<std::int32_t> LevelsOf(const std::vector<std::int32_t>& priorities,
                                   const std::vector<std::int32_t>& counts) {
  Column<FlankNo, std::int32_t> priority, count;
  for (std::size_t i = 0; i < priorities.size(); ++i) {
    priority.push(priorities[i]);
    count.push(counts[i]);
  }
  std::vector<std::int32_t> levels;
  for (std::int32_t level = NextPriority(kBeforeFirstLevel, priority, count);
       level != kNoMoreLevels; level = NextPriority(level, priority, count))
    levels.push_back(level);
  return levels;
}

TEST(NextPriority, WithoutPrioritiesThereIsOneLevelOfAllFlanks) {
  EXPECT_EQ(LevelsOf({0, 0, 0}, {5, 2, 3}), (std::vector<std::int32_t>{0}));
  EXPECT_EQ(LevelsOf({}, {}), (std::vector<std::int32_t>{0}));
}

TEST(NextPriority, LevelsRiseAndEnd) {
  EXPECT_EQ(LevelsOf({3, 1, 3}, {5, 2, 3}), (std::vector<std::int32_t>{1, 3}));
}

TEST(NextPriority, AFlankWithoutElementsHasNoLevel) {
  EXPECT_EQ(LevelsOf({2, 1}, {5, 0}), (std::vector<std::int32_t>{2}));
  EXPECT_EQ(LevelsOf({0, 4}, {5, 0}), (std::vector<std::int32_t>{0}));
}

}  // namespace
}  // namespace flanks
