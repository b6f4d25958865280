#include "estimate/threshold_step.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace flanks {
namespace {

const float kTiny = static_cast<float>(std::exp(-80.0));
constexpr ScaleRow kScale(0);

// One scale with thresholds T(1)..T(m), and the counts of categories 0 to m.
ScaleTables OneScale(const std::vector<float>& thresholds, const std::vector<double>& observed,
                     const std::vector<double>& expected) {
  const int cells = static_cast<int>(observed.size());
  ScaleTables scales;
  scales.width = cells;
  scales.scaleType.assign(1, ScaleType::rating);
  scales.ScaleTopCategory.assign(1, static_cast<std::int16_t>(cells - 1));
  scales.ThresholdTable.assign(1, cells, 0.0f);
  scales.PreviousThreshold.assign(1, cells, 0.0f);
  scales.CategoryFlag.assign(1, cells, kCategoryFree);
  scales.ObservedCount.assign(1, cells, 0.0);
  scales.ExpectedCount.assign(1, cells, 0.0);
  for (int k = 0; k < cells; ++k) {
    if (k > 0) scales.ThresholdTable.at(kScale, k) = thresholds[static_cast<std::size_t>(k - 1)];
    scales.ObservedCount.at(kScale, k) = observed[static_cast<std::size_t>(k)];
    scales.ExpectedCount.at(kScale, k) = expected[static_cast<std::size_t>(k)];
  }
  return scales;
}

void ExpectThresholds(const ScaleTables& scales, const std::vector<double>& thresholds) {
  for (int k = 1; k < scales.width; ++k)
    EXPECT_NEAR(scales.ThresholdTable.at(kScale, k), thresholds[static_cast<std::size_t>(k - 1)],
                2e-6)
        << "category " << k;
}

TEST(ThresholdStep, FreeThresholdsMoveByTheLogRatioAndStayCentered) {
  ScaleTables scales = OneScale({0, 0, 0}, {10, 20, 30, 15}, {12, 18, 28, 17});
  LargestChanges changes;
  ThresholdStep(kScale, 1.0f, kTiny, scales, changes);
  ExpectThresholds(scales, {-.268629, .055420, .213209});
  EXPECT_NEAR(changes.MaxThresholdChange, -.268629, 2e-6);
  EXPECT_EQ(changes.thresholdCategory, 1);
  EXPECT_DOUBLE_EQ(changes.MaxCategoryResidual, -2.0) << "all four are 2: the first stays";
  EXPECT_EQ(changes.residualCategory, 0);
  EXPECT_NEAR(changes.MaxCategoryFraction, -.2, 1e-7);
}

TEST(ThresholdStep, AnAnchoredThresholdStaysAndTheOthersTakeItsMove) {
  ScaleTables scales = OneScale({-1, 0, 1}, {10, 20, 30, 15}, {12, 18, 28, 17});
  scales.CategoryFlag.at(kScale, 1) = kCategoryAnchored;
  LargestChanges changes;
  ThresholdStep(kScale, 1.0f, kTiny, scales, changes);
  ExpectThresholds(scales, {-1.0, .324050, 1.481838});
}

TEST(ThresholdStep, AnEmptyCategoryHoldsAndTheNextTakesTheWholeJump) {
  ScaleTables scales = OneScale({-1, 0, 1}, {10, 20, 0, 15}, {12, 18, 8, 7});
  LargestChanges changes;
  ThresholdStep(kScale, 1.0f, kTiny, scales, changes);
  ExpectThresholds(scales, {-.972862, .314821, .658041});
}

TEST(ThresholdStep, TwoEmptyCategoriesShareOneJump) {
  ScaleTables scales = OneScale({-1.5, -.5, .5, 1.5}, {10, 20, 0, 0, 12}, {11, 15, 7, 5, 4});
  LargestChanges changes;
  ThresholdStep(kScale, 1.0f, kTiny, scales, changes);
  // T(1) = -1.5 + ln(10/20) + ln(15/11); T(4) = 1.5 + (ln(20/12) + ln(4/15)) / 2 = 1.094535.
  const double t1 = -1.5 + std::log(10.0 / 20.0) + std::log(15.0 / 11.0);
  const double t4 = 1.094535;
  const double mean = (t1 - .5 + .5 + t4) / 4.0;
  ExpectThresholds(scales, {t1 - mean, -.5 - mean, .5 - mean, t4 - mean});
}

// The lowest category is anchored and has no observations: nothing stands below the gap.
TEST(ThresholdStep, AGapWithoutABaseHoldsItsThreshold) {
  ScaleTables scales = OneScale({-1, 0, 1}, {0, 20, 30, 15}, {3, 18, 28, 16});
  scales.CategoryFlag.at(kScale, 0) = kCategoryAnchored;
  LargestChanges changes;
  ThresholdStep(kScale, 1.0f, kTiny, scales, changes);
  // T(2) = ln(20/30) + ln(28/18), T(3) = 1 + ln(30/15) + ln(16/28); all are free, and centered.
  const double t2 = std::log(20.0 / 30.0) + std::log(28.0 / 18.0);
  const double t3 = 1.0 + std::log(30.0 / 15.0) + std::log(16.0 / 28.0);
  const double mean = (-1.0 + t2 + t3) / 3.0;
  ExpectThresholds(scales, {-1.0 - mean, t2 - mean, t3 - mean});
}

TEST(ThresholdStep, TheSpeedFactorScalesTheMove) {
  ScaleTables scales = OneScale({0, 0, 0}, {10, 20, 30, 15}, {12, 18, 28, 17});
  LargestChanges changes;
  ThresholdStep(kScale, 0.5f, kTiny, scales, changes);
  ExpectThresholds(scales, {-.1343145, .027710, .1066045});
}

TEST(HoldThresholds, KeepsThemAsTheFormerOnes) {
  ScaleTables scales = OneScale({-1, 0, 1}, {1, 2, 3, 4}, {0, 0, 0, 0});
  HoldThresholds(kScale, scales);
  EXPECT_EQ(scales.PreviousThreshold.at(kScale, 1), -1.0f);
  EXPECT_EQ(scales.ThresholdTable.at(kScale, 1), -1.0f);
}

}  // namespace
}  // namespace flanks
