#include "estimate/recount.h"

#include <cmath>
#include <gtest/gtest.h>

#include "estimate/jmle_pass.h"
#include "support/pass_design.h"
#include "support/scratch_folder.h"

namespace flanks {
namespace {

class CountingPassTest : public ::testing::Test {
 protected:
  // Persons in slots 1 to 3, items (negative) in slots 4 and 5, one scale 0 to 2.
  void TwoFlanks(const std::vector<std::string>& references) {
    d.Flank(3, kPositiveOrientation).Flank(2, kNegativeOrientation);
    d.Structure(d.Statement(references), d.Rating({-1.0f, 1.0f}));
    d.Build();
  }
  PassResult Run(Recount recount) {
    ObservationReader reader(d.parts());
    CountingPass pass(d.parts());
    ClearPassSums(d.estimates);
    ClearScaleSums(recount, d.scales);
    if (recount == Recount::needed) ClearScores(d.estimates);
    return pass.Run(reader, recount);
  }

  ScratchFolder folder;
  PassDesign d;
};

TEST_F(CountingPassTest, SumsScoresAndCounts) {
  TwoFlanks({"", ""});
  d.Observe({1, 4}, 0, 2);
  d.Observe({1, 5}, 0, 1, 2.5f);
  d.Observe({2, 4}, 0, 0, .5f);
  EXPECT_TRUE(Run(Recount::needed).dataSeen);
  EXPECT_EQ(d.scores(1).ObservedScore, 4.5);
  EXPECT_EQ(d.scores(1).MaxScore, 7.0);
  EXPECT_EQ(d.scores(1).Count, 3.5f);
  EXPECT_EQ(d.scores(1).RawScore, 4.5f);
  EXPECT_EQ(d.scores(1).SmallestWeight, 1.0f);
  EXPECT_EQ(d.scores(2).ObservedScore, 0.0);
  EXPECT_EQ(d.scores(2).MaxScore, 1.0);
  EXPECT_EQ(d.scores(2).SmallestWeight, .5f);
  EXPECT_EQ(d.scores(3).Count, 0.0f);
  EXPECT_EQ(d.scores(4).ObservedScore, 2.0);
  EXPECT_EQ(d.scores(5).Count, 2.5f);
  EXPECT_EQ(d.scales.ObservedCount.at(ScaleRow(0), 0), .5);
  EXPECT_EQ(d.scales.ObservedCount.at(ScaleRow(0), 1), 2.5);
  EXPECT_EQ(d.scales.ObservedCount.at(ScaleRow(0), 2), 1.0);
  EXPECT_TRUE(d.estimates.iteration.anyWeight);
}

TEST_F(CountingPassTest, AReversedPositionCountsFromTheTop) {
  TwoFlanks({"", "-"});
  d.Observe({1, 4}, 0, 2);
  d.Observe({2, 4}, 0, 0);
  Run(Recount::needed);
  EXPECT_EQ(d.scores(1).ObservedScore, 2.0);
  EXPECT_EQ(d.scores(4).ObservedScore, 2.0);  // (2 - 2) + (2 - 0)
  EXPECT_EQ(d.scores(4).RawScore, 2.0f);      // 2 + 0
  EXPECT_EQ(d.scores(4).MaxScore, 4.0);
}

TEST_F(CountingPassTest, ARawScoreIsTheObservationAsRead) {
  TwoFlanks({"", ""});
  // Raw 1 and 2 are ordered 0 and 1.
  d.scales.orderedCategory.at(ScaleRow(0), 0) = kNoOrderedCategory;
  d.scales.orderedCategory.at(ScaleRow(0), 1) = 0;
  d.scales.orderedCategory.at(ScaleRow(0), 2) = 1;
  d.scales.ScaleTopCategory[ScaleRow(0)] = 1;
  d.Observe({1, 4}, 0, 2);
  d.Observe({1, 5}, 0, 1);
  Run(Recount::needed);
  EXPECT_EQ(d.scores(1).RawScore, 3.0f);
  EXPECT_EQ(d.scores(1).ObservedScore, 1.0);
  EXPECT_EQ(d.scores(1).MaxScore, 2.0);
}

TEST_F(CountingPassTest, AnExtremeElementCountsAloneInItsObservations) {
  TwoFlanks({"", ""});
  d.element(1).ElementStatus = kStatusMaximum;
  d.Observe({1, 4}, 0, 2);
  d.Observe({2, 4}, 0, 1);
  Run(Recount::needed);
  EXPECT_EQ(d.scores(1).ObservedScore, 2.0);
  EXPECT_EQ(d.scores(4).ObservedScore, 1.0);
  EXPECT_EQ(d.scales.ObservedCount.at(ScaleRow(0), 2), 0.0);
}

TEST_F(CountingPassTest, SeesNoDataWhenAllIsExtreme) {
  TwoFlanks({"", ""});
  d.element(1).ElementStatus = kStatusMaximum;
  d.Observe({1, 4}, 0, 2);
  EXPECT_FALSE(Run(Recount::needed).dataSeen);
}

TEST_F(CountingPassTest, CountsBeyondSixteenMillion) {
  TwoFlanks({"", ""});
  d.Observe({1, 4}, 0, 1, 16777216.0f);
  for (int r = 0; r < 10; ++r) d.Observe({1, 4}, 0, 1);
  Run(Recount::needed);
  EXPECT_EQ(d.scores(1).Count, 16777226.0f);  // a 32-bit sum would stick at 16777216
  EXPECT_EQ(d.scores(1).RawScore, 16777226.0f);
}

TEST_F(CountingPassTest, KeepsTheFirstScores) {
  TwoFlanks({"", ""});
  d.Observe({1, 4}, 0, 2);
  Run(Recount::needed);
  KeepFirstScores(d.estimates);
  d.element(1).ElementStatus = kStatusDropped;
  Run(Recount::needed);
  EXPECT_EQ(d.scores(1).Count, 0.0f);
  EXPECT_EQ(d.scores(1).FirstCount, 1.0f);
  EXPECT_EQ(d.scores(1).FirstRawScore, 2.0f);
}

TEST_F(CountingPassTest, SumsRestMeasures) {
  TwoFlanks({"", ""});
  d.SetMeasures({.5f, 0.0f, 0.0f, .25f, -1.0f});
  d.Observe({1, 4}, 0, 1);        // rest of person 1: -.25; of item 4: .5
  d.Observe({1, 5}, 0, 1, 2.0f);  // rest of person 1: 1.0; of item 5: .5
  Run(Recount::needed);
  EXPECT_EQ(d.element(1).ExpectedSum, -.25 + 2.0);
  EXPECT_EQ(d.element(1).Information, .0625 + 4.0);
  EXPECT_EQ(d.element(1).ShiftedExpected, 3.0);
  EXPECT_EQ(d.element(4).ExpectedSum, .5);
  EXPECT_EQ(d.element(5).ExpectedSum, 1.0);
  // Not used further: the measure sums by category.
  EXPECT_EQ(d.scales.ExpectedCount.at(ScaleRow(0), 1), .25 + 2 * 1.5);
}

TEST_F(CountingPassTest, ASecondProxPassLeavesScoresAlone) {
  TwoFlanks({"", ""});
  d.Observe({1, 4}, 0, 2);
  Run(Recount::needed);
  const PassResult second = Run(Recount::notNeeded);
  EXPECT_TRUE(second.dataSeen);
  EXPECT_EQ(d.scores(1).ObservedScore, 2.0);
  EXPECT_EQ(d.scales.ObservedCount.at(ScaleRow(0), 2), 1.0);
  EXPECT_EQ(d.element(1).ShiftedExpected, 1.0);
}

TEST_F(CountingPassTest, APoissonScaleTakesNoPartInProx) {
  d.Flank(1, kPositiveOrientation).Flank(1, kNegativeOrientation);
  d.Structure(d.Statement({}), d.CountScale(ScaleType::poisson, 4, 1.0f));
  d.Build();
  d.SetMeasures({.5f, .25f});
  d.Observe({1, 2}, 0, 3);
  const PassResult result = Run(Recount::needed);
  EXPECT_TRUE(result.poissonSeen);
  EXPECT_EQ(d.scores(1).ObservedScore, 3.0);
  EXPECT_EQ(d.element(1).ShiftedExpected, 0.0);
  EXPECT_NEAR(d.scales.DiscriminationSums.at(ScaleRow(0), 0), std::log(6.0), 1E-12);  // ln 3!
}

TEST_F(CountingPassTest, SumsTheTermsOfABinomialScale) {
  d.Flank(1, kPositiveOrientation);
  d.Structure(d.Statement({}), d.CountScale(ScaleType::binomial, 4, 1.0f));
  d.Build();
  d.Observe({1}, 0, 2);
  d.Observe({1}, 0, 1, .5f);
  Run(Recount::needed);
  EXPECT_NEAR(d.scales.DiscriminationSums.at(ScaleRow(0), 0), -std::log(6.0) - .5 * std::log(4.0),
              1E-12);
}

}  // namespace
}  // namespace flanks
