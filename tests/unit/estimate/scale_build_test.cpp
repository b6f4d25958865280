#include "estimate/scale_build.h"

#include <gtest/gtest.h>
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
    BuildScales(design, structures, scales);
  }
};

TEST(BuildScales, ObservedCategoriesAreNumberedWithoutGaps) {
  OneScale one(ScaleType::rating, 9, {2, 4, 5, 8});
  EXPECT_EQ(one.scales.ScaleTopCategory[kScale], 3);
  EXPECT_EQ(one.scales.lowestCategory[kScale], 2);
  EXPECT_EQ(one.scales.orderedCategory.at(kScale, 2), 0);
  EXPECT_EQ(one.scales.orderedCategory.at(kScale, 3), kNoOrderedCategory);
  EXPECT_EQ(one.scales.orderedCategory.at(kScale, 8), 3);
  EXPECT_EQ(one.scales.rawCategory.at(kScale, 2), 5);
}

TEST(BuildScales, ADichotomyKeepsBothCategories) {
  OneScale one(ScaleType::binomial, 1, {1});
  EXPECT_EQ(one.scales.ScaleTopCategory[kScale], 1);
  EXPECT_EQ(one.scales.lowestCategory[kScale], 0);
  EXPECT_EQ(one.scales.ThresholdTable.at(kScale, 0), 1.0f) << "discrimination";
  EXPECT_EQ(one.scales.ThresholdTable.at(kScale, 1), 0.0f);
}

TEST(BuildScales, WithoutDataAScaleHasNoCategory) {
  OneScale one(ScaleType::rating, 4, {});
  EXPECT_EQ(one.scales.ScaleTopCategory[kScale], -1);
}

TEST(RebuildScales, ACategoryThatOnlyExtremesUsedLosesItsPlace) {
  OneScale one(ScaleType::rating, 5, {0, 1, 3, 5});
  for (const int k : {0, 1, 3}) one.scales.ObservedCount.at(kScale, k) = 2.0;
  for (const int k : {1, 2, 3}) one.scales.ThresholdTable.at(kScale, k) = static_cast<float>(k);
  EXPECT_TRUE(RebuildScales(one.scales));
  EXPECT_EQ(one.scales.ScaleTopCategory[kScale], 2);
  EXPECT_EQ(one.scales.orderedCategory.at(kScale, 3), kNoOrderedCategory);
  EXPECT_EQ(one.scales.orderedCategory.at(kScale, 5), 2);
  EXPECT_EQ(one.scales.ThresholdTable.at(kScale, 1), 1.0f);
  EXPECT_EQ(one.scales.ThresholdTable.at(kScale, 2), 3.0f) << "the threshold of raw category 5";
}

TEST(RebuildScales, NothingChangesWhileAllCategoriesAreObserved) {
  OneScale one(ScaleType::rating, 2, {0, 1, 2});
  for (const int k : {0, 1, 2}) one.scales.ObservedCount.at(kScale, k) = 1.0;
  EXPECT_FALSE(RebuildScales(one.scales));
  EXPECT_EQ(one.scales.ScaleTopCategory[kScale], 2);
}

}  // namespace
}  // namespace flanks
