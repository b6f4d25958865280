#include "estimate/discrimination_step.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace flanks {
namespace {

const float kTiny = static_cast<float>(std::exp(-80.0));
constexpr ScaleRow kScale(0);

// A scale of 5 trials with discrimination 1 and sums whose residual is r.
struct CountScale {
  ScaleTables scales;
  LargestChanges changes;

  CountScale(ScaleType type, double r, double variance) {
    scales.width = 6;
    scales.scaleType.assign(1, type);
    scales.ScaleTopCategory.assign(1, 5);
    scales.ThresholdTable.assign(1, 6, 0.0f);
    scales.PreviousThreshold.assign(1, 6, 0.0f);
    scales.CategoryFlag.assign(1, 6, kCategoryFree);
    scales.ExpectedCount.assign(1, 6, 0.0);
    scales.DiscriminationSums.assign(1, 6, 0.0);
    scales.ThresholdTable.at(kScale, 0) = 1.0f;
    scales.DiscriminationSums.at(kScale, 0) = r + 7.5;
    scales.ExpectedCount.at(kScale, 0) = 7.5;
    scales.DiscriminationSums.at(kScale, 1) = variance;
  }
  float Step() {
    DiscriminationStep(kScale, kTiny, scales, changes);
    return scales.ThresholdTable.at(kScale, 0);
  }
};

// r = 2.4 over 10 is .24, nine times .9 of which is .092981.
TEST(DiscriminationStep, ALongStepIsShortenedByNineTenthsUntilItIsAtMostATenth) {
  CountScale scale(ScaleType::binomial, 2.4, 10.0);
  EXPECT_NEAR(scale.Step(), .907019, 1e-6);
  EXPECT_EQ(scale.scales.PreviousThreshold.at(kScale, 0), 1.0f);
  EXPECT_NEAR(scale.changes.MaxLogitChange, .092981, 1e-6);
  EXPECT_EQ(scale.changes.logitPlace, "Bin Disc:");
  EXPECT_DOUBLE_EQ(scale.changes.MaxCategoryResidual, 2.4);
  EXPECT_EQ(scale.changes.categoryScale, kScale);
}

TEST(DiscriminationStep, AShortStepIsTakenWhole) {
  CountScale scale(ScaleType::poisson, -.5, 10.0);
  EXPECT_FLOAT_EQ(scale.Step(), 1.05f);
  EXPECT_FLOAT_EQ(scale.changes.MaxLogitChange, -.05f);
  EXPECT_EQ(scale.changes.logitPlace, "Poi Disc:");
}

TEST(DiscriminationStep, WithoutCurvatureThereIsNone) {
  CountScale scale(ScaleType::binomial, 2.4, 0.0);
  EXPECT_EQ(scale.Step(), 1.0f);
  EXPECT_EQ(scale.changes.MaxLogitChange, 0.0f);
  CountScale endless(ScaleType::binomial, std::numeric_limits<double>::infinity(), 1.0);
  EXPECT_EQ(endless.Step(), 1.0f);
}

TEST(DiscriminationStep, TheLargestChangeOfAllStands) {
  CountScale scale(ScaleType::binomial, 2.4, 10.0);
  scale.changes.MaxLogitChange = -.2f;
  scale.changes.MaxCategoryResidual = -3.0;
  scale.Step();
  EXPECT_EQ(scale.changes.MaxLogitChange, -.2f);
  EXPECT_EQ(scale.changes.logitPlace, "");
  EXPECT_EQ(scale.changes.MaxCategoryResidual, -3.0);
}

TEST(EstimatesDiscrimination, OfCountScalesOfSeveralCategoriesThatAreNotAnchored) {
  CountScale binomial(ScaleType::binomial, 0, 1), poisson(ScaleType::poisson, 0, 1);
  EXPECT_TRUE(EstimatesDiscrimination(binomial.scales, kScale));
  EXPECT_TRUE(EstimatesDiscrimination(poisson.scales, kScale));
  binomial.scales.CategoryFlag.at(kScale, 0) = kCategoryAnchored;
  EXPECT_FALSE(EstimatesDiscrimination(binomial.scales, kScale));
  poisson.scales.ScaleTopCategory[kScale] = 1;
  EXPECT_FALSE(EstimatesDiscrimination(poisson.scales, kScale)) << "a dichotomy";
  CountScale rating(ScaleType::rating, 0, 1);
  EXPECT_FALSE(EstimatesDiscrimination(rating.scales, kScale));
}

}  // namespace
}  // namespace flanks
