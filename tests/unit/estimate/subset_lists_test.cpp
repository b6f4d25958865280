#include "estimate/subset_lists.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<int> NumbersOf(SubsetLists& lists, std::int32_t slot) {
  std::vector<int> numbers;
  lists.ForEach(slot, [&](SubsetNumber number) { numbers.push_back(number); });
  return numbers;
}

TEST(SubsetLists, BeginWithAllElementsTakingPartAndNoSubset) {
  SubsetLists lists(2);
  EXPECT_EQ(lists.SubsetStateOfElement(0), 0);  // no element
  EXPECT_EQ(lists.SubsetStateOfElement(1), -1);
  EXPECT_EQ(lists.Size(1), 0);
  EXPECT_EQ(lists.CountSubsets(), 0);
  EXPECT_EQ(lists.NewSubset(), 1);
  EXPECT_EQ(lists.NewSubset(), 2);
}

TEST(SubsetLists, HoldNumbersInOrderAndOnce) {
  SubsetLists lists(3);
  for (int n = 0; n < 4; ++n) lists.NewSubset();
  for (const SubsetNumber number : std::vector<SubsetNumber>{3, 1, 4, 1, 3}) lists.Add(2, number);
  EXPECT_THAT(NumbersOf(lists, 2), ElementsAre(1, 3, 4));
  EXPECT_EQ(lists.Size(2), 3);
  EXPECT_TRUE(lists.Holds(2, 3));
  EXPECT_FALSE(lists.Holds(2, 2));
  EXPECT_THAT(lists.SharedElements(3), ElementsAre(2));
  lists.Add(1, 3);
  EXPECT_THAT(lists.SharedElements(3), ElementsAre(2));  // element 1 is in this one alone
}

TEST(SubsetLists, AMergedNumberBecomesTheOneKept) {
  SubsetLists lists(3);
  for (int n = 0; n < 3; ++n) lists.NewSubset();
  lists.Add(1, 2);
  lists.Add(2, 2);
  lists.Add(2, 3);
  lists.Add(3, 1);
  lists.Add(3, 2);
  lists.Merge(1, 2);
  EXPECT_FALSE(lists.IsLive(2));
  EXPECT_TRUE(lists.Holds(1, 1));
  EXPECT_FALSE(lists.Holds(1, 2));
  EXPECT_THAT(NumbersOf(lists, 2), ElementsAre(1, 3));
  EXPECT_THAT(NumbersOf(lists, 3), ElementsAre(1));
  EXPECT_GT(lists.codes()[3], 0);  // one number needs no list
  lists.Merge(1, 3);
  EXPECT_EQ(lists.CountSubsets(), 1);
  EXPECT_EQ(lists.NewSubset(), 2);  // free again
}

TEST(SubsetLists, AnElementSetAsideIsInNoSubset) {
  SubsetLists lists(2);
  lists.NewSubset();
  lists.NewSubset();
  lists.Add(1, 1);
  lists.Add(1, 2);
  lists.Add(2, 2);
  lists.SetAside(1);
  EXPECT_EQ(lists.SubsetStateOfElement(1), 0);
  EXPECT_THAT(NumbersOf(lists, 1), IsEmpty());
  EXPECT_THAT(lists.SharedElements(2), IsEmpty());
  lists.Add(1, 2);
  EXPECT_EQ(lists.Size(1), 0);
  EXPECT_EQ(lists.CountSubsets(), 1);
  EXPECT_EQ(lists.NewSubset(), 1);
}

// What stands in a list that another element used before must not be taken for its own.
TEST(SubsetLists, AListServesAnotherElementAfterwards) {
  SubsetLists lists(3);
  for (int n = 0; n < 4; ++n) lists.NewSubset();
  lists.Add(1, 1);
  lists.Add(1, 2);
  lists.SetAside(1);
  lists.Add(2, 3);
  lists.Add(2, 4);
  lists.Add(3, 2);
  lists.Merge(1, 2);
  EXPECT_THAT(NumbersOf(lists, 2), ElementsAre(3, 4));
  EXPECT_THAT(NumbersOf(lists, 3), ElementsAre(1));
  EXPECT_THAT(lists.SharedElements(1), IsEmpty());
}

TEST(SubsetLists, TheTableEndsAt16383) {
  SubsetLists lists(1);
  for (int n = 1; n <= 16383; ++n) ASSERT_EQ(lists.NewSubset(), n);
  EXPECT_EQ(lists.NewSubset(), 0);
  lists.Add(1, 200);
  EXPECT_EQ(lists.CountSubsets(), 1);
  EXPECT_EQ(lists.NewSubset(), 1);
}

}  // namespace
}  // namespace flanks
