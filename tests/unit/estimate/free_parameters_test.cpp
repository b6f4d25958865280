#include "estimate/free_parameters.h"

#include <gtest/gtest.h>

namespace flanks {
namespace {

struct Scales : ScaleTables {
  Scales(int count, int categories) {
    width = categories;
    scaleType.assign(count, ScaleType::rating);
    ScaleTopCategory.assign(count, static_cast<std::int16_t>(categories - 1));
    CategoryFlag.assign(count, categories, kCategoryFree);
  }
};

TEST(FreeParametersOf, AddsTheFreeThresholdsOfRatingScales) {
  IterationState iteration;
  iteration.FreeParameterCount = 10;
  Scales scales(2, 5);
  EXPECT_EQ(FreeParametersOf(iteration, scales), 10 + 3 + 3) << "m - 1 for a plain scale";
  scales.CategoryFlag.at(ScaleRow(0), 2) = kCategoryAnchored;
  EXPECT_EQ(FreeParametersOf(iteration, scales), 10 + 3 + 3) << "three free ones, no centering";
  scales.CategoryFlag.at(ScaleRow(0), 3) = kCategoryAnchored;
  EXPECT_EQ(FreeParametersOf(iteration, scales), 10 + 2 + 3);
  scales.CategoryFlag.at(ScaleRow(1), 3) = kCategorySkipped;
  EXPECT_EQ(FreeParametersOf(iteration, scales), 10 + 2 + 2);
}

TEST(FreeParametersOf, DichotomiesAndCountsHaveNoThresholdsToEstimate) {
  IterationState iteration;
  iteration.FreeParameterCount = 7;  // with the discrimination of the counts
  Scales scales(2, 5);
  scales.ScaleTopCategory[ScaleRow(0)] = 1;
  scales.scaleType[ScaleRow(1)] = ScaleType::poisson;
  EXPECT_EQ(FreeParametersOf(iteration, scales), 7);
}

}  // namespace
}  // namespace flanks
