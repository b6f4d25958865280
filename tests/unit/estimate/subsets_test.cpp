#include "estimate/subsets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>

#include "support/pass_design.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Observations are given by slots; Build first, with Flanks of the sizes named.
class SubsetsTest : public ::testing::Test {
 protected:
  void Build(const std::vector<std::int32_t>& sizes,
             const std::vector<std::string>& statement = {}) {
    for (const std::int32_t size : sizes) d.Flank(size, kNegativeOrientation);
    d.Structure(d.Statement(statement), d.Rating({0.0f, 0.0f}));
    d.Build();
  }
  void Observe(const std::vector<std::vector<std::int32_t>>& observations) {
    for (const std::vector<std::int32_t>& slots : observations) d.Observe(slots, 0, 1);
  }
  void Anchor(const std::vector<std::int32_t>& slots) {
    for (const std::int32_t slot : slots)
      d.design.elements.ElementAnchor[ElementSlot(slot)] = AnchorKind::anchored;
  }
  void FirstPass() {
    reader.emplace(d.parts());
    check.emplace(d.parts());
    reader->Begin(Categories::wanted);
    while (reader->Next()) check->TakeBlock(reader->block());
  }
  std::string Note() {
    FirstPass();
    check->Finish(*reader);
    results = check->Results();
    return check->note();
  }
  std::vector<int> SubsetsOf(std::int32_t slot) const {
    const auto subsets = results.Of(ElementSlot(slot));
    return {subsets.begin(), subsets.end()};
  }

  ScratchFolder folder;
  PassDesign d;
  std::optional<ObservationReader> reader;
  std::optional<SubsetCheck> check;
  DisjointSubsets results;
};

constexpr char kConnected[] = "Subset connection O.K.";

TEST_F(SubsetsTest, BlocksThatShareNothingAreNumberedByTheirFirstElements) {
  Build({4, 4});
  Observe({{3, 7}, {3, 8}, {4, 8}, {1, 5}, {2, 5}, {2, 6}});
  EXPECT_EQ(Note(), "Warning (6)! There may be 2 disjoint subsets");
  EXPECT_TRUE(results.several());
  EXPECT_THAT(SubsetsOf(1), ElementsAre(1));
  EXPECT_THAT(SubsetsOf(6), ElementsAre(1));
  EXPECT_THAT(SubsetsOf(4), ElementsAre(2));
  EXPECT_THAT(SubsetsOf(7), ElementsAre(2));
  EXPECT_FALSE(check->SubsetCheckOn);
  EXPECT_FALSE(check->SubsetChanged);
}

TEST_F(SubsetsTest, OneObservationConnectsTwoBlocks) {
  Build({4, 4});
  Observe({{3, 7}, {3, 8}, {4, 8}, {1, 5}, {2, 5}, {2, 6}, {2, 7}});
  EXPECT_EQ(Note(), kConnected);
  EXPECT_FALSE(results.several());
  EXPECT_THAT(SubsetsOf(1), IsEmpty());
}

TEST_F(SubsetsTest, AnElementInAllObservationsConnectsThem) {
  Build({3, 1});
  Observe({{1, 4}, {2, 4}, {3, 4}});
  FirstPass();
  check->CountSubsets();
  EXPECT_EQ(check->SubsetCount, 1);
  EXPECT_EQ(Note(), kConnected);
}

TEST_F(SubsetsTest, AnElementThatWasNeverObservedIsInNoSubset) {
  Build({3, 3});
  Observe({{1, 4}, {2, 5}});
  Note();
  EXPECT_EQ(results.SubsetCount, 2);
  EXPECT_THAT(SubsetsOf(3), IsEmpty());
  EXPECT_THAT(SubsetsOf(6), IsEmpty());
}

TEST_F(SubsetsTest, AnElementAloneIsSetAside) {
  Build({2, 2});
  Anchor({3});
  Observe({{1, 3}});
  FirstPass();
  EXPECT_TRUE(check->SubsetChanged);
  check->CountSubsets();
  EXPECT_EQ(check->SubsetCount, 0);
  const std::vector<std::int32_t> tied = {1, 4};
  check->SubsetObservation(tied);  // element 4 now meets only what is tied
  check->CountSubsets();
  EXPECT_EQ(check->SubsetCount, 0);
}

TEST_F(SubsetsTest, DesignsOfOneFlankAreConnected) {
  Build({3});
  Observe({{1}, {2}, {3}});
  EXPECT_EQ(Note(), kConnected);
}

// The blocks of the first test, with an anchored item in each.
TEST_F(SubsetsTest, AnchorsInEachBlockConnectThem) {
  Build({4, 4});
  Anchor({5, 7});
  Observe({{2, 6}, {1, 6}, {4, 8}, {3, 8}, {1, 5}, {2, 5}, {3, 7}, {4, 7}});
  EXPECT_EQ(Note(), kConnected);
}

// Kept: one subset beside anchored elements is one subset, though nothing ties it to the anchors.
TEST_F(SubsetsTest, OneBlockBesideAnAnchoredOneIsSaidToBeConnected) {
  Build({4, 4});
  Anchor({5});
  Observe({{1, 5}, {2, 5}, {2, 6}, {3, 7}, {3, 8}, {4, 8}});
  EXPECT_EQ(Note(), kConnected);
}

// The anchored element comes last, so that what it ties is found when the data are read again.
TEST_F(SubsetsTest, WhatIsTiedLateIsFoundWhenReadAgain) {
  Build({4, 5});
  Anchor({9});
  Observe({{1, 5}, {2, 5}, {2, 6}, {3, 7}, {4, 8}, {1, 9}});
  EXPECT_EQ(Note(), "Warning (6)! There may be 2 disjoint subsets");
  EXPECT_THAT(SubsetsOf(1), IsEmpty());
  EXPECT_THAT(SubsetsOf(6), IsEmpty());
  EXPECT_THAT(SubsetsOf(3), ElementsAre(1));
  EXPECT_THAT(SubsetsOf(8), ElementsAre(2));
}

// Persons 1 to 4, items 5 and 6, raters 7 and 8.  The items are common, no person is.
TEST_F(SubsetsTest, CommonItemsDoNotConnectRatersWithoutACommonPerson) {
  Build({4, 2, 2});
  Observe({{1, 5, 7}, {1, 6, 7}, {2, 5, 7}, {3, 5, 8}, {3, 6, 8}, {4, 6, 8}});
  EXPECT_EQ(Note(), "Warning (6)! There may be 2 disjoint subsets");
  EXPECT_THAT(SubsetsOf(2), ElementsAre(1));
  EXPECT_THAT(SubsetsOf(8), ElementsAre(2));
  EXPECT_THAT(SubsetsOf(5), ElementsAre(1, 2));
  EXPECT_THAT(SubsetsOf(6), ElementsAre(1, 2));
}

TEST_F(SubsetsTest, ACommonPersonConnectsThem) {
  Build({4, 2, 2});
  Observe({{1, 5, 7}, {1, 6, 7}, {2, 5, 7}, {3, 5, 8}, {3, 6, 8}, {4, 6, 8}, {1, 5, 8}});
  EXPECT_EQ(Note(), kConnected);
}

TEST_F(SubsetsTest, AnchoredRatersConnectThem) {
  Build({4, 2, 2});
  Anchor({7, 8});
  Observe({{1, 5, 7}, {1, 6, 7}, {2, 5, 7}, {3, 5, 8}, {3, 6, 8}, {4, 6, 8}});
  EXPECT_EQ(Note(), kConnected);
}

TEST_F(SubsetsTest, AnchoredItemsDoNot) {
  Build({4, 2, 2});
  Anchor({5, 6});
  Observe({{1, 5, 7}, {1, 6, 7}, {2, 5, 7}, {3, 5, 8}, {3, 6, 8}, {4, 6, 8}});
  EXPECT_EQ(Note(), "Warning (6)! There may be 2 disjoint subsets");
  EXPECT_THAT(SubsetsOf(5), IsEmpty());
  EXPECT_THAT(SubsetsOf(7), ElementsAre(1));
}

// Persons 1 to 4, raters 5 and 6, items 7 and 8, occasions 9 and 10.
TEST_F(SubsetsTest, WithFourFlanksThreeMustBeShared) {
  Build({4, 2, 2, 2});
  Observe({{1, 5, 7, 9},
           {1, 5, 8, 9},
           {2, 5, 7, 10},
           {2, 5, 7, 9},
           {3, 6, 7, 9},
           {3, 6, 8, 9},
           {4, 6, 7, 10},
           {4, 6, 7, 9}});
  EXPECT_EQ(Note(), "Warning (6)! There may be 2 disjoint subsets");
  EXPECT_THAT(SubsetsOf(7), ElementsAre(1, 2));
  EXPECT_THAT(SubsetsOf(10), ElementsAre(1, 2));
  EXPECT_THAT(SubsetsOf(5), ElementsAre(1));
}

TEST_F(SubsetsTest, WithFourFlanksACommonPersonConnects) {
  Build({4, 2, 2, 2});
  Observe({{1, 5, 7, 9},
           {1, 5, 8, 9},
           {2, 5, 7, 10},
           {2, 5, 7, 9},
           {3, 6, 7, 9},
           {3, 6, 8, 9},
           {4, 6, 7, 10},
           {4, 6, 7, 9},
           {2, 6, 8, 10}});
  EXPECT_EQ(Note(), kConnected);
}

// Subsets {1,3,5,8,10} and {1,6,9,...} come to share a person and a rater without an observation
// that holds all of one and all but one of the other.
TEST_F(SubsetsTest, SubsetsThatShareEnoughAreConsolidated) {
  Build({4, 3, 4});  // persons 1 to 4, items 5 to 7, raters 8 to 11
  Observe({{1, 5, 8}, {1, 6, 9}, {3, 5, 8}, {3, 5, 9}});
  FirstPass();
  check->CountSubsets();
  EXPECT_EQ(check->SubsetCount, 2);
  EXPECT_EQ(Note(), kConnected);
}

TEST_F(SubsetsTest, PositionsThatAStatementIgnoresConnectNothing) {
  Build({2, 2, 1}, {"", "", "X"});
  Observe({{1, 3, 5}, {2, 4, 5}});
  EXPECT_EQ(Note(), "Warning (6)! There may be 2 disjoint subsets");
  EXPECT_THAT(SubsetsOf(5), IsEmpty());
}

TEST_F(SubsetsTest, PositionsThatAStatementTakesAsDummiesConnectNothing) {
  Build({2, 2, 1}, {"", "", "@"});
  Observe({{1, 3, 5}, {2, 4, 5}});
  EXPECT_EQ(Note(), "Warning (6)! There may be 2 disjoint subsets");
  EXPECT_THAT(SubsetsOf(5), IsEmpty());
}

TEST_F(SubsetsTest, ObservationsThatAreNotUsedConnectNothing) {
  d.Flank(2, kNegativeOrientation).Flank(2, kNegativeOrientation);
  const int scale = d.Rating({0.0f, 0.0f});
  d.Structure(d.Statement({}), scale);
  const int weightless = d.Structure(d.Statement({}, 0.0f), scale);
  d.Build();
  Observe({{1, 3}, {2, 4}});
  d.Observe({1, 4}, weightless, 1);
  EXPECT_EQ(Note(), "Warning (6)! There may be 2 disjoint subsets");
}

// Players 1 to 3 in both positions: a player against himself connects nothing, pairs do.
TEST_F(SubsetsTest, AnElementInTwoPositionsCountsOnce) {
  d.Flank(3, kPositiveOrientation).Repeat(1);
  d.Flank(2, kNegativeOrientation);
  d.Structure(d.Statement({"", "", ""}), d.Rating({0.0f, 0.0f}));
  d.Build();
  Observe({{1, 1, 4}, {2, 2, 5}});
  EXPECT_EQ(Note(), "Warning (6)! There may be 2 disjoint subsets");
  EXPECT_THAT(SubsetsOf(4), ElementsAre(1));
  EXPECT_THAT(SubsetsOf(2), ElementsAre(2));
}

TEST_F(SubsetsTest, APairThatCancelsConnectsNothing) {
  d.Flank(3, kPositiveOrientation).Repeat(1);
  d.Structure(d.Statement({"", "-"}), d.Rating({0.0f, 0.0f}));
  d.Build();
  Observe({{1, 2}, {2, 3}, {3, 3}});
  EXPECT_EQ(Note(), kConnected);
}

TEST_F(SubsetsTest, ExtremeElementsConnectAsOthersDo) {
  Build({4, 5});
  Anchor({9});
  Observe({{1, 5}, {2, 5}, {3, 7}, {4, 8}, {1, 9}});
  FirstPass();
  for (const std::int32_t slot : {1, 5}) d.element(slot).ElementStatus = kStatusMaximum;
  check->Finish(*reader);
  EXPECT_EQ(check->note(), "Warning (6)! There may be 2 disjoint subsets");
}

// As many pairs as there are numbers, and one more.
TEST_F(SubsetsTest, WhatFindsTheTableFullIsCounted) {
  constexpr std::int32_t kPairs = kMostSubsets + 1;
  Build({kPairs, kPairs});
  for (std::int32_t pair = 1; pair <= kPairs; ++pair) d.Observe({pair, kPairs + pair}, 0, 1);
  EXPECT_EQ(Note(),
            "Warning (6)! There may be 16383 disjoint subsets and 1 data points not assigned to "
            "subsets");
  EXPECT_EQ(check->UnassignedCount, 1);
  EXPECT_EQ(results.SubsetCount, 16383);
  EXPECT_THAT(SubsetsOf(kPairs), IsEmpty());
}

// Two pairs are connected afterwards, which makes room for the last one.
TEST_F(SubsetsTest, WhatWasNotAssignedIsLookedAtAgain) {
  constexpr std::int32_t kPairs = kMostSubsets + 1;
  Build({kPairs, kPairs});
  for (std::int32_t pair = 1; pair <= kPairs; ++pair) d.Observe({pair, kPairs + pair}, 0, 1);
  Observe({{1, kPairs + 2}});
  EXPECT_EQ(Note(), "Warning (6)! There may be 16383 disjoint subsets");
  EXPECT_EQ(check->UnassignedCount, 0);
  EXPECT_THAT(SubsetsOf(2), ElementsAre(1));
  EXPECT_THAT(SubsetsOf(kPairs), ElementsAre(16383));
}

// Item 6 takes the measure of item 5: they connect their persons as one item does.
TEST_F(SubsetsTest, AnElementWithATargetConnectsAsItsTarget) {
  Build({4, 2});
  Anchor({6});
  d.design.elements.ElementTarget.assign(6, ElementSlot());
  d.design.elements.ElementTarget[ElementSlot(6)] = ElementSlot(5);
  Observe({{1, 5}, {2, 6}});
  FirstPass();
  check->CountSubsets();
  EXPECT_EQ(check->SubsetCount, 1);
  EXPECT_EQ(Note(), kConnected);
}

TEST_F(SubsetsTest, AnElementWithATargetIsInItsSubset) {
  Build({4, 3});
  Anchor({7});
  d.design.elements.ElementTarget.assign(7, ElementSlot());
  d.design.elements.ElementTarget[ElementSlot(7)] = ElementSlot(6);
  Observe({{1, 5}, {2, 6}, {3, 7}});
  EXPECT_EQ(Note(), "Warning (6)! There may be 2 disjoint subsets");
  EXPECT_THAT(SubsetsOf(7), ElementsAre(2));
  EXPECT_THAT(SubsetsOf(3), ElementsAre(2));
}

// Kept: an observation with fewer elements that take part than its subset has Flanks joins by one
// element less than its own.  Item 5 is anchored: person 2 joins through rater 7 alone.
TEST_F(SubsetsTest, AnObservationJoinsByItsOwnElements) {
  Build({2, 2, 2});  // persons 1 and 2, items 3 and 4, raters 5 and 6
  Anchor({3});
  Observe({{1, 4, 5}, {2, 3, 5}});
  EXPECT_EQ(Note(), kConnected);
  PassDesign turned;
  turned.Flank(2, kNegativeOrientation).Flank(2, kNegativeOrientation);
  turned.Flank(2, kNegativeOrientation);
  turned.Structure(turned.Statement({}), turned.Rating({0.0f, 0.0f}));
  turned.Build();
  turned.design.elements.ElementAnchor[ElementSlot(3)] = AnchorKind::anchored;
  turned.Observe({2, 3, 5}, 0, 1);
  turned.Observe({1, 4, 5}, 0, 1);
  ObservationReader again(turned.parts());
  SubsetCheck other(turned.parts());
  again.Begin(Categories::wanted);
  while (again.Next()) other.TakeBlock(again.block());
  other.Finish(again);
  EXPECT_EQ(other.note(), "Warning (6)! There may be 2 disjoint subsets");
}

}  // namespace
}  // namespace flanks
