#include "estimate/subset_sweep.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace flanks {
namespace {

using ::testing::ElementsAre;

// Flanks of three elements each: slots 1 to 3, 4 to 6, 7 to 9.
struct Sweep {
  explicit Sweep(const std::vector<std::int32_t>& places) {
    const auto flanks = static_cast<std::int32_t>(places.size());
    for (std::int32_t f = 0; f < flanks; ++f)
      flankPlaces.flanks.push_back({3 * f + 1, 3 * f + 3, places[static_cast<std::size_t>(f)]});
    flankPlaces.flankOfSlot.assign(static_cast<std::size_t>(3 * flanks) + 1, 0);
    for (std::int32_t slot = 1; slot <= 3 * flanks; ++slot)
      flankPlaces.flankOfSlot[static_cast<std::size_t>(slot)] =
          static_cast<std::uint16_t>((slot - 1) / 3);
    lists = SubsetLists(3 * flanks);
  }
  void Subset(const std::vector<std::int32_t>& slots) {
    const SubsetNumber number = lists.NewSubset();
    for (const std::int32_t slot : slots) lists.Add(slot, number);
  }
  bool Run() {
    return SubsetSweep(flankPlaces, lists).Run([] { return true; });
  }
  std::vector<int> Live() const {
    std::vector<int> live;
    for (SubsetNumber n = 1; n <= lists.tableSize(); ++n)
      if (lists.IsLive(n)) live.push_back(n);
    return live;
  }

  FlankPlaces flankPlaces;
  SubsetLists lists{0};
};

TEST(SubsetSweep, WithThreeFlanksTwoMustBeShared) {
  Sweep sweep({1, 1, 1});
  sweep.Subset({1, 4, 7});
  sweep.Subset({2, 4, 8});     // shares an item with the first
  sweep.Subset({3, 5, 8});     // shares a rater with the second
  sweep.Subset({3, 4, 6, 9});  // shares a person with the third, an item with the first two
  EXPECT_FALSE(sweep.Run());
  EXPECT_THAT(sweep.Live(), ElementsAre(1, 2, 3, 4));
}

TEST(SubsetSweep, TwoSharedFlanksMergeIntoTheLowerNumber) {
  Sweep sweep({1, 1, 1});
  sweep.Subset({1, 4, 7});
  sweep.Subset({2, 5, 8});
  sweep.Subset({1, 4, 9});
  EXPECT_TRUE(sweep.Run());
  EXPECT_THAT(sweep.Live(), ElementsAre(1, 2));
  EXPECT_TRUE(sweep.lists.Holds(9, 1));
}

// 3 and 2 share a person and a rater; what they are together shares an item and a rater with 1.
TEST(SubsetSweep, AMergeCanConnectALowerNumber) {
  Sweep sweep({1, 1, 1});
  sweep.Subset({1, 4, 9});
  sweep.Subset({2, 5, 8, 9});
  sweep.Subset({2, 4, 8});
  EXPECT_TRUE(sweep.Run());
  EXPECT_THAT(sweep.Live(), ElementsAre(1));
}

TEST(SubsetSweep, TwoElementsOfOneFlankAreOnePosition) {
  Sweep sweep({1, 1, 1});
  sweep.Subset({1, 4, 5, 7});
  sweep.Subset({2, 4, 5, 8});
  EXPECT_FALSE(sweep.Run());
}

// A Flank in two positions (pairs of players) and a judge: three positions.
TEST(SubsetSweep, AFlankInTwoPositionsCountsTwice) {
  Sweep sweep({2, 1});
  sweep.Subset({1, 2, 4});
  sweep.Subset({1, 3, 5});
  EXPECT_FALSE(sweep.Run());
  sweep.Subset({1, 2, 5});  // both players as in the first; a player and the judge as in the second
  EXPECT_TRUE(sweep.Run());
  EXPECT_THAT(sweep.Live(), ElementsAre(1));
}

// Statements that leave one of the Flanks out: items without raters, raters without items.
TEST(SubsetSweep, SubsetsOfOtherFlanksMustShareAllThatBothHave) {
  Sweep sweep({1, 1, 1});
  sweep.Subset({1, 4});
  sweep.Subset({1, 7});
  EXPECT_TRUE(sweep.Run());
  EXPECT_THAT(sweep.Live(), ElementsAre(1));

  Sweep other({1, 1, 1});
  other.Subset({1, 4});
  other.Subset({1, 5, 7});  // the rater stands between the two items
  EXPECT_FALSE(other.Run());
}

TEST(SubsetSweep, EndsWhenItMayNotGoOn) {
  Sweep sweep({1, 1, 1});
  sweep.Subset({1, 4, 7});
  sweep.Subset({1, 4, 8});
  EXPECT_FALSE(SubsetSweep(sweep.flankPlaces, sweep.lists).Run([] { return false; }));
}

}  // namespace
}  // namespace flanks
