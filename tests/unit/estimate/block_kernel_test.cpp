#include "estimate/block_kernel.h"

#include <gtest/gtest.h>

#include "support/pass_design.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

class BlockKernelTest : public ::testing::Test {
 protected:
  // Three rating scales, taken in turn, and the last scale given.
  void Design(ScaleType lastType) {
    d.Flank(4, kPositiveOrientation);
    const int statement = d.Statement({});
    d.Structure(statement, d.Rating({-1.0f, 1.0f}));
    d.Structure(statement, d.Rating({-2.0f, 0.0f, 2.0f}));
    d.Structure(statement, d.CountScale(lastType, 5, 1.0f));
    d.Build();
    d.SetMeasures({-1.0f, -.25f, .5f, 1.25f});
  }
  void Read() {
    reader.emplace(d.parts());
    kernel.emplace(d.scales.scales());
    kernel->Begin(d.scales, 80.0f);
    reader->Begin(Categories::wanted);
    ASSERT_TRUE(reader->Next());
    kernel->Arrange(reader->block());
  }

  ScratchFolder folder;
  PassDesign d;
  std::optional<ObservationReader> reader;
  std::optional<BlockKernel> kernel;
};

TEST_F(BlockKernelTest, LeavesAUsualBlockOnOneScaleInPlace) {
  Design(ScaleType::binomial);
  for (int r = 0; r < 40; ++r) d.Observe({1 + r % 4}, 1, r % 3);
  Read();
  EXPECT_TRUE(kernel->inPlace());
  ASSERT_EQ(kernel->runs().size(), 1U);
  EXPECT_EQ(kernel->runs()[0].scale, ScaleRow(1));
  EXPECT_EQ(kernel->lanes(), 40U);
  EXPECT_EQ(kernel->measures(), reader->block().MeasureSum.data());
}

TEST_F(BlockKernelTest, KeepsTheOrderOfRecordsWithinEachScale) {
  Design(ScaleType::binomial);
  for (int r = 0; r < 50; ++r) d.Observe({1 + r % 4}, (r * 7 / 3) % 3, 1);
  d.element(2).ElementStatus = kStatusDropped;  // its observations have no lane
  Read();
  EXPECT_FALSE(kernel->inPlace());
  ASSERT_EQ(kernel->runs().size(), 3U);
  std::size_t lanes = 0;
  for (const LaneRun& run : kernel->runs()) {
    EXPECT_EQ(run.first, lanes);
    for (std::size_t lane = run.first; lane < run.first + run.count; ++lane) {
      const std::size_t i = kernel->entry(lane);
      EXPECT_EQ(reader->block().scale[i], run.scale.number());
      EXPECT_NE(reader->block().slots[0][i], 2);
      EXPECT_EQ(kernel->measures()[lane], reader->block().MeasureSum[i]);
      if (lane > run.first) {
        EXPECT_GT(i, kernel->entry(lane - 1));
      }
    }
    lanes += run.count;
  }
  EXPECT_EQ(lanes, kernel->lanes());
  EXPECT_EQ(lanes, 37U);  // 13 of 50 records are those of element 2
}

TEST_F(BlockKernelTest, EvaluatesEachLaneOnItsScale) {
  Design(ScaleType::binomial);
  for (int r = 0; r < 50; ++r) d.Observe({1 + r % 4}, r % 3, 1);
  Read();
  std::vector<float> expected(kKernelBlock), variance(kKernelBlock), shifted(kKernelBlock);
  for (const LaneRun& run : kernel->runs()) {
    kernel->EvaluateScores(run, -.5f, shifted.data());
    kernel->Evaluate(run, expected.data(), variance.data());
    for (std::size_t lane = run.first; lane < run.first + run.count; ++lane) {
      ProbabilityArray p{};
      const KernelScale& scale = kernel->scale(run.scale);
      const float measure = kernel->measures()[lane];
      EXPECT_EQ(shifted[lane], CategoryProbabilities(scale, measure - .5f, p).expected);
      const KernelResult one = CategoryProbabilities(scale, measure, p);
      EXPECT_EQ(expected[lane], one.expected);
      EXPECT_EQ(variance[lane], one.variance);
      for (int k = 0; k <= scale.top; ++k)
        EXPECT_EQ(kernel->probability(run, k)[lane - run.first], p[static_cast<std::size_t>(k)]);
    }
  }
}

TEST_F(BlockKernelTest, MixesScalesOfOneShapeWhenEachHasFewLanes) {
  d.Flank(4, kPositiveOrientation);
  const int statement = d.Statement({});
  for (int s = 0; s < 6; ++s) {
    const float at = .3f * static_cast<float>(s);
    d.Structure(statement, d.Rating({at - 1.0f, at}));  // scales 0 to 5: top category 2
  }
  d.Structure(statement, d.Rating({.5f}));                            // 6
  d.Structure(statement, d.CountScale(ScaleType::binomial, 1, .5f));  // 7: a dichotomy as well
  d.Structure(statement, d.Rating({-1.0f, 5.0f, 1.0f}));              // 8: one is skipped
  d.Structure(statement, d.CountScale(ScaleType::binomial, 2, .5f));  // 9
  d.Build();
  d.scales.CategoryFlag.at(ScaleRow(8), 2) = kCategorySkipped;
  d.SetMeasures({-1.0f, -.25f, .5f, 1.25f});
  for (int r = 0; r < 60; ++r) d.Observe({1 + r % 4}, r % 10, r % 2);
  Read();
  EXPECT_EQ(kernel->runs().size(), 10U) << "by scale unless it may be mixed";
  kernel->Arrange(reader->block(), Lanes::mayBeMixed);
  ASSERT_EQ(kernel->runs().size(), 4U);
  std::vector<float> expected(kKernelBlock), variance(kKernelBlock);
  std::vector<std::size_t> counts;
  for (const LaneRun& run : kernel->runs()) {
    counts.push_back(run.count);
    EXPECT_EQ(run.mixed, run.scale < ScaleRow(8));
    kernel->Evaluate(run, expected.data(), variance.data());
    for (std::size_t lane = run.first; lane < run.first + run.count; ++lane) {
      ProbabilityArray p{};
      const ScaleRow own(reader->block().scale[kernel->entry(lane)]);
      const KernelResult one =
          CategoryProbabilities(kernel->scale(own), kernel->measures()[lane], p);
      EXPECT_EQ(expected[lane], one.expected);
      EXPECT_EQ(variance[lane], one.variance);
      for (int k = 0; k <= kernel->scale(own).top; ++k)
        EXPECT_EQ(kernel->probability(run, k)[lane - run.first], p[static_cast<std::size_t>(k)]);
      if (lane > run.first) {
        EXPECT_GT(kernel->entry(lane), kernel->entry(lane - 1)) << "in record order";
      }
    }
  }
  EXPECT_EQ(counts, (std::vector<std::size_t>{36, 12, 6, 6}));
}

// The Poisson scale with top 5 is filled to 10, the rating scales to 2 and 3.
TEST_F(BlockKernelTest, APoissonScaleThatFillsMostIsEvaluatedInBatches) {
  Design(ScaleType::poisson);
  for (int r = 0; r < 50; ++r) d.Observe({1 + r % 4}, r % 3, 1);
  Read();
  EXPECT_FALSE(kernel->oneByOne());
  EXPECT_EQ(kernel->filledTo(), 10);
  EXPECT_EQ(kernel->scale(ScaleRow(2)).varianceBound, 10);
  EXPECT_EQ(kernel->runs().size(), 3U);
}

TEST_F(BlockKernelTest, TakesRecordsOneByOneWhenAPoissonScaleReadsWhatOthersLeft) {
  Design(ScaleType::poisson);
  for (int r = 0; r < 50; ++r) d.Observe({1 + r % 4}, r % 3, 1);
  Read();
  kernel->Begin(d.scales, 80.0f, 11);  // an earlier pass has filled one more
  kernel->Arrange(reader->block());
  EXPECT_TRUE(kernel->oneByOne());
  EXPECT_EQ(kernel->scale(ScaleRow(2)).varianceBound, 20);
  ASSERT_EQ(kernel->runs().size(), 50U);
  for (std::size_t lane = 0; lane < 50; ++lane) {
    EXPECT_EQ(kernel->entry(lane), lane);
    EXPECT_EQ(kernel->runs()[lane].scale.number(), static_cast<std::int32_t>(lane % 3));
  }
}

TEST_F(BlockKernelTest, TwoPoissonScalesOfOneBoundAreEvaluatedInBatches) {
  d.Flank(1, kPositiveOrientation);
  const int statement = d.Statement({});
  d.Structure(statement, d.CountScale(ScaleType::poisson, 3, 1.0f));
  d.Structure(statement, d.CountScale(ScaleType::poisson, 4, .8f));
  d.Structure(statement, d.CountScale(ScaleType::poisson, 6, 1.0f));
  d.Build();
  d.Observe({1}, 0, 1);
  Read();
  EXPECT_TRUE(kernel->oneByOne()) << "filled to 10, 10 and 12";
  d.scales.ScaleTopCategory[ScaleRow(2)] = 5;
  kernel->Begin(d.scales, 80.0f);
  EXPECT_FALSE(kernel->oneByOne());
}

TEST_F(BlockKernelTest, APoissonScaleWithTwoCategoriesIsADichotomyInBatches) {
  d.Flank(1, kPositiveOrientation);
  d.Structure(d.Statement({}), d.CountScale(ScaleType::poisson, 1, 1.0f));
  d.Build();
  d.Observe({1}, 0, 1);
  Read();
  EXPECT_FALSE(kernel->oneByOne());
}

TEST(EvaluateOne, KeepsCountOfWhatHasBeenFilled) {
  KernelWork work;
  KernelScale scale;
  const std::vector<float> thresholds(21, 0.0f);
  const std::vector<std::int16_t> flags(21, kCategoryFree);
  SetUpKernelScale(ScaleType::rating, 20, thresholds, flags, 80.0f, scale);
  EvaluateOne(scale, 0.0f, work);
  EXPECT_EQ(work.filledTo, 20);
  SetUpKernelScale(ScaleType::rating, 3, thresholds, flags, 80.0f, scale);
  EvaluateOne(scale, 0.0f, work);
  EXPECT_EQ(work.filledTo, 20);
  EXPECT_NEAR(work.CategoryProbability[3], .25f, 1E-6f);
  EXPECT_NEAR(work.CategoryProbability[20], 1.0f / 21, 1E-6f) << "left by the first call";
}

}  // namespace
}  // namespace flanks
