#include "estimate/scale_build.h"

#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace flanks {
namespace {

constexpr ScaleRow kScale(0);

// One structure on one scale with these raw categories in the data.
struct OneScale {
  Design design;
  StructureTable structures;
  ScaleTables scales;

  OneScale(ScaleType type, int maximum, const std::vector<int>& categories) {
    design.MaxCategory = maximum;
    structures.structureScale.assign(1, kScale);
    structures.structureCount.assign(1, kCategories, 0);
    for (const int category : categories)
      structures.structureCount.at(StructureRow(0), category) = 3;
    scales.scaleType.assign(1, type);
    scales.scaleMaximum.assign(1, maximum);
    scales.scaleKeep.assign(1, 0);
    scales.scaleDefinition.assign(1, ScaleDefinitionRow());
    BuildScales(design, structures, 1.0f, scales);
  }
  // Again, with unobserved categories kept.
  OneScale& Keep() {
    scales.scaleKeep[kScale] = 1;
    BuildScales(design, structures, 1.0f, scales);
    return *this;
  }
  // Again, with a definition of these categories.
  OneScale& Define(const std::vector<ScaleCategory>& categories, float uscale = 1.0f) {
    design.scales.assign(1, {});
    design.scales[ScaleDefinitionRow(0)].categories = categories;
    scales.scaleDefinition[kScale] = ScaleDefinitionRow(0);
    BuildScales(design, structures, uscale, scales);
    return *this;
  }
  // What a recount found, by ordered category.
  void Recount(const std::vector<double>& counts) {
    for (std::size_t k = 0; k < counts.size(); ++k)
      scales.ObservedCount.at(kScale, static_cast<int>(k)) = counts[k];
  }
  int Top() const { return scales.ScaleTopCategory[kScale]; }
  int Ordered(int raw) const { return scales.orderedCategory.at(kScale, raw); }
  int Flag(int k) const { return scales.CategoryFlag.at(kScale, k); }
  float Threshold(int k) const { return scales.ThresholdTable.at(kScale, k); }
};

ScaleCategory Valued(int number, float value, char flag = ' ') {
  ScaleCategory category;
  category.number = number;
  category.anchor = value;
  category.hasAnchorValue = true;
  category.flag = flag;
  return category;
}

TEST(BuildScales, ObservedCategoriesAreNumberedWithoutGaps) {
  OneScale one(ScaleType::rating, 9, {2, 4, 5, 8});
  EXPECT_EQ(one.scales.ScaleTopCategory[kScale], 3);
  EXPECT_EQ(one.scales.lowestCategory[kScale], 2);
  EXPECT_EQ(one.scales.orderedCategory.at(kScale, 2), 0);
  EXPECT_EQ(one.scales.orderedCategory.at(kScale, 3), kNoOrderedCategory);
  EXPECT_EQ(one.scales.orderedCategory.at(kScale, 8), 3);
  EXPECT_EQ(one.scales.rawCategory.at(kScale, 2), 5);
}

TEST(BuildScales, AKeptCategoryBetweenObservedOnesIsSkipped) {
  OneScale one(ScaleType::rating, 9, {2, 4, 5, 8});
  one.Keep();
  EXPECT_EQ(one.Top(), 6) << "2 to 8";
  EXPECT_EQ(one.scales.lowestCategory[kScale], 2);
  EXPECT_EQ(one.Ordered(1), kNoOrderedCategory) << "below the lowest";
  EXPECT_EQ(one.Ordered(9), kNoOrderedCategory) << "above the highest";
  EXPECT_EQ(one.Ordered(3), 1);
  EXPECT_EQ(one.Ordered(8), 6);
  const int flags[] = {kCategoryFree,    kCategorySkipped, kCategoryFree, kCategoryFree,
                       kCategorySkipped, kCategorySkipped, kCategoryFree};
  for (int k = 0; k <= 6; ++k) EXPECT_EQ(one.Flag(k), flags[k]) << k;
}

TEST(BuildScales, ADichotomyKeepsBothCategories) {
  OneScale one(ScaleType::binomial, 1, {1});
  EXPECT_EQ(one.scales.ScaleTopCategory[kScale], 1);
  EXPECT_EQ(one.scales.lowestCategory[kScale], 0);
  EXPECT_EQ(one.scales.ThresholdTable.at(kScale, 0), 1.0f) << "discrimination";
  EXPECT_EQ(one.scales.ThresholdTable.at(kScale, 1), 0.0f);
}

TEST(BuildScales, BinomialTrialsAllHaveTheirPlace) {
  OneScale one(ScaleType::binomial, 5, {1, 2});
  EXPECT_EQ(one.Top(), 5);
  EXPECT_EQ(one.scales.lowestCategory[kScale], 0);
  EXPECT_EQ(one.Ordered(4), 4);
}

TEST(BuildScales, APoissonScaleEndsAtItsHighestCount) {
  OneScale one(ScaleType::poisson, 255, {1, 7, 3});
  EXPECT_EQ(one.Top(), 7);
  EXPECT_EQ(one.scales.lowestCategory[kScale], 0);
  EXPECT_EQ(one.Ordered(5), 5);
  EXPECT_EQ(one.Ordered(8), kNoOrderedCategory);
  EXPECT_EQ(one.Threshold(0), 1.0f);
}

TEST(BuildScales, WithoutDataAScaleHasNoCategory) {
  OneScale one(ScaleType::rating, 4, {});
  EXPECT_EQ(one.scales.ScaleTopCategory[kScale], -1);
  OneScale poisson(ScaleType::poisson, 255, {});
  EXPECT_EQ(poisson.Top(), -1);
}

// 10 user units to a logit; the value of the lowest category divides nothing.
TEST(BuildScales, TheValuesOfADefinitionAreLogitsOfTheirRawCategories) {
  OneScale one(ScaleType::rating, 5, {1, 3, 5});
  one.Define({Valued(1, 7.0f), Valued(2, 3.0f), Valued(3, -5.0f), Valued(5, 12.0f, 'A')}, 10.0f);
  ASSERT_EQ(one.Top(), 2);
  EXPECT_EQ(one.Threshold(0), 0.0f);
  EXPECT_EQ(one.Threshold(1), -.5f);
  EXPECT_EQ(one.Threshold(2), 1.2f);
  EXPECT_EQ(one.scales.PreviousThreshold.at(kScale, 2), 1.2f);
  EXPECT_EQ(one.Flag(1), kCategoryFree) << "a value to start with";
  EXPECT_EQ(one.Flag(2), kCategoryAnchored);
}

TEST(BuildScales, AnAnchoredCategoryHasItsPlaceWithoutData) {
  OneScale one(ScaleType::rating, 5, {1, 3});
  one.Define({Valued(2, .5f, 'A'), Valued(5, 1.5f, 'A')});
  EXPECT_EQ(one.Top(), 3) << "1, 2, 3, 5";
  EXPECT_EQ(one.Ordered(2), 1);
  EXPECT_EQ(one.Ordered(4), kNoOrderedCategory);
  EXPECT_EQ(one.Ordered(5), 3);
  EXPECT_EQ(one.Flag(1), kCategoryAnchored);
  EXPECT_EQ(one.Threshold(3), 1.5f);
  one.Keep();
  EXPECT_EQ(one.Top(), 4) << "4 lies between 3 and the anchored 5";
  EXPECT_EQ(one.Flag(3), kCategorySkipped);
}

// Two categories in the data: no step moves their threshold from where it starts.
TEST(BuildScales, AStartingThresholdOfTwoCategoriesIsTheirs) {
  OneScale one(ScaleType::rating, 5, {1, 4});
  one.Define({Valued(4, .5f)});
  EXPECT_EQ(one.Top(), 1);
  EXPECT_EQ(one.Threshold(1), .5f);
  EXPECT_EQ(one.Flag(1), kCategoryFree);
}

TEST(BuildScales, AnAnchorWithoutAValueIsAtTheStart) {
  ScaleCategory anchored;
  anchored.number = 2;
  anchored.flag = 'A';
  OneScale one(ScaleType::rating, 2, {0, 1, 2});
  one.Define({anchored});
  EXPECT_EQ(one.Flag(2), kCategoryAnchored);
  EXPECT_EQ(one.Threshold(2), 0.0f);
  anchored.number = 0;
  OneScale trials(ScaleType::binomial, 5, {1});
  trials.Define({anchored});
  EXPECT_EQ(trials.Flag(0), kCategoryAnchored);
  EXPECT_EQ(trials.Threshold(0), 1.0f);
}

TEST(BuildScales, TheDiscriminationStandsInCategoryZeroAndHasNoUnit) {
  OneScale trials(ScaleType::binomial, 5, {1});
  trials.Define({Valued(0, .5f), Valued(3, 2.0f, 'A')}, 10.0f);
  EXPECT_EQ(trials.Threshold(0), .5f);
  EXPECT_EQ(trials.Flag(0), kCategoryFree);
  EXPECT_EQ(trials.Threshold(3), 0.0f) << "the trials have no thresholds";
  EXPECT_EQ(trials.Flag(3), kCategoryFree);
  OneScale counts(ScaleType::poisson, 255, {4});
  counts.Define({Valued(0, 1.0f, 'A')}, 10.0f);
  EXPECT_EQ(counts.Threshold(0), 1.0f);
  EXPECT_EQ(counts.Flag(0), kCategoryAnchored);
}

TEST(BuildScales, ADichotomyTakesAThreshold) {
  OneScale one(ScaleType::binomial, 1, {0, 1});
  one.Define({Valued(1, 5.0f, 'A')}, 10.0f);
  EXPECT_EQ(one.Threshold(1), .5f);
}

TEST(RebuildScales, ACategoryThatOnlyExtremesUsedLosesItsPlace) {
  OneScale one(ScaleType::rating, 5, {0, 1, 3, 5});
  one.Recount({2.0, 2.0, 0.0, 2.0});
  for (const int k : {1, 2, 3}) one.scales.ThresholdTable.at(kScale, k) = static_cast<float>(k);
  EXPECT_TRUE(RebuildScales(one.scales));
  EXPECT_EQ(one.scales.ScaleTopCategory[kScale], 2);
  EXPECT_EQ(one.scales.orderedCategory.at(kScale, 3), kNoOrderedCategory);
  EXPECT_EQ(one.scales.orderedCategory.at(kScale, 5), 2);
  EXPECT_EQ(one.scales.ThresholdTable.at(kScale, 1), 1.0f);
  EXPECT_EQ(one.scales.ThresholdTable.at(kScale, 2), 3.0f) << "the threshold of raw category 5";
}

// The places stay as they are, so nothing has to be counted again.
TEST(RebuildScales, AKeptCategoryThatOnlyExtremesUsedIsSkipped) {
  OneScale one(ScaleType::rating, 3, {0, 1, 2, 3});
  one.Keep().Recount({2.0, 2.0, 0.0, 2.0});
  for (const int k : {1, 2, 3}) one.scales.ThresholdTable.at(kScale, k) = static_cast<float>(k);
  EXPECT_FALSE(RebuildScales(one.scales));
  EXPECT_EQ(one.Top(), 3);
  EXPECT_EQ(one.Flag(2), kCategorySkipped);
  EXPECT_EQ(one.Threshold(2), 0.0f);
  EXPECT_EQ(one.Threshold(3), 3.0f);
}

TEST(RebuildScales, AKeptScaleLosesItsUnobservedEnds) {
  OneScale one(ScaleType::rating, 4, {0, 1, 3, 4});
  one.Keep().Recount({0.0, 2.0, 0.0, 2.0, 0.0});
  EXPECT_TRUE(RebuildScales(one.scales));
  EXPECT_EQ(one.Top(), 2) << "1, 2, 3";
  EXPECT_EQ(one.scales.lowestCategory[kScale], 1);
  EXPECT_EQ(one.Flag(1), kCategorySkipped);
}

TEST(RebuildScales, AnAnchoredCategoryStays) {
  OneScale one(ScaleType::rating, 3, {0, 1, 3});
  one.Define({Valued(1, .5f, 'A')}).Recount({2.0, 0.0, 2.0});
  EXPECT_FALSE(RebuildScales(one.scales));
  EXPECT_EQ(one.Top(), 2);
  EXPECT_EQ(one.Threshold(1), .5f);
  EXPECT_EQ(one.Flag(1), kCategoryAnchored);
}

TEST(RebuildScales, APoissonScaleEndsAtTheHighestCountInPlay) {
  OneScale one(ScaleType::poisson, 255, {0, 2, 9});
  one.Define({Valued(0, .8f, 'A')}).Recount({1.0, 0.0, 4.0, 0.0, 1.0});
  EXPECT_TRUE(RebuildScales(one.scales));
  EXPECT_EQ(one.Top(), 4);
  EXPECT_EQ(one.Ordered(9), kNoOrderedCategory);
  EXPECT_EQ(one.Threshold(0), .8f);
  EXPECT_EQ(one.Flag(0), kCategoryAnchored);
  one.Recount({0.0, 0.0, 0.0, 0.0, 1.0});
  EXPECT_FALSE(RebuildScales(one.scales));
}

TEST(RebuildScales, TrialsNeverShrink) {
  OneScale one(ScaleType::binomial, 5, {0, 5});
  one.Recount({1.0, 0.0, 0.0, 0.0, 0.0, 0.0});
  EXPECT_FALSE(RebuildScales(one.scales));
  EXPECT_EQ(one.Top(), 5);
}

TEST(RebuildScales, NothingChangesWhileAllCategoriesAreObserved) {
  OneScale one(ScaleType::rating, 2, {0, 1, 2});
  one.Recount({1.0, 1.0, 1.0});
  EXPECT_FALSE(RebuildScales(one.scales));
  EXPECT_EQ(one.scales.ScaleTopCategory[kScale], 2);
}

}  // namespace
}  // namespace flanks
