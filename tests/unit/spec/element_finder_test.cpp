#include "spec/element_finder.h"

#include <gtest/gtest.h>
#include <vector>

#include "spec/label_list.h"

namespace flanks {
namespace {

// Flank 1 has the elements 2, 5 and 9, Flank 2 has none, Flank 3 has 3, 4 and 5.
Design ThreeFlanks() {
  Design design;
  design.FlankCount = 3;
  GiveSlots({{FlankNo(1), 2, 2}, {FlankNo(1), 5, 5}, {FlankNo(1), 9, 9}, {FlankNo(3), 3, 5}}, 0,
            design);
  return design;
}

struct Case {
  int number, flank, slot;
};

TEST(ElementFinder, FindsTheSlotOfANumberInItsFlank) {
  const Design design = ThreeFlanks();
  const Case cases[] = {
      {2, 1, 1}, {5, 1, 2}, {9, 1, 3}, {1, 1, 0}, {4, 1, 0}, {10, 1, 0}, {2147483646, 1, 0},
      {0, 2, 0}, {1, 2, 0}, {3, 3, 4}, {4, 3, 5}, {5, 3, 6}, {2, 3, 0},  {6, 3, 0},
  };
  ElementFinder finder(design.flanks, design.elements);
  for (const Case& c : cases) {
    const FoundElement found = finder.FindElementSlot(c.number, FlankNo(c.flank));
    EXPECT_EQ(found.slot.number(), c.slot) << c.flank << "," << c.number;
    EXPECT_EQ(found.found(), c.slot > 0);
  }
}

TEST(ElementFinder, RemembersTheLastAnswerOfEachFlank) {
  const Design design = ThreeFlanks();
  ElementFinder finder(design.flanks, design.elements);
  EXPECT_FALSE(finder.FindElementSlot(5, FlankNo(1)).cacheHit);
  EXPECT_FALSE(finder.FindElementSlot(4, FlankNo(3)).cacheHit);
  EXPECT_TRUE(finder.FindElementSlot(5, FlankNo(1)).cacheHit);
  EXPECT_TRUE(finder.FindElementSlot(4, FlankNo(3)).cacheHit);
  EXPECT_FALSE(finder.FindElementSlot(4, FlankNo(1)).found());  // a miss forgets nothing
  EXPECT_TRUE(finder.FindElementSlot(5, FlankNo(1)).cacheHit);
  EXPECT_FALSE(finder.FindElementSlot(9, FlankNo(1)).cacheHit);
  EXPECT_FALSE(finder.FindElementSlot(5, FlankNo(1)).cacheHit);
}

TEST(ElementFinder, FindsEveryNumberOfAFlankWithGaps) {
  Design design;
  design.FlankCount = 1;
  std::vector<NumberRange> ranges;
  for (int number = 1; number < 3000; number += 1 + number % 7)
    ranges.push_back({FlankNo(1), number, number});
  GiveSlots(ranges, 0, design);
  ElementFinder finder(design.flanks, design.elements);
  std::size_t next = 0;
  for (int number = 0; number <= 3001; ++number) {
    const bool there = next < ranges.size() && ranges[next].low == number;
    const int slot = there ? static_cast<int>(++next) : 0;
    EXPECT_EQ(finder.FindElementSlot(number, FlankNo(1)).slot.number(), slot) << number;
  }
}

}  // namespace
}  // namespace flanks
